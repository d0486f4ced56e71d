#include "RQAlertView/RQAlertViewCell.h"

#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewButtonList.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/UIApplication.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

using RQAlertViewMetrics::buttonPadding;

RQAlertViewCell::RQAlertViewCell(RQAlertViewButtonList* list) : QStyledItemDelegate(list), list_(list) {}

int RQAlertViewCell::heightOf(const QString& title, const RQAlertViewButtonLook& look, int width,
                              double least) const {
  return heightOfRQAlertViewButton(title, look, width, buttonPadding, least);
}

void RQAlertViewCell::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  const RQAlertViewRow& row = list_->rows().at(index.row());
  const RQAlertViewButtonLook look = list_->dialog().lookOf(row);
  using ButtonState = RQAlertViewButtonState;
  const ButtonState untouched =
      option.state & QStyle::State_MouseOver ? ButtonState::Hovered : ButtonState::Normal;
  const ButtonState state = index.row() == list_->pressedRow() ? ButtonState::Highlighted : untouched;
  paintRQAlertViewButton(*painter,
                         {.title = row.title,
                          .look = look,
                          .state = look.enabled ? state : ButtonState::Disabled,
                          .rect = option.rect,
                          .padding = buttonPadding,
                          .card = list_->card(),
                          .focusRing = (option.state & QStyle::State_HasFocus) && showsFocus(*list_)});
  if (index.row() + 1 < list_->rows().size()) {
    // One pixel of the device, whatever the scale.
    const double thickness = 1.0 / painter->device()->devicePixelRatioF();
    QRectF line = option.rect;
    line.setTop(line.bottom() - thickness);
    painter->fillRect(line, list_->dialog().appearance.separatorsColor);
  }
}

QSize RQAlertViewCell::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
  // The list makes every row as wide as itself.
  return {0, list_->heightOfRow(index.row())};
}

bool RQAlertViewCell::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                const QStyleOptionViewItem& option, const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip || !index.isValid()) {
    return QStyledItemDelegate::helpEvent(event, view, option, index);
  }
  const RQAlertViewRow& row = list_->rows().at(index.row());
  const bool whole =
      showsWholeTitle(row.title, list_->dialog().lookOf(row), option.rect.width(), buttonPadding);
  // Tool tips interpret what looks like markup.
  QToolTip::showText(event->globalPos(), whole ? QString() : Qt::convertFromPlainText(row.title), view);
  return true;
}
