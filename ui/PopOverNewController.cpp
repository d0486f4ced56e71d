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

#include <QShortcut>
#include <QTextBlock>

namespace {

constexpr double loadDelay = 0.1;  // seconds; by then the main screen has recorded the pick
constexpr int tabColumns = 4;

std::string described(const std::vector<std::string>& names) {
  std::string text = "(";
  for (const std::string& name : names) text += (text.size() > 1 ? ", " : "") + name;
  return text + ")";
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
  const MaybeText text = path ? stringWithContentsOfFile(*path) : std::nullopt;
  const auto listing = path ? contentsOfDirectoryAtPath(*path) : std::nullopt;
  NSLog(fill("Cont %@", {listing ? MaybeText(described(*listing)) : std::nullopt}));
  if (listing) NSLog("Cont === Directory");
  loaded_ = text.value_or(std::string());
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
  const bool windowsLines = loaded_.find("\r\n") != std::string::npos;
  text.replace(QChar::ParagraphSeparator, windowsLines ? QStringLiteral("\r\n") : QStringLiteral("\n"));
  return text.toStdString();
}

void PopOverNewController::SaveButton() {
  if (const MaybeText path = pickedFile()) writeToFileAtomically(*path, editedText());
  dismissViewControllerAnimated(true);
}

void PopOverNewController::DismissPop() {
  dismissViewControllerAnimated(true);
}

void PopOverNewController::cancelOperation() {
  if (!outlets_->PopOvetText->document()->isModified()) DismissPop();
}
