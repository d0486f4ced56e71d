// Where every property of a dialog's look comes from.
#include "RQAlertView/RQAlertViewHelper.h"
#include "alert/Dialogs.h"
#include "platform/ApplicationStyle.h"
#include "platform/UIDevice.h"

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
  const auto part = [](float value) { return QString::number(value, 'g', 3).toStdString(); };
  return part(color.redF()) + "," + part(color.greenF()) + "," + part(color.blueF()) + "," +
         part(color.alphaF());
}
std::string text(const QFont& font) {
  return (font.bold() ? "bold " : "system ") + QString::number(font.pointSizeF() * 96 / 72).toStdString();
}
template <typename Number>
requires std::is_arithmetic_v<Number> || std::is_enum_v<Number> std::string text(Number value) {
  return QString::number(static_cast<double>(value), 'g', 16).toStdString();
}

using Property = std::pair<const char*, std::function<std::string(RQAlertView&)>>;
#define OF(name) Property(#name, [](RQAlertView& dialog) { return text(dialog.name()); })
#define OF_EVERY_KIND(property) \
  OF(buttons##property), OF(cancelButton##property), OF(destructiveButton##property)

const char* const tint = "0,0.5,1,1";

const std::vector<std::pair<std::string, std::vector<Property>>> defaults{
    {tint,
     {OF(tintColor), OF(buttonsTitleColor), OF(buttonsBackgroundColorHighlighted), OF(cancelButtonTitleColor),
      OF(cancelButtonBackgroundColorHighlighted), OF(activityIndicatorViewColor),
      OF(progressViewProgressTintColor)}},
    {"0,0,0,1", {OF(progressLabelTextColor), OF(textFieldsTextColor)}},
    {"0,0,0,0", {OF_EVERY_KIND(BackgroundColor)}},
    {"0,0,0,0.35", {OF(coverColor)}},
    {"0.5,0.5,0.5,1", {OF_EVERY_KIND(TitleColorDisabled)}},
    {"0.8,0.8,0.8,1", {OF(progressViewTrackTintColor)}},
    {"0.85,0.85,0.85,1", {OF(separatorsColor)}},
    {"0.97,0.97,0.97,1", {OF(textFieldsBackgroundColor)}},
    {"1,1,1,1", {OF(backgroundColor), OF_EVERY_KIND(TitleColorHighlighted)}},
    {"1,0,0,1", {OF(destructiveButtonTitleColor), OF(destructiveButtonBackgroundColorHighlighted)}},
    {"none", {OF(layerBorderColor), OF(layerShadowColor), OF_EVERY_KIND(BackgroundColorDisabled)}},
    {"system 14", {OF(messageFont), OF(progressLabelFont)}},
    {"system 16", {OF(textFieldsFont)}},
    {"system 18", {OF(buttonsFont), OF(destructiveButtonFont)}},
    {"bold 18", {OF(cancelButtonFont)}},
    {"0",
     {OF(showsVerticalScrollIndicator), OF(padShowsActionSheetFromBottom), OF(oneRowOneButton),
      OF(textFieldsClearsOnBeginEditing), OF(textFieldsAdjustsFontSizeToFitWidth), OF(windowLevel),
      OF(layerBorderWidth), OF(layerShadowRadius), OF_EVERY_KIND(IconPosition),
      OF(activityIndicatorViewStyle), OF(textFieldsTextAlignment)}},
    {"0.5", {OF(animationDuration)}},
    {"0.7777777777777778", {OF_EVERY_KIND(MinimumScaleFactor)}},
    {"0.95", {OF(finalScale)}},
    {"1",
     {OF(dismissOnAction), OF(shouldDismissAnimated), OF(buttonsEnabled), OF(cancelButtonEnabled),
      OF(destructiveButtonEnabled), OF_EVERY_KIND(AdjustsFontSizeToFitWidth), OF(coverAlpha),
      OF(indicatorStyle), OF(titleTextAlignment), OF(messageTextAlignment), OF_EVERY_KIND(TextAlignment),
      OF_EVERY_KIND(NumberOfLines), OF(progressLabelTextAlignment), OF(progressLabelNumberOfLines)}},
    {"1.2", {OF(initialScale)}},
    {"3", {OF(textFieldsClearButtonMode)}},
    {"4", {OF(progressLabelLineBreakMode)}},
    {"5", {OF_EVERY_KIND(LineBreakMode)}},
    {"8", {OF(offsetVertical), OF(cancelButtonOffsetY)}},
    {"12", {OF(layerCornerRadius), OF(textFieldsMinimumFontSize)}},
    {"44", {OF(textFieldsHeight)}},
    {"9.223372036854776e+18", {OF(heightMax)}},
};

TEST_F(Appearance, StartsFromTheSharedDefaultsAndANewDialogCopiesThem) {
  const Dialog dialog = alert();
  for (const auto& [value, properties] : defaults) {
    for (const auto& [name, read] : properties) {
      EXPECT_EQ(read(*RQAlertView::appearance()), value) << name;
      EXPECT_EQ(read(*dialog), value) << name;
    }
  }
  EXPECT_TRUE(dialog->heightCell());
  EXPECT_FALSE(dialog->coverBlurEffect() || dialog->backgroundBlurEffect());
  EXPECT_EQ(dialog->layerShadowOffset(), QPointF());
  for (const QPixmap& picture : {dialog->progressViewProgressImage(), dialog->progressViewTrackImage(),
                                 dialog->cancelButtonIconImage(), dialog->destructiveButtonIconImage()})
    EXPECT_TRUE(picture.isNull());
  EXPECT_EQ(dialog->tag(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(RQAlertView::appearance()->width(), RQAlertView::appearance()->heightMax());
}

TEST_F(Appearance, DependsOnStyleAndTypeUntilItIsSet) {
  const Dialog a = alert();
  const Dialog s = sheet({"One"});
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
}

TEST_F(Appearance, IsCopiedWhenADialogIsMadeAndTheTintOnlyOnce) {
  const Dialog before = alert();
  RQAlertView::appearance()->setTintColor(Qt::magenta);
  const Dialog after = alert();
  EXPECT_EQ(text(before->tintColor()), tint);
  EXPECT_EQ(after->tintColor(), QColor(Qt::magenta));
  EXPECT_EQ(text(after->buttonsTitleColor()), tint);
}

TEST_F(Appearance, KnowsTheSystemsBeforeTheNinth) {
  UIDevice::currentDevice().setSystemVersion(8.4);
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 6);
  EXPECT_EQ(sheet({})->buttonsHeight(), 44);
}

TEST_F(Appearance, GivesEveryDialogItsWidth) {
  resize(375, 667);
  const Dialog a = alert();
  const Dialog s = sheet({"One"});
  EXPECT_EQ(a->width(), 280);
  EXPECT_EQ(s->width(), 359);
  a->setWidth(500);
  EXPECT_EQ(a->width(), 375);
  a->setWidth(300);
  EXPECT_EQ(a->width(), 300);

  resize(820, 1180);
  EXPECT_EQ(s->width(), 280);
  EXPECT_TRUE(RQAlertViewHelper::isPadAndNotForce(s->model()));
  s->setPadShowsActionSheetFromBottom(true);
  EXPECT_EQ(s->width(), 388);
  EXPECT_FALSE(RQAlertViewHelper::isPadAndNotForce(s->model()));
}

TEST_F(Appearance, EnablesTheButtonsAsTheSharedObjectSays) {
  RQAlertView::appearance()->setButtonsEnabled(false);
  const Dialog dialog = alert({"A", "B"});
  EXPECT_FALSE(dialog->isButtonEnabledAtIndex(1));
  dialog->setButtonEnabled(true, 1);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{false, true}));
  dialog->setButtonsEnabled(true);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{true, true}));
}

}  // namespace
