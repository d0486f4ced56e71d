// The spinning wheel for work of unknown length.
#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

enum class UIActivityIndicatorViewStyle { WhiteLarge = 0, White = 1, Gray = 2 };

// It spins while it is visible and motion is on.
class UIActivityIndicatorView : public QWidget {
  Q_OBJECT

 public:
  explicit UIActivityIndicatorView(
      UIActivityIndicatorViewStyle style = UIActivityIndicatorViewStyle::WhiteLarge,
      QWidget* parent = nullptr);

  // Whether the timer of the wheel runs.
  bool isTicking() const { return timer_.isActive(); }

  // An invalid colour means the style's own.
  void setColor(const QColor& color);
  QColor color() const;
  void setActivityIndicatorViewStyle(UIActivityIndicatorViewStyle style);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  UIActivityIndicatorViewStyle style_;
  QColor color_;
  int step_ = 0;
  QTimer timer_;
};
