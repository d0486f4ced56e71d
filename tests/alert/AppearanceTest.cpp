// Where every property of a dialog's look comes from, and that each is settable.
#include "alert/Dialogs.h"

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace {

class Appearance : public Dialogs {};

TEST_F(Appearance, StartsFromTheSharedDefaultsAndEachPropertyIsSetAlone) {
  const Dialog dialog = dialogFrom("alert");
  RQAlertView& shared = *RQAlertView::appearance();
  for (const LookProperty& each : lookProperties()) {
    EXPECT_TRUE(each.shared == "*" || each.shared == each.read(shared)) << each.name.toStdString();
    EXPECT_EQ(each.read(*dialog), each.own) << each.name.toStdString();
  }
  const auto readAll = [&shared] {
    QStringList values;
    for (const LookProperty& each : lookProperties()) values << each.read(shared);
    return values;
  };
  for (qsizetype changed = 0; const LookProperty& property : lookProperties()) {
    RQAlertView::resetAppearance();
    const QStringList before = readAll();
    for (const char* value : {"7", "1", "0", "magenta", "7,0", "red*1"}) {
      if (property.read(shared) == before[changed]) property.write(shared, value);
    }
    const QStringList after = readAll();
    for (qsizetype at = 0; at < after.size(); ++at)
      EXPECT_EQ(after[at] != before[at], at == changed)
          << property.name.toStdString() << " set, looked at number " << at;
    ++changed;
  }
  EXPECT_EQ(dialog->tag(), std::numeric_limits<std::int64_t>::max());
}

TEST_F(Appearance, TellsWhatOfItWasSet) {
  RQAlertView& shared = *RQAlertView::appearance();
  const auto areSet = [&shared] {
    return std::vector<bool>{shared.isUserCancelOnTouch(), shared.isUserButtonsHeight(),
                             shared.isUserTitleTextColor(), shared.isUserTitleFont(),
                             shared.isUserMessageTextColor()};
  };
  EXPECT_EQ(areSet(), std::vector<bool>(5, false));
  change(shared, "cancelOnTouch=1 buttonsHeight=50 titleTextColor=red titleFont=20 messageTextColor=blue");
  EXPECT_EQ(areSet(), std::vector<bool>(5, true));
}

TEST_F(Appearance, HasRoundedCornersAndEnablesButtonsOneByOneOrAll) {
  for (const auto& [version, radius] : {std::pair(8.9, 6), std::pair(9.0, 12), std::pair(14.0, 12)}) {
    UIDevice::currentDevice().setSystemVersion(version);
    EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, radius);
  }
  const Dialog dialog = dialogFrom("alert buttons=A,B buttonsEnabled=0");
  EXPECT_FALSE(dialog->isButtonEnabledAtIndex(1));
  dialog->setButtonEnabled(true, 1);
  dialog->setButtonEnabled(false, 2);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{false, true}));
  dialog->setButtonsEnabled(true);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{true, true}));
  EXPECT_THROW(dialog->isButtonEnabledAtIndex(2), std::out_of_range);
  EXPECT_THROW(dialog->setButtonPropertiesAtIndex(2, [](RQAlertViewButtonProperties&) {}), std::out_of_range);
}

}  // namespace
