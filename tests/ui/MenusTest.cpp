// The menus of the main screen, from the tap to what it leaves on disk.
#include "platform/UIApplication.h"
#include "support/Tree.h"
#include "tests/ui/Screens.h"
#include "ui/OpenAddress.h"
#include "workspace/CurrentProject.h"
#include "workspace/Deletion.h"

#include <functional>
#include <unistd.h>
#include <utility>

#include <QClipboard>
#include <QGuiApplication>
#include <QUrl>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;
using finger::waitUntil;

const std::string backups = "/var/mobile/Documents/TweakbenchBackups";

class Menus : public Screens {
 protected:
  Menus() {
    // Where typed paths are looked for, as in the application.
    EXPECT_EQ(chdir("/"), 0);
  }
  ~Menus() override {
    for (const std::string& folder : {backups, in, out}) removeItemAtPath(folder);
    UIApplication::sharedApplication()->setURLOpener({});
  }

  // The same in each language, on a fresh device with the project P.
  void inBothLanguages(const std::function<void()>& flow) {
    for (const char* language : {"EN", "AR"}) {
      SCOPED_TRACE(language);
      device::reset();
      for (const std::string& folder : {backups, in, out}) removeItemAtPath(folder);
      device::speak(language);
      for (const auto& [name, contents] : projectTree) {
        if (!name.ends_with('/')) putFile(device::projects + "P/" + name, contents);
      }
      chooseProject("P");
      start();
      waitToSee("Tweak.x");
      flow();
      delegate_.reset();
    }
  }

  static void answer(const TextPair& option, const char* typed, const QString& button) {
    optionsMenu(option);
    finger::type(QString::fromUtf8(typed));
    tap(button);
  }

  static Tree below(const std::string& folder, const Tree& tree) {
    Tree whole{{folder + "/", ""}};
    for (const auto& [name, contents] : tree) whole[folder + "/" + name] = contents;
    return whole;
  }

  static void expectCurrent(const char* name) {
    EXPECT_EQ(device::setting("Choose", "Choose"), name);
    EXPECT_EQ(device::setting("Files", "Files"), name);
  }

  const std::string in = "/var/mobile/Documents/In";
  const std::string out = "/var/mobile/Documents/Out";
  const Tree projectTree{{"Makefile", "TWEAK_NAME = P\nP_FILES = Tweak.x\n"},
                         {"P.plist", "{ Filter = P; }\n"},
                         {"Tweak.x", std::string("\0\xff\r\n%hook", 9)},
                         {"control", "Package: com.example.P\nName: P\n"},
                         {"sub/", ""},
                         {"sub/.hidden", "\u0645\n"}};
};

TEST_F(Menus, OptionsOpenTheProjectAndItsPackages) {
  inBothLanguages([] {
    putFile(device::packages + "/P/x.deb", "");
    putFile(device::packages + "/Other/y.deb", "");
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
    removeCurrentProject();
    putFile(device::application + "Files.plist", device::emptyList());
    optionsMenu(text::openInFilza);
    waitUntil([&opened] { return opened.size() == 4; }, "an address is not opened");
    EXPECT_EQ(opened, (QStringList{"filza://view/var/Tweakyard/Projects/P/",
                                   "filza:///var/mobile/Documents/Tweakbench/P/",
                                   "filza:///var/mobile/Documents/Tweakbench",
                                   "filza://view/var/Tweakyard/Projects/(null)/"}));
  });
}

TEST_F(Menus, AnAddressThatNothingOpensIsShownAsTextToCopy) {
  makeProject({{"Tweak.x", ""}});
  for (const char* language : {"EN", "AR"}) {
    device::speak(language);
    start();
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
    delegate_.reset();
  }
}

