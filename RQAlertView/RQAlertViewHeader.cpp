#include "RQAlertView/RQAlertViewHeader.h"

#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewShadowView.h"
#include "RQAlertView/RQAlertViewText.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QKeyEvent>
#include <QPainter>
#include <QProgressBar>
#include <QVariantAnimation>

using namespace RQAlertViewMetrics;

namespace {

void paintBar(QPainter& painter, const QRectF& bar, const QColor& color, const QPixmap& image) {
  if (!image.isNull()) return painter.drawPixmap(bar, image, QRectF(image.rect()));
  painter.setBrush(color);
  painter.drawRoundedRect(bar, bar.height() / 2, bar.height() / 2);
}

}  // namespace

// In hundredths to assistive technology. A change that is animated moves the bar where motion is on; the
// value itself changes at once.
class RQAlertViewHeader::ProgressBar : public QProgressBar {
 public:
  ProgressBar(const RQAlertViewAppearance& look, QWidget* parent) : QProgressBar(parent), look_(look) {
    setRange(0, 100);
    setAccessibleName(tr("Progress"));
    animation_.setDuration(250);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
      shown_ = value.toDouble();
      update();
    });
  }

  void setProgress(double progress, bool animated) {
    setValue(static_cast<int>(std::lround(progress * 100)));
    animation_.stop();
    if (animated && motionEnabled() && isVisible()) {
      animation_.setStartValue(shown_);
      animation_.setEndValue(progress);
      return animation_.start();
    }
    shown_ = progress;
    update();
  }

  QSize sizeHint() const override {
    const double image = std::max(look_.progressViewProgressImage.deviceIndependentSize().height(),
                                  look_.progressViewTrackImage.deviceIndependentSize().height());
    return {0, std::max(progressBarHeight, static_cast<int>(std::ceil(image)))};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF whole = rect();
    paintBar(painter, whole, look_.progressViewTrackTintColor, look_.progressViewTrackImage);
    if (shown_ <= 0) return;
    QRectF done = whole;
    done.setWidth(std::max(whole.height(), whole.width() * shown_));
    if (layoutDirection() == Qt::RightToLeft) done.moveRight(whole.right());
    paintBar(painter, done, look_.progressViewProgressTintColor, look_.progressViewProgressImage);
  }

 private:
  const RQAlertViewAppearance& look_;
  double shown_ = 0;
  QVariantAnimation animation_;
};

