#include "confinement/Attempt.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstddef>
#include <linux/vm_sockets.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

// A name in front of which there is an '@' is in no file system. Returns whether `call` accepts the address.
template <typename Call>
bool reachesName(const std::string& name, const Call& call) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path, sizeof address.sun_path - 1);
  const bool isAbstract = name.starts_with("@");
  if (isAbstract) address.sun_path[0] = '\0';
  const std::size_t size = offsetof(sockaddr_un, sun_path) + name.size() + (isAbstract ? 0 : 1);
  return !name.empty() &&
         call(reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size)) >= 0;
}

bool connects(const std::string& name) {
  const Descriptor made(socket(AF_UNIX, SOCK_STREAM, 0));
  return made && reachesName(name, [&](auto* there, auto size) { return connect(made.get(), there, size); });
}

// Without a call of socket(): an end of a pair sends to whom it likes.
bool sendsFromPair(int type) {
  int pair[2];
  if (socketpair(AF_UNIX, type, 0, pair) != 0) return false;
  const Descriptor ends[] = {Descriptor(pair[0]), Descriptor(pair[1])};
  return reachesName(given("letters"),
                     [&](auto* there, auto size) { return sendto(pair[0], "x", 1, 0, there, size); });
}

sockaddr_in local(int port, in_addr_t address = INADDR_LOOPBACK) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_port = htons(static_cast<std::uint16_t>(port));
  result.sin_addr.s_addr = htonl(address);
  return result;
}

bool connectsOverNetwork(const sockaddr_in& there) {
  const Descriptor made(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
  // A connection on its way is on its way out.
  if (!made) return false;
  if (connect(made.get(), reinterpret_cast<const sockaddr*>(&there), sizeof there) != 0 &&
      errno != EINPROGRESS)
    return false;
  pollfd state{made.get(), POLLOUT, 0};
  socklen_t size = sizeof errno;
  const bool isRefused = poll(&state, 1, 200) == 1 &&
                         getsockopt(made.get(), SOL_SOCKET, SO_ERROR, &errno, &size) == 0 && errno != 0;
  return !isRefused;
}

bool isAnswered() {
  const Descriptor made(socket(AF_INET, SOCK_DGRAM, 0));
  const sockaddr_in there = local(givenNumber("datagrams"));
  if (connect(made.get(), reinterpret_cast<const sockaddr*>(&there), sizeof there) != 0) return false;
  pollfd answer{made.get(), POLLIN, 0};
  char byte = 'x';
  return send(made.get(), &byte, 1, 0) == 1 && poll(&answer, 1, 1000) == 1 &&
         recv(made.get(), &byte, 1, 0) == 1;
}

bool hasFamily(int family, int type) {
  return isOpened(socket(family, type, 0));
}

}  // namespace

void tryServices() {
  promise("The session's services are out of reach");
  attempt("connect to the session's bus", Everyone, connects(given("bus")));
  attempt("connect to the system's bus", Everyone, connects(given("systemBus")));
  attempt("connect to the keyring", Everyone, connects(given("keyring")));
  attempt("connect to the ssh agent", Everyone, connects(given("ssh")));
  attempt("connect to the gpg agent", Everyone, connects(given("gpg")));
  attempt("connect to the sound server", Everyone, connects(given("sound")));
  attempt("connect to a name outside the file system", Everyone, connects(given("abstract")));
  attempt("send from a pair of one's own", Everyone, sendsFromPair(SOCK_DGRAM));
  attempt("send from a raw pair", Everyone, sendsFromPair(SOCK_RAW));
  attempt("connect to the system log", Machine, connects("/.host/log") || connects("/dev/log"));

  promise("The display is out of reach");
  attempt("connect to the X server", Everyone, connects(given("x11")));
  attempt("connect to the X server's twin outside the file system", Everyone, connects("@" + given("x11")));
  attempt("connect to the compositor", Everyone, connects(given("wayland")));

  promise("There is no network");
  attempt("connect to a service of the machine", Everyone, connectsOverNetwork(local(givenNumber("port"))));
  attempt("get an answer from a service of the machine", Everyone, isAnswered());
  attempt("connect to another machine", Machine, connectsOverNetwork(local(80, 0xc0000201)));
  attempt("reach the machine's host", Machine, hasFamily(AF_VSOCK, SOCK_STREAM));
  attempt("ask the kernel about its interfaces", Everyone, hasFamily(AF_NETLINK, SOCK_RAW));
  attempt("read raw packets", Root, hasFamily(AF_PACKET, SOCK_RAW));
}
