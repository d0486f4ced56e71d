#include "build/BuildProblem.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <optional>
#include <set>
#include <tuple>

namespace {

using std::size_t;
using std::string;
using std::string_view;
using Kind = Problem::Kind;

constexpr size_t mostOfAKind = 2000;
constexpr size_t linesToCaret = 6;

bool contains(string_view text, string_view part) {
  return !text.empty() && memmem(text.data(), text.size(), part.data(), part.size()) != nullptr;
}

bool containsAny(string_view text, std::initializer_list<string_view> phrases) {
  return std::any_of(phrases.begin(), phrases.end(),
                     [text](string_view each) { return contains(text, each); });
}

// Takes `prefix` from the beginning of `text`; false where it begins otherwise.
bool take(string_view& text, string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

// Takes a number from 1 on.
std::optional<int> takeNumber(string_view& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 1) return std::nullopt;
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  return number;
}

struct Place {
  string_view file;
  int line = 0;
  int column = 0;
};

// Takes "FILE:12:5:" or "FILE:12:" and the blanks behind it, or "FILE:12," at the end.
std::optional<Place> takePlace(string_view& text) {
  for (size_t colon = text.find(':'); colon != string_view::npos; colon = text.find(':', colon + 1)) {
    string_view rest = text.substr(colon + 1);
    Place place{text.substr(0, colon)};
    const auto line = takeNumber(rest);
    if (colon == 0 || !line || (!take(rest, ":") && rest != ",")) continue;
    place.line = *line;
    string_view behind = rest;
    if (const auto column = takeNumber(behind); column && take(behind, ":")) {
      place.column = *column;
      rest = behind;
    }
    text = trimmed(rest);
    return place;
  }
  return std::nullopt;
}

// Takes "error: " and the like, in either case.
std::optional<Kind> takeKind(string_view& text) {
  constexpr std::pair<string_view, Kind> words[] = {
      {"fatal error:", Kind::Error}, {"internal compiler error:", Kind::Error},
      {"error:", Kind::Error},       {"warning:", Kind::Warning},
      {"note:", Kind::Note},         {"remark:", Kind::Note}};
  for (const auto& [word, kind] : words) {
    if (text.size() < word.size() || strncasecmp(text.data(), word.data(), word.size()) != 0) continue;
    text = trimmed(text.substr(word.size()));
    return kind;
  }
  return std::nullopt;
}

// Takes "ld64.lld: error: ", "error: " or Theos's "==> Error: ".
std::optional<Kind> takeProgramAndKind(string_view& text) {
  string_view rest = text;
  take(rest, "==> ");
  const size_t colon = rest.find(": ");
  const bool isWord = colon != string_view::npos && rest.substr(0, colon).find(' ') == string_view::npos;
  auto kind = takeKind(rest);
  if (!kind && isWord) {
    const bool isLinker = rest.starts_with("ld: ");
    rest.remove_prefix(colon + 2);
    kind = takeKind(rest);
    if (isLinker && !kind) kind = Kind::Error;
  }
  if (kind) text = rest;
  return kind;
}

// Takes " at FILE line 12." from the end of what Perl says, up to the first full stop or comma.
std::optional<Place> takePerlPlace(string_view& text) {
  for (size_t word = text.rfind(" line "); word != string_view::npos && word > 0;
       word = text.rfind(" line ", word - 1)) {
    string_view rest = text.substr(word + 6);
    const size_t at = text.rfind(" at ", word);
    const auto line = takeNumber(rest);
    if (!line || at == string_view::npos || (!rest.empty() && rest.front() != '.' && rest.front() != ','))
      continue;
    const Place place{text.substr(at + 4, word - at - 4), *line};
    if (place.file.empty() || place.file.front() == '(' || place.file.find(' ') != string_view::npos)
      continue;
    // What follows "near" belongs to the message.
    text = rest.starts_with(", near") ? text : text.substr(0, at);
    return place;
  }
  return std::nullopt;
}

// Takes "make[2]: ".
bool takeMake(string_view& text) {
  const size_t colon = text.find(": ");
  if (colon == string_view::npos) return false;
  string_view program = text.substr(0, colon);
  if (program.ends_with(']')) program = program.substr(0, program.rfind('['));
  if (program.substr(program.rfind('/') + 1) != "make" && !program.ends_with("gmake")) return false;
  text.remove_prefix(colon + 2);
  return true;
}

bool isMakefile(string_view path) {
  const string_view name = path.substr(path.rfind('/') + 1);
  return name == "Makefile" || name == "makefile" || name == "GNUmakefile" || name.ends_with(".mk");
}

// Whether it says no more than that something above it failed.
bool onlyFollows(string_view message) {
  return containsAny(
      message, {"linker command failed", "ld returned 1 exit status", "symbol(s) not found for architecture",
                "Undefined symbols for architecture", "subprocess returned error exit status"});
}

// Whether `line` has nothing but carets, and the ends of what they underline.
bool isCaretLine(string_view line) {
  // "      |     ^~~"
  const size_t bar = line.find_first_not_of(' ');
  if (bar != string_view::npos && line[bar] == '|') line.remove_prefix(bar + 1);
  return line.find('^') != string_view::npos && line.find_first_not_of(" \t\r^~{}") == string_view::npos;
}

// "a/./b/../c/" as "a/c"; what leads above the beginning keeps its "..".
string normalPath(string_view path) {
  string normal = std::filesystem::path(path).lexically_normal();
  if (normal.size() > 1 && normal.ends_with('/')) normal.pop_back();
  return normal == "." ? string() : normal;
}

// The source that "Tweak.x.m" or "Tweak.x.0a1b2c3d.o" was made from.
string_view withoutGeneratedEndings(string_view path) {
  if (path.ends_with(".o")) {
    path.remove_suffix(2);
    const string_view hash = path.substr(path.rfind('.') + 1);
    if (hash.size() == 8 && hash.find_first_not_of("0123456789abcdef") == string_view::npos)
      path.remove_suffix(9);
  }
  for (const string_view ending : {".m", ".mm"}) {
    const string_view source = path.substr(0, path.size() - std::min(path.size(), ending.size()));
    for (const string_view logos : {".x", ".xm", ".xi", ".xmi"}) {
      if (path.ends_with(ending) && source.ends_with(logos)) return source;
    }
  }
  return path;
}

// Reads a log line by line.
class Reader {
 public:
  explicit Reader(const BuiltProject& project) : project_(project) {}

