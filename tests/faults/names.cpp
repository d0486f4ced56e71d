// Names that mean something to a shell or a file system, by the hundreds.
#include "support/Operations.h"
#include "tests/faults/Subject.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <sstream>

namespace {

const std::string canary = "/var/canary";

// Parted by blanks, which typed names lose. "%@" is what they aim at, "_" is a tab and "^" the end of a line,
// which part words of commands. None means the whole root folder, which takes long to copy, and none starts a
// shell: that would read the log which its own complaints go to, for ever.
const std::string typedPieces = R"(
$(rm_-rf_%@) `rm_-rf_%@` ;rm_-rf_%@; &&rm_-rf_%@&&true ||rm_-rf_%@||true $(rm${IFS}-rf${IFS}%@) ;{rm,-rf,%@};
^rm_-rf_%@^ ";rm_-rf_%@;" ';rm_-rf_%@;' ;echo_struck>%@/precious; >%@/precious >>%@/precious |tee_%@/precious
;touch_%@/new; ;ln_-s_%@_/var/Tweakyard/Projects/link; ;mv_%@_/var/taken; ;chmod_-R_0_%@; $(cd_%@&&rm_*)
_rm_%@/precious ../../../../../..%@ ../../..%@/precious %@ %@/* ;cp_-r_/etc/passwd_%@/precious $(find_%@_-delete)
^ _ ' " ` $( ) ${ $'\x \ \^ ; & | < ( # ! * ? [a-z]* {a,b} ~ ~root $HOME $$ - -- -rf --help -delete . .. ../.. / //
%s%n P Tweak.x nul)";

std::vector<std::string> allPieces() {
  std::vector<std::string> pieces;
  std::istringstream typed(typedPieces);
  for (std::string piece; typed >> piece;)
    pieces.push_back(replaceAll(replaceAll(piece, "_", "\t"), "^", "\n"));
  for (const char* other : {"\r", "\x01", "\x1b[31m", "\x7f", "\xff\xfe", "\xc3", "\xe2\x80\xae",
                            "\xe2\x80\xa8", "caf\xc3\xa9", "a b"})
    pieces.emplace_back(other);
  for (const auto& [length, letter] : {std::pair(255, 'n'), {256, 'n'}, {5000, '/'}})
    pieces.emplace_back(length, letter);
  return pieces;
}

// What is copied under such a name is the whole device with the host's programs, for as long as there is
// room.
bool leadsNowhereButUp(const std::string& name) {
  return name.find_first_not_of("./") == std::string::npos;
}

const std::vector<std::vector<std::string>> uses{{"create %@"},
                                                 {"header %@"},
                                                 {"rename file Tweak.x -> %@"},
                                                 {"rename file %@ -> Other.x"},
                                                 {"rename %@"},
                                                 {"delete file %@"},
                                                 {"delete %@"},
                                                 {"check %@", "pick %@"},
                                                 {"choose %@", "back up"},
                                                 {"restore %@"},
                                                 {"import %@"},
                                                 {"export %@"},
                                                 {"choose %@", "build"},
                                                 {"convert 1) %@"}};

void use(const std::vector<std::string>& steps, const std::string& name) {
  if (leadsNowhereButUp(name) && (steps.back() == "back up" || steps.back() == "import %@")) return;
  performAll(steps, name);
}

class Names {
 public:
  explicit Names(const std::string& outside)
      : targets_{
            canary, canary, outside, "/oldroot" + outside, "/.host" + outside, "/proc/1/root" + outside} {}

  std::string next() {
    std::string name;
    for (std::size_t left = 1 + random(3); left > 0; --left) {
      name += replaceAll(pieces_[random(pieces_.size())], "%@", targets_[random(targets_.size())]);
    }
    return name;
  }

 private:
  std::size_t random(std::size_t below) { return numbers_() % below; }

  // The same names each time.
  std::mt19937 numbers_{20'010};
  std::array<std::string, 6> targets_;
  const std::vector<std::string> pieces_ = allPieces();
};

void plantCanary() {
  removeItemAtPath(canary);
  putFile(canary + "/precious", "kept");
}

bool isStruck() {
  const auto entries = contentsOfDirectoryAtPath(canary);
  return !entries || entries->size() != 1 || fileAt(canary + "/precious") != "kept";
}

// The names delete and rename what lies around them, so every one finds a whole workspace.
void restoreWorkspace() {
  for (const char* list : {"Choose", "Files", "Checker"})
    putFile(device::application + list + ".plist", device::emptyList());
  // A name may have left something else in the place of a folder.
  removeItemAtPath("/var/Tweakyard");
  putFile(device::projects + "P/Tweak.x", "%hook A\n");
  putFile(device::projects + "P/Makefile", "package:\n\t@mkdir packages\n");
  putFile("/var/Tweakyard/tmp/SuccessfullyUpdated.log", "");
  chooseProject("P");
}

}  // namespace

int subject::runNastyNames(int count, const std::string& outside) {
  const Descriptor report(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 200));
  if (freopen("/dev/null", "r", stdin) == nullptr || freopen("/dev/null", "w", stdout) == nullptr ||
      freopen("/dev/null", "w", stderr) == nullptr) {
    return 1;
  }
  Names names(outside);
  int strikes = 0;
  plantCanary();
  for (int index = 0; index < count; ++index) {
    restoreWorkspace();
    use(uses[static_cast<std::size_t>(index) % uses.size()], names.next());
    if (!isStruck()) continue;
    ++strikes;
    run_cmd("chmod -R u+rwX /var/canary 2> /dev/null");
    plantCanary();
  }
  dprintf(report.get(), "%d %d\n", count, strikes);
  return 0;
}