TEST_F(Menus, ProjectsComeInAndGoOut) {
  inBothLanguages([this] {
    putFile(in + "/Tweak.x", "in");
    putFile(in + "/sub/file", "");
    putFile(out + "/kept", "");
    answer(text::importFromPath, "var/mobile/Documents/nothing", localized(text::import_));
    waitToSee(localized(text::noData));
    tap(localized(text::ok));
    answer(text::importFromPath, "  ", localized(text::import_));
    waitToSee(localized(text::noData));
    tap(localized(text::ok));
    answer(text::importFromPath, "var/mobile/Documents/In", localized(text::cancel));
    EXPECT_EQ(treeAt(device::projects), below("P", projectTree));
    expectCurrent("P");
    EXPECT_FALSE(sees(localized(text::noData)));

    answer(text::exportProjectToPath, "mobile/Documents/Out", localized(text::cancel));
    answer(text::exportProjectToPath, "mobile/no/such/", localized(text::export_));
    answer(text::exportProjectToPath, "mobile/Documents/Out", localized(text::export_));
    Tree expected = below("P", projectTree);
    expected["kept"];
    waitUntil([&] { return treeAt(out) == expected; }, "the copy is not the project");
    EXPECT_FALSE(fileExistsAtPath("/var/mobile/no"));

    answer(text::importFromPath, "var/mobile/Documents/In", localized(text::import_));
    waitToSee("sub");
    expectCurrent("In");
    expected = below("P", projectTree);
    expected.merge(below("In", treeAt(in)));
    EXPECT_EQ(treeAt(device::projects), expected);
    // Once more: the shell's rules merge it with what is there.
    putFile(device::projects + "In/own", "own");
    putFile(in + "/Tweak.x", "newer");
    answer(text::importFromPath, "var/mobile/Documents/In", localized(text::import_));
    expected["In/own"] = "own";
    expected["In/Tweak.x"] = "newer";
    waitUntil([&] { return treeAt(device::projects) == expected; }, "the second import is not merged");
  });
}

TEST_F(Menus, BackupsAreMadeRestoredAndDeleted) {
  inBothLanguages([this] {
    optionsMenu(text::backUp);
    waitToSee(localized(text::done));
    waitToSee(QString::fromStdString(backups + "/P"));
    tap(localized(text::ok));
    EXPECT_EQ(treeAt(backups), below("P", projectTree));
    // Listed like a backup, though it is none.
    putFile(backups + "/stray", "stray");
    putFile(device::projects + "P/Tweak.x", "spoilt");
    putFile(device::projects + "P/new", "");
    putFile(device::projects + "Q/q", "");
    chooseProject("Q");

    optionsMenu(text::restore);
    waitToSee("stray");
    tap(localized(text::cancel));
    // The screen is brought up to date all the same.
    waitToSee("q");
    expectCurrent("Q");
    for (const auto& [backup, file] : {std::pair{"stray", "Files"}, std::pair{"P", "Tweak.x"}}) {
      optionsMenu(text::restore);
      waitToSee("P");
      tap(backup);
      waitToSee(localized(text::done));
      tap(localized(text::ok));
      waitToSee(file);
      expectCurrent(backup);
    }
    Tree expected = below("P", projectTree);
    expected.merge(below("Q", {{"q", ""}}));
    expected["stray"] = "stray";
    EXPECT_EQ(treeAt(device::projects), expected);

    deleteProject("P");
    chooseProject("P");
    optionsMenu(text::backUp);
    waitToSee(localized(text::error));
    waitToSee(localized(text::noData));
    tap(localized(text::ok));
    optionsMenu(text::deleteAllBackups);
    waitToSee(localized(text::deleteAllBackupsQuestion));
    tap(localized(text::cancel));
    EXPECT_EQ(treeAt(backups).size(), below("P", projectTree).size() + 1);
    optionsMenu(text::deleteAllBackups);
    tap(localized(text::confirm));
    waitToSee(localized(text::done));
    EXPECT_FALSE(fileExistsAtPath(backups));
    tap(localized(text::ok));
  });
}

TEST_F(Menus, AProjectIsRenamedFromTheOptions) {
  inBothLanguages([this] {
    answer(text::changeProjectName, "Brand New", localized(text::cancel));
    expectCurrent("P");
    answer(text::changeProjectName, "Brand New", "Change");
    waitToSee("BrandNew.plist");
    waitToSee("BrandNew");
    expectCurrent("BrandNew");
    Tree renamed = projectTree;
    renamed["Makefile"] = "TWEAK_NAME = BrandNew\nBrandNew_FILES = Tweak.x\n";
    renamed["control"] = "BrandNewackage: com.example.BrandNew\nName: BrandNew\n";
    renamed.insert(std::pair{"BrandNew.plist", renamed.extract("P.plist").mapped()});
    EXPECT_EQ(treeAt(device::projects), below("BrandNew", renamed));
  });
}

}  // namespace
