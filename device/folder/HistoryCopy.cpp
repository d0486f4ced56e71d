#include "device/folder/HistoryCopy.h"

#include "device/Process.h"
#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/HistoryWalk.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <numeric>
#include <optional>
#include <poll.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr const char* kLock = "lock";
constexpr const char* kState = "state";
constexpr const char* kUsage = "usage";
constexpr const char* kAbout = "about";
constexpr const char* kSetAside = "set-aside";
constexpr const char* kBeingMade = ".new-copy";
constexpr const char* kBeingDropped = ".old-";
constexpr const char* kBeingParted = ".old-parted";
constexpr std::size_t kLargestState = std::size_t{512} << 20;
// Left free for everything else on the disk.
constexpr unsigned long long kLeftFree = 64ULL << 20;
constexpr auto kLongestCopy = std::chrono::minutes(10);
// rsync, so that whatever it copies can be read and removed afterwards.
constexpr std::array kCopying{"/rsync", "-rlptS", "--chmod=Du+rwx,Fu+rw,ug-s,o-t", "--no-specials",
                              "--no-devices"};
constexpr long kOldestSetAside = 31L * 24 * 3600;

// Programs of the host's that work on the history, in a sandbox that has nothing else but, read-only, the
// folders to copy: no link that a build plants leads anywhere.
class Sandboxed {
 public:
  Sandboxed(const HistoryTools& tools, int history) : tools_(tools), history_(history) {}

  // Shows the folders, which stay open meanwhile.
  void show(const KeptFolders& folders) {
    for (const Kept kind : allKept) {
      const Descriptor& folder = folders[static_cast<std::size_t>(kind)];
      if (!folder) continue;
      add({"--ro-bind-fd", std::to_string(folder.get()), std::string("/from/") + folderInHistory(kind)});
      passed_.push_back(folder.get());
    }
  }

  // Returns the exit status, or -1. Each line of its output is given to `take`, which ends it by false.
  // `capability` is what the program has over the device user's own files.
  int run(const char* capability, const std::vector<std::string>& command, const std::string& input,
          const std::function<bool(const std::string&)>& take) {
    std::vector<std::string> words{tools_.bubblewrap.string(),
                                   "--unshare-all",
                                   "--unshare-user",
                                   "--die-with-parent",
                                   "--new-session",
                                   "--clearenv",
                                   "--cap-drop",
                                   "ALL",
                                   "--cap-add",
                                   capability,
                                   "--ro-bind",
                                   "/usr",
                                   "/usr",
                                   "--symlink",
                                   "usr/lib",
                                   "/lib",
                                   "--symlink",
                                   "usr/lib64",
                                   "/lib64",
                                   "--dev",
                                   "/dev",
                                   "--dir",
                                   "/from",
                                   "--ro-bind-try",
                                   tools_.rsync.string(),
                                   "/rsync"};
    words.insert(words.end(), shown_.begin(), shown_.end());
    words.insert(words.end(),
                 {"--bind-fd", std::to_string(history_), "/to", "--remount-ro", "/", "--chdir", "/to", "--"});
    words.insert(words.end(), command.begin(), command.end());
    const Descriptor list = inMemory(input);
    Pipe output = makePipe();
    ProcessStart start{words, std::vector<std::string>(), list.get(), output.writeEnd.get()};
    start.passed = passed_;
    start.passed.push_back(history_);
    start.endsBy = SIGKILL;
    const pid_t child = spawn(start);
    if (child < 0) return -1;
    output.writeEnd.close();
    if (!takeLines(output.readEnd.get(), take)) kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  void add(std::initializer_list<std::string> words) { shown_.insert(shown_.end(), words); }

  static bool takeLines(int output, const std::function<bool(const std::string&)>& take) {
    const auto limit = Clock::now() + kLongestCopy;
    std::string text;
    char piece[16384];
    while (true) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now()).count();
      pollfd watched{output, POLLIN, 0};
      if (left <= 0 || poll(&watched, 1, static_cast<int>(left)) == 0) return false;
      const ssize_t got = read(output, piece, sizeof piece);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) return true;
      text.append(piece, static_cast<std::size_t>(got));
      for (std::size_t end = 0; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
        if (!take(text.substr(0, end))) return false;
      }
    }
  }

  const HistoryTools& tools_;
  int history_;
  std::vector<std::string> shown_;
  std::vector<int> passed_{};
};

// What the newest copy was made from, as DEVICE/history/state has it: its name and whether it is whole, the
// items that it lacks, and the state.
struct Record {
  std::string when;
  bool isWhole = false;
  LastCopy last;
};

