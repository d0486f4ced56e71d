// A text of a dialog: plain, of any length, and quick to scroll.
#pragma once

#include "RQAlertView/RQAlertViewText.h"

#include <optional>

#include <QLabel>

// A label to assistive technology; the setting of lines is its own, since only the visible ones may cost.
class RQAlertViewLabel : public QLabel {
  Q_OBJECT

 public:
  explicit RQAlertViewLabel(QWidget* parent);

  void setStyle(const RQAlertViewTextStyle& style, const QColor& color);

  int heightForWidth(int width) const override;
  bool hasHeightForWidth() const override { return true; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  const RQAlertViewTextLayout& layoutFor(int width) const;

  RQAlertViewTextStyle style_;
  QColor color_;
  mutable std::optional<RQAlertViewTextLayout> layout_;
  mutable QString laidOutText_;
  mutable int laidOutWidth_ = -1;
};
