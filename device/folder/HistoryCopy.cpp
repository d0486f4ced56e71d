#include "device/Process.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/HistoryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <map>
#include <sstream>
#include <sys/file.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* lockFile = "lock";
constexpr const char* stateFile = "state";
constexpr const char* beingMade = ".new-copy";
const std::string beingDropped = ".old-";
constexpr const char* beingParted = ".old-parted";
constexpr std::size_t largestState = std::size_t{512} << 20;
// Left free for everything else on the disk.
constexpr unsigned long long leftFree = 64ULL << 20;
constexpr auto longestCopy = std::chrono::minutes(10);
// rsync, so that whatever it copies can be read and removed afterwards.
constexpr std::array copying{"/rsync", "-rlptS", "--chmod=Du+rwx,Fu+rw,ug-s,o-t", "--no-specials",
                             "--no-devices"};
constexpr long oldestSetAside = 31L * 24 * 3600;

constexpr std::size_t mostEntriesKept = 200'000;
constexpr std::size_t mostRemarks = 20;
// Two bounds on what a build can make one walk cost. Each level takes one descriptor.
constexpr std::size_t mostVisited = 3 * mostEntriesKept;
constexpr int deepest = 200;
constexpr std::size_t flood = 10'000;
constexpr std::size_t longestPath = 4000;
constexpr std::size_t largestWalkedState = std::size_t{64} << 20;
constexpr std::uint64_t block = 4096;

// A project, a backup, or a project's packages.
struct WalkedItem {
  // Below a dated copy, such as Projects/NAME.
  std::string path;
  std::size_t entries = 0;
  // The sizes of what has to be copied, no less than what that takes on the disk.
  std::uint64_t newBytes = 0;
};

// The folders in which the kinds of things are; empty where there is none, or a link in its place.
using KeptFolders = std::map<Kept, Descriptor>;

// What the newest dated copy was made from, as DEVICE/history/state has it.
struct Record {
  // The copy's name; empty where there is none.
  std::string when;
  // When the walk before it began, in nanoseconds.
  std::int64_t began = 0;
  bool isWhole = false;
  std::string state;
};

std::uint64_t spaceOf(const struct stat& status) {
  return S_ISREG(status.st_mode) ? (static_cast<std::uint64_t>(status.st_size) + block - 1) / block * block
                                 : block;
}

// What is in the device, compared with the newest copy.
class Walk {
 public:
  // `last`, of the copy in the folder `history`, has to outlive this; it may be empty.
  Walk(const KeptFolders& folders, int history, const Record& last) : last_(last) {
    for (const auto& [kind, folder] : folders) {
      const Descriptor copy = openFolderBeneath(history, fs::path(last.when) / folderInHistory(kind));
      if (folder) walk(folder.get(), copy, folderInHistory(kind));
    }
    // So that an empty device has a state, too.
    state.push_back('\0');
  }

  // Every entry with its inode, size and times. Equal for two walks between which nothing changed; never
  // empty.
  std::string state;
  std::vector<WalkedItem> items;
  // What is left out, as sentences.
  std::vector<std::string> remarks;
  // False where something could not be looked at or copied, or was too much for that.
  bool isWhole = true;
  // Some file has the size and time that its copy has, and was changed nevertheless.
  bool hasDisguisedChange = false;
  // Some file is too large to keep.
  bool hasHugeFile = false;

  void leaveOut(const std::string& remark) {
    remarks.push_back(remark);
    isWhole = false;
  }

 private:
  // `copy` is the copied folder, or empty.
  void walk(int folder, const Descriptor& copy, const std::string& name) {
    struct stat status {};
    if (fstat(folder, &status) == 0) note(name, status);
    auto names = namesIn(folder);
    if (!names) return cut(name + " has too many entries, or cannot be read.");
    std::sort(names->begin(), names->end());
    // What is known already goes before what a build may have made without end.
    if (copy && names->size() > flood) {
      std::stable_partition(names->begin(), names->end(),
                            [&](const auto& each) { return exists(copy.get(), each); });
    }
    for (const auto& each : *names) {
      const std::string path = fs::path(name) / each;
      if (visited_ >= mostVisited || state.size() >= 3 * largestWalkedState)
        return cut(visible(path) + " and others are too many.");
      start_ = state.size();
      items.push_back({path, 0, 0});
      count(1);
      entry(folder, copy, each, path, 0);
      if (!isTooMuch()) continue;
      cut(visible(path) + " has too many entries.");
      state.resize(start_);
      items.pop_back();
    }
  }

