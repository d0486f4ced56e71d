#include "workspace/ProjectSearch.h"

#include "core/Descriptor.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"
#include "workspace/ProjectFiles.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

constexpr int deepestFolder = 32;
constexpr std::size_t longestLine = 200;        // bytes of a line that are shown
constexpr std::size_t longestOutput = 1 << 20;  // of a line of grep's; what is behind it is left out

// How much a letter of `path` counts where it is matched: more where a word begins, most in the file's name.
int worthAt(std::string_view path, std::size_t at, std::size_t nameBegin) {
  int worth = at >= nameBegin ? 3 : 1;
  if (at == nameBegin) return worth + 6;
  const char before = at == 0 ? '/' : path[at - 1];
  const bool begins = std::isalnum(static_cast<unsigned char>(before)) == 0 ||
                      (std::islower(static_cast<unsigned char>(before)) != 0 &&
                       std::isupper(static_cast<unsigned char>(path[at])) != 0);
  return worth + (begins ? 4 : 0);
}

// The worth of the best way to find `letters` (folded, not empty) in `path`; -1 where there is none. `row` is
// room to work in.
int worthOf(std::string_view path, std::string_view letters, std::vector<std::pair<int, int>>& row) {
  constexpr int none = -1;
  constexpr int together = 5;
  const std::size_t slash = path.rfind('/');
  const std::size_t nameBegin = slash == std::string_view::npos ? 0 : slash + 1;
  // For each place: the best worth of the letters so far that ends just there, and the best one up to there.
  row.assign(path.size(), {none, 0});
  int best = 0;
  for (std::size_t letter = 0; letter < letters.size(); ++letter) {
    std::pair<int, int> before{none, letter == 0 ? 0 : none};  // the row of the letter before, one place back
    best = none;
    for (std::size_t at = 0; at < path.size(); ++at) {
      int here = none;
      if (folded(path[at]) == letters[letter]) {
        const int worth = worthAt(path, at, nameBegin);
        if (before.second != none) here = before.second + worth;
        if (before.first != none) here = std::max(here, before.first + worth + together);
      }
      best = std::max(best, here);
      before = std::exchange(row[at], {here, best});
    }
    if (best == none) return none;
  }
  return best;
}

// "PATH\0LINE:TEXT" of grep, without the line feed.
bool parseLine(std::string_view output, std::string_view word, FoundLine& found) {
  const std::size_t zero = output.find('\0');
  if (zero == std::string_view::npos) return false;
  const std::string_view rest = output.substr(zero + 1);
  const std::size_t colon = rest.find(':');
  if (colon == std::string_view::npos ||
      std::from_chars(rest.data(), rest.data() + colon, found.line).ec != std::errc())
    return false;
  found.path = output.substr(0, zero);
  if (found.path.starts_with("./")) found.path.erase(0, 2);
  std::string_view text = rest.substr(colon + 1);
  // The editor keeps a byte-order mark apart.
  if (found.line == 1 && text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const auto match = std::search(text.begin(), text.end(), word.begin(), word.end(),
                                 [](char one, char other) { return folded(one) == folded(other); });
  const auto at = match == text.end() ? std::size_t{0} : static_cast<std::size_t>(match - text.begin());
  found.column = static_cast<long>(at) + 1;
  // A match far along a line is shown with a little of what is before it.
  std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  if (at > begin + longestLine / 2) begin = at - longestLine / 4;
  while (begin < text.size() && !startsCharacter(text[begin])) ++begin;
  text.remove_prefix(begin);
  std::size_t end = std::min(text.size(), longestLine);
  while (end > 0 && end < text.size() && !startsCharacter(text[end])) --end;
  found.text = withReplacementCharacters(text.substr(0, end));
  return true;
}

}  // namespace

std::vector<std::string> currentProjectFiles() {
  const std::string project = fill(paths::project, {currentProject()}) + '/';
  std::vector<std::string> files;
  // The upper folders first, so that a huge one does not keep out the files above it. A folder that cannot be
  // read, or vanishes meanwhile, holds nothing.
  std::vector<std::string> folders{""};
  const auto hasRoom = [&files] { return files.size() < mostProjectFiles; };
  for (std::size_t next = 0; next < folders.size() && hasRoom(); ++next) {
    const std::string folder = folders[next];
    const bool isDeepest = std::count(folder.begin(), folder.end(), '/') == deepestFolder;
    std::error_code error;
    std::error_code vanished;  // such an entry is neither
    fs::directory_iterator entry(project + folder, error);
    for (; entry != fs::directory_iterator() && hasRoom(); entry.increment(error)) {
      const std::string name = entry->path().filename();
      if (name == ".theos" || name == ".git") continue;
      if (entry->is_regular_file(vanished)) files.push_back(folder + name);
      if (!isDeepest && entry->symlink_status(vanished).type() == fs::file_type::directory)
        folders.push_back(folder + name + '/');
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::size_t> bestMatches(const std::vector<std::string>& paths, std::string_view typed) {
  std::string letters = withoutBlanks(typed);
  std::transform(letters.begin(), letters.end(), letters.begin(), folded);
  std::vector<std::pair<int, std::size_t>> matches;
  std::vector<std::pair<int, int>> room;
  for (std::size_t index = 0; index < paths.size(); ++index) {
    const int worth = letters.empty() ? 0 : worthOf(paths[index], letters, room);
    if (worth >= 0) matches.emplace_back(worth, index);
  }
  if (!letters.empty()) {
    std::stable_sort(matches.begin(), matches.end(), [&paths](const auto& one, const auto& other) {
      if (one.first != other.first) return one.first > other.first;
      return paths[one.second].size() < paths[other.second].size();
    });
  }
  std::vector<std::size_t> indices(matches.size());
  std::transform(matches.begin(), matches.end(), indices.begin(),
                 [](const auto& match) { return match.second; });
  return indices;
}

bool createProjectFile(const std::string& path) {
  if (!isBelowProject(path)) return false;
  constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  Descriptor folder(open(fill(paths::project, {currentProject()}).c_str(), folderFlags));
  std::size_t begin = 0;
  for (std::size_t end = path.find('/'); folder && end != std::string::npos; end = path.find('/', begin)) {
    const std::string name = path.substr(begin, end - begin);
    mkdirat(folder.get(), name.c_str(), 0755);
    folder = Descriptor(openat(folder.get(), name.c_str(), folderFlags));
    begin = end + 1;
  }
  return folder &&
         static_cast<bool>(Descriptor(openat(folder.get(), path.c_str() + begin,
                                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644)));
}

void searchCurrentProject(const std::string& word,
                          const std::function<bool(std::vector<FoundLine> lines)>& found) {
  // Behind -r grep reads neither devices and FIFOs nor what links lead to.
  const std::string command =
      fill("cd %@ && grep -rnIiFZ --exclude-dir=.theos --exclude-dir=.git -e %@ . < /dev/null 2> /dev/null",
           {quoted(fill(paths::project, {currentProject()})), quoted(word)});
  std::string rest;
  bool isCut = false;  // of the line that `rest` begins
  read_cmd(command, [&](std::string_view piece) {
    std::vector<FoundLine> lines;
    for (std::size_t feed = piece.find('\n'); feed != std::string_view::npos; feed = piece.find('\n')) {
      if (!isCut) rest.append(piece.substr(0, feed));
      FoundLine line;
      if (parseLine(rest, word, line)) lines.push_back(std::move(line));
      rest.clear();
      isCut = false;
      piece.remove_prefix(feed + 1);
    }
    if (!isCut) rest.append(piece);
    isCut = rest.size() > longestOutput;
    return found(std::move(lines));
  });
}
