// launcher LAUNCHER DEVICE: what the device costs as seen from outside: a start, the way to the first painted
// screen, the launcher's memory, and a gigabyte through exec's standard streams. To be run by an ordinary
// user; DEVICE must not exist yet. Exit status 0 when all bounds hold.
#include "bench/SideBySide.h"
#include "device/Process.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr double megabyte = 1024 * 1024;

void mustRun(const ProcessStart& start) {
  int status = 0;
  const pid_t child = spawn(start);
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
    throw std::runtime_error("cannot run " + start.words.front());
}

void runLine(const std::string& line) {
  mustRun({{"/bin/sh", "-c", line}, {}, -1, STDOUT_FILENO, STDERR_FILENO});
}

// Runs bubblewrap as the launcher does, but with one program in the device and nothing around it.
class Bare {
 public:
  // Has the launcher start a script instead of bubblewrap, which writes down what it was given.
  Bare(const std::string& exec, const fs::path& folder) : folder_(folder) {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "bwrap") << "#!/bin/sh\ncd '" << folder_.string() << "'\n"
                                     << "tr '\\0' '\\n' < /proc/$$/fd/$2 > arguments\n"
                                        "for file in /proc/$$/fd/*; do\n"
                                        "  case $(readlink $file) in\n"
                                        "    /memfd:*) cat $file > ${file##*/} ;;\n"
                                        "    *) ln -s \"$(readlink $file)\" ${file##*/} ;;\n"
                                        "  esac\n"
                                        "done\n";
    fs::permissions(folder_ / "bwrap", fs::perms::owner_all);
    // It ends without having made a device.
    if (std::system(("PATH='" + folder_.string() + "':$PATH " + exec + "true 2> /dev/null").c_str()) == 0)
      throw std::runtime_error("the launcher starts another bubblewrap");
    std::ifstream list(folder_ / "arguments");
    for (std::string word; std::getline(list, word);) recorded_.push_back(word);
    if (recorded_.empty()) throw std::runtime_error("nothing was written down");
    // bubblewrap takes no more options once it does not know one: the last that it is given has to hold.
    run({"test", "-d", "/var/mobile", "-a", "!", "-w", "/"});
  }

  void run(const Words& command) const {
    std::vector<Descriptor> files;
    std::string list;
    for (std::size_t at = 0; at < recorded_.size(); ++at) {
      std::string word = recorded_[at];
      if (word == "--json-status-fd") {
        ++at;
        continue;
      }
      if (at > 0 && recorded_[at - 1] == "--ro-bind-data") {
        files.emplace_back(open((folder_ / word).c_str(), O_RDONLY | O_CLOEXEC));
        word = std::to_string(files.back().get());
      } else if (at > 0 && recorded_[at - 1].ends_with("bind-fd")) {
        word = fs::read_symlink(folder_ / word);
      } else if (word.ends_with("bind-fd")) {
        word.resize(word.size() - 3);
      } else if (at > 0 && recorded_[at - 1] == "--ro-bind" && recorded_[at + 1] == "/.host/log") {
        word = folder_ / "arguments";
      }
      list.append(word).push_back('\0');
    }
    const Descriptor arguments = inMemory(list);
    ProcessStart start{{"/usr/bin/bwrap", "--args", std::to_string(arguments.get()), "--"}};
    start.words.insert(start.words.end(), command.begin(), command.end());
    start.environment.emplace();
    start.passed = {arguments.get()};
    for (const auto& file : files) start.passed.push_back(file.get());
    mustRun(start);
  }

 private:
  fs::path folder_;
  Words recorded_;
};

bool starts(const std::string& launcher, const std::string& device, const Bare& bare) {
  return compare(
      {"exec true", "bubblewrap alone, the same mounts", 1.5, 41}, "ms",
      [&] { return 1000 * seconds([&] {
                     mustRun({{launcher, "--device", device, "exec", "true"}});
                   }); },
      [&] { return 1000 * seconds([&] { bare.run({"true"}); }); });
}

struct Window {
  double seconds;   // from its start until it is painted
  double launcher;  // resident memory of the process that was started
};

