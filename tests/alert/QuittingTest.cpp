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
    const auto dialog = RQAlertView::alertViewWithTitle("Title", QString(), RQAlertViewStyle::Alert, {"Quit"},
                                                        QString(), QString());
    // Once the screen is shown.
    performSelectorAfterDelay(
        dialog.get(), [this, dialog] { start_(dialog); }, 0);
    return true;
  }

 private:
  Start start_;
  std::shared_ptr<UIWindow> window_ = makeUIWindow();
};

// Runs a whole application, and answers whether the dialog has gone with it.
bool endsCleanly(const Delegate::Start& start) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  char name[] = "test";
  char* arguments[] = {name, nullptr};
  std::weak_ptr<RQAlertView> watched;
  EXPECT_EQ(UIApplicationMain(1, arguments,
                              [&] {
                                return std::make_unique<Delegate>([&](std::shared_ptr<RQAlertView> dialog) {
                                  setMotionEnabled(true);
                                  watched = dialog;
                                  start(std::move(dialog));
                                });
                              }),
            0);
  return watched.expired();
}

TEST(Quitting, FromAHandlerWhileTheDialogBeginsToGo) {
  EXPECT_TRUE(endsCleanly([](const std::shared_ptr<RQAlertView>& dialog) {
    dialog->setActionHandler([](RQAlertView&, std::size_t, const QString&) { UIApplication::quit(); });
    dialog->setDidShowHandler([](RQAlertView& self) { self.forceActionAtIndex(0); });
    dialog->showAnimated();
  }));
}

TEST(Quitting, ByClosingTheScreenWhileTheDialogStillComes) {
  EXPECT_TRUE(endsCleanly([](const std::shared_ptr<RQAlertView>& dialog) {
    dialog->setAnimationDuration(1000);
    dialog->showAnimated();
    performSelectorAfterDelay(
        dialog.get(), [] { UIScreen::mainScreen()->close(); }, 0.02);
  }));
}

TEST(Quitting, WithADialogThatWasNeverShown) {
  std::shared_ptr<RQAlertView> kept;
  endsCleanly([&](std::shared_ptr<RQAlertView> dialog) {
    kept = std::move(dialog);
    UIApplication::quit();
  });
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->state(), RQAlertViewState::Dismissed);
  kept->show();
  kept->dismiss();
}

}  // namespace
