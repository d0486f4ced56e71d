#include "device/session/Relay.h"

#include "device/Process.h"

#include <fcntl.h>
#include <linux/kcmp.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>

namespace {

constexpr int giveBackPatience = 1000;  // milliseconds

bool isNothing(const struct stat& status) {
  return S_ISCHR(status.st_mode) && status.st_rdev == makedev(1, 3);
}

// Closes a standard stream of this process, so that its other end notices when the copy is closed.
Descriptor take(int stream) {
  Descriptor taken = copyOf(stream);
  // Messages are still to come on the last.
  if (stream != STDERR_FILENO) dup2(openNothing().get(), stream);
  return taken;
}

// Whether both were opened together, as by 2>&1.
bool areOne(int first, int second) {
  const long answer = syscall(SYS_kcmp, getpid(), getpid(), KCMP_FILE, first, second);
  if (answer >= 0) return answer == 0;
  struct stat one {};
  struct stat other {};
  return fstat(first, &one) == 0 && fstat(second, &other) == 0 && one.st_dev == other.st_dev &&
         one.st_ino == other.st_ino && fcntl(first, F_GETFL) == fcntl(second, F_GETFL);
}

}  // namespace

Relay::Relay(Streams streams) {
  if (streams == Streams::Errors || streams == Streams::Printed) {
    input_ = openNothing();
    output_ = makeOutput(STDERR_FILENO, streams == Streams::Errors   ? Pump::Bytes::Visible
                                        : isatty(STDERR_FILENO) == 1 ? Pump::Bytes::Coloured
                                                                     : Pump::Bytes::AsTheyAre);
    errors_ = copyOf(output_.get());
    return;
  }
  if (Terminal::isAvailable()) {
    terminal_.emplace();
    ways_.push_back({terminal_->output(), terminal_->usersTerminal(), Pump::Bytes::ToTerminal});
  }
  // One way for both keeps the order of what is written.
  const bool isOneWay = areOne(STDOUT_FILENO, STDERR_FILENO);
  if (streams == Streams::CallerWithoutInput) {
    input_ = openNothing();
  } else {
    makeInput();
  }
  output_ = makeOutput(STDOUT_FILENO, Pump::Bytes::AsTheyAre);
  errors_ = isOneWay ? copyOf(output_.get()) : makeOutput(STDERR_FILENO, Pump::Bytes::AsTheyAre);
}

void Relay::makeInput() {
  struct stat status {};
  if (fstat(STDIN_FILENO, &status) != 0 || isNothing(status)) {
    input_ = openNothing();
  } else if (terminal_ && isatty(STDIN_FILENO) == 1) {
    input_ = copyOf(terminal_->deviceSide().get());
  } else {
    Pipe pipe = makePipe();
    const bool isGivenBack = S_ISREG(status.st_mode) || S_ISBLK(status.st_mode);
    if (isGivenBack) {
      // With the reader open here, too, a full pipe has to be left when the device ends.
      fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK);
      reader_ = copyOf(pipe.readEnd.get());
    }
    input_ = std::move(pipe.readEnd);
    inward_ = Way{take(STDIN_FILENO), std::move(pipe.writeEnd),
                  isGivenBack ? Pump::Bytes::GivenBack : Pump::Bytes::AsTheyAre};
  }
}

Descriptor Relay::makeOutput(int stream, Pump::Bytes bytes) {
  struct stat status {};
  if (bytes == Pump::Bytes::AsTheyAre && terminal_ && isatty(stream) == 1)
    return copyOf(terminal_->deviceSide().get());
  if (fstat(stream, &status) != 0 || isNothing(status)) return openNothing();
  Pipe pipe = makePipe();
  ways_.push_back({std::move(pipe.readEnd), take(stream), bytes});
  return std::move(pipe.writeEnd);
}

void Relay::start() {
  for (Descriptor* end : {&input_, &output_, &errors_}) end->close();
  if (terminal_) {
    terminal_->deviceSide().close();
    if (terminal_->wantsJoining()) terminal_->join();
  }
  for (auto& [source, target, bytes] : ways_)
    pumps_.emplace_back(std::move(source), std::move(target), bytes);
  if (inward_) inwardPump_.emplace(std::move(inward_->source), std::move(inward_->target), inward_->bytes);
}

std::vector<pollfd> Relay::undelivered() const {
  std::vector<pollfd> those;
  for (const auto& pump : pumps_) {
    pollfd end{pump.end(), POLLIN, 0};
    if (poll(&end, 1, 0) == 0) those.push_back(end);
  }
  return those;
}

void Relay::finish() {
  if (!inwardPump_ || !reader_) return;
  inwardPump_->stop();
  pollfd end{inwardPump_->end(), POLLIN, 0};
  if (poll(&end, 1, giveBackPatience) == 1) inwardPump_->giveBack(reader_.get());
}
