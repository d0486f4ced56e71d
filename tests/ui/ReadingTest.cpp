// Reading long texts: finding, zooming, selecting with keys, and what assistive technology is told.
#include "tests/ui/Screens.h"
#include "ui/FindBar.h"

#include <QAccessible>
#include <QClipboard>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

using finger::sees;
using finger::tap;

class Reading : public Screens {
 protected:
  // The build screen after a build that printed `log`.
  LogView& openLog(const std::string& log) {
    makeProject({{"Makefile", "package:\n\t@cat log\n"}, {"log", log}});
    putFile(updateMarker, "");
    start();
    openBuildScreen();
    build("Make Package");
    return const_cast<LogView&>(Screens::log());
  }

  static QLineEdit& openFindBar(QWidget& text) {
    QTest::keyClick(&text, Qt::Key_F, Qt::ControlModifier);
    return *qobject_cast<QLineEdit*>(finger::find("Find text"));
  }
};

TEST_F(Reading, WordsAreFoundInTheLog) {
  std::string text;
  for (int line = 0; line < 2000; ++line) text += line % 500 == 499 ? "an Error here\n" : "fine\n";
  LogView& view = openLog(text);
  const auto place = [&text](int number) {
    std::size_t at = text.find("Error");
    while (number-- > 0) at = text.find("Error", at + 1);
    return at;
  };
  QLineEdit& word = openFindBar(view);
  QTest::keyClicks(&word, "error");
  EXPECT_EQ(view.selectionBegin(), place(0));
  EXPECT_EQ(view.selectionEnd(), place(0) + 5);
  EXPECT_FALSE(view.characterRect(place(0)).isNull()) << "scrolled into view";
  QTest::keyClick(&word, Qt::Key_Return);
  EXPECT_EQ(view.selectionBegin(), place(1));
  QTest::keyClick(&word, Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClick(&word, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(view.selectionBegin(), place(3)) << "round the beginning";
  EXPECT_FALSE(sees("No match"));
  QTest::keyClicks(&word, "?");
  EXPECT_TRUE(sees("No match"));
  EXPECT_EQ(view.selectionBegin(), place(3));
  QTest::keyClick(&word, Qt::Key_Escape);
  EXPECT_FALSE(sees("Find text"));
  EXPECT_TRUE(view.hasFocus());
  EXPECT_TRUE(sees("Make Package")) << "Esc closes the bar, not the screen";
  word.setText("here");
  QTest::keyClick(&view, Qt::Key_F3);
  EXPECT_EQ(view.selectionEnd(), text.find("here") + 4) << "round the end";
}

TEST_F(Reading, WordsAreFoundInTheEditor) {
  const std::string folder = makeProject({{"f", "one two\nTwo one\n"}});
  start();
  QPlainTextEdit& editor = openEditor("f");
  QLineEdit& word = openFindBar(editor);
  QTest::keyClicks(&word, "two");
  EXPECT_EQ(editor.textCursor().selectionStart(), 4);
  QTest::keyClick(&word, Qt::Key_Return);
  EXPECT_EQ(editor.textCursor().selectionStart(), 8);
  QTest::keyClick(&word, Qt::Key_Return);
  EXPECT_EQ(editor.textCursor().selectionStart(), 4);
  QTest::keyClick(&word, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(editor.textCursor().selectionStart(), 8);
  tap("Close find");
  EXPECT_TRUE(editor.hasFocus());
  leaveEditor("Cancel");
  EXPECT_EQ(fileAt(folder + "f"), "one two\nTwo one\n");
}

TEST_F(Reading, TextIsZoomedAndKeepsItsSizeOnTheNextScreen) {
  LogView& view = openLog(std::string(500, 'x') + '\n');
  const qreal size = view.font().pointSizeF();
  QTest::keyClick(&view, Qt::Key_Plus, Qt::ControlModifier);
  QTest::keyClick(&view, Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_GT(view.font().pointSizeF(), size * 1.15);
  const QPoint middle = view.viewport()->rect().center();
  QWheelEvent wheel(middle, view.viewport()->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton,
                    Qt::ControlModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(view.viewport(), &wheel);
  const qreal larger = view.font().pointSizeF();
  EXPECT_NEAR(larger, size * 1.1, 0.2);
  tap("Back");
  QPlainTextEdit& editor = openEditor("log");
  EXPECT_EQ(editor.font().pointSizeF(), larger);
  QTest::keyClick(&editor, Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(editor.font().pointSizeF(), size);
  QTest::keyClick(&editor, Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_LT(editor.font().pointSizeF(), size);
  QTest::keyClick(&editor, Qt::Key_0, Qt::ControlModifier);
}

TEST_F(Reading, TheLogIsSelectedAndCopiedAsItIs) {
  LogView& view = openLog("first \x1B[0;36mline\nمشروع\nthird\n");
  const auto copied = [&view] {
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    return QGuiApplication::clipboard()->text();
  };
  view.setFocus();
  QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
  QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
  QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
  QTest::keyClick(&view, Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(copied(), QString("first \x1B[0;36mline\nم"));
  QTest::keyClick(&view, Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(copied(), QString::fromStdString(view.text()));
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, QPoint(15, 15));
  EXPECT_EQ(copied(), "first");
  QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(copied(), QString::fromStdString(view.text()));
}

TEST_F(Reading, AssistiveTechnologyReadsTheLogWithinItsBounds) {
  LogView& view = openLog("one مشروع\ntwo\n");
  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&view);
  QAccessibleTextInterface* const text = interface->textInterface();
  EXPECT_EQ(text->text(4, 9), QString("مشروع"));
  EXPECT_TRUE(interface->state().readOnly);
  EXPECT_GT(text->characterRect(1).x(), text->characterRect(0).x());
  EXPECT_EQ(text->offsetAtPoint(text->characterRect(2).center()), 2);
  // Longer than what is handed over, and cut in the middle of a character.
  std::string huge(5U << 20, 'x');
  huge.replace((4U << 20) - 1, 2, "م");
  view.setText(huge);
  view.selectAll();
  int from = -1;
  int to = -1;
  text->selection(0, &from, &to);
  EXPECT_EQ(from, 0);
  EXPECT_EQ(to, text->characterCount());
  EXPECT_EQ(text->cursorPosition(), text->characterCount());
  EXPECT_EQ(text->text(0, text->characterCount()), QString((4 << 20) - 1, 'x'));
}

TEST_F(Reading, TheAboutScreenFitsTheSmallestScreen) {
  start();
  UIScreen::mainScreen()->resize(320, 480);
  finger::tap("About");
  finger::waitToSee(localized(text::developedBy));
  QCoreApplication::processEvents();
  const QWidget& bar = *finger::find("Back")->parentWidget();
  int below = bar.mapTo(UIScreen::mainScreen(), QPoint(0, bar.height())).y();
  const QWidget& panel = *finger::find("Profile")->parentWidget();
  EXPECT_LE(panel.mapTo(UIScreen::mainScreen(), QPoint(0, panel.height())).y(), 480);
  for (int place = 0; place < panel.layout()->count(); ++place) {
    const QWidget& part = *panel.layout()->itemAt(place)->widget();
    const int top = part.mapTo(UIScreen::mainScreen(), QPoint()).y();
    EXPECT_GE(top, below) << part.objectName().toStdString();
    EXPECT_GE(part.height(),
              part.hasHeightForWidth() ? part.heightForWidth(part.width()) : part.minimumSizeHint().height())
        << part.objectName().toStdString();
    below = top + part.height();
  }
}

TEST_F(Reading, TheBuildScreenFitsEveryWidth) {
  LogView& view = openLog("built\n");
  const auto placeOf = [](const char* name) {
    QWidget* const widget = finger::find(name);
    return QRect(widget->mapTo(UIScreen::mainScreen(), QPoint()), widget->size());
  };
  // From wide to narrow, as nothing may keep the width that it once had.
  for (const QSize size : {QSize(1440, 900), QSize(820, 1180), QSize(390, 844), QSize(320, 480)}) {
    UIScreen::mainScreen()->resize(size);
    QCoreApplication::processEvents();
    const QRect log(view.mapTo(UIScreen::mainScreen(), QPoint()), view.size());
    const bool sideBySide = log.right() < placeOf("Make Package").left();
    EXPECT_EQ(sideBySide, size.width() >= 900) << size.width();
    for (const char* name :
         {"Make Package", "Make Package Install", "Clear Log", "Respring", "Show success alert"}) {
      const QRect place = placeOf(name);
      EXPECT_TRUE(UIScreen::mainScreen()->rect().contains(place)) << name << " at " << size.width();
      EXPECT_FALSE(place.intersects(log)) << name << " at " << size.width();
    }
    if (!sideBySide) {
      EXPECT_NEAR(placeOf("Make Package").center().x(), size.width() / 2, 1);
    }
  }
}

}  // namespace
