#include "core/ProcessTree.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

struct Process {
  pid_t id;
  pid_t parent;
};

// The parent is the second field after the program's name, which stands in parentheses and may hold any byte.
pid_t parentOf(const char* id) {
  char path[64];
  std::snprintf(path, sizeof path, "/proc/%.20s/stat", id);
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file == -1) return -1;
  char text[512];
  const ssize_t size = read(file, text, sizeof text - 1);
  close(file);
  if (size <= 0) return -1;
  text[size] = '\0';
  const char* name_end = std::strrchr(text, ')');
  int parent = -1;
  return name_end != nullptr && std::sscanf(name_end + 1, " %*c %d", &parent) == 1 ? parent : -1;
}

std::vector<Process> allProcesses() {
  std::vector<Process> processes;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir("/proc"), closedir);
  if (!folder) return processes;
  while (const dirent* entry = readdir(folder.get())) {
    if (!std::isdigit(static_cast<unsigned char>(entry->d_name[0]))) continue;
    processes.push_back({static_cast<pid_t>(std::atol(entry->d_name)), parentOf(entry->d_name)});
  }
  return processes;
}

std::vector<pid_t> treeOf(pid_t root) {
  const std::vector<Process> processes = allProcesses();
  std::vector<pid_t> tree{root};
  for (std::size_t next = 0; next < tree.size(); ++next) {
    for (const Process& process : processes) {
      if (process.parent == tree[next]) tree.push_back(process.id);
    }
  }
  return tree;
}

}  // namespace

void signalProcessTree(pid_t root, int signal) {
  // A stopped parent makes no more children; the second look finds those born between the first look and the
  // stop.
  std::vector<pid_t> tree = treeOf(root);
  for (const pid_t process : tree) kill(process, SIGSTOP);
  std::vector<pid_t> grown = treeOf(root);
  while (grown.size() > tree.size()) {
    for (const pid_t process : grown) kill(process, SIGSTOP);
    tree = std::move(grown);
    grown = treeOf(root);
  }
  for (const pid_t process : tree) kill(process, signal);
  for (const pid_t process : tree) kill(process, SIGCONT);
}