  void read(string_view line, bool hasColon) {
    if (awaitsCaret_ > 0 || mayMatter(line, hasColon)) {
      plain_ = withoutSequences(line);
      while (!plain_.empty() && plain_.back() == '\r') plain_.pop_back();
      const size_t before = problems.size();
      if (!readCaret() && !readContinuation()) understand(plain_);
      if (problems.size() != before) awaitsCaret_ = linesToCaret;
    }
    ++number_;
  }

  std::vector<Problem> problems;

 private:
  // Most lines of a log name nothing, and are not looked at any closer.
  static bool mayMatter(string_view line, bool hasColon) {
    const size_t end = line.find_last_not_of("\r\033 ");
    if (end == string_view::npos) return false;
    if (hasColon && (line[end] == ':' || line[end] == ',' || contains(line, ": ") || contains(line, ":\033")))
      return true;
    const char first = line.front();
    if (first == 'm' || first == '/') return contains(line, " -C ");
    if (line.starts_with("cd ") || line.starts_with(">>> ")) return true;
    if ((first == '>' || first == ' ' || first == 'M' || first == '\033') && contains(line, "aking "))
      return true;
    return (line[end] == '.' || line[end] == '"') && contains(line, " line ");
  }

  void understand(string_view text) {
    const string_view whole = text;
    text = trimmed(text);
    if (followFolder(text)) return;
    if (readLinker(text, whole)) return;
    if (contains(text, "warnings being treated as errors")) {
      strict_ = true;
      return;
    }
    string_view rest = text;
    if (takeMake(rest)) {
      readMake(rest);
      return;
    }
    rest = text;
    const bool included = take(rest, "In file included from ") || (whole != text && take(rest, "from "));
    if (const auto place = takePlace(rest)) {
      if (included) return add(Kind::Note, *place, "included from here");
      if (const auto kind = takeKind(rest)) {
        const bool stops = strict_ && *kind == Kind::Warning && place->column == 0;
        return add(stops ? Kind::Error : *kind, *place, rest);
      }
      if (take(rest, "*** ")) return add(Kind::Error, *place, withoutStop(rest));
      if (contains(rest, "undefined reference to ") || contains(rest, "multiple definition of "))
        return add(Kind::Error, *place, rest);
      if (place->column == 0 && isMakefile(place->file))
        return add(rest.ends_with("No such file or directory") ? Kind::Error : Kind::Warning, *place, rest);
    }
    if (const auto kind = takeProgramAndKind(text)) {
      const bool follows = *kind == Kind::Error && hasError_ && onlyFollows(text);
      if (!follows) readUnplaced(*kind, text);
      return;
    }
    readScript(text);
  }

