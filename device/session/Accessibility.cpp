#include "device/session/Accessibility.h"

#include "device/Process.h"

#include <poll.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace {

constexpr int busPatience = 3000;

// Qt asks where the accessibility bus is and whether it is wanted. A variable with the address is not
// enough: Qt 6.4 then connects and never signs in.
constexpr std::array allowedInSession{
    "--call=org.a11y.Bus=org.a11y.Bus.GetAddress@/org/a11y/bus",
    "--call=org.a11y.Bus=org.freedesktop.DBus.Properties.Get@/org/a11y/bus",
    "--call=org.a11y.Bus=org.freedesktop.DBus.Properties.GetAll@/org/a11y/bus",
    "--broadcast=org.a11y.Bus=org.freedesktop.DBus.Properties.PropertiesChanged@/org/a11y/bus",
};

// What an application calls on the registry, and what it has to hear from it.
constexpr std::array allowed{
    "--call=org.a11y.atspi.Registry=org.a11y.atspi.Socket.Embed@/org/a11y/atspi/accessible/root",
    "--call=org.a11y.atspi.Registry=org.a11y.atspi.Socket.Unembed@/org/a11y/atspi/accessible/root",
    "--call=org.a11y.atspi.Registry=org.a11y.atspi.Registry.GetRegisteredEvents@/org/a11y/atspi/registry",
    "--call=org.a11y.atspi.Registry=org.a11y.atspi.DeviceEventController.*@/org/a11y/atspi/registry/"
    "deviceeventcontroller",
    "--broadcast=org.a11y.atspi.Registry=org.a11y.atspi.Registry.EventListenerRegistered@/org/a11y/atspi/"
    "registry",
    "--broadcast=org.a11y.atspi.Registry=org.a11y.atspi.Registry.EventListenerDeregistered@/org/a11y/atspi/"
    "registry",
};

// Absent rather than asking for a bus to be started: that is the session's to decide.
std::optional<std::string> findSession(const Environment& caller) {
  if (auto given = lookUp(caller, "DBUS_SESSION_BUS_ADDRESS")) return given;
  const auto runtime = lookUp(caller, "XDG_RUNTIME_DIR");
  std::error_code error;
  if (!runtime || !fs::is_socket(*runtime + "/bus", error)) return std::nullopt;
  return "unix:path=" + *runtime + "/bus";
}

}  // namespace

std::optional<BusAddress> busAddress(const std::string& printed) {
  const std::string scheme = "unix:path=";
  const auto start = printed.find_first_not_of(" \t\n");
  if (start == std::string::npos) return std::nullopt;
  const std::string whole = printed.substr(start, printed.find_first_of(" \t\n", start) - start);
  if (!whole.starts_with(scheme)) return std::nullopt;
  std::string path = whole.substr(scheme.size());
  path = path.substr(0, path.find_first_of(",;"));
  // Escapes are left to others, and below a folder of the device nothing is mounted.
  const bool isShown = path.starts_with("/run/") || path.starts_with("/tmp/") || path.starts_with("/home/");
  if (!isShown || path.find_first_of("%\\") != std::string::npos || path.find("/..") != std::string::npos)
    return std::nullopt;
  return BusAddress{whole, path};
}

std::unique_ptr<Accessibility> Accessibility::join(const Environment& caller) {
  const auto session = findSession(caller);
  if (!session) return nullptr;
  const auto bus = busAddress(
      capture({findProgram(caller, "dbus-send"), "--bus=" + *session, "--print-reply=literal",
               "--reply-timeout=2000", "--dest=org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress"},
              std::chrono::milliseconds(busPatience))
          .output);
  std::string folder = lookUp(caller, "XDG_RUNTIME_DIR").value_or("/tmp") + "/tweakbench-XXXXXX";
  if (!bus || mkdtemp(folder.data()) == nullptr) return nullptr;
  std::unique_ptr<Accessibility> joined(new Accessibility);
  joined->folder_ = folder;
  joined->busPath_ = bus->path;
  Pipe alive = makePipe();
  joined->alive_ = std::move(alive.readEnd);
  const int proxyEnd = alive.writeEnd.get();
  ProcessStart start{{findProgram(caller, "xdg-dbus-proxy"), "--fd=" + std::to_string(proxyEnd), *session,
                      folder + "/session", "--filter"}};
  start.words.insert(start.words.end(), allowedInSession.begin(), allowedInSession.end());
  start.words.insert(start.words.end(), {bus->whole, folder + "/bus", "--filter", "--sloppy-names"});
  start.words.insert(start.words.end(), allowed.begin(), allowed.end());
  start.passed = {proxyEnd};
  joined->proxy_ = spawn(start);
  joined->process_ = endOf(joined->proxy_);
  alive.writeEnd.close();
  // One byte when the socket is there; the end of the pipe if there will be none.
  pollfd waiting{joined->alive_.get(), POLLIN, 0};
  char ready = 0;
  if (poll(&waiting, 1, busPatience) <= 0 || read(joined->alive_.get(), &ready, 1) != 1) return nullptr;
  return joined;
}

Accessibility::~Accessibility() {
  alive_.close();
  if (proxy_ > 0) {
    // One that ended early may have been waited for, and its number be somebody else's.
    syscall(SYS_pidfd_send_signal, process_.get(), SIGTERM, nullptr, 0);
    waitpid(proxy_, nullptr, 0);
  }
  std::error_code ignored;
  for (const char* left : {"/session", "/bus", ""}) fs::remove(folder_ + left, ignored);
}

std::vector<Shown> Accessibility::sockets() const {
  return {{folder_ + "/session", sessionBusInDevice}, {folder_ + "/bus", busPath_}};
}
