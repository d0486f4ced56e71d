// The application ends while a dialog is up: nothing is left behind, and nothing is touched that has gone.
#include "RQAlertView/RQAlertView.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"

#include <functional>
#include <memory>

#include <gtest/gtest.h>

namespace {

class Delegate : public UIApplicationDelegate {
 public:
  using Start = std::function<void(std::shared_ptr<RQAlertView>)>;

  explicit Delegate(Start start) : start_(std::move(start)) {}

  bool applicationDidFinishLaunchingWithOptions(UIApplication&, const QVariantMap&) override {
    window_->setRootViewController(std::make_shared<UIViewController>());
    window_->makeKeyAndVisible();
    const auto dialog = RQAlertView::alertViewWithTitle("Title", QString(), RQAlertViewStyle::Alert,
                                                        QStringList{"Quit"}, QString(), QString());
    // Once the screen is shown.
    performSelectorAfterDelay(
        dialog.get(), [this, dialog] { start_(dialog); }, 0);
    return true;
  }

 private:
  Start start_;
  std::shared_ptr<UIWindow> window_ = makeUIWindow();
};

std::weak_ptr<RQAlertView> watched;

// Runs a whole application, in a process of its own, since Qt's animations do not outlive one.
void expectCleanEnd(
    const Delegate::Start& start, const std::function<bool()>& isClean = [] { return watched.expired(); }) {
  const auto run = [&start] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    return UIApplicationMain(1, arguments, [&start] {
      return std::make_unique<Delegate>([&start](std::shared_ptr<RQAlertView> dialog) {
        setMotionEnabled(true);
        watched = dialog;
        start(std::move(dialog));
      });
    });
  };
  EXPECT_EXIT(std::exit(run() == 0 && isClean() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(Quitting, FromAHandlerWhileTheDialogBeginsToGo) {
  expectCleanEnd([](const std::shared_ptr<RQAlertView>& dialog) {
    dialog->setActionHandler([](RQAlertView&, std::size_t, const QString&) { UIApplication::quit(); });
    dialog->setDidShowHandler([](RQAlertView& self) { self.forceActionAtIndex(0); });
    dialog->showAnimated();
  });
}

TEST(Quitting, ByClosingTheScreenWhileTheDialogStillComes) {
  expectCleanEnd([](const std::shared_ptr<RQAlertView>& dialog) {
    dialog->setAnimationDuration(1000);
    dialog->showAnimated();
    performSelectorAfterDelay(
        dialog.get(), [] { UIScreen::mainScreen()->close(); }, 0.02);
  });
}

TEST(Quitting, WithADialogThatWasNeverShown) {
  std::shared_ptr<RQAlertView> kept;
  const auto keep = [&kept](std::shared_ptr<RQAlertView> dialog) {
    kept = std::move(dialog);
    UIApplication::quit();
  };
  expectCleanEnd(keep, [&kept] {
    const bool isDismissed = kept->state() == RQAlertViewState::Dismissed;
    kept->show();
    kept->dismiss();
    return isDismissed;
  });
}

}  // namespace
