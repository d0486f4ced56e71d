// What the history costs while nothing changes: 20 projects with 100 files each. Needs no device; exit status
// 0 when it takes at most 10 ms.
#include "bench/SideBySide.h"
#include "device/folder/HistoryFolder.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <fstream>

int main() {
  namespace fs = std::filesystem;
  constexpr int projects = 20;
  constexpr int filesEach = 100;
  constexpr int rounds = 21;
  constexpr double allowed = 0.010;
  std::string folder = fs::temp_directory_path() / "tweakbench-bench-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return 1;
  const fs::path var = fs::path(folder) / "var";
  for (int project = 0; project < projects; ++project) {
    const fs::path path = var / folderInDevice(Kept::Project) / std::to_string(project);
    fs::create_directories(path);
    for (int file = 0; file < filesEach; ++file) std::ofstream(path / std::to_string(file)) << file;
  }
  const Descriptor top(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const Descriptor inVar(open(var.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const HistoryFolder history(top.get());
  const HistoryTools tools{"/usr/bin/bwrap", "/usr/bin/rsync"};
  const auto copy = [&] { takeCopy(history, inVar.get(), tools, Insistence::Gaps); };
  copy();
  const bool isCopied = history.entries().size() == 1 && history.entries().front().isWhole;
  std::vector<double> times(rounds);
  for (double& time : times) time = seconds(copy);
  std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
  const double median = times[rounds / 2];
  const bool isKept = isCopied && history.entries().size() == 1 && median <= allowed;
  std::printf("%-4s the history of %d unchanged files: %.1f ms, allowed %.0f ms\n", isKept ? "ok" : "FAIL",
              projects * filesEach, median * 1000, allowed * 1000);
  fs::remove_all(folder);
  return isKept ? 0 : 1;
}
