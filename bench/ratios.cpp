// The figures that the project promises, each as a ratio measured side by side in one run. Runs in the
// device, from script/bench; exit status 0 when all hold.
#include "bench/SideBySide.h"
#include "build/LogCleanUp.h"
#include "core/FileManager.h"
#include "core/Languages.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Projects.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* programs = "/.host/tweakbench/bench/";
constexpr double megabyte = 1024 * 1024;

void spawnShell(const std::string& line) {
  char* const arguments[] = {const_cast<char*>("sh"), const_cast<char*>("-c"),
                             const_cast<char*>(line.c_str()), nullptr};
  pid_t child = -1;
  int status = 0;
  if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error("cannot run " + line);
  }
}

struct Window {
  double seconds;  // from its start until it is painted
  double bytes;    // resident then
};

Window runWindow(const std::string& program) {
  Window window{};
  FILE* output = nullptr;
  window.seconds = seconds([&] {
    // The guard takes the platform's name from what a shell starts, so the line gives it anew.
    output = popen(
        ("exec env QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/tmp/runtime " + (programs + program)).c_str(),
        "r");
    if (output == nullptr || std::fscanf(output, "%lf", &window.bytes) != 1) {
      throw std::runtime_error("cannot run " + program);
    }
  });
  if (pclose(output) != 0) throw std::runtime_error(program + " does not end well");
  return window;
}

bool startUp() {
  return compare(
      {"start to painted main screen", "empty window", 1.5, 101}, "ms",
      [] { return 1000 * runWindow("FirstScreen").seconds; },
      [] { return 1000 * runWindow("EmptyWindow").seconds; });
}

bool memory() {
  return compare(
      {"resident, idle main screen", "empty window", 1.8, 5}, "MiB",
      [] { return runWindow("FirstScreen").bytes / megabyte; },
      [] { return runWindow("EmptyWindow").bytes / megabyte; });
}

// The milliseconds that `work` takes, without what its commands print.
double quietly(const std::function<void()>& work) {
  const int shown = dup(STDOUT_FILENO);
  if (std::freopen("/dev/null", "w", stderr) == nullptr) throw std::runtime_error("no /dev/null");
  dup2(STDERR_FILENO, STDOUT_FILENO);
  const double taken = seconds(work);
  dup2(shown, STDOUT_FILENO);
  close(shown);
  return 1000 * taken;
}

