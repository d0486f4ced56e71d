// build: a project's packages without a window.
#include "device/Refusal.h"
#include "device/folder/Packages.h"
#include "device/launcher/Commands.h"

#include <algorithm>
#include <iostream>

int build(const Options& options) {
  const fs::path device = Caller(options).device;
  requireProjectName(options.project);
  requireDevice(device);
  std::vector<Package> before;
  Task task;
  task.begin = [&](int var) {
    openProject(var, options.project);
    before = packagesOf(var, options.project);
    // Like the application it starts without the filter; every command line that it runs gets it.
    Program program{{"/.host/tweakbench/build-project", options.project}, Relay::Streams::Printed};
    program.command.insert(program.command.end(), options.command.begin(), options.command.end());
    return program;
  };
  task.end = [&](int var, int status) {
    if (status != 0) return;
    std::size_t made = 0;
    for (const auto& package : packagesOf(var, options.project)) {
      const bool isNew = std::none_of(before.begin(), before.end(),
                                      [&](const Package& other) { return package.isSameAs(other); });
      if (!isNew || package.path.parent_path() != fs::path(packagesFolder) / options.project) continue;
      std::cout << (device / "var" / package.path).string() << "\n";
      ++made;
    }
    std::cout << std::flush;
    if (!std::cout) throw Refusal("The packages' paths could not be written to standard output.");
    const bool isExpected =
        std::find(options.command.begin(), options.command.end(), "package") != options.command.end();
    if (made == 0 && isExpected)
      say("The build succeeded but made no package; its Makefile should include a rule such as tweak.mk.");
  };
  return run(options, &task);
}
