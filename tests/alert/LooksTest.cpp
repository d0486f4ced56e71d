// Every property of a dialog's look is seen on the screen: the box, its content, and the cover.
#include "RQAlertView/RQAlertViewHeader.h"
#include "RQAlertView/RQAlertViewProgressView.h"
#include "RQAlertView/RQAlertViewScrollIndicator.h"
#include "alert/Pictures.h"
#include "platform/UIActivityIndicatorView.h"
#include "platform/UIFont.h"

#include <functional>

namespace {

class Looks : public Pictures {
 protected:
  static Dialog threeInARow() { return alert({"Action"}, "Cancel", "Delete"); }
  static Dialog twoRows() { return sheet({"A", "B"}); }
  static QImage half(const QWidget* part, bool left) {
    const int middle = part->width() / 2;
    return seen(part, QRect(left ? 0 : middle, 0, middle, part->height()));
  }
  // The left end of a line across the header of the box, and from the screen's left edge to the box.
  static QImage leftEdge(const Dialog& dialog) {
    return seen(partOf<RQAlertViewHeader>(dialog), QRect(0, 20, 12, 1));
  }
  // How far the shadow can be seen beside the box.
  static int shadowReach(const Dialog& dialog, bool onTheLeft) {
    constexpr int most = 40;
    const QWidget* header = partOf<RQAlertViewHeader>(dialog);
    const QImage beside = seen(header, QRect(onTheLeft ? -most : header->width(), 20, most, 1));
    int reach = 0;
    for (int x = 0; x < most; ++x) {
      if (beside.pixelColor(x, 0) != QColor(Qt::white)) ++reach;
    }
    return reach;
  }
};

TEST_F(Looks, HaveTheColorsTheyWereGiven) {
  struct Row {
    const char* property;
    void (RQAlertView::*set)(const QColor&);
    Dialog (*make)();
    QImage (*look)(const Dialog&);
  };
  const std::vector<Row> rows{
      {"background", &RQAlertView::setBackgroundColor, threeInARow,
       [](const Dialog& dialog) { return leftEdge(dialog); }},
      {"background of the sheet's own cancel button", &RQAlertView::setBackgroundColor,
       [] { return sheet({"A"}, "Cancel"); },
       [](const Dialog& dialog) { return seen(buttonOf(dialog, "Cancel")); }},
      {"separator below the header", &RQAlertView::setSeparatorsColor, threeInARow,
       [](const Dialog& dialog) {
         return seen(frameOf(dialog), QRect(0, 0, 30, frameOf(dialog)->height()));
       }},
      {"separator between buttons", &RQAlertView::setSeparatorsColor, threeInARow,
       [](const Dialog& dialog) {
         return seen(frameOf(dialog), QRect(0, frameOf(dialog)->height() - 5, 280, 1));
       }},
      {"separator between rows", &RQAlertView::setSeparatorsColor, twoRows,
       [](const Dialog& dialog) { return seen(listOf(dialog)); }},
      {"border", &RQAlertView::setLayerBorderColor,
       [] {
         const Dialog dialog = threeInARow();
         dialog->setLayerBorderWidth(3);
         return dialog;
       },
       [](const Dialog& dialog) { return leftEdge(dialog); }},
      {"shadow", &RQAlertView::setLayerShadowColor,
       [] {
         const Dialog dialog = threeInARow();
         dialog->setLayerShadowRadius(10);
         return dialog;
       },
       [](const Dialog& dialog) { return seen(partOf<RQAlertViewHeader>(dialog), QRect(-4, 20, 4, 1)); }},
      {"cover", &RQAlertView::setCoverColor, threeInARow,
       [](const Dialog& dialog) { return seen(dialog->view(), QRect(0, 0, 20, 20)); }},
      {"indicator", &RQAlertView::setActivityIndicatorViewColor, [] { return waiting(); },
       [](const Dialog& dialog) { return seen(partOf<UIActivityIndicatorView>(dialog)); }},
      {"progress", &RQAlertView::setProgressViewProgressTintColor, [] { return withProgress(); },
       [](const Dialog& dialog) { return half(partOf<RQAlertViewProgressView>(dialog), true); }},
      {"track", &RQAlertView::setProgressViewTrackTintColor, [] { return withProgress(); },
       [](const Dialog& dialog) { return half(partOf<RQAlertViewProgressView>(dialog), false); }},
      {"text field", &RQAlertView::setTextFieldsBackgroundColor, [] { return withFields(1); },
       [](const Dialog& dialog) { return seen(dialog->textFieldsArray()[0]); }},
  };
  for (const auto& [property, set, make, look] : rows) {
    const Dialog dialog = make();
    dialog->show();
    EXPECT_FALSE(shows(look(dialog))) << property;
    ((*dialog).*set)(telling);
    letGo();
    EXPECT_TRUE(shows(look(dialog))) << property;
    close(dialog);
  }
}

TEST_F(Looks, HaveTheMeasuresTheyWereGiven) {
  struct Row {
    const char* property;
    std::function<void(RQAlertView&)> set;
    Dialog (*make)();
    int (*measure)(const Dialog&);
    int before;
    int after;
  };
  const auto edged = [] {
    const Dialog dialog = threeInARow();
    dialog->setLayerBorderColor(telling);
    dialog->setLayerShadowColor(telling);
    return dialog;
  };
  const auto shadowed = [] {
    const Dialog dialog = threeInARow();
    dialog->setLayerShadowColor(telling);
    dialog->setLayerShadowRadius(10);
    return dialog;
  };
  const auto rowHeight = [](const Dialog& dialog) {
    return listOf(dialog)->visualRect(listOf(dialog)->model()->index(0, 0)).height();
  };
  const auto bottomSheet = [] { return sheet({"A"}, "Cancel"); };
  const std::vector<Row> rows{
      {"corner radius", [](RQAlertView& dialog) { dialog.setLayerCornerRadius(0); },
       [] {
         const Dialog dialog = threeInARow();
         dialog->setBackgroundColor(telling);
         dialog->setLayerCornerRadius(20);
         return dialog;
       },
       [](const Dialog& dialog) {
         return extentOf(seen(frameOf(dialog), QRect(0, 0, 100, 1)), telling).left() > 10 ? 1 : 0;
       },
       1, 0},
      {"corner radius below a button", [](RQAlertView& dialog) { dialog.setLayerCornerRadius(0); },
       [] {
         const Dialog dialog = threeInARow();
         dialog->setButtonsBackgroundColor(telling);
         return dialog;
       },
       [](const Dialog& dialog) {
         const RQAlertViewButton* button = buttonOf(dialog, "Action");
         return seenAt(button, button->rect().bottomRight()) == telling ? 1 : 0;
       },
       0, 1},
      {"border width", [](RQAlertView& dialog) { dialog.setLayerBorderWidth(6); }, edged,
       [](const Dialog& dialog) { return extentOf(leftEdge(dialog), telling).width(); }, 0, 6},
      {"shadow radius", [](RQAlertView& dialog) { dialog.setLayerShadowRadius(10); }, edged,
       [](const Dialog& dialog) { return shadowReach(dialog, true); }, 0, 10},
      {"shadow offset, on the left",
       [](RQAlertView& dialog) {
         dialog.setLayerShadowOffset({7, 0});
       },
       shadowed, [](const Dialog& dialog) { return shadowReach(dialog, true); }, 10, 3},
      {"shadow offset, on the right",
       [](RQAlertView& dialog) {
         dialog.setLayerShadowOffset({7, 0});
       },
       shadowed, [](const Dialog& dialog) { return shadowReach(dialog, false); }, 10, 17},
      {"shadow offset without a radius",
       [](RQAlertView& dialog) {
         dialog.setLayerShadowOffset({7, 0});
       },
       edged, [](const Dialog& dialog) { return shadowReach(dialog, false); }, 0, 7},
      {"vertical offset", [](RQAlertView& dialog) { dialog.setOffsetVertical(30); }, bottomSheet,
       [](const Dialog& dialog) { return 844 - 1 - frameOf(dialog)->geometry().bottom(); }, 8, 30},
      {"offset of the cancel button", [](RQAlertView& dialog) { dialog.setCancelButtonOffsetY(25); },
       bottomSheet,
       [](const Dialog& dialog) {
         return buttonOf(dialog, "Cancel")->y() - listOf(dialog)->geometry().bottom() - 1;
       },
       8, 25},
      {"height of buttons", [](RQAlertView& dialog) { dialog.setButtonsHeight(70); }, threeInARow,
       [](const Dialog& dialog) { return buttonOf(dialog, "Action")->height(); }, 44, 70},
      {"height of rows", [](RQAlertView& dialog) { dialog.setButtonsHeight(70); }, twoRows, rowHeight, 56,
       70},
      {"height of rows that nothing measures", [](RQAlertView& dialog) { dialog.setHeightCell(nullptr); },
       [] {
         const Dialog dialog = twoRows();
         dialog->setButtonsFont(systemFontOfSize(60));
         return dialog;
       },
       rowHeight, 100, 56},
      {"height of text fields", [](RQAlertView& dialog) { dialog.setTextFieldsHeight(60); },
       [] { return withFields(1); },
       [](const Dialog& dialog) { return dialog->textFieldsArray()[0]->height(); }, 44, 60},
      {"style of the indicator",
       [](RQAlertView& dialog) { dialog.setActivityIndicatorViewStyle(UIActivityIndicatorViewStyle::Gray); },
       [] { return waiting(); },
       [](const Dialog& dialog) { return partOf<UIActivityIndicatorView>(dialog)->width(); }, 37, 20},
  };
  for (const auto& [property, set, make, measure, before, after] : rows) {
    const Dialog dialog = make();
    dialog->show();
    letGo();
    EXPECT_EQ(measure(dialog), before) << property;
    set(*dialog);
    letGo();
    EXPECT_EQ(measure(dialog), after) << property;
    close(dialog);
  }
}

TEST_F(Looks, OfAnIndicatorWithoutAColorAreThoseOfItsStyle) {
  const Dialog dialog = waiting();
  dialog->setBackgroundColor(telling);
  dialog->setActivityIndicatorViewColor({});
  dialog->show();
  const auto showsColor = [&](const QColor& color) {
    return shows(seen(partOf<UIActivityIndicatorView>(dialog)), color);
  };
  EXPECT_TRUE(showsColor(Qt::white));
  dialog->setActivityIndicatorViewStyle(UIActivityIndicatorViewStyle::Gray);
  letGo();
  EXPECT_FALSE(showsColor(Qt::white));
  EXPECT_TRUE(showsColor(Qt::gray));
}

TEST_F(Looks, OfAProgressBarMayBePictures) {
  const Dialog dialog = withProgress();
  dialog->setProgressViewProgressImage(pixmapOf(Qt::green, 11));
  dialog->setProgressViewTrackImage(pixmapOf(telling, 9));
  dialog->show();
  const auto* bar = partOf<RQAlertViewProgressView>(dialog);
  EXPECT_EQ(bar->height(), 11);
  EXPECT_EQ(extentOf(seen(bar), Qt::green), QRect(0, 0, bar->width() / 2, 11));
  EXPECT_EQ(extentOf(seen(bar), telling), QRect(bar->width() / 2, 0, bar->width() / 2, 11));
  dialog->setProgressViewTrackImage({});
  EXPECT_FALSE(shows(seen(bar)));
  EXPECT_TRUE(shows(half(bar, true), Qt::green));
}

TEST_F(Looks, BlurWhatLiesBehind) {
  // Stripes of black and white behind; the difference between neighbours tells how sharp they are.
  QImage stripes(2, 2, QImage::Format_RGB32);
  stripes.fill(Qt::white);
  stripes.setPixelColor(0, 0, Qt::black);
  stripes.setPixelColor(0, 1, Qt::black);
  setBehind(QBrush(stripes));
  struct Row {
    const char* property;
    void (RQAlertView::*set)(const std::optional<UIBlurEffectStyle>&);
    bool behindBox;
  };
  for (const auto& [property, set, behindBox] :
       {Row{"cover", &RQAlertView::setCoverBlurEffect, false},
        Row{"background", &RQAlertView::setBackgroundBlurEffect, true}}) {
    std::vector<int> brightness;
    for (const std::optional<UIBlurEffectStyle> style :
         {std::optional<UIBlurEffectStyle>(), std::optional(UIBlurEffectStyle::Dark),
          std::optional(UIBlurEffectStyle::Light), std::optional(UIBlurEffectStyle::ExtraLight)}) {
      const Dialog dialog = alert();
      dialog->setBackgroundColor(Qt::transparent);
      ((*dialog).*set)(style);
      dialog->show();
      const auto differenceAt = [](const QWidget* part, QPoint place) {
        return std::abs(seenAt(part, place).red() - seenAt(part, place + QPoint(1, 0)).red());
      };
      const QWidget* box = partOf<RQAlertViewHeader>(dialog);
      const QWidget* there = behindBox ? box : dialog->view();
      const QWidget* elsewhere = behindBox ? dialog->view() : box;
      EXPECT_EQ(differenceAt(there, {100, 10}) > 200, !style) << property;
      if (behindBox) {
        EXPECT_GT(differenceAt(elsewhere, {100, 10}), 200) << property;
      }
      if (style) brightness.push_back(seenAt(there, {100, 10}).red());
      close(dialog);
    }
    EXPECT_LT(brightness[0] + 40, brightness[1]) << property;
    EXPECT_LT(brightness[1] + 40, brightness[2]) << property;
  }
}

TEST_F(Looks, ShowHowFarTextsAndRowsAreScrolledWhereTheyAreToldTo) {
  QStringList buttons;
  for (int number = 0; number < 60; ++number) buttons << QString::number(number);
  const Dialog dialog = withMessage(QString("Many words. ").repeated(300), alertStyle, buttons);
  dialog->setBackgroundColor(telling);
  dialog->setButtonsTitleColor(telling);
  dialog->setSeparatorsColor(telling);
  dialog->setMessageTextColor(telling);
  dialog->show();
  letGo();
  const auto barSeen = [&](const QWidget* part) {
    // Below the corner of the box. The bar is half transparent.
    const QImage picture = seen(part, QRect(part->width() - 7, 15, 7, part->height() / 2));
    return shows(picture, QColor(255, 128, 255)) ? "white"
           : shows(picture, QColor(127, 0, 127)) ? "black"
                                                 : "none";
  };
  for (const QWidget* part :
       {static_cast<QWidget*>(partOf<RQAlertViewHeader>(dialog)), static_cast<QWidget*>(listOf(dialog))}) {
    dialog->setShowsVerticalScrollIndicator(false);
    letGo();
    EXPECT_STREQ(barSeen(part), "none");
    dialog->setShowsVerticalScrollIndicator(true);
    dialog->setIndicatorStyle(UIScrollViewIndicatorStyle::White);
    letGo();
    EXPECT_STREQ(barSeen(part), "white");
    dialog->setIndicatorStyle(UIScrollViewIndicatorStyle::Black);
    letGo();
    EXPECT_STREQ(barSeen(part), "black");
  }
}

}  // namespace
