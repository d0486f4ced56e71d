#include "device/session/Display.h"

#include "device/Process.h"
#include "device/Visible.h"

#include <X11/Xauth.h>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>

namespace {

constexpr const char* waylandSocket = "/.host/wayland";
constexpr const char* x11Folder = "/tmp/.X11-unix";

bool isSocket(const fs::path& path) {
  std::error_code error;
  return fs::is_socket(path, error);
}

std::optional<Display> waylandDisplay(const Environment& caller) {
  const auto name = lookUp(caller, "WAYLAND_DISPLAY");
  if (!name) return std::nullopt;
  fs::path socket = *name;
  if (!socket.is_absolute()) socket = fs::path(lookUp(caller, "XDG_RUNTIME_DIR").value_or("")) / socket;
  if (!socket.is_absolute() || !isSocket(socket)) return std::nullopt;
  return Display{Display::Kind::Wayland, socket, {}};
}

// "[unix]:NUMBER[.SCREEN]"; a host in front of the colon means a display across the network.
Display x11Display(const std::string& name) {
  const auto colon = name.rfind(':');
  const std::string host = name.substr(0, colon);
  std::string number = colon == std::string::npos ? "" : name.substr(colon + 1);
  number = number.substr(0, number.find('.'));
  if (number.size() > 5 || !numberIn(number))
    throw Refusal("The display " + name + " is not one that Tweakbench can open.");
  const fs::path socket = fs::path(x11Folder) / ("X" + number);
  if (!host.empty() && host != "unix") {
    throw Refusal(
        "The display " + name +
        " is reached over the network, which the device does not have; use a display of this machine.");
  }
  if (!isSocket(socket)) throw Refusal("The display " + name + " has no socket at " + socket.string() + ".");
  return Display{Display::Kind::X11, socket, number};
}

// Plasma writes the slider of its animation speed into the group KDE; "instant" is a factor of zero.
bool isOffInPlasma(const fs::path& settings) {
  std::error_code error;
  if (!fs::is_regular_file(settings, error)) return false;
  std::ifstream file(settings);
  const std::string key = "AnimationDurationFactor=";
  bool inGroup = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) inGroup = line == "[KDE]";
    if (!inGroup || !line.starts_with(key)) continue;
    const char* const number = line.c_str() + key.size();
    char* end = nullptr;
    return std::strtod(number, &end) == 0 && end != number;
  }
  return false;
}

bool isOffInGnome(const Environment& caller, std::chrono::milliseconds patience) {
  const fs::path program = findProgram(caller, "gsettings");
  if (program.empty()) return false;
  const auto answer =
      capture({program.string(), "get", "org.gnome.desktop.interface", "enable-animations"}, patience);
  return answer.status == 0 && answer.output == "false\n";
}

}  // namespace

WaylandSupport waylandSupport() {
  return fs::exists(TWEAKBENCH_QT_PLUGINS "/platforms/libqwayland-generic.so") ? WaylandSupport::Present
                                                                               : WaylandSupport::Missing;
}

Display findDisplay(const Environment& caller, WaylandSupport support) {
  const std::string platform = lookUp(caller, "QT_QPA_PLATFORM").value_or("");
  const bool wantsWayland = platform.starts_with("wayland");
  const bool wantsX11 = platform.starts_with("xcb");
  if (!platform.empty() && !wantsWayland && !wantsX11) return Display{};
  if (wantsWayland || (!wantsX11 && support == WaylandSupport::Present)) {
    if (auto display = waylandDisplay(caller)) return *display;
  }
  const auto name = lookUp(caller, "DISPLAY");
  if (name && !wantsWayland) return x11Display(*name);
  throw Refusal(
      "There is no display to open the application on; start Tweakbench in a desktop session, or use "
      "tweakbench exec.");
}

std::string socketInDevice(const Display& display) {
  if (display.kind == Display::Kind::Wayland) return waylandSocket;
  return std::string(x11Folder) + "/X" + display.number;
}

Descriptor authorityFor(const Display& display) {
  if (display.kind != Display::Kind::X11) return {};
  std::array<char, 256> host{};
  gethostname(host.data(), host.size() - 1);
  const std::unique_ptr<Xauth, void (*)(Xauth*)> entry(
      XauGetAuthByAddr(FamilyLocal, static_cast<unsigned short>(std::strlen(host.data())), host.data(),
                       static_cast<unsigned short>(display.number.size()), display.number.c_str(), 18,
                       "MIT-MAGIC-COOKIE-1"),
      [](Xauth* found) {
        if (found != nullptr) XauDisposeAuth(found);
      });
  if (!entry) return {};
  Xauth anywhere = *entry;
  // The device has another host name than the entry.
  anywhere.family = FamilyWild;
  anywhere.address_length = 0;
  Descriptor memory = inMemory({});
  const std::unique_ptr<FILE, int (*)(FILE*)> file(fdopen(dup(memory.get()), "wb"), fclose);
  if (!file || XauWriteAuth(file.get(), &anywhere) != 1 || fflush(file.get()) != 0) return {};
  return memory;
}

void addDisplay(Environment& environment, const Display& display, int authority) {
  if (display.kind == Display::Kind::Wayland) environment["WAYLAND_DISPLAY"] = waylandSocket;
  if (display.kind == Display::Kind::X11) environment["DISPLAY"] = ":" + display.number;
  // A descriptor and not a file, so that it is the application's alone: the guard closes it for every
  // command.
  if (authority >= 0) environment["XAUTHORITY"] = "/proc/self/fd/" + std::to_string(authority);
}

bool prefersReducedMotion(const Environment& caller, const fs::path& home,
                          std::chrono::milliseconds patience) {
  return isOffInPlasma(baseFolder(caller, "XDG_CONFIG_HOME", home / ".config") / "kdeglobals") ||
         isOffInGnome(caller, patience);
}
