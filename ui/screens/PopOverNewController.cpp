#include "ui/screens/PopOverNewController.h"

#include "RQAlertView/RQAlertView.h"
#include "core/FileManager.h"
#include "core/History.h"
#include "core/Process.h"
#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "platform/UIScreen.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"
#include "ui/controls/UIButton.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/screens/ui_PopOverNewController.h"
#include "workspace/ProjectFiles.h"

#include <map>

#include <QPointer>

namespace {

constexpr double loadDelay = 0.1;  // seconds; by then the main screen has recorded the pick
constexpr std::size_t largestEditedFile = std::size_t{32} << 20;  // bytes

// Where each file was left, by its path.
std::map<std::string, TextView::Place>& leftPlaces() {
  static std::map<std::string, TextView::Place> places;
  return places;
}

}  // namespace

PopOverNewController::PopOverNewController() : outlets_(std::make_unique<Ui::PopOverNewController>()) {}

PopOverNewController::~PopOverNewController() = default;

void PopOverNewController::loadView() {
  auto* const view = new QWidget;
  outlets_->setupUi(view);
  view->setAutoFillBackground(true);
  outlets_->NavTitle->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  setView(view);
  outlets_->findBar->setText(outlets_->PopOvetText);
  connect(outlets_->SaveButton, &QPushButton::clicked, this, atEventBoundary([this] { SaveButton(); }));
  connect(outlets_->CancelButton, &QPushButton::clicked, this, atEventBoundary([this] { DismissPop(); }));
  addShortcut(*outlets_->SaveButton, QKeySequence::Save);
  nameShortcut(*outlets_->CancelButton, Qt::Key_Escape);
  view->setFocusProxy(outlets_->PopOvetText);
}

void PopOverNewController::viewDidLoad() {
  UIViewController::viewDidLoad();
  outlets_->CancelButton->setLayer({.cornerRadius = 18, .backgroundColor = colours::editorButtonGround});
  outlets_->SaveButton->setLayer({.cornerRadius = 20, .backgroundColor = colours::editorButtonGround});
  performSelectorAfterDelay(
      this, [this] { Rep(); }, loadDelay);
}

void PopOverNewController::openAt(long line, long column) {
  line_ = line;
  column_ = column;
}

void PopOverNewController::viewWillDisappear(bool animated) {
  UIViewController::viewWillDisappear(animated);
  if (!path_.empty()) leftPlaces()[path_] = outlets_->PopOvetText->place();
}

void PopOverNewController::Rep() {
  const MaybeText path = pickedFile();
  outlets_->NavTitle->setText(path ? shownName(lastPathComponent(*path)) : QString());
  const MaybeText text = path ? stringWithContentsOfFile(*path, largestEditedFile) : std::nullopt;
  isTooLarge_ = path && !text && sizeOfFile(*path) > largestEditedFile;
  const auto listing = path ? contentsOfDirectoryAtPath(*path) : std::nullopt;
  NSLog(fill("Cont %@", {listing ? MaybeText(described(*listing)) : std::nullopt}));
  if (listing) NSLog("Cont === Directory");
  outlets_->PopOvetText->setBytes(text.value_or(std::string()));
  path_ = path.value_or(std::string());
  if (line_ > 0) {
    outlets_->PopOvetText->goTo(line_, column_);
  } else if (const auto left = leftPlaces().find(path_); left != leftPlaces().end()) {
    outlets_->PopOvetText->goTo(left->second);
  }
  if (!text || text->empty())
    NSLog(fill("Empty %@", {text ? MaybeText(pathExtension(*text)) : std::nullopt}));
}

bool PopOverNewController::writeText() {
  const MaybeText path = pickedFile();
  keepHistory();
  // The empty editor of a file that is only too large for it must not take the file's place.
  return path && !isTooLarge_ && writeToFileAtomically(*path, outlets_->PopOvetText->bytes());
}

void PopOverNewController::SaveButton() {
  writeText();
  dismissViewControllerAnimated(true);
}

void PopOverNewController::DismissPop() {
  dismissViewControllerAnimated(true);
}

bool PopOverNewController::screenShouldClose() {
  if (!hasUnsavedText()) return true;
  leave([] { UIScreen::mainScreen()->close(); });
  return false;
}

void PopOverNewController::cancelOperation() {
  if (outlets_->findBar->dismiss()) return;
  leave([this] { DismissPop(); });
}

bool PopOverNewController::hasUnsavedText() const {
  return outlets_->PopOvetText->isModified();
}

void PopOverNewController::leave(const std::function<void()>& away) {
  if (!hasUnsavedText()) return away();
  const std::shared_ptr<RQAlertView> asked = question_.lock();
  if (asked && asked->state() != RQAlertViewState::Dismissed) return;
  const QPointer<PopOverNewController> editor(this);
  const auto discard = [editor, away] {
    if (!editor) return;
    editor->outlets_->PopOvetText->setModified(false);
    away();
  };
  const auto save = [editor, discard] {
    if (editor && !editor->writeText()) return showNotice(localized(text::error));
    discard();
  };
  question_ = showSaveQuestion(outlets_->NavTitle->text(), save, discard);
}

void presentEditor(UIViewController& presenter, const std::string& path, long line, long column) {
  if (presenter.presentedViewController() || !isBelowProject(path)) return;
  SS(path);
  auto editor = std::make_shared<PopOverNewController>();
  editor->openAt(line, column);
  presenter.presentViewController(std::move(editor), true);
}
