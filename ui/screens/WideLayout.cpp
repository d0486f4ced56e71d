#include "ui/screens/WideLayout.h"

#include "ui/controls/Metrics.h"

#include <algorithm>

#include <QBoxLayout>
#include <QResizeEvent>
#include <QWidget>

WideLayout::WideLayout(QWidget* view, QBoxLayout* body, QWidget* column)
    : QObject(view), body_(body), column_(column) {
  view->installEventFilter(this);
  fit(view->width());
}

bool WideLayout::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Resize) fit(static_cast<QResizeEvent*>(event)->size().width());
  return QObject::eventFilter(object, event);
}

void WideLayout::fit(int width) {
  if (!body_ || !column_) return;
  const bool wide = width >= metrics::wideScreen;
  body_->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  body_->setAlignment(column_, wide ? Qt::AlignTop : Qt::AlignHCenter);
  column_->setFixedWidth(wide ? metrics::sideColumnWidth : std::min(width, metrics::widestControls));
}
