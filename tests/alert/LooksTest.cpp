// Every property of a dialog's look is seen on the screen: looks.txt, line by line. The grammar stands at the
// head of that file.
#include "RQAlertView/RQAlertViewHeader.h"
#include "alert/Pictures.h"
#include "platform/UIActivityIndicatorView.h"
#include "platform/UIKeyboard.h"
#include "support/Clock.h"
#include "support/Sections.h"

#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>

#include <QEasingCurve>
#include <QProgressBar>
#include <QRegularExpression>

namespace {

class Looks : public Pictures {
 protected:
  static constexpr const char* states[] = {"allocated", "made",       "showing",
                                           "shown",     "dismissing", "dismissed"};

  static std::pair<QWidget*, QRect> partNamed(const Dialog& dialog, const QString& name) {
    if (name.startsWith('@')) return placeOf(dialog, name.mid(1));
    if (name == "display") return {UIScreen::mainScreen(), UIScreen::mainScreen()->rect()};
    if (name == "caret" || name.startsWith("clear")) {
      RQAlertViewTextField* field = dialog->textFieldsArray().at(name.mid(5).toUInt());
      if (name == "caret") return {field, field->inputMethodQuery(Qt::ImCursorRectangle).toRect()};
      return {field, field->actions().front()->isVisible() ? field->rect() : QRect()};
    }
    const std::map<QString, QWidget*> parts{{"box", frameOf(dialog)},
                                            {"screen", dialog->view()},
                                            {"list", listOf(dialog)},
                                            {"header", partOf<RQAlertViewHeader>(dialog)},
                                            {"bar", partOf<QProgressBar>(dialog)},
                                            {"view", dialog->innerView()},
                                            {"indicator", partOf<UIActivityIndicatorView>(dialog)},
                                            {"field", partOf<RQAlertViewTextField>(dialog)}};
    QWidget* part = parts.at(name);
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
    if (words.back() == "strength") return 100 - std::lround(seenAt(part, area.center()).greenF() * 100);
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

  static void turn(int milliseconds) {
    letGo();
    HeldClock::turn(milliseconds);
    letGo();
  }

  // CHANGES: CHECK; CHECK ...
  static void follow(Dialog& dialog, const QString& line, std::map<QString, int>& before) {
    QStringList changes;
    QString text = "Hm";
    std::function<void()> letOff = [] {};
    for (const QString& word : line.section(": ", 0, 0).split(' ')) {
      const QString value = word.section('=', 1);
      if (word.startsWith("into=")) {
        const Dialog next = dialogFrom(word.mid(5).replace('+', ' '));
        dialog->transitionToAlertView(next);
        dialog = next;
      } else if (word.startsWith("keyboard=")) {
        NSNotificationCenter::defaultCenter().postNotificationName(
            UIKeyboardWillChangeFrameNotification, nullptr,
            {{UIKeyboardFrameEndUserInfoKey, QRectF(0, value.toInt(), 390, 400)},
             {UIKeyboardAnimationDurationUserInfoKey, 7.5},
             {UIKeyboardAnimationCurveUserInfoKey, static_cast<int>(QEasingCurve::InQuad)}});
      } else if (word.startsWith("from=")) {
        UIApplication::setLayoutDirection(value == "right" ? Qt::RightToLeft : Qt::LeftToRight);
      } else if (word.startsWith("text=")) {
        text = value;
      } else if (word.startsWith("placeholder=")) {
        dialog->textFieldsArray()[0]->setPlaceholder(value);
      } else if (word.startsWith("turn=")) {
        turn(value.toInt());
      } else if (word.startsWith("progress=")) {
        dialog->setProgress(value.toDouble(), true);
      } else if (word == "dismiss") {
        dialog->dismissAnimated();
      } else if (word.startsWith("press=")) {
        const auto [widget, place] = placeOf(dialog, value);
        QTest::mousePress(widget, Qt::LeftButton, {}, place.center());
        // Far from every button, so that nothing is tapped.
        letOff = [widget] { QTest::mouseRelease(widget, Qt::LeftButton, {}, {-500, -500}); };
      } else if (word != "-") {
        changes << word;
      }
    }
    for (auto* field : dialog->textFieldsArray()) field->setText(text);
    change(*dialog, changes.join(' '));
    letGo();
    std::map<QString, int> now = before;
    for (const QString& check : line.section(": ", 1).split("; ")) {
      QStringList words = check.split(' ');
      const QString number = words.takeLast();
      const QString relation = words.takeLast();
      const QString what = words.join(' ');
      if (what == "state") {
        EXPECT_EQ(number, states[static_cast<int>(dialog->state())]) << line.toStdString();
        continue;
      }
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
    letOff();
  }
};

TEST_F(Looks, AreAsWritten) {
  const QRegularExpression repeated("\\{(\\d+)\\*([^}]*)\\}");
  // Black and white from pixel to pixel.
  QImage stripes(2, 1, QImage::Format_RGB32);
  stripes.fill(Qt::white);
  stripes.setPixelColor(0, 0, Qt::black);
  std::vector<QString> dialogs;
  std::vector<QString> lines;
  const auto go = [&] {
    ASSERT_FALSE(dialogs.empty() || lines.empty());
    for (const QString& each : dialogs) {
      SCOPED_TRACE(each.left(80).toStdString());
      const HeldClock clock;
      setMotionEnabled(each.startsWith("moving "));
      setBehind(each.startsWith("striped ") ? QBrush(stripes) : Qt::white);
      Dialog dialog = dialogFrom(each.section(" | ", 0, 0).remove("moving ").remove("striped "));
      dialog->showAnimated();
      const QString words = each.section(" | ", 1);
      std::map<QString, int> before;
      for (QString line : lines) {
        line.replace("$2", words.section(' ', 1)).replace('$', words.section(' ', 0, 0));
        follow(dialog, line, before);
      }
      UIApplication::setLayoutDirection(Qt::LeftToRight);
      close(dialog);
      turn(10'000);
      setMotionEnabled(false);
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

TEST_F(Looks, DimTheScreenWithoutAJumpWhenOneFollowsAnother) {
  const HeldClock clock;
  setMotionEnabled(true);
  const auto corner = [] { return seenAt(UIScreen::mainScreen(), {3, 3}).lightness(); };
  RQAlertView::appearance()->setCoverColor(QColor(0, 0, 0, 90));
  const int bright = corner();
  const Dialog first = dialogFrom("alert");
  first->showAnimated();
  turn(500);
  const int dim = corner();
  ASSERT_LT(dim, bright - 20);
  first->dismissAnimated();
  turn(150);
  const int going = corner();
  EXPECT_GT(going, dim + 5);
  const Dialog second = dialogFrom("sheet");
  second->showAnimated();
  EXPECT_NEAR(corner(), going, 1);
  for (int before = going; second->state() == RQAlertViewState::Showing; before = corner()) {
    turn(100);
    EXPECT_LE(corner(), before);
  }
  EXPECT_NEAR(corner(), dim, 1);
  // One that comes above another and goes again leaves it as dark as it was, at no moment brighter.
  const Dialog above = dialogFrom("alert");
  bool paintsWithoutADialog = false;
  above->setDidDismissHandler(
      [&](RQAlertView&) { paintsWithoutADialog = UIScreen::mainScreen()->updatesEnabled(); });
  for (const bool coming : {true, false}) {
    coming ? above->showAnimated() : above->dismissAnimated();
    for (const int part : {0, 200, 299, 16}) {
      turn(part);
      EXPECT_NEAR(corner(), dim, 1);
    }
  }
  EXPECT_EQ(above->state(), RQAlertViewState::Dismissed);
  EXPECT_FALSE(paintsWithoutADialog);
  EXPECT_TRUE(UIScreen::mainScreen()->updatesEnabled());
}

}  // namespace
