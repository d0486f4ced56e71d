// Where every property of a dialog's look comes from, and that each is settable.
#include "alert/Dialogs.h"

#include <cstdint>
#include <limits>

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
  UIDevice::currentDevice().setSystemVersion(8.9);
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 6);
  UIDevice::currentDevice().setSystemVersion(14);
}

}  // namespace