Record readRecord(int history) {
  Record record;
  const std::string text = readBeneath(history, kState, kLargestState).value_or("");
  std::vector<std::string> parts;
  std::size_t place = 0;
  // An empty part ends the list of items.
  while (parts.size() < 2 || !parts.back().empty()) {
    const std::size_t end = text.find('\0', place);
    if (end == std::string::npos) return {};
    parts.push_back(text.substr(place, end - place));
    place = end + 1;
  }
  if (timeOf(parts[0]) < 0 || !exists(history, parts[0])) return {};
  record.when = parts[0];
  record.isWhole = parts[1] == "whole";
  record.last.leftOut.insert(parts.begin() + 2, parts.end() - 1);
  record.last.state = text.substr(place);
  return record;
}

bool writeRecord(int history, const Record& record) {
  std::string text;
  for (const auto& part : {record.when, std::string(record.isWhole ? "whole" : "incomplete")})
    text.append(part).push_back('\0');
  for (const auto& item : record.last.leftOut) text.append(item).push_back('\0');
  text.push_back('\0');
  return writeAtomically(history, kState, text + record.last.state, 0600);
}

class Copying {
 public:
  Copying(const HistoryFolder& history, int var, const HistoryTools& tools)
      : history_(history), folder_(history.folder()), var_(var), tools_(tools) {}

  void take(Insistence insistence) {
    const Descriptor lock = locked();
    if (!lock) return;
    const Record last = readRecord(folder_);
    const KeptFolders folders = openKept(var_);
    // Without a look at the last state, which is what takes the time.
    Walk walked = walk(folders, {});
    const bool isEnough = last.isWhole || insistence == Insistence::Changes;
    if (walked.state == last.last.state && isEnough) return;
    walked = walk(folders, last.last);
    if (walked.state == last.last.state && isEnough) return;
    // Where nothing was ever made, there is nothing to keep.
    if (last.when.empty() && walked.items.empty() && walked.isWhole) return;
    sweep();
    Record made{{}, walked.isWhole, {{}, chooseWhatFits(walked)}};
    const auto needed = std::accumulate(walked.items.begin(), walked.items.end(), 0ULL,
                                        [](auto sum, const auto& item) { return sum + item.newBytes; });
    if (!makeRoom(needed)) return;
    made.isWhole = made.last.leftOut.empty() && walked.isWhole;
    switch (copy(folders, walked, last.when)) {
      case 0:
        break;
      case 23:
      case 24:
        made.isWhole = false;
        walked.remarks.push_back("Something changed while it was copied, or has too long a path.");
        break;
      case kTooMuch:
        made.isWhole = false;
        walked.remarks.push_back("There was more than could be counted before.");
        break;
      default:
        return sweep();
    }
    made.when = history_.newName();
    made.last.state = std::move(walked.state);
    std::string about = made.isWhole ? "whole\n" : "incomplete\n";
    for (const auto& remark : walked.remarks) about += remark + "\n";
    const Descriptor copied = openFolderBeneath(folder_, kBeingMade);
    if (!copied || !writeAtomically(copied.get(), kAbout, about, 0600) ||
        !renameToNew(folder_, kBeingMade, folder_, made.when)) {
      return sweep();
    }
    writeRecord(folder_, made);
    thinOut();
  }

  void partMoved() const {
    const Descriptor lock = locked();
    if (!lock) return;
    if (tools_.rsync.empty()) return;
    for (const auto& when : history_.moved()) {
      sweep();
      const std::string entry = std::string(kSetAside) + "/" + when;
      if (!hasRoomFor(measure(entry))) continue;
      std::vector<std::string> command(kCopying.begin(), kCopying.end());
      command.insert(command.end(), {entry + "/", std::string(kBeingParted) + "/"});
      if (runOnHistory("CAP_DAC_READ_SEARCH", command) == 0) {
        history_.part(when, kBeingParted);
      }
      sweep();
    }
  }

 private:
  static constexpr int kTooMuch = 1000;

  // Takes the largest items out until the rest has room beside the last copy.
  static std::set<std::string> chooseWhatFits(Walk& walked) {
    std::set<std::string> leftOut;
    auto sum = walked.oldBytes;
    for (const auto& item : walked.items) sum += item.newBytes;
    while (sum > largestHistory && !walked.items.empty()) {
      const auto largest =
          std::max_element(walked.items.begin(), walked.items.end(),
                           [](const auto& one, const auto& other) { return one.newBytes < other.newBytes; });
      walked.remarks.push_back(visible(largest->path) + " is too large.");
      sum -= largest->newBytes;
      leftOut.insert(largest->path);
      walked.items.erase(largest);
    }
    return leftOut;
  }

