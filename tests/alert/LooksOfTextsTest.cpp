// The texts of a dialog have the colours, fonts, places and icons they were given, each kind of button its
// own.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Pictures.h"
#include "platform/ApplicationStyle.h"

#include <array>
#include <functional>

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
    // Of those that can be cut off.
    void (RQAlertView::*setNumberOfLines)(const int&) = nullptr;
    void (RQAlertView::*setLineBreakMode)(const NSLineBreakMode&) = nullptr;
    // Of buttons.
    void (RQAlertView::*setAdjusts)(const bool&) = nullptr;
    void (RQAlertView::*setMinimumScale)(const double&) = nullptr;
    void (RQAlertView::*setIconPosition)(const RQAlertViewButtonIconPosition&) = nullptr;
    void (*setIcon)(RQAlertView& dialog, const QPixmap& icon) = nullptr;
  };
#define OF_TEXT(Name, make, Kind)                                                            \
#Name, make, &RQAlertView::set##Name##Kind##Color, &RQAlertView::set##Name##TextAlignment, \
      &RQAlertView::set##Name##Font
#define OF_LIMITED(Name) &RQAlertView::set##Name##NumberOfLines, &RQAlertView::set##Name##LineBreakMode
#define OF_BUTTON(Name)                                                 \
  OF_LIMITED(Name), &RQAlertView::set##Name##AdjustsFontSizeToFitWidth, \
      &RQAlertView::set##Name##MinimumScaleFactor, &RQAlertView::set##Name##IconPosition

  const std::vector<Text> texts{
      {OF_TEXT(
          Title, [](const QString& text) { return headed(text, "Words"); }, Text)},
      {OF_TEXT(
          Message, [](const QString& text) { return headed("Words", text); }, Text)},
      {OF_TEXT(TextFields, withText, Text)},
      {OF_TEXT(ProgressLabel, withProgress, Text), OF_LIMITED(ProgressLabel)},
      {OF_TEXT(
           Buttons, [](const QString& text) { return alert({text}); }, Title),
       OF_BUTTON(Buttons),
       [](RQAlertView& dialog, const QPixmap& icon) {
         dialog.setButtonPropertiesAtIndex(
             0, [&](RQAlertViewButtonProperties& properties) { properties.iconImage = icon; });
       }},
      {OF_TEXT(
           CancelButton, [](const QString& text) { return alert({}, text); }, Title),
       OF_BUTTON(CancelButton),
       [](RQAlertView& dialog, const QPixmap& icon) { dialog.setCancelButtonIconImage(icon); }},
      {OF_TEXT(
           DestructiveButton, [](const QString& text) { return alert({}, none, text); }, Title),
       OF_BUTTON(DestructiveButton),
       [](RQAlertView& dialog, const QPixmap& icon) { dialog.setDestructiveButtonIconImage(icon); }},
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

  // Shows it with its text in the telling colour.
  static Dialog shown(const Text& text, const QString& words) {
    const Dialog dialog = text.make(words);
    ((*dialog).*text.setColor)(telling);
    dialog->show();
    letGo();
    return dialog;
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
    const Dialog dialog = shown(text, "Hm");
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

TEST_F(LooksOfTexts, TakeNoMoreLinesThanTheyMay) {
  for (const Text& text : texts) {
    if (!text.setNumberOfLines) continue;
    SCOPED_TRACE(text.name);
    const Dialog dialog = shown(text, QString("Hm ").repeated(60));
    const int one = ink(dialog).height();
    ((*dialog).*text.setNumberOfLines)(2);
    const int two = ink(dialog).height();
    ((*dialog).*text.setNumberOfLines)(3);
    const int three = ink(dialog).height();
    EXPECT_LT(one, 20);
    EXPECT_GT(two, one + 12);
    EXPECT_NEAR(three - two, two - one, 4);
    ((*dialog).*text.setNumberOfLines)(0);
    EXPECT_GT(ink(dialog).height(), three + 12);
    close(dialog);
  }
}

TEST_F(LooksOfTexts, AreCutOffWhereTheirLineBreakModeSays) {
  // Only the second half of it is high.
  const QString text = QString(".").repeated(400) + QString("H").repeated(200);
  for (const Text& limited : texts) {
    if (!limited.setLineBreakMode) continue;
    SCOPED_TRACE(limited.name);
    const Dialog dialog = shown(limited, text);
    ((*dialog).*limited.setFont)(fixedPitchFontOfSize(16));
    const int middle = frameOf(dialog)->width() / 2;
    const auto isHigh = [&] {
      const QImage box = seen(frameOf(dialog));
      const auto high = [](const QImage& part) { return extentOf(part, telling).height() > 6; };
      return std::pair(high(box.copy(0, 0, middle - 20, box.height())),
                       high(box.copy(middle + 20, 0, middle, box.height())));
    };
    for (const auto& [mode, left, right] : {std::tuple(NSLineBreakMode::ByTruncatingHead, true, true),
                                            std::tuple(NSLineBreakMode::ByTruncatingMiddle, false, true),
                                            std::tuple(NSLineBreakMode::ByTruncatingTail, false, false)}) {
      ((*dialog).*limited.setLineBreakMode)(mode);
      letGo();
      EXPECT_EQ(isHigh(), std::pair(left, right)) << static_cast<int>(mode);
    }
    close(dialog);
  }
}

TEST_F(LooksOfTexts, OfButtonsShrinkAsFarAsTheyMay) {
  for (const Text& button : texts) {
    if (!button.setIcon) continue;
    SCOPED_TRACE(button.name);
    const QFont font = systemFontOfSize(40);
    QString wide;
    while (RQAlertViewTextLayout::singleLineWidth(wide, font) < 400) wide += u'H';
    const Dialog dialog = shown(button, wide);
    ((*dialog).*button.setFont)(font);
    ((*dialog).*button.setAdjusts)(false);
    const double whole = ink(dialog).height();
    ((*dialog).*button.setMinimumScale)(0.5);
    EXPECT_EQ(ink(dialog).height(), whole);
    ((*dialog).*button.setAdjusts)(true);
    EXPECT_NEAR(ink(dialog).height() / whole, 264.0 / 400, 0.08);
    ((*dialog).*button.setMinimumScale)(0.9);
    EXPECT_NEAR(ink(dialog).height() / whole, 0.9, 0.06);
    close(dialog);
  }
}

TEST_F(LooksOfTexts, OfButtonsHaveTheirIconBesideThem) {
  using Position = RQAlertViewButtonIconPosition;
  for (const Text& button : texts) {
    if (!button.setIcon) continue;
    for (const auto alignment : {NSTextAlignment::Left, NSTextAlignment::Center, NSTextAlignment::Right}) {
      for (const auto position : {Position::Left, Position::Right}) {
        SCOPED_TRACE(std::string(button.name) + ", alignment " + std::to_string(static_cast<int>(alignment)) +
                     ", position " + std::to_string(static_cast<int>(position)));
        const Dialog dialog = shown(button, "Hm");
        const QColor iconColor(Qt::green);
        button.setIcon(*dialog, pixmapOf(iconColor, 12));
        ((*dialog).*button.setAlignment)(alignment);
        ((*dialog).*button.setIconPosition)(position);
        const QRect text = ink(dialog);
        const QRect icon = extentOf(seen(frameOf(dialog)), iconColor);
        EXPECT_EQ(icon.size(), QSize(12, 12));
        const int gap = position == Position::Left ? text.left() - icon.right() : icon.left() - text.right();
        EXPECT_GE(gap, 8);
        EXPECT_LE(gap, 12);
        const QRect both = text | icon;
        const int before = both.left();
        const int after = frameOf(dialog)->width() - both.right() - 1;
        if (alignment == NSTextAlignment::Center) {
          EXPECT_NEAR(before, after, 4);
        } else {
          EXPECT_LT(alignment == NSTextAlignment::Left ? before : after, 15);
        }
        close(dialog);
      }
    }
  }
}

// What a finger, or the application, does to a button.
enum class State { Normal, Highlighted, Disabled };
constexpr std::initializer_list<State> states{State::Normal, State::Highlighted, State::Disabled};

class LooksOfButtons : public Pictures {
 protected:
  // As the user sees the button or row that bears `title` in this state.
  static QImage seenIn(State state, const Dialog& dialog, const QString& title) {
    if (state == State::Disabled) {
      dialog->setButtonsEnabled(false);
      dialog->setCancelButtonEnabled(false);
      dialog->setDestructiveButtonEnabled(false);
    }
    letGo();
    if (RQAlertViewButton* button = buttonOf(dialog, title)) {
      button->setDown(state == State::Highlighted);
      return seen(button);
    }
    RQAlertViewButtonList* list = listOf(dialog);
    int row = 0;
    while (list->rows().at(row).title != title) ++row;
    const QRect place = list->visualRect(list->model()->index(row, 0));
    if (state == State::Highlighted) {
      QTest::mousePress(list->viewport(), Qt::LeftButton, {}, place.center());
    }
    const QImage picture = seen(list, place);
    // Far from every row, so that nothing is tapped.
    if (state == State::Highlighted) QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, {-500, -500});
    return picture;
  }
  static Dialog three(bool list) {
    const Dialog dialog = alert({action}, cancel, destructive);
    dialog->setOneRowOneButton(list);
    return dialog;
  }
};

TEST_F(LooksOfButtons, AreThoseOfTheirKindAndState) {
  constexpr std::size_t colors = 6;
  struct Kind {
    const char* name;
    const QString& title;
    std::array<void (RQAlertView::*)(const QColor&), colors> set;
  };
#define KIND(Name, title)                                                                        \
  {                                                                                              \
#Name, title, {                                                                              \
      &RQAlertView::set##Name##TitleColor, &RQAlertView::set##Name##TitleColorHighlighted,       \
          &RQAlertView::set##Name##TitleColorDisabled, &RQAlertView::set##Name##BackgroundColor, \
          &RQAlertView::set##Name##BackgroundColorHighlighted,                                   \
          &RQAlertView::set##Name##BackgroundColorDisabled                                       \
    }                                                                                            \
  }
  const std::vector<Kind> kinds{KIND(Buttons, action), KIND(CancelButton, cancel),
                                KIND(DestructiveButton, destructive)};
#undef KIND
  struct Color {
    const char* name;
    bool fills;
    std::vector<State> seenIn;
  };
  const std::array<Color, colors> rules{
      Color{"TitleColor", false, {State::Normal}},
      {"TitleColorHighlighted", false, {State::Highlighted}},
      {"TitleColorDisabled", false, {State::Disabled}},
      {"BackgroundColor", true, {State::Normal, State::Disabled}},
      {"BackgroundColorHighlighted", true, {State::Highlighted}},
      {"BackgroundColorDisabled", true, {State::Disabled}},
  };
  const auto check = [&](const Kind& kind, std::size_t color, const Kind& lookedAt, bool list, State state) {
    const Dialog dialog = three(list);
    ((*dialog).*kind.set[color])(telling);
    dialog->show();
    const QImage picture = seenIn(state, dialog, lookedAt.title);
    const auto& [name, fills, seenIn] = rules[color];
    const bool expected = kind.title == lookedAt.title && std::count(seenIn.begin(), seenIn.end(), state) > 0;
    EXPECT_EQ(shows(picture), expected) << kind.name << name << " at " << lookedAt.name << ", state "
                                        << static_cast<int>(state) << (list ? ", in a list" : "");
    EXPECT_EQ(picture.pixelColor(14, 14) == telling, expected && fills) << kind.name << name;
    close(dialog);
  };
  for (const bool list : {false, true}) {
    for (const Kind& kind : kinds) {
      for (std::size_t color = 0; color < colors; ++color) {
        for (const Kind& lookedAt : kinds) {
          for (const State state : states) check(kind, color, lookedAt, list, state);
        }
      }
    }
  }
}

