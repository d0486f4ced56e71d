// Projects on their way between the host and the device.
#pragma once

#include "device/transfer/CopyTree.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// What both directions need. The device may be in use meanwhile: a copy appears in one step, and a failure
// leaves nothing.
struct Transfer {
  // DEVICE, for messages and to keep the host's side out of it.
  std::filesystem::path device;
  // The same, opened.
  Descriptor folder;
  // DEVICE/var, as openVar() gives it.
  Descriptor var;
  // Who called, and whom the device belongs to.
  Rights host;
  Rights inDevice;
  // The caller's, for what is made on the host.
  mode_t umask;
  // Called for each entry; if it throws, the copy ends and nothing of it stays.
  std::function<void()> pause;
};

enum class Existing { Refused, Replaced };

struct Transferred {
  // Import: the project's name. Export: where the copy is.
  std::string what;
  // As from copyTree(), and packages whose names were taken.
  std::vector<std::string> leftOut = {};
  // Import: where the replaced project is kept; empty if there was none.
  std::filesystem::path kept = {};
  // Import: a sentence on why the project cannot build in the device; else empty.
  std::string warning = {};
};

// Makes a copy of the folder `source` of the host a project of the same name. Links come along as they are:
// in the device they lead to nothing else. Its "packages" go to where exportProject() takes packages from;
// those whose names are taken there are left out. A project that is there already, and its packages where new
// ones come in, are refused or replaced in one step each and kept in the device's history. Throws Refusal.
Transferred importProject(const Transfer& transfer, const std::filesystem::path& source,
                          Existing existing = Existing::Refused);

// Copies the folder `source` of the history into the folder `place` of DEVICE/var, as `name` or, where that
// is there, NAME-1 and so on, and returns that. What cannot be read is left out. Throws Refusal.
Transferred copyBack(const Transfer& transfer, int source, const std::filesystem::path& place,
                     const std::string& name);

// Copies the project `name`, its packages included, into the folder `target` or, where there is none, under
// that name into the folder above. Links that lead out of the project stay behind: on the host whoever reads
// or writes through them would reach the user's own files. Packages that lie outside the project get into the
// copy's "packages", unless the project has such a folder of its own. Throws Refusal.
Transferred exportProject(const Transfer& transfer, const std::string& name,
                          const std::filesystem::path& target);
