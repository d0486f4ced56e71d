// The menus of the main screen, from the tap to what it leaves on disk.
#include "core/PropertyList.h"
#include "platform/UIApplication.h"
#include "tests/ui/Screens.h"
#include "workspace/CurrentProject.h"
#include "workspace/NewProject.h"

#include <QUrl>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;
using finger::waitUntil;

const std::string backups = "/var/mobile/Documents/TweakbenchBackups";

class Menus : public Screens {
 protected:
  Menus() { removeItemAtPath(backups); }

  static void chooseFrom(const QString& menu, const QString& title, const QString& entry) {
    tap(menu);
    waitToSee(title);
    tap(entry);
  }
  static void projectMenu(const TextPair& entry) {
    chooseFrom("New Project", localized(text::projectOptions), localized(entry));
  }
  static void optionsMenu(const TextPair& entry) {
    chooseFrom("Project Options", localized(text::extraOptions), localized(entry));
  }
  static void deleteMenu(const QString& entry) {
    chooseFrom("Delete", localized(text::deleteFilesOrProjects), entry);
  }
  static void waitToMiss(const QString& name) {
    waitUntil([&name] { return !sees(name); }, "still to be seen: " + name);
  }
};

TEST_F(Menus, HeadersAreAddedAndFilesRenamedInBothLanguages) {
  for (const char* language : {"EN", "AR"}) {
    device::reset();
    device::speak(language);
    const std::string folder = makeProject({{"Tweak.x", "%hook A\n"}});
    start();
    projectMenu(text::createHeaderFile);
    finger::type("My Header");
    tap(localized(text::confirm));
    waitToSee("MyHeader.h");
    EXPECT_EQ(fileAt(folder + "Tweak.x"), "#import MyHeader.h\n%hook A\n");

    projectMenu(text::changeFileName);
    waitToSee(localized(text::whichOne));
    tap("MyHeader.h");
    waitToSee("~ root$");
    // The field holds the name as it is; what is typed goes behind it.
    finger::type("pp");
    tap(localized(text::confirm));
    waitToSee("MyHeader.hpp");
    EXPECT_FALSE(sees("MyHeader.h"));
    delegate_.reset();
  }
}

TEST_F(Menus, FilesAndProjectsAreDeleted) {
  const std::string folder = makeProject({{"keep", ""}, {"go", ""}});
  for (const char* other : {"Q/x", "R/x"}) putFile(device::projects + other, "");
  start();
  deleteMenu("go");
  waitToMiss("go");
  EXPECT_TRUE(sees("keep"));

  deleteMenu(localized(text::deleteOptions));
  waitToSee(localized(text::deleteAllProjects));
  tap("Q");
  waitUntil([] { return !fileExistsAtPath(device::projects + "Q"); }, "Q is still there");

  deleteMenu(localized(text::deleteCurrentProject));
  waitToMiss("keep");
  EXPECT_FALSE(fileExistsAtPath(folder));
  EXPECT_EQ(currentProject(), std::nullopt);

  for (const char* answer : {"Cancel", "I'm sure"}) {
    deleteMenu(localized(text::deleteOptions));
    tap(localized(text::deleteAllProjects));
    waitToSee(localized(text::deleteAllProjectsQuestion));
    EXPECT_TRUE(fileExistsAtPath(device::projects + "R")) << "before the answer";
    tap(answer);
  }
  EXPECT_TRUE(projectNames().empty());
}

