#include "platform/TakesInput.h"

#include <QPalette>
#include <QPixmapCache>
#include <QWidget>

namespace {

// The style draws every control once for every palette that it meets and keeps the picture's name for good,
// so what was drawn for palettes that are gone is thrown away from time to time.
void forgetPicturesOfFormerPalettes() {
  constexpr int palettesAtATime = 64;
  static int palettes = 0;
  if (++palettes % palettesAtATime == 0) QPixmapCache::clear();
}

}  // namespace

void setTakesInput(QWidget& widget, bool takesInput) {
  // What the widget itself was told: its parent may be switched off as well.
  if (takesInput != widget.testAttribute(Qt::WA_ForceDisabled)) return;
  if (takesInput) {
    widget.setPalette(QPalette());
    forgetPicturesOfFormerPalettes();
  } else {
    // What lies behind is dimmed by the cover above it, not greyed out control by control as well.
    QPalette palette = widget.palette();
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
      const auto colorRole = static_cast<QPalette::ColorRole>(role);
      palette.setBrush(QPalette::Disabled, colorRole, palette.brush(QPalette::Active, colorRole));
    }
    widget.setPalette(palette);
  }
  widget.setEnabled(takesInput);
}
