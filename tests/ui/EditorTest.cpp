// What the editor and the search do while one types.
#include "support/Clock.h"
#include "tests/ui/Screens.h"
#include "ui/controls/CodeView.h"

#include <QListView>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;

class Editor : public Screens {
 protected:
  static CodeView& editor() { return *qobject_cast<CodeView*>(finger::find("File text")); }
  static std::size_t caret() { return editor().selectionBegin(); }
};

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
  const auto* const found = qobject_cast<QListView*>(finger::find(localized(text::searchResults)));
  EXPECT_EQ(found->model()->rowCount(), 2000);
  press(Qt::Key_Escape);
  waitToSee("Files");
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
