// Where every property of a dialog's look comes from, and that each is settable.
#include "alert/Dialogs.h"

#include <cstdint>
#include <limits>

namespace {

class Appearance : public Dialogs {
 protected:
  void TearDown() override {
    UIDevice::currentDevice().setSystemVersion(14);
    Dialogs::TearDown();
  }
  static QString read(const RQAlertView& dialog, const char* names) {
    QStringList values;
    for (const QString& name : QString(names).split(' ')) {
      for (const LookProperty& each : lookProperties()) {
        if (each.name == name) values << each.read(dialog);
      }
    }
    return values.join(' ');
  }
};

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

TEST_F(Appearance, DependsOnStyleAndTypeUntilItIsSet) {
  const char* const names = "titleTextColor messageTextColor titleFont buttonsHeight cancelOnTouch";
  const auto decided = [names](const char* description) { return read(*dialogFrom(description), names); };
  EXPECT_EQ(decided("sheet"), "0.5,0.5,0.5,1 0.5,0.5,0.5,1 bold14 56 1");
  EXPECT_EQ(decided("sheet label=Wait"), "0.5,0.5,0.5,1 0.5,0.5,0.5,1 bold14 56 0");
  for (const char* kind : {"alert fields=1", "alert label=Wait", "alert progress=0"})
    EXPECT_EQ(decided(kind), "0,0,0,1 0,0,0,1 bold18 44 0") << kind;
  UIDevice::currentDevice().setSystemVersion(8.9);
  EXPECT_EQ(decided("sheet"), "0.5,0.5,0.5,1 0.5,0.5,0.5,1 bold14 44 1");
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 6);
  UIDevice::currentDevice().setSystemVersion(9);
  EXPECT_EQ(decided("sheet").section(' ', 3), "56 1");
  EXPECT_EQ(RQAlertViewAppearance().layerCornerRadius, 12);

  RQAlertView& shared = *RQAlertView::appearance();
  const auto areSet = [&shared] {
    return std::vector<bool>{shared.isUserCancelOnTouch(), shared.isUserButtonsHeight(),
                             shared.isUserTitleTextColor(), shared.isUserTitleFont(),
                             shared.isUserMessageTextColor()};
  };
  EXPECT_EQ(areSet(), std::vector<bool>(5, false));
  change(shared, "cancelOnTouch=1 buttonsHeight=50 titleTextColor=red titleFont=20 messageTextColor=blue");
  EXPECT_EQ(areSet(), std::vector<bool>(5, true));
  for (const char* kind : {"alert fields=1", "sheet"}) EXPECT_EQ(decided(kind), "1,0,0,1 0,0,1,1 20 50 1");
}

TEST_F(Appearance, IsCopiedWhenADialogIsMadeAndTheTintOnlyOnce) {
  const Dialog before = dialogFrom("alert");
  change(*RQAlertView::appearance(), "tintColor=magenta buttonsEnabled=0");
  const Dialog after = dialogFrom("alert buttons=A,B");
  EXPECT_EQ(read(*before, "tintColor buttonsTitleColor"), "0,0.5,1,1 0,0.5,1,1");
  EXPECT_EQ(read(*after, "tintColor buttonsTitleColor"), "1,0,1,1 0,0.5,1,1");
  EXPECT_FALSE(after->isButtonEnabledAtIndex(1));
  after->setButtonEnabled(true, 1);
  EXPECT_EQ(after->buttonsEnabledArray(), (std::vector<bool>{false, true}));
  after->setButtonsEnabled(true);
  EXPECT_EQ(after->buttonsEnabledArray(), (std::vector<bool>{true, true}));
}

TEST_F(Appearance, GivesEveryDialogItsWidthInEveryShapeOfTheScreen) {
  const struct {
    int screenWidth, screenHeight;
    const char* dialog;
    double width;
  } rows[] = {{375, 667, "alert", 280},
              {375, 667, "sheet", 359},
              {375, 667, "alert width=500", 375},
              {375, 667, "sheet width=300", 300},
              {844, 480, "sheet", 464},
              {844, 480, "alert width=500", 480},
              {820, 1180, "sheet", 280},
              {820, 1180, "sheet padShowsActionSheetFromBottom=1", 388},
              {1180, 820, "sheet padShowsActionSheetFromBottom=1", 388}};
  for (const auto& row : rows) {
    resize(row.screenWidth, row.screenHeight);
    EXPECT_EQ(dialogFrom(row.dialog)->width(), row.width) << row.dialog << " at " << row.screenWidth;
  }
}

}  // namespace
