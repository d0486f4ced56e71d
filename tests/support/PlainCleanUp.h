// The clean-up of a build log in its simplest form: one literal replacement after the other.
#pragma once

#include "build/LogCleanUp.h"
#include "core/Text.h"

#include <string>

inline std::string cleanedPlainly(std::string log, BuildVariant variant) {
  const char* const package[] = {"[1;31m>",  "[1;3;39m",
                                 "[1;39m",   "[0;31m",
                                 "[0;32m",   "[0;33m",
                                 "[0;34m",   "[m",
                                 "[0;1;31m", "[0m",
                                 "[0;1;32m", "[1m",
                                 "[1;31m",   "mv: cannot stat 'packages': No such file or directory"};
  const char* const install[] = {
      "[1;31m>", "[1;3;39m", "[1;39m",
      "[0;31m",  "[0;32m",   "[0;33m",
      "[0;34m",  "[m",       "mv: cannot stat 'packages': No such file or directory"};
  const auto remove = [&log](const char* pattern) { log = replaceAll(log, pattern, ""); };
  if (variant == BuildVariant::Package) {
    for (const char* pattern : package) remove(pattern);
  } else {
    for (const char* pattern : install) remove(pattern);
  }
  return log;
}
