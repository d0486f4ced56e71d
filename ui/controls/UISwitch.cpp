#include "ui/controls/UISwitch.h"

#include "platform/UIApplication.h"
#include "ui/controls/Layer.h"
#include "ui/controls/Looks.h"

#include <QPainter>

namespace {
constexpr int knobInset = 3;
}  // namespace

UISwitch::UISwitch(QWidget* parent) : QCheckBox(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize UISwitch::sizeHint() const {
  return {metrics::switchWidth, metrics::switchHeight};
}

bool UISwitch::hitButton(const QPoint& position) const {
  return rect().contains(position);
}

void UISwitch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setOpacity(isDimmed(*this) ? 0.4 : 1);
  const qreal radius = height() / 2.0;
  Layer groove{radius, 0,
               isChecked() ? palette().color(QPalette::Active, QPalette::Highlight) : colours::switchOff};
  drawLayer(painter, rect(), groove, groove.backgroundColor);
  if (showsFocus(*this)) drawFocusRing(painter, rect(), radius);
  const int size = height() - 2 * knobInset;
  const bool atRight = isChecked() != isRightToLeft();
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours::switchKnob);
  painter.drawEllipse(atRight ? width() - size - knobInset : knobInset, knobInset, size, size);
}
