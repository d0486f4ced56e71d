// What stands on what, and how well it can be told from it.
#include "RQAlertView/RQAlertView.h"
#include "platform/ApplicationStyle.h"
#include "ui/controls/CodeColours.h"
#include "ui/controls/Looks.h"
#include "ui/controls/Problems.h"
#include "ui/controls/UIButton.h"
#include "ui/dialogs/Dialogs.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <QApplication>
#include <QImage>
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

// What is seen of a translucent colour.
QColor over(const QColor& ground, const QColor& veil) {
  const double share = veil.alphaF();
  const auto mix = [share](double below, double above) { return below + (above - below) * share; };
  return QColor::fromRgbF(static_cast<float>(mix(ground.redF(), veil.redF())),
                          static_cast<float>(mix(ground.greenF(), veil.greenF())),
                          static_cast<float>(mix(ground.blueF(), veil.blueF())));
}

// What a picture of one colour is drawn in.
QColor inkOf(const QString& picture) {
  const QImage image(picture);
  QColor ink = Qt::transparent;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y).alpha() > ink.alpha()) ink = image.pixelColor(x, y);
    }
  }
  return ink;
}

TEST(Contrast, TextsAndControlsStandOut) {
  constexpr double text = 4.5;
  constexpr double control = 3;
  const auto of = [](QPalette::ColorRole role) { return QApplication::palette().color(role); };
  const QColor window = of(QPalette::Window);
  const QColor base = of(QPalette::Base);
  const auto prompt = RQAlertView::alertViewWithTitle("title", QString(), RQAlertViewStyle::Alert,
                                                      QStringList(), QString(), QString());
  dressAsPrompt(*prompt);
  const QColor placeholder = RQAlertViewTextField::placeholderColor(prompt->textFieldsTextColor());
  const QColor icon = inkOf(":/pictures/new@4x.png");
  struct Pair {
    std::string what;
    QColor front;
    QColor ground;
    double least;
  };
  std::vector<Pair> table{
      {"titles on the window", of(QPalette::WindowText), window, text},
      {"log and editor", of(QPalette::Text), base, text},
      {"selected text", of(QPalette::HighlightedText), of(QPalette::Highlight), text},
      // Both greys are settled; large text would need 3 only.
      {"file names (both greys settled)", colours::cellText, colours::cellGround, 4.3},
      {"file names under the pointer", colours::cellText, colours::cellUnderPointer, text},
      {"credits", of(QPalette::WindowText), colours::labelGround, text},
      {"bare pictures", icon, window, control},
      {"bare pictures, pressed", icon, over(window, UIButton::groundPressed({})), control},
      {"tiles' pictures", icon, colours::tileGround, control},
      {"tiles' pictures, pressed", icon, UIButton::groundPressed(colours::tileGround), control},
      {"tooltips", of(QPalette::ToolTipText), of(QPalette::ToolTipBase), text},
      {"placeholder in the find bar", of(QPalette::PlaceholderText), base, text},
      {"row pictures", inkOf(":/pictures/na@4x.png"), colours::cellGround, control},
      {"tiles' borders", colours::tileBorder, window, control},
      {"scroll bars", ApplicationStyle::scrollBarThumb(), base, control},
      {"switch, off", colours::switchOff, window, control},
      {"switch, on", of(QPalette::Highlight), window, control},
      {"knob, off", colours::switchKnob, colours::switchOff, control},
      {"knob, on", colours::switchKnob, of(QPalette::Highlight), text},
      {"prompt: selected text", RQAlertViewTextField::selectedTextColor(prompt->tintColor()),
       prompt->tintColor(), text},
      {"prompt: placeholder", over(prompt->textFieldsBackgroundColor(), placeholder),
       prompt->textFieldsBackgroundColor(), text},
  };
  const auto buttonsOn = [&](const std::string& what, const QColor& ground) {
    table.push_back({what, of(QPalette::ButtonText), ground, text});
    table.push_back(
        {what + " under the pointer", of(QPalette::ButtonText), UIButton::groundUnderPointer(ground), text});
    table.push_back({what + ", pressed", of(QPalette::ButtonText), UIButton::groundPressed(ground), text});
    table.push_back({what + ", focus", colours::focusRing, ground, control});
  };
  buttonsOn("build buttons", colours::buildButtonGround);
  buttonsOn("Save and Cancel", colours::editorButtonGround);
  buttonsOn("links", colours::linkGround);
  for (int part = 0; part < codeParts; ++part) {
    for (const QColor& ground : {base, colours::currentLine, colours::codeSelection})
      table.push_back(
          {"code, part " + std::to_string(part), colourOf(static_cast<CodePart>(part)), ground, text});
  }
  table.push_back({"line numbers", colours::lineNumber, base, text});
  table.push_back({"matching brackets", colours::bracket, colours::bracketGround, text});
  for (const auto kind : {Problem::Kind::Error, Problem::Kind::Warning, Problem::Kind::Note})
    table.push_back({"marks of problems", colourOf(kind), base, control});
  table.push_back({"focus on the window", colours::focusRing, window, control});
  table.push_back({"focus on a file", colours::focusRing, colours::cellGround, control});
  for (const auto& row : table) {
    const double reached = contrast(row.front, row.ground);
    EXPECT_GE(reached, row.least) << row.what << ": " << row.front.name().toStdString() << " on "
                                  << row.ground.name().toStdString();
  }
}

}  // namespace