  void remark(const std::string& sentence) {
    if (remarks.size() < mostRemarks) remarks.push_back(sentence);
    if (remarks.size() == mostRemarks) remarks.push_back("And more.");
  }
  void cut(const std::string& sentence) {
    remark(sentence);
    isWhole = false;
  }

  void count(std::size_t entries) {
    visited_ += entries;
    items.back().entries += entries;
  }

  bool isTooMuch() const {
    return items.back().entries >= mostEntriesKept || state.size() - start_ >= largestWalkedState;
  }

  void note(const std::string& path, const struct stat& status) {
    const std::int64_t facts[] = {static_cast<std::int64_t>(status.st_ino), status.st_size, status.st_mode,
                                  nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
    state.append(path).push_back('\0');
    state.append(reinterpret_cast<const char*>(facts), sizeof facts);
  }

  void entry(int parent, const Descriptor& copy, const std::string& name, const std::string& path,
             int depth) {
    WalkedItem& item = items.back();
    const struct stat status = statusOf(parent, name);
    if (status.st_mode == 0) return;
    const bool isFile = S_ISREG(status.st_mode);
    const bool isFolder = S_ISDIR(status.st_mode);
    if (isFolder && depth > 0 && name == folderLeftOut) return;
    if (isFile && static_cast<std::uint64_t>(status.st_size) > largestFileKept) {
      hasHugeFile = true;
      return remark(visible(path) + " has more than 64 MiB.");
    }
    note(path, status);
    const struct stat copied = statusOf(copy.get(), name);
    const bool isAlike = isFile && S_ISREG(copied.st_mode) && looksSame(copied, status);
    const bool isUntouched = nanoseconds(status.st_ctim) < last_.began;
    const bool isSame = isAlike && isUntouched;
    if (isAlike && !isSame) hasDisguisedChange = true;
    // What is in a folder that was moved here keeps its times.
    if (isFolder && !isUntouched && copied.st_mode != 0 && !wasAt(path, status.st_ino))
      hasDisguisedChange = true;
    if (!isSame) item.newBytes += spaceOf(status);
    if (isFolder) inside(parent, copy, name, path, depth);
    if (!isFolder && !isFile && !S_ISLNK(status.st_mode))
      remark(visible(path) + " is no file, folder or link.");
  }

  // Whether the last walk found this folder at `path`. False also where too many were asked for.
  bool wasAt(const std::string& path, ino_t inode) {
    const auto number = static_cast<std::int64_t>(inode);
    std::string key = path;
    key.push_back('\0');
    key.append(reinterpret_cast<const char*>(&number), sizeof number);
    return ++asked_ <= mostAsked && last_.state.find(key) != std::string::npos;
  }

  void inside(int parent, const Descriptor& copy, const std::string& name, const std::string& path,
              int depth) {
    if (depth >= deepest || path.size() > longestPath)
      return cut(visible(path.substr(0, 100)) + "… is nested too deeply.");
    const Descriptor opened = openFolderBeneath(parent, name);
    const auto names = namesIn(opened.get(), mostEntriesKept);
    if (!names && errno == E2BIG) count(mostEntriesKept);
    if (!names) return;  // The copy may be able to read it.
    count(names->size());
    const Descriptor innerCopy = openFolderBeneath(copy.get(), name);
    for (const auto& inner : *names) {
      if (isTooMuch()) return;
      entry(opened.get(), innerCopy, inner, fs::path(path) / inner, depth + 1);
    }
  }

  // Each question searches the whole state.
  static constexpr int mostAsked = 50;

  const Record& last_;
  int asked_ = 0;
  std::size_t visited_ = 0;
  // Of the item that is looked at: where its state begins.
  std::size_t start_ = 0;
};

KeptFolders openKept(int var) {
  KeptFolders folders;
  for (const Kept kind : allKept) folders[kind] = openFolderBeneath(var, folderInDevice(kind));
  return folders;
}

Record readRecord(int history) {
  const std::string text = readBeneath(history, stateFile, largestState).value_or("");
  const auto end = text.find('\n');
  std::istringstream head(text.substr(0, end));
  Record record;
  if (end == std::string::npos || !(head >> record.when >> record.began >> record.isWhole) ||
      timeOf(record.when) < 0 || !exists(history, record.when)) {
    return {};
  }
  record.state = text.substr(end + 1);
  return record;
}

bool writeRecord(int history, const Record& record) {
  std::ostringstream head;
  head << record.when << " " << record.began << " " << record.isWhole << "\n";
  return writeAtomically(history, stateFile, head.str() + record.state, 0600);
}

struct Copying {
  const HistoryFolder& history_;
  int var_;
  const HistoryTools& tools_;
  int folder_ = history_.folder();
  unsigned long long room_ = 0;