  Descriptor locked() const {
    Descriptor lock(openat(folder_, kLock, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (lock && flock(lock.get(), LOCK_EX) != 0) lock.close();
    return lock;
  }

  bool hasRoomFor(unsigned long long needed) const {
    struct statvfs disk {};
    return fstatvfs(folder_, &disk) == 0 &&
           static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize >= needed + kLeftFree;
  }

  // `room_` is afterwards what the copy may take. The usage on record is never too low, and measured again
  // before anything is dropped for it.
  bool makeRoom(unsigned long long needed) {
    if (!hasRoomFor(needed)) return false;
    unsigned long long usage =
        std::strtoull(readBeneath(folder_, kUsage, 64).value_or("0").c_str(), nullptr, 10);
    if (usage == 0 || usage + needed > largestHistory) usage = measure();
    while (usage + needed > largestHistory) {
      auto entries = history_.entries();
      // Without it a backup that is being made and is killed could not be undone.
      std::erase_if(entries, [older = history_.notedOlder()](const auto& entry) {
        return entry.isSetAside && entry.when == older;
      });
      const std::string least = leastMissed(entries);
      // One alone that is too large, such as a project that was set aside, is no reason to keep no copy.
      if (least.empty()) break;
      drop(least);
      usage = measure();
    }
    room_ = std::max(needed, largestHistory - std::min(usage, largestHistory));
    writeAtomically(folder_, kUsage, std::to_string(usage + needed), 0600);
    return true;
  }

  unsigned long long measure(const std::string& path = ".") const {
    unsigned long long bytes = 0;
    Sandboxed(tools_, folder_)
        .run("CAP_DAC_READ_SEARCH", {"/usr/bin/du", "-sB1", path}, {}, [&](const std::string& line) {
          bytes = std::strtoull(line.c_str(), nullptr, 10);
          return true;
        });
    return bytes;
  }

  int copy(const KeptFolders& folders, const Walk& walked, const std::string& last) const {
    if (mkdirat(folder_, kBeingMade, 0700) != 0) return -1;
    if (walked.items.empty()) return 0;
    std::vector<std::string> command(kCopying.begin(), kCopying.end());
    command.insert(command.end(), {"--from0", "--files-from=-", "--modify-window=-1",
                                   "--exclude=/*/*/**/" + std::string(folderLeftOut) + "/",
                                   "--exclude=/*/*/" + std::string(folderLeftOut) + "/",
                                   "--max-size=" + std::to_string(largestFileKept), "--out-format=%l"});
    if (walked.hasDisguisedChange) command.push_back("--checksum");
    if (!last.empty()) command.push_back("--link-dest=/to/" + last);
    command.insert(command.end(), {"/from/", std::string("/to/") + kBeingMade + "/"});
    std::string list;
    for (const auto& item : walked.items) list.append(item.path).push_back('\0');
    Sandboxed sandbox(tools_, folder_);
    sandbox.show(folders);
    unsigned long long bytes = 0;
    const int status = sandbox.run("CAP_DAC_READ_SEARCH", command, list, [&](const std::string& line) {
      bytes += std::strtoull(line.c_str(), nullptr, 10);
      return bytes <= room_;
    });
    return bytes > room_ ? kTooMuch : status;
  }

  void drop(const std::string& when) const {
    renameat(folder_, when.c_str(), folder_, (kBeingDropped + when).c_str());
    const std::string aside = std::string(kSetAside) + "/" + when;
    renameat(folder_, aside.c_str(), folder_, (std::string(kBeingDropped) + "aside-" + when).c_str());
    sweep();
  }

  // Removes what was being made or dropped, also by a process that was killed.
  void sweep() const {
    std::vector<std::string> command{"/usr/bin/rm", "-rf", "--"};
    for (const auto& name : namesIn(folder_).value_or(std::vector<std::string>())) {
      if (name == kBeingMade || name.starts_with(kBeingDropped)) command.push_back(name);
    }
    if (command.size() > 3) runOnHistory("CAP_DAC_OVERRIDE", command);
  }

  int runOnHistory(const char* capability, const std::vector<std::string>& command) const {
    return Sandboxed(tools_, folder_).run(capability, command, {}, [](const auto&) { return true; });
  }

  void thinOut() const {
    const std::time_t now = std::time(nullptr);
    std::vector<HistoryEntry> copies;
    for (auto& entry : history_.entries()) {
      if (!entry.isSetAside)
        copies.push_back(std::move(entry));
      else if (now - timeOf(entry.when) > kOldestSetAside)
        drop(entry.when);
    }
    for (const auto& when : thinnedOut(copies, now)) drop(when);
  }

  const HistoryFolder& history_;
  int folder_;
  int var_;
  const HistoryTools& tools_;
  unsigned long long room_ = 0;
};

}  // namespace

void takeCopy(const HistoryFolder& history, int var, const HistoryTools& tools, Insistence insistence) {
  Copying(history, var, tools).take(insistence);
}

void partMoved(const HistoryFolder& history, const HistoryTools& tools) {
  Copying(history, -1, tools).partMoved();
}

}  // namespace device
