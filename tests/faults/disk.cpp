// A disk that is full, at every size of what is left.
#include "build/BuildRunner.h"
#include "core/run_cmd.h"
#include "support/Device.h"
#include "tests/faults/Subject.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <sys/wait.h>

namespace {

constexpr const char* filler = "/var/filler";
constexpr off_t page = 4096;
const std::string tweak = device::projects + "P/Tweak.x";
// Fills its pages, so that one more byte needs one more of them.
const std::string longText(12 * page, 't');

struct Sweep {
  const char* name;
  void (*act)();
  // Whether all of it was done.
  bool (*isDone)();
};

std::size_t entriesOf(const std::string& folder) {
  return contentsOfDirectoryAtPath(folder).value_or(std::vector<std::string>()).size();
}

// A template's files, and as many in every copy.
constexpr std::size_t projectFiles = 4;

bool isWholeProject(const std::string& folder) {
  return entriesOf(folder) == projectFiles && sizeOfFile(folder + "/Tweak.x") == longText.size();
}

const std::array<Sweep, 8> sweeps{{
    {"create", [] { createProject("New"); },
     [] { return entriesOf(device::projects + "New") == projectFiles && currentProject() == "New"; }},
    {"build", [] { runBuildJob(BuildVariant::Package, [] {}); },
     [] { return entriesOf(device::packages + "/P") == 1; }},
    {"back up", [] { backUpProject(); },
     [] { return isWholeProject("/var/mobile/Documents/TweakbenchBackups/P"); }},
    {"restore", [] { restoreBackup("Q"); }, [] { return isWholeProject(device::projects + "Q"); }},
    {"rename", [] { renameProject("Renamed"); },
     [] { return currentProject() == "Renamed" && isWholeProject(device::projects + "Renamed"); }},
    {"header", [] { createHeader("H"); }, [] { return sizeOfFile(tweak) > longText.size(); }},
    {"save", [] { writeToFileAtomically(tweak, longText + longText); },
     [] { return sizeOfFile(tweak) == 2 * longText.size(); }},
    {"pick", [] { SS("Tweak.x"); }, [] { return pickedFile() == tweak; }},
}};

void leavePages(int pages) {
  const Descriptor file(open(filler, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  const std::string piece(256 * page, 'f');
  off_t size = 0;
  for (ssize_t wrote = 0; (wrote = write(file.get(), piece.data(), piece.size())) > 0;) size += wrote;
  if (ftruncate(file.get(), std::max<off_t>(0, size / page - pages) * page) != 0) std::perror(filler);
}

// What must hold whatever could not be written.
std::string lossAfter(const Sweep& sweep, int status) {
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return "it died";
  for (const char* list : {"Choose", "Files", "LangFile", "Checker"}) {
    if (!propertyListTree(contentsOfFile(device::application + list + ".plist").value_or("")))
      return std::string(list) + ".plist is damaged";
  }
  const MaybeText project = currentProject();
  if (project != "P" && project != "New" && project != "Renamed") return "the choice is lost";
  for (const std::string& folder : {device::application, device::projects + "P", device::projects + "New"}) {
    for (const std::string& entry : contentsOfDirectoryAtPath(folder).value_or(std::vector<std::string>())) {
      if (entry.find(".tweakbench-") == 0) return "a temporary file is left in " + folder;
    }
  }
  const bool keepsTweak = std::string_view(sweep.name) == "save";
  if (keepsTweak && sizeOfFile(tweak) != longText.size() && !sweep.isDone()) return "Tweak.x is cut short";
  if (std::string_view(sweep.name) == "restore" &&
      !isWholeProject("/var/mobile/Documents/TweakbenchBackups/Q")) {
    return "the backup is lost";
  }
  return {};
}

}  // namespace

int subject::fillTheDisk() {
  constexpr int enough = 512;  // pages, for the largest of them
  constexpr int further = 4;   // pages beyond the fewest that it needs
  // Builds and what commands say go to wherever a build log is.
  const Descriptor report(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 200));
  const Descriptor complaints(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 200));
  redirectStandardStreams("/tmp/streams");
  int tries = 0;
  int fired = 0;
  int bad = 0;
  for (const Sweep& sweep : sweeps) {
    int refusedHere = 0;
    int done = 0;
    // So its every write comes to the end of the disk once.
    for (int pages = 0; done <= further && pages <= enough; ++pages) {
      removeItemAtPath(filler);
      prepare();
      putFile(tweak, longText);
      createDirectoryAtPath(device::packages);
      createDirectoryAtPath("/var/mobile/Documents/TweakbenchBackups");
      std::filesystem::copy(device::projects + "P", "/var/mobile/Documents/TweakbenchBackups/Q",
                            std::filesystem::copy_options::recursive);
      leavePages(pages);
      const pid_t child = fork();
      if (child == 0) {
        sweep.act();
        _exit(0);
      }
      int status = 0;
      waitpid(child, &status, 0);
      ++tries;
      (sweep.isDone() ? done : refusedHere) += 1;
      const std::string loss = lossAfter(sweep, status);
      if (loss.empty()) continue;
      ++bad;
      dprintf(complaints.get(), "%s with %d pages left: %s\n", sweep.name, pages, loss.c_str());
    }
    removeItemAtPath(filler);
    fired += refusedHere;
    // A sweep that never refused, or never went through, has tried nothing.
    if (refusedHere > 0 && done > 0) continue;
    ++bad;
    dprintf(complaints.get(), "%s: refused %d times, done %d times\n", sweep.name, refusedHere, done);
  }
  dprintf(report.get(), "%d %d %d\n", tries, fired, bad);
  return 0;
}
