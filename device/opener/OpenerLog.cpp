#include "device/opener/OpenerLog.h"

#include "device/Visible.h"

#include <array>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

namespace device {
namespace {

constexpr off_t kLargest = 256 << 10;
constexpr int kMostLines = 500;
constexpr std::size_t kLongestLine = 300;

}  // namespace

void OpenerLog::open() {
  std::error_code error;
  std::filesystem::create_directories(path_.parent_path(), error);
  file_ = Descriptor(
      ::open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  struct stat status {};
  if (!file_) return;
  const bool isFile = fstat(file_.get(), &status) == 0 && S_ISREG(status.st_mode);
  if (!isFile || (status.st_size > kLargest && ftruncate(file_.get(), 0) != 0)) file_.close();
}

void OpenerLog::add(const std::string& words) {
  if (lines_ > kMostLines) return;
  if (lines_ == 0) open();
  const std::string last = "Nothing more is noted in this run.";
  const std::string said = ++lines_ > kMostLines ? last : visible(words.substr(0, kLongestLine));
  if (!file_) return;
  std::array<char, 32> time{};
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  std::strftime(time.data(), time.size(), "%Y-%m-%d %H:%M:%S ", localtime_r(&now, &parts));
  const std::string line = time.data() + said + "\n";
  // A line that is lost is no reason to stop opening.
  [[maybe_unused]] const ssize_t written = write(file_.get(), line.data(), line.size());
}

}  // namespace device
