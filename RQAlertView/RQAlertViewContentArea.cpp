#include "RQAlertView/RQAlertViewContentArea.h"

#include "RQAlertView/RQAlertViewMetrics.h"
#include "RQAlertView/RQAlertViewProgressView.h"
#include "RQAlertView/RQAlertViewText.h"
#include "RQAlertView/RQAlertViewTextField.h"
#include "platform/EventLoop.h"
#include "platform/UIActivityIndicatorView.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace RQAlertViewMetrics;

Qt::Alignment alignmentFor(NSTextAlignment alignment) {
  switch (alignment) {
    case NSTextAlignment::Center:
      return Qt::AlignHCenter | Qt::AlignVCenter;
    case NSTextAlignment::Right:
      return Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter;
    case NSTextAlignment::Left:
      return Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter;
    default:
      return Qt::AlignLeading | Qt::AlignVCenter;
  }
}

}  // namespace

RQAlertViewContentArea::RQAlertViewContentArea(const RQAlertViewSetup& contents,
                                               const RQAlertViewAppearance& appearance, QWidget* parent)
    : QWidget(parent), innerView_(contents.innerView) {
  if (innerView_) {
    innerView_->setParent(this);
    innerView_->show();
  }
  switch (contents.type) {
    case RQAlertViewType::Default:
      break;
    case RQAlertViewType::ActivityIndicator:
      indicator_ = new UIActivityIndicatorView(appearance.activityIndicatorViewStyle, this);
      indicator_->show();
      indicator_->startAnimating();
      addProgressLabel(contents.progressLabelText);
      break;
    case RQAlertViewType::ProgressView:
      progressView_ = new RQAlertViewProgressView(this);
      progressView_->setProgress(contents.progress, false);
      progressView_->show();
      addProgressLabel(contents.progressLabelText);
      break;
    case RQAlertViewType::TextFields:
      addTextFields(contents);
      break;
  }
  applyAppearance(appearance);
}

void RQAlertViewContentArea::setUpTextFields(const RQAlertViewTextFieldsSetupHandler& handler) {
  // A copy: the handler may destroy the window, and this with it.
  const auto fields = fields_;
  for (std::size_t index = 0; index < fields.size(); ++index) {
    if (fields[index]) atEventBoundary(handler)(*fields[index], index);
  }
}

bool RQAlertViewContentArea::isEmpty() const {
  return !innerView_ && !indicator_ && !progressView_ && fields_.empty();
}

void RQAlertViewContentArea::addTextFields(const RQAlertViewSetup& contents) {
  for (std::size_t index = 0; index < contents.numberOfTextFields; ++index) {
    auto* field = new RQAlertViewTextField(this);
    field->setTitle(contents.title.isEmpty() ? contents.message : contents.title);
    connect(field, &QLineEdit::returnPressed, this, atEventBoundary([this, index] { fieldEntered(index); }));
    field->show();
    fields_.emplace_back(field);
  }
}

void RQAlertViewContentArea::addProgressLabel(const QString& text) {
  progressLabel_ = new RQAlertViewLabel(this);
  setProgressLabelText(text);
}

void RQAlertViewContentArea::applyAppearance(const RQAlertViewAppearance& appearance) {
  if (indicator_) {
    indicator_->setActivityIndicatorViewStyle(appearance.activityIndicatorViewStyle);
    indicator_->setColor(appearance.activityIndicatorViewColor);
  }
  if (progressView_) {
    progressView_->setColors(appearance.progressViewProgressTintColor, appearance.progressViewTrackTintColor);
    progressView_->setImages(appearance.progressViewProgressImage, appearance.progressViewTrackImage);
  }
  if (progressLabel_) {
    progressLabel_->setStyle({.font = appearance.progressLabelFont,
                              .alignment = appearance.progressLabelTextAlignment,
                              .numberOfLines = appearance.progressLabelNumberOfLines,
                              .lineBreakMode = appearance.progressLabelLineBreakMode},
                             appearance.progressLabelTextColor);
  }
  for (const auto& field : fields_) {
    if (field) applyToTextField(*field, appearance);
  }
  applied_ = appearance;
  everApplied_ = true;
}

