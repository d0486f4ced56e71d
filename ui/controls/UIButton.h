// The screens' push button, a caption or a picture on a layer with its states, and the on-off switch.
#pragma once

#include "platform/EventLoop.h"
#include "ui/controls/Layer.h"
#include "ui/controls/Looks.h"

#include <utility>

#include <QCheckBox>
#include <QKeySequence>
#include <QPixmap>
#include <QPushButton>

// Without a layer background it is drawn bare, and only hovering, pressing and focus put a ground behind it.
class UIButton : public QPushButton {
  Q_OBJECT

 public:
  explicit UIButton(QWidget* parent = nullptr);
  explicit UIButton(const QString& title, QWidget* parent = nullptr);

  // What the layout does once for the whole class; nothing here.
  static void awakeFromNib() {}

  // Calls `action` at each click as long as `receiver` lives.
  template <typename Action>
  void onClick(const QObject* receiver, Action action) {
    connect(this, &QPushButton::clicked, receiver, atEventBoundary(std::move(action)));
  }

  const Layer& layer() const { return layer_; }
  void setLayer(const Layer& layer);

  // Shows the picture `name` of the program's own instead of a caption.
  void setPicture(const QString& name);
  // The same, for a button without a name in its layout.
  void dress(const char* picture, const QString& accessibleName);
  // The side of the picture in logical pixels, a list icon's unless set.
  void setPictureSize(int side);
  // A picture that points back or forward is drawn the other way round where reading goes from right to left.
  void setFollowsReadingDirection(bool follows);

  // The grounds of the two states of a button whose own ground is `own`; one that has none gets a veil.
  static QColor groundPressed(const QColor& own);
  static QColor groundUnderPointer(const QColor& own);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor ground() const;
  QPixmap pictureFor(qreal ratio) const;

  Layer layer_;
  int pictureSize_ = metrics::iconSize;
  QString picture_;  // its file without the ending; empty where a caption is shown
  bool followsReadingDirection_ = false;
};

// Makes `keys` click `button` wherever the focus is on its screen, and names them in its tooltip. Call it
// while the screen's view is made, before it has a parent. Nothing happens while a dialog lies above the
// screen.
void addShortcut(UIButton& button, const QKeySequence& keys);

// Only names the keys, which the screen handles itself.
void nameShortcut(UIButton& button, const QKeySequence& keys);

// A check box drawn as a knob that slides in a groove.
class UISwitch : public QCheckBox {
  Q_OBJECT

 public:
  using QCheckBox::QCheckBox;

  bool isOn() const { return isChecked(); }

  QSize sizeHint() const override { return {metrics::switchWidth, metrics::switchHeight}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};
