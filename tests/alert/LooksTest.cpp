// Every property of a dialog's look is seen on the screen: the box, its content, and the cover.
#include "RQAlertView/RQAlertViewHeader.h"
#include "alert/Pictures.h"
#include "platform/ApplicationStyle.h"
#include "platform/UIActivityIndicatorView.h"

#include <algorithm>

#include <QProgressBar>

namespace {

class Looks : public Pictures {
 protected:
  static Dialog threeInARow() { return alert({"Action"}, "Cancel", "Delete"); }
  static Dialog edged(double borderWidth, double shadowRadius) {
    const Dialog dialog = threeInARow();
    dialog->setLayerBorderWidth(borderWidth);
    dialog->setLayerShadowRadius(shadowRadius);
    return dialog;
  }
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
  const auto expect = [](const char* property, const Dialog& dialog, auto set, auto look) {
    dialog->show();
    EXPECT_FALSE(shows(look(dialog))) << property;
    ((*dialog).*set)(telling);
    letGo();
    EXPECT_TRUE(shows(look(dialog))) << property;
    close(dialog);
  };
  expect("background", threeInARow(), &RQAlertView::setBackgroundColor, leftEdge);
  expect("background of the sheet's own cancel button", sheet({"A"}, "Cancel"),
         &RQAlertView::setBackgroundColor,
         [](const Dialog& dialog) { return seen(buttonOf(dialog, "Cancel")); });
  expect(
      "separator below the header", threeInARow(), &RQAlertView::setSeparatorsColor,
      [](const Dialog& dialog) { return seen(frameOf(dialog), QRect(0, 0, 30, frameOf(dialog)->height())); });
  expect("separator between buttons", threeInARow(), &RQAlertView::setSeparatorsColor,
         [](const Dialog& dialog) {
           return seen(frameOf(dialog), QRect(0, frameOf(dialog)->height() - 5, 280, 1));
         });
  expect("separator between rows", sheet({"A", "B"}), &RQAlertView::setSeparatorsColor,
         [](const Dialog& dialog) { return seen(listOf(dialog)); });
  expect("border", edged(3, 0), &RQAlertView::setLayerBorderColor, leftEdge);
  expect("shadow", edged(0, 10), &RQAlertView::setLayerShadowColor,
         [](const Dialog& dialog) { return seen(partOf<RQAlertViewHeader>(dialog), QRect(-4, 20, 4, 1)); });
  expect("cover", threeInARow(), &RQAlertView::setCoverColor,
         [](const Dialog& dialog) { return seen(dialog->view(), QRect(0, 0, 20, 20)); });
  expect("indicator", waiting(), &RQAlertView::setActivityIndicatorViewColor,
         [](const Dialog& dialog) { return seen(partOf<UIActivityIndicatorView>(dialog)); });
  expect("progress", withProgress(), &RQAlertView::setProgressViewProgressTintColor,
         [](const Dialog& dialog) { return half(partOf<QProgressBar>(dialog), true); });
  expect("track", withProgress(), &RQAlertView::setProgressViewTrackTintColor,
         [](const Dialog& dialog) { return half(partOf<QProgressBar>(dialog), false); });
  expect("text field", withFields(1), &RQAlertView::setTextFieldsBackgroundColor,
         [](const Dialog& dialog) { return seen(dialog->textFieldsArray()[0]); });
}

TEST_F(Looks, HaveTheMeasuresTheyWereGiven) {
  const auto expect = [](const char* property, const Dialog& dialog, auto set, const auto& value,
                         auto measure, int before, int after) {
    dialog->show();
    letGo();
    EXPECT_EQ(measure(dialog), before) << property;
    ((*dialog).*set)(value);
    letGo();
    EXPECT_EQ(measure(dialog), after) << property;
    close(dialog);
  };
  const auto inColor = [](const Dialog& dialog) {
    dialog->setLayerBorderColor(telling);
    dialog->setLayerShadowColor(telling);
    return dialog;
  };
  const auto border = [](const Dialog& dialog) { return extentOf(leftEdge(dialog), telling).width(); };
  const auto leftShadow = [](const Dialog& dialog) { return shadowReach(dialog, true); };
  const auto rightShadow = [](const Dialog& dialog) { return shadowReach(dialog, false); };
  const QPointF aside(7, 0);
  expect("border width", inColor(edged(0, 0)), &RQAlertView::setLayerBorderWidth, 6, border, 0, 6);
  expect("shadow radius", inColor(edged(0, 0)), &RQAlertView::setLayerShadowRadius, 10, leftShadow, 0, 10);
  expect("shadow offset, on the left", inColor(edged(0, 10)), &RQAlertView::setLayerShadowOffset, aside,
         leftShadow, 10, 3);
  expect("shadow offset, on the right", inColor(edged(0, 10)), &RQAlertView::setLayerShadowOffset, aside,
         rightShadow, 10, 17);
  expect("shadow offset without a radius", inColor(edged(0, 0)), &RQAlertView::setLayerShadowOffset, aside,
         rightShadow, 0, 7);

  const Dialog filled = edged(0, 0);
  filled->setBackgroundColor(telling);
  filled->setButtonsBackgroundColor(telling);
  const auto filledCorners = [](const Dialog& dialog) {
    const QRect box = frameOf(dialog)->rect();
    const auto corners = {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()};
    return static_cast<int>(std::count_if(corners.begin(), corners.end(), [&](const QPoint& corner) {
      return seenAt(frameOf(dialog), corner) == telling;
    }));
  };
  expect("corner radius", filled, &RQAlertView::setLayerCornerRadius, 0, filledCorners, 0, 4);

  expect(
      "vertical offset", sheet({"A"}, "Cancel"), &RQAlertView::setOffsetVertical, 30,
      [](const Dialog& dialog) { return 844 - 1 - frameOf(dialog)->geometry().bottom(); }, 8, 30);
  expect(
      "offset of the cancel button", sheet({"A"}, "Cancel"), &RQAlertView::setCancelButtonOffsetY, 25,
      [](const Dialog& dialog) {
        return buttonOf(dialog, "Cancel")->y() - listOf(dialog)->geometry().bottom() - 1;
      },
      8, 25);
  expect(
      "height of buttons", threeInARow(), &RQAlertView::setButtonsHeight, 70,
      [](const Dialog& dialog) { return buttonOf(dialog, "Action")->height(); }, 44, 70);
  const auto rowHeight = [](const Dialog& dialog) {
    return listOf(dialog)->visualRect(listOf(dialog)->model()->index(0, 0)).height();
  };
  expect("height of rows", sheet({"A"}), &RQAlertView::setButtonsHeight, 70, rowHeight, 56, 70);
  const Dialog large = sheet({"A"});
  large->setButtonsFont(systemFontOfSize(60));
  expect("height of rows that nothing measures", large, &RQAlertView::setHeightCell, nullptr, rowHeight, 100,
         56);
  expect(
      "height of text fields", withFields(1), &RQAlertView::setTextFieldsHeight, 60,
      [](const Dialog& dialog) { return dialog->textFieldsArray()[0]->height(); }, 44, 60);
  expect(
      "style of the indicator", waiting(), &RQAlertView::setActivityIndicatorViewStyle,
      UIActivityIndicatorViewStyle::Gray,
      [](const Dialog& dialog) { return partOf<UIActivityIndicatorView>(dialog)->width(); }, 37, 20);
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
  const auto* bar = partOf<QProgressBar>(dialog);
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
