#include "ui/screens/MakePackage.h"

#include "RQAlertView/RQAlertView.h"
#include "build/BuildProblem.h"
#include "build/BuildRunner.h"
#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "ui/Localized.h"
#include "ui/controls/LogView.h"
#include "ui/controls/Looks.h"
#include "ui/controls/Problems.h"
#include "ui/controls/UIButton.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/dialogs/ProjectDialogs.h"
#include "ui/screens/AppDelegate.h"
#include "ui/screens/PopOverNewController.h"
#include "workspace/Paths.h"
#include "workspace/ProjectSearch.h"

#include <algorithm>

#include <QAbstractScrollArea>
#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QResizeEvent>

// A label in the middle of the log's place, which is no part of the log's text.
class MakePackage::LogHint : public QLabel {
 public:
  explicit LogHint(QAbstractScrollArea& log) : QLabel(log.parentWidget()), log_(log) {
    setFont(systemFontOfSize(metrics::bodyTextSize));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setContentsMargins(metrics::buttonPadding, metrics::textPadding, metrics::buttonPadding,
                       metrics::textPadding);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, grey(176));  // readable on both grounds
    setPalette(colours);
    log_.installEventFilter(this);
    log_.viewport()->installEventFilter(this);
    hide();
  }

  // Over a log it has a ground of its own, and goes with the first press on the log.
  void showText(const QString& text, bool isOverLog) {
    isOverLog_ = isOverLog;
    setText(text);
    place();
    raise();
    show();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &log_ && (event->type() == QEvent::Resize || event->type() == QEvent::Move)) place();
    if (watched != &log_ && event->type() == QEvent::MouseButtonPress && isOverLog_) hide();
    return QLabel::eventFilter(watched, event);
  }

  void paintEvent(QPaintEvent* event) override {
    if (isOverLog_) {
      QPainter painter(this);
      const Layer ground{metrics::bareButtonRadius, 1, colours::tileGround, colours::tileBorder};
      drawLayer(painter, rect(), ground, ground.backgroundColor);
    }
    QLabel::paintEvent(event);
  }

 private:
  void place() {
    const QRect area = log_.geometry();
    const int oneLine = fontMetrics().horizontalAdvance(text()) + 2 * metrics::buttonPadding + 1;
    const int width = std::min(oneLine, area.width() - 2 * metrics::textPadding);
    QRect box(0, 0, width, heightForWidth(width));
    box.moveCenter(area.center());
    setGeometry(box);
  }

  QAbstractScrollArea& log_;
  bool isOverLog_ = false;
};

void MakePackage::loadView() {
  auto* const view = new QWidget;
  outlets_.setupUi(view);
  outlets_.titleLabel->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  setView(view);
  view->installEventFilter(this);
  outlets_.findBar->setText(outlets_.OutPut);
  hint_ = new LogHint(*outlets_.OutPut);
  running_ = new RunningLog(*outlets_.OutPut);
  wireButtons();
}

// A wide view has the buttons in a column of a fixed width beside the log, with the problems below them. In a
// narrow one all are one below the other, the problems in at most a third of the log's place.
bool MakePackage::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Resize) {
    const QSize size = static_cast<QResizeEvent*>(event)->size();
    const bool wide = size.width() >= metrics::wideScreen;
    outlets_.body->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    outlets_.side->setDirection(wide ? QBoxLayout::BottomToTop : QBoxLayout::TopToBottom);
    outlets_.side->setAlignment(outlets_.controls, wide ? Qt::AlignTop : Qt::AlignHCenter);
    outlets_.controls->setFixedWidth(wide ? metrics::sideColumnWidth
                                          : std::min(size.width(), metrics::widestControls));
    outlets_.problems->setMaximumWidth(wide ? metrics::sideColumnWidth : QWIDGETSIZE_MAX);
    const int place = size.height() - outlets_.titleBar->sizeHint().height() -
                      outlets_.controls->sizeHint().height() - metrics::touchSize;
    outlets_.problems->limitHeight(wide ? std::nullopt : std::optional(place / 3));
  }
  return UIViewController::eventFilter(object, event);
}

void MakePackage::wireButtons() {
  const auto wire = [this](UIButton& button, const QKeySequence& keys, void (MakePackage::*action)()) {
    button.onClick(this, [this, action] { (this->*action)(); });
    addShortcut(button, keys);
  };
  wire(*outlets_.MP, Qt::CTRL | Qt::Key_B, &MakePackage::MakePackageAction);
  wire(*outlets_.MPI, Qt::CTRL | Qt::Key_I, &MakePackage::MakePackageInstall);
  wire(*outlets_.ClearLogButton, Qt::CTRL | Qt::Key_L, &MakePackage::ClearLog);
  wire(*outlets_.RespringButton, Qt::CTRL | Qt::Key_R, &MakePackage::Respring);
  wire(*outlets_.infoButton, Qt::Key_F1, &MakePackage::InfoButton);
  outlets_.backButton->onClick(this, [this] { dismissViewControllerAnimated(true); });
  wireProjectButtons(
      *outlets_.goToFileButton, *outlets_.searchButton,
      [this](const std::string& path, long line, long column) { presentEditor(*this, path, line, column); });
  nameShortcut(*outlets_.backButton, Qt::Key_Escape);
  connect(outlets_.OutPut, &LogView::problemPicked, this, &MakePackage::openProblem);
  connect(outlets_.problems, &ProblemsPanel::picked, this, &MakePackage::openProblem);
  connect(outlets_.problems, &ProblemsPanel::shown, this, [this](std::size_t problem, bool stepped) {
    outlets_.OutPut->showProblem(LastBuild::shared().problems().at(problem));
    hint_->hide();
    // Where Return opens the file.
    if (stepped) outlets_.OutPut->setFocus(Qt::ShortcutFocusReason);
  });
  // When the application ends during a build, the commands have been stopped and the job waited for by now.
  connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { keptWhileBuilding_.reset(); });
}

