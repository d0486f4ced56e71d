// Writing code: what the editor does while one types, and the ways to other files and places.
#include "support/Clock.h"
#include "tests/ui/Screens.h"
#include "ui/controls/CodeView.h"
#include "ui/screens/PopOverNewController.h"

#include <QAccessible>
#include <QLineEdit>
#include <QListView>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;
using finger::waitUntil;

class Editor : public Screens {
 protected:
  static CodeView& editor() { return *qobject_cast<CodeView*>(finger::find("File text")); }
  static std::size_t caret() { return editor().selectionBegin(); }
  static QListView& list(const TextPair& name) {
    return *qobject_cast<QListView*>(finger::find(localized(name)));
  }
  static QStringList rows(const TextPair& name) {
    QStringList texts;
    const QAbstractItemModel& model = *list(name).model();
    for (int row = 0; row < model.rowCount(); ++row) texts << model.index(row, 0).data().toString();
    return texts;
  }
  // Opens a file by what is typed of its name.
  static void goToFile(const QString& typed, const QString& shown) {
    press(Qt::Key_E, Qt::ControlModifier);
    waitToSee(localized(text::projectFiles));
    typeText(typed);
    press(Qt::Key_Return);
    waitToSee(shown);
  }
};

TEST_F(Editor, TheFileListIsFilteredAmongTenThousandWithoutAWait) {
  const std::string folder = makeProject({{"Tweak.x", ""}});
  for (int number = 0; number < 10'000; ++number)
    putFile(folder + "d" + std::to_string(number % 10) + "/Source" + std::to_string(number) + ".m", "");
  startActive();
  press(Qt::Key_E, Qt::ControlModifier);
  waitToSee(localized(text::projectFiles));
  EXPECT_EQ(rows(text::projectFiles).size(), 10'001);
  typeText("src77.m");
  EXPECT_EQ(rows(text::projectFiles).front(), "d7/Source77.m");
  QAccessibleInterface* const items = QAccessible::queryAccessibleInterface(&list(text::projectFiles));
  ASSERT_GT(items->childCount(), 0);
  EXPECT_EQ(items->child(0)->text(QAccessible::Name), "d7/Source77.m");
  EXPECT_EQ(items->child(0)->role(), QAccessible::ListItem);
}

TEST_F(Editor, ASearchIsBoundedAndEndsWithItsDialog) {
  std::string lines;
  for (int line = 0; line < 5000; ++line) lines += "same\n";
  makeProject({{"f", lines}});
  mkfifo((device::projects + "P/waits").c_str(), 0600);
  startActive();
  press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  waitToSee(localized(text::searchResults));
  {
    const HeldClock clock;
    typeText("same");
    const auto isSearchedAfter = [](long milliseconds) {
      HeldClock::turn(milliseconds);
      QCoreApplication::processEvents();
      return sees(localized(text::searching));
    };
    EXPECT_FALSE(isSearchedAfter(140)) << "while somebody still types";
    EXPECT_TRUE(isSearchedAfter(20));
  }
  waitToSee(localized(text::onlyFirstLines, {std::string("2000")}));
  EXPECT_EQ(rows(text::searchResults).size(), 2000);
  press(Qt::Key_Escape);
  waitToSee("Files");
}

TEST_F(Editor, IndentationReplacingAndGoingToALineChangeWhatTheyShouldAndNoMore) {
  const std::string before =
      "\xEF\xBB\xBF"
      "a {\r\n  two\r\nthree\r\n\n\xE2\x80\xA8 one One\rone";
  const std::string folder = makeProject({{"f.m", before}});
  startActive();
  openEditor("f.m");
  CodeView& text = editor();
  press(Qt::Key_G, Qt::ControlModifier);
  waitToSee(localized(text::goToLine));
  typeText("2:3");
  press(Qt::Key_Return);
  waitToSee("File text");
  EXPECT_EQ(caret(), 7U);
  press(Qt::Key_Down, Qt::ShiftModifier);
  press(Qt::Key_Tab);
  EXPECT_EQ(text.bytes(),
            "\xEF\xBB\xBF"
            "a {\r\n    two\r\n  three\r\n\n\xE2\x80\xA8 one One\rone");
  press(Qt::Key_Backtab);
  EXPECT_EQ(text.bytes(), before);
  press(Qt::Key_H, Qt::ControlModifier);
  finger::type("one");
  QTest::keyClicks(finger::find(localized(text::replaceBy)), "number");
  tap(localized(text::replaceAll));
  EXPECT_TRUE(sees(localized(text::replacedCount, {std::string("3")})));
  EXPECT_NE(text.bytes().find(" number number\rnumber"), std::string::npos);
  press(Qt::Key_Escape);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(text.bytes(), before) << "one step";
  text.goTo(1, 4);
  press(Qt::Key_Return);
  typeText("if (x) {");
  press(Qt::Key_Return);
  typeText("y;");
  press(Qt::Key_Return);
  typeText("}");
  EXPECT_TRUE(
      text.bytes().starts_with("\xEF\xBB\xBF"
                               "a {\r\n  if (x) {\r\n    y;\r\n  }\r\n  two\r\n"));
  leaveEditor("Save");
  EXPECT_TRUE(fileAt(folder + "f.m").ends_with(before.substr(6)));
}

TEST_F(Editor, KeysThatComeBeforeTheFileIsLoadedLoseNothing) {
  const std::string folder = makeProject({{"f.x", "text"}});
  startActive();
  for (const char* typed : {"my ", ""}) {
    tap("f.x");
    typeText(typed);
    press(Qt::Key_S, Qt::ControlModifier);
    waitToMiss("Save");
    EXPECT_EQ(fileAt(folder + "f.x"), "my text");
  }
}

TEST_F(Editor, MarksMoveWithTheText) {
  makeProject({{"f.x", "one\ntwo words\nthree\n"}});
  startActive();
  openEditor("f.x");
  CodeView& text = editor();
  text.setProblems({{.file = "f.x", .line = 2, .column = 5, .message = "unknown words"},
                    {.file = "f.x", .line = 9, .kind = Problem::Kind::Warning, .message = ""}});
  press(Qt::Key_Return);
  press(Qt::Key_F8);
  EXPECT_EQ(caret(), 9U);
  waitToSee("unknown words");
  press(Qt::Key_Up);
  waitToMiss("unknown words");
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_Delete);
  for (int steps = 0; text.isModified() && steps < 4; ++steps) press(Qt::Key_Z, Qt::ControlModifier);
  press(Qt::Key_F8);
  EXPECT_EQ(caret(), 8U) << "undone, the marks are where they were";
  const int height = text.height();
  text.setProblems({{.file = "f.x", .line = 2, .message = "\u202E" + std::string(1 << 20, 'x')}});
  waitToSee(QChar(0xFFFD) + QString(999, u'x'));
  EXPECT_GT(text.height(), height / 2) << "a long message leaves room for the text";
  leaveEditor("Cancel");
}

}  // namespace
