// The menus of the main screen, from the tap to what it leaves on disk and shows.
#include "support/Tree.h"
#include "tests/ui/Screens.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"
#include "workspace/Projects.h"

#include <unistd.h>
#include <utility>

#include <QClipboard>
#include <QGuiApplication>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;
using finger::waitUntil;

class Menus : public Screens {
 protected:
  Menus() {
    // Where typed paths are looked for, as in the application.
    EXPECT_EQ(chdir("/"), 0);
  }
  ~Menus() override { removeFolders(); }

  void removeFolders() const {
    for (const std::string& folder : {in, out}) removeItemAtPath(folder);
  }

  // The project P on its screen, in each language.
  void onAProject(const std::function<void()>& flow) {
    inBothLanguages([&] {
      removeFolders();
      makeProject({{"Makefile", "TWEAK_NAME = P\n"}, {"P.plist", ""}, {"Tweak.x", "x"}});
      start();
      waitToSee("Tweak.x");
      flow();
    });
  }

  static void answer(const TextPair& option, const char* typed, const QString& button) {
    optionsMenu(option);
    finger::type(typed);
    tap(button);
  }

  static void expectCurrent(const char* name) {
    EXPECT_EQ(device::setting("Choose", "Choose"), name);
    EXPECT_EQ(device::setting("Files", "Files"), name);
  }

  const std::string in = "/var/mobile/Documents/In";
  const std::string out = "/var/mobile/Documents/Out";
};

TEST_F(Menus, OptionsOpenTheProjectAndItsPackages) {
  onAProject([this] {
    putFile(device::packages + "/P/x.deb", "");
    const QStringList& opened = watchAddresses();
    optionsMenu(text::openInFilza);
    optionsMenu(text::goToDebsFolder);
    optionsMenu(text::deleteDebsFolder);
    waitUntil([] { return !fileExistsAtPath(device::packages); }, "the packages are still there");
    optionsMenu(text::goToDebsFolder);
    waitUntil([&opened] { return opened.size() == 3; }, "an address is not opened");
    EXPECT_EQ(opened, (QStringList{"filza://view/var/Tweakyard/Projects/P/",
                                   "filza:///var/mobile/Documents/Tweakbench/P/",
                                   "filza:///var/mobile/Documents/Tweakbench"}));
  });
}

TEST_F(Menus, AnAddressThatNothingOpensIsShownAsTextToCopy) {
  onAProject([] {
    openAddressesOnHost();
    optionsMenu(text::openInFilza);
    waitToSee(localized(text::error));
    QWidget* const address = finger::find("Address");
    const QRect area = address->rect().translated(address->mapTo(address->window(), QPoint()));
    EXPECT_TRUE(address->window()->rect().contains(area)) << "not all of it is on screen";
    address->setFocus();
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(address, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "filza://view/var/Tweakyard/Projects/P/");
    tap(localized(text::ok));
  });
}

TEST_F(Menus, ProjectsComeInAndGoOut) {
  onAProject([this] {
    const Tree before = treeAt(device::projects);
    putFile(in + "/of-In", "in");
    putFile(out + "/kept", "");
    for (const char* nothing : {"var/mobile/Documents/nothing", "  "}) {
      answer(text::importFromPath, nothing, localized(text::import_));
      waitToSee(localized(text::noData));
      tap(localized(text::ok));
    }
    answer(text::importFromPath, "var/mobile/Documents/In", localized(text::cancel));
    answer(text::exportProjectToPath, "mobile/Documents/Out", localized(text::cancel));
    EXPECT_EQ(treeAt(device::projects), before);
    EXPECT_EQ(treeAt(out), (Tree{{"kept", ""}}));
    expectCurrent("P");

    answer(text::exportProjectToPath, "mobile/Documents/Out", localized(text::export_));
    Tree exported = before;
    exported["kept"];
    waitUntil([&] { return treeAt(out) == exported; }, "the copy is not the project");

    answer(text::importFromPath, "var/mobile/Documents/In", localized(text::import_));
    waitToSee("of-In");
    expectCurrent("In");
    // Once more: the shell's rules merge it with what is there.
    putFile(device::projects + "In/own", "own");
    putFile(in + "/of-In", "newer");
    answer(text::importFromPath, "var/mobile/Documents/In", localized(text::import_));
    const Tree merged{{"of-In", "newer"}, {"own", "own"}};
    waitUntil([&] { return treeAt(device::projects + "In") == merged; }, "the second import is not merged");
  });
}

TEST_F(Menus, BackupsAreMadeRestoredAndDeleted) {
  onAProject([] {
    const Tree whole = treeAt(device::projects);
    optionsMenu(text::backUp);
    waitToSee(localized(text::done));
    waitToSee(QString::fromStdString(backups + "/P"));
    tap(localized(text::ok));
    EXPECT_EQ(treeAt(backups), whole);
    putFile(device::projects + "P/Tweak.x", "spoilt");
    putFile(device::projects + "Q/q", "");
    chooseProject("Q");

    optionsMenu(text::restore);
    waitToSee("P");
    tap(localized(text::cancel));
    // The screen is brought up to date all the same.
    waitToSee("q");
    expectCurrent("Q");
    optionsMenu(text::restore);
    tap("P");
    waitToSee(localized(text::done));
    tap(localized(text::ok));
    waitToSee("Tweak.x");
    expectCurrent("P");
    EXPECT_EQ(fileAt(device::projects + "P/Tweak.x"), "x");

    deleteProject("P");
    chooseProject("P");
    optionsMenu(text::backUp);
    waitToSee(localized(text::error));
    waitToSee(localized(text::noData));
    tap(localized(text::ok));
    optionsMenu(text::deleteAllBackups);
    waitToSee(localized(text::deleteAllBackupsQuestion));
    tap(localized(text::cancel));
    EXPECT_EQ(treeAt(backups), whole);
    optionsMenu(text::deleteAllBackups);
    tap(localized(text::confirm));
    waitToSee(localized(text::done));
    EXPECT_FALSE(fileExistsAtPath(backups));
    tap(localized(text::ok));
  });
}

TEST_F(Menus, AProjectIsRenamedFromTheOptions) {
  onAProject([] {
    answer(text::changeProjectName, "Brand New", localized(text::cancel));
    expectCurrent("P");
    answer(text::changeProjectName, "Brand New", "Change");
    waitToSee("BrandNew.plist");
    waitToSee("BrandNew");
    expectCurrent("BrandNew");
    EXPECT_EQ(treeAt(device::projects), (Tree{{"BrandNew/", ""},
                                              {"BrandNew/BrandNew.plist", ""},
                                              {"BrandNew/Makefile", "TWEAK_NAME = BrandNew\n"},
                                              {"BrandNew/Tweak.x", "x"}}));
  });
}

}  // namespace
