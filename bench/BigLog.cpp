// What huge build logs cost the build screen's view: the time until they are painted, memory, scrolling,
// finding; and what a key costs in the editor of a long source. Runs in the device, from script/bench; exit
// status 0 when every promise holds.
#include "bench/FirstPaint.h"
#include "bench/SideBySide.h"
#include "build/BuildProblem.h"
#include "build/BuildRunner.h"
#include "core/FileManager.h"
#include "platform/ApplicationStyle.h"
#include "platform/UIApplication.h"
#include "ui/controls/CodeView.h"
#include "ui/controls/LogView.h"
#include "workspace/Paths.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <string>
#include <vector>

#include <QKeyEvent>
#include <QScrollBar>

namespace {

constexpr double megabyte = 1024 * 1024;
constexpr double longestSearch = 1;  // seconds through the whole log
constexpr int pages = 200;

struct Log {
  const char* what;
  std::string text;
  double opening = 0.5;  // seconds
  double memory = 3;     // times its size
  double page = 0.05;    // seconds, so that scrolling does not stutter
};

std::string repeated(const std::string& part, std::size_t size) {
  std::string text;
  text.reserve(size + part.size());
  while (text.size() < size) text += part;
  return text;
}

bool measure(Log log) {
  const double size = static_cast<double>(log.text.size());
  std::ofstream(paths::makeLog, std::ios::binary) << log.text;
  log.text = std::string();
  log.text.shrink_to_fit();
  LogView view;
  view.QWidget::setFont(fixedPitchFontOfSize(13));
  view.resize(390, 600);
  view.show();
  view.grab();
  malloc_trim(0);
  const double before = residentMemory();
  const double opening = seconds([&view] {
    const std::string text = collectBuildResult(BuildVariant::Package).log.value_or(std::string());
    const std::vector<Problem> problems = problemsIn(text, {paths::projects, {}});
    view.setBytes(text);
    view.setProblems(problems);
    view.grab();
  });
  const double memory = (residentMemory() - before) / size;
  double page = 0;
  const int step = std::max(view.verticalScrollBar()->maximum() / pages, 1);
  for (int number = 0; number < pages; ++number) {
    page = std::max(page, seconds([&] {
                      view.verticalScrollBar()->setValue(number * step);
                      view.grab();
                    }));
  }
  bool found = true;
  const double search = seconds([&] { found = view.find("nowhere in it", SearchDirection::Forward, false); });
  const double resizing = seconds([&view] {
    view.resize(500, 600);
    view.grab();
  });
  const bool whole = static_cast<double>(view.bytes().size()) > size / 2;
  const bool holds = whole && !found && opening <= log.opening && memory <= log.memory && page <= log.page &&
                     search <= longestSearch;
  std::printf(
      "%-22s %6.1f MB  opens in %.2f s, takes %.2f times its size, slowest of %d pages %.1f ms, "
      "searched in %.2f s, resized in %.2f s: %s\n",
      log.what, size / megabyte, opening, memory, pages, 1000 * page, search, resizing,
      holds ? "holds" : "MISSED");
  std::fflush(stdout);
  return holds;
}

// Every key of some lines that are typed in the middle of a source, until all of the editor is painted anew.
bool typing() {
  constexpr double allowed = 16;  // milliseconds
  std::string source;
  for (int hook = 0; hook < 4000; ++hook) {
    source += "%hook Class" + std::to_string(hook) +
              "\n- (void)setFoo:(id)foo bar:(int)bar {\n\tNSLog(@\"%@ is %d\", foo, bar % 5);"
              " // said\n\t%orig;\n}\n";
  }
  CodeView view;
  view.resize(820, 1180);
  view.setFile(source, "Tweak.x");
  view.show();
  view.goTo(10'000, 1);
  view.grab();
  // The lines are wrapped bit by bit.
  for (int turn = 0; turn < 1000; ++turn) QCoreApplication::processEvents();
  std::vector<double> taken;
  const std::string typed = "if ([self foo:@\"x\" bar:1]) { /* %orig\n";
  for (int round = 0; round < 10; ++round) {
    for (const char letter : typed) {
      taken.push_back(1000 * seconds([&] {
                        QKeyEvent press(QEvent::KeyPress, letter == '\n' ? Qt::Key_Return : 0, Qt::NoModifier,
                                        QString(QLatin1Char(letter)));
                        QCoreApplication::sendEvent(&view, &press);
                        QCoreApplication::processEvents();
                        view.grab();
                      }));
    }
  }
  std::sort(taken.begin(), taken.end());
  const double high = taken[taken.size() * 95 / 100];
  const bool holds = high <= allowed && view.bytes().size() >= source.size() + 10 * typed.size();
  std::printf("a key in 20,000 lines: 95th percentile %.1f ms to its paint, median %.1f, at most %.0f: %s\n",
              high, taken[taken.size() / 2], allowed, holds ? "holds" : "MISSED");
  return holds;
}

}  // namespace

int main(int argc, char** argv) {
  UIApplication application(argc, argv);
  constexpr std::size_t huge = 100U << 20;
  const std::string lines =
      "==> Compiling Tweak.x (arm64)\xE2\x80\xA6\nclang -x objective-c -c -I/opt/theos/include -o "
      ".theos/obj/arm64/Tweak.x.o\n";
  bool hold = measure({"compiler lines", repeated(lines, huge)});
  hold &= measure({"the most that is wrapped", repeated(lines, 1'000'000), 0.5, 12});
  // What is all one line, or all lines, costs more.
  hold &= measure({"empty lines", std::string(huge, '\n'), 4, 8});
  hold &= measure({"one plain line", std::string(5'000'000, 'x'), 4, 8, 0.3});
  hold &= measure({"one line of any script", repeated("…مشروع ", 5'000'000), 4, 8, 0.3});
  hold &= typing();
  removeItemAtPath(paths::makeLog);
  return hold ? EXIT_SUCCESS : EXIT_FAILURE;
}
