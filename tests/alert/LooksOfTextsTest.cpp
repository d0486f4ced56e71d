// The texts of a dialog have the colours, fonts, places and icons they were given, each kind of button its
// own.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Pictures.h"

#include <array>

namespace {

const QString action = "Act";
const QString cancel = "No";
const QString destructive = "Del";

class LooksOfTexts : public Pictures {
 protected:
  // A text of its own in a dialog of its own, and what it can be given.
  struct Text {
    const char* name;
    Dialog (*make)(const QString& text);
    void (RQAlertView::*setColor)(const QColor&);
    void (RQAlertView::*setAlignment)(const NSTextAlignment&);
    void (RQAlertView::*setFont)(const QFont&);
  };
#define OF_TEXT(Name, make, Kind)                                                              \
  {                                                                                            \
#Name, make, &RQAlertView::set##Name##Kind##Color, &RQAlertView::set##Name##TextAlignment, \
        &RQAlertView::set##Name##Font                                                          \
  }

  const std::vector<Text> texts{
      OF_TEXT(
          Title, [](const QString& text) { return headed(text, "Words"); }, Text),
      OF_TEXT(
          Message, [](const QString& text) { return headed("Words", text); }, Text),
      OF_TEXT(TextFields, withText, Text),
      OF_TEXT(ProgressLabel, withProgress, Text),
      OF_TEXT(Buttons, button, Title),
      OF_TEXT(
          CancelButton, [](const QString& text) { return alert({}, text); }, Title),
      OF_TEXT(
          DestructiveButton, [](const QString& text) { return alert({}, none, text); }, Title),
  };

