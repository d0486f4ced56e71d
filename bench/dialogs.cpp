// What the dialog component promises: opening a sheet of any length, smooth motion, and no memory kept. Needs
// neither a display nor the device; exit status 0 when all hold.
#include "RQAlertView/RQAlertView.h"
#include "bench/FirstPaint.h"
#include "bench/SideBySide.h"
#include "platform/ApplicationStyle.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <QEventLoop>
#include <QLabel>
#include <QListWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr double mebibyte = 1024 * 1024;

class BackgroundController : public UIViewController {
 protected:
  void loadView() override {
    auto* view = new QWidget;
    auto* layout = new QVBoxLayout(view);
    auto* list = new QListWidget;
    for (int index = 0; index < 100; ++index) list->addItem(QStringLiteral("Source%1.x").arg(index));
    layout->addWidget(new QLabel(QStringLiteral("Sunrise")));
    layout->addWidget(list);
    setView(view);
  }
};

QStringList titles(int count) {
  QStringList all;
  for (int index = 0; index < count; ++index) all << QStringLiteral("Source%1.x").arg(index);
  return all;
}

std::shared_ptr<RQAlertView> sheetOf(const QStringList& buttons) {
  return RQAlertView::alertViewWithTitle(QStringLiteral("Which one?"), QStringLiteral("Choose."),
                                         RQAlertViewStyle::ActionSheet, buttons, QStringLiteral("Cancel"),
                                         QString());
}

std::shared_ptr<RQAlertView> alert() {
  return RQAlertView::alertViewWithTitle(
      QStringLiteral("Done"), QStringLiteral("Your package is ready in /var/mobile/Documents"),
      RQAlertViewStyle::Alert, {QStringLiteral("Go to Folder")}, QStringLiteral("Cancel"), QString());
}

// Lets everything happen that the event loop has to do: painting, and the destruction of what has gone.
void settle() {
  for (int turn = 0; turn < 3; ++turn) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

bool longSheet() {
  setMotionEnabled(false);
  const QStringList few = titles(10);
  const QStringList many = titles(10000);
  const auto opening = [](const QStringList& buttons) {
    std::shared_ptr<RQAlertView> sheet;
    const double taken = seconds([&] {
      sheet = sheetOf(buttons);
      sheet->show();
      QCoreApplication::processEvents();
    });
    sheet->dismiss();
    settle();
    return 1000 * taken;
  };
  return compare(
      {"opening a sheet of 10,000 titles", "of 10 titles", 2.0, 101}, "ms", [&] { return opening(many); },
      [&] { return opening(few); });
}

// Adds up how long the application is busy with each frame: from the end of the one before to its own
// painting, without the waiting in between.
class FrameTimer : public UIApplication {
 public:
  using UIApplication::UIApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    painted_ |= event->type() == QEvent::UpdateRequest;
    if (inside_) return UIApplication::notify(receiver, event);
    inside_ = true;
    bool result = false;
    add(1000 * seconds([&] { result = UIApplication::notify(receiver, event); }));
    inside_ = false;
    if (std::exchange(painted_, false)) frames_.push_back(std::exchange(busy_, 0));
    return result;
  }

  // What was done for the next frame outside of any event.
  void add(double milliseconds) { busy_ += milliseconds; }

  // In milliseconds, and forgotten here.
  std::vector<double> take() {
    busy_ = 0;
    return std::exchange(frames_, {});
  }

 private:
  bool inside_ = false;
  bool painted_ = false;
  double busy_ = 0;
  std::vector<double> frames_;
};

bool smoothMotion(FrameTimer& timer) {
  constexpr double allowed = 1000 / 60.0;
  setMotionEnabled(true);
  UIScreen::mainScreen()->resize(800, 1200);
  settle();
  bool holds = true;
  for (const auto& [name, make] :
       std::initializer_list<std::pair<const char*, std::shared_ptr<RQAlertView> (*)()>>{
           {"alert", [] { return alert(); }}, {"sheet of 40", [] { return sheetOf(titles(40)); }}}) {
    std::vector<double> frames;
    for (int round = 0; round < 10; ++round) {
      const std::shared_ptr<RQAlertView> dialog = make();
      timer.take();
      timer.add(1000 * seconds([&] { dialog->showAnimated(); }));
      while (dialog->state() != RQAlertViewState::Shown) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      }
      const std::vector<double> shown = timer.take();
      frames.insert(frames.end(), shown.begin(), shown.end());
      setMotionEnabled(false);
      dialog->dismiss();
      settle();
      setMotionEnabled(true);
    }
    if (frames.size() < 100) {
      std::printf("only %zu frames were painted\n", frames.size());
      return false;
    }
    std::sort(frames.begin(), frames.end());
    const double high = frames[frames.size() * 95 / 100];
    const bool held = high <= allowed;
    std::printf("%-34s %9.3f ms  (95th percentile of %zu, median %.3f, worst %.3f), at most %.2f: %s\n",
                (std::string("a frame of showing, ") + name).c_str(), high, frames.size(),
                frames[frames.size() / 2], frames.back(), allowed, held ? "holds" : "MISSED");
    holds &= held;
  }
  return holds;
}

// Of the first dialog of a run, once the first screen has stood for a moment.
bool smoothFirstDialog(FrameTimer& timer) {
  constexpr double allowed = 50;
  setMotionEnabled(true);
  QEventLoop moment;
  QTimer::singleShot(1000, &moment, &QEventLoop::quit);
  moment.exec();
  const std::shared_ptr<RQAlertView> dialog = alert();
  timer.take();
  timer.add(1000 * seconds([&] { dialog->showAnimated(); }));
  while (dialog->state() != RQAlertViewState::Shown)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  const std::vector<double> frames = timer.take();
  dialog->dismiss();
  settle();
  const double worst = *std::max_element(frames.begin(), frames.end());
  const bool holds = worst <= allowed;
  std::printf("%-34s %9.3f ms  (worst of %zu), at most %.2f: %s\n", "a frame of the first dialog", worst,
              frames.size(), allowed, holds ? "holds" : "MISSED");
  return holds;
}

bool noMemoryKept() {
  constexpr int dialogs = 1000;
  constexpr double allowed = 0.25;
  setMotionEnabled(false);
  const auto run = [](int count) {
    for (int index = 0; index < count; ++index) {
      const std::shared_ptr<RQAlertView> dialog = index % 2 ? sheetOf(titles(5)) : alert();
      dialog->show();
      QCoreApplication::processEvents();
      dialog->dismiss();
      settle();
    }
  };
  // Fonts, glyphs and the allocator's pools are filled once.
  run(dialogs);
  const double before = residentMemory();
  run(dialogs);
  const double grown = (residentMemory() - before) / mebibyte;
  const bool holds = grown <= allowed;
  std::printf("%-34s %9.3f MiB more resident, at most %.2f: %s\n", "1,000 dialogs shown and dismissed", grown,
              allowed, holds ? "holds" : "MISSED");
  return holds;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  FrameTimer application(argc, argv);
  const std::shared_ptr<UIWindow> window = makeUIWindow();
  // Without a text, as the screen of a new device.
  window->setRootViewController(std::make_shared<UIViewController>());
  window->makeKeyAndVisible();
  UIScreen::mainScreen()->show();
  bool hold = smoothFirstDialog(application);
  window->setRootViewController(std::make_shared<BackgroundController>());
  settle();
  hold &= longSheet();
  hold &= smoothMotion(application);
  hold &= noMemoryKept();
  return hold ? EXIT_SUCCESS : EXIT_FAILURE;
}
