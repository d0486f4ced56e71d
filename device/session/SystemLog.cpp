#include "device/session/SystemLog.h"

#include "device/Visible.h"
#include "device/folder/Beneath.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>
#include <utility>

namespace device {
namespace {

constexpr std::size_t kLongestLine = 8192;
constexpr int kMostAtOnce = 100;
// "Nov 22 23:59:59 ", as every line carries it behind its priority.
constexpr std::size_t kTimeLength = 16;

// Of launchers of this user that were killed. Nothing is deleted but their socket and the empty folder.
void removeAbandoned() {
  const Descriptor temporary(open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto names = temporary ? namesIn(temporary.get()) : std::nullopt;
  for (const auto& name : names.value_or(std::vector<std::string>())) {
    if (!name.starts_with("tweakbench-log-")) continue;
    const Descriptor folder = openFolderBeneath(temporary.get(), name);
    struct stat status {};
    if (!folder || fstat(folder.get(), &status) != 0 || status.st_uid != geteuid()) continue;
    if (flock(folder.get(), LOCK_EX | LOCK_NB) != 0) continue;
    unlinkat(folder.get(), "log", 0);
    unlinkat(temporary.get(), name.c_str(), AT_REMOVEDIR);
  }
}

}  // namespace

SystemLog::SystemLog() : folder_("/tmp/tweakbench-log-XXXXXX") {
  removeAbandoned();
  if (mkdtemp(folder_.data()) == nullptr) {
    folder_.clear();
    return;
  }
  lock_ = Descriptor(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (lock_) flock(lock_.get(), LOCK_EX | LOCK_NB);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder_ + "/log";
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  socket_ = Descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket_ || bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    socket_.close();
    return;
  }
  path_ = path;
  openlog("tweakbench", LOG_PID, LOG_USER);
}

SystemLog::~SystemLog() {
  if (!path_.empty()) unlink(path_.c_str());
  if (!folder_.empty()) rmdir(folder_.c_str());
}

void SystemLog::passOn() {
  std::array<char, kLongestLine> line;
  // Not for ever: whoever floods the log must not keep the launcher from what else it watches.
  for (int count = 0; count < kMostAtOnce; ++count) {
    const ssize_t got = recv(socket_.get(), line.data(), line.size(), 0);
    if (got <= 0) return;
    syslog(LOG_NOTICE, "%s", wordsOf({line.data(), static_cast<std::size_t>(got)}).c_str());
  }
}

std::string wordsOf(const std::string& datagram) {
  std::size_t at = 0;
  if (datagram.starts_with('<')) {
    const auto end = datagram.find('>');
    if (end != std::string::npos) at = end + 1;
  }
  if (datagram.size() >= at + kTimeLength && datagram[at + kTimeLength - 1] == ' ') at += kTimeLength;
  const auto name = datagram.find(": ", at);
  if (name != std::string::npos) at = name + 2;
  std::string words = datagram.substr(at);
  while (!words.empty() && (words.back() == '\0' || words.back() == '\n')) words.pop_back();
  return visible(std::move(words), "\t");
}

}  // namespace device
