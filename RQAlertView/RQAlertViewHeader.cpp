#include "RQAlertView/RQAlertViewHeader.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewContentArea.h"
#include "RQAlertView/RQAlertViewMetrics.h"
#include "RQAlertView/RQAlertViewScrollIndicator.h"
#include "RQAlertView/RQAlertViewText.h"
#include "platform/UIApplication.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

using namespace RQAlertViewMetrics;

// Lies over the area. Says that the text goes on, by fading its last line out, and that the keys scroll it,
// by a ring.
class RQAlertViewHeader::Overlay : public QWidget {
 public:
  explicit Overlay(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_TransparentForMouseEvents); }

  void setColors(const QColor& background, const QColor& ring) {
    background_ = background;
    ring_ = ring;
    update();
  }

  void setGoesOn(bool goesOn) {
    goesOn_ = goesOn;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    if (goesOn_) paintGoesOn(painter, rect(), background_);
    if (showsFocus(*parentWidget())) {
      const double inset = focusRingInset + focusRingWidth / 2.0;
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(QPen(ring_, focusRingWidth));
      painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), focusRingRadius,
                              focusRingRadius);
    }
  }

 private:
  QColor background_;
  QColor ring_;
  bool goesOn_ = false;
};

RQAlertViewHeader::RQAlertViewHeader(const RQAlertView& alertView, RQAlertViewContentArea* content,
                                     QWidget* parent)
    : QScrollArea(parent),
      alertView_(alertView),
      parts_(new QWidget),
      title_(new RQAlertViewLabel(parts_)),
      message_(new RQAlertViewLabel(parts_)),
      content_(content),
      overlay_(new Overlay(this)) {
  content_->setParent(parts_);
  setWidget(parts_);
  // The area fills what it scrolls unless it is told not to; the card is to shine through.
  parts_->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setVerticalScrollBar(new RQAlertViewScrollIndicator);
  setAccessibleName(tr("Message"));
  parts_->show();
  title_->setText(alertView.title());
  message_->setText(alertView.message());
  title_->setVisible(!alertView.title().isEmpty());
  message_->setVisible(!alertView.message().isEmpty());
  content_->setVisible(!content_->isEmpty());
  connect(qApp, &QApplication::focusChanged, this, [this] {
    keepFocusInSight();
    overlay_->update();
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { overlay_->setGoesOn(value < verticalScrollBar()->maximum()); });
}

void RQAlertViewHeader::applyLooks() {
  title_->setStyle({.font = alertView_.titleFont(), .alignment = alertView_.titleTextAlignment()},
                   alertView_.titleTextColor());
  message_->setStyle({.font = alertView_.messageFont(), .alignment = alertView_.messageTextAlignment()},
                     alertView_.messageTextColor());
  content_->applyAppearance(alertView_.appearanceValues());
  overlay_->setColors(alertView_.backgroundColor(), alertView_.tintColor());
  static_cast<RQAlertViewScrollIndicator*>(verticalScrollBar())->setStyle(alertView_.indicatorStyle());
  setVerticalScrollBarPolicy(alertView_.showsVerticalScrollIndicator() ? Qt::ScrollBarAsNeeded
                                                                       : Qt::ScrollBarAlwaysOff);
}

int RQAlertViewHeader::wholeHeight(int width) const {
  const int height = eachPart(width - 2 * headerPadding, [](QWidget*, int, int) {});
  return height > 0 ? height + 2 * paddingVertical() : 0;
}

void RQAlertViewHeader::layOutIn(const QRect& area) {
  const int height = wholeHeight(area.width());
  const bool overflows = height > area.height();
  setVisible(!area.isEmpty());
  setGeometry(area);
  // Only what scrolls is worth a stop of the Tab key.
  setFocusPolicy(overflows ? Qt::TabFocus : Qt::NoFocus);
  parts_->setGeometry(0, parts_->y(), area.width(), height);
  const int inner = area.width() - 2 * headerPadding;
  eachPart(inner, [this, inner](QWidget* part, int top, int partHeight) {
    part->setGeometry(headerPadding, paddingVertical() + top, inner, partHeight);
  });

  overlay_->setGeometry(0, 0, area.width(), area.height());
  overlay_->raise();
  overlay_->setVisible(overflows);
  overlay_->setGoesOn(verticalScrollBar()->value() < height - area.height());
  keepFocusInSight();
}

void RQAlertViewHeader::keepFocusInSight() {
  const QWidget* focused = window()->focusWidget();
  if (!focused || focused == parts_ || !parts_->isAncestorOf(focused)) return;
  // The whole of it, the upper edge before the lower one where it is taller than the area.
  const QRect place(focused->mapTo(parts_, QPoint()), focused->size());
  ensureVisible(place.x(), place.bottom(), 0, textFieldsGap);
  ensureVisible(place.x(), place.top(), 0, textFieldsGap);
}

void RQAlertViewHeader::keyPressEvent(QKeyEvent* event) {
  // What a field leaves over belongs to the box, and so do the arrows where there is nothing left to scroll.
  const QScrollBar* bar = verticalScrollBar();
  const bool atEnd = (event->key() == Qt::Key_Up && bar->value() == bar->minimum()) ||
                     (event->key() == Qt::Key_Down && bar->value() == bar->maximum());
  if (hasFocus() && !atEnd) {
    QScrollArea::keyPressEvent(event);
  } else {
    event->ignore();
  }
}

int RQAlertViewHeader::paddingVertical() const {
  return alertView_.style() == RQAlertViewStyle::Alert ? alertHeaderPaddingVertical
                                                       : actionSheetHeaderPaddingVertical;
}

template <typename Visit>
int RQAlertViewHeader::eachPart(int innerWidth, Visit visit) const {
  int y = 0;
  bool first = true;
  for (const auto& [part, gap] :
       {std::pair<QWidget*, int>{title_, 0}, {message_, titleMessageGap}, {content_, contentGap}}) {
    if (part->isHidden()) continue;
    if (!std::exchange(first, false)) y += gap;
    const int height = part->heightForWidth(innerWidth);
    visit(part, y, height);
    y += height;
  }
  return y;
}
