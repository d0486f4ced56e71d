#include "device/sandbox/Capture.h"

#include "core/Descriptor.h"
#include "device/Refusal.h"
#include "device/sandbox/Interruption.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace device {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongest = 1 << 20;

struct Source {
  Descriptor readEnd;
  Descriptor writeEnd;
  std::string* text;
};

Source makeSource(std::string& text) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) refuseWithError("No pipe could be made:");
  return {Descriptor(ends[0]), Descriptor(ends[1]), &text};
}

// Reads once; closes the source at its end.
void take(Source& source) {
  std::array<char, 16384> piece;
  const ssize_t got = read(source.readEnd.get(), piece.data(), piece.size());
  if (got < 0 && errno == EINTR) return;
  if (got <= 0) {
    source.readEnd.close();
    return;
  }
  const std::size_t room = kLongest - source.text->size();
  source.text->append(piece.data(), std::min(room, static_cast<std::size_t>(got)));
}

[[noreturn]] void become(char* const* words, int output, int errors, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(127);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  execv(words[0], words);
  _exit(127);
}

int shellStatus(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

Captured capture(const std::vector<std::string>& words, std::chrono::milliseconds limit) {
  Captured result;
  std::array<Source, 2> sources{makeSource(result.output), makeSource(result.errors)};
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) refuseWithError("No process could be started:");
  if (child == 0) become(arguments.data(), sources[0].writeEnd.get(), sources[1].writeEnd.get(), parent);

  for (auto& source : sources) source.writeEnd.close();
  const auto end = Clock::now() + limit;
  bool isStopped = false;
  while (sources[0].readEnd || sources[1].readEnd) {
    // A closed descriptor is -1, which poll() leaves out.
    std::array<pollfd, 2> watched{
        {{sources[0].readEnd.get(), POLLIN, 0}, {sources[1].readEnd.get(), POLLIN, 0}}};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    const int ready = poll(watched.data(), watched.size(),
                           isStopped ? -1 : static_cast<int>(std::max<long>(0, left.count())));
    if ((ready == 0 || Interruption::hasCome()) && !isStopped) {
      kill(child, SIGTERM);
      isStopped = true;
    }
    for (std::size_t index = 0; ready > 0 && index < watched.size(); ++index) {
      if (watched[index].revents != 0) take(sources[index]);
    }
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  Interruption::check();
  result.status = isStopped ? 124 : shellStatus(status);
  return result;
}

}  // namespace device