  static Dialog withText(const QString& text) {
    const Dialog dialog = withFields(1);
    dialog->setTextFieldsClearButtonMode(UITextFieldViewMode::Never);
    dialog->textFieldsArray()[0]->setText(text);
    return dialog;
  }
  static Dialog headed(const QString& title, const QString& message) {
    return RQAlertView::alertViewWithTitle(title, message, alertStyle, {action}, none, none);
  }
  static Dialog button(const QString& title) {
    return alert({title});
  }
  static Dialog shown(const Dialog& dialog) {
    if (dialog->type() == RQAlertViewType::Default) dialog->setButtonsTitleColor(telling);
    dialog->setProgressLabelTextColor(telling);
    return showing(dialog);
  }
  // Where the letters are, in the box.
  static QRect ink(const Dialog& dialog) {
    letGo();
    return extentOf(seen(frameOf(dialog)), telling);
  }
};

TEST_F(LooksOfTexts, HaveTheirOwnColorFontAndAlignment) {
  for (const Text& text : texts) {
    SCOPED_TRACE(text.name);
    const Dialog dialog = text.make("Hm");
    ((*dialog).*text.setColor)(telling);
    dialog->show();
    const QRect before = ink(dialog);
    ASSERT_FALSE(before.isNull());
    EXPECT_LT(before.height(), 20) << "another text has this colour too";
    const int middle = frameOf(dialog)->width() / 2;
    ((*dialog).*text.setAlignment)(NSTextAlignment::Left);
    EXPECT_LT(ink(dialog).right(), middle - 30);
    ((*dialog).*text.setAlignment)(NSTextAlignment::Right);
    EXPECT_GT(ink(dialog).left(), middle + 30);
    ((*dialog).*text.setAlignment)(NSTextAlignment::Center);
    EXPECT_NEAR(ink(dialog).center().x(), middle, 3);
    ((*dialog).*text.setFont)(systemFontOfSize(40));
    EXPECT_GT(ink(dialog).height(), before.height() + 8);
    close(dialog);
  }
}

TEST_F(LooksOfTexts, TakeNoMoreLinesThanTheyMayAndAreCutOffWhereTheyAreTold) {
  const auto limited = [](auto make, auto setLines, auto setMode, auto setFont) {
    Dialog dialog = shown(make(QString("Hm ").repeated(60)));
    std::vector<int> heights;
    for (const int lines : {1, 2, 3, 0}) {
      ((*dialog).*setLines)(lines);
      heights.push_back(ink(dialog).height());
    }
    EXPECT_LT(heights[0], 20);
    EXPECT_GT(heights[1], heights[0] + 12);
    EXPECT_NEAR(heights[2] - heights[1], heights[1] - heights[0], 4);
    EXPECT_GT(heights[3], heights[2] + 12);
    close(dialog);
    // Only the second half of it is high.
    dialog = shown(make(QString(".").repeated(400) + QString("H").repeated(200)));
    ((*dialog).*setFont)(fixedPitchFontOfSize(16));
    const int middle = frameOf(dialog)->width() / 2;
    for (const auto& [mode, left, right] : {std::tuple(NSLineBreakMode::ByTruncatingHead, true, true),
                                            std::tuple(NSLineBreakMode::ByTruncatingMiddle, false, true),
                                            std::tuple(NSLineBreakMode::ByTruncatingTail, false, false)}) {
      ((*dialog).*setMode)(mode);
      letGo();
      const QImage box = seen(frameOf(dialog));
      const auto high = [](const QImage& part) { return extentOf(part, telling).height() > 6; };
      EXPECT_EQ(high(box.copy(0, 0, middle - 20, box.height())), left) << static_cast<int>(mode);
      EXPECT_EQ(high(box.copy(middle + 20, 0, middle, box.height())), right) << static_cast<int>(mode);
    }
    close(dialog);
  };
  limited(withProgress, &RQAlertView::setProgressLabelNumberOfLines,
          &RQAlertView::setProgressLabelLineBreakMode, &RQAlertView::setProgressLabelFont);
  limited(button, &RQAlertView::setButtonsNumberOfLines, &RQAlertView::setButtonsLineBreakMode,
          &RQAlertView::setButtonsFont);
}

TEST_F(LooksOfTexts, OfButtonsShrinkAsFarAsTheyMay) {
  const QFont font = systemFontOfSize(40);
  QString wide;
  while (RQAlertViewTextLayout::singleLineWidth(wide, font) < 400) wide += u'H';
  const Dialog dialog = shown(button(wide));
  dialog->setButtonsFont(font);
  dialog->setButtonsAdjustsFontSizeToFitWidth(false);
  const double whole = ink(dialog).height();
  dialog->setButtonsMinimumScaleFactor(0.5);
  EXPECT_EQ(ink(dialog).height(), whole);
  dialog->setButtonsAdjustsFontSizeToFitWidth(true);
  EXPECT_NEAR(ink(dialog).height() / whole, 264.0 / 400, 0.08);
  dialog->setButtonsMinimumScaleFactor(0.9);
  EXPECT_NEAR(ink(dialog).height() / whole, 0.9, 0.06);
}

TEST_F(LooksOfTexts, OfButtonsHaveTheirIconBesideThem) {
  using Position = RQAlertViewButtonIconPosition;
  const Dialog dialog = shown(button("Hm"));
  const QColor iconColor(Qt::green);
  dialog->setButtonPropertiesAtIndex(0, [&](auto& button) { button.iconImage = pixmapOf(iconColor, 12); });
  for (const auto alignment : {NSTextAlignment::Left, NSTextAlignment::Center, NSTextAlignment::Right}) {
    for (const auto position : {Position::Left, Position::Right}) {
      SCOPED_TRACE(std::to_string(static_cast<int>(alignment)) + " " +
                   std::to_string(static_cast<int>(position)));
      dialog->setButtonsTextAlignment(alignment);
      dialog->setButtonsIconPosition(position);
      const QRect text = ink(dialog);
      const QRect icon = extentOf(seen(frameOf(dialog)), iconColor);
      EXPECT_EQ(icon.size(), QSize(12, 12));
      const int gap = position == Position::Left ? text.left() - icon.right() : icon.left() - text.right();
      EXPECT_NEAR(gap, 10, 2);
      const int before = (text | icon).left();
      const int after = frameOf(dialog)->width() - (text | icon).right() - 1;
      if (alignment == NSTextAlignment::Center) {
        EXPECT_NEAR(before, after, 4);
      } else {
        EXPECT_LT(alignment == NSTextAlignment::Left ? before : after, 15);
      }
    }
  }
}

// What a finger, or the application, does to a button.
enum class Touch { Normal, Highlighted, Disabled };
constexpr std::initializer_list<Touch> touches{Touch::Normal, Touch::Highlighted, Touch::Disabled};

class LooksOfButtons : public Pictures {
 protected:
  // As the user sees the button or row that bears `title` in this state.
  static QImage seenIn(Touch touch, const Dialog& dialog, const QString& title) {
    dialog->setButtonsEnabled(touch != Touch::Disabled);
    dialog->setCancelButtonEnabled(touch != Touch::Disabled);
    dialog->setDestructiveButtonEnabled(touch != Touch::Disabled);
    letGo();
    if (RQAlertViewButton* button = buttonOf(dialog, title)) {
      button->setDown(touch == Touch::Highlighted);
      return seen(button);
    }
    RQAlertViewButtonList* list = listOf(dialog);
    int row = 0;
    while (list->rows().at(row).title != title) ++row;
    const QRect place = list->visualRect(list->model()->index(row, 0));
    if (touch == Touch::Highlighted) QTest::mousePress(list->viewport(), Qt::LeftButton, {}, place.center());
    const QImage picture = seen(list, place);
    // Far from every row, so that nothing is tapped.
    if (touch == Touch::Highlighted) QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, {-500, -500});
    return picture;
  }
  static bool has(const QImage& picture, const QColor& color) {
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, y) == color) return true;
      }
    }
    return false;
  }
};

