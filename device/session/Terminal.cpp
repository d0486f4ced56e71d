#include "device/session/Terminal.h"

#include "device/Process.h"
#include "device/Refusal.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>

bool Terminal::isAvailable() {
  return isatty(STDIN_FILENO) == 1 || isatty(STDOUT_FILENO) == 1 || isatty(STDERR_FILENO) == 1;
}

Terminal::Terminal() : ownSide_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  for (int stream : {STDOUT_FILENO, STDERR_FILENO, STDIN_FILENO}) {
    if (!users_ && isatty(stream) == 1) users_ = copyOf(stream);
  }
  keys_ = isatty(STDIN_FILENO) == 1 ? copyOf(STDIN_FILENO)
                                    : Descriptor(open("/dev/tty", O_RDONLY | O_NOCTTY | O_CLOEXEC));
  if (ownSide_ && grantpt(ownSide_.get()) == 0 && unlockpt(ownSide_.get()) == 0)
    deviceSide_ = Descriptor(ioctl(ownSide_.get(), TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!deviceSide_ || tcgetattr(users_.get(), &before_) != 0)
    refuseWithError("No terminal could be made for the device:");
  tcsetattr(deviceSide_.get(), TCSANOW, &before_);
  resize();
  fcntl(ownSide_.get(), F_SETFL, O_NONBLOCK);
  wantsJoining_ = isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1 && isInForeground();
}

Terminal::~Terminal() {
  leave();
}

Descriptor Terminal::output() const {
  return copyOf(ownSide_.get());
}

Descriptor Terminal::usersTerminal() const {
  return copyOf(users_.get());
}

bool Terminal::isInForeground() const {
  const pid_t group = tcgetpgrp(users_.get());
  // Without job control there is nobody to share the terminal with.
  return group < 0 || group == getpgrp();
}

void Terminal::join() {
  if (isJoined_) return;
  isJoined_ = true;
  tcgetattr(users_.get(), &before_);
  // A start in the background finds the terminal as the shell's own line editor has it.
  if (!std::exchange(wasJoined_, true)) tcsetattr(ownSide_.get(), TCSANOW, &before_);
  termios raw = before_;
  cfmakeraw(&raw);
  tcsetattr(users_.get(), TCSANOW, &raw);
  resize();
}

void Terminal::leave() {
  if (isJoined_ && isInForeground()) tcsetattr(users_.get(), TCSANOW, &before_);
  isJoined_ = false;
}

void Terminal::resize() {
  winsize size{};
  if (ioctl(users_.get(), TIOCGWINSZ, &size) == 0) ioctl(ownSide_.get(), TIOCSWINSZ, &size);
}

void Terminal::addTo(std::vector<pollfd>& watched) const {
  // More is read only when the device has taken what was typed before.
  if (!typed_.empty()) {
    watched.push_back({ownSide_.get(), POLLOUT, 0});
  } else if (isJoined_ && !isInputOver_) {
    watched.push_back({keys_.get(), POLLIN, 0});
  }
}

bool Terminal::serve(const std::vector<pollfd>& watched) {
  for (const auto& one : watched) {
    if (one.revents == 0) continue;
    if (one.fd == ownSide_.get()) {
      const ssize_t taken = write(ownSide_.get(), typed_.data(), typed_.size());
      if (taken > 0) typed_.erase(0, static_cast<std::size_t>(taken));
      if (taken < 0 && errno != EAGAIN && errno != EINTR) typed_.clear();
    } else if (one.fd == keys_.get() && isJoined_) {
      if (!isInForeground()) return false;
      char keys[4096];
      const ssize_t got = read(keys_.get(), keys, sizeof keys);
      if (got > 0) typed_.assign(keys, static_cast<std::size_t>(got));
      isInputOver_ = got == 0 || (got < 0 && errno != EINTR && errno != EAGAIN);
    }
  }
  return true;
}
