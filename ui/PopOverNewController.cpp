#include "ui/PopOverNewController.h"

#include "RQAlertView/RQAlertView.h"
#include "core/FileManager.h"
#include "core/History.h"
#include "core/NSLog.h"
#include "platform/EventBoundary.h"
#include "platform/NSRunLoop.h"
#include "platform/UIFont.h"
#include "platform/UIScreen.h"
#include "ui/Colours.h"
#include "ui/DialogLooks.h"
#include "ui/Localized.h"
#include "ui/Metrics.h"
#include "ui/Notice.h"
#include "ui/Shortcut.h"
#include "ui/TextZoom.h"
#include "ui/ui_PopOverNewController.h"
#include "workspace/Selection.h"

#include <algorithm>
#include <string_view>

#include <QPointer>
#include <QTextBlock>

namespace {

constexpr double loadDelay = 0.1;  // seconds; by then the main screen has recorded the pick
constexpr int tabColumns = 4;
constexpr std::size_t longestWrappedLine = 10'000;                // bytes
constexpr std::size_t largestEditedFile = std::size_t{32} << 20;  // bytes

std::size_t longestLine(std::string_view text) {
  std::size_t longest = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    longest = std::max(longest, end - begin);
    begin = end + 1;
  }
  return longest;
}

// Whether every line ends as on Windows. A text with ends of both kinds gets the plain ones where it is
// edited.
bool hasWindowsLines(std::string_view text) {
  bool any = false;
  for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
    if (at == 0 || text[at - 1] != '\r') return false;
    any = true;
  }
  return any;
}

// Selects the next place of `word`, once round the document.
bool findInEditor(QPlainTextEdit& editor, const QString& word, SearchDirection direction, bool mayStay) {
  const bool forward = direction == SearchDirection::Forward;
  const QTextDocument::FindFlags flags = forward ? QTextDocument::FindFlags() : QTextDocument::FindBackward;
  QTextCursor from = editor.textCursor();
  if (mayStay) from.setPosition(forward ? from.selectionStart() : from.selectionEnd());
  QTextCursor found = editor.document()->find(word, from, flags);
  if (found.isNull()) {
    from.movePosition(forward ? QTextCursor::Start : QTextCursor::End);
    found = editor.document()->find(word, from, flags);
  }
  if (found.isNull()) return false;
  editor.setTextCursor(found);
  return true;
}

}  // namespace

PopOverNewController::PopOverNewController() : outlets_(std::make_unique<Ui::PopOverNewController>()) {}

PopOverNewController::~PopOverNewController() = default;

void PopOverNewController::loadView() {
  auto* const view = new QWidget;
  outlets_->setupUi(view);
  view->setAutoFillBackground(true);
  outlets_->NavTitle->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  QPlainTextEdit& editor = *outlets_->PopOvetText;
  // Sources read from left to right, whatever language their comments are in.
  QTextOption option = editor.document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);
  editor.document()->setDefaultTextOption(option);
  editor.document()->setDocumentMargin(metrics::textPadding);
  setView(view);
  new TextZoom(&editor, [&editor](const QFont& font) {
    editor.setFont(font);
    editor.setTabStopDistance(tabColumns * QFontMetricsF(font).horizontalAdvance(' '));
  });
  outlets_->findBar->setText(&editor,
                             [&editor](const QString& word, SearchDirection direction, bool mayStay) {
                               return findInEditor(editor, word, direction, mayStay);
                             });
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

void PopOverNewController::Rep() {
  const MaybeText path = pickedFile();
  outlets_->NavTitle->setText(path ? shownName(lastPathComponent(*path)) : QString());
  const MaybeText text = path ? stringWithContentsOfFile(*path, largestEditedFile) : std::nullopt;
  isTooLarge_ = path && !text && sizeOfFile(*path) > largestEditedFile;
  const auto listing = path ? contentsOfDirectoryAtPath(*path) : std::nullopt;
  NSLog(fill("Cont %@", {listing ? MaybeText(described(*listing)) : std::nullopt}));
  if (listing) NSLog("Cont === Directory");
  loaded_ = text.value_or(std::string());
  // The editor lays out a wrapped line at a cost that grows with the square of its length.
  outlets_->PopOvetText->setLineWrapMode(
      longestLine(loaded_) > longestWrappedLine ? QPlainTextEdit::NoWrap : QPlainTextEdit::WidgetWidth);
  outlets_->PopOvetText->setPlainText(QString::fromStdString(loaded_));
  outlets_->PopOvetText->document()->setModified(false);
  if (loaded_.empty()) NSLog(fill("Empty %@", {text ? MaybeText(pathExtension(*text)) : std::nullopt}));
}

std::string PopOverNewController::editedText() const {
  const QTextDocument& document = *outlets_->PopOvetText->document();
  if (!document.isModified()) return loaded_;
  // The raw text, since the plain one would turn no-break spaces into blanks; its lines end in paragraph
  // separators.
  QString text = document.toRawText();
  text.replace(QChar::ParagraphSeparator,
               hasWindowsLines(loaded_) ? QStringLiteral("\r\n") : QStringLiteral("\n"));
  return text.toStdString();
}

bool PopOverNewController::writeText() {
  const MaybeText path = pickedFile();
  keepHistory();
  // The empty editor of a file that is only too large for it must not take the file's place.
  return path && !isTooLarge_ && writeToFileAtomically(*path, editedText());
}

void PopOverNewController::SaveButton() {
  writeText();
  dismissViewControllerAnimated(true);
}

void PopOverNewController::DismissPop() {
  dismissViewControllerAnimated(true);
}

bool PopOverNewController::screenShouldClose() {
  if (!outlets_->PopOvetText->document()->isModified()) return true;
  const std::shared_ptr<RQAlertView> asked = question_.lock();
  if (!asked || asked->state() == RQAlertViewState::Dismissed) askBeforeClosing();
  return false;
}

// Saving closes the screen after all. Who wants none of it cancels, here and in the editor.
void PopOverNewController::askBeforeClosing() {
  const auto question = RQAlertView::alertViewWithTitle(
      outlets_->NavTitle->text(), QString(), RQAlertViewStyle::Alert,
      QStringList{outlets_->SaveButton->text()}, localized(text::cancel), QString());
  dressAsMessage(*question);
  question->setDidDismissAfterActionHandler(
      [editor = QPointer<PopOverNewController>(this)](RQAlertView&, std::size_t, const QString&) {
        if (!editor) return;
        if (editor->writeText()) {
          editor->outlets_->PopOvetText->document()->setModified(false);
          UIScreen::mainScreen()->close();
        } else {
          showNotice(localized(text::error));
        }
      });
  question_ = question;
  question->showAnimated();
}

void PopOverNewController::cancelOperation() {
  if (outlets_->findBar->dismiss()) return;
  if (outlets_->PopOvetText->document()->isModified()) {
    // Tab is typed into the text, so this is the way out of it for the keyboard.
    outlets_->CancelButton->setFocus(Qt::ShortcutFocusReason);
  } else {
    DismissPop();
  }
}
