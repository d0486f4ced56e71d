// Where every property of a dialog's look comes from, and that each is settable.
#include "RQAlertView/RQAlertViewHelper.h"
#include "alert/Dialogs.h"

#include <functional>
#include <limits>

namespace {

class Appearance : public Dialogs {
 protected:
  // Every test leaves the shared object as a new one would be.
  void TearDown() override {
    RQAlertView::resetAppearance();
    UIDevice::currentDevice().setSystemVersion(14);
    Dialogs::TearDown();
  }
};

// A value as text, so that one table can hold colours, fonts, numbers and switches.
std::string text(const QColor& color) {
  if (!color.isValid()) return "none";
  const auto part = [](float value) { return QString::number(value, 'g', 3).toStdString(); };
  return part(color.redF()) + "," + part(color.greenF()) + "," + part(color.blueF()) + "," +
         part(color.alphaF());
}
std::string text(const QFont& font) {
  return (font.bold() ? "bold " : "system ") + QString::number(font.pointSizeF() * 96 / 72).toStdString();
}
std::string text(const QPixmap& picture) {
  return picture.isNull() ? "none" : "a picture";
}
std::string text(const QPointF& point) {
  return std::to_string(int(point.x())) + "," + std::to_string(int(point.y()));
}
std::string text(const std::optional<UIBlurEffectStyle>& blur) {
  return blur ? "blurred" : "none";
}
std::string text(const std::shared_ptr<RQAlertViewCell>& cell) {
  return cell ? "a cell" : "none";
}
template <typename Number>
requires std::is_arithmetic_v<Number> || std::is_enum_v<Number> std::string text(Number value) {
  return QString::number(static_cast<double>(value), 'g', 16).toStdString();
}

// Another value than any default.
template <typename Value>
Value another(const Value& value) {
  if constexpr (std::is_same_v<Value, QColor>) {
    return QColor(1, 2, 3);
  } else if constexpr (std::is_same_v<Value, QFont>) {
    return systemFontOfSize(99);
  } else if constexpr (std::is_same_v<Value, QPixmap>) {
    return QPixmap(1, 1);
  } else if constexpr (std::is_same_v<Value, QPointF>) {
    return {1, 2};
  } else if constexpr (std::is_same_v<Value, std::optional<UIBlurEffectStyle>>) {
    return UIBlurEffectStyle::Dark;
  } else if constexpr (std::is_same_v<Value, bool>) {
    return !value;
  } else if constexpr (std::is_enum_v<Value>) {
    return static_cast<Value>(static_cast<int>(value) == 0 ? 1 : 0);
  } else if constexpr (std::is_arithmetic_v<Value>) {
    return value == 7 ? 8 : 7;
  } else {
    return nullptr;
  }
}

struct Property {
  const char* name;
  std::function<std::string(const RQAlertView&)> read;
  std::function<void(RQAlertView&)> change;
};
#define OF(name, setter)                                                      \
  Property {                                                                  \
#name, [](const RQAlertView& dialog) { return text(dialog.name()); },       \
        [](RQAlertView& dialog) { dialog.setter(another(std::decay_t<decltype(dialog.name())>(dialog.name()))); } \
  }
#define OF_EVERY_KIND(property)                                                                       \
  OF(buttons##property, setButtons##property), OF(cancelButton##property, setCancelButton##property), \
      OF(destructiveButton##property, setDestructiveButton##property)

const char* const tint = "0,0.5,1,1";

// clang-format off
const std::vector<std::pair<std::string, std::vector<Property>>> defaults{
    {tint,
     {OF(tintColor, setTintColor), OF(buttonsTitleColor, setButtonsTitleColor),
      OF(buttonsBackgroundColorHighlighted, setButtonsBackgroundColorHighlighted),
      OF(cancelButtonTitleColor, setCancelButtonTitleColor),
      OF(cancelButtonBackgroundColorHighlighted, setCancelButtonBackgroundColorHighlighted),
      OF(activityIndicatorViewColor, setActivityIndicatorViewColor),
      OF(progressViewProgressTintColor, setProgressViewProgressTintColor)}},
    {"0,0,0,1", {OF(progressLabelTextColor, setProgressLabelTextColor), OF(textFieldsTextColor, setTextFieldsTextColor)}},
    {"0,0,0,0", {OF_EVERY_KIND(BackgroundColor)}},
    {"0,0,0,0.35", {OF(coverColor, setCoverColor)}},
    {"0.5,0.5,0.5,1", {OF_EVERY_KIND(TitleColorDisabled)}},
    {"0.8,0.8,0.8,1", {OF(progressViewTrackTintColor, setProgressViewTrackTintColor)}},
    {"0.85,0.85,0.85,1", {OF(separatorsColor, setSeparatorsColor)}},
    {"0.97,0.97,0.97,1", {OF(textFieldsBackgroundColor, setTextFieldsBackgroundColor)}},
    {"1,1,1,1", {OF(backgroundColor, setBackgroundColor), OF_EVERY_KIND(TitleColorHighlighted)}},
    {"1,0,0,1",
     {OF(destructiveButtonTitleColor, setDestructiveButtonTitleColor),
      OF(destructiveButtonBackgroundColorHighlighted, setDestructiveButtonBackgroundColorHighlighted)}},
    {"none",
     {OF(layerBorderColor, setLayerBorderColor), OF(layerShadowColor, setLayerShadowColor),
      OF_EVERY_KIND(BackgroundColorDisabled), OF(coverBlurEffect, setCoverBlurEffect),
      OF(backgroundBlurEffect, setBackgroundBlurEffect),
      OF(progressViewProgressImage, setProgressViewProgressImage), OF(progressViewTrackImage, setProgressViewTrackImage),
      OF(cancelButtonIconImage, setCancelButtonIconImage), OF(destructiveButtonIconImage, setDestructiveButtonIconImage)}},
    {"0,0", {OF(layerShadowOffset, setLayerShadowOffset)}},
    {"a cell", {OF(heightCell, setHeightCell)}},
    {"system 14", {OF(messageFont, setMessageFont), OF(progressLabelFont, setProgressLabelFont)}},
    {"system 16", {OF(textFieldsFont, setTextFieldsFont)}},
    {"system 18", {OF(buttonsFont, setButtonsFont), OF(destructiveButtonFont, setDestructiveButtonFont)}},
    {"bold 18", {OF(cancelButtonFont, setCancelButtonFont)}},
    {"0",
     {OF(showsVerticalScrollIndicator, setShowsVerticalScrollIndicator),
      OF(padShowsActionSheetFromBottom, setPadShowsActionSheetFromBottom), OF(oneRowOneButton, setOneRowOneButton),
      OF(textFieldsClearsOnBeginEditing, setTextFieldsClearsOnBeginEditing),
      OF(textFieldsAdjustsFontSizeToFitWidth, setTextFieldsAdjustsFontSizeToFitWidth), OF(windowLevel, setWindowLevel),
      OF(layerBorderWidth, setLayerBorderWidth), OF(layerShadowRadius, setLayerShadowRadius), OF_EVERY_KIND(IconPosition),
      OF(activityIndicatorViewStyle, setActivityIndicatorViewStyle), OF(textFieldsTextAlignment, setTextFieldsTextAlignment)}},
    {"0.5", {OF(animationDuration, setAnimationDuration)}},
    {"0.7777777777777778", {OF_EVERY_KIND(MinimumScaleFactor)}},
    {"0.95", {OF(finalScale, setFinalScale)}},
    {"1",
     {OF(dismissOnAction, setDismissOnAction), OF(shouldDismissAnimated, setShouldDismissAnimated),
      OF_EVERY_KIND(Enabled), OF_EVERY_KIND(AdjustsFontSizeToFitWidth), OF(coverAlpha, setCoverAlpha),
      OF(indicatorStyle, setIndicatorStyle), OF(titleTextAlignment, setTitleTextAlignment),
      OF(messageTextAlignment, setMessageTextAlignment), OF_EVERY_KIND(TextAlignment), OF_EVERY_KIND(NumberOfLines),
      OF(progressLabelTextAlignment, setProgressLabelTextAlignment), OF(progressLabelNumberOfLines, setProgressLabelNumberOfLines)}},
    {"1.2", {OF(initialScale, setInitialScale)}},
    {"3", {OF(textFieldsClearButtonMode, setTextFieldsClearButtonMode)}},
    {"4", {OF(progressLabelLineBreakMode, setProgressLabelLineBreakMode)}},
    {"5", {OF_EVERY_KIND(LineBreakMode)}},
    {"8", {OF(offsetVertical, setOffsetVertical), OF(cancelButtonOffsetY, setCancelButtonOffsetY)}},
    {"12", {OF(layerCornerRadius, setLayerCornerRadius), OF(textFieldsMinimumFontSize, setTextFieldsMinimumFontSize)}},
    {"44", {OF(textFieldsHeight, setTextFieldsHeight)}},
    {"9.223372036854776e+18", {OF(heightMax, setHeightMax)}},
};
// clang-format on

TEST_F(Appearance, StartsFromTheSharedDefaultsAndEachPropertyIsSetAlone) {
  const Dialog dialog = alert();
  std::vector<const Property*> all;
  for (const auto& [value, properties] : defaults) {
    for (const Property& property : properties) {
      EXPECT_EQ(property.read(*RQAlertView::appearance()), value) << property.name;
      EXPECT_EQ(property.read(*dialog), value) << property.name;
      all.push_back(&property);
    }
  }
  for (const Property* changed : all) {
    RQAlertView::resetAppearance();
    std::vector<std::string> before;
    for (const Property* each : all) before.push_back(each->read(*RQAlertView::appearance()));
    changed->change(*RQAlertView::appearance());
    for (std::size_t index = 0; index < all.size(); ++index) {
      EXPECT_EQ(all[index]->read(*RQAlertView::appearance()) != before[index], all[index] == changed)
          << changed->name << " set, " << all[index]->name << " looked at";
    }
  }
  RQAlertView::resetAppearance();
  EXPECT_EQ(dialog->tag(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(RQAlertView::appearance()->width(), RQAlertView::appearance()->heightMax());
}

TEST_F(Appearance, DependsOnStyleAndTypeUntilItIsSet) {
  const Dialog a = alert();
  const Dialog s = sheet({"One"});
  const auto decided = [](const RQAlertView& dialog) {
    return text(dialog.titleTextColor()) + " " + text(dialog.messageTextColor()) + " " +
           text(dialog.titleFont()) + " " + text(dialog.buttonsHeight()) + " " + text(dialog.cancelOnTouch());
  };
  EXPECT_EQ(decided(*a), "0,0,0,1 0,0,0,1 bold 18 44 1");
  EXPECT_EQ(decided(*s), "0.5,0.5,0.5,1 0.5,0.5,0.5,1 bold 14 56 1");
  EXPECT_FALSE(withFields(1)->cancelOnTouch() || waiting()->cancelOnTouch());

  RQAlertView& shared = *RQAlertView::appearance();
  EXPECT_FALSE(shared.isUserCancelOnTouch() || shared.isUserButtonsHeight() ||
               shared.isUserTitleTextColor() || shared.isUserTitleFont() || shared.isUserMessageTextColor());
  EXPECT_EQ(text(shared.titleTextColor()), "none");
  shared.setCancelOnTouch(true);
  shared.setButtonsHeight(50);
  shared.setTitleTextColor(Qt::red);
  shared.setTitleFont(systemFontOfSize(20));
  shared.setMessageTextColor(Qt::blue);
  EXPECT_TRUE(shared.isUserCancelOnTouch() && shared.isUserButtonsHeight() && shared.isUserTitleTextColor() &&
              shared.isUserTitleFont() && shared.isUserMessageTextColor());
  for (const Dialog& dialog : {withFields(1), sheet({})})
    EXPECT_EQ(decided(*dialog), "1,0,0,1 0,0,1,1 system 20 50 1");
}

TEST_F(Appearance, IsCopiedWhenADialogIsMadeAndTheTintOnlyOnce) {
  const Dialog before = alert();
  RQAlertView::appearance()->setTintColor(Qt::magenta);
  RQAlertView::appearance()->setButtonsEnabled(false);
  const Dialog after = alert({"A", "B"});
  EXPECT_EQ(text(before->tintColor()), tint);
  EXPECT_EQ(after->tintColor(), QColor(Qt::magenta));
  EXPECT_EQ(text(after->buttonsTitleColor()), tint);
  EXPECT_FALSE(after->isButtonEnabledAtIndex(1));
  after->setButtonEnabled(true, 1);
  EXPECT_EQ(after->buttonsEnabledArray(), (std::vector<bool>{false, true}));
  after->setButtonsEnabled(true);
  EXPECT_EQ(after->buttonsEnabledArray(), (std::vector<bool>{true, true}));
}

TEST_F(Appearance, KnowsTheSystemsBeforeTheNinth) {
  UIDevice::currentDevice().setSystemVersion(8.9);
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 6);
  EXPECT_EQ(sheet({})->buttonsHeight(), 44);
  UIDevice::currentDevice().setSystemVersion(9);
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 12);
  EXPECT_EQ(sheet({})->buttonsHeight(), 56);
}

TEST_F(Appearance, GivesEveryDialogItsWidth) {
  resize(375, 667);
  const Dialog a = alert();
  const Dialog s = sheet({"One"});
  EXPECT_EQ(a->width(), 280);
  EXPECT_EQ(s->width(), 359);
  for (const auto& [set, width] : {std::pair(500, 375), {300, 300}}) {
    a->setWidth(set);
    EXPECT_EQ(a->width(), width);
  }
  resize(820, 1180);
  EXPECT_EQ(s->width(), 280);
  EXPECT_TRUE(RQAlertViewHelper::isPadAndNotForce(s->model()));
  s->setPadShowsActionSheetFromBottom(true);
  EXPECT_EQ(s->width(), 388);
  EXPECT_FALSE(RQAlertViewHelper::isPadAndNotForce(s->model()));
}

}  // namespace
