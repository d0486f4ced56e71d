// Reading long texts: finding, zooming, selecting with keys, and what assistive technology is told.
#include "tests/ui/Screens.h"

#include <QAccessible>
#include <QClipboard>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QScroller>
#include <QWheelEvent>

namespace {

using finger::sees;
using finger::tap;
using finger::waitUntil;

class Reading : public Screens {
 protected:
  // The build screen after a build that prints this.
  TextView& openLog(const std::string& printed) {
    makeProject({{"Makefile", "package:\n\t@cat log\n"}, {"log", printed}});
    putFile(updateMarker, "");
    start();
    openBuildScreen();
    build("Make Package");
    return log();
  }

  static QLineEdit& openFindBar(QWidget& text) {
    QTest::keyClick(&text, Qt::Key_F, Qt::ControlModifier);
    return *qobject_cast<QLineEdit*>(finger::find("Find text"));
  }
};

TEST_F(Reading, WordsAreFoundInTheLog) {
  std::string text;
  for (int line = 0; line < 2000; ++line) text += line % 500 == 499 ? "an Error here\n" : "fine\n";
  TextView& view = openLog(text);
  const auto place = [&text](int number) {
    std::size_t at = text.find("Error");
    while (number-- > 0) at = text.find("Error", at + 1);
    return at;
  };
  QLineEdit& word = openFindBar(view);
  QTest::keyClicks(&word, "error");
  EXPECT_EQ(view.selectionBegin(), place(0));
  EXPECT_EQ(view.selectionEnd(), place(0) + 5);
  EXPECT_GT(view.firstVisibleLine(), 400) << "scrolled into view";
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
  TextView& editor = openEditor("f");
  QLineEdit& word = openFindBar(editor);
  QTest::keyClicks(&word, "two");
  EXPECT_EQ(editor.selectionBegin(), 4U);
  QTest::keyClick(&word, Qt::Key_Return);
  EXPECT_EQ(editor.selectionBegin(), 8U);
  QTest::keyClick(&word, Qt::Key_Return);
  EXPECT_EQ(editor.selectionBegin(), 4U);
  QTest::keyClick(&word, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(editor.selectionBegin(), 8U);
  tap("Close find");
  EXPECT_TRUE(editor.hasFocus());
  leaveEditor("Cancel");
  EXPECT_EQ(fileAt(folder + "f"), "one two\nTwo one\n");
}

TEST_F(Reading, TextIsZoomedAndKeepsItsSizeOnTheNextScreen) {
  TextView& view = openLog(std::string(500, 'x') + '\n');
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
  TextView& editor = openEditor("log");
  EXPECT_EQ(editor.font().pointSizeF(), larger);
  QTest::keyClick(&editor, Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(editor.font().pointSizeF(), size);
  QTest::keyClick(&editor, Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_LT(editor.font().pointSizeF(), size);
  QTest::keyClick(&editor, Qt::Key_0, Qt::ControlModifier);
}

TEST_F(Reading, TheLogIsSelectedAndCopiedAsItIs) {
  TextView& view = openLog("first \x1B[0;36mline\nمشروع\nthird\n");
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
  EXPECT_EQ(copied(), QString::fromStdString(view.bytes()));
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(15, 5));
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, QPoint(15, 5));
  EXPECT_EQ(copied(), "first");
  QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(copied(), QString::fromStdString(view.bytes()));
}

TEST_F(Reading, AssistiveTechnologyReadsTheLogWithinItsBounds) {
  TextView& view = openLog("one مشروع\ntwo\n");
  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&view);
  QAccessibleTextInterface* const text = interface->textInterface();
  EXPECT_EQ(text->text(4, 9), QString("مشروع"));
  EXPECT_TRUE(interface->state().readOnly);
  EXPECT_GT(text->characterRect(1).x(), text->characterRect(0).x());
  EXPECT_EQ(text->offsetAtPoint(text->characterRect(2).center()), 2);
  text->setSelection(0, 4, 9);
  EXPECT_EQ(view.selectionEnd(), std::string("one مشروع").size());
  EXPECT_EQ(text->cursorPosition(), 9);
}

TEST_F(Reading, ControlCharactersTakeNoRoomInTheLog) {
  TextView& view = openLog(
      "\x1B[0mab\x1B\x1B\x1B"
      "c\a\nabc\n");
  const auto widthOf = [&view](std::size_t begin, std::size_t end) {
    const auto at = [&view](std::size_t place) {
      return view.SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, static_cast<long>(place));
    };
    return at(end) - at(begin);
  };
  ASSERT_EQ(view.bytes().find("abc\n"), 9U);
  EXPECT_EQ(widthOf(0, 8), widthOf(9, 12));
}

