#include "ui/controls/RowListView.h"

#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"
#include "ui/controls/Layer.h"

#include <algorithm>

#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTimer>

namespace {

constexpr int separatorHeight = 1;

}  // namespace

// One cell: picture, texts, and the separator below.
class RowCell : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  bool marksCurrent = false;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    return {0, std::max(metrics::rowHeight, option.fontMetrics.height() + metrics::rowPadding)};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const auto& list = *static_cast<const RowListView*>(option.widget);
    const RowModel::Row row = list.rows().rowAt(index.row());
    const bool marked = marksCurrent && list.currentIndex() == index;
    const bool underPointer = (option.state & QStyle::State_MouseOver) != 0;
    painter->fillRect(option.rect, marked         ? option.palette.color(QPalette::Highlight)
                                   : underPointer ? colours::cellUnderPointer
                                                  : colours::cellGround);
    const bool rightToLeft = option.direction == Qt::RightToLeft;
    QRect text = option.rect.adjusted(metrics::rowPadding, 0, -metrics::rowPadding, -separatorHeight);
    if (!row.picture.isNull()) {
      const QSize size(metrics::iconSize, metrics::iconSize);
      row.picture.paint(
          painter, QStyle::alignedRect(option.direction, Qt::AlignLeading | Qt::AlignVCenter, size, text));
      const int indent = metrics::iconSize + metrics::rowPadding;
      text = rightToLeft ? text.adjusted(0, 0, -indent, 0) : text.adjusted(indent, 0, 0, 0);
    }
    painter->setPen(marked ? option.palette.color(QPalette::HighlightedText) : colours::cellText);
    // The text keeps its own direction; only its side follows the interface.
    const Qt::LayoutDirection direction = row.followsInterface ? option.direction : Qt::LeftToRight;
    const auto draw = [&](const QString& line, const QFont& font, const QRect& place,
                          Qt::TextElideMode elide) {
      QTextOption layout((rightToLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                         Qt::AlignVCenter);
      layout.setTextDirection(direction);
      layout.setWrapMode(QTextOption::NoWrap);
      painter->setFont(font);
      painter->drawText(QRectF(place), QFontMetrics(font).elidedText(line, elide, place.width()), layout);
    };
    const QString& title = row.title.isNull() ? row.name : row.title;
    if (row.detail.isEmpty()) {
      draw(title, option.font, text, Qt::ElideMiddle);
    } else {
      const QFont small = systemFontOfSize(metrics::smallTextSize);
      const int upper = option.fontMetrics.height();
      const int lower = QFontMetrics(small).height();
      const int top = text.top() + (text.height() - upper - lower) / 2;
      draw(title, option.font, {text.left(), top, text.width(), upper}, Qt::ElideRight);
      draw(row.detail, small, {text.left(), top + upper, text.width(), lower}, Qt::ElideMiddle);
    }
    painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), separatorHeight),
                      colours::separator);
    const bool focused = (option.state & QStyle::State_HasFocus) != 0 && showsFocus(list);
    if (focused) drawFocusRing(*painter, option.rect.adjusted(0, 0, 0, -separatorHeight), 0);
  }
};

RowListView::RowListView(QWidget* parent)
    : QListView(parent), cell_(new RowCell(this)), model_(new RowModel(this)) {
  setModel(model_);
  setItemDelegate(cell_);
  setUniformItemSizes(true);
  setBackgroundColor(colours::listGround);
  setFont(systemFontOfSize(metrics::bodyTextSize));
  setFrameShape(QFrame::NoFrame);
  setMouseTracking(true);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setAttribute(Qt::WA_Hover);
  connect(this, &QListView::clicked, this,
          atEventBoundary([this](const QModelIndex& index) { emit rowPicked(index.row()); }));
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { pickSelected(); });
}

void RowListView::setBackgroundColor(const QColor& colour) {
  QPalette colours = palette();
  colours.setColor(QPalette::Base, colour);
  setPalette(colours);
}

void RowListView::setMarksCurrent(bool marks) {
  cell_->marksCurrent = marks;
}

QItemSelectionModel::SelectionFlags RowListView::selectionCommand(const QModelIndex& /*index*/,
                                                                  const QEvent* /*event*/) const {
  // Taps and keys select nothing, so that a selection is always the doing of assistive technology.
  return QItemSelectionModel::NoUpdate;
}

void RowListView::pickSelected() {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  if (selected.isEmpty()) return;
  const int row = selected.first().row();
  // Outside the selection's own signal, where nothing of the view may be changed.
  QTimer::singleShot(0, this, atEventBoundary([this, row] {
                       clearSelection();
                       setCurrentRow(row);
                       emit rowPicked(row);
                     }));
}

void RowListView::keyPressEvent(QKeyEvent* event) {
  const bool picks =
      event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
  if (picks && currentIndex().isValid()) {
    if (!isRepeated(*event)) emit rowPicked(currentIndex().row());
    return;
  }
  QListView::keyPressEvent(event);
}
