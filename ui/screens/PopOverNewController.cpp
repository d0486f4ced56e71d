#include "ui/screens/PopOverNewController.h"

#include "RQAlertView/RQAlertView.h"
#include "core/FileManager.h"
#include "core/History.h"
#include "core/Process.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIWindow.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"
#include "ui/controls/Problems.h"
#include "ui/controls/UIButton.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/dialogs/ProjectDialogs.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"
#include "workspace/ProjectFiles.h"

#include <map>

#include <QPointer>
#include <QShortcut>

namespace {

constexpr double loadDelay = 0.1;  // seconds; by then the main screen has recorded the pick
constexpr std::size_t largestEditedFile = std::size_t{32} << 20;  // bytes

struct LeftPlace {
  TextView::Place place;
  std::size_t text = 0;  // the hash of what the file held: in another text the place means nothing
};

// Where each file was left, by its path. Forgotten with the application's window.
std::map<std::string, LeftPlace>& leftPlaces() {
  static std::map<std::string, LeftPlace> places;
  static QPointer<UIWindow> window;
  UIWindow* const now = UIApplication::sharedApplication()->appWindow();
  if (window != now) places.clear();
  window = now;
  return places;
}

}  // namespace

void PopOverNewController::loadView() {
  auto* const view = new QWidget;
  outlets_.setupUi(view);
  outlets_.NavTitle->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  setView(view);
  outlets_.findBar->setText(outlets_.PopOvetText);
  outlets_.SaveButton->onClick(this, [this] { SaveButton(); });
  outlets_.CancelButton->onClick(this, [this] { DismissPop(); });
  addShortcut(*outlets_.SaveButton, QKeySequence::Save);
  nameShortcut(*outlets_.CancelButton, Qt::Key_Escape);
  view->setFocusProxy(outlets_.PopOvetText);
  wireToolBar();
}

void PopOverNewController::wireToolBar() {
  CodeView& text = *outlets_.PopOvetText;
  wireProjectButtons(
      *outlets_.goToFileButton, *outlets_.searchButton,
      [this](const std::string& path, long line, long column) { goTo(path, line, column); },
      [&text] {
        const QString selected = text.selectedText();
        return selected.contains(QLatin1Char('\n')) ? QString() : selected;
      });
  outlets_.goToLineButton->dress("line", localized(text::goToLine));
  outlets_.goToLineButton->onClick(this, [this] {
    showGoToLine([editor = QPointer<PopOverNewController>(this)](long line, long column) {
      if (editor) editor->outlets_.PopOvetText->goTo(line, column);
    });
  });
  addShortcut(*outlets_.goToLineButton, Qt::CTRL | Qt::Key_G);
  outlets_.findButton->dress("find", localized(text::find));
  outlets_.findButton->onClick(this, [this] { outlets_.findBar->open(); });
  nameShortcut(*outlets_.findButton, QKeySequence::Find);
  const auto wire = [&](const QKeySequence& keys, SearchDirection direction) {
    connect(new QShortcut(keys, view()), &QShortcut::activated, this,
            atEventBoundary([&text, direction] { text.goToProblem(direction); }));
  };
  wire(Qt::Key_F8, SearchDirection::Forward);
  wire(Qt::SHIFT | Qt::Key_F8, SearchDirection::Backward);
  outlets_.problemLabel->setFont(systemFontOfSize(metrics::smallTextSize));
  outlets_.problemLabel->setContentsMargins(metrics::textPadding, metrics::barSpacing, metrics::textPadding,
                                            metrics::barSpacing);
  connect(&LastBuild::shared(), &LastBuild::changed, this, atEventBoundary([this] { showProblems(); }));
  // Later, since this is found out while the text is painted.
  const auto tellMessages = [this, &text] {
    const QStringList messages = text.messagesAtCaret();
    outlets_.problemLabel->setText(messages.join(QLatin1Char('\n')));
    outlets_.problemLabel->setVisible(!messages.isEmpty());
  };
  connect(&text, &CodeView::caretLineChanged, this, tellMessages, Qt::QueuedConnection);
}

void PopOverNewController::viewDidLoad() {
  UIViewController::viewDidLoad();
  outlets_.CancelButton->setLayer({.cornerRadius = 18, .backgroundColor = colours::editorButtonGround});
  outlets_.SaveButton->setLayer({.cornerRadius = 20, .backgroundColor = colours::editorButtonGround});
  performSelectorAfterDelay(
      this, [this] { Rep(); }, loadDelay);
  outlets_.PopOvetText->installEventFilter(this);
}

// Keys do not wait for the delayed load: it would take back what they type, and Ctrl+S would empty the file.
bool PopOverNewController::eventFilter(QObject* text, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::InputMethod) loadNow();
  return UIViewController::eventFilter(text, event);
}

void PopOverNewController::loadNow() {
  cancelPreviousPerformRequests(this);
  Rep();
}