TEST_F(Reading, OnlyALongTextIsNotWrappedAndItSaysSo) {
  inBothLanguages([this] {
    TextView& view = openLog(std::string(2000, 'x') + '\n');
    const QString note = localized(text::longLinesNotWrapped);
    EXPECT_FALSE(sees(note));
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
    std::string longer;
    while (longer.size() < 2'000'000) longer += std::string(2000, 'x') + '\n';
    view.setBytes(longer);
    EXPECT_TRUE(sees(note));
    waitUntil([&view] { return view.horizontalScrollBar()->maximum() > 0; }, "it cannot be scrolled aside");
    tap("Clear Log");
    EXPECT_FALSE(sees(note));
  });
}

TEST_F(Reading, AFingerScrollsAndPlacesTheCaretWithATap) {
  std::string text;
  for (int line = 0; line < 500; ++line) text += "line " + std::to_string(line) + '\n';
  makeProject({{"f", text}});
  start();
  TextView& editor = openEditor("f");
  const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
  const auto at = [](int y) { return QPoint(60, y); };
  const auto touch = [&] { return QTest::touchEvent(editor.viewport(), screen.get()); };
  touch().press(0, at(500), editor.viewport());
  for (int y = 490; y >= 100; y -= 10) touch().move(0, at(y), editor.viewport());
  touch().release(0, at(100), editor.viewport());
  EXPECT_GT(editor.firstVisibleLine(), 10);
  EXPECT_FALSE(editor.hasSelectedText());
  EXPECT_EQ(editor.selectionBegin(), 0U);
  QScroller::scroller(editor.viewport())->stop();
  touch().press(0, at(100), editor.viewport());
  touch().release(0, at(100), editor.viewport());
  EXPECT_GT(editor.selectionBegin(), 100U);
}

TEST_F(Reading, WhatAnInputMethodHasNotFinishedIsNotSaved) {
  const std::string folder = makeProject({{"f", "old"}});
  start();
  TextView& editor = openEditor("f");
  QInputMethodEvent composing("new", {});
  QCoreApplication::sendEvent(&editor, &composing);
  leaveEditor("Save");
  EXPECT_EQ(fileAt(folder + "f"), "old");
  TextView& again = openEditor("f");
  QInputMethodEvent finished;
  finished.setCommitString("مشروع ");
  QCoreApplication::sendEvent(&again, &composing);
  QCoreApplication::sendEvent(&again, &finished);
  leaveEditor("Save");
  EXPECT_EQ(fileAt(folder + "f"), "مشروع old");
}

TEST_F(Reading, TheTextsMenuSpeaksBothLanguages) {
  inBothLanguages([this] {
    makeProject({{"f", "old"}});
    start();
    TextView& editor = openEditor("f");
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, editor.mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(editor.viewport(), &asked);
    auto* const menu = editor.findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    const QList<QAction*> actions = menu->actions();
    EXPECT_EQ(actions.front()->text(), localized(text::undo));
    EXPECT_FALSE(actions.front()->isEnabled());
    actions.back()->trigger();
    EXPECT_EQ(editor.selectedText(), "old");
    menu->close();
    // Keys reach their shortcuts only in a window that is active.
    UIScreen::mainScreen()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
  });
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
  TextView& view = openLog("built\n");
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

class Problems : public Reading {
 protected:
  // Compilers of two kinds, the second of which the clean-up leaves a sequence of.
  TextView& openProblems() {
    TextView& view = openLog("deep/Part.m:2:48: error: a long line\n" + std::string(60, 'x') + "\n" +
                             std::string(47, ' ') +
                             "^\nTweak.x:1:3: \033[0;1;35mwarning: "
                             "\033[0m\033[1munused\033[0m\nab\n\033[0;1;32m  ^\n\033[0mgone.m:1: "
                             "error: a\ngone.m:1: error: a\nTweak.x:1:1: note: here\n");
    putFile(device::projects + "P/deep/Part.m", "\n" + std::string(60, 'x') + "\n");
    putFile(device::projects + "P/Tweak.x", "ab\n");
    // Now that these files are there.
    build("Make Package");
    UIScreen::mainScreen()->activateWindow();
    return view;
  }
  static QListView& list() { return *qobject_cast<QListView*>(finger::find("Problems")); }
  static std::size_t lineBegin(TextView& view, int line) {
    return static_cast<std::size_t>(view.SendScintilla(view.SCI_POSITIONFROMLINE, line));
  }
  static void expectEditorAt(const char* file, int line, int column) {
    waitToSee(file);
    auto& editor = *qobject_cast<TextView*>(finger::find("File text"));
    int foundLine = 0;
    int foundColumn = 0;
    editor.getCursorPosition(&foundLine, &foundColumn);
    EXPECT_EQ(foundLine, line);
    EXPECT_EQ(foundColumn, column);
    leaveEditor("Cancel", "Make Package");
  }
};

TEST_F(Problems, AreCountedListedMarkedAndOpened) {
  TextView& view = openProblems();
  EXPECT_TRUE(sees("2 errors, 1 warning"));
  QStringList rows;
  for (int row = 0; row < list().model()->rowCount(); ++row)
    rows.append(list().model()->index(row, 0).data().toString());
  EXPECT_EQ(rows, (QStringList{"deep/Part.m:2:48: error: a long line", "Tweak.x:1:3: warning: unused",
                               "gone.m:1: error: a", "Tweak.x:1:1: note: here"}));
  const unsigned marks[] = {2, 0, 0, 4, 0, 0, 2, 2, 8, 0};
  for (int line = 0; line < 10; ++line) EXPECT_EQ(view.markersAtLine(line), marks[line]) << line;
  for (const int line : {0, 3, 6, 0}) {
    tap("Next problem");
    EXPECT_EQ(view.selectionBegin(), lineBegin(view, line));
    EXPECT_TRUE(view.hasFocus());
  }
  QTest::keyClick(&view, Qt::Key_F8, Qt::ShiftModifier);
  EXPECT_EQ(view.selectionBegin(), lineBegin(view, 6));
  EXPECT_EQ(list().currentIndex().row(), 2);
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_TRUE(sees("Make Package")) << "there is no such file";

  QTest::keyClick(&list(), Qt::Key_Up);
  EXPECT_EQ(view.selectionBegin(), lineBegin(view, 3));
  QTest::keyClick(&list(), Qt::Key_Return);
  expectEditorAt("Tweak.x", 0, 2);
  tap("deep/Part.m:2:48: error: a long line");
  expectEditorAt("Part.m", 1, 47);
  QAccessibleInterface* const item = QAccessible::queryAccessibleInterface(&list())->child(1);
  ASSERT_EQ(item->text(QAccessible::Name), "Tweak.x:1:3: warning: unused");
  item->actionInterface()->doAction(item->actionInterface()->actionNames().first());
  expectEditorAt("Tweak.x", 0, 2);
  const auto x = static_cast<int>(view.SendScintilla(view.SCI_POINTXFROMPOSITION, 0, lineBegin(view, 4)));
  const auto y = static_cast<int>(view.SendScintilla(view.SCI_POINTYFROMPOSITION, 0, lineBegin(view, 4)));
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {x + 2, y + 2});
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, {x + 2, y + 2});
  expectEditorAt("Tweak.x", 0, 2);
  tap("Clear Log");
  EXPECT_FALSE(sees("Problems"));
}

