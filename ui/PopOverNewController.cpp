#include "ui/PopOverNewController.h"

#include "core/FileManager.h"
#include "core/NSLog.h"
#include "platform/EventBoundary.h"
#include "platform/NSRunLoop.h"
#include "platform/UIColor.h"
#include "platform/UIFont.h"
#include "ui/Localized.h"
#include "ui/Metrics.h"
#include "ui/ui_PopOverNewController.h"
#include "workspace/Selection.h"

#include <algorithm>
#include <string_view>

#include <QShortcut>
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

}  // namespace

PopOverNewController::PopOverNewController() : outlets_(std::make_unique<Ui::PopOverNewController>()) {}

PopOverNewController::~PopOverNewController() = default;

void PopOverNewController::loadView() {
  auto* const view = new QWidget;
  outlets_->setupUi(view);
  view->setAutoFillBackground(true);
  outlets_->NavTitle->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  QPlainTextEdit& editor = *outlets_->PopOvetText;
  editor.setFont(fixedPitchFontOfSize(metrics::fixedPitchTextSize));
  editor.setTabStopDistance(tabColumns * editor.fontMetrics().horizontalAdvance(' '));
  // Sources read from left to right, whatever language their comments are in.
  QTextOption option = editor.document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);
  editor.document()->setDefaultTextOption(option);
  setView(view);
  connect(outlets_->SaveButton, &QPushButton::clicked, this, atEventBoundary([this] { SaveButton(); }));
  connect(outlets_->CancelButton, &QPushButton::clicked, this, atEventBoundary([this] { DismissPop(); }));
  auto* const save = new QShortcut(QKeySequence::Save, view);
  connect(save, &QShortcut::activated, outlets_->SaveButton,
          [button = outlets_->SaveButton] { button->click(); });
  view->setFocusProxy(outlets_->PopOvetText);
}

void PopOverNewController::viewDidLoad() {
  UIViewController::viewDidLoad();
  outlets_->CancelButton->setLayer({.cornerRadius = 18, .backgroundColor = grey(32)});
  outlets_->SaveButton->setLayer({.cornerRadius = 20, .backgroundColor = grey(32)});
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

void PopOverNewController::SaveButton() {
  const MaybeText path = pickedFile();
  // The empty editor of a file that is only too large for it must not take the file's place.
  if (path && !isTooLarge_) writeToFileAtomically(*path, editedText());
  dismissViewControllerAnimated(true);
}

void PopOverNewController::DismissPop() {
  dismissViewControllerAnimated(true);
}

void PopOverNewController::cancelOperation() {
  if (!outlets_->PopOvetText->document()->isModified()) DismissPop();
}
