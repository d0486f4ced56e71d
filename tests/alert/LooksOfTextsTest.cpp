// The texts of a dialog have the colours, fonts, places and icons they were given, each kind of button its
// own.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Pictures.h"

#include <QRegularExpression>

namespace {

class LooksOfTexts : public Pictures {
 protected:
  // Where the letters are, in the box.
  static QRect ink(const Dialog& dialog) {
    letGo();
    return extentOf(seen(frameOf(dialog)));
  }
  static double inkHeight(const Dialog& dialog) { return ink(dialog).height(); }
};

TEST_F(LooksOfTexts, HaveTheirOwnColorFontAndAlignment) {
  const std::pair<QString, const char*> rows[] = {
      {"titleText", "alert title=Hm message=Words buttons=Act"},
      {"messageText", "alert title=Words message=Hm buttons=Act"},
      {"textFieldsText", "alert fields=1 cancel=No textFieldsClearButtonMode=0"},
      {"progressLabelText", "alert progress=0.5 label=Hm buttons=Act"},
      {"buttonsTitle", "alert buttons=Hm"},
      {"cancelButtonTitle", "alert cancel=Hm"},
      {"destructiveButtonTitle", "alert destructive=Hm"},
  };
  for (const auto& [text, description] : rows) {
    SCOPED_TRACE(text.toStdString());
    const QString name = QString(text).remove(QRegularExpression("(Text|Title)$"));
    const Dialog dialog = dialogFrom(description);
    if (!dialog->textFieldsArray().empty()) dialog->textFieldsArray()[0]->setText("Hm");
    change(*dialog, text + "Color=magenta");
    dialog->show();
    const QRect before = ink(dialog);
    ASSERT_FALSE(before.isNull());
    EXPECT_LT(before.height(), 20) << "another text has this colour too";
    const int middle = frameOf(dialog)->width() / 2;
    change(*dialog, name + "TextAlignment=Left");
    EXPECT_LT(ink(dialog).right(), middle - 30);
    change(*dialog, name + "TextAlignment=Right");
    EXPECT_GT(ink(dialog).left(), middle + 30);
    change(*dialog, name + "TextAlignment=Center");
    EXPECT_NEAR(ink(dialog).center().x(), middle, 3);
    change(*dialog, name + "Font=40");
    EXPECT_GT(ink(dialog).height(), before.height() + 8);
    close(dialog);
  }
}

TEST_F(LooksOfTexts, TakeNoMoreLinesThanTheyMayAndAreCutOffWhereTheyAreTold) {
  for (const auto& [name, description] :
       {std::pair<QString, QString>{"progressLabel",
                                    "alert progress=0.5 buttons=OK progressLabelTextColor=magenta label="},
        {"buttons", "alert buttonsTitleColor=magenta buttons="}}) {
    SCOPED_TRACE(name.toStdString());
    Dialog dialog = showing(description + QString("Hm_").repeated(60));
    std::vector<double> heights;
    for (const char* lines : {"1", "2", "3", "0"}) {
      change(*dialog, name + "NumberOfLines=" + lines);
      heights.push_back(inkHeight(dialog));
    }
    EXPECT_LT(heights[0], 20);
    EXPECT_GT(heights[1], heights[0] + 12);
    EXPECT_NEAR(heights[2] - heights[1], heights[1] - heights[0], 4);
    EXPECT_GT(heights[3], heights[2] + 12);
    close(dialog);
    // Only the second half of it is high.
    dialog = showing(description + QString(".").repeated(400) + QString("H").repeated(200));
    change(*dialog, name + "Font=fixed16");
    const int middle = frameOf(dialog)->width() / 2;
    for (const auto& [mode, left, right] :
         {std::tuple("Head", true, true), {"Middle", false, true}, {"Tail", false, false}}) {
      change(*dialog, name + "LineBreakMode=" + mode);
      letGo();
      const QImage box = seen(frameOf(dialog));
      const auto high = [](const QImage& part) { return extentOf(part).height() > 6; };
      EXPECT_EQ(high(box.copy(0, 0, middle - 20, box.height())), left) << mode;
      EXPECT_EQ(high(box.copy(middle + 20, 0, middle, box.height())), right) << mode;
    }
    close(dialog);
  }
}

TEST_F(LooksOfTexts, OfButtonsShrinkAsFarAsTheyMay) {
  QString wide;
  while (RQAlertViewTextLayout::singleLineWidth(wide, systemFontOfSize(40)) < 400) wide += u'H';
  const Dialog dialog = showing(
      "alert buttonsTitleColor=magenta buttonsFont=40 buttonsAdjustsFontSizeToFitWidth=0 "
      "buttonsMinimumScaleFactor=1 buttons=" +
      wide);
  const double whole = inkHeight(dialog);
  change(*dialog, "buttonsMinimumScaleFactor=0.5");
  EXPECT_EQ(inkHeight(dialog), whole);
  change(*dialog, "buttonsAdjustsFontSizeToFitWidth=1");
  EXPECT_NEAR(inkHeight(dialog) / whole, 264.0 / 400, 0.08);
  change(*dialog, "buttonsMinimumScaleFactor=0.9");
  EXPECT_NEAR(inkHeight(dialog) / whole, 0.9, 0.06);
}

TEST_F(LooksOfTexts, OfButtonsHaveTheirIconBesideThem) {
  const Dialog dialog = showing("alert buttons=Hm buttonsTitleColor=magenta button0.icon=lime*12");
  for (const char* alignment : {"Left", "Center", "Right"}) {
    for (const char* position : {"0", "1"}) {
      SCOPED_TRACE(std::string(alignment) + " " + position);
      change(*dialog, QString("buttonsTextAlignment=%1 buttonsIconPosition=%2").arg(alignment, position));
      const QRect text = ink(dialog);
      const QRect icon = extentOf(seen(frameOf(dialog)), Qt::green);
      EXPECT_EQ(icon.size(), QSize(12, 12));
      EXPECT_NEAR(*position == '0' ? text.left() - icon.right() : icon.left() - text.right(), 10, 2);
      const int before = (text | icon).left();
      const int after = frameOf(dialog)->width() - (text | icon).right() - 1;
      if (alignment == std::string("Center")) {
        EXPECT_NEAR(before, after, 4);
      } else {
        EXPECT_LT(*alignment == 'L' ? before : after, 15);
      }
    }
  }
}

// What a finger, or the application, does to a button.
const QStringList touches{"", "Highlighted", "Disabled"};

class LooksOfButtons : public Pictures {
 protected:
  // As the user sees the button or row with the title in this state.
  static QImage seenIn(const QString& touch, const Dialog& dialog, const QString& title) {
    const int enabled = touch != "Disabled";
    change(*dialog,
           QString("buttonsEnabled=%1 cancelButtonEnabled=%1 destructiveButtonEnabled=%1").arg(enabled));
    letGo();
    const auto [widget, place] = placeOf(dialog, title);
    if (touch == "Highlighted") QTest::mousePress(widget, Qt::LeftButton, {}, place.center());
    const QImage picture = seen(widget, place);
    // Far from every button, so that nothing is tapped.
    if (touch == "Highlighted") QTest::mouseRelease(widget, Qt::LeftButton, {}, {-500, -500});
    return picture;
  }
  static bool has(const QImage& picture, const QColor& color) {
    return !extentWhere(picture, [&color](const QColor& pixel) { return pixel == color; }).isNull();
  }
};

TEST_F(LooksOfButtons, AreThoseOfTheirKindAndState) {
  const std::pair<QString, QString> kinds[] = {
      {"buttons", "Act"}, {"cancelButton", "No"}, {"destructiveButton", "Del"}};
  // One for each property of each kind.
  const auto colorOf = [](const QString& kind, const QString& property) {
    return QColor(60 + static_cast<int>(kind.size()) * 10, 40 + static_cast<int>(property.size()) * 5, 200);
  };
  for (const char* list : {"0", "1"}) {
    const Dialog dialog =
        dialogFrom(QString("alert buttons=Act cancel=No destructive=Del oneRowOneButton=") + list);
    for (const auto& [kind, title] : kinds) {
      // Thick enough for pixels of the colour itself.
      change(*dialog, kind + "Font=bold30");
      for (const QString& touch : touches) {
        for (const QString& property : {"TitleColor" + touch, "BackgroundColor" + touch})
          change(*dialog, kind + property + "=" + colorOf(kind, property).name());
      }
    }
    dialog->show();
    for (const auto& [kind, title] : kinds) {
      for (const QString& touch : touches) {
        SCOPED_TRACE((kind + touch + list).toStdString());
        const QImage picture = seenIn(touch, dialog, title);
        EXPECT_TRUE(has(picture, colorOf(kind, "TitleColor" + touch)));
        EXPECT_EQ(picture.pixelColor(14, 14), colorOf(kind, "BackgroundColor" + touch));
      }
      change(*dialog, kind + "BackgroundColorDisabled=none");
      EXPECT_EQ(seenIn("Disabled", dialog, title).pixelColor(14, 14), colorOf(kind, "BackgroundColor"))
          << "without a colour of its own";
    }
    close(dialog);
  }
}

TEST_F(LooksOfButtons, MayHaveAnIconForEachState) {
  const QString plain =
      "alert buttons=Act cancel=No destructive=Del button0.icon=magenta*10 "
      "buttonsBackgroundColorHighlighted=white oneRowOneButton=";
  for (const char* list : {"0", "1"}) {
    for (const QString& own :
         {QString(), QString(" button0.iconHighlighted=lime*10 button0.iconDisabled=yellow*10")}) {
      const Dialog dialog = showing(plain + list + own);
      for (const auto& [touch, color] : {std::pair<const char*, QColor>("", telling),
                                         {"Highlighted", QColor(Qt::green)},
                                         {"Disabled", QColor(Qt::yellow)}}) {
        const QImage picture = seenIn(touch, dialog, "Act");
        for (const QColor& each : {telling, QColor(Qt::green), QColor(Qt::yellow)})
          EXPECT_EQ(has(picture, each), each == (own.isEmpty() ? telling : color)) << touch;
      }
      close(dialog);
    }
  }
}

}  // namespace
