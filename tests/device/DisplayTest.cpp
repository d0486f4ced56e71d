#include "device/session/Display.h"
#include "support/Cases.h"
#include "support/RefusalOf.h"

#include <sys/socket.h>
#include <sys/un.h>

namespace {

Descriptor listenAt(const std::string& path) {
  Descriptor made(socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  EXPECT_EQ(bind(made.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return made;
}

TEST(Display, WaylandIsTakenWhereItCanBe) {
  const TemporaryFolder folder;
  const std::string socket = folder.path() + "/wayland-5";
  const Descriptor listening = listenAt(socket);
  const Environment byName{{"WAYLAND_DISPLAY", "wayland-5"}, {"XDG_RUNTIME_DIR", folder.path()}};
  const Environment byPath{{"WAYLAND_DISPLAY", socket}};
  for (const auto& caller : {byName, byPath}) {
    const Display display = findDisplay(caller, WaylandSupport::Present);
    EXPECT_EQ(display.kind, Display::Kind::Wayland);
    EXPECT_EQ(display.socket, socket);
    EXPECT_THROW(findDisplay(caller, WaylandSupport::Missing), Refusal);
  }
  Environment inDevice;
  addDisplay(inDevice, findDisplay(byName, WaylandSupport::Present), -1);
  EXPECT_EQ(inDevice, (Environment{{"WAYLAND_DISPLAY", "/.host/wayland"}}));
}

TEST(Display, WithoutOneTheReasonIsGiven) {
  expectCases("display", [](const Case& row) {
    return refusalOf([&] { findDisplay(environmentOf(row[0]), WaylandSupport::Present); });
  });
}

}  // namespace