  // Perl's "… at FILE line 12." and a shell's "FILE: line 12: …" or "FILE: 12: …".
  void readScript(string_view text) {
    string_view rest = text.substr(std::min(text.find(": "), text.size()));
    Place place{text.substr(0, text.size() - rest.size())};
    if (take(rest, ": ")) {
      const bool isBash = take(rest, "line ");
      place.line = takeNumber(rest).value_or(0);
      if (place.line > 0 && take(rest, ": ")) {
        const bool known = isSource(sourceOf(place.file));
        if (known || (isBash && rest.ends_with("not found"))) add(Kind::Error, known ? place : Place(), rest);
        return;
      }
    }
    if (const auto perl = takePerlPlace(text)) {
      const bool harmless =
          containsAny(text, {"Use of uninitialized", "Useless use", "Possible ", " redefined"});
      add(harmless ? Kind::Warning : Kind::Error, *perl, text);
    }
  }

  // A problem whose line begins with no place.
  void readUnplaced(Kind kind, string_view text) {
    Place place;
    if (const size_t near = text.find("' near line "); near != string_view::npos) {
      string_view rest = text.substr(near + 12);
      const size_t quote = text.rfind('\'', near - 1);
      if (quote != string_view::npos && near > 0)
        place = {text.substr(quote + 1, near - quote - 1), takeNumber(rest).value_or(0)};
      continues_ = text.ends_with(':');
    } else if (const auto perl = takePerlPlace(text); perl && isSource(sourceOf(perl->file))) {
      place = *perl;
    }
    if (place.file.empty()) place.file = quotedSource(text);
    const bool isControl = containsAny(text, {"control file", "package name", "package version"});
    if (place.file.empty() && isControl && isSource(sourceOf("control"))) place.file = "control";
    add(kind, place, text);
  }

  // The last word in quotation marks that is a file of the project.
  string_view quotedSource(string_view text) const {
    for (size_t end = text.rfind('\''); end != string_view::npos && end > 0;) {
      const size_t begin = text.rfind('\'', end - 1);
      if (begin == string_view::npos) break;
      const string_view word = text.substr(begin + 1, end - begin - 1);
      if (!word.empty() && isSource(sourceOf(word))) return word;
      end = begin;
    }
    return {};
  }

  void readMake(string_view text) {
    const bool stops = take(text, "*** ");
    if (take(text, "[")) {
      // "[Makefile:8: all] Error 2", in which old versions of make have no place. The first error of all is
      // what failed; those of the makes around it follow from it.
      string_view rest = text;
      auto place = takePlace(rest).value_or(Place());
      const string source = sourceOf(rest.substr(0, rest.find(']')));
      const string message = (rest.starts_with("***") ? string() : "[") + string(rest);
      if (isSource(source)) place = {source};
      if (!stops) add(Kind::Warning, place, message);
      if (stops && !hasError_) add(Kind::Error, place, message);
      return;
    }
    if (stops) {
      const bool follows = !problems.empty() && problems.back().logLine + 1 == number_;
      if (text.ends_with("Stop.") && !follows) readUnplaced(Kind::Error, withoutStop(text));
    } else if (const auto kind = takeKind(text)) {
      readUnplaced(*kind, text);
    } else {
      // "Entering directory '/…'", in any language: what is at the top is left, anything else entered.
      const size_t begin = text.find('/');
      if (begin == string_view::npos) return;
      size_t end = text.size();
      while (end > begin && (text[end - 1] == '\'' || (text[end - 1] & 0x80) != 0)) --end;
      const string folder = inProject(normalPath(text.substr(begin, end - begin)));
      if (!folders_.empty() && folders_.back() == folder) {
        folders_.pop_back();
      } else {
        folders_.push_back(folder);
      }
    }
  }

