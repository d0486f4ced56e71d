#include "RQAlertView/RQAlertViewCell.h"

#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewMetrics.h"
#include "RQAlertView/RQAlertViewRows.h"
#include "platform/UIApplication.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

namespace {

RQAlertViewButtonState stateOf(const QStyleOptionViewItem& option, bool pressed) {
  if (!(option.state & QStyle::State_Enabled)) return RQAlertViewButtonState::Disabled;
  if (pressed) return RQAlertViewButtonState::Highlighted;
  return option.state & QStyle::State_MouseOver ? RQAlertViewButtonState::Hovered
                                                : RQAlertViewButtonState::Normal;
}

}  // namespace

int RQAlertViewCell::heightOfRow(const RQAlertViewRow& row) const {
  if (setting_.uniform) return static_cast<int>(setting_.leastHeight);
  return heightOf(row.title, setting_.look(row), setting_.width, setting_.leastHeight);
}

int RQAlertViewCell::heightOf(const QString& title, const RQAlertViewButtonLook& look, int width,
                              double least) const {
  return heightOfRQAlertViewButton(title, look, width, RQAlertViewMetrics::buttonPadding, least);
}

void RQAlertViewCell::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  if (!setting_.rows) return;
  const RQAlertViewRow row = setting_.rows->at(index.row());
  const RQAlertViewButtonLook look = setting_.look(row);
  const QWidget* list = option.widget;
  const bool ringed = (option.state & QStyle::State_HasFocus) && list && showsFocus(*list);
  paintRQAlertViewButton(*painter, {.title = row.title,
                                    .look = look,
                                    .state = stateOf(option, index.row() == setting_.pressedRow),
                                    .rect = option.rect,
                                    .padding = RQAlertViewMetrics::buttonPadding,
                                    .card = setting_.card,
                                    .focusRing = ringed});
  if (index.row() + 1 < setting_.rows->count()) {
    // One pixel of the device, whatever the scale.
    const double thickness = 1.0 / painter->device()->devicePixelRatioF();
    QRectF line = option.rect;
    line.setTop(line.bottom() - thickness);
    painter->fillRect(line, setting_.separatorsColor);
  }
}

QSize RQAlertViewCell::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  if (!setting_.rows) return QStyledItemDelegate::sizeHint(option, index);
  // The list makes every row as wide as itself.
  return {0, heightOfRow(setting_.rows->at(index.row()))};
}

bool RQAlertViewCell::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                const QStyleOptionViewItem& option, const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip || !setting_.rows || !index.isValid()) {
    return QStyledItemDelegate::helpEvent(event, view, option, index);
  }
  const RQAlertViewRow row = setting_.rows->at(index.row());
  const bool whole =
      showsWholeTitle(row.title, setting_.look(row), option.rect.width(), RQAlertViewMetrics::buttonPadding);
  // Tool tips take what looks like markup for markup.
  QToolTip::showText(event->globalPos(), whole ? QString() : Qt::convertFromPlainText(row.title), view);
  return true;
}
