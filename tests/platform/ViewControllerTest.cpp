#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "support/Clock.h"
#include "support/SystemLog.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QLineEdit>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Recorder : public UIViewController {
 public:
  Recorder(std::string name, std::vector<std::string>& log) : name_(std::move(name)), log_(log) {}
  ~Recorder() override { log_.push_back(name_ + " gone"); }
  QLineEdit* field = nullptr;

 protected:
  void loadView() override {
    auto* view = new QWidget;
    field = new QLineEdit(view);
    setView(view);
  }
  void viewDidLoad() override { log_.push_back(name_ + " loaded"); }
  void viewWillDisappear(bool) override { log_.push_back(name_ + " will disappear"); }

 private:
  std::string name_;
  std::vector<std::string>& log_;
};

class Presenting : public testing::Test {
 protected:
  void SetUp() override {
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
    log.clear();
  }
  void TearDown() override {
    setMotionEnabled(false);
    window.reset();
    root.reset();
    letGo();
  }

  static void turn(long milliseconds) {
    HeldClock::turn(milliseconds);
    for (int step = 0; step < 3; ++step) letGo();
  }
  std::function<void()> note(const std::string& what) {
    return [this, what] { log.push_back(what); };
  }
  static void letGo() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  std::vector<std::string> log;
  std::shared_ptr<Recorder> root = std::make_shared<Recorder>("root", log);
  std::shared_ptr<UIWindow> window = makeUIWindow();
};

TEST_F(Presenting, CoversThePresenterAndGivesTheFocusBack) {
  root->field->setFocus();
  auto child = std::make_shared<Recorder>("child", log);
  root->presentViewController(child, false, note("presented"));
  EXPECT_THAT(log, ElementsAre("child loaded", "root will disappear", "presented"));
  EXPECT_EQ(window->topViewController(), child);
  EXPECT_FALSE(root->view()->isVisible());
  EXPECT_FALSE(root->field->hasFocus());
  EXPECT_EQ(child->view()->size(), window->size());

  log.clear();
  child->dismissViewControllerAnimated(false, note("dismissed"));
  child.reset();
  letGo();
  EXPECT_THAT(log, ElementsAre("child will disappear", "dismissed", "child gone"));
  EXPECT_TRUE(root->field->hasFocus());
}

TEST_F(Presenting, SlidesInATimeWhereMotionIsOnAndKeepsItsPlaceWhenResized) {
  setMotionEnabled(true);
  const HeldClock clock;
  auto child = std::make_shared<Recorder>("child", log);
  root->presentViewController(child, true, note("presented"));
  EXPECT_GT(child->view()->y(), 0);
  EXPECT_TRUE(root->view()->isVisible());
  UIScreen::mainScreen()->resize(500, 700);
  letGo();
  EXPECT_EQ(child->view()->size(), QSize(500, 700));
  turn(0);
  turn(349);
  EXPECT_GE(child->view()->y(), 0);
  EXPECT_NE(log.back(), "presented");
  turn(16);
  EXPECT_EQ(log.back(), "presented");
  EXPECT_EQ(child->view()->y(), 0);
  UIScreen::mainScreen()->resize(390, 844);
  // Taken back while it still moves, it makes room for another one.
  child->dismissViewControllerAnimated(true, note("dismissed"));
  auto next = std::make_shared<Recorder>("next", log);
  root->presentViewController(next, true, note("next presented"));
  next->dismissViewControllerAnimated(true);
  root->presentViewController(child, true, note("presented again"));
  EXPECT_EQ(root->presentedViewController(), child);
  turn(0);
  turn(400);
  EXPECT_EQ(log.back(), "presented again");
  for (const char* once : {"presented", "dismissed", "next presented"})
    EXPECT_EQ(std::count(log.begin(), log.end(), once), 1) << once;
  child->presentViewController(std::make_shared<Recorder>("grandchild", log), false);
  root->dismissViewControllerAnimated(true);
  EXPECT_EQ(child->presentedViewController(), nullptr) << "two move at once";
  turn(0);
  turn(400);
  EXPECT_EQ(window->topViewController(), root);
}

TEST_F(Presenting, RefusesWhatIsAlreadyShownOrHasNoPlace) {
  systemlog::take();
  auto child = std::make_shared<Recorder>("child", log);
  auto loose = std::make_shared<Recorder>("loose", log);
  root->presentViewController(child, false);
  root->presentViewController(loose, false, note("never"));
  child->presentViewController(child, false, note("never"));
  child->presentViewController(root, false, note("never"));
  child->presentViewController(nullptr, false, note("never"));
  loose->presentViewController(std::make_shared<Recorder>("deep", log), false, note("never"));
  EXPECT_EQ(systemlog::take().size(), 5U);
  EXPECT_EQ(std::count(log.begin(), log.end(), "never"), 0);
  EXPECT_EQ(window->topViewController(), child);
  root->dismissViewControllerAnimated(false);
}

TEST_F(Presenting, SurvivesAnyEndInTheMiddleOfAMotion) {
  setMotionEnabled(true);
  root->presentViewController(std::make_shared<Recorder>("child", log), true, note("never"));
  window.reset();
  letGo();
  root.reset();
  letGo();
  EXPECT_EQ(std::count(log.begin(), log.end(), "child gone"), 1);
  EXPECT_EQ(std::count(log.begin(), log.end(), "never"), 0);
}

}  // namespace
