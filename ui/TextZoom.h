// Larger and smaller text in the log and the editor: Ctrl with +, - and 0, and Ctrl with the wheel.
#pragma once

#include <functional>

#include <QAbstractScrollArea>
#include <QFont>

// The size that was chosen holds for every such text until the application ends, so that it need not be
// chosen again for each file.
class TextZoom : public QObject {
  Q_OBJECT

 public:
  // Lives as long as `text`; the keys work wherever the focus is on the screen that `text` lies in, so `text`
  // has to be in it already. `apply` is called with the fixed-pitch font now and at each change.
  TextZoom(QAbstractScrollArea* text, std::function<void(const QFont&)> apply);

  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void setLevel(int level);

  std::function<void(const QFont&)> apply_;
  int wheelAngle_ = 0;  // eighths of a degree that have not made a step yet
};
