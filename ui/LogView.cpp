#include "ui/LogView.h"

#include "core/Text.h"
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

constexpr int padding = metrics::textPadding;
constexpr QChar takesNoRoom(0x200B);
constexpr int rowsAboveMatch = 3;

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
  ++revision_;
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
  if (!QAccessible::isActive()) return;
  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(this);
  const int position = interface->textInterface()->cursorPosition();
  QAccessibleTextCursorEvent moved(this, position);
  QAccessible::updateAccessibility(&moved);
}

bool LogView::find(const QString& word, SearchDirection direction, bool mayStay) {
  const QByteArray bytes = word.toUtf8();
  const bool fromEnd = (direction == SearchDirection::Forward) != mayStay;
  std::size_t from = topOffset();
  if (hasSelection()) from = fromEnd ? selectionEnd() : selectionBegin();
  const auto found =
      findWordAround(text(), {bytes.data(), static_cast<std::size_t>(bytes.size())}, from, direction);
  if (!found) return false;
  select(*found, *found + static_cast<std::size_t>(bytes.size()));
  scrollTo(*found);
  return true;
}

void LogView::scrollTo(std::size_t offset) {
  const int row = static_cast<int>(text_.rowAt(offset));
  const int top = verticalScrollBar()->value();
  if (row < top || row >= top + rowsShown()) verticalScrollBar()->setValue(row - rowsAboveMatch);
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

int LogView::rowsShown() const {
  return std::max((viewport()->height() - 2 * padding) / rowHeight(), 1);
}

std::size_t LogView::topOffset() const {
  if (text_.rowCount() == 0) return 0;
  return text_.row(static_cast<std::size_t>(verticalScrollBar()->value())).begin;
}

void LogView::fitColumns() {
  const int width = viewport()->width() - 2 * padding;
  text_.setColumns(
      static_cast<std::size_t>(std::max(width / std::max(fontMetrics().horizontalAdvance('0'), 1), 1)));
  // The scroll bar counts rows; two billion of them are more than a log can have.
  verticalScrollBar()->setRange(0, std::max(static_cast<int>(text_.rowCount()) - rowsShown(), 0));
  verticalScrollBar()->setPageStep(rowsShown());
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

int LogView::unitsBetween(std::size_t begin, std::size_t end) const {
  return static_cast<int>(
      QString::fromUtf8(text().data() + begin, static_cast<qsizetype>(end - begin)).size());
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
      QTextLayout::FormatRange range;
      range.start = unitsBetween(row.begin, from);
      range.length = unitsBetween(from, to);
      range.format.setBackground(palette().highlight());
      range.format.setForeground(palette().highlightedText());
      selection.append(range);
    }
    layout.draw(&painter, QPointF(padding, top), selection);
  }
}

void LogView::resizeEvent(QResizeEvent* event) {
  // What stood at the top stays there when the lines wrap anew.
  const std::size_t top = topOffset();
  QAbstractScrollArea::resizeEvent(event);
  fitColumns();
  verticalScrollBar()->setValue(static_cast<int>(text_.rowAt(top)));
}

void LogView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  const std::size_t top = topOffset();
  fitColumns();
  verticalScrollBar()->setValue(static_cast<int>(text_.rowAt(top)));
  viewport()->update();
}

std::size_t LogView::offsetAt(const QPoint& position) const {
  if (text_.rowCount() == 0) return 0;
  const int down = std::max(position.y() - padding, 0) / rowHeight();
  const std::size_t number =
      static_cast<std::size_t>(verticalScrollBar()->value()) + static_cast<std::size_t>(down);
  if (number >= text_.rowCount()) return text().size();
  const LogText::Row row = text_.row(number);
  QTextLayout layout(shown(row), font());
  layOut(layout);
  const int unit = layout.lineAt(0).xToCursor(position.x() - padding);
  return row.begin + bytesOfUnits(std::string_view(text()).substr(row.begin, row.end - row.begin), unit);
}

QRect LogView::characterRect(std::size_t offset) const {
  if (text_.rowCount() == 0) return {};
  const std::size_t number = text_.rowAt(offset);
  const int down = static_cast<int>(number) - verticalScrollBar()->value();
  if (down < 0 || down > rowsShown()) return {};
  const LogText::Row row = text_.row(number);
  QTextLayout layout(shown(row), font());
  layOut(layout);
  const int unit = unitsBetween(row.begin, std::clamp(offset, row.begin, row.end));
  const qreal left = layout.lineAt(0).cursorToX(unit);
  const qreal right = layout.lineAt(0).cursorToX(unit + 1);
  return {padding + qRound(left), padding + down * rowHeight(), std::max(qRound(right - left), 1),
          rowHeight()};
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

void LogView::selectRows(qint64 rows) {
  const auto count = static_cast<qint64>(text_.rowCount());
  if (count == 0) return;
  const qint64 row = std::clamp(static_cast<qint64>(text_.rowAt(cursor_)) + rows, qint64{0}, count);
  select(anchor_, row == count ? text().size() : text_.row(static_cast<std::size_t>(row)).begin);
}

bool LogView::selectByKey(const QKeyEvent& event) {
  if ((event.modifiers() & Qt::ShiftModifier) == 0) return false;
  if (!hasSelection()) anchor_ = cursor_ = topOffset();
  const auto inCharacter = [this](std::size_t at) {
    return at < text().size() && !startsCharacter(text()[at]);
  };
  std::size_t next = cursor_;
  switch (event.key()) {
    case Qt::Key_Up:
      selectRows(-1);
      break;
    case Qt::Key_Down:
      selectRows(1);
      break;
    case Qt::Key_PageUp:
      selectRows(-rowsShown());
      break;
    case Qt::Key_PageDown:
      selectRows(rowsShown());
      break;
    case Qt::Key_Home:
      select(anchor_, 0);
      break;
    case Qt::Key_End:
      select(anchor_, text().size());
      break;
    case Qt::Key_Left:
      if (next > 0) --next;
      while (next > 0 && inCharacter(next)) --next;
      select(anchor_, next);
      break;
    case Qt::Key_Right:
      ++next;
      while (inCharacter(next)) ++next;
      select(anchor_, next);
      break;
    default:
      return false;
  }
  scrollTo(cursor_);
  return true;
}

void LogView::keyPressEvent(QKeyEvent* event) {
  QScrollBar& bar = *verticalScrollBar();
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  if (selectByKey(*event)) return;
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