void PopOverNewController::openAt(long line, long column) {
  line_ = line;
  column_ = column;
}

void PopOverNewController::viewWillDisappear(bool animated) {
  UIViewController::viewWillDisappear(animated);
  keepPlace();
}

void PopOverNewController::keepPlace() {
  if (!path_.empty()) leftPlaces()[path_] = {outlets_.PopOvetText->place(), textHash_};
}

void PopOverNewController::goTo(const std::string& path, long line, long column) {
  if (fill(paths::projectFile, {currentProject(), path}) == path_) {
    if (line > 0) outlets_.PopOvetText->goTo(line, column);
    return;
  }
  leave([this, path, line, column] {
    keepPlace();
    SS(path);
    openAt(line, column);
    loadNow();
  });
}

void PopOverNewController::Rep() {
  outlets_.PopOvetText->removeEventFilter(this);
  const MaybeText path = pickedFile();
  outlets_.NavTitle->setText(path ? shownName(lastPathComponent(*path)) : QString());
  const MaybeText text = path ? stringWithContentsOfFile(*path, largestEditedFile) : std::nullopt;
  isTooLarge_ = path && !text && sizeOfFile(*path) > largestEditedFile;
  const auto listing = path ? contentsOfDirectoryAtPath(*path) : std::nullopt;
  NSLog(fill("Cont %@", {listing ? MaybeText(described(*listing)) : std::nullopt}));
  if (listing) NSLog("Cont === Directory");
  outlets_.PopOvetText->setFile(text.value_or(std::string()), path.value_or(std::string()));
  path_ = path.value_or(std::string());
  showProblems();
  textHash_ = std::hash<std::string>()(text.value_or(std::string()));
  if (line_ > 0) {
    outlets_.PopOvetText->goTo(line_, column_);
  } else if (const auto left = leftPlaces().find(path_);
             left != leftPlaces().end() && left->second.text == textHash_) {
    outlets_.PopOvetText->goTo(left->second.place);
  }
  if (!text || text->empty())
    NSLog(fill("Empty %@", {text ? MaybeText(pathExtension(*text)) : std::nullopt}));
}

void PopOverNewController::showProblems() {
  const LastBuild& build = LastBuild::shared();
  problems_.clear();
  std::vector<Problem> shown;
  for (std::size_t index = 0; index < build.problems().size(); ++index) {
    const Problem& problem = build.problems()[index];
    if (!build.project() || fill(paths::projectFile, {build.project(), problem.file}) != path_) continue;
    problems_.push_back(index);
    shown.push_back(problem);
  }
  outlets_.PopOvetText->setProblems(shown);
}

bool PopOverNewController::writeText() {
  const MaybeText path = pickedFile();
  keepHistory();
  // The empty editor of a file that is only too large for it must not take the file's place.
  const std::string bytes = outlets_.PopOvetText->bytes();
  if (!path || isTooLarge_ || !writeToFileAtomically(*path, bytes)) return false;
  textHash_ = std::hash<std::string>()(bytes);
  for (std::size_t index = 0; index < problems_.size(); ++index) {
    if (const long line = outlets_.PopOvetText->lineOfProblem(index); line > 0)
      LastBuild::shared().moveTo(problems_[index], static_cast<int>(line));
  }
  return true;
}

void PopOverNewController::SaveButton() {
  writeText();
  DismissPop();
}

void PopOverNewController::DismissPop() {
  // Nothing is asked about it while the editor slides away.
  outlets_.PopOvetText->setModified(false);
  dismissViewControllerAnimated(true);
}

bool PopOverNewController::screenShouldClose() {
  if (!outlets_.PopOvetText->isModified()) return true;
  leave([] { UIScreen::mainScreen()->close(); });
  return false;
}

void PopOverNewController::cancelOperation() {
  if (outlets_.findBar->dismiss()) return;
  leave([this] { DismissPop(); });
}

void PopOverNewController::leave(const std::function<void()>& away) {
  if (!outlets_.PopOvetText->isModified()) return away();
  const std::shared_ptr<RQAlertView> asked = question_.lock();
  if (asked && asked->state() != RQAlertViewState::Dismissed) return;
  const QPointer<PopOverNewController> editor(this);
  const auto discard = [editor, away] {
    if (!editor) return;
    editor->outlets_.PopOvetText->setModified(false);
    away();
  };
  const auto save = [editor, discard] {
    if (editor && !editor->writeText()) return showNotice(localized(text::error));
    discard();
  };
  question_ = showSaveQuestion(outlets_.NavTitle->text(), save, discard);
}

void presentEditor(UIViewController& presenter, const std::string& path, long line, long column) {
  if (presenter.presentedViewController() || !isBelowProject(path)) return;
  SS(path);
  auto editor = std::make_shared<PopOverNewController>();
  editor->openAt(line, column);
  presenter.presentViewController(std::move(editor), true);
}
