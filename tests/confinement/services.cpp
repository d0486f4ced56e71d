#include "confinement/Attempt.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/vm_sockets.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using Control = Attempt::Control;

constexpr const char* kServices = "The session's services are out of reach";
constexpr const char* kDisplay = "The display is out of reach";
constexpr const char* kNetwork = "There is no network";

struct LocalAddress {
  sockaddr_un address{};
  socklen_t size = 0;
};

// A name in front of which there is an '@' is in no file system.
LocalAddress localAddress(const std::string& name) {
  LocalAddress result;
  result.address.sun_family = AF_UNIX;
  std::memcpy(result.address.sun_path, name.data(),
              std::min(name.size(), sizeof result.address.sun_path - 1));
  if (name.starts_with("@")) result.address.sun_path[0] = '\0';
  result.size =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + (name.starts_with("@") ? 0 : 1));
  return result;
}

bool connects(const std::string& name) {
  if (name.empty()) return false;
  const LocalAddress there = localAddress(name);
  const int made = socket(AF_UNIX, SOCK_STREAM, 0);
  const bool through =
      made >= 0 && connect(made, reinterpret_cast<const sockaddr*>(&there.address), there.size) == 0;
  const int error = errno;
  if (made >= 0) close(made);
  errno = error;
  return through;
}

// Without a call of socket(): an end of a pair sends to whom it likes.
bool sendsFromPair(int type) {
  const std::string& name = given("letters");
  int pair[2];
  if (name.empty() || socketpair(AF_UNIX, type, 0, pair) != 0) return false;
  const LocalAddress there = localAddress(name);
  const bool through =
      sendto(pair[0], "x", 1, 0, reinterpret_cast<const sockaddr*>(&there.address), there.size) == 1;
  close(pair[0]);
  close(pair[1]);
  return through;
}

sockaddr_in local(int port, in_addr_t address = INADDR_LOOPBACK) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_port = htons(static_cast<std::uint16_t>(port));
  result.sin_addr.s_addr = htonl(address);
  return result;
}

bool connectsOverNetwork(const sockaddr_in& there) {
  const int made = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
  // A connection on its way is on its way out.
  const bool through =
      made >= 0 &&
      (connect(made, reinterpret_cast<const sockaddr*>(&there), sizeof there) == 0 || errno == EINPROGRESS);
  pollfd state{made, POLLOUT, 0};
  int error = errno;
  socklen_t size = sizeof error;
  const bool isRefused = through && poll(&state, 1, 200) == 1 &&
                         getsockopt(made, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error != 0;
  if (made >= 0) close(made);
  errno = error;
  return through && !isRefused;
}

bool isAnswered() {
  const int made = socket(AF_INET, SOCK_DGRAM, 0);
  const sockaddr_in there = local(givenNumber("datagrams"));
  if (made < 0 || connect(made, reinterpret_cast<const sockaddr*>(&there), sizeof there) != 0) return false;
  pollfd answer{made, POLLIN, 0};
  char byte = 'x';
  const bool through =
      send(made, &byte, 1, 0) == 1 && poll(&answer, 1, 1000) == 1 && recv(made, &byte, 1, 0) == 1;
  close(made);
  return through;
}

bool hasFamily(int family, int type) {
  return opened(socket(family, type, 0));
}

}  // namespace

std::vector<Attempt> attemptsOnServices() {
  return {
      {kServices, "connect to the session's bus", Control::Everyone, [] { return connects(given("bus")); }},
      {kServices, "connect to the system's bus", Control::Everyone,
       [] { return connects(given("systemBus")); }},
      {kServices, "connect to the keyring", Control::Everyone, [] { return connects(given("keyring")); }},
      {kServices, "connect to the ssh agent", Control::Everyone, [] { return connects(given("ssh")); }},
      {kServices, "connect to the gpg agent", Control::Everyone, [] { return connects(given("gpg")); }},
      {kServices, "connect to the sound server", Control::Everyone, [] { return connects(given("sound")); }},
      {kServices, "connect to a name outside the file system", Control::Everyone,
       [] { return connects(given("abstract")); }},
      {kServices, "send from a pair of one's own", Control::Everyone,
       [] { return sendsFromPair(SOCK_DGRAM); }},
      {kServices, "send from a raw pair", Control::Everyone, [] { return sendsFromPair(SOCK_RAW); }},
      {kServices, "connect to the system log", Control::Machine,
       [] { return connects("/.host/log") || connects("/dev/log"); }},
      {kDisplay, "connect to the X server", Control::Everyone, [] { return connects(given("x11")); }},
      {kDisplay, "connect to the X server's twin outside the file system", Control::Everyone,
       [] { return connects("@" + given("x11")); }},
      {kDisplay, "connect to the compositor", Control::Everyone, [] { return connects(given("wayland")); }},
      {kNetwork, "connect to a service of the machine", Control::Everyone,
       [] { return connectsOverNetwork(local(givenNumber("port"))); }},
      {kNetwork, "get an answer from a service of the machine", Control::Everyone, isAnswered},
      {kNetwork, "connect to another machine", Control::Machine,
       [] { return connectsOverNetwork(local(80, 0xc0000201)); }},
      {kNetwork, "reach the machine's host", Control::Machine,
       [] { return hasFamily(AF_VSOCK, SOCK_STREAM); }},
      {kNetwork, "ask the kernel about its interfaces", Control::Everyone,
       [] { return hasFamily(AF_NETLINK, SOCK_RAW); }},
      {kNetwork, "read raw packets", Control::Root, [] { return hasFamily(AF_PACKET, SOCK_RAW); }},
  };
}