// Runs a program that prints a number when its window has been painted, and then ends.
Window openWindow(const Words& words) {
  Window window{};
  Pipe output = makePipe();
  ProcessStart start{words, {}, -1, output.writeEnd.get(), output.writeEnd.get()};
  pid_t child = -1;
  window.seconds = seconds([&] {
    child = spawn(start);
    output.writeEnd.close();
    std::array<char, 256> number{};
    const ssize_t got = read(output.readEnd.get(), number.data(), number.size() - 1);
    if (child < 0 || got <= 0 || std::atof(number.data()) <= 0)
      throw std::runtime_error("cannot run " + words.front() + ": " + number.data());
  });
  long pages = 0;
  std::ifstream("/proc/" + std::to_string(child) + "/statm") >> pages >> pages;
  window.launcher = static_cast<double>(pages * sysconf(_SC_PAGESIZE));
  waitpid(child, nullptr, 0);
  return window;
}

// The launcher with a main screen that ends when it has been painted in the place of the application.
bool opens(const fs::path& launcher, const std::string& device, const fs::path& copy) {
  const fs::path files = launcher.parent_path().parent_path() / "lib/tweakbench";
  fs::create_directories(copy / "bin");
  fs::create_directories(copy / "lib");
  fs::copy(launcher, copy / "bin");
  fs::copy(files, copy / "lib/tweakbench", fs::copy_options::recursive);
  fs::copy(files / "bench/FirstScreen", copy / "lib/tweakbench/Tweakbench",
           fs::copy_options::overwrite_existing);
  runLine("'" + launcher.string() + "' --device '" + device +
          "' exec sh -c 'for project in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do"
          " mkdir -p /var/Tweakyard/Projects/Tweak$project && cd /var/Tweakyard/Projects/Tweak$project &&"
          " touch Makefile Tweak.x control Tweak$project.plist; done'");
  const fs::path runtime = copy / "runtime";
  fs::create_directory(runtime);
  fs::permissions(runtime, fs::perms::owner_all);
  setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const Words ours{copy / "bin/tweakbench", "--device", device};
  const bool holds = compare(
      {"exec of tweakbench to main screen", "empty window", 2.5, 41}, "ms",
      [&] { return 1000 * openWindow(ours).seconds; },
      [&] { return 1000 * openWindow({files / "bench/EmptyWindow"}).seconds; });
  double most = 0;
  for (int round = 0; round < 5; ++round) most = std::max(most, openWindow(ours).launcher / megabyte);
  constexpr double allowed = 5;
  const bool isSmall = most > 0 && most <= allowed;
  std::printf("%-34s %9.3f MiB, at most %.0f: %s\n", "launcher beside the application", most, allowed,
              isSmall ? "holds" : "MISSED");
  return holds && isSmall;
}

bool relays(const std::string& exec) {
  const std::string make = "head -c 1G /dev/zero";
  const auto secondsOf = [](const std::string& line) { return seconds([&line] { runLine(line); }); };
  const auto plain = [&] { return secondsOf(exec + "-n sh -c '" + make + " | cat > /dev/null'"); };
  constexpr double allowed = 1.1;
  constexpr int rounds = 11;
  const bool goesOut = compare(
      {"a gigabyte out of exec", "plain pipe", allowed, rounds}, "s",
      [&] { return secondsOf(exec + "-n " + make + " | cat > /dev/null"); }, plain);
  const bool comesIn = compare(
      {"a gigabyte into exec", "plain pipe", allowed, rounds}, "s",
      [&] { return secondsOf(make + " | " + exec + "cat > /dev/null"); }, plain);
  return goesOut && comesIn;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const std::string launcher = arguments[1];
  const std::string device = arguments[2];
  const std::string exec = "'" + launcher + "' --device '" + device + "' exec ";
  try {
    runLine(exec + "true");
    bool hold = starts(launcher, device, Bare(exec, device + "-bare"));
    hold &= opens(launcher, device, device + "-files");
    hold &= relays(exec);
    return hold ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& error) {
    std::printf("stopped: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
