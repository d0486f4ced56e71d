// Colours as the screens name them.
#pragma once

#include <QColor>

// The opaque grey whose red, green and blue are `level255` of 255.
inline QColor grey(double level255) {
  const auto level = static_cast<float>(level255 / 255.0);
  return QColor::fromRgbF(level, level, level);
}
