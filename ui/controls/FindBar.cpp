#include "ui/controls/FindBar.h"

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

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), lines_(new QVBoxLayout(this)), result_(new QLabel(this)) {
  lines_->setContentsMargins(metrics::barPadding, metrics::barPadding, metrics::barPadding,
                             metrics::barPadding);
  lines_->setSpacing(metrics::barSpacing);
  QHBoxLayout* const line = addLine(word_, tr("Find text"), localized(text::find));
  result_->setFont(systemFontOfSize(metrics::smallTextSize));
  line->addWidget(result_);
  const auto add = [&](const char* name, const char* picture, const QKeySequence& keys, auto action) {
    auto* const button = new UIButton(this);
    button->dress(picture, tr(name));
    button->onClick(this, action);
    nameShortcut(*button, keys);
    line->addWidget(button);
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

QHBoxLayout* FindBar::addLine(QLineEdit*& field, const QString& name, const QString& placeholder) {
  auto* const line = new QHBoxLayout;
  lines_->addLayout(line);
  line->setSpacing(metrics::barSpacing);
  // In line with the texts above it, whichever side that is.
  line->addSpacing(metrics::rowPadding - metrics::barPadding);
  field = new QLineEdit(this);
  field->setAccessibleName(name);
  field->setPlaceholderText(placeholder);
  field->setFont(systemFontOfSize(metrics::bodyTextSize));
  field->setMinimumSize(0, metrics::fieldHeight);
  field->setTextMargins(metrics::barPadding, 0, metrics::barPadding, 0);
  field->installEventFilter(this);
  line->addWidget(field, 1);
  return line;
}

void FindBar::setText(TextView* text) {
  text_ = text;
  const auto wire = [&](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, text->parentWidget()), &QShortcut::activated, this, atEventBoundary(action));
  };
  wire(QKeySequence::Find, [this] { open(); });
  // Not the standard keys, which on some desktops include Ctrl+G.
  wire(Qt::Key_F3, [this] { find(SearchDirection::Forward, false); });
  wire(Qt::SHIFT | Qt::Key_F3, [this] { find(SearchDirection::Backward, false); });
  code_ = qobject_cast<CodeView*>(text);
  if (code_ == nullptr) return;
  QHBoxLayout* const line = addLine(replacement_, localized(text::replaceBy), localized(text::replaceBy));
  const auto add = [&](const TextPair& name, auto action) {
    auto* const button = new UIButton(localized(name), this);
    button->setAccessibleName(button->text());
    button->onClick(this, action);
    line->addWidget(button);
  };
  add(text::replace, [this] { replace(); });
  add(text::replaceAll, [this] {
    const int count = code_->replaceAll(word_->text(), replacement_->text());
    result_->setText(localized(text::replacedCount, {std::to_string(count)}));
  });
  wire(Qt::CTRL | Qt::Key_H, [this] {
    open();
    if (!word_->text().isEmpty()) replacement_->setFocus(Qt::ShortcutFocusReason);
  });
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
      const bool back = (key->modifiers() & Qt::ShiftModifier) != 0;
      if (object == replacement_)
        replace();
      else
        find(back ? SearchDirection::Backward : SearchDirection::Forward, false);
      return true;
    }
  }
  return QWidget::eventFilter(object, event);
}

void FindBar::find(SearchDirection direction, bool mayStay) {
  if (text_ == nullptr) return;
  const bool missing = !word_->text().isEmpty() && !text_->find(word_->text(), direction, mayStay);
  result_->setText(missing ? localized(text::noMatch) : QString());
  // On a narrow screen there is not room for the message and for what would lead nowhere.
  if (missing && (previous_->hasFocus() || next_->hasFocus())) word_->setFocus(Qt::OtherFocusReason);
  previous_->setVisible(!missing);
  next_->setVisible(!missing);
}
