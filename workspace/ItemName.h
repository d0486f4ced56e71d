// What a name may stand for in a command line that deletes or replaces.
#pragma once

#include "core/Text.h"

// The name of an item for a command line that deletes or replaces that item. Names go into command lines
// unquoted, so the shell decides what they mean; absent, which the shell refuses to run, when the first word
// that it reads is not an item of the folder before the name but that folder itself or something outside it:
// the name is empty, begins with white space or an operator, is made of slashes, dots, quotes or variables
// only, leads up, or its last character takes the rest of the command line in. Nothing is changed in other
// names: blanks split them and the shell expands them.
[[nodiscard]] MaybeText itemName(const MaybeText& name);
