#include "device/session/SystemLog.h"

#include "device/Process.h"
#include "device/Visible.h"

#include <array>
#include <sys/socket.h>
#include <syslog.h>

namespace {

constexpr std::size_t longestLogLine = 8192;
constexpr int mostLogLinesAtOnce = 100;
// "Nov 22 23:59:59 ", as every line carries it behind its priority.
constexpr std::size_t timeLength = 16;

}  // namespace

SystemLog::SystemLog(int folder, const fs::path& path)
    : folder_(folder), name_("log." + std::to_string(getpid())) {
  // What a killed launcher left.
  unlinkat(folder, name_.c_str(), 0);
  const sockaddr_un address = addressIn(folder, name_);
  socket_ = Descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket_ || bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    socket_.close();
    return;
  }
  path_ = path / name_;
  openlog("tweakbench", LOG_PID, LOG_USER);
}

SystemLog::~SystemLog() {
  if (!path_.empty()) unlinkat(folder_, name_.c_str(), 0);
}

void SystemLog::passOn() {
  std::array<char, longestLogLine> line;
  // Bounded, so that a flood of lines does not keep the launcher from everything else.
  for (int count = 0; count < mostLogLinesAtOnce; ++count) {
    const ssize_t got = recv(socket_.get(), line.data(), line.size(), 0);
    if (got <= 0) return;
    syslog(LOG_NOTICE, "%s", wordsOf({line.data(), static_cast<std::size_t>(got)}).c_str());
  }
}

std::string wordsOf(std::string_view line) {
  if (line.starts_with('<')) line.remove_prefix(line.find('>') + 1);
  if (line.size() >= timeLength && line[timeLength - 1] == ' ') line.remove_prefix(timeLength);
  if (const auto name = line.find(": "); name != std::string_view::npos) line.remove_prefix(name + 2);
  return visible(trimmed(line, std::string_view("\0\n", 2)), "\t");
}
