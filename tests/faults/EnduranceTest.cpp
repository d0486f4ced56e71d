// Much of one thing, for script/faults: what piles up shows in the end.
#include "support/FaultReport.h"
#include "tests/ui/Screens.h"
#include "workspace/ProjectFiles.h"

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

std::string growth(const Use& before, const Use& after) {
  char words[80];
  std::snprintf(words, sizeof words, "grown by %.2f MB and %d descriptors",
                after.mebibytes - before.mebibytes,
                static_cast<int>(after.descriptors) - static_cast<int>(before.descriptors));
  return words;
}

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
  reportFault("builds in a row", builds, "-",
              growth(before, after) + ", " +
                  std::to_string(static_cast<int>(after.processes) - static_cast<int>(before.processes)) +
                  " processes");
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
  reportFault("dialogs opened and dismissed", rounds, "-", growth(before, after));
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
  reportFault("entries in a project", static_cast<int>(MUArray().size()), "-",
              "listed in " + std::to_string(static_cast<int>(taken)) + " ms");
}

TEST_F(Endurance, ALargeLogIsShown) {
  constexpr std::size_t size = std::size_t{64} << 20;
  constexpr double patience = 5000;            // milliseconds
  constexpr double memory = 4 * (size >> 20);  // mebibytes
  const std::string bytes = std::to_string(size);
  const std::string sources[] = {"yes '\033[0;32mcompiling\033[0m a line' | head -c " + bytes,
                                 "head -c " + bytes + " /dev/zero | tr '\\0' x",
                                 "head -c " + bytes + " /dev/zero"};
  double slowest = 0;
  double grown = 0;
  int large = 0;
  for (const std::string& source : sources) {
    makeProject({{"Makefile", "package:\n\t@" + source + "; touch /var/tmp/printed\n"}});
    putFile(updateMarker, "");
    removeItemAtPath("/var/tmp/printed");
    start();
    openBuildScreen();
    tap("Make Package");
    finger::waitUntil([] { return fileExistsAtPath("/var/tmp/printed"); }, "make does not print");
    if (sizeOfFile(device::application + "MakeLog.log") >= size) ++large;
    const Use before = useNow();
    const auto begin = std::chrono::steady_clock::now();
    finger::waitUntil([] { return !finger::sees(localized(text::pleaseWait)); }, "the build does not end");
    settle();
    slowest = std::max(
        slowest, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
    grown = std::max(grown, useNow().mebibytes - before.mebibytes);
    EXPECT_GT(log().length(), 0);
    tap("Clear Log");
    delegate_.reset();
  }
  EXPECT_LE(slowest, patience);
  EXPECT_LE(grown, memory);
  reportFault("a log of 64 MiB: lines, one line, zeros", 3, std::to_string(large),
              "shown in " + std::to_string(static_cast<int>(slowest)) + " ms, with " +
                  std::to_string(static_cast<int>(grown)) + " MB more");
}

}  // namespace
