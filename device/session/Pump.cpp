#include "device/session/Pump.h"

#include "device/Refusal.h"
#include "device/Visible.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <thread>
#include <vector>

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

void setOff(int event) {
  eventfd_write(event, 1);
}

// Cuts an unfinished character or line end off, which goes on with what is read next.
std::string cutUnfinished(std::string& text, Pump::Bytes bytes) {
  std::size_t end = text.size();
  if (bytes == Pump::Bytes::ToTerminal && text.ends_with('\r')) --end;
  for (std::size_t back = 1; bytes != Pump::Bytes::ToTerminal && back < 4 && back <= text.size(); ++back) {
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

}  // namespace

struct Pump::Copying {
  Descriptor source;
  Descriptor target;
  Bytes bytes;
  Descriptor ended{eventfd(0, EFD_CLOEXEC)};
  Descriptor stopped{eventfd(0, EFD_CLOEXEC)};
  // Copied so far, and read without having been copied.
  std::size_t copied = 0;
  std::size_t left = 0;
  ColouredOutput coloured{};

  void run() {
    std::vector<char> piece(pieceSize);
    std::string unfinished;
    bool isMoving = bytes == Bytes::AsTheyAre;
    while (isWorthReading()) {
      if (isMoving) {
        const ssize_t moved = splice(source.get(), nullptr, target.get(), nullptr, pipeSize, 0);
        if (moved == 0 || (moved < 0 && errno == EAGAIN && !canWrite())) break;
        if (moved > 0) copied += static_cast<std::size_t>(moved);
        if (copied >= flowing && isLarge(source.get()) && isLarge(target.get()))
          std::this_thread::sleep_for(filling);
        if (moved > 0 || errno == EINTR || errno == EAGAIN) continue;
        if (errno != EINVAL) break;
        // Not for this target.
        isMoving = false;
      }
      const ssize_t got = read(source.get(), piece.data(), piece.size());
      if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
      if (got <= 0) break;
      const std::string_view text(piece.data(), static_cast<std::size_t>(got));
      const bool isPlain = bytes == Bytes::AsTheyAre || bytes == Bytes::GivenBack;
      if (!(isPlain ? writeAll(text) : writeChanged(text, unfinished))) break;
    }
    if (!unfinished.empty()) writeAll(bytes == Bytes::ToTerminal ? unfinished : visible(unfinished));
    if (bytes != Bytes::GivenBack) source.close();
    target.close();
    setOff(ended.get());
  }

  // Waits for the source; false when there is nobody to read for.
  bool isWorthReading() const {
    std::array<pollfd, 3> watched{
        {{source.get(), POLLIN, 0}, {stopped.get(), POLLIN, 0}, {target.get(), 0, 0}}};
    // A terminal that is gone takes everything in silence, as it does from its programs.
    const nfds_t count = bytes == Bytes::ToTerminal ? 2 : 3;
    while (poll(watched.data(), count, -1) < 0 && errno == EINTR) {
    }
    return watched[1].revents == 0 && watched[2].revents == 0;
  }

  // Waits until a target that does not block takes more; false when the copying is stopped.
  bool canWrite() const {
    std::array<pollfd, 2> watched{{{target.get(), POLLOUT, 0}, {stopped.get(), POLLIN, 0}}};
    poll(watched.data(), watched.size(), -1);
    return watched[1].revents == 0;
  }

  bool writeChanged(std::string_view text, std::string& unfinished) {
    std::string whole = unfinished.append(text);
    unfinished = cutUnfinished(whole, bytes);
    if (bytes == Bytes::Visible) return writeAll(visible(whole, "\n\t"));
    if (bytes == Bytes::Coloured) return writeAll(coloured.take(whole));
    // The device's programs are not to wait for a terminal that is gone.
    writeAll(addsReturns(target.get()) ? replaceAll(whole, "\r\n", "\n") : whole);
    return true;
  }

  bool writeAll(std::string_view text) {
    left = text.size();
    while (left > 0) {
      const ssize_t written = write(target.get(), text.data() + text.size() - left, left);
      if (written >= 0) {
        copied += static_cast<std::size_t>(written);
        left -= static_cast<std::size_t>(written);
      } else if (errno == EAGAIN) {
        if (!canWrite()) return false;
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }
};

Pump::Pump(Descriptor source, Descriptor target, Bytes bytes)
    : copying_(new Copying{std::move(source), std::move(target), bytes}) {
  // Signals are the main thread's.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  try {
    std::thread([copying = copying_] { copying->run(); }).detach();
  } catch (const std::system_error& error) {
    throw Refusal(std::string("No thread could be started: ") + error.what() + ".");
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

int Pump::end() const {
  return copying_->ended.get();
}

void Pump::stop() {
  setOff(copying_->stopped.get());
}

void Pump::giveBack(int reader) {
  int inPipe = 0;
  ioctl(reader, FIONREAD, &inPipe);
  // What the device itself wrote into the pipe is none of the caller's.
  const std::size_t unread = std::min(static_cast<std::size_t>(inPipe), copying_->copied) + copying_->left;
  lseek(copying_->source.get(), -static_cast<off_t>(unread), SEEK_CUR);
}
