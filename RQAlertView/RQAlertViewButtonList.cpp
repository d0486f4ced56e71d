#include "RQAlertView/RQAlertViewButtonList.h"

#include "RQAlertView/RQAlertViewCell.h"
#include "RQAlertView/RQAlertViewScrollIndicator.h"
#include "platform/UIApplication.h"

#include <algorithm>
#include <utility>

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

RQAlertViewListModel::RQAlertViewListModel(EnabledQuestion enabled, QObject* parent)
    : QAbstractListModel(parent), enabled_(std::move(enabled)) {}

void RQAlertViewListModel::setRows(const RQAlertViewRows& rows) {
  if (rows == rows_) return;
  beginResetModel();
  rows_ = rows;
  endResetModel();
}

void RQAlertViewListModel::rowChanged(int row) {
  emit dataChanged(index(row), index(row));
}

void RQAlertViewListModel::allRowsChanged() {
  if (rows_.count() > 0) emit dataChanged(index(0), index(rows_.count() - 1));
}

int RQAlertViewListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_.count();
}

QVariant RQAlertViewListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return rows_.at(index.row()).title;
}

Qt::ItemFlags RQAlertViewListModel::flags(const QModelIndex& index) const {
  if (!index.isValid() || !enabled_(rows_.at(index.row()))) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

RQAlertViewButtonList::RQAlertViewButtonList(LookQuestion look, EnabledQuestion enabled, QWidget* parent)
    : QListView(parent),
      model_(new RQAlertViewListModel(std::move(enabled), this)),
      cell_(new RQAlertViewCell(this)) {
  cell_->setting().look = std::move(look);
  cell_->setting().rows = &model_->rows();
  setModel(model_);
  setItemDelegate(cell_);
  setFrameShape(QFrame::NoFrame);
  setSelectionMode(QAbstractItemView::NoSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBar(new RQAlertViewScrollIndicator);
  setFocusPolicy(Qt::TabFocus);
  setMouseTracking(true);
  viewport()->setAutoFillBackground(false);
  viewport()->setAttribute(Qt::WA_Hover);
}

void RQAlertViewButtonList::setRows(const RQAlertViewRows& rows) {
  model_->setRows(rows);
  looksChanged();
}

const RQAlertViewRows& RQAlertViewButtonList::rows() const {
  return model_->rows();
}

void RQAlertViewButtonList::looksChanged() {
  model_->allRowsChanged();
}

void RQAlertViewButtonList::rowChanged(int row) {
  model_->rowChanged(row);
}

void RQAlertViewButtonList::setRowHeights(RowHeights heights, double leastHeight, int width) {
  RQAlertViewCell::Setting& setting = cell_->setting();
  const bool uniform = heights == RowHeights::Uniform;
  const bool same =
      uniform == setting.uniform && setting.leastHeight == leastHeight && setting.width == width;
  if (same && uniform) return;
  setting.uniform = uniform;
  setting.leastHeight = leastHeight;
  setting.width = width;
  setUniformItemSizes(uniform);
  scheduleDelayedItemsLayout();
}

double RQAlertViewButtonList::heightOfRows() const {
  const int count = rows().count();
  if (cell_->setting().uniform) return cell_->setting().leastHeight * count;
  double height = 0;
  for (int row = 0; row < count; ++row) height += cell_->heightOfRow(rows().at(row));
  return height;
}

double RQAlertViewButtonList::leastRowHeight() const {
  return cell_->setting().leastHeight;
}

void RQAlertViewButtonList::setColors(const QColor& separators, const QColor& background) {
  cell_->setting().separatorsColor = separators;
  background_ = background;
  viewport()->update();
}

void RQAlertViewButtonList::setScrollIndicator(bool shows, UIScrollViewIndicatorStyle style) {
  static_cast<RQAlertViewScrollIndicator*>(verticalScrollBar())->setStyle(style);
  setVerticalScrollBarPolicy(shows ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

void RQAlertViewButtonList::setCard(const QPainterPath& card) {
  cell_->setting().card = card.translated(-viewport()->x(), -viewport()->y());
  viewport()->update();
}

void RQAlertViewButtonList::tap(int row) {
  if (isRowEnabled(row)) emit rowTapped(row);
}

void RQAlertViewButtonList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (verticalScrollBar()->value() == verticalScrollBar()->maximum()) return;
  QPainter painter(viewport());
  painter.setClipPath(cell_->setting().card);
  paintGoesOn(painter, viewport()->rect(), background_);
}

void RQAlertViewButtonList::keyPressEvent(QKeyEvent* event) {
  const int row = currentIndex().row();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (row >= 0 && !isRepeatedAnswer(*event)) tap(row);
      return;
    case Qt::Key_Up:
      if (row <= firstEnabledRow()) {
        focusNextPrevChild(false);
        return;
      }
      break;
    case Qt::Key_Down:
      if (row >= lastEnabledRow()) {
        focusNextPrevChild(true);
        return;
      }
      break;
    case Qt::Key_Escape:
      event->ignore();
      return;
    default:
      break;
  }
  showFocusRings(*this, true);
  QListView::keyPressEvent(event);
}

void RQAlertViewButtonList::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressStartRow_ = rowAt(event->position().toPoint());
  setPressedRow(pressStartRow_);
}

void RQAlertViewButtonList::mouseMoveEvent(QMouseEvent* event) {
  QListView::mouseMoveEvent(event);
  if (!(event->buttons() & Qt::LeftButton)) return;
  // Sliding off the row takes the tap back.
  setPressedRow(rowAt(event->position().toPoint()) == pressStartRow_ ? pressStartRow_ : -1);
}

void RQAlertViewButtonList::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int row = rowAt(event->position().toPoint());
  const bool tapped = row >= 0 && row == pressStartRow_;
  pressStartRow_ = -1;
  setPressedRow(-1);
  if (tapped) tap(row);
}

void RQAlertViewButtonList::focusInEvent(QFocusEvent* event) {
  if (event->reason() == Qt::BacktabFocusReason) {
    setCurrentIndex(model_->index(lastEnabledRow()));
  } else if (event->reason() == Qt::TabFocusReason) {
    setCurrentIndex(model_->index(firstEnabledRow()));
  }
  const QModelIndex chosen = currentIndex();
  QListView::focusInEvent(event);
  // The list view itself would choose the first row, which may be one that destroys something.
  setCurrentIndex(chosen);
  // A screen reader follows the row, not the list.
  if (!QAccessible::isActive() || !currentIndex().isValid()) return;
  QAccessibleEvent focused(this, QAccessible::Focus);
  focused.setChild(currentIndex().row());
  QAccessible::updateAccessibility(&focused);
}

int RQAlertViewButtonList::firstEnabledRow() const {
  int row = 0;
  while (row < rows().count() && !isRowEnabled(row)) ++row;
  return row < rows().count() ? row : -1;
}

int RQAlertViewButtonList::lastEnabledRow() const {
  int row = rows().count() - 1;
  while (row >= 0 && !isRowEnabled(row)) --row;
  return row;
}

void RQAlertViewButtonList::setPressedRow(int row) {
  const int shown = isRowEnabled(row) ? row : -1;
  if (cell_->setting().pressedRow == shown) return;
  cell_->setting().pressedRow = shown;
  viewport()->update();
}

int RQAlertViewButtonList::rowAt(const QPoint& position) const {
  return indexAt(position).row();
}

bool RQAlertViewButtonList::isRowEnabled(int row) const {
  return row >= 0 && row < rows().count() && (model_->flags(model_->index(row)) & Qt::ItemIsEnabled);
}
