// The menus of the main screen, from the tap to what it leaves on disk.
#include "core/PropertyList.h"
#include "platform/UIApplication.h"
#include "tests/ui/Screens.h"
#include "ui/OpenAddress.h"
#include "workspace/CurrentProject.h"
#include "workspace/NewProject.h"

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
  Menus() { removeItemAtPath(backups); }
};

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
  UIApplication::sharedApplication()->setURLOpener({});
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

}  // namespace
