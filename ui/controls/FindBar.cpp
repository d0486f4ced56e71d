#include "ui/controls/FindBar.h"

#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "ui/controls/Looks.h"
#include "ui/controls/TextView.h"
#include "ui/controls/UIButton.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>

FindBar::FindBar(QWidget* parent) : QWidget(parent), word_(new QLineEdit(this)), result_(new QLabel(this)) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(metrics::barPadding, metrics::barPadding, metrics::barPadding,
                             metrics::barPadding);
  layout->setSpacing(metrics::barSpacing);
  // The field stands in line with the texts above it, whichever side that is.
  layout->addSpacing(metrics::rowPadding - metrics::barPadding);
  word_->setAccessibleName(QStringLiteral("Find text"));
  word_->setPlaceholderText(QStringLiteral("Find"));
  word_->setFont(systemFontOfSize(metrics::bodyTextSize));
  word_->setMinimumSize(0, metrics::fieldHeight);
  word_->setTextMargins(metrics::barPadding, 0, metrics::barPadding, 0);
  word_->installEventFilter(this);
  layout->addWidget(word_, 1);
  result_->setFont(systemFontOfSize(metrics::smallTextSize));
  layout->addWidget(result_);
  const auto add = [&](const char* name, const char* picture, const char* tip, auto action) {
    auto* const button = new UIButton(this);
    button->setAccessibleName(QLatin1String(name));
    button->setToolTip(QLatin1String(tip));
    button->setPicture(QLatin1String(picture));
    connect(button, &QPushButton::clicked, this, atEventBoundary(action));
    layout->addWidget(button);
    return button;
  };
  previous_ = add("Find previous", "previous", "Find previous (Shift+F3)",
                  [this] { find(SearchDirection::Backward, false); });
  next_ = add("Find next", "next", "Find next (F3)", [this] { find(SearchDirection::Forward, false); });
  add("Close find", "close", "Close (Esc)", [this] { dismiss(); });
  connect(word_, &QLineEdit::textChanged, this,
          atEventBoundary([this] { find(SearchDirection::Forward, true); }));
  hide();
}

void FindBar::setText(TextView* text) {
  text_ = text;
  const auto wire = [&](QKeySequence::StandardKey keys, auto action) {
    auto* const shortcut = new QShortcut(keys, text->parentWidget());
    connect(shortcut, &QShortcut::activated, this, atEventBoundary(action));
  };
  wire(QKeySequence::Find, [this] { open(); });
  wire(QKeySequence::FindNext, [this] { find(SearchDirection::Forward, false); });
  wire(QKeySequence::FindPrevious, [this] { find(SearchDirection::Backward, false); });
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
      find(back ? SearchDirection::Backward : SearchDirection::Forward, false);
      return true;
    }
  }
  return QWidget::eventFilter(object, event);
}

void FindBar::find(SearchDirection direction, bool mayStay) {
  if (text_ == nullptr) return;
  const bool missing = !word_->text().isEmpty() && !text_->find(word_->text(), direction, mayStay);
  result_->setText(missing ? QStringLiteral("No match") : QString());
  // On a narrow screen there is not room for the message and for what would lead nowhere.
  if (missing && (previous_->hasFocus() || next_->hasFocus())) word_->setFocus(Qt::OtherFocusReason);
  previous_->setVisible(!missing);
  next_->setVisible(!missing);
}
