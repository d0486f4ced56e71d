// Every property of a dialog's look is seen on the screen: looks.txt, line by line. The grammar stands at the
// head of that file.
#include "RQAlertView/RQAlertViewHeader.h"
#include "alert/Pictures.h"
#include "platform/UIActivityIndicatorView.h"
#include "support/Sections.h"

#include <cmath>
#include <map>
#include <stdexcept>

#include <QProgressBar>
#include <QRegularExpression>

namespace {

class Looks : public Pictures {
 protected:
  static std::pair<const QWidget*, QRect> partNamed(const Dialog& dialog, const QString& name) {
    if (name.startsWith('@')) return placeOf(dialog, name.mid(1));
    const std::map<QString, const QWidget*> parts{{"box", frameOf(dialog)},
                                                  {"screen", dialog->view()},
                                                  {"list", listOf(dialog)},
                                                  {"header", partOf<RQAlertViewHeader>(dialog)},
                                                  {"bar", partOf<QProgressBar>(dialog)},
                                                  {"indicator", partOf<UIActivityIndicatorView>(dialog)},
                                                  {"field", partOf<RQAlertViewTextField>(dialog)}};
    const QWidget* part = parts.at(name);
    if (part == nullptr) throw std::invalid_argument("not shown: " + name.toStdString());
    return {part, part->rect()};
  }

  // PART[:X,Y,WIDTH,HEIGHT] [COLOUR] MEASURE
  static int measured(const Dialog& dialog, const QStringList& words) {
    auto [part, area] = partNamed(dialog, words[0].section(':', 0, 0));
    if (const QStringList numbers = words[0].section(':', 1).split(','); numbers.size() == 4) {
      const int height = numbers[3].toInt();
      area = QRect(area.left() + numbers[0].toInt(), area.top() + numbers[1].toInt(), numbers[2].toInt(),
                   height == 0 ? area.height() : height);
    }
    const QString color = words.size() == 3 ? words[1] : "magenta";
    QRect found(part->mapTo(dialog->view(), area.topLeft()), area.size());
    QSize within = dialog->view()->size();
    if (color != "whole") {
      const QImage picture = seen(part, area);
      found = color == "any" ? extentWhere(picture, [](const QColor& pixel) { return pixel != Qt::white; })
                             : extentOf(picture, QColor(color));
      within = area.size();
    }
    const std::map<QString, int> measures{{"width", found.width()},
                                          {"height", found.height()},
                                          {"left", found.left()},
                                          {"top", found.top()},
                                          {"middle", found.center().x()},
                                          {"right", within.width() - 1 - found.right()},
                                          {"bottom", within.height() - 1 - found.bottom()}};
    return measures.at(words.back());
  }

