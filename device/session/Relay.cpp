#include "device/session/Relay.h"

#include "device/Process.h"
#include "device/Visible.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>

// What is done to the bytes on their way.
enum class Relay::Bytes {
  // Between pipes moved without a copy.
  AsTheyAre,
  // Control characters but line ends and tabs made visible.
  Visible,
  // The same, with the sequences of colours and carriage returns.
  Coloured,
  // From a terminal of the device's to the user's. While the user's terminal itself puts a carriage return
  // before each line end, those that the device's terminal put there are taken out again.
  ToTerminal,
  // The source is left open and its place set back by what was not taken, see giveBack().
  GivenBack,
};

namespace {

// More does not stay in the processor's cache.
constexpr std::size_t pieceSize = 128 << 10;
// A stream that has brought this much gets pipes as large as the kernel allows, of which it counts 64 MiB for
// a user and makes further ones small.
constexpr std::size_t flowing = 1 << 20;
constexpr int pipeSize = 1 << 20;
// It also gets time to fill its pipe, since waking the programs at both ends for each piece costs more than
// moving it. A pipe of pipeSize is hardly full within this time.
constexpr auto filling = std::chrono::microseconds(100);

// Cuts an unfinished character or line end off, which goes on with what is read next.
std::string cutUnfinished(std::string& text, Relay::Bytes bytes) {
  std::size_t end = text.size();
  if (bytes == Relay::Bytes::ToTerminal && text.ends_with('\r')) --end;
  for (std::size_t back = 1; bytes != Relay::Bytes::ToTerminal && back < 4 && back <= text.size(); ++back) {
    const char byte = text[text.size() - back];
    if (!startsCharacter(byte)) continue;
    if (lengthOfCharacter(byte) > back) end -= back;
    break;
  }
  std::string rest = text.substr(end);
  text.resize(end);
  return rest;
}

// True for what is not a pipe, too.
bool isLarge(int pipe) {
  const int size = fcntl(pipe, F_GETPIPE_SZ);
  return size < 0 || size >= pipeSize || fcntl(pipe, F_SETPIPE_SZ, pipeSize) >= 0;
}

bool addsReturns(int terminal) {
  termios mode{};
  return tcgetattr(terminal, &mode) == 0 && (mode.c_oflag & OPOST) != 0 && (mode.c_oflag & ONLCR) != 0;
}

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

// Whether both lead to the same place, as by 2>&1.
bool areOne(int first, int second) {
  struct stat one {};
  struct stat other {};
  return fstat(first, &one) == 0 && fstat(second, &other) == 0 && one.st_dev == other.st_dev &&
         one.st_ino == other.st_ino && fcntl(first, F_GETFL) == fcntl(second, F_GETFL);
}

}  // namespace

// Copies from `source` to `target` in a thread of its own until the source ends or nobody takes the target
// any more; then both are closed, so that the programs at the other ends notice. Neither is changed: whether
// reading or writing blocks is the caller's to say. A write that blocks for ever blocks the thread alone; it
// ends with the process.
class Pump : public std::enable_shared_from_this<Pump> {
 public:
  using Bytes = Relay::Bytes;
  Pump(Descriptor source, Descriptor target, Bytes bytes)
      : source_(std::move(source)), target_(std::move(target)), bytes_(bytes) {}

  // Begins to copy, once, in a thread that keeps the object. Throws Refusal.
  void start() {
    // Signals are the main thread's.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
      std::thread([pump = shared_from_this()] { pump->run(); }).detach();
    } catch (const std::system_error& error) {
      throw Refusal(std::string("No thread could be started: ") + error.what() + ".");
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }

  // Becomes readable when everything is copied.
  int end() const { return ended_.get(); }
  // Ends the copying between two reads.
  void stop() { eventfd_write(stopped_.get(), 1); }

  // For GivenBack, when the copying has ended and nobody reads any more: sets the source's place back by what
  // the target's reader left. `reader` is the pipe's end for reading.
  void giveBack(int reader) {
    int inPipe = 0;
    ioctl(reader, FIONREAD, &inPipe);
    // What the device itself wrote into the pipe is none of the caller's.
    const std::size_t unread = std::min(static_cast<std::size_t>(inPipe), copied_) + left_;
    lseek(source_.get(), -static_cast<off_t>(unread), SEEK_CUR);
  }

 private:
  void run() {
    std::vector<char> piece(pieceSize);
    std::string unfinished;
    bool isMoving = bytes_ == Bytes::AsTheyAre;
    while (isWorthReading()) {
      if (isMoving) {
        const ssize_t moved = splice(source_.get(), nullptr, target_.get(), nullptr, pipeSize, 0);
        if (moved == 0 || (moved < 0 && errno == EAGAIN && !canWrite())) break;
        if (moved > 0) copied_ += static_cast<std::size_t>(moved);
        if (moved > 0 && copied_ >= flowing && isLarge(source_.get()) && isLarge(target_.get()))
          std::this_thread::sleep_for(filling);
        if (moved > 0 || errno == EINTR || errno == EAGAIN) continue;
        if (errno != EINVAL) break;
        // Not for this target.
        isMoving = false;
      }
      const ssize_t got = read(source_.get(), piece.data(), piece.size());
      if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
      if (got <= 0) break;
      const std::string_view text(piece.data(), static_cast<std::size_t>(got));
      const bool isPlain = bytes_ == Bytes::AsTheyAre || bytes_ == Bytes::GivenBack;
      if (!(isPlain ? writeAll(text) : writeChanged(text, unfinished))) break;
    }
    if (!unfinished.empty()) writeAll(bytes_ == Bytes::ToTerminal ? unfinished : visible(unfinished));
    if (bytes_ != Bytes::GivenBack) source_.close();
    target_.close();
    eventfd_write(ended_.get(), 1);
  }

