// The gallery: writes a picture of every dialog of the component, in two languages and several sizes.
#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewRootView.h"
#include "platform/ApplicationStyle.h"
#include "platform/UIApplication.h"
#include "platform/UIDevice.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "tests/gallery/GalleryDialogs.h"

#include <cstdio>
#include <memory>

#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace {

// Something to lie behind the dialogs.
class BackgroundController : public UIViewController {
 protected:
  void loadView() override {
    auto* view = new QWidget;
    auto* layout = new QVBoxLayout(view);
    auto* heading = new QLabel(QStringLiteral("Sunrise"));
    heading->setFont(boldSystemFontOfSize(28));
    auto* list = new QListWidget;
    for (int index = 1; index <= 40; ++index) list->addItem(QStringLiteral("Source%1.x").arg(index));
    layout->addWidget(heading);
    layout->addWidget(list);
    setView(view);
  }
};

constexpr double motionSeconds = 0.6;

// To somewhere in the middle of a motion.
void letItMove() {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < 1000 * motionSeconds / 6) UIApplication::processEvents();
}

// Answers the dialog that is pictured in the end.
std::shared_ptr<RQAlertView> show(const GalleryDialog& dialog, GalleryLanguage language) {
  const std::shared_ptr<RQAlertView> shown = dialog.make(language);
  shown->setAnimationDuration(motionSeconds);
  setMotionEnabled(dialog.moment == GalleryMoment::Coming);
  shown->showAnimated();
  if (dialog.prepare) dialog.prepare(*shown);
  setMotionEnabled(dialog.moment != GalleryMoment::Shown);
  UIApplication::processEvents();
  if (dialog.moment == GalleryMoment::Going) shown->dismissAnimated();
  std::shared_ptr<RQAlertView> last = shown;
  if (dialog.moment == GalleryMoment::ChangingIntoNotice) {
    last = galleryNotice(language);
    last->setAnimationDuration(motionSeconds);
    shown->transitionToAlertView(last);
  }
  if (dialog.moment != GalleryMoment::Shown) letItMove();
  return last;
}

bool writePicture(const QString& folder, const GalleryDialog& dialog, GalleryLanguage language, QSize size) {
  UIScreen::mainScreen()->resize(size);
  UIApplication::setLayoutDirection(language == GalleryLanguage::Arabic ? Qt::RightToLeft : Qt::LeftToRight);
  UIScreen::mainScreen()->setAttribute(Qt::WA_KeyboardFocusChange, false);
  const std::shared_ptr<RQAlertView> shown = show(dialog, language);
  const QString path =
      QStringLiteral("%1/%2-%3-%4x%5.png")
          .arg(folder, dialog.name,
               language == GalleryLanguage::Arabic ? QStringLiteral("ar") : QStringLiteral("en"))
          .arg(size.width())
          .arg(size.height());
  const bool written = UIScreen::mainScreen()->grab().save(path);
  setMotionEnabled(false);
  shown->dismiss();
  if (shown->view()) static_cast<RQAlertViewRootView*>(shown->view())->finishMotion();
  UIApplication::processEvents();
  if (written) std::printf("%s\n", qPrintable(path));
  return written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s FOLDER [PART OF A NAME]\n", argv[0]);
    return 2;
  }
  // Pictures need no display.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  UIApplication application(argc, argv);
  setMotionEnabled(false);
  const QString folder = QString::fromLocal8Bit(argv[1]);
  const QString wanted = argc == 3 ? QString::fromLocal8Bit(argv[2]) : QString();
  if (!QDir().mkpath(folder)) return 1;

  const std::shared_ptr<UIWindow> window = makeUIWindow();
  window->setRootViewController(std::make_shared<BackgroundController>());
  window->makeKeyAndVisible();
  UIScreen::mainScreen()->show();
  for (const GalleryDialog& dialog : galleryDialogs()) {
    if (!dialog.name.contains(wanted)) continue;
    for (const QSize size : {QSize(320, 480), QSize(390, 844), QSize(820, 1180), QSize(1600, 1200)}) {
      for (const GalleryLanguage language : {GalleryLanguage::English, GalleryLanguage::Arabic}) {
        if (!writePicture(folder, dialog, language, size)) return 1;
      }
    }
  }
  return 0;
}