  // CHANGES: CHECK; CHECK ...
  static void follow(const Dialog& dialog, const QString& line, std::map<QString, int>& before) {
    QStringList changes = line.section(": ", 0, 0).split(' ');
    if (changes.removeOne("from=right")) UIApplication::setLayoutDirection(Qt::RightToLeft);
    for (auto* field : dialog->textFieldsArray()) field->setText("Hm");
    changes.removeOne("-");
    change(*dialog, changes.join(' '));
    letGo();
    std::map<QString, int> now = before;
    for (const QString& check : line.section(": ", 1).split("; ")) {
      QStringList words = check.split(' ');
      const QString number = words.takeLast();
      const QString relation = words.takeLast();
      const QString what = words.join(' ');
      const int is = now[what] = measured(dialog, words);
      const double share = number.startsWith("was*") ? number.mid(4).toDouble() : 1;
      const double wanted =
          number.startsWith("was") ? before[what] * share + number.mid(3).toInt() : number.toInt();
      EXPECT_TRUE(relation == "="   ? is == wanted
                  : relation == "~" ? std::abs(is - wanted) <= 3
                  : relation == "<" ? is < wanted
                                    : is > wanted)
          << line.toStdString() << "\n"
          << check.toStdString() << ", is " << is;
    }
    before = now;
  }
};

TEST_F(Looks, AreAsWritten) {
  const QRegularExpression repeated("\\{(\\d+)\\*([^}]*)\\}");
  std::vector<QString> dialogs;
  std::vector<QString> lines;
  const auto go = [&] {
    ASSERT_FALSE(dialogs.empty() || lines.empty());
    for (const QString& each : dialogs) {
      SCOPED_TRACE(each.left(80).toStdString());
      const Dialog dialog = showing(each.section(" | ", 0, 0));
      std::map<QString, int> before;
      for (QString line : lines) {
        follow(dialog, line.replace('$', each.section(" | ", 1)), before);
      }
      UIApplication::setLayoutDirection(Qt::LeftToRight);
      close(dialog);
    }
    dialogs.clear();
    lines.clear();
  };
  for (const std::string& text : linesOf(TWEAKBENCH_DIALOG_LOOKS)) {
    QString line = QString::fromStdString(text);
    for (auto match = repeated.match(line); match.hasMatch(); match = repeated.match(line))
      line.replace(match.captured(0), match.captured(2).repeated(match.captured(1).toInt()));
    if (line.startsWith("  ")) {
      lines.push_back(line.trimmed());
      continue;
    }
    if (!lines.empty()) go();
    dialogs.push_back(line);
  }
  go();
}

TEST_F(Looks, BlurWhatLiesBehind) {
  // Stripes of black and white behind; the difference between neighbours tells how sharp they are.
  QImage stripes(2, 2, QImage::Format_RGB32);
  stripes.fill(Qt::white);
  stripes.setPixelColor(0, 0, Qt::black);
  stripes.setPixelColor(0, 1, Qt::black);
  setBehind(QBrush(stripes));
  for (const QString property : {"coverBlurEffect", "backgroundBlurEffect"}) {
    std::vector<int> brightness;
    for (const char* style : {"none", "Dark", "Light", "Extra"}) {
      const Dialog dialog = showing("alert buttons=A backgroundColor=transparent " + property + "=" + style);
      const auto isSharp = [](const QWidget* part) {
        return std::abs(seenAt(part, {100, 10}).red() - seenAt(part, {101, 10}).red()) > 200;
      };
      const bool behindBox = property == "backgroundBlurEffect";
      const QWidget* there = behindBox ? partOf<RQAlertViewHeader>(dialog) : dialog->view();
      EXPECT_EQ(isSharp(there), style == std::string("none")) << property.toStdString();
      EXPECT_TRUE(!behindBox || isSharp(dialog->view())) << property.toStdString();
      brightness.push_back(seenAt(there, {100, 10}).red());
      close(dialog);
    }
    EXPECT_LT(brightness[1] + 40, brightness[2]) << property.toStdString();
    EXPECT_LT(brightness[2] + 40, brightness[3]) << property.toStdString();
  }
}

// What a finger, or the application, does to a button.
const QStringList touches{"", "Highlighted", "Disabled"};

class LooksOfButtons : public Pictures {
 protected:
  // As the user sees the button or row with the title in this state.
  static QImage seenIn(const QString& touch, const Dialog& dialog, const QString& title) {
    const int enabled = touch != "Disabled";
    change(*dialog,
           QString("buttonsEnabled=%1 cancelButtonEnabled=%1 destructiveButtonEnabled=%1").arg(enabled));
    letGo();
    const auto [widget, place] = placeOf(dialog, title);
    if (touch == "Highlighted") QTest::mousePress(widget, Qt::LeftButton, {}, place.center());
    const QImage picture = seen(widget, place);
    // Far from every button, so that nothing is tapped.
    if (touch == "Highlighted") QTest::mouseRelease(widget, Qt::LeftButton, {}, {-500, -500});
    return picture;
  }
  static bool has(const QImage& picture, const QColor& color) {
    return !extentWhere(picture, [&color](const QColor& pixel) { return pixel == color; }).isNull();
  }
};

TEST_F(LooksOfButtons, AreThoseOfTheirKindAndState) {
  const std::pair<QString, QString> kinds[] = {
      {"buttons", "Act"}, {"cancelButton", "No"}, {"destructiveButton", "Del"}};
  // One for each property of each kind.
  const auto colorOf = [](const QString& kind, const QString& property) {
    return QColor(60 + static_cast<int>(kind.size()) * 10, 40 + static_cast<int>(property.size()) * 5, 200);
  };
  for (const char* list : {"0", "1"}) {
    const Dialog dialog =
        dialogFrom(QString("alert buttons=Act cancel=No destructive=Del oneRowOneButton=") + list);
    for (const auto& [kind, title] : kinds) {
      // Thick enough for pixels of the colour itself.
      change(*dialog, kind + "Font=bold30");
      for (const QString& touch : touches) {
        for (const QString& property : {"TitleColor" + touch, "BackgroundColor" + touch})
          change(*dialog, kind + property + "=" + colorOf(kind, property).name());
      }
    }
    dialog->show();
    for (const auto& [kind, title] : kinds) {
      for (const QString& touch : touches) {
        SCOPED_TRACE((kind + touch + list).toStdString());
        const QImage picture = seenIn(touch, dialog, title);
        EXPECT_TRUE(has(picture, colorOf(kind, "TitleColor" + touch)));
        EXPECT_EQ(picture.pixelColor(14, 14), colorOf(kind, "BackgroundColor" + touch));
      }
      change(*dialog, kind + "BackgroundColorDisabled=none");
      EXPECT_EQ(seenIn("Disabled", dialog, title).pixelColor(14, 14), colorOf(kind, "BackgroundColor"))
          << "without a colour of its own";
    }
    close(dialog);
  }
}

TEST_F(LooksOfButtons, MayHaveAnIconForEachState) {
  const QString plain =
      "alert buttons=Act cancel=No destructive=Del button0.icon=magenta*10 "
      "buttonsBackgroundColorHighlighted=white oneRowOneButton=";
  for (const char* list : {"0", "1"}) {
    for (const QString& own :
         {QString(), QString(" button0.iconHighlighted=lime*10 button0.iconDisabled=yellow*10")}) {
      const Dialog dialog = showing(plain + list + own);
      for (const auto& [touch, color] : {std::pair<const char*, QColor>("", telling),
                                         {"Highlighted", QColor(Qt::green)},
                                         {"Disabled", QColor(Qt::yellow)}}) {
        const QImage picture = seenIn(touch, dialog, "Act");
        for (const QColor& each : {telling, QColor(Qt::green), QColor(Qt::yellow)})
          EXPECT_EQ(has(picture, each), each == (own.isEmpty() ? telling : color)) << touch;
      }
      close(dialog);
    }
  }
}

}  // namespace
