#include "platform/UIFont.h"

#include <QApplication>
#include <QFontDatabase>

namespace {

QFont resized(QFont font, double size) {
  // Points, not pixels: a desktop's larger text is a larger number of dots to the inch.
  font.setPointSizeF(size * 72.0 / 96.0);
  return font;
}

}  // namespace

QFont systemFontOfSize(double size) {
  return resized(QApplication::font(), size);
}

QFont boldSystemFontOfSize(double size) {
  QFont font = systemFontOfSize(size);
  font.setBold(true);
  return font;
}

QFont fixedPitchFontOfSize(double size) {
  return resized(QFontDatabase::systemFont(QFontDatabase::FixedFont), size);
}
