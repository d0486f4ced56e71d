#include "ui/LogView.h"

#include "platform/UIFont.h"
#include "ui/LogViewAccessible.h"
#include "ui/Metrics.h"

#include <algorithm>

#include <QAccessibleEvent>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>

namespace {

constexpr int padding = 10;
constexpr QChar takesNoRoom(0x200B);

bool isWordByte(char byte) {
  return byte != ' ' && byte != '\t' && byte != '\n' && byte != '\x1B';
}

// The bytes that the first `units` UTF-16 units of `bytes` come from.
std::size_t bytesOfUnits(std::string_view bytes, int units) {
  std::size_t at = 0;
  while (at < bytes.size() && units > 0) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    at += length;
    units -= length == 4 ? 2 : 1;
  }
  return std::min(at, bytes.size());
}

}  // namespace

LogView::LogView(QWidget* parent) : QAbstractScrollArea(parent) {
  setFont(fixedPitchFontOfSize(metrics::fixedPitchTextSize));
  setFocusPolicy(Qt::StrongFocus);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // The log is Latin text whatever the language of the interface.
  setLayoutDirection(Qt::LeftToRight);
  viewport()->setCursor(Qt::IBeamCursor);
  installLogViewAccessibility();
}

void LogView::setText(std::string text) {
  const auto removed = static_cast<int>(std::min<std::size_t>(text_.text().size(), 1U << 30));
  text_.setText(std::move(text));
  anchor_ = cursor_ = 0;
  fitColumns();
  verticalScrollBar()->setValue(0);
  viewport()->update();
  QAccessibleTextUpdateEvent changed(this, 0, QString(), QString());
  if (removed != 0 || !text_.text().empty()) QAccessible::updateAccessibility(&changed);
}

void LogView::select(std::size_t anchor, std::size_t cursor) {
  anchor_ = std::min(anchor, text().size());
  cursor_ = std::min(cursor, text().size());
  viewport()->update();
}

void LogView::copy() const {
  if (!hasSelection()) return;
  const std::string_view selected =
      std::string_view(text()).substr(selectionBegin(), selectionEnd() - selectionBegin());
  QApplication::clipboard()->setText(
      QString::fromUtf8(selected.data(), static_cast<qsizetype>(selected.size())));
}

void LogView::selectAll() {
  select(0, text().size());
}

int LogView::rowHeight() const {
  return std::max(fontMetrics().lineSpacing(), 1);
}

void LogView::fitColumns() {
  const int width = viewport()->width() - 2 * padding;
  text_.setColumns(
      static_cast<std::size_t>(std::max(width / std::max(fontMetrics().horizontalAdvance('0'), 1), 1)));
  const int rowsShown = std::max((viewport()->height() - 2 * padding) / rowHeight(), 1);
  // The scroll bar counts rows; two billion of them are more than a log can have.
  verticalScrollBar()->setRange(0, std::max(static_cast<int>(text_.rowCount()) - rowsShown, 0));
  verticalScrollBar()->setPageStep(rowsShown);
}

QString LogView::shown(const LogText::Row& row) const {
  QString text =
      QString::fromUtf8(text_.text().data() + row.begin, static_cast<qsizetype>(row.end - row.begin));
  for (QChar& character : text) {
    if (character.unicode() < 0x20 && character != '\t') character = takesNoRoom;
  }
  return text;
}

void LogView::layOut(QTextLayout& layout) const {
  QTextOption option;
  option.setTextDirection(Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  option.setTabStopDistance(8.0 * fontMetrics().horizontalAdvance('0'));
  layout.setTextOption(option);
  layout.setCacheEnabled(false);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
}

void LogView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  auto number = static_cast<std::size_t>(verticalScrollBar()->value());
  for (int top = padding; top < viewport()->height() && number < text_.rowCount();
       top += rowHeight(), ++number) {
    const LogText::Row row = text_.row(number);
    QTextLayout layout(shown(row), font());
    layOut(layout);
    QList<QTextLayout::FormatRange> selection;
    const std::size_t from = std::clamp(selectionBegin(), row.begin, row.end);
    const std::size_t to = std::clamp(selectionEnd(), row.begin, row.end);
    if (from < to) {
      const auto units = [&](std::size_t begin, std::size_t end) {
        return static_cast<int>(
            QString::fromUtf8(text().data() + begin, static_cast<qsizetype>(end - begin)).size());
      };
      QTextLayout::FormatRange range;
      range.start = units(row.begin, from);
      range.length = units(from, to);
      range.format.setBackground(palette().highlight());
      range.format.setForeground(palette().highlightedText());
      selection.append(range);
    }
    layout.draw(&painter, QPointF(padding, top), selection);
  }
}

void LogView::resizeEvent(QResizeEvent* event) {
  // What stood at the top stays there when the lines wrap anew.
  const std::size_t top =
      text_.rowCount() == 0 ? 0 : text_.row(static_cast<std::size_t>(verticalScrollBar()->value())).begin;
  QAbstractScrollArea::resizeEvent(event);
  fitColumns();
  verticalScrollBar()->setValue(static_cast<int>(text_.rowAt(top)));
}

void LogView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange) fitColumns();
}

std::size_t LogView::offsetAt(const QPoint& position) const {
  if (text_.rowCount() == 0) return 0;
  const int down = std::max(position.y() - padding, 0) / rowHeight();
  const auto number = static_cast<std::size_t>(verticalScrollBar()->value() + down);
  if (number >= text_.rowCount()) return text().size();
  const LogText::Row row = text_.row(number);
  QTextLayout layout(shown(row), font());
  layOut(layout);
  const int unit = layout.lineAt(0).xToCursor(position.x() - padding);
  return row.begin + bytesOfUnits(std::string_view(text()).substr(row.begin, row.end - row.begin), unit);
}

void LogView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const std::size_t offset = offsetAt(event->pos());
  select((event->modifiers() & Qt::ShiftModifier) != 0 ? anchor_ : offset, offset);
}

void LogView::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & Qt::LeftButton) == 0) return;
  if (event->pos().y() < 0) verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
  if (event->pos().y() > viewport()->height())
    verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
  select(anchor_, offsetAt(event->pos()));
}

void LogView::mouseDoubleClickEvent(QMouseEvent* event) {
  std::size_t from = offsetAt(event->pos());
  std::size_t to = from;
  while (from > 0 && isWordByte(text()[from - 1])) --from;
  while (to < text().size() && isWordByte(text()[to])) ++to;
  select(from, to);
}

void LogView::keyPressEvent(QKeyEvent* event) {
  QScrollBar& bar = *verticalScrollBar();
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  switch (event->key()) {
    case Qt::Key_Up:
      return bar.triggerAction(QAbstractSlider::SliderSingleStepSub);
    case Qt::Key_Down:
      return bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    case Qt::Key_PageUp:
      return bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    case Qt::Key_PageDown:
    case Qt::Key_Space:
      return bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    case Qt::Key_Home:
      return bar.triggerAction(QAbstractSlider::SliderToMinimum);
    case Qt::Key_End:
      return bar.triggerAction(QAbstractSlider::SliderToMaximum);
    default:
      QAbstractScrollArea::keyPressEvent(event);
  }
}

void LogView::contextMenuEvent(QContextMenuEvent* event) {
  // The selection's own two actions; every other menu of the application is a dialog.
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(tr("Copy"), this, &LogView::copy)->setEnabled(hasSelection());
  menu->addAction(tr("Select All"), this, &LogView::selectAll);
  menu->popup(event->globalPos());
}
