// Larger and smaller text in the log and the editor: Ctrl with +, - and 0, and Ctrl with the wheel.
#pragma once

#include <QAbstractScrollArea>

// The size that was chosen holds for every such text until the application ends, so that it need not be
// chosen again for each file.
class TextZoom : public QObject {
  Q_OBJECT

 public:
  // Lives as long as `text`; the keys work wherever the focus is on the screen that `text` lies in, so `text`
  // has to be in it already. Sets its font now and at each change.
  explicit TextZoom(QAbstractScrollArea* text);

  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void setLevel(int level);

  QAbstractScrollArea* text_;
  int wheelAngle_ = 0;  // eighths of a degree that have not made a step yet
};