  static string_view withoutStop(string_view text) {
    if (text.ends_with("Stop.")) text.remove_suffix(5);
    return trimmed(text);
  }

  bool readLinker(string_view text, string_view whole) {
    Problem* const last = problems.empty() ? nullptr : &problems.back();
    if (take(text, ">>> referenced by ") || take(text, ">>> defined in ") || take(text, ">>> defined at ")) {
      const string file(text.substr(0, text.find(" (")));
      const string placed = file + ":";
      string_view rest = placed;
      const Place place = takePlace(rest).value_or(Place{file});
      const string source = sourceOf(place.file);
      if (last && last->file.empty() && isSource(source)) {
        last->file = source;
        last->line = place.line;
      }
      return true;
    }
    if (text.starts_with('"') && text.ends_with("\", referenced from:")) {
      add(Kind::Error, {}, "undefined symbol: " + string(text.substr(1, text.rfind('"') - 1)));
      return true;
    }
    const size_t in = text.rfind(" in ");
    if (whole != text && in != string_view::npos && text.ends_with(".o") && last && last->file.empty()) {
      last->file = sourceOf(text.substr(in + 4));
      return true;
    }
    return false;
  }

  // Whether the line only tells where the lines after it were printed.
  bool followFolder(string_view text) {
    take(text, "> ");
    if (take(text, "Making ")) {
      text = text.substr(0, text.find(text.ends_with("...") ? "..." : "…"));
      if (const size_t in = text.find(" in "); in != string_view::npos) {
        enter(text.substr(in + 4));
      } else if (const size_t name = text.find(" for "); name != string_view::npos) {
        // Back in another folder: a tweak's filter list is beside its Makefile.
        const string_view instance = text.substr(name + 5);
        const string filter = string(instance.substr(instance.rfind(' ') + 1)) + ".plist";
        const auto from = foldersFromHere();
        const auto home = std::find_if(from.begin(), from.end(),
                                       [&](const string& each) { return isSource(joined(each, filter)); });
        if (home != from.begin() && home != from.end()) folders_.push_back(*home);
      }
      return true;
    }
    if (take(text, "cd ")) {
      enter(text.substr(0, text.find_first_of(" ;&")));
      return true;
    }
    const size_t option = text.find(" -C ");
    const string_view program = text.substr(0, text.find(' '));
    if (option == string_view::npos || program.substr(program.rfind('/') + 1) != "make") return false;
    text.remove_prefix(option + 4);
    enter(text.substr(0, text.find(' ')));
    return true;
  }

  // `folder` as it was named from the folder that make is in, or from one above.
  void enter(string_view folder) {
    for (const string& from : foldersFromHere()) {
      const string path = inProject(normalPath(joined(from, folder)));
      const auto below = std::lower_bound(project_.files.begin(), project_.files.end(), path + "/");
      if (below != project_.files.end() && below->starts_with(path + "/")) {
        folders_.push_back(path);
        return;
      }
    }
  }

  // The innermost first, each once, the project's own last.
  std::vector<string> foldersFromHere() const {
    std::vector<string> from;
    for (auto each = folders_.rbegin(); each != folders_.rend() && from.size() < 8; ++each) {
      if (std::find(from.begin(), from.end(), *each) == from.end()) from.push_back(*each);
    }
    if (std::find(from.begin(), from.end(), "") == from.end()) from.emplace_back();
    return from;
  }

  static string joined(string_view folder, string_view path) {
    if (folder.empty() || path.starts_with('/')) return string(path);
    return string(folder) + "/" + string(path);
  }

  bool isSource(const string& path) const {
    return std::binary_search(project_.files.begin(), project_.files.end(), path);
  }

  // Relative to the project where it is below it.
  string inProject(const string& path) const {
    string_view rest = path;
    if (take(rest, project_.folder) && take(rest, "/")) return string(rest);
    rest = path;
    if (take(rest, "/private") && take(rest, project_.folder) && take(rest, "/")) return string(rest);
    return path == project_.folder ? string() : path;
  }