  void take(Insistence insistence) {
    const Descriptor lock = locked();
    if (!lock || tools_.rsync.empty()) return;
    const Record last = readRecord(folder_);
    const KeptFolders folders = openKept(var_);
    // By the same clock as the change times of files.
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    // First without a look at the last copy, which is what takes the time.
    const Record none;
    const bool isEnough = last.isWhole || insistence == Insistence::Changes;
    if (isEnough && Walk(folders, folder_, none).state == last.state) return;
    Walk walked(folders, folder_, last);
    // The order of many names depends on the last copy.
    if (walked.state == last.state && isEnough) return;
    // Where nothing was ever made, there is nothing to keep.
    if (last.when.empty() && walked.items.empty() && walked.isWhole) return;
    sweep();
    const auto oldBytes = last.when.empty() ? 0 : measure(last.when);
    const auto needed = chooseWhatFits(walked, oldBytes);
    if (!makeRoom(needed)) return;
    const int status = copy(folders, walked, last.when, patienceFor(needed, oldBytes));
    const bool isPartial = status == 23 || status == 24;
    if (status != 0 && !isPartial && status != tooMuch) return sweep();
    if (isPartial) walked.leaveOut("Something changed while it was copied, or has too long a path.");
    if (status == tooMuch) walked.leaveOut("There was more than could be counted before.");
    const Record made{history_.newName(), nanoseconds(now), walked.isWhole, std::move(walked.state)};
    std::string about = made.isWhole ? "whole\n" : "incomplete\n";
    for (const auto& remark : walked.remarks) about += remark + "\n";
    const Descriptor copied = openFolderBeneath(folder_, beingMade);
    if (!copied || !writeAtomically(copied.get(), aboutFile, about, 0600) ||
        !renameToNew(folder_, beingMade, folder_, made.when)) {
      return sweep();
    }
    writeRecord(folder_, made);
    thinOut();
  }

  void partMoved() const {
    const Descriptor lock = locked();
    if (!lock || tools_.rsync.empty()) return;
    for (const auto& when : history_.moved()) {
      sweep();
      const std::string entry = std::string(asideFolder) + "/" + when;
      const auto size = measure(entry);
      // What a build still has as its working folder may be there yet, and then it could lead the copy
      // astray.
      if (!hasRoomFor(size) || mkdirat(folder_, beingParted, 0700) != 0) continue;
      std::vector<std::string> command(copying.begin(), copying.end());
      command.insert(command.end(), {entry + "/", std::string(beingParted) + "/"});
      if (run("CAP_DAC_READ_SEARCH", command, patienceFor(size, 0)) == 0) history_.part(when, beingParted);
      sweep();
    }
  }

  static constexpr int tooMuch = 1000;