// From the start of the application, which shows the folder of the current project first.
bool longList() {
  const std::string folder = "/var/Tweakyard/Projects/Long";
  quietly([] { createProject("Long"); });
  for (int number = 0; number < 100'000; ++number)
    std::ofstream(folder + "/File" + std::to_string(number) + ".m");
  const bool holds = compare(
      {"list of 100,000 files, first paint", "ls -U", 2, 21}, "ms",
      [] { return 1000 * runWindow("FirstScreen").seconds; },
      [&] { return 1000 * seconds([&] { run_cmd(("ls -U " + folder + " > /dev/null").c_str()); }); });
  run_cmd(("rm -rf " + folder).c_str());
  return holds;
}

// The language is read anew for each text of the options menu: its title, its message, its entries and its
// button when it opens, and what a tap is compared with.
bool menuTexts() {
  constexpr int reads = 28;
  constexpr double allowed = 1;
  std::vector<double> times;
  for (int round = 0; round < 101; ++round) {
    times.push_back(1000 * seconds([] {
                      for (int read = 0; read < reads; ++read) Languages(text::extraOptions);
                    }));
  }
  std::nth_element(times.begin(), times.begin() + 50, times.end());
  const bool holds = times[50] <= allowed;
  std::printf("%-34s %9.3f ms   at most %.2f: %s\n", "the options menu's 28 texts", times[50], allowed,
              holds ? "holds" : "MISSED");
  return holds;
}

// The yardstick makes the same two shells, one command line each.
bool projectCreation() {
  int number = 0;
  return compare(
      {"whole project creation", "its unzip and mv alone", 1.1, 101}, "ms",
      [&] {
        const std::string name = "A" + std::to_string(++number);
        return quietly([&name] { createProject(name); });
      },
      [&] {
        const std::string name = "B" + std::to_string(++number);
        const std::string project = "/var/Tweakyard/Projects/" + name;
        return quietly([&] {
          spawnShell("unzip /Applications/Tweakbench.app/TheosOrig.zip -d " + project);
          spawnShell("mv " + project + "/CC.plist " + project + "/" + name + ".plist");
        });
      });
}

bool command() {
  return compare(
      {"run_cmd(\"true\")", "posix_spawn of /bin/sh -c true", 1.05, 1001}, "ms",
      [] { return 1000 * seconds([] { run_cmd("true"); }); },
      [] { return 1000 * seconds([] { spawnShell("true"); }); });
}

std::string hundredMegabyteLog() {
  const std::string lines =
      "\x1B[0;31m==> \x1B[1;39mPreprocessing Tweak.x\xE2\x80\xA6\x1B[m\n"
      "\x1B[0;32m==> \x1B[1;39mCompiling Tweak.x (arm64)\xE2\x80\xA6\x1B[m\n"
      "Tweak.x:17:9: \x1B[0;1;31merror: \x1B[0m\x1B[1muse of undeclared identifier 'window'\x1B[0m\n"
      "        [window makeKeyAndVisible];\n\x1B[0;1;32m         ^\n\x1B[0m"
      "clang -x objective-c -c -I/opt/theos/include -I/opt/theos/vendor/include -o "
      ".theos/obj/debug/arm64/Tweak.x.o\n";
  std::string log;
  log.reserve(101 << 20);
  while (log.size() < (100U << 20)) log += lines;
  return log;
}

bool logCleanUp() {
  const std::string original = "/tmp/original.log";
  const std::string log = "/tmp/make.log";
  const std::string substitutions =
      "sed -i -e 's/\\[1;31m>//g' -e 's/\\[1;3;39m//g' -e 's/\\[1;39m//g' -e 's/\\[0;31m//g' -e "
      "'s/\\[0;32m//g' "
      "-e 's/\\[0;33m//g' -e 's/\\[0;34m//g' -e 's/\\[m//g' -e 's/\\[0;1;31m//g' -e 's/\\[0m//g' -e "
      "'s/\\[0;1;32m//g' "
      "-e 's/\\[1m//g' -e 's/\\[1;31m//g' -e \"s/mv: cannot stat 'packages': No such file or "
      "directory//g\" " +
      log;
  std::ofstream(original, std::ios::binary) << hundredMegabyteLog();
  const std::string again = "cp --reflink=never " + original + " " + log;
  std::string ours;
  std::string theirs;
  const auto cleanUp = [&] {
    run_cmd(again.c_str());
    return seconds([&] { cleanLog(log, BuildVariant::Package); });
  };
  bool holds = compare({"clean-up of a 100 MB log", "cp of the log over another", 1.9, 9}, "s", cleanUp,
                       [&] { return seconds([&] { run_cmd(again.c_str()); }); });
  holds &= compare(
      {"clean-up of a 100 MB log", "sed, the same 14 substitutions", 0.1, 3}, "s",
      [&] {
        const double taken = cleanUp();
        ours = contentsOfFile(log).value_or("");
        return taken;
      },
      [&] {
        run_cmd(again.c_str());
        const double taken = seconds([&] { run_cmd(substitutions.c_str()); });
        theirs = contentsOfFile(log).value_or("");
        return taken;
      });
  removeItemAtPath(original);
  removeItemAtPath(log);
  if (ours != theirs || ours.empty()) throw std::runtime_error("the two clean-ups differ");
  return holds;
}

}  // namespace

int main() {
  try {
    installConverter();
    recordTheosPath();
    createProjectsFolder();
    // The first start comes first: later rows leave projects behind, whose names have to be shown.
    bool hold = startUp();
    hold &= memory();
    hold &= command();
    hold &= menuTexts();
    hold &= projectCreation();
    hold &= longList();
    hold &= logCleanUp();
    return hold ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& error) {
    std::printf("stopped: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
