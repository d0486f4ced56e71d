// Much of one thing, for script/faults: what piles up shows in the end.
#include "support/FaultReport.h"
#include "tests/ui/Screens.h"
#include "workspace/ProjectFiles.h"

#include <cstdio>
#include <fstream>
#include <functional>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QElapsedTimer>

namespace {

using finger::tap;
using finger::waitToSee;

struct Use {
  double mebibytes = 0;  // resident
  int descriptors = 0;
  int processes = 0;
};

Use useNow() {
  Use use;
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  use.mebibytes = static_cast<double>(resident) * 4096 / (1024 * 1024);
  const std::vector<std::string> none;
  use.descriptors = static_cast<int>(contentsOfDirectoryAtPath("/proc/self/fd").value_or(none).size());
  for (const std::string& entry : contentsOfDirectoryAtPath("/proc").value_or(none)) {
    if (entry.find_first_not_of("0123456789") == std::string::npos) ++use.processes;
  }
  return use;
}

void settle() {
  for (int turn = 0; turn < 3; ++turn) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

// What has grown over `count` rounds, after some to warm up. Fails where more is in use than before.
std::string growthOver(int warmUp, int count, const std::function<void()>& round) {
  Use before;
  for (int number = 0; number < warmUp + count; ++number) {
    if (number == warmUp) before = useNow();
    round();
    if (testing::Test::HasFatalFailure()) return "failed in round " + std::to_string(number);
  }
  settle();
  const Use now = useNow();
  EXPECT_LE(now.mebibytes - before.mebibytes, 2);
  EXPECT_LE(now.descriptors, before.descriptors);
  EXPECT_LE(now.processes, before.processes);
  char words[80];
  std::snprintf(words, sizeof words, "grown by %.2f MB and %d descriptors, %d processes",
                now.mebibytes - before.mebibytes, now.descriptors - before.descriptors,
                now.processes - before.processes);
  return words;
}

class Endurance : public Screens {};

TEST_F(Endurance, BuildsLeaveNothingBehind) {
  makeProject({{"Makefile", "package:\n\t@mkdir packages; echo made; cp Makefile packages/P.deb\n"}});
  putFile(updateMarker, "");
  start();
  openBuildScreen();
  tap("Show success alert");
  const std::string growth = growthOver(20, 200, [&] {
    removeItemAtPath(device::packages + "/P");
    build("Make Package");
    ASSERT_TRUE(fileExistsAtPath(device::packages + "/P/P.deb"));
  });
  reportFault("builds in a row", 200, "-", growth);
}

TEST_F(Endurance, DialogsLeaveNothingBehind) {
  makeProject({{"Tweak.x", ""}});
  start();
  auto* const button = qobject_cast<QAbstractButton*>(finger::find("Delete"));
  ASSERT_NE(button, nullptr);
  const std::size_t widgets = QApplication::allWidgets().size();
  const std::string growth = growthOver(1000, 10'000, [&] {
    button->click();
    ASSERT_TRUE(finger::sees(localized(text::deleteFilesOrProjects)));
    QTest::keyClick(UIScreen::mainScreen()->focusWidget(), Qt::Key_Escape);
    settle();
    ASSERT_FALSE(finger::sees(localized(text::deleteFilesOrProjects)));
  });
  EXPECT_EQ(QApplication::allWidgets().size(), widgets);
  reportFault("dialogs opened and dismissed", 10'000, "-", growth);
}

TEST_F(Endurance, AFolderOfAHundredThousandEntriesIsListed) {
  constexpr int entries = 100'000;
  constexpr int patience = 1000;
  const std::string folder = makeProject({{"Tweak.x", ""}});
  start();
  for (int number = 0; number < entries; ++number) {
    std::ofstream(folder + "file-" + std::to_string(number) + ".x");
  }
  QElapsedTimer timer;
  timer.start();
  tap("Reload");
  settle();
  const qint64 taken = timer.elapsed();
  EXPECT_EQ(MUArray().size(), entries + 1U);
  EXPECT_LE(taken, patience);
  reportFault("entries in a project", static_cast<int>(MUArray().size()), "-",
              "listed in " + std::to_string(taken) + " ms");
}

TEST_F(Endurance, ALargeLogIsShown) {
  constexpr std::size_t size = std::size_t{64} << 20;
  constexpr int patience = 5000;
  constexpr double memory = 4 * (size >> 20);  // mebibytes
  const std::string bytes = std::to_string(size);
  const std::string sources[] = {"yes '\033[0;32mcompiling\033[0m a line' | head -c " + bytes,
                                 "head -c " + bytes + " /dev/zero | tr '\\0' x",
                                 "head -c " + bytes + " /dev/zero"};
  qint64 slowest = 0;
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
    QElapsedTimer timer;
    timer.start();
    finger::waitUntil([] { return !finger::sees(localized(text::pleaseWait)); }, "the build does not end");
    settle();
    slowest = std::max(slowest, timer.elapsed());
    grown = std::max(grown, useNow().mebibytes - before.mebibytes);
    EXPECT_GT(log().length(), 0);
    tap("Clear Log");
    delegate_.reset();
  }
  EXPECT_LE(slowest, patience);
  EXPECT_LE(grown, memory);
  reportFault("a log of 64 MiB: lines, one line, zeros", 3, std::to_string(large),
              "shown in " + std::to_string(slowest) + " ms, with " + std::to_string(static_cast<int>(grown)) +
                  " MB more");
}

}  // namespace
