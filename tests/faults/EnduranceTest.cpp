// Much of one thing, for script/faults: what piles up shows in the end. Numbers are printed as "NAME
// VALUE...".
#include "tests/ui/Screens.h"

#include <chrono>
#include <cstdio>
#include <fstream>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEventLoop>

namespace {

using finger::tap;
using finger::waitToSee;

struct Use {
  double mebibytes = 0;  // resident
  std::size_t descriptors = 0;
  std::size_t processes = 0;
};

Use useNow() {
  Use use;
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  use.mebibytes = static_cast<double>(resident) * 4096 / (1024 * 1024);
  const std::vector<std::string> none;
  use.descriptors = contentsOfDirectoryAtPath("/proc/self/fd").value_or(none).size();
  for (const std::string& entry : contentsOfDirectoryAtPath("/proc").value_or(none)) {
    if (entry.find_first_not_of("0123456789") == std::string::npos) ++use.processes;
  }
  return use;
}

// Where the program's output went at its start: builds turn the standard streams to their log.
const int report = dup(STDOUT_FILENO);

void settle() {
  for (int turn = 0; turn < 3; ++turn) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

class Endurance : public Screens {};

TEST_F(Endurance, BuildsLeaveNothingBehind) {
  constexpr int warmUp = 20;
  constexpr int builds = 200;
  makeProject({{"Makefile", "package:\n\t@mkdir packages; echo made; cp Makefile packages/P.deb\n"}});
  putFile(updateMarker, "");
  start();
  openBuildScreen();
  tap("Show success alert");
  Use before;
  for (int count = 0; count < warmUp + builds; ++count) {
    if (count == warmUp) before = useNow();
    removeItemAtPath(device::packages + "/P");
    build("Make Package");
    ASSERT_TRUE(fileExistsAtPath(device::packages + "/P/P.deb")) << "build " << count;
  }
  settle();
  const Use after = useNow();
  EXPECT_LE(after.mebibytes - before.mebibytes, 2);
  EXPECT_LE(after.descriptors, before.descriptors);
  EXPECT_LE(after.processes, before.processes);
  dprintf(report, "builds %d %.2f %zu %zu\n", builds, after.mebibytes - before.mebibytes,
          after.descriptors - before.descriptors, after.processes - before.processes);
}

TEST_F(Endurance, DialogsLeaveNothingBehind) {
  constexpr int warmUp = 1000;
  constexpr int rounds = 10'000;
  makeProject({{"Tweak.x", ""}});
  start();
  auto* const button = qobject_cast<QAbstractButton*>(finger::find("Delete"));
  ASSERT_NE(button, nullptr);
  const std::size_t widgets = QApplication::allWidgets().size();
  Use before;
  for (int count = 0; count < warmUp + rounds; ++count) {
    if (count == warmUp) before = useNow();
    button->click();
    ASSERT_TRUE(finger::sees(localized(text::deleteFilesOrProjects))) << "round " << count;
    QTest::keyClick(UIScreen::mainScreen()->focusWidget(), Qt::Key_Escape);
    settle();
    ASSERT_FALSE(finger::sees(localized(text::deleteFilesOrProjects))) << "round " << count;
  }
  const Use after = useNow();
  EXPECT_LE(after.mebibytes - before.mebibytes, 2);
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_EQ(QApplication::allWidgets().size(), widgets);
  dprintf(report, "dialogs %d %.2f %zu\n", rounds, after.mebibytes - before.mebibytes,
          after.descriptors - before.descriptors);
}

TEST_F(Endurance, AFolderOfAHundredThousandEntriesIsListed) {
  constexpr int entries = 100'000;
  constexpr double patience = 1000;  // milliseconds
  const std::string folder = makeProject({{"Tweak.x", ""}});
  start();
  for (int number = 0; number < entries; ++number) {
    std::ofstream(folder + "file-" + std::to_string(number) + ".x");
  }
  const auto begin = std::chrono::steady_clock::now();
  tap("Reload");
  settle();
  const double taken =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  EXPECT_EQ(MUArray().size(), entries + 1U);
  EXPECT_LE(taken, patience);
  dprintf(report, "entries %d %.0f\n", entries, taken);
}

}  // namespace
