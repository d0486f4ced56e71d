// Which names may be used in a command line that deletes or replaces.
#pragma once

#include "core/Text.h"

// Returns `name`, unchanged, where the command means an item of the folder before it. Names go into command
// lines unquoted, and the shell expands them. Absent, so that the shell refuses the line, if the first word
// that the shell reads may end at that folder or outside it: the name is empty, begins with white space or an
// operator, consists of slashes, dots, quotes or variables only, leads up, has an alternative in braces or a
// pattern that does, or its last character takes in the rest of the line.
[[nodiscard]] MaybeText itemName(const MaybeText& name);
