// Every property of a dialog's look is seen on the screen: the box, its content, and the cover.
#include "RQAlertView/RQAlertViewHeader.h"
#include "alert/Pictures.h"
#include "platform/UIActivityIndicatorView.h"

#include <algorithm>

#include <QProgressBar>

namespace {

class Looks : public Pictures {
 protected:
  static QImage half(const Dialog& dialog, bool left) {
    const auto* bar = partOf<QProgressBar>(dialog);
    return seen(bar, QRect(left ? 0 : bar->width() / 2, 0, bar->width() / 2, bar->height()));
  }
  // A line across the left edge of the box, `width` from `x` of the header.
  static QImage edge(const Dialog& dialog, int x, int width) {
    return seen(partOf<RQAlertViewHeader>(dialog), QRect(x, 20, width, 1));
  }
  static QImage indicator(const Dialog& dialog) { return seen(partOf<UIActivityIndicatorView>(dialog)); }
  // How many pixels beside the box are not white.
  static int shadow(const Dialog& dialog, int x) {
    const QImage beside = edge(dialog, x, 40);
    int reach = 0;
    for (int at = 0; at < 40; ++at) reach += beside.pixelColor(at, 0) == QColor(Qt::white) ? 0 : 1;
    return reach;
  }
  static int leftShadow(const Dialog& dialog) { return shadow(dialog, -40); }
  static int rightShadow(const Dialog& dialog) {
    return shadow(dialog, partOf<RQAlertViewHeader>(dialog)->width());
  }
  static int rowHeight(const Dialog& dialog) { return placeOf(dialog, "A").second.height(); }
};

const char* const three = "alert buttons=Action cancel=Cancel destructive=Delete";

TEST_F(Looks, HaveTheColorsTheyWereGiven) {
  const struct {
    const char* property;
    QString dialog;
    QImage (*look)(const Dialog&);
  } rows[] = {
      {"backgroundColor", three, [](const Dialog& dialog) { return edge(dialog, 0, 12); }},
      {"backgroundColor", "sheet buttons=A cancel=Cancel",
       [](const Dialog& dialog) { return seen(buttonOf(dialog, "Cancel")); }},
      // Below the header, between buttons side by side, and between rows.
      {"separatorsColor", three,
       [](const Dialog& dialog) {
         return seen(frameOf(dialog), QRect(0, 0, 30, frameOf(dialog)->height()));
       }},
      {"separatorsColor", three,
       [](const Dialog& dialog) {
         return seen(frameOf(dialog), QRect(0, frameOf(dialog)->height() - 5, 280, 1));
       }},
      {"separatorsColor", "sheet buttons=A,B", [](const Dialog& dialog) { return seen(listOf(dialog)); }},
      {"layerBorderColor", "alert layerBorderWidth=3",
       [](const Dialog& dialog) { return edge(dialog, 0, 12); }},
      {"layerShadowColor", "alert layerShadowRadius=10",
       [](const Dialog& dialog) { return edge(dialog, -4, 4); }},
      {"coverColor", three, [](const Dialog& dialog) { return seen(dialog->view(), QRect(0, 0, 20, 20)); }},
      {"activityIndicatorViewColor", "alert label=Wait", indicator},
      {"progressViewProgressTintColor", "alert progress=0.5",
       [](const Dialog& dialog) { return half(dialog, true); }},
      {"progressViewTrackTintColor", "alert progress=0.5",
       [](const Dialog& dialog) { return half(dialog, false); }},
      {"textFieldsBackgroundColor", "alert fields=1",
       [](const Dialog& dialog) { return seen(dialog->textFieldsArray()[0]); }},
  };
  for (const auto& row : rows) {
    const Dialog dialog = showing(row.dialog);
    EXPECT_FALSE(shows(row.look(dialog))) << row.property;
    change(*dialog, QString(row.property) + "=magenta");
    letGo();
    EXPECT_TRUE(shows(row.look(dialog))) << row.property;
    close(dialog);
  }
}

TEST_F(Looks, HaveTheMeasuresTheyWereGiven) {
  const auto edged = [](const char* rest) {
    return QString("alert buttons=A layerBorderColor=magenta layerShadowColor=magenta ") + rest;
  };
  const struct {
    const char* change;
    QString dialog;
    int (*measure)(const Dialog&);
    int before, after;
  } rows[] = {
      {"layerBorderWidth=6", edged(""),
       [](const Dialog& dialog) { return extentOf(edge(dialog, 0, 12)).width(); }, 0, 6},
      {"layerShadowRadius=10", edged(""), leftShadow, 0, 10},
      {"layerShadowOffset=7,0", edged("layerShadowRadius=10"), leftShadow, 10, 3},
      {"layerShadowOffset=7,0", edged("layerShadowRadius=10"), rightShadow, 10, 17},
      {"layerShadowOffset=7,0", edged(""), rightShadow, 0, 7},
      {"layerCornerRadius=0", "alert buttons=A backgroundColor=magenta buttonsBackgroundColor=magenta",
       [](const Dialog& dialog) {
         const QRect box = frameOf(dialog)->rect();
         const auto corners = {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()};
         return static_cast<int>(std::count_if(corners.begin(), corners.end(), [&](const QPoint& corner) {
           return seenAt(frameOf(dialog), corner) == telling;
         }));
       },
       0, 4},
      {"offsetVertical=30", "sheet buttons=A cancel=Cancel",
       [](const Dialog& dialog) { return 844 - 1 - frameOf(dialog)->geometry().bottom(); }, 8, 30},
      {"cancelButtonOffsetY=25", "sheet buttons=A cancel=Cancel",
       [](const Dialog& dialog) {
         return buttonOf(dialog, "Cancel")->y() - listOf(dialog)->geometry().bottom() - 1;
       },
       8, 25},
      {"buttonsHeight=70", three, [](const Dialog& dialog) { return buttonOf(dialog, "Action")->height(); },
       44, 70},
      {"buttonsHeight=70", "sheet buttons=A", rowHeight, 56, 70},
      {"heightCell=none", "sheet buttons=A buttonsFont=60", rowHeight, 100, 56},
      {"textFieldsHeight=60", "alert fields=1",
       [](const Dialog& dialog) { return dialog->textFieldsArray()[0]->height(); }, 44, 60},
      {"heightMax=100", "alert message=1\\n2\\n3\\n4\\n5\\n6\\n7 buttons=A",
       [](const Dialog& dialog) { return std::min(frameOf(dialog)->height(), 101); }, 101, 100},
      {"activityIndicatorViewStyle=2", "alert label=Wait",
       [](const Dialog& dialog) { return partOf<UIActivityIndicatorView>(dialog)->width(); }, 37, 20},
  };
  for (const auto& row : rows) {
    const Dialog dialog = showing(row.dialog);
    letGo();
    EXPECT_EQ(row.measure(dialog), row.before) << row.change;
    change(*dialog, row.change);
    letGo();
    EXPECT_EQ(row.measure(dialog), row.after) << row.change;
    close(dialog);
  }
}

TEST_F(Looks, OfAnIndicatorWithoutAColorAreThoseOfItsStyle) {
  const Dialog dialog = showing("alert label=Wait backgroundColor=magenta activityIndicatorViewColor=none");
  EXPECT_TRUE(shows(indicator(dialog), Qt::white));
  change(*dialog, "activityIndicatorViewStyle=2");
  letGo();
  EXPECT_FALSE(shows(indicator(dialog), Qt::white));
  EXPECT_TRUE(shows(indicator(dialog), Qt::gray));
}

TEST_F(Looks, OfAProgressBarMayBePictures) {
  const Dialog dialog =
      showing("alert progress=0.5 progressViewProgressImage=lime*11 progressViewTrackImage=magenta*9");
  const auto* bar = partOf<QProgressBar>(dialog);
  EXPECT_EQ(bar->height(), 11);
  EXPECT_EQ(extentOf(seen(bar), Qt::green), QRect(0, 0, bar->width() / 2, 11));
  EXPECT_EQ(extentOf(seen(bar)), QRect(bar->width() / 2, 0, bar->width() / 2, 11));
  UIApplication::setLayoutDirection(Qt::RightToLeft);
  letGo();
  EXPECT_EQ(extentOf(seen(bar)), QRect(0, 0, bar->width() / 2, 11)) << "the script's other way";
  change(*dialog, "progressViewTrackImage=none");
  EXPECT_FALSE(shows(seen(bar)));
  EXPECT_TRUE(shows(half(dialog, false), Qt::green));
}

TEST_F(Looks, BlurWhatLiesBehind) {
  // Stripes of black and white behind; the difference between neighbours tells how sharp they are.
  QImage stripes(2, 2, QImage::Format_RGB32);
  stripes.fill(Qt::white);
  stripes.setPixelColor(0, 0, Qt::black);
  stripes.setPixelColor(0, 1, Qt::black);
  setBehind(QBrush(stripes));
  for (const QString property : {"coverBlurEffect", "backgroundBlurEffect"}) {
    std::vector<int> brightness;
    for (const char* style : {"none", "Dark", "Light", "Extra"}) {
      const Dialog dialog = showing("alert buttons=A backgroundColor=transparent " + property + "=" + style);
      const auto isSharp = [](const QWidget* part) {
        return std::abs(seenAt(part, {100, 10}).red() - seenAt(part, {101, 10}).red()) > 200;
      };
      const bool behindBox = property == "backgroundBlurEffect";
      const QWidget* there = behindBox ? partOf<RQAlertViewHeader>(dialog) : dialog->view();
      EXPECT_EQ(isSharp(there), style == std::string("none")) << property.toStdString();
      EXPECT_TRUE(!behindBox || isSharp(dialog->view())) << property.toStdString();
      brightness.push_back(seenAt(there, {100, 10}).red());
      close(dialog);
    }
    EXPECT_LT(brightness[1] + 40, brightness[2]) << property.toStdString();
    EXPECT_LT(brightness[2] + 40, brightness[3]) << property.toStdString();
  }
}

TEST_F(Looks, ShowHowFarTextsAndRowsAreScrolledWhereTheyAreToldTo) {
  const Dialog dialog = showing(
      "alert backgroundColor=magenta buttonsTitleColor=magenta separatorsColor=magenta "
      "messageTextColor=magenta message=" +
      QString("Many_words._").repeated(300) + " buttons=" + QString("A,").repeated(60));
  for (const QWidget* part :
       {static_cast<QWidget*>(partOf<RQAlertViewHeader>(dialog)), static_cast<QWidget*>(listOf(dialog))}) {
    for (const auto& [look, expected] : {std::pair("showsVerticalScrollIndicator=0", "none"),
                                         {"showsVerticalScrollIndicator=1 indicatorStyle=2", "white"},
                                         {"indicatorStyle=1", "black"}}) {
      change(*dialog, look);
      letGo();
      // Below the corner of the box. The bar is half transparent.
      const QImage picture = seen(part, QRect(part->width() - 7, 15, 7, part->height() / 2));
      EXPECT_STREQ(shows(picture, QColor(255, 128, 255)) ? "white"
                   : shows(picture, QColor(127, 0, 127)) ? "black"
                                                         : "none",
                   expected);
    }
  }
}

}  // namespace
