// Screens that are wide put side by side what is one below the other on a phone.
#pragma once

#include <QObject>
#include <QPointer>

class QBoxLayout;
class QWidget;

// Follows the width of a screen's view: when it is wide, `body` runs in reading direction and `column`, its
// last widget, is a column of a fixed width; otherwise `body` runs down and `column` takes the width, as far
// as buttons can use it.
class WideLayout : public QObject {
  Q_OBJECT

 public:
  // Lives as long as `view`, which `body` has to belong to.
  WideLayout(QWidget* view, QBoxLayout* body, QWidget* column);

  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void fit(int width);

  QPointer<QBoxLayout> body_;
  QPointer<QWidget> column_;
};
