#include "RQAlertView/RQAlertViewBlur.h"

#include <algorithm>

#include <QPainter>
#include <QWidget>

namespace {

// Each pixel of the blur stands for this many of the picture, across and down.
constexpr int coarseness = 14;

QColor tintFor(UIBlurEffectStyle style) {
  switch (style) {
    case UIBlurEffectStyle::ExtraLight:
      return {255, 255, 255, 190};
    case UIBlurEffectStyle::Light:
      return {255, 255, 255, 80};
    case UIBlurEffectStyle::Dark:
      return {0, 0, 0, 110};
  }
  return Qt::transparent;
}

}  // namespace

QPixmap blurredPicture(QWidget& widget, UIBlurEffectStyle style) {
  QPixmap picture = widget.grab();
  if (picture.isNull()) return picture;
  const double ratio = picture.devicePixelRatioF();
  const QSize whole = picture.size();
  // Making it small and large again is a blur that costs next to nothing.
  const QSize small(std::max(1, whole.width() / coarseness), std::max(1, whole.height() / coarseness));
  picture = picture.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(&picture).fillRect(picture.rect(), tintFor(style));
  picture.setDevicePixelRatio(ratio);
  return picture;
}
