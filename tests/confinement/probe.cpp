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

namespace {

std::map<std::string, std::string> surroundings;
const char* promised = nullptr;

}  // namespace

void promise(const char* title) {
  promised = title;
  errno = 0;
}

void attempt(const char* way, Control control, bool cameThrough) {
  const char* const names[] = {"everyone", "root", "machine"};
  std::printf("%s|%s|%s|%s|%s\n", promised, way, names[control], cameThrough ? "through" : "stopped",
              std::strerror(errno));
  std::fflush(stdout);
  errno = 0;
}

const std::string& given(const std::string& name) {
  return surroundings[name];
}

int givenNumber(const std::string& name) {
  return std::atoi(given(name).c_str());
}

std::string ofVictim(const char* entry) {
  return "/proc/" + given("victim") + "/" + entry;
}

bool isOpened(int descriptor) {
  return bool(Descriptor(descriptor));
}

bool canOpen(const std::string& path, int flags) {
  return isOpened(open(path.c_str(), flags, 0600));
}

bool canRead(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK));
  char first = 0;
  return file && read(file.get(), &first, 1) == 1;
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
  for (int index = 1; index < count; ++index) {
    const std::string word = arguments[index];
    const auto equals = word.find('=');
    surroundings[word.substr(0, equals)] = word.substr(equals + 1);
  }
  tryFiles();
  tryProcesses();
  tryServices();
  tryTheKernel();
  tryTheMachine();
  return 0;
}
