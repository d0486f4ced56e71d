#include "RQAlertView/RQAlertViewBorderView.h"

#include <QPainter>

RQAlertViewBorderView::RQAlertViewBorderView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

void RQAlertViewBorderView::frame(const RQAlertViewShadowView& card) {
  look_ = card.look();
  setGeometry(card.cardGeometry());
  setVisible(!card.isHidden() && look_.borderColor.isValid() && look_.borderWidth > 0);
  raise();
  update();
}

void RQAlertViewBorderView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look_.borderColor, look_.borderWidth));
  const double inset = look_.borderWidth / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), look_.cornerRadius - inset,
                          look_.cornerRadius - inset);
}