TEST_F(LooksOfButtons, AreThoseOfTheirKindAndState) {
  struct Kind {
    const QString& title;
    std::array<void (RQAlertView::*)(const QColor&), 6> set;
    void (RQAlertView::*setFont)(const QFont&);
  };
#define KIND(Name, title)                                     \
  {                                                           \
    title,                                                    \
        {&RQAlertView::set##Name##TitleColor,                 \
         &RQAlertView::set##Name##TitleColorHighlighted,      \
         &RQAlertView::set##Name##TitleColorDisabled,         \
         &RQAlertView::set##Name##BackgroundColor,            \
         &RQAlertView::set##Name##BackgroundColorHighlighted, \
         &RQAlertView::set##Name##BackgroundColorDisabled},   \
        &RQAlertView::set##Name##Font                         \
  }
  const std::vector<Kind> kinds{KIND(Buttons, action), KIND(CancelButton, cancel),
                                KIND(DestructiveButton, destructive)};
  const auto colorOf = [](std::size_t kind, std::size_t property) {
    return QColor(60 + 60 * static_cast<int>(kind), 40 * static_cast<int>(property), 200);
  };
  for (const bool list : {false, true}) {
    const Dialog dialog = alert({action}, cancel, destructive);
    dialog->setOneRowOneButton(list);
    // Thick enough for pixels of the colour itself.
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
      ((*dialog).*kinds[kind].setFont)(boldSystemFontOfSize(30));
      for (std::size_t property = 0; property < 6; ++property)
        ((*dialog).*kinds[kind].set[property])(colorOf(kind, property));
    }
    dialog->show();
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
      for (const Touch touch : touches) {
        SCOPED_TRACE(kinds[kind].title.toStdString() + ", state " + std::to_string(static_cast<int>(touch)) +
                     (list ? ", in a list" : ""));
        const QImage picture = seenIn(touch, dialog, kinds[kind].title);
        const auto property = static_cast<std::size_t>(touch);
        EXPECT_TRUE(has(picture, colorOf(kind, property)));
        EXPECT_EQ(picture.pixelColor(14, 14), colorOf(kind, property + 3));
      }
      ((*dialog).*kinds[kind].set[5])({});
      const QImage disabled = seenIn(Touch::Disabled, dialog, kinds[kind].title);
      EXPECT_EQ(disabled.pixelColor(14, 14), colorOf(kind, 3)) << "without a colour of its own";
    }
    close(dialog);
  }
}

TEST_F(LooksOfButtons, MayHaveAnIconForEachState) {
  for (const bool list : {false, true}) {
    for (const bool ofItsOwn : {false, true}) {
      const Dialog dialog = alert({action}, cancel, destructive);
      dialog->setOneRowOneButton(list);
      dialog->setButtonPropertiesAtIndex(0, [&](RQAlertViewButtonProperties& properties) {
        properties.iconImage = pixmapOf(telling, 10);
        properties.backgroundColorHighlighted = Qt::white;
        if (!ofItsOwn) return;
        properties.iconImageHighlighted = pixmapOf(Qt::green, 10);
        properties.iconImageDisabled = pixmapOf(Qt::yellow, 10);
      });
      dialog->show();
      for (const auto& [touch, color] : {std::pair(Touch::Normal, telling),
                                         {Touch::Highlighted, QColor(Qt::green)},
                                         {Touch::Disabled, QColor(Qt::yellow)}}) {
        const QImage picture = seenIn(touch, dialog, action);
        for (const QColor& each : {telling, QColor(Qt::green), QColor(Qt::yellow)})
          EXPECT_EQ(has(picture, each), each == (ofItsOwn ? color : telling)) << static_cast<int>(touch);
      }
      close(dialog);
    }
  }
}

}  // namespace
