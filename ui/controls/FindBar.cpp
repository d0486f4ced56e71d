#include "ui/controls/FindBar.h"

#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "ui/Localized.h"
#include "ui/controls/CodeView.h"
#include "ui/controls/Looks.h"
#include "ui/controls/UIButton.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>

namespace {

void dressField(QLineEdit& field) {
  field.setFont(systemFontOfSize(metrics::bodyTextSize));
  field.setMinimumSize(0, metrics::fieldHeight);
  field.setTextMargins(metrics::barPadding, 0, metrics::barPadding, 0);
}

}  // namespace

FindBar::FindBar(QWidget* parent) : QWidget(parent), word_(new QLineEdit(this)), result_(new QLabel(this)) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(metrics::barPadding, metrics::barPadding, metrics::barPadding,
                            metrics::barPadding);
  lines->setSpacing(metrics::barSpacing);
  auto* const layout = new QHBoxLayout;
  lines->addLayout(layout);
  layout->setSpacing(metrics::barSpacing);
  // The field stands in line with the texts above it, whichever side that is.
  layout->addSpacing(metrics::rowPadding - metrics::barPadding);
  word_->setAccessibleName(tr("Find text"));
  word_->setPlaceholderText(tr("Find"));
  dressField(*word_);
  word_->installEventFilter(this);
  layout->addWidget(word_, 1);
  result_->setFont(systemFontOfSize(metrics::smallTextSize));
  layout->addWidget(result_);
  const auto add = [&](const char* name, const char* picture, const QKeySequence& keys, auto action) {
    auto* const button = new UIButton(this);
    button->setAccessibleName(tr(name));
    nameShortcut(*button, keys);
    button->setPicture(QLatin1String(picture));
    connect(button, &QPushButton::clicked, this, atEventBoundary(action));
    layout->addWidget(button);
    return button;
  };
  previous_ = add("Find previous", "previous", Qt::SHIFT | Qt::Key_F3,
                  [this] { find(SearchDirection::Backward, false); });
  next_ = add("Find next", "next", Qt::Key_F3, [this] { find(SearchDirection::Forward, false); });
  add("Close find", "close", Qt::Key_Escape, [this] { dismiss(); });
  connect(word_, &QLineEdit::textChanged, this,
          atEventBoundary([this] { find(SearchDirection::Forward, true); }));
  hide();
}

void FindBar::setText(TextView* text) {
  text_ = text;
  const auto wire = [&](const QKeySequence& keys, auto action) {
    auto* const shortcut = new QShortcut(keys, text->parentWidget());
    connect(shortcut, &QShortcut::activated, this, atEventBoundary(action));
  };
  wire(QKeySequence::Find, [this] { open(); });
  // Not the standard keys, which on some desktops include Ctrl+G.
  wire(Qt::Key_F3, [this] { find(SearchDirection::Forward, false); });
  wire(Qt::SHIFT | Qt::Key_F3, [this] { find(SearchDirection::Backward, false); });
  code_ = qobject_cast<CodeView*>(text);
  if (code_ != nullptr) addReplacing();
}

void FindBar::addReplacing() {
  auto* const line = new QHBoxLayout;
  static_cast<QBoxLayout*>(layout())->addLayout(line);
  line->setSpacing(metrics::barSpacing);
  line->addSpacing(metrics::rowPadding - metrics::barPadding);
  replacement_ = new QLineEdit(this);
  replacement_->setAccessibleName(localized(text::replaceBy));
  replacement_->setPlaceholderText(localized(text::replaceBy));
  dressField(*replacement_);
  replacement_->installEventFilter(this);
  line->addWidget(replacement_, 1);
  const auto add = [&](const TextPair& name, auto action) {
    auto* const button = new UIButton(localized(name), this);
    button->setAccessibleName(button->text());
    connect(button, &QPushButton::clicked, this, atEventBoundary(action));
    line->addWidget(button);
  };
  add(text::replace, [this] { replace(); });
  add(text::replaceAll, [this] {
    const int count = code_->replaceAll(word_->text(), replacement_->text());
    report(localized(text::replacedCount, {std::to_string(count)}));
  });
  auto* const shortcut = new QShortcut(Qt::CTRL | Qt::Key_H, code_->parentWidget());
  connect(shortcut, &QShortcut::activated, this, atEventBoundary([this] {
            open();
            if (!word_->text().isEmpty()) replacement_->setFocus(Qt::ShortcutFocusReason);
          }));
}

void FindBar::replace() {
  if (!code_->replaceNext(word_->text(), replacement_->text())) find(SearchDirection::Forward, true);
}

void FindBar::open() {
  show();
  word_->setFocus(Qt::ShortcutFocusReason);
  word_->selectAll();
}

bool FindBar::dismiss() {
  if (isHidden()) return false;
  hide();
  if (text_ != nullptr) text_->setFocus(Qt::OtherFocusReason);
  return true;
}

bool FindBar::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* const key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Escape) return dismiss();
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      if (object == replacement_) {
        replace();
        return true;
      }
      const bool back = (key->modifiers() & Qt::ShiftModifier) != 0;
      find(back ? SearchDirection::Backward : SearchDirection::Forward, false);
      return true;
    }
  }
  return QWidget::eventFilter(object, event);
}

void FindBar::find(SearchDirection direction, bool mayStay) {
  if (text_ == nullptr) return;
  const bool missing = !word_->text().isEmpty() && !text_->find(word_->text(), direction, mayStay);
  report(missing ? tr("No match") : QString());
  // On a narrow screen there is not room for the message and for what would lead nowhere.
  if (missing && (previous_->hasFocus() || next_->hasFocus())) word_->setFocus(Qt::OtherFocusReason);
  previous_->setVisible(!missing);
  next_->setVisible(!missing);
}

void FindBar::report(const QString& result) {
  result_->setText(result);
}
