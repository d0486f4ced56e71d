// Every kind, style and state of a dialog that pictures.txt names, in two languages and five sizes: nothing
// is cut off, and the buttons are in sight. Those of which a picture is kept in pictures/ look as there. With
// TWEAKBENCH_GALLERY=FOLDER each is written there.
#include "alert/Dialogs.h"
#include "support/Clock.h"
#include "support/KeptPictures.h"
#include "support/Sections.h"

#include <map>

#include <QDir>
#include <QRegularExpression>
#include <QScrollArea>

namespace {

struct Picture {
  QString name, state, description;
};

std::vector<Picture> picturesToTake() {
  std::vector<std::pair<QString, QString>> named;
  std::vector<Picture> all;
  for (const std::string& text : linesOf(TWEAKBENCH_DIALOG_PICTURES)) {
    const QString line = QString::fromStdString(text);
    if (line.startsWith("let ")) {
      named.emplace_back(line.section(' ', 1, 1), line.section(' ', 2));
      continue;
    }
    const QString head = line.section(" = ", 0, 0);
    QString description = line.section(" = ", 1);
    // What is named may hold what was named before it.
    for (auto each = named.rbegin(); each != named.rend(); ++each)
      description.replace(QRegularExpression("\\b" + each->first + "\\b"), each->second);
    all.push_back({head.section(' ', 0, 0), head.section('[', 1).section(']', 0, 0), description});
  }
  return all;
}

class Gallery : public Dialogs {
 protected:
  Gallery() {
    for (const std::string& line : linesOf(TWEAKBENCH_TEXT_PAIRS)) {
      const auto pair = cellsOf(line);
      if (pair.size() == 2) arabic_[QString::fromStdString(pair[1])] = QString::fromStdString(pair[0]);
    }
    for (int index = 0; index < 10000; ++index) files_ += QString(",Source%1.x").arg(index);
  }

  // With each <TEXT> in the language; a blank in it as "_".
  QString translated(QString description, bool inArabic) const {
    static const QRegularExpression mark("<([^>]*)>");
    description.replace("@lines", QString("<No data>\\n").repeated(40));
    for (auto match = mark.match(description); match.hasMatch(); match = mark.match(description)) {
      const QString text = match.captured(1);
      const bool isPair = inArabic && arabic_.contains(text);
      description.replace(match.capturedStart(), match.capturedLength(),
                          QString(isPair ? arabic_.at(text) : text).replace(' ', '_'));
    }
    return description.replace("@files", files_);
  }

  static void bring(const Dialog& dialog, const QString& state) {
    const auto reach = [](QWidget* part) {
      UIScreen::mainScreen()->setAttribute(Qt::WA_KeyboardFocusChange);
      part->setFocus(Qt::TabFocusReason);
    };
    if (state == "focused") reach(frameOf(dialog)->initialFocus());
    if (state == "focused list") reach(listOf(dialog));
    if (state == "focused message") reach(partOf<QScrollArea>(dialog));
    if (!state.startsWith("pressed ")) return;
    const auto [widget, place] = placeOf(dialog, state.section(' ', 1).replace('_', ' '));
    QTest::mousePress(widget, Qt::LeftButton, {}, place.center());
  }

  std::map<QString, QString> arabic_;
  QString files_ =
      "Makefile,a_&_b_<b>not_bold</b>,A_very_long_file_name_that_cannot_be_shown_on_one_line.plist";
};

TEST_F(Gallery, ShowsEveryDialogInsideTheScreen) {
  const QString folder = qEnvironmentVariable("TWEAKBENCH_GALLERY");
  ASSERT_TRUE(folder.isEmpty() || QDir().mkpath(folder));
  const std::vector<Picture> all = picturesToTake();
  ASSERT_GT(all.size(), 30U);
  for (const QSize size :
       {QSize(320, 480), QSize(390, 844), QSize(844, 390), QSize(820, 1180), QSize(1600, 1200)}) {
    resize(size.width(), size.height());
    for (const bool arabic : {false, true}) {
      UIApplication::setLayoutDirection(arabic ? Qt::RightToLeft : Qt::LeftToRight);
      for (const auto& [name, state, description] : all) {
        // One of a property needs no other size.
        if (name.startsWith("look-") && (arabic || size != QSize(390, 844))) continue;
        SCOPED_TRACE(name.toStdString() + " at " + std::to_string(size.width()));
        UIScreen::mainScreen()->setAttribute(Qt::WA_KeyboardFocusChange, false);
        const HeldClock clock;
        setMotionEnabled(state == "coming");
        const Dialog dialog = dialogFrom(translated(description, arabic));
        const Dialog next =
            state == "changing" ? dialogFrom(translated(all.front().description, arabic)) : dialog;
        dialog->showAnimated();
        bring(dialog, translated(state, arabic));
        setMotionEnabled(true);
        if (state == "going") dialog->dismissAnimated();
        if (next != dialog) dialog->transitionToAlertView(next);
        letGo();
        HeldClock::turn(80);
        letGo();
        const QImage picture = UIScreen::mainScreen()->grab().toImage();
        expectWhole(next);
        EXPECT_NE(picture.pixelColor(frameOf(next)->geometry().center()), picture.pixelColor(2, 2));
        const QString file =
            QString("/%1-%2-%3x%4.png").arg(name, arabic ? "ar" : "en").arg(size.width()).arg(size.height());
        EXPECT_TRUE(folder.isEmpty() || picture.save(folder + file));
        pictures::expectAsKept(picture, TWEAKBENCH_KEPT_PICTURES + file);
        HeldClock::turn(1000);
        letGo();
        setMotionEnabled(false);
        close(next);
      }
    }
  }
}

}  // namespace
