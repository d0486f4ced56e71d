// Copies a folder between the host and the device, from one open folder into another.
#pragma once

#include "device/sandbox/Account.h"

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