TEST_F(LooksOfButtons, MayHaveAnIconForEachState) {
  for (const bool list : {false, true}) {
    const auto showsIn = [&](State state, bool ofItsOwn) {
      const Dialog dialog = three(list);
      dialog->setButtonPropertiesAtIndex(0, [&](RQAlertViewButtonProperties& properties) {
        properties.iconImage = pixmapOf(telling, 10);
        properties.backgroundColorHighlighted = Qt::white;
        if (!ofItsOwn) return;
        properties.iconImageHighlighted = pixmapOf(Qt::green, 10);
        properties.iconImageDisabled = pixmapOf(Qt::yellow, 10);
      });
      dialog->show();
      const QImage picture = seenIn(state, dialog, action);
      close(dialog);
      return std::vector<bool>{shows(picture), shows(picture, Qt::green), shows(picture, Qt::yellow)};
    };
    EXPECT_THAT(showsIn(State::Normal, true), testing::ElementsAre(true, false, false));
    EXPECT_THAT(showsIn(State::Highlighted, true), testing::ElementsAre(false, true, false));
    EXPECT_THAT(showsIn(State::Disabled, true), testing::ElementsAre(false, false, true));
    for (const State state : states)
      EXPECT_THAT(showsIn(state, false), testing::ElementsAre(true, false, false));
  }
}

}  // namespace
