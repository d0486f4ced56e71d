// The gallery: writes a picture of every kind, style and state of a dialog, in two languages and four sizes.
#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewRootView.h"
#include "core/Languages.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"

#include <cstdio>

#include <QDir>
#include <QElapsedTimer>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>

namespace {

using Dialog = std::shared_ptr<RQAlertView>;

constexpr auto alert = RQAlertViewStyle::Alert;
constexpr auto sheet = RQAlertViewStyle::ActionSheet;
constexpr double motionSeconds = 0.6;

bool arabic = false;

QString in(const TextPair& pair) {
  return QString::fromUtf8(arabic ? pair.arabic : pair.english);
}

// In the colours that the application gives to its own.
Dialog dark(const Dialog& dialog) {
  const QColor words = dialog->style() == sheet ? grey(153) : QColor(Qt::white);
  dialog->setBackgroundColor(grey(40));
  dialog->setSeparatorsColor(grey(51));
  dialog->setTitleTextColor(words);
  dialog->setMessageTextColor(words);
  dialog->setCancelButtonTitleColor(Qt::red);
  dialog->setCancelButtonBackgroundColorHighlighted(Qt::red);
  dialog->setProgressLabelTextColor(Qt::white);
  dialog->setActivityIndicatorViewColor(Qt::white);
  dialog->setTextFieldsTextColor(Qt::white);
  dialog->setTextFieldsBackgroundColor(grey(69));
  return dialog;
}

Dialog large(const Dialog& dialog) {
  const QFont font = systemFontOfSize(32);
  dialog->setTitleFont(font);
  dialog->setMessageFont(font);
  dialog->setButtonsFont(font);
  dialog->setCancelButtonFont(font);
  dialog->setDestructiveButtonFont(font);
  dialog->setTextFieldsFont(font);
  dialog->setProgressLabelFont(font);
  return dialog;
}

Dialog bare(RQAlertViewStyle style, const QString& title, const QString& message, const QStringList& buttons,
            const QString& destructive = {}) {
  return RQAlertView::alertViewWithTitle(title, message, style, buttons, in(text::cancel), destructive);
}

Dialog notice() {
  return dark(bare(alert, in(text::done), in(text::debIsReady), {in(text::goToDebFolder)}));
}

Dialog three() {
  return dark(
      bare(alert, in(text::saveChanges), in(text::changesWouldBeLost), {in(text::save)}, in(text::discard)));
}

Dialog stacked() {
  return dark(bare(alert, in(text::deleteAllProjects), in(text::deleteAllProjectsQuestion),
                   {in(text::exportProjectToPath), in(text::backUp)}, in(text::imSure)));
}

Dialog fields() {
  return dark(RQAlertView::alertViewWithTextFieldsAndTitle(
      in(text::createHeaderFile), QStringLiteral("~ root$"), 3,
      [](RQAlertViewTextField& field, std::size_t index) {
        if (index == 0) field.setPlaceholder(in(text::pathExample));
        if (index == 1) field.setText(in(text::english));
        field.setSecureTextEntry(index == 2);
      },
      {in(text::confirm)}, in(text::cancel), QString()));
}

Dialog indicator() {
  return dark(RQAlertView::alertViewWithActivityIndicatorAndTitle(
      in(text::makingYourTweak), QString(), alert, in(text::pleaseWait), {}, QString(), QString()));
}

Dialog progress() {
  return dark(RQAlertView::alertViewWithProgressViewAndTitle(in(text::backUp), in(text::pleaseWait), alert,
                                                             0.62, in(text::debIsReady), {}, in(text::cancel),
                                                             QString()));
}

Dialog customView() {
  auto* view = new QPlainTextEdit(in(text::deviceSupportHint));
  view->setFixedHeight(90);
  return dark(RQAlertView::alertViewWithViewAndTitle(in(text::error), QString(), alert, view, {in(text::ok)},
                                                     QString(), QString()));
}

Dialog options() {
  return dark(bare(sheet, in(text::extraOptions), in(text::whichOne),
                   {in(text::importFromPath), in(text::goToDebsFolder), in(text::openInFilza),
                    in(text::backUp), in(text::restore), in(text::changeLanguage)},
                   in(text::deleteCurrentProject)));
}

QStringList files() {
  QStringList titles{"Makefile", "a & b <b>not bold</b>",
                     "A very long file name that cannot be shown on one line of a phone.plist"};
  for (int index = 0; index < 10000; ++index) titles << QStringLiteral("Source%1.x").arg(index);
  return titles;
}

QString fortyLines() {
  return (in(text::deleteAllBackupsQuestion) + u'\n').repeated(20);
}

Dialog scrolling() {
  const Dialog dialog = dark(bare(alert, in(text::loadProject), fortyLines(), files(), in(text::discard)));
  dialog->setShowsVerticalScrollIndicator(true);
  dialog->setIndicatorStyle(UIScrollViewIndicatorStyle::White);
  return dialog;
}

Dialog dressed() {
  const Dialog dialog = notice();
  dialog->setLayerBorderColor(QColor(80, 140, 255));
  dialog->setLayerBorderWidth(2);
  dialog->setLayerShadowColor(Qt::black);
  dialog->setLayerShadowRadius(16);
  dialog->setLayerShadowOffset({0, 6});
  dialog->setCoverBlurEffect(UIBlurEffectStyle::Dark);
  return dialog;
}

Dialog icons() {
  QPixmap icon(20, 20);
  icon.fill(QColor(90, 200, 90));
  const Dialog dialog = options();
  for (std::size_t index = 0; index < 3; ++index) {
    dialog->setButtonPropertiesAtIndex(index, [&](RQAlertViewButtonProperties& properties) {
      properties.iconImage = icon;
      if (index == 1) properties.iconPosition = RQAlertViewButtonIconPosition::Right;
      if (index == 2) properties.textAlignment = NSTextAlignment::Left;
    });
  }
  dialog->setButtonEnabled(false, 3);
  return dialog;
}

Dialog glass() {
  const Dialog dialog = options();
  dialog->setBackgroundColor(QColor(40, 40, 40, 120));
  dialog->setBackgroundBlurEffect(UIBlurEffectStyle::Dark);
  return dialog;
}

RQAlertViewBox& boxOf(const RQAlertView& dialog) {
  return *static_cast<RQAlertViewRootView*>(dialog.view())->box();
}

void press(RQAlertView& dialog) {
  boxOf(dialog).findChild<RQAlertViewButton*>()->setDown(true);
}

void pressRow(RQAlertView& dialog) {
  const auto* list = boxOf(dialog).findChild<RQAlertViewButtonList*>();
  const QPointF place = list->visualRect(list->model()->index(1, 0)).center();
  QMouseEvent held(QEvent::MouseButtonPress, place, list->viewport()->mapToGlobal(place), Qt::LeftButton,
                   Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(list->viewport(), &held);
}

// What Tab does.
void reach(QWidget& part) {
  part.window()->setAttribute(Qt::WA_KeyboardFocusChange);
  part.window()->activateWindow();
  part.setFocus(Qt::TabFocusReason);
}

// The moment of its life at which a dialog is pictured; the others are in the middle of a motion.
enum class Moment { Shown, Coming, Going, ChangingIntoNotice };

struct Picture {
  const char* name;
  std::function<Dialog()> make;
  std::function<void(RQAlertView&)> prepare{};
  Moment moment = Moment::Shown;
};

const std::vector<Picture> pictures{
    {"notice", notice},
    {"three-buttons", three},
    {"stacked-buttons", stacked},
    {"text-fields", fields},
    {"activity-indicator", indicator},
    {"progress-view", progress},
    {"custom-view", customView},
    {"sheet", options},
    {"sheet-10000", [] { return dark(bare(sheet, in(text::whichOne), {}, files())); }},
    {"sheet-icons", icons},
    {"sheet-glass", glass},
    {"no-buttons-sheet", [] { return dark(bare(sheet, in(text::noData), {}, {})); }},
    {"long-message", [] { return dark(bare(alert, in(text::done), fortyLines(), {in(text::ok)})); }},
    {"alert-10000", scrolling},
    {"bare-alert", [] { return bare(alert, in(text::error), in(text::noData), {in(text::ok)}); }},
    {"bare-sheet", [] { return bare(sheet, in(text::error), in(text::noData), {in(text::ok)}); }},
    {"dressed", dressed},
    {"large-three-buttons", [] { return large(three()); }},
    {"large-text-fields", [] { return large(fields()); }},
    {"large-progress-view", [] { return large(progress()); }},
    {"large-sheet", [] { return large(options()); }},
    {"pressed", notice, press},
    {"pressed-row", options, pressRow},
    {"focused", notice, [](RQAlertView& dialog) { reach(*boxOf(dialog).initialFocus()); }},
    {"focused-row", options,
     [](RQAlertView& dialog) { reach(*boxOf(dialog).findChild<RQAlertViewButtonList*>()); }},
    {"focused-message", scrolling, [](RQAlertView& dialog) { reach(boxOf(dialog).header()); }},
    {"disabled", notice, [](RQAlertView& dialog) { dialog.setCancelButtonEnabled(false); }},
    {"coming", notice, {}, Moment::Coming},
    {"coming-sheet", options, {}, Moment::Coming},
    {"going", notice, {}, Moment::Going},
    {"going-sheet", options, {}, Moment::Going},
    {"changing", options, {}, Moment::ChangingIntoNotice},
};

// Returns the dialog that is in the picture in the end.
Dialog show(const Picture& picture) {
  const Dialog shown = picture.make();
  shown->setAnimationDuration(motionSeconds);
  setMotionEnabled(picture.moment == Moment::Coming);
  shown->showAnimated();
  if (picture.prepare) picture.prepare(*shown);
  setMotionEnabled(picture.moment != Moment::Shown);
  UIApplication::processEvents();
  if (picture.moment == Moment::Going) shown->dismissAnimated();
  Dialog last = shown;
  if (picture.moment == Moment::ChangingIntoNotice) {
    last = notice();
    last->setAnimationDuration(motionSeconds);
    shown->transitionToAlertView(last);
  }
  QElapsedTimer timer;
  timer.start();
  while (picture.moment != Moment::Shown && timer.elapsed() < 1000 * motionSeconds / 6)
    UIApplication::processEvents();
  return last;
}

bool write(const QString& folder, const Picture& picture, QSize size) {
  UIScreen::mainScreen()->resize(size);
  UIApplication::setLayoutDirection(arabic ? Qt::RightToLeft : Qt::LeftToRight);
  UIScreen::mainScreen()->setAttribute(Qt::WA_KeyboardFocusChange, false);
  const Dialog shown = show(picture);
  const QString path = QStringLiteral("%1/%2-%3-%4x%5.png")
                           .arg(folder, QLatin1String(picture.name), QLatin1String(arabic ? "ar" : "en"))
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

// Something behind the dialogs.
class BackgroundController : public UIViewController {
 protected:
  void loadView() override {
    auto* list = new QListWidget;
    for (int index = 1; index <= 40; ++index) list->addItem(QStringLiteral("Source%1.x").arg(index));
    setView(list);
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s FOLDER [PART OF A NAME]\n", argv[0]);
    return 2;
  }
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
  for (const Picture& picture : pictures) {
    if (!QLatin1String(picture.name).contains(wanted)) continue;
    for (const QSize size : {QSize(320, 480), QSize(390, 844), QSize(820, 1180), QSize(1600, 1200)}) {
      for (const bool inArabic : {false, true}) {
        arabic = inArabic;
        if (!write(folder, picture, size)) return 1;
      }
    }
  }
  return 0;
}