RQAlertViewHeader::RQAlertViewHeader(std::shared_ptr<const RQAlertViewModel> dialog, QWidget* parent)
    : QScrollArea(parent),
      dialog_(std::move(dialog)),
      parts_(new QWidget),
      title_(new RQAlertViewLabel(parts_)),
      message_(new RQAlertViewLabel(parts_)),
      overlay_(new RQAlertViewOverlay(std::bind_front(&RQAlertViewHeader::paintOver, this), this)) {
  title_->setText(dialog_->title);
  message_->setText(dialog_->message);
  if (dialog_->innerView) dialog_->innerView->setParent(parts_);
  if (dialog_->type == RQAlertViewType::ActivityIndicator) {
    indicator_ = new UIActivityIndicatorView(dialog_->appearance.activityIndicatorViewStyle, parts_);
    progressLabel_ = new RQAlertViewLabel(parts_);
  } else if (dialog_->type == RQAlertViewType::ProgressView) {
    progressBar_ = new ProgressBar(dialog_->appearance, parts_);
    progressLabel_ = new RQAlertViewLabel(parts_);
    showProgress(false);
  } else if (dialog_->type == RQAlertViewType::TextFields) {
    addTextFields();
  }
  const auto shown = parts_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  for (QWidget* part : shown) part->show();
  title_->setVisible(!dialog_->title.isEmpty());
  message_->setVisible(!dialog_->message.isEmpty());
  setWidget(parts_);
  // setWidget() fills the background; the card shows through.
  parts_->setAutoFillBackground(false);
  parts_->show();
  RQAlertViewScrollIndicator::install(*this);
  setAccessibleName(tr("Message"));
  applyLooks();
  connect(qApp, &QApplication::focusChanged, this, [this] {
    keepFocusInSight();
    overlay_->update();
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { overlay_->update(); });
}

void RQAlertViewHeader::addTextFields() {
  for (std::size_t index = 0; index < dialog_->numberOfTextFields; ++index) {
    auto* field = new RQAlertViewTextField(parts_);
    field->setTitle(dialog_->title.isEmpty() ? dialog_->message : dialog_->title);
    connect(field, &QLineEdit::returnPressed, this, atEventBoundary([this, index] { fieldEntered(index); }));
    fields_.emplace_back(field);
  }
}

void RQAlertViewHeader::setUpTextFields(const RQAlertViewTextFieldsSetupHandler& handler) {
  // A copy: the handler may destroy the window, and this with it.
  const auto fields = fields_;
  for (std::size_t index = 0; index < fields.size(); ++index) {
    if (fields[index]) atEventBoundary(handler)(*fields[index], index);
  }
}

std::vector<RQAlertViewTextField*> RQAlertViewHeader::textFields() const {
  std::vector<RQAlertViewTextField*> fields;
  for (const auto& field : fields_) {
    if (field) fields.push_back(field);
  }
  return fields;
}

void RQAlertViewHeader::applyLooks() {
  const RQAlertViewAppearance& look = dialog_->appearance;
  title_->setStyle({.font = *look.titleFont, .alignment = look.titleTextAlignment}, *look.titleTextColor);
  message_->setStyle({.font = look.messageFont, .alignment = look.messageTextAlignment},
                     *look.messageTextColor);
  if (indicator_) {
    indicator_->setActivityIndicatorViewStyle(look.activityIndicatorViewStyle);
    indicator_->setColor(look.activityIndicatorViewColor);
  }
  if (progressBar_) progressBar_->update();
  if (progressLabel_) {
    progressLabel_->setText(dialog_->progressLabelText);
    progressLabel_->setVisible(!dialog_->progressLabelText.isEmpty());
    progressLabel_->setStyle({.font = look.progressLabelFont,
                              .alignment = look.progressLabelTextAlignment,
                              .numberOfLines = look.progressLabelNumberOfLines,
                              .lineBreakMode = look.progressLabelLineBreakMode},
                             look.progressLabelTextColor);
  }
  for (RQAlertViewTextField* field : textFields()) applyLooksTo(*field);
  applied_ = look;
  overlay_->update();
  RQAlertViewScrollIndicator::takeLook(*this, look);
}

void RQAlertViewHeader::applyLooksTo(RQAlertViewTextField& field) const {
  using Look = RQAlertViewAppearance;
  const Look& now = dialog_->appearance;
  const auto changed = [&](auto... properties) {
    return !applied_ || (!((*applied_).*properties == now.*properties) || ...);
  };
  if (changed(&Look::textFieldsBackgroundColor, &Look::textFieldsTextColor))
    field.setColors(now.textFieldsBackgroundColor, now.textFieldsTextColor);
  if (changed(&Look::tintColor)) field.setTintColor(now.tintColor);
  if (changed(&Look::textFieldsFont)) field.setFont(now.textFieldsFont);
  if (changed(&Look::textFieldsTextAlignment))
    field.setAlignment(alignmentFor(now.textFieldsTextAlignment) | Qt::AlignVCenter);
  if (changed(&Look::textFieldsClearsOnBeginEditing))
    field.setClearsOnBeginEditing(now.textFieldsClearsOnBeginEditing);
  if (changed(&Look::textFieldsAdjustsFontSizeToFitWidth, &Look::textFieldsMinimumFontSize,
              &Look::textFieldsFont)) {
    field.setAdjustsFontSizeToFitWidth(now.textFieldsAdjustsFontSizeToFitWidth,
                                       now.textFieldsMinimumFontSize);
  }
  if (changed(&Look::textFieldsClearButtonMode)) field.setClearButtonMode(now.textFieldsClearButtonMode);
}

void RQAlertViewHeader::showProgress(bool animated) {
  if (progressBar_) progressBar_->setProgress(dialog_->progress, animated);
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
  // Only what scrolls is a stop of the Tab key.
  setFocusPolicy(overflows ? Qt::TabFocus : Qt::NoFocus);
  parts_->setGeometry(0, parts_->y(), area.width(), height);
  const int inner = area.width() - 2 * headerPadding;
  eachPart(inner, [this, inner](QWidget* part, int top, int partHeight) {
    const int width = part == indicator_ ? part->sizeHint().width() : inner;
    part->setGeometry(headerPadding + (inner - width) / 2, paddingVertical() + top, width, partHeight);
  });

  overlay_->setGeometry(0, 0, area.width(), area.height());
  overlay_->raise();
  overlay_->setVisible(overflows);
  keepFocusInSight();
}

void RQAlertViewHeader::fieldEntered(std::size_t index) {
  for (std::size_t next = index + 1; next < fields_.size(); ++next) {
    if (!fields_[next] || !fields_[next]->isEnabled() || fields_[next]->isHidden()) continue;
    return fields_[next]->setFocus(Qt::TabFocusReason);
  }
  emit lastFieldEntered();
}

void RQAlertViewHeader::keepFocusInSight() {
  const QWidget* focused = window()->focusWidget();
  if (!focused || focused == parts_ || !parts_->isAncestorOf(focused)) return;
  // The whole of it, and its upper edge where it is taller than the area.
  const QRect place(focused->mapTo(parts_, QPoint()), focused->size());
  ensureVisible(place.x(), place.bottom(), 0, textFieldsGap);
  ensureVisible(place.x(), place.top(), 0, textFieldsGap);
}

void RQAlertViewHeader::keyPressEvent(QKeyEvent* event) {
  // Keys that a field leaves over belong to the box, and so do the arrows where nothing is left to scroll.
  const QScrollBar* bar = verticalScrollBar();
  const bool atEnd = (event->key() == Qt::Key_Up && bar->value() == bar->minimum()) ||
                     (event->key() == Qt::Key_Down && bar->value() == bar->maximum());
  if (hasFocus() && !atEnd) {
    QScrollArea::keyPressEvent(event);
  } else {
    event->ignore();
  }
}

void RQAlertViewHeader::paintOver(QPainter& painter, const QRect& area) const {
  const RQAlertViewAppearance& look = dialog_->appearance;
  if (verticalScrollBar()->value() < verticalScrollBar()->maximum())
    paintGoesOn(painter, area, look.backgroundColor);
  if (showsFocus(*this)) paintFocusRing(painter, area, look.tintColor);
}

int RQAlertViewHeader::paddingVertical() const {
  return dialog_->style == RQAlertViewStyle::Alert ? alertHeaderPaddingVertical
                                                   : actionSheetHeaderPaddingVertical;
}

template <typename Visit>
int RQAlertViewHeader::eachPart(int innerWidth, Visit visit) const {
  int y = 0;
  bool first = true;
  const auto put = [&](QWidget* part, int gap, int least = 0) {
    if (!part || part->isHidden()) return;
    if (!std::exchange(first, false)) y += gap;
    const int wanted =
        part->hasHeightForWidth() ? part->heightForWidth(innerWidth) : part->sizeHint().height();
    const int height = std::clamp(std::max(wanted, least), part->minimumHeight(), part->maximumHeight());
    visit(part, y, height);
    y += height;
  };
  put(title_, 0);
  put(message_, titleMessageGap);
  put(dialog_->innerView, contentGap);
  put(indicator_, contentGap);
  put(progressBar_, contentGap);
  put(progressLabel_, progressLabelGap);
  const int leastField = static_cast<int>(std::lround(dialog_->appearance.textFieldsHeight));
  for (const auto& field : fields_) {
    const int textAndPadding = field ? field->fontMetrics().height() + 2 * textFieldPadding : 0;
    put(field, &field == &fields_.front() ? contentGap : textFieldsGap, std::max(leastField, textAndPadding));
  }
  return y;
}
