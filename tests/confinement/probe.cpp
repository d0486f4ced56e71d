// probe [NAME=VALUE]...: tries every way out, and prints a line for each: promise, way, whose control it has,
// whether it came through, and the last error. Run in the host as the control, and in the device as a build.
#include "confinement/Attempt.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::map<std::string, std::string> surroundings;

void take(const std::string& word) {
  const auto equals = word.find('=');
  if (equals != std::string::npos) surroundings[word.substr(0, equals)] = word.substr(equals + 1);
}

const char* name(Attempt::Control control) {
  switch (control) {
    case Attempt::Control::Everyone:
      return "everyone";
    case Attempt::Control::Root:
      return "root";
    case Attempt::Control::Machine:
      break;
  }
  return "machine";
}

}  // namespace

const std::string& given(const std::string& name) {
  return surroundings[name];
}

int givenNumber(const std::string& name) {
  return std::atoi(given(name).c_str());
}

std::string ofVictim(const char* entry) {
  return "/proc/" + given("victim") + "/" + entry;
}

bool opened(int descriptor) {
  if (descriptor < 0) return false;
  close(descriptor);
  return true;
}

bool canRead(const std::string& path) {
  if (path.empty()) return false;
  const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return false;
  char first = 0;
  const bool hasContent = read(file, &first, 1) == 1;
  close(file);
  return hasContent;
}

bool wasReached(long result) {
  return result >= 0 || (errno != EPERM && errno != ENOSYS && errno != EAFNOSUPPORT);
}

bool inChild(bool (*attempt)()) {
  int errors[2];
  if (pipe(errors) != 0) return false;
  const pid_t child = fork();
  if (child == 0) {
    const bool succeeded = attempt();
    const int error = errno;
    [[maybe_unused]] const ssize_t told = write(errors[1], &error, sizeof error);
    _exit(succeeded ? 0 : 1);
  }
  close(errors[1]);
  int status = 0;
  waitpid(child, &status, 0);
  int error = 0;
  [[maybe_unused]] const ssize_t heard = read(errors[0], &error, sizeof error);
  close(errors[0]);
  errno = error;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int main(int count, char** arguments) {
  if (count == 2 && std::strcmp(arguments[1], kAskForRights) == 0) return geteuid() == 0 ? 0 : 1;
  for (int index = 1; index < count; ++index) take(arguments[index]);
  for (const auto& attempts : {attemptsOnFiles(), attemptsOnProcesses(), attemptsOnServices(),
                               attemptsOnTheKernel(), attemptsOnTheMachine()}) {
    for (const Attempt& attempt : attempts) {
      errno = 0;
      const bool succeeded = attempt.succeeds();
      std::printf("%s|%s|%s|%s|%s\n", attempt.promise, attempt.way, name(attempt.control),
                  succeeded ? "through" : "stopped", std::strerror(errno));
      std::fflush(stdout);
    }
  }
  return 0;
}