  // The file of the project that a path in the log means, or else the path.
  string sourceOf(string_view printed) const {
    for (const string& folder : foldersFromHere()) {
      string path = inProject(normalPath(joined(folder, printed)));
      // What is generated or staged below .theos.
      if (const size_t hidden = path.find(".theos/"); hidden != string::npos) {
        const string_view made = string_view(path).substr(hidden + 7);
        if (made.starts_with("_/")) {
          const string staged(made.substr(2));
          const string name = lastPathComponent(staged);
          const bool isControl = staged == "DEBIAN/control";
          for (const string& source : {isControl ? name : "layout/" + staged, "layout/" + staged, name}) {
            if (isSource(source)) return source;
          }
        }
        if (made.starts_with("obj/")) {
          string_view object = made.substr(4);
          take(object, "debug/");
          object.remove_prefix(std::min(object.find('/'), object.size() - 1) + 1);
          path = inProject(normalPath(joined(folder, withoutGeneratedEndings(object))));
        }
      } else {
        path = withoutGeneratedEndings(path);
      }
      if (isSource(path)) return path;
      if (path.starts_with('/')) return path;
    }
    // Printed from a folder that nothing told of: the one file of that name.
    const string ending = "/" + string(withoutGeneratedEndings(normalPath(printed)));
    const string* only = nullptr;
    for (const string& file : project_.files) {
      if (!file.ends_with(ending)) continue;
      if (only) return ending.substr(1);
      only = &file;
    }
    return only ? *only : ending.substr(1);
  }

  void add(Kind kind, const Place& place, string_view message) {
    size_t& count = counts_[static_cast<size_t>(kind)];
    if (message.empty()) return;
    hasError_ = hasError_ || kind == Kind::Error;
    if (count == mostOfAKind) return;
    Problem problem{place.file.empty() ? string() : sourceOf(place.file),
                    place.line,
                    place.column,
                    kind,
                    string(message),
                    number_};
    // The lines of a generated file are not those of its source.
    if (place.file.find(".theos/obj/") != string_view::npos) problem.line = problem.column = 0;
    problem.repeated =
        !known_.emplace(problem.file, problem.line, problem.column, kind, problem.message).second;
    problems.push_back(std::move(problem));
    ++count;
  }

  // Whether the line belongs to the copy of the source below a message.
  bool readCaret() {
    if (awaitsCaret_ == 0) return false;
    --awaitsCaret_;
    Problem& problem = problems.back();
    if (problem.caretLines == 0 && number_ > problem.logLine + 1 && isCaretLine(plain_)) {
      problem.caretLine = number_;
      problem.caretLines = 1;
      awaitsCaret_ = 1;
      return true;
    }
    // The correction is right below.
    if (problem.caretLines == 1 && plain_.starts_with(' ') && !contains(plain_, ": ")) {
      problem.caretLines = 2;
      return true;
    }
    return false;
  }

  // Whether the line goes on with dpkg-deb's message.
  bool readContinuation() {
    const bool continues = continues_ && plain_.starts_with(' ');
    continues_ = false;
    if (continues && !problems.empty()) problems.back().message.append(" ").append(trimmed(plain_));
    return continues;
  }

  const BuiltProject& project_;
  string plain_;
  std::vector<string> folders_;
  std::set<std::tuple<string, int, int, Kind, string>> known_;
  std::array<size_t, 3> counts_{};
  size_t number_ = 0;
  size_t awaitsCaret_ = 0;  // so many more lines
  bool continues_ = false;
  bool strict_ = false;
  bool hasError_ = false;
};

}  // namespace

std::string placeOf(const Problem& problem) {
  string place = problem.file;
  if (problem.line > 0) place += ":" + std::to_string(problem.line);
  if (problem.column > 0) place += ":" + std::to_string(problem.column);
  return place;
}

std::string textOf(const Problem& problem) {
  constexpr std::array<const char*, 3> words{"error: ", "warning: ", "note: "};
  const string place = placeOf(problem);
  return place + (place.empty() ? "" : ": ") + words[static_cast<size_t>(problem.kind)] + problem.message;
}

std::vector<Problem> problemsIn(std::string_view log, const BuiltProject& project) {
  Reader reader(project);
  size_t colon = log.find(':');
  for (size_t begin = 0; begin < log.size();) {
    const size_t end = std::min(log.find('\n', begin), log.size());
    reader.read(log.substr(begin, end - begin), colon < end);
    if (colon < end) colon = log.find(':', end);
    begin = end + 1;
  }
  return std::move(reader.problems);
}
