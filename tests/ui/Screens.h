// The application on its screen, fresh for each test, as a user would have it.
#pragma once

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/controls/TextView.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <utility>

#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

inline const std::string backups = "/var/mobile/Documents/TweakbenchBackups";
inline const std::string updateMarker = "/var/Tweakyard/tmp/SuccessfullyUpdated.log";

class Screens : public testing::Test {
 protected:
  Screens() {
    device::reset();
    createProjectsFolder();
    recordTheosPath();
  }
  ~Screens() override {
    // A dialog left open would come back in the next test.
    for (auto dialog = topDialog(); dialog && dialog->isShowing(); dialog = topDialog()) dialog->dismiss();
    delegate_.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    removeItemAtPath(backups);
    UIApplication::sharedApplication()->setURLOpener({});
  }

  void start() {
    delegate_ = makeAppDelegate();
    UIScreen::mainScreen()->resize(390, 844);
    UIScreen::mainScreen()->show();
    finger::waitToSee("Files");
  }

  // Keys reach their shortcuts only in a window that is active.
  void startActive() {
    start();
    UIScreen::mainScreen()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
  }
  // To what has the focus, as a keyboard does.
  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const focused = QApplication::focusWidget();
    QTest::keyClick(focused != nullptr ? focused : UIScreen::mainScreen(), key, modifiers);
  }
  static void typeText(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }

  // A project of the given files, current when the application starts.
  static std::string makeProject(std::initializer_list<std::pair<const char*, std::string>> files) {
    const std::string folder = device::projects + "P/";
    for (const auto& [name, contents] : files) putFile(folder + name, contents);
    chooseProject("P");
    return folder;
  }

  static TextView& openEditor(const QString& file) {
    finger::tap(file);
    auto* const editor = qobject_cast<TextView*>(finger::find("File text"));
    // The file's name appears when the delayed load has run.
    finger::waitToSee(file);
    return *editor;
  }

  // Back to the screen that has the control `below`.
  static void leaveEditor(const QString& button, const QString& below = "Reload") {
    finger::tap(button);
    finger::waitToSee(below);
  }

  static void chooseFrom(const QString& menu, const QString& title, const QString& entry) {
    finger::tap(menu);
    finger::waitToSee(title);
    finger::tap(entry);
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
    finger::waitUntil([&name] { return !finger::sees(name); }, "still to be seen: " + name);
  }

  // Null when no dialog is shown.
  static std::shared_ptr<RQAlertView> topDialog() {
    const auto window = RQAlertViewWindowsObserver::sharedInstance()->lastWindow();
    const auto controller =
        window ? std::dynamic_pointer_cast<RQAlertViewController>(window->rootViewController()) : nullptr;
    return controller ? controller->alertView() : nullptr;
  }

  // Whether or not a dialog lies above it.
  static TextView& log() { return *UIScreen::mainScreen()->findChild<TextView*>("OutPut"); }

  static void openBuildScreen() {
    finger::tap("Build");
    finger::waitToSee("Make Package");
  }

  static void build(const QString& button) {
    finger::tap(button);
    finger::waitToSee(localized(text::pleaseWait));
    finger::waitUntil([] { return !finger::sees(localized(text::pleaseWait)); }, "the build does not end");
  }

  const StandardStreams restored_;
  std::unique_ptr<AppDelegate> delegate_;
};
