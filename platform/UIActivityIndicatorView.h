// The spinning wheel that says: something is going on, for an unknown time.
#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

enum class UIActivityIndicatorViewStyle { WhiteLarge = 0, White = 1, Gray = 2 };

// The timer runs only while the wheel spins, is visible, and motion is on.
class UIActivityIndicatorView : public QWidget {
  Q_OBJECT

 public:
  explicit UIActivityIndicatorView(
      UIActivityIndicatorViewStyle style = UIActivityIndicatorViewStyle::WhiteLarge,
      QWidget* parent = nullptr);

  void startAnimating();
  void stopAnimating();
  bool isAnimating() const { return animating_; }
  // Whether the timer runs.
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
  void updateTimer();

  UIActivityIndicatorViewStyle style_;
  QColor color_;
  bool animating_ = false;
  int step_ = 0;
  QTimer timer_;
};