  // Takes the largest items out until the rest has room beside the last copy. Returns what they take.
  static std::uint64_t chooseWhatFits(Walk& walked, std::uint64_t oldBytes) {
    const auto isSmaller = [](const auto& one, const auto& other) { return one.newBytes < other.newBytes; };
    std::uint64_t sum = 0;
    for (const auto& item : walked.items) sum += item.newBytes;
    while (oldBytes + sum > largestHistory && !walked.items.empty()) {
      const auto largest = std::max_element(walked.items.begin(), walked.items.end(), isSmaller);
      walked.leaveOut(visible(largest->path) + " is too large.");
      sum -= largest->newBytes;
      walked.items.erase(largest);
    }
    return sum;
  }

  // Runs a program of the host's in a sandbox that has nothing but the history and, read-only, the folders to
  // copy: no link that a build plants leads anywhere. `capability` is what it has over the device user's own
  // files. Returns as runToEnd().
  int run(const char* capability, const std::vector<std::string>& command,
          std::chrono::seconds limit = longestCopy, const TakeOutput& take = {},
          const KeptFolders& shown = {}, const std::string& input = {}) const {
    std::istringstream fixed(
        "--unshare-all --unshare-user --die-with-parent --new-session --clearenv --ro-bind /usr /usr "
        "--symlink usr/lib /lib --symlink usr/lib64 /lib64 --dev /dev --dir /from --cap-drop ALL --cap-add");
    const Descriptor list = inMemory(input);
    ProcessStart start{{tools_.bubblewrap.string()}, std::vector<std::string>(), list.get()};
    start.passed = {folder_};
    start.endsBy = SIGKILL;
    const auto add = [&](std::initializer_list<std::string> words) {
      start.words.insert(start.words.end(), words);
    };
    start.words.insert(start.words.end(), std::istream_iterator<std::string>(fixed), {});
    add({capability, "--ro-bind-try", tools_.rsync.string(), "/rsync"});
    for (const auto& [kind, folder] : shown) {
      if (!folder) continue;
      add({"--ro-bind-fd", std::to_string(folder.get()), std::string("/from/") + folderInHistory(kind)});
      start.passed.push_back(folder.get());
    }
    add({"--bind-fd", std::to_string(folder_), "/to", "--remount-ro", "/", "--chdir", "/to", "--"});
    start.words.insert(start.words.end(), command.begin(), command.end());
    return runToEnd(start, limit, [&](int stream, std::string_view piece) {
      return stream != STDOUT_FILENO || !take || take(stream, piece);
    });
  }

