// Projects on their way between the host and the device, and packages on their way to a phone.
#pragma once

#include "device/sandbox/Account.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// One end of a copy. Entries below `folder` are opened without following links, so hostile programs may
// change either end meanwhile.
struct CopyEnd {
  int folder;
  Rights rights;
};

enum class CopiedLinks {
  All,
  // Only those that do not lead out of the copied folder, whatever the rest of it looks like.
  Inside,
};

struct CopyRules {
  CopiedLinks links = CopiedLinks::All;
  // Taken from the modes of what is made: 0755 for folders and programs, 0644 for other files.
  mode_t umask = 022;
  // Called for each entry; if it throws, the copy ends.
  std::function<void()> pause;
  // What cannot be opened, or is too deep.
  enum class Unreadable { Refused, LeftOut };
  Unreadable unreadable = Unreadable::Refused;
};

// Copies what is in `source` into `target`, which is empty: files with their holes and times, folders, links
// as links. Returns the paths of what was left out: links that the rules do not take, and what is neither
// file, folder nor link. Throws Refusal at the first entry that cannot be read or written, with half of it
// copied; nothing of `source` is changed, and nothing of `target` replaced.
std::vector<std::string> copyTree(const CopyEnd& source, const CopyEnd& target, const CopyRules& rules);

// Whether a link with this target, `depth` folders below the top, stays below the top. Parent folders may
// only be named first: behind a name that is a link itself they would lead somewhere else than they seem to.
bool staysInside(const std::string& target, int depth);

// What both directions need. The device may be in use meanwhile: a copy appears in one step, and a failure
// leaves nothing.
struct Transfer {
  // DEVICE, for messages and to keep the host's side out of it.
  fs::path device;
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
  fs::path kept = {};
  // Import: a sentence on why the project cannot build in the device; else empty.
  std::string warning = {};
};

// Makes a copy of the folder `source` of the host a project of the same name. Links come along as they are:
// in the device they lead to nothing else. Its "packages" go to where exportProject() takes packages from;
// those whose names are taken there are left out. A project that is there already, and its packages where new
// ones come in, are refused or replaced in one step each and kept in the device's history. Throws Refusal.
Transferred importProject(const Transfer& transfer, const fs::path& source,
                          Existing existing = Existing::Refused);

// Copies the folder `source` of the history into the folder `place` of DEVICE/var, as `name` or, where that
// is there, NAME-1 and so on, and returns that. What cannot be read is left out. Throws Refusal.
Transferred copyBack(const Transfer& transfer, int source, const fs::path& place, const std::string& name);

// Copies the project `name`, its packages included, into the folder `target` or, where there is none, under
// that name into the folder above. Links that lead out of the project stay behind: on the host, reading or
// writing through them would reach the user's own files. Packages outside the project get into the
// copy's "packages", unless the project has such a folder of its own. Throws Refusal.
Transferred exportProject(const Transfer& transfer, const std::string& name, const fs::path& target);

struct Phone {
  std::string user;
  // As ssh takes it: a name, an address without brackets, or an alias of the user's configuration.
  std::string host;
  // Empty for the one that ssh takes by itself.
  std::string port;
};

// `typed` is [USER@]HOST or empty; what is missing comes from THEOS_DEVICE_IP, THEOS_DEVICE_PORT and
// THEOS_DEVICE_USER, the user else is root. Throws Refusal, also for what ssh or a shell would take for
// something else.
Phone phoneFor(const std::string& typed, const Environment& caller);

// Exit statuses of "send" besides 0.
enum SendStatus {
  NothingToSend = 1,
  Unreachable = 2,
  LoginRefused = 3,
  NotCopiedToPhone = 4,
  NotInstalled = 5
};

// Copies the newest package of `project` to the phone and has dpkg install it there, through sudo unless the
// user is root. Says on standard error what it does and what went wrong; what dpkg prints goes where ssh puts
// it. Returns 0 or a SendStatus; throws Refusal where there is no such project or package, or no ssh, and
// Interrupted.
int sendPackage(const Transfer& transfer, const std::string& project, const Phone& phone,
                const Environment& caller);
