// Names that mean something to a shell or a file system, by the hundreds.
#include "build/BuildRunner.h"
#include "core/run_cmd.h"
#include "support/Device.h"
#include "tests/faults/Subject.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <stdexcept>

namespace {

const std::string canary = "/var/canary";

// "%@" is what they aim at. Typed names lose their blanks, so commands in them are written with what a shell
// takes for one. None means the whole root folder, which takes long to copy, and none starts a shell: that
// would read the log which its own complaints go to, for ever.
const std::vector<std::string> pieces{
    "$(rm\t-rf\t%@)",
    "`rm\t-rf\t%@`",
    ";rm\t-rf\t%@;",
    "&&rm\t-rf\t%@&&true",
    "||rm\t-rf\t%@||true",
    "$(rm${IFS}-rf${IFS}%@)",
    ";{rm,-rf,%@};",
    "\nrm\t-rf\t%@\n",
    "\";rm\t-rf\t%@;\"",
    "';rm\t-rf\t%@;'",
    ";echo\tstruck>%@/precious;",
    ">%@/precious",
    ">>%@/precious",
    "|tee\t%@/precious",
    ";touch\t%@/new;",
    ";ln\t-s\t%@\t/var/Tweakyard/Projects/link;",
    ";mv\t%@\t/var/taken;",
    ";chmod\t-R\t0\t%@;",
    "$(cd\t%@&&rm\t*)",
    "\trm\t%@/precious",
    "../../../../../..%@",
    "../../..%@/precious",
    "%@",
    "%@/*",
    ";cp\t-r\t/etc/passwd\t%@/precious",
    "$(find\t%@\t-delete)",
    "\n",
    "\r",
    "\t",
    "'",
    "\"",
    "`",
    "$(",
    ")",
    "${",
    "$'\\x",
    "\\",
    "\\\n",
    ";",
    "&",
    "|",
    "<",
    "(",
    "#",
    "!",
    "*",
    "?",
    "[a-z]*",
    "{a,b}",
    "~",
    "~root",
    "$HOME",
    "$$",
    "-",
    "--",
    "-rf",
    "--help",
    "-delete",
    ".",
    "..",
    "../..",

    "/",
    "//",
    "%s%n",
    "\x01",
    "\x1b[31m",
    "\x7f",
    "\xff\xfe",
    "\xc3",
    "\xe2\x80\xae",
    "\xe2\x80\xa8",
    "caf\xc3\xa9",
    "a b",
    "P",
    "Tweak.x",
    "nul",
    std::string(255, 'n'),
    std::string(256, 'n'),
    std::string(5000, '/'),
};

// What is copied under such a name is the whole device with the host's programs, for as long as there is
// room.
bool leadsNowhereButUp(const std::string& name) {
  return name.find_first_not_of("./") == std::string::npos;
}

struct Use {
  const char* name;
  void (*with)(const std::string&);
};

const std::array<Use, 14> uses{{
    {"create", [](const std::string& name) { createProject(name); }},
    {"header", [](const std::string& name) { createHeader(name); }},
    {"rename a file", [](const std::string& name) { renameFile("Tweak.x", name); }},
    {"rename from", [](const std::string& name) { renameFile(name, "Other.x"); }},
    {"rename", [](const std::string& name) { renameProject(name); }},
    {"delete a file", [](const std::string& name) { deleteProjectFile(name); }},
    {"delete", [](const std::string& name) { deleteProject(name); }},
    {"pick",
     [](const std::string& name) {
       fileCheckRejects(name);
       SS(name);
     }},
    {"back up",
     [](const std::string& name) {
       chooseProject(name);
       if (!leadsNowhereButUp(name)) backUpProject();
     }},
    {"restore", [](const std::string& name) { restoreBackup(name); }},
    {"import",
     [](const std::string& name) {
       if (!leadsNowhereButUp(name)) importProject(name);
     }},
    {"export", [](const std::string& name) { exportProject(name); }},
    {"build",
     [](const std::string& name) {
       chooseProject(name);
       runBuildJob(BuildVariant::Package, [] {});
     }},
    {"convert",
     [](const std::string& name) {
       try {
         convertFlexPatch("1) " + name);
       } catch (const std::out_of_range&) {  // a title without a key
       }
     }},
}};

class Names {
 public:
  explicit Names(const std::string& outside)
      : targets_{
            canary, canary, outside, "/oldroot" + outside, "/.host" + outside, "/proc/1/root" + outside} {}

  std::string next() {
    std::string name;
    for (std::size_t left = 1 + random(3); left > 0; --left) {
      name += replaceAll(pieces[random(pieces.size())], "%@", targets_[random(targets_.size())]);
    }
    return name;
  }

 private:
  std::size_t random(std::size_t below) { return numbers_() % below; }

  // The same names each time.
  std::mt19937 numbers_{20'010};
  std::array<std::string, 6> targets_;
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
    uses[static_cast<std::size_t>(index) % uses.size()].with(names.next());
    if (!isStruck()) continue;
    ++strikes;
    run_cmd("chmod -R u+rwX /var/canary 2> /dev/null");
    plantCanary();
  }
  dprintf(report.get(), "%d %d\n", count, strikes);
  return 0;
}
