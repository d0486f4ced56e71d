#include "RQAlertView/RQAlertViewButtonList.h"

#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewShadowView.h"
#include "platform/UIApplication.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

RQAlertViewListModel::RQAlertViewListModel(std::shared_ptr<const RQAlertViewModel> dialog, QObject* parent)
    : QAbstractListModel(parent), dialog_(std::move(dialog)) {}

void RQAlertViewListModel::update() {
  if (QList<RQAlertViewRow> rows = dialog_->rows(); rows != rows_) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
  }
  if (!rows_.isEmpty()) emit dataChanged(index(0), index(rowCount() - 1));
}

int RQAlertViewListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant RQAlertViewListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return rows_.at(index.row()).title;
}

Qt::ItemFlags RQAlertViewListModel::flags(const QModelIndex& index) const {
  if (!index.isValid() || !dialog_->isEnabled(rows_.at(index.row()))) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

RQAlertViewButtonList::RQAlertViewButtonList(std::shared_ptr<const RQAlertViewModel> dialog,
                                             RQAlertViewPress press, QWidget* parent)
    : QListView(parent),
      model_(new RQAlertViewListModel(std::move(dialog), this)),
      cell_(new RQAlertViewCell(this)),
      press_(std::move(press)) {
  setModel(model_);
  setItemDelegate(cell_);
  setSelectionMode(QAbstractItemView::NoSelection);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  RQAlertViewScrollIndicator::install(*this);
  setFocusPolicy(Qt::TabFocus);
  setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_Hover);
}

void RQAlertViewButtonList::takeOver(int width) {
  model_->update();
  const RQAlertViewAppearance& look = dialog().appearance;
  RQAlertViewScrollIndicator::takeLook(*this, look);
  double least = *look.buttonsHeight;
  if (look.heightCell) {
    for (const auto* kind : {&look.buttons, &look.cancelButton, &look.destructiveButton})
      least = std::max<double>(least, look.heightCell->heightOf(QStringLiteral("X"), *kind, width, least));
  }
  const bool uniform = dialog().hasUniformRows();
  const bool same = uniform_ == uniform && leastHeight_ == std::ceil(least) && width_ == width;
  if (same && uniform) return;
  uniform_ = uniform;
  leastHeight_ = std::ceil(least);
  width_ = width;
  setUniformItemSizes(uniform);
  scheduleDelayedItemsLayout();
}

int RQAlertViewButtonList::heightOfRow(int row) const {
  if (uniform_) return static_cast<int>(leastHeight_);
  const RQAlertViewRow& shown = rows().at(row);
  return cell_->heightOf(shown.title, dialog().lookOf(shown), width_, leastHeight_);
}

double RQAlertViewButtonList::heightOfRows() const {
  if (uniform_) return leastHeight_ * model_->rowCount();
  double height = 0;
  for (int row = 0; row < model_->rowCount(); ++row) height += heightOfRow(row);
  return height;
}

double RQAlertViewButtonList::heightEndingInARow(double most) const {
  double ending = most;
  double top = 0;
  for (int row = 0; row < model_->rowCount(); ++row) {
    const int height = heightOfRow(row);
    const double middle = top + height / 2.0;
    if (middle > most) break;
    if (row > 0) ending = middle;
    top += height;
  }
  return ending;
}

void RQAlertViewButtonList::setCard(const QPainterPath& card) {
  card_ = card;
  viewport()->update();
}

void RQAlertViewButtonList::tap(int row) {
  // A copy: the press may change the rows.
  if (isRowEnabled(row)) press_(RQAlertViewRow(rows().at(row)));
}

void RQAlertViewButtonList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (verticalScrollBar()->value() == verticalScrollBar()->maximum()) return;
  QPainter painter(viewport());
  painter.setClipPath(card());
  paintGoesOn(painter, viewport()->rect(), dialog().appearance.backgroundColor);
}

void RQAlertViewButtonList::keyPressEvent(QKeyEvent* event) {
  const int row = currentIndex().row();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!isRepeatedAnswer(*event)) tap(row);
      return;
    case Qt::Key_Up:
    case Qt::Key_Down: {
      const bool down = event->key() == Qt::Key_Down;
      if (down ? row < lastEnabledRow() : row > firstEnabledRow()) break;
      focusNextPrevChild(down);
      return;
    }
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
  pressStartRow_ = rowAt(*event);
  setPressedRow(pressStartRow_);
}

void RQAlertViewButtonList::mouseMoveEvent(QMouseEvent* event) {
  QListView::mouseMoveEvent(event);
  if (!(event->buttons() & Qt::LeftButton)) return;
  // Sliding off the row takes the tap back.
  setPressedRow(rowAt(*event) == pressStartRow_ ? pressStartRow_ : -1);
}

void RQAlertViewButtonList::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int start = std::exchange(pressStartRow_, -1);
  setPressedRow(-1);
  if (rowAt(*event) == start) tap(start);
}

void RQAlertViewButtonList::focusInEvent(QFocusEvent* event) {
  if (event->reason() == Qt::BacktabFocusReason) {
    setCurrentIndex(model_->index(lastEnabledRow()));
  } else if (event->reason() == Qt::TabFocusReason) {
    setCurrentIndex(model_->index(firstEnabledRow()));
  }
  const QModelIndex chosen = currentIndex();
  QListView::focusInEvent(event);
  // The list view itself would choose the first row, which may be a destructive one.
  setCurrentIndex(chosen);
  // A screen reader follows the row, not the list.
  if (!QAccessible::isActive() || !currentIndex().isValid()) return;
  QAccessibleEvent focused(this, QAccessible::Focus);
  focused.setChild(currentIndex().row());
  QAccessible::updateAccessibility(&focused);
}

int RQAlertViewButtonList::enabledRow(int row, int step) const {
  while (row >= 0 && row < model_->rowCount() && !isRowEnabled(row)) row += step;
  return row < model_->rowCount() ? row : -1;
}

void RQAlertViewButtonList::setPressedRow(int row) {
  pressedRow_ = isRowEnabled(row) ? row : -1;
  viewport()->update();
}

bool RQAlertViewButtonList::isRowEnabled(int row) const {
  return row >= 0 && row < model_->rowCount() && dialog().isEnabled(rows().at(row));
}
