// A progress bar of a dialog.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QProgressBar>
#include <QVariantAnimation>

// A progress bar to assistive technology, in hundredths.
class RQAlertViewProgressView : public QProgressBar {
  Q_OBJECT

 public:
  explicit RQAlertViewProgressView(QWidget* parent);

  // From 0 to 1. An animated change moves the bar where motion is on; the value itself changes at once.
  void setProgress(double progress, bool animated);
  double progress() const { return progress_; }

  void setColors(const QColor& progress, const QColor& track);
  // Drawn instead of the colours, stretched lengthwise; empty: the colours.
  void setImages(const QPixmap& progress, const QPixmap& track);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double progress_ = 0;
  double shown_ = 0;
  QVariantAnimation animation_;
  QColor progressColor_;
  QColor trackColor_;
  QPixmap progressImage_;
  QPixmap trackImage_;
};
