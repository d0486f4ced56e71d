#include "device/session/Terminal.h"

#include "device/Refusal.h"

#include <cerrno>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace device {

bool Terminal::isAvailable() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
}

Terminal::Terminal() : ownSide_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  if (!ownSide_ || grantpt(ownSide_.get()) != 0 || unlockpt(ownSide_.get()) != 0) {
    refuseWithError("No terminal could be made for the shell:");
  }
  deviceSide_ = Descriptor(ioctl(ownSide_.get(), TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!deviceSide_ || tcgetattr(STDIN_FILENO, &before_) != 0) {
    refuseWithError("No terminal could be made for the shell:");
  }
  tcsetattr(deviceSide_.get(), TCSANOW, &before_);
  resize();
  fcntl(ownSide_.get(), F_SETFL, O_NONBLOCK);
  termios raw = before_;
  cfmakeraw(&raw);
  tcsetattr(STDIN_FILENO, TCSADRAIN, &raw);
}

Terminal::~Terminal() {
  tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
}

void Terminal::resize() {
  winsize size{};
  if (ioctl(STDIN_FILENO, TIOCGWINSZ, &size) == 0) ioctl(ownSide_.get(), TIOCSWINSZ, &size);
}

void Terminal::addTo(std::vector<pollfd>& watched) const {
  if (!isOutputOver_) {
    const short alsoWrite = typed_.empty() ? 0 : POLLOUT;
    watched.push_back({ownSide_.get(), static_cast<short>(POLLIN | alsoWrite), 0});
  }
  // More is read only when the device has taken what was typed before.
  if (typed_.empty() && !isInputOver_) watched.push_back({STDIN_FILENO, POLLIN, 0});
}

void Terminal::serve(const std::vector<pollfd>& watched) {
  for (const auto& one : watched) {
    if (one.revents == 0) continue;
    if (one.fd == ownSide_.get()) {
      if ((one.revents & (POLLIN | POLLHUP | POLLERR)) != 0) isOutputOver_ = !showOutput();
      if ((one.revents & POLLOUT) != 0) {
        const ssize_t taken = write(ownSide_.get(), typed_.data(), typed_.size());
        if (taken > 0) typed_.erase(0, static_cast<std::size_t>(taken));
      }
    } else if (one.fd == STDIN_FILENO) {
      char keys[4096];
      const ssize_t got = read(STDIN_FILENO, keys, sizeof keys);
      if (got > 0) typed_.assign(keys, static_cast<std::size_t>(got));
      isInputOver_ = got == 0 || (got < 0 && errno != EINTR && errno != EAGAIN);
    }
  }
}

// False when the device's side is closed.
bool Terminal::showOutput() {
  char output[16384];
  const ssize_t got = read(ownSide_.get(), output, sizeof output);
  if (got < 0) return errno == EAGAIN || errno == EINTR;
  for (ssize_t shown = 0; shown < got;) {
    const ssize_t written = write(STDOUT_FILENO, output + shown, static_cast<std::size_t>(got - shown));
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) shown += written;
  }
  return got > 0;
}

void Terminal::finish() {
  pollfd waiting{ownSide_.get(), POLLIN, 0};
  while (poll(&waiting, 1, 0) > 0 && showOutput()) {
  }
}

}  // namespace device
