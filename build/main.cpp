// build-project NAME [ARGUMENT...]: builds a project in the device, for the launcher's command "build". The
// name is one that is fit for command lines; the arguments are make's. Everything is printed on standard
// error; the status is make's, or 125 where a finished build's packages could not be moved to their place.
#include "build/BuildRunner.h"
#include "core/History.h"

#include <cstdio>
#include <exception>
#include <unistd.h>

int main(int count, char** arguments) {
  if (count < 2) return 125;
  dup2(STDERR_FILENO, STDOUT_FILENO);
  connectHistory();
  try {
    return buildProject(arguments[1], {arguments + 2, arguments + count});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tweakbench: %s\n", error.what());
    return 125;
  }
}