TEST_F(Problems, CaretsAreSeenOnlyWhereTheyPointToTheirColumn) {
  TextView& view = openProblems();
  const auto isSeen = [&view](int line) {
    return view.SendScintilla(view.SCI_GETSTYLEAT, lineBegin(view, line) + 1) == 0;
  };
  const int columns = view.viewport()->width() / view.fontMetrics().horizontalAdvance('x');
  ASSERT_LT(columns, 60);
  EXPECT_FALSE(isSeen(2)) << "its source is wrapped";
  EXPECT_TRUE(isSeen(5));
  UIScreen::mainScreen()->resize(1440, 900);
  EXPECT_TRUE(isSeen(2));
  UIScreen::mainScreen()->resize(390, 844);
  EXPECT_FALSE(isSeen(2));
}

TEST_F(Problems, StayWithTheirScreenAndItsProject) {
  openProblems();
  tap("Show success alert");
  tap("Back");
  finger::waitToSee("Reload");
  openBuildScreen();
  EXPECT_TRUE(sees("2 errors, 1 warning"));
  EXPECT_FALSE(qobject_cast<QAbstractButton*>(finger::find("Show success alert"))->isChecked());
  tap("Back");
  finger::waitToSee("Reload");
  putFile(device::projects + "Q/f", "");
  chooseProject("Q");
  openBuildScreen();
  EXPECT_FALSE(sees("Problems"));
  EXPECT_EQ(log().bytes(), "");
  EXPECT_TRUE(qobject_cast<QAbstractButton*>(finger::find("Show success alert"))->isChecked());
}

TEST_F(Reading, ARunningBuildShowsWhatItHasPrinted) {
  makeProject({{"Makefile", "package:\n\t@seq 100; until test -e go; do sleep 0.01; done\n"}});
  putFile(updateMarker, "");
  start();
  openBuildScreen();
  tap("Make Package");
  auto* const running = UIScreen::mainScreen()->findChild<QWidget*>("runningLog");
  waitUntil([running] { return running->isVisible(); }, "nothing is shown");
  const QImage empty = running->grab().toImage();
  waitUntil([&] { return running->grab().toImage().copy(0, 0, 60, 200) != empty.copy(0, 0, 60, 200); },
            "nothing of the log");
  EXPECT_EQ(log().bytes(), "") << "which is set at the end";
  putFile(device::projects + "P/go", "");
  waitUntil([running] { return !running->isVisible(); }, "the build does not end");
  EXPECT_TRUE(log().bytes().starts_with("1\n2\n"));
}

}  // namespace
