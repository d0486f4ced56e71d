// Every kind, style and state of a dialog that pictures.txt names, in two languages and five sizes: nothing
// is cut off, and the buttons are in sight. Those of which a picture is kept in pictures/ look as there. With
// TWEAKBENCH_GALLERY=FOLDER each is written there.
#include "alert/Dialogs.h"
#include "platform/UIKeyboard.h"
#include "support/Clock.h"
#include "support/KeptPictures.h"
#include "support/Sections.h"

#include <map>

#include <QDir>
#include <QEasingCurve>
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

  // After 80 of its milliseconds it has come a quarter of its way.
  static void bringKeyboard() {
    NSNotificationCenter::defaultCenter().postNotificationName(
        UIKeyboardWillChangeFrameNotification, nullptr,
        {{UIKeyboardFrameEndUserInfoKey, QRectF(0, 444, 390, 400)},
         {UIKeyboardAnimationDurationUserInfoKey, 0.16},
         {UIKeyboardAnimationCurveUserInfoKey, static_cast<int>(QEasingCurve::InQuad)}});
  }

  static void turn(int milliseconds) {
    letGo();
    HeldClock::turn(milliseconds);
    letGo();
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
        if (state == "further") dialog->setProgress(1, true);
        if (state == "keyboard") bringKeyboard();
        turn(80);
        const QImage picture = UIScreen::mainScreen()->grab().toImage();
        expectWhole(next);
        EXPECT_NE(picture.pixelColor(frameOf(next)->geometry().center()), picture.pixelColor(2, 2));
        const QString file =
            QString("/%1-%2-%3x%4.png").arg(name, arabic ? "ar" : "en").arg(size.width()).arg(size.height());
        EXPECT_TRUE(folder.isEmpty() || picture.save(folder + file));
        pictures::expectAsKept(picture, TWEAKBENCH_KEPT_PICTURES + file);
        turn(1000);
        setMotionEnabled(false);
        close(next);
      }
    }
  }
}

TEST_F(Gallery, DimsTheScreenWithoutAJumpWhenOneFollowsAnother) {
  const HeldClock clock;
  setMotionEnabled(true);
  appField->hide();
  appController->view()->setAutoFillBackground(true);
  appController->view()->setPalette(Qt::white);
  const auto corner = [] { return UIScreen::mainScreen()->grab().toImage().pixelColor(3, 3).lightness(); };
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