void RQAlertViewContentArea::applyToTextField(RQAlertViewTextField& field,
                                              const RQAlertViewAppearance& now) const {
  const RQAlertViewAppearance& before = applied_;
  const auto changed = [this](const auto& was, const auto& is) { return !everApplied_ || !(was == is); };
  if (changed(before.textFieldsBackgroundColor, now.textFieldsBackgroundColor) ||
      changed(before.textFieldsTextColor, now.textFieldsTextColor)) {
    field.setColors(now.textFieldsBackgroundColor, now.textFieldsTextColor);
  }
  if (changed(before.tintColor, now.tintColor)) field.setTintColor(now.tintColor);
  if (changed(before.textFieldsFont, now.textFieldsFont)) field.setFont(now.textFieldsFont);
  if (changed(before.textFieldsTextAlignment, now.textFieldsTextAlignment)) {
    field.setAlignment(alignmentFor(now.textFieldsTextAlignment));
  }
  if (changed(before.textFieldsClearsOnBeginEditing, now.textFieldsClearsOnBeginEditing)) {
    field.setClearsOnBeginEditing(now.textFieldsClearsOnBeginEditing);
  }
  if (changed(before.textFieldsAdjustsFontSizeToFitWidth, now.textFieldsAdjustsFontSizeToFitWidth) ||
      changed(before.textFieldsMinimumFontSize, now.textFieldsMinimumFontSize) ||
      changed(before.textFieldsFont, now.textFieldsFont)) {
    field.setAdjustsFontSizeToFitWidth(now.textFieldsAdjustsFontSizeToFitWidth,
                                       now.textFieldsMinimumFontSize);
  }
  if (changed(before.textFieldsClearButtonMode, now.textFieldsClearButtonMode)) {
    field.setClearButtonMode(now.textFieldsClearButtonMode);
  }
}

void RQAlertViewContentArea::setProgress(double progress, bool animated) {
  if (progressView_) progressView_->setProgress(progress, animated);
}

void RQAlertViewContentArea::setProgressLabelText(const QString& text) {
  if (!progressLabel_) return;
  progressLabel_->setText(text);
  progressLabel_->setVisible(!text.isEmpty());
  emit heightChanged();
}

std::vector<RQAlertViewTextField*> RQAlertViewContentArea::textFields() const {
  std::vector<RQAlertViewTextField*> fields;
  for (const auto& field : fields_) {
    if (field) fields.push_back(field);
  }
  return fields;
}

int RQAlertViewContentArea::heightForWidth(int width) const {
  return place(width, true);
}

void RQAlertViewContentArea::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  place(width(), false);
}

int RQAlertViewContentArea::place(int width, bool measureOnly) const {
  int y = 0;
  const auto put = [&](QWidget* part, int partWidth, int partHeight, int gap) {
    if (y > 0) y += gap;
    if (!measureOnly) part->setGeometry((width - partWidth) / 2, y, partWidth, partHeight);
    y += partHeight;
  };
  if (innerView_) {
    const QSize hint = innerView_->sizeHint();
    const int height = innerView_->hasHeightForWidth() ? innerView_->heightForWidth(width) : hint.height();
    put(innerView_, width, std::clamp(height, innerView_->minimumHeight(), innerView_->maximumHeight()),
        contentGap);
  }
  if (indicator_)
    put(indicator_, indicator_->sizeHint().width(), indicator_->sizeHint().height(), contentGap);
  if (progressView_) put(progressView_, width, progressView_->sizeHint().height(), contentGap);
  if (progressLabel_ && !progressLabel_->isHidden()) {
    put(progressLabel_, width, progressLabel_->heightForWidth(width), progressLabelGap);
  }
  for (const auto& field : fields_) {
    if (!field) continue;
    const auto least = static_cast<int>(std::lround(applied_.textFieldsHeight));
    put(field, width, std::max(least, field->fontMetrics().height() + 2 * textFieldPadding), textFieldsGap);
  }
  return y;
}

void RQAlertViewContentArea::fieldEntered(std::size_t index) {
  for (std::size_t next = index + 1; next < fields_.size(); ++next) {
    if (!fields_[next] || !fields_[next]->isEnabled() || fields_[next]->isHidden()) continue;
    fields_[next]->setFocus(Qt::TabFocusReason);
    return;
  }
  emit lastFieldEntered();
}