void MakePackage::viewDidLoad() {
  UIViewController::viewDidLoad();
  outlets_.SuccessLable->setFont(systemFontOfSize(metrics::bodyTextSize));
  outlets_.SuccessLable->setText(localized(text::showSuccessAlert));
  // The caption beside it, which the switch does not show itself.
  outlets_.SuccessAlert->setAccessibleDescription(localized(text::showSuccessAlert));
  hint_->showText(localized(text::nextLogAppearsHere), false);
  // Those of an earlier screen belong to another project.
  forgetProblems();
  const auto style = [](UIButton* button, qreal radius) {
    button->setLayer(
        {.cornerRadius = radius, .borderWidth = 1, .backgroundColor = colours::buildButtonGround});
  };
  style(outlets_.RespringButton, 20);
  style(outlets_.ClearLogButton, 20);
  style(outlets_.MP, 26);
  style(outlets_.MPI, 26);
}

void MakePackage::UpdateTheos() {
  updateTheos();
}

void MakePackage::startBuild(BuildVariant variant) {
  if (progress_) return;
  progress_ = RQAlertView::alertViewWithActivityIndicatorAndTitle(
      localized(text::makingYourTweak), QString(), RQAlertViewStyle::Alert, localized(text::pleaseWait),
      QStringList(), QString(), QString());
  dressAsProgress(*progress_);
  progress_->showAnimated();
  hint_->hide();
  running_->start(paths::makeLog);
  keptWhileBuilding_ = shared_from_this();
  dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_HIGH, 0), [this, variant] {
    bool hasOnlyUpdated = false;
    runBuildJob(variant, [this, &hasOnlyUpdated] {
      dispatch_async(dispatch_get_main_queue(), [this] { running_->follow(paths::updateLog); });
      UpdateTheos();
      hasOnlyUpdated = true;
    });
    dispatch_async(dispatch_get_main_queue(),
                   [this, variant, hasOnlyUpdated] { finishBuild(variant, hasOnlyUpdated); });
  });
}

void MakePackage::finishBuild(BuildVariant variant, bool hasOnlyUpdated) {
  const std::shared_ptr<UIViewController> screen = std::move(keptWhileBuilding_);
  const std::shared_ptr<RQAlertView> progress = std::move(progress_);
  progress->dismissAnimated();
  running_->stop();
  BuildResult result = collectBuildResult(variant);
  const bool hasLog = result.log.has_value();
  const bool isEmpty = !hasLog || result.log->empty();
  // Make Package Install never gets beyond the update, however often it is tapped.
  if (hasOnlyUpdated && variant == BuildVariant::Package) {
    hint_->showText(localized(text::tapAgainToBuild), !isEmpty);
  } else if (isEmpty) {
    hint_->showText(localized(text::nextLogAppearsHere), false);
  }
  // After an update the log is that of an earlier build, and so are its problems.
  if (!hasOnlyUpdated) {
    const BuiltProject built{fill(paths::project, {result.project}), currentProjectFiles()};
    LastBuild::shared().set(result.project, problemsIn(result.log.value_or(std::string()), built));
  }
  outlets_.OutPut->setBytes(std::move(result.log).value_or(std::string()));
  showProblems();
  const bool asked = variant == BuildVariant::Package && outlets_.SuccessAlert->isOn();
  if (asked && result.hasPackages && hasLog)
    showConfirmation(localized(text::done), localized(text::debIsReady, {result.project}),
                     localized(text::goToDebFolder), [project = result.project] {
                       openAddress(fill("filza://view/var/mobile/Documents/Tweakbench/%@", {project}));
                     });
}

void MakePackage::Respring() {
  run_cmder("killall backboardd");
}

void MakePackage::ClearLog() {
  discardLog(paths::makeLog);
  outlets_.OutPut->setBytes({});
  forgetProblems();
  hint_->showText(localized(text::nextLogAppearsHere), false);
}

void MakePackage::forgetProblems() {
  LastBuild::shared().set(std::nullopt, {});
  showProblems();
}

void MakePackage::showProblems() {
  outlets_.OutPut->setProblems(LastBuild::shared().problems());
  outlets_.problems->reload();
}

void MakePackage::openProblem(std::size_t index) {
  const LastBuild& build = LastBuild::shared();
  const Problem problem = build.problems().at(index);
  outlets_.problems->setCurrent(index);
  outlets_.OutPut->showProblem(problem);
  if (fileExistsAtPath(fill(paths::projectFile, {build.project(), problem.file})))
    presentEditor(*this, problem.file, problem.line, problem.column);
}

void MakePackage::InfoButton() {
  showConfirmation(QStringLiteral("Tip"), localized(text::deviceSupportHint), localized(text::addTheSource),
                   [] { openAddress(links::addPackageSource, [](bool) {}); });
}

void MakePackage::cancelOperation() {
  if (!outlets_.findBar->dismiss()) dismissViewControllerAnimated(true);
}
