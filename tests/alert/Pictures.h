// What the user sees of a dialog, and where in it a colour is.
#pragma once

#include "alert/Dialogs.h"

#include <cstdlib>

#include <QImage>

// A colour that no dialog has unless it was told to.
inline const QColor telling(Qt::magenta);

// Whether `pixel` is `color` or a good half of it on another one, as the edges of letters are.
inline bool isLike(const QColor& pixel, const QColor& color) {
  constexpr int most = 110;
  return std::abs(pixel.red() - color.red()) < most && std::abs(pixel.green() - color.green()) < most &&
         std::abs(pixel.blue() - color.blue()) < most;
}

// The smallest rectangle that holds every pixel that `counts`; null where there is none.
template <typename Counts>
QRect extentWhere(const QImage& picture, Counts counts) {
  QRect extent;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (counts(picture.pixelColor(x, y))) extent |= QRect(x, y, 1, 1);
    }
  }
  return extent;
}
inline QRect extentOf(const QImage& picture, const QColor& color = telling) {
  return extentWhere(picture, [&color](const QColor& pixel) { return isLike(pixel, color); });
}
inline bool shows(const QImage& picture, const QColor& color = telling) {
  return !extentOf(picture, color).isNull();
}

// Dialogs above a white screen without a cover, so that colours are what they were given as.
class Pictures : public Dialogs {
 protected:
  void SetUp() override {
    Dialogs::SetUp();
    appController->view()->setAutoFillBackground(true);
    setBehind(Qt::white);
    appField->hide();
    // Keys of an earlier test leave a ring around what has the focus.
    UIScreen::mainScreen()->setAttribute(Qt::WA_KeyboardFocusChange, false);
    RQAlertView::appearance()->setCoverColor(Qt::transparent);
  }

  // What the application's own window is filled with.
  void setBehind(const QBrush& brush) {
    QPalette palette = appController->view()->palette();
    palette.setBrush(QPalette::Window, brush);
    appController->view()->setPalette(palette);
  }

  // Of the whole screen, cut to `area` of `part`.
  static QImage seen(const QWidget* part, const QRect& area) {
    QWidget* screen = UIScreen::mainScreen();
    return screen->grab(QRect(part->mapTo(screen, area.topLeft()), area.size())).toImage();
  }
  static QImage seen(const QWidget* part) { return seen(part, part->rect()); }
  static QColor seenAt(const QWidget* part, const QPoint& place) {
    return seen(part, QRect(place, QSize(1, 1))).pixelColor(0, 0);
  }
};