  Descriptor locked() const {
    Descriptor lock(openat(folder_, lockFile, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (lock && flock(lock.get(), LOCK_EX) != 0) lock.close();
    return lock;
  }

  bool hasRoomFor(unsigned long long needed) const {
    std::error_code error;
    const auto disk = fs::space(pathOf(folder_), error);
    return !error && disk.available >= needed + leftFree;
  }

  // `room_` is afterwards what the copy may take. The usage on record is never too low, and measured again
  // before anything is dropped for it.
  bool makeRoom(unsigned long long needed) {
    if (!hasRoomFor(needed)) return false;
    unsigned long long usage =
        std::strtoull(readBeneath(folder_, usageFile, 64).value_or("0").c_str(), nullptr, 10);
    if (usage == 0 || usage + needed > largestHistory) usage = measure();
    while (usage + needed > largestHistory) {
      auto entries = history_.entries();
      // Without it a backup that is being made and is killed could not be undone.
      std::erase_if(entries, [older = history_.noted().older](const auto& entry) {
        return entry.isSetAside && entry.when == older;
      });
      const std::string least = leastMissed(entries);
      // A single entry that is too large, such as a set-aside project, does not stop the copy.
      if (least.empty() || !drop(least)) break;
      usage = measure();
    }
    room_ = std::max(needed, largestHistory - std::min(usage, largestHistory));
    writeAtomically(folder_, usageFile, std::to_string(usage + needed), 0600);
    return true;
  }

  unsigned long long measure(const std::string& path = ".") const {
    std::string said;
    run("CAP_DAC_READ_SEARCH", {"/usr/bin/du", "-sB1", path}, longestCopy, [&](int, std::string_view piece) {
      said += piece;
      return said.size() < 4096;
    });
    return std::strtoull(said.c_str(), nullptr, 10);
  }

  // Many times what a slow disk needs. rsync waits for ever where a build swaps a file for a pipe just before
  // it is opened.
  static std::chrono::seconds patienceFor(std::uint64_t newBytes, std::uint64_t oldBytes) {
    constexpr std::uint64_t newInASecond = 2 << 20;
    constexpr std::uint64_t oldInASecond = 16 << 20;
    const std::chrono::seconds patience(30 + newBytes / newInASecond + oldBytes / oldInASecond);
    return std::min<std::chrono::seconds>(patience, longestCopy);
  }

  int copy(const KeptFolders& folders, const Walk& walked, const std::string& last,
           std::chrono::seconds limit) const {
    if (mkdirat(folder_, beingMade, 0700) != 0) return -1;
    if (walked.items.empty()) return 0;
    std::vector<std::string> command(copying.begin(), copying.end());
    command.insert(command.end(), {"--from0", "--files-from=-", "--modify-window=-1",
                                   "--exclude=/*/*/**/" + std::string(folderLeftOut) + "/",
                                   "--exclude=/*/*/" + std::string(folderLeftOut) + "/",
                                   "--max-size=" + std::to_string(largestFileKept), "--out-format=%l"});
    // A checksum would be taken of what is too large, too.
    if (walked.hasDisguisedChange) command.push_back(walked.hasHugeFile ? "--ignore-times" : "--checksum");
    if (!last.empty()) command.push_back("--link-dest=/to/" + last);
    command.insert(command.end(), {"/from/", std::string("/to/") + beingMade + "/"});
    std::string list;
    for (const auto& item : walked.items) list.append(item.path).push_back('\0');
    unsigned long long bytes = 0;
    std::string lines;
    const auto take = [&](int, std::string_view piece) {
      lines += piece;
      std::size_t done = 0;
      for (std::size_t end = 0; (end = lines.find('\n', done)) != std::string::npos; done = end + 1)
        bytes += std::strtoull(lines.c_str() + done, nullptr, 10);
      lines.erase(0, done);
      return bytes <= room_;
    };
    const int status = run("CAP_DAC_READ_SEARCH", command, limit, take, folders, list);
    return bytes > room_ ? tooMuch : status;
  }

  // False where the entry stays, such as one of which something is being brought back.
  bool drop(const std::string& when) const {
    for (const std::string& name : {when, std::string(asideFolder) + "/" + when}) {
      const Descriptor entry = openFolderBeneath(folder_, name);
      if (!entry) continue;
      if (flock(entry.get(), LOCK_EX | LOCK_NB) != 0) return false;
      std::string dropped = beingDropped;
      if (name != when) dropped += "aside-";
      dropped += when;
      if (renameat(folder_, name.c_str(), folder_, dropped.c_str()) != 0) return false;
    }
    sweep();
    return true;
  }

  // Removes what was being made or dropped, also by a process that was killed.
  void sweep() const {
    std::vector<std::string> command{"/usr/bin/rm", "-rf", "--"};
    for (const auto& name : namesInOrNone(folder_)) {
      if (name == beingMade || name.starts_with(beingDropped)) command.push_back(name);
    }
    if (command.size() > 3) run("CAP_DAC_OVERRIDE", command);
  }

  void thinOut() const {
    const std::time_t now = std::time(nullptr);
    std::vector<HistoryEntry> copies;
    for (auto& entry : history_.entries()) {
      if (!entry.isSetAside)
        copies.push_back(std::move(entry));
      else if (now - timeOf(entry.when) > oldestSetAside)
        drop(entry.when);
    }
    for (const auto& when : thinnedOut(copies, now)) drop(when);
  }
};

}  // namespace

void takeCopy(const HistoryFolder& history, int var, const HistoryTools& tools, Insistence insistence) {
  Copying{history, var, tools}.take(insistence);
}

void partMoved(const HistoryFolder& history, const HistoryTools& tools) {
  Copying{history, -1, tools}.partMoved();
}
