// The system's operations without the interface, for script/faults: a small program that can be traced,
// killed and starved.
#include "tests/faults/Subject.h"

#include "core/Process.h"
#include "support/Operations.h"

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

enum Ending { Done = 0, NotWritten = 1, NotRead = 2, WrongCall = 64 };

// Sets one key as every change of a setting does, but says how it went. Anywhere.
int update(const std::string& file, const std::string& value) {
  if (!propertyListTree(contentsOfFile(file).value_or(""))) return NotRead;
  return setPropertyListValue(file, "Choose", value) ? Done : NotWritten;
}

// Everything that the menus lead to, one after the other; whether any of it works is for others to see.
int operate() {
  createProjectsFolder();
  recordTheosPath();
  performAll({"create Made", "header Header", "rename file Header.h -> Other.h", "rename Renamed", "back up",
              "restore Renamed", "choose Renamed", "export tmp/Exported", "import /var/tmp/Exported", "list",
              "check Tweak.x", "pick Tweak.x"});
  createDirectoryAtPath("/var/Tweakyard/tmp");
  createFileAtPath("/var/Tweakyard/tmp/SuccessfullyUpdated.log");
  performAll({"build", "collect", "delete file Tweak.x", "delete listed", "speak Arabic"});
  return Done;
}

// Whether the package of the current project comes out of a build.
int build() {
  removeItemAtPath(device::packages);
  runBuildJob(BuildVariant::Package, [] {});
  return collectBuildResult(BuildVariant::Package).hasPackages ? Done : NotWritten;
}

// What ThreadSanitizer has to report, to show that it would.
int race() {
  int counter = 0;
  const auto count = [&counter] { ++counter; };
  std::thread other(count);
  count();
  other.join();
  return counter > 0 ? Done : NotWritten;
}

}  // namespace

void subject::prepare() {
  device::reset();
  removeItemAtPath("/var/mobile/Documents/TweakbenchBackups");
  createProjectsFolder();
  recordTheosPath();
  createProject("P");
  putFile("/var/Tweakyard/tmp/SuccessfullyUpdated.log", "");
}

int main(int count, char** values) {
  surviveRefusedWrites();
  const std::string task = count > 1 ? values[1] : "";
  if (task == "update" && count == 4) return update(values[2], values[3]);
  if (task == "race") return race();
  // The rest deletes what lies at fixed paths: never outside a device.
  if (!fileExistsAtPath("/.host/tweakbench")) return WrongCall;
  if (task == "operate") return operate();
  if (task == "prepare") return subject::prepare(), Done;
  if (task == "build") return build();
  if (task == "disk") return subject::fillTheDisk();
  if (task == "names" && count == 4) return subject::runNastyNames(std::atoi(values[2]), values[3]);
  return WrongCall;
}