  // Waits for the source; false when there is nobody to read for.
  bool isWorthReading() const {
    std::array<pollfd, 3> watched{
        {{source_.get(), POLLIN, 0}, {stopped_.get(), POLLIN, 0}, {target_.get(), 0, 0}}};
    // A terminal that is gone takes everything in silence, as it does from its programs.
    const nfds_t count = bytes_ == Bytes::ToTerminal ? 2 : 3;
    while (poll(watched.data(), count, -1) < 0 && errno == EINTR) {
    }
    return watched[1].revents == 0 && watched[2].revents == 0;
  }

  // Waits until a target that does not block takes more; false when the copying is stopped.
  bool canWrite() const {
    std::array<pollfd, 2> watched{{{target_.get(), POLLOUT, 0}, {stopped_.get(), POLLIN, 0}}};
    poll(watched.data(), watched.size(), -1);
    return watched[1].revents == 0;
  }

  bool writeChanged(std::string_view text, std::string& unfinished) {
    std::string whole = unfinished.append(text);
    unfinished = cutUnfinished(whole, bytes_);
    if (bytes_ == Bytes::Visible) return writeAll(visible(whole, "\n\t"));
    if (bytes_ == Bytes::Coloured) return writeAll(coloured_.take(whole));
    // The device's programs are not to wait for a terminal that is gone.
    writeAll(addsReturns(target_.get()) ? replaceAll(whole, "\r\n", "\n") : whole);
    return true;
  }

  bool writeAll(std::string_view text) {
    left_ = text.size();
    while (left_ > 0) {
      const ssize_t written = write(target_.get(), text.data() + text.size() - left_, left_);
      if (written >= 0) {
        copied_ += static_cast<std::size_t>(written);
        left_ -= static_cast<std::size_t>(written);
      } else if (errno == EAGAIN) {
        if (!canWrite()) return false;
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

  Descriptor source_;
  Descriptor target_;
  Bytes bytes_;
  Descriptor ended_{eventfd(0, EFD_CLOEXEC)};
  Descriptor stopped_{eventfd(0, EFD_CLOEXEC)};
  // Copied so far, and read without having been copied.
  std::size_t copied_ = 0;
  std::size_t left_ = 0;
  ColouredOutput coloured_;
};

Relay::Relay(Streams streams) {
  if (streams == Streams::Errors || streams == Streams::Printed) {
    input_ = openNothing();
    output_ = makeOutput(STDERR_FILENO, streams == Streams::Errors   ? Bytes::Visible
                                        : isatty(STDERR_FILENO) == 1 ? Bytes::Coloured
                                                                     : Bytes::AsTheyAre);
    errors_ = copyOf(output_.get());
    return;
  }
  if (Terminal::isAvailable()) {
    terminal_.emplace();
    outward_.push_back(
        std::make_shared<Pump>(terminal_->output(), terminal_->usersTerminal(), Bytes::ToTerminal));
  }
  // One way for both keeps the order of what is written.
  const bool isOneWay = areOne(STDOUT_FILENO, STDERR_FILENO);
  if (streams == Streams::CallerWithoutInput) {
    input_ = openNothing();
  } else {
    makeInput();
  }
  output_ = makeOutput(STDOUT_FILENO, Bytes::AsTheyAre);
  errors_ = isOneWay ? copyOf(output_.get()) : makeOutput(STDERR_FILENO, Bytes::AsTheyAre);
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
    inward_ = std::make_shared<Pump>(take(STDIN_FILENO), std::move(pipe.writeEnd),
                                     isGivenBack ? Bytes::GivenBack : Bytes::AsTheyAre);
  }
}

Descriptor Relay::makeOutput(int stream, Bytes bytes) {
  struct stat status {};
  if (bytes == Bytes::AsTheyAre && terminal_ && isatty(stream) == 1)
    return copyOf(terminal_->deviceSide().get());
  if (fstat(stream, &status) != 0 || isNothing(status)) return openNothing();
  Pipe pipe = makePipe();
  outward_.push_back(std::make_shared<Pump>(std::move(pipe.readEnd), take(stream), bytes));
  return std::move(pipe.writeEnd);
}

void Relay::start() {
  for (Descriptor* end : {&input_, &output_, &errors_}) end->close();
  if (terminal_) {
    terminal_->deviceSide().close();
    if (terminal_->wantsJoining()) terminal_->join();
  }
  for (const auto& pump : outward_) pump->start();
  if (inward_) inward_->start();
}

std::vector<pollfd> Relay::undelivered() const {
  std::vector<pollfd> those;
  for (const auto& pump : outward_) {
    pollfd end{pump->end(), POLLIN, 0};
    if (poll(&end, 1, 0) == 0) those.push_back(end);
  }
  return those;
}

void Relay::finish() {
  if (!inward_ || !reader_) return;
  inward_->stop();
  pollfd end{inward_->end(), POLLIN, 0};
  if (poll(&end, 1, giveBackPatience) == 1) inward_->giveBack(reader_.get());
}
