#include "device/session/SingleWindow.h"

#include "core/LauncherContract.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* windowLock = "window.lock";
constexpr const char* windowSocket = "window";
// A launcher whose application has just ended still ends the rest of the device.
constexpr auto frontPatience = std::chrono::seconds(15);
constexpr auto betweenKnocks = std::chrono::milliseconds(50);
constexpr timeval answerLimit{2, 0};
constexpr char doneAnswer = 1;

Descriptor makeSocket(int flags) {
  return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | flags, 0));
}

bool isOwnProcess(int connection) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         (peer.uid == geteuid() || peer.uid == 0);
}

}  // namespace

bool SingleWindow::claim(std::string_view token) {
  for (const auto limit = Clock::now() + frontPatience; Clock::now() < limit;
       std::this_thread::sleep_for(betweenKnocks)) {
    if (hasLocked()) {
      listen();
      return true;
    }
    if (callOther(token)) return false;
  }
  throw Refusal("The device is in use by another Tweakbench that does not answer; close that one first.");
}

bool SingleWindow::hasLocked() {
  if (!lock_)
    lock_ = orRefuse(Descriptor(openat(device_, windowLock, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600)),
                     "The device's window could not be locked:");
  return flock(lock_.get(), LOCK_EX | LOCK_NB) == 0;
}

// Where the file system knows no sockets, a second start is refused after a while.
void SingleWindow::listen() {
  unlinkat(device_, windowSocket, 0);
  Descriptor listener = makeSocket(SOCK_NONBLOCK);
  const sockaddr_un address = addressIn(device_, windowSocket);
  if (bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
      fchmodat(device_, windowSocket, 0600, 0) == 0 && ::listen(listener.get(), 4) == 0) {
    listener_ = std::move(listener);
  }
}

bool SingleWindow::callOther(std::string_view token) const {
  const Descriptor connection = makeSocket(0);
  const sockaddr_un address = addressIn(device_, windowSocket);
  setsockopt(connection.get(), SOL_SOCKET, SO_RCVTIMEO, &answerLimit, sizeof answerLimit);
  setsockopt(connection.get(), SOL_SOCKET, SO_SNDTIMEO, &answerLimit, sizeof answerLimit);
  char answer = 0;
  // A packet without a token would read as the end.
  const std::string call = "." + std::string(isActivationToken(token) ? token : "");
  return ::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
         send(connection.get(), call.data(), call.size(), MSG_NOSIGNAL) > 0 &&
         recv(connection.get(), &answer, 1, 0) == 1 && answer == doneAnswer;
}

void SingleWindow::connect() {
  sockets_ = {};
  sockets_ = connectApplication(window::applicationDescriptor);
  if (geometry_) tell(window::wasAt, *geometry_);
  geometry_.reset();
}

void SingleWindow::addTo(std::vector<pollfd>& watched) const {
  for (const Descriptor* one : {&sockets_.own, &listener_, &caller_}) {
    if (*one) watched.push_back({one->get(), POLLIN, 0});
  }
}

void SingleWindow::serve() {
  std::array<char, window::longestMessage> message{};
  const auto receive = [&message](const Descriptor& socket) {
    return recv(socket.get(), message.data(), message.size(), MSG_DONTWAIT);
  };
  ssize_t got = receive(sockets_.own);
  if (got > 0 && message[0] == window::startAgain)
    geometry_ = std::string(message.data() + 1, static_cast<std::size_t>(got) - 1);
  if (got == 0) sockets_.own.close();
  got = receive(caller_);
  if (got >= 0 || errno != EAGAIN) {
    const std::string_view token(message.data() + 1, got > 1 ? static_cast<std::size_t>(got) - 1 : 0);
    if (got > 0 && isActivationToken(token) && tell(window::comeForward, token))
      send(caller_.get(), &doneAnswer, 1, MSG_DONTWAIT | MSG_NOSIGNAL);
    caller_.close();
  }
  Descriptor caller(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (caller && isOwnProcess(caller.get())) caller_ = std::move(caller);
}

bool SingleWindow::tell(char kind, std::string_view rest) const {
  const std::string message = kind + std::string(rest);
  return sockets_.own &&
         send(sockets_.own.get(), message.data(), message.size(), MSG_DONTWAIT | MSG_NOSIGNAL) > 0;
}

bool isActivationToken(std::string_view token) {
  return token.size() < window::longestMessage &&
         std::all_of(token.begin(), token.end(), [](char letter) { return letter > 0x20 && letter < 0x7f; });
}
