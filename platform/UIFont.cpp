#include "platform/UIFont.h"

#include <QApplication>

QFont systemFontOfSize(double size) {
  QFont font = QApplication::font();
  // Points, not pixels: a desktop's larger text is a larger number of dots to the inch.
  font.setPointSizeF(size * 72.0 / 96.0);
  return font;
}

QFont boldSystemFontOfSize(double size) {
  QFont font = systemFontOfSize(size);
  font.setBold(true);
  return font;
}
