// Finding files and lines of the current project, in all of its folders but ".theos" and ".git", and adding
// files to it. Paths are relative to the project.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// More files than these are not looked for.
inline constexpr std::size_t mostProjectFiles = 50'000;

// The paths of the current project's files, sorted. Links to files are files; links to folders are not
// followed.
std::vector<std::string> currentProjectFiles();

// The indices of the paths that hold the letters of `typed` in their order, ignoring the case of ASCII and
// blanks, best first: what is typed without gaps, at the beginning of words and in the file's own name counts
// most. All of them, in their order, where nothing is typed.
std::vector<std::size_t> bestMatches(const std::vector<std::string>& paths, std::string_view typed);

// Makes the empty file `path` in the current project, and the folders that it needs there, without following
// links. False where something of that name exists, the path leads out of the project, or the file system
// refuses.
bool createProjectFile(const std::string& path);

struct FoundLine {
  std::string path;
  long line = 0;     // from 1
  long column = 0;   // of the first match, from 1 and in bytes
  std::string text;  // without what indents it, and cut where it is long; valid UTF-8
};

// Looks for all lines that hold `word` (one line, not empty), ignoring case, with grep. `found` is called
// with some lines at a time, and with none while there are none yet; it returns false to stop the search.
// Blocks. Not on the main thread.
void searchCurrentProject(const std::string& word,
                          const std::function<bool(std::vector<FoundLine> lines)>& found);