TEST_F(Menus, OptionsOpenTheProjectAndItsPackages) {
  makeProject({{"Tweak.x", ""}});
  putFile(device::packages + "/P/x.deb", "");
  start();
  QStringList opened;
  UIApplication::sharedApplication()->setURLOpener([&opened](const QUrl& url) {
    opened.append(url.toString());
    return true;
  });
  optionsMenu(text::openInFilza);
  optionsMenu(text::goToDebsFolder);
  optionsMenu(text::deleteDebsFolder);
  waitUntil([] { return !fileExistsAtPath(device::packages); }, "the packages are still there");
  optionsMenu(text::goToDebsFolder);
  waitUntil([&opened] { return opened.size() == 3; }, "an address is not opened");
  EXPECT_EQ(opened, (QStringList{"filza://view/var/Tweakyard/Projects/P/",
                                 "filza:///var/mobile/Documents/Tweakbench/P/",
                                 "filza:///var/mobile/Documents/Tweakbench"}));
}

TEST_F(Menus, ProjectsComeInAndGoOut) {
  ASSERT_EQ(chdir("/"), 0);
  putFile("/var/mobile/Documents/In/Tweak.x", "in");
  start();
  optionsMenu(text::importFromPath);
  waitToSee(localized(text::pathExample));
  finger::type("var/mobile/Documents/nothing");
  tap(localized(text::import_));
  waitToSee(localized(text::noData));
  tap(localized(text::ok));
  optionsMenu(text::importFromPath);
  finger::type("var/mobile/Documents/In");
  tap(localized(text::import_));
  waitToSee("Tweak.x");
  removeItemAtPath("/var/mobile/Documents/In");
  optionsMenu(text::exportProjectToPath);
  finger::type("mobile/Documents/");
  tap(localized(text::export_));
  EXPECT_EQ(fileAt("/var/mobile/Documents/In/Tweak.x"), "in");
  removeItemAtPath("/var/mobile/Documents/In");
}

TEST_F(Menus, BackupsAreMadeRestoredAndDeleted) {
  start();
  optionsMenu(text::backUp);
  waitToSee(localized(text::error));
  tap(localized(text::ok));
  makeProject({{"Tweak.x", "saved"}});
  optionsMenu(text::backUp);
  waitToSee(QString::fromStdString(backups + "/P"));
  tap(localized(text::ok));
  removeItemAtPath(device::projects + "P");
  optionsMenu(text::restore);
  waitToSee("P");
  tap("P");
  waitToSee(localized(text::done));
  tap(localized(text::ok));
  waitToSee("Tweak.x");
  EXPECT_EQ(fileAt(device::projects + "P/Tweak.x"), "saved");
  optionsMenu(text::deleteAllBackups);
  tap(localized(text::confirm));
  waitToSee(localized(text::done));
  EXPECT_FALSE(fileExistsAtPath(backups));
  tap(localized(text::ok));
}

TEST_F(Menus, AProjectIsRenamedFromTheOptions) {
  recordTheosPath();
  createProject("Old");
  start();
  waitToSee("Old.plist");
  optionsMenu(text::changeProjectName);
  finger::type("Brand New");
  tap("Change");
  waitToSee("BrandNew");
  waitToSee("BrandNew.plist");
}

TEST_F(Menus, AFlexPatchIsPickedAndLandsInTheProject) {
  putFile("/var/mobile/Library/Flex/patches.plist",
          device::emptyList(
              "<key>patches</key><array><dict><key>name</key><string>Premium</string><key>units</key><array>"
              "<dict><key>class</key><string>Account</string><key>method</key>"
              "<string>- (BOOL)isPremium</string><key>returns</key><true/></dict></array></dict></array>"));
  for (const char* language : {"EN", "AR"}) {
    device::reset();
    device::speak(language);
    const std::string folder = makeProject({{"Tweak.x", ""}});
    start();
    projectMenu(text::addFlexPatch);
    waitToSee("Flex to Theos by Mossgrove & updated by Wexley88");
    EXPECT_TRUE(sees("Cancel")) << "the same in both languages";
    tap("\033  0 - Premium");
    waitToSee("FlexPatch0-Premium");
    EXPECT_NE(fileAt(folder + "FlexPatch0-Premium").find("%hook Account"), std::string::npos);
    delegate_.reset();
  }
}

}  // namespace
