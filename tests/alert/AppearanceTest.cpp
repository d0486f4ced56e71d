// Where every property of a dialog's look comes from.
#include "RQAlertView/RQAlertViewHelper.h"
#include "alert/Dialogs.h"
#include "platform/UIDevice.h"
#include "platform/UIFont.h"

#include <cmath>
#include <functional>
#include <limits>

namespace {

class Appearance : public Dialogs {
 protected:
  // Every test leaves the shared object as a new one would be.
  void TearDown() override {
    RQAlertView::resetAppearance();
    UIDevice::currentDevice().setUserInterfaceIdiom(std::nullopt);
    UIDevice::currentDevice().setSystemVersion(14);
    Dialogs::TearDown();
  }
};

// A value as text, so that one table can hold colours, fonts, numbers and switches.
std::string text(const QColor& color) {
  if (!color.isValid()) return "none";
  const auto part = [](float value) {
    return QString::number(std::round(value * 1000) / 1000).toStdString();
  };
  return part(color.redF()) + "," + part(color.greenF()) + "," + part(color.blueF()) + "," +
         part(color.alphaF());
}
std::string text(const QFont& font) {
  return (font.bold() ? "bold " : "system ") + QString::number(font.pointSizeF() * 96 / 72).toStdString();
}
std::string text(const QPixmap& picture) {
  return picture.isNull() ? "none" : "picture";
}
std::string text(const QPointF& point) {
  return QString::number(point.x()).toStdString() + "," + QString::number(point.y()).toStdString();
}
std::string text(bool value) {
  return value ? "yes" : "no";
}
std::string text(double value) {
  return QString::number(value, 'g', 16).toStdString();
}
std::string text(int value) {
  return std::to_string(value);
}
std::string text(const std::optional<UIBlurEffectStyle>& style) {
  return style ? "blur" : "none";
}
std::string text(const std::shared_ptr<RQAlertViewCell>& cell) {
  return cell ? "cell" : "none";
}
template <typename Value>
requires std::is_enum_v<Value> std::string text(Value value) {
  return std::to_string(static_cast<int>(value));
}

struct Property {
  std::function<std::string(RQAlertView&)> read;
  const char* name;
  const char* value;
};
#define PROPERTY(name, value)                                             \
  {                                                                       \
    [](RQAlertView& dialog) { return text(dialog.name()); }, #name, value \
  }

const char* const tint = "0,0.5,1,1";
const char* const white = "1,1,1,1";
const char* const notSet = "9.223372036854776e+18";

const std::vector<Property> defaults{
    PROPERTY(heightCell, "cell"),
    PROPERTY(windowLevel, "0"),
    PROPERTY(dismissOnAction, "yes"),
    PROPERTY(tintColor, tint),
    PROPERTY(coverColor, "0,0,0,0.35"),
    PROPERTY(coverBlurEffect, "none"),
    PROPERTY(coverAlpha, "1"),
    PROPERTY(backgroundColor, white),
    PROPERTY(backgroundBlurEffect, "none"),
    PROPERTY(textFieldsHeight, "44"),
    PROPERTY(offsetVertical, "8"),
    PROPERTY(cancelButtonOffsetY, "8"),
    PROPERTY(heightMax, notSet),
    PROPERTY(separatorsColor, "0.85,0.85,0.85,1"),
    PROPERTY(indicatorStyle, "1"),
    PROPERTY(showsVerticalScrollIndicator, "no"),
    PROPERTY(padShowsActionSheetFromBottom, "no"),
    PROPERTY(oneRowOneButton, "no"),
    PROPERTY(shouldDismissAnimated, "yes"),
    PROPERTY(layerCornerRadius, "12"),
    PROPERTY(layerBorderColor, "none"),
    PROPERTY(layerShadowColor, "none"),
    PROPERTY(layerBorderWidth, "0"),
    PROPERTY(layerShadowRadius, "0"),
    PROPERTY(layerShadowOffset, "0,0"),
    PROPERTY(animationDuration, "0.5"),
    PROPERTY(initialScale, "1.2"),
    PROPERTY(finalScale, "0.95"),
    PROPERTY(titleTextAlignment, "1"),
    PROPERTY(messageTextAlignment, "1"),
    PROPERTY(messageFont, "system 14"),
    PROPERTY(buttonsTitleColor, tint),
    PROPERTY(buttonsTitleColorHighlighted, white),
    PROPERTY(buttonsTitleColorDisabled, "0.5,0.5,0.5,1"),
    PROPERTY(buttonsTextAlignment, "1"),
    PROPERTY(buttonsFont, "system 18"),
    PROPERTY(buttonsBackgroundColor, "0,0,0,0"),
    PROPERTY(buttonsBackgroundColorHighlighted, tint),
    PROPERTY(buttonsBackgroundColorDisabled, "none"),
    PROPERTY(buttonsNumberOfLines, "1"),
    PROPERTY(buttonsLineBreakMode, "5"),
    PROPERTY(buttonsMinimumScaleFactor, "0.7777777777777778"),
    PROPERTY(buttonsAdjustsFontSizeToFitWidth, "yes"),
    PROPERTY(buttonsEnabled, "yes"),
    PROPERTY(buttonsIconPosition, "0"),
    PROPERTY(cancelButtonTitleColor, tint),
    PROPERTY(cancelButtonTitleColorHighlighted, white),
    PROPERTY(cancelButtonTitleColorDisabled, "0.5,0.5,0.5,1"),
    PROPERTY(cancelButtonTextAlignment, "1"),
    PROPERTY(cancelButtonFont, "bold 18"),
    PROPERTY(cancelButtonBackgroundColor, "0,0,0,0"),
    PROPERTY(cancelButtonBackgroundColorHighlighted, tint),
    PROPERTY(cancelButtonBackgroundColorDisabled, "none"),
    PROPERTY(cancelButtonNumberOfLines, "1"),
    PROPERTY(cancelButtonLineBreakMode, "5"),
    PROPERTY(cancelButtonMinimumScaleFactor, "0.7777777777777778"),
    PROPERTY(cancelButtonAdjustsFontSizeToFitWidth, "yes"),
    PROPERTY(cancelButtonEnabled, "yes"),
    PROPERTY(cancelButtonIconPosition, "0"),
    PROPERTY(destructiveButtonTitleColor, "1,0,0,1"),
    PROPERTY(destructiveButtonTitleColorHighlighted, white),
    PROPERTY(destructiveButtonTitleColorDisabled, "0.5,0.5,0.5,1"),
    PROPERTY(destructiveButtonTextAlignment, "1"),
    PROPERTY(destructiveButtonFont, "system 18"),
    PROPERTY(destructiveButtonBackgroundColor, "0,0,0,0"),
    PROPERTY(destructiveButtonBackgroundColorHighlighted, "1,0,0,1"),
    PROPERTY(destructiveButtonBackgroundColorDisabled, "none"),
    PROPERTY(destructiveButtonNumberOfLines, "1"),
    PROPERTY(destructiveButtonLineBreakMode, "5"),
    PROPERTY(destructiveButtonMinimumScaleFactor, "0.7777777777777778"),
    PROPERTY(destructiveButtonAdjustsFontSizeToFitWidth, "yes"),
    PROPERTY(destructiveButtonEnabled, "yes"),
    PROPERTY(destructiveButtonIconPosition, "0"),
    PROPERTY(activityIndicatorViewStyle, "0"),
    PROPERTY(activityIndicatorViewColor, tint),
    PROPERTY(progressViewProgressTintColor, tint),
    PROPERTY(progressViewTrackTintColor, "0.8,0.8,0.8,1"),
    PROPERTY(progressViewProgressImage, "none"),
    PROPERTY(progressViewTrackImage, "none"),
    PROPERTY(progressLabelTextColor, "0,0,0,1"),
    PROPERTY(progressLabelTextAlignment, "1"),
    PROPERTY(progressLabelFont, "system 14"),
    PROPERTY(progressLabelNumberOfLines, "1"),
    PROPERTY(progressLabelLineBreakMode, "4"),
    PROPERTY(textFieldsBackgroundColor, "0.97,0.97,0.97,1"),
    PROPERTY(textFieldsTextColor, "0,0,0,1"),
    PROPERTY(textFieldsFont, "system 16"),
    PROPERTY(textFieldsTextAlignment, "0"),
    PROPERTY(textFieldsClearsOnBeginEditing, "no"),
    PROPERTY(textFieldsAdjustsFontSizeToFitWidth, "no"),
    PROPERTY(textFieldsMinimumFontSize, "12"),
    PROPERTY(textFieldsClearButtonMode, "3"),
};

TEST_F(Appearance, StartsFromTheSharedDefaultsAndANewDialogCopiesThem) {
  const Dialog dialog = alert();
  for (const Property& property : defaults) {
    EXPECT_EQ(property.read(*RQAlertView::appearance()), property.value) << property.name;
    EXPECT_EQ(property.read(*dialog), property.value) << property.name;
  }
  EXPECT_EQ(dialog->tag(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(text(RQAlertView::appearance()->width()), notSet);
}

TEST_F(Appearance, DependsOnStyleAndTypeUntilItIsSet) {
  const Dialog a = alert();
  const Dialog s = sheet({QStringLiteral("One")});
  EXPECT_EQ(text(a->titleTextColor()), "0,0,0,1");
  EXPECT_EQ(text(s->titleTextColor()), "0.5,0.5,0.5,1");
  EXPECT_EQ(text(a->messageTextColor()), "0,0,0,1");
  EXPECT_EQ(text(s->messageTextColor()), "0.5,0.5,0.5,1");
  EXPECT_EQ(text(a->titleFont()), "bold 18");
  EXPECT_EQ(text(s->titleFont()), "bold 14");
  EXPECT_EQ(a->buttonsHeight(), 44);
  EXPECT_EQ(s->buttonsHeight(), 56);
  EXPECT_TRUE(a->cancelOnTouch());
  EXPECT_FALSE(withFields(1)->cancelOnTouch());

  RQAlertView& shared = *RQAlertView::appearance();
  EXPECT_FALSE(shared.isUserCancelOnTouch() || shared.isUserButtonsHeight() ||
               shared.isUserTitleTextColor() || shared.isUserTitleFont() || shared.isUserMessageTextColor());
  EXPECT_EQ(text(shared.titleTextColor()), "none");
  shared.setCancelOnTouch(true);
  shared.setButtonsHeight(50);
  shared.setTitleTextColor(Qt::green);
  shared.setTitleFont(systemFontOfSize(20));
  shared.setMessageTextColor(Qt::blue);
  EXPECT_TRUE(shared.isUserCancelOnTouch() && shared.isUserButtonsHeight() && shared.isUserTitleTextColor() &&
              shared.isUserTitleFont() && shared.isUserMessageTextColor());
  for (const Dialog& dialog : {withFields(1), sheet({})}) {
    EXPECT_TRUE(dialog->cancelOnTouch());
    EXPECT_EQ(dialog->buttonsHeight(), 50);
    EXPECT_EQ(dialog->titleTextColor(), QColor(Qt::green));
    EXPECT_EQ(text(dialog->titleFont()), "system 20");
    EXPECT_EQ(dialog->messageTextColor(), QColor(Qt::blue));
  }
  // Those made before keep what they had.
  EXPECT_EQ(a->buttonsHeight(), 44);
}

TEST_F(Appearance, IsCopiedWhenADialogIsMadeAndTheTintOnlyOnce) {
  RQAlertView& shared = *RQAlertView::appearance();
  const Dialog before = alert();
  shared.setTintColor(Qt::magenta);
  shared.setBackgroundColor(Qt::black);
  const Dialog after = alert();
  EXPECT_EQ(before->backgroundColor(), QColor(Qt::white));
  EXPECT_EQ(after->backgroundColor(), QColor(Qt::black));
  EXPECT_EQ(after->tintColor(), QColor(Qt::magenta));
  EXPECT_EQ(text(after->buttonsTitleColor()), tint);
  EXPECT_EQ(text(after->cancelButtonBackgroundColorHighlighted()), tint);
}

TEST_F(Appearance, KnowsTheSystemsBeforeTheNinth) {
  UIDevice::currentDevice().setSystemVersion(8.4);
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 6);
  EXPECT_EQ(sheet({})->buttonsHeight(), 44);
  UIDevice::currentDevice().setSystemVersion(9.0);
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 12);
  EXPECT_EQ(sheet({})->buttonsHeight(), 56);
}

TEST_F(Appearance, GivesEveryDialogItsWidth) {
  UIScreen::mainScreen()->resize(375, 667);
  QCoreApplication::processEvents();
  const Dialog a = alert();
  const Dialog s = sheet({QStringLiteral("One")});
  EXPECT_EQ(a->width(), 280);
  EXPECT_EQ(s->width(), 359);
  a->setWidth(500);
  EXPECT_EQ(a->width(), 375);
  a->setWidth(300);
  EXPECT_EQ(a->width(), 300);

  UIScreen::mainScreen()->resize(820, 1180);
  QCoreApplication::processEvents();
  EXPECT_EQ(s->width(), 280);
  EXPECT_TRUE(RQAlertViewHelper::isPadAndNotForce(*s));
  s->setPadShowsActionSheetFromBottom(true);
  EXPECT_EQ(s->width(), 388);
  EXPECT_FALSE(RQAlertViewHelper::isPadAndNotForce(*s));
}

TEST_F(Appearance, EnablesTheButtonsAsTheSharedObjectSays) {
  RQAlertView::appearance()->setButtonsEnabled(false);
  const Dialog dialog = alert({QStringLiteral("A"), QStringLiteral("B")});
  EXPECT_FALSE(dialog->isButtonEnabledAtIndex(1));
  dialog->setButtonEnabled(true, 1);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{false, true}));
  dialog->setButtonsEnabled(true);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{true, true}));
}

}  // namespace
