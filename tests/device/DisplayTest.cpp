#include "device/session/Display.h"
#include "support/Cases.h"
#include "support/RefusalOf.h"

#include <X11/Xauth.h>
#include <cstdio>
#include <cstring>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

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

TEST(Display, TheOneEntryOfTheAuthorityIsValidInTheDevice) {
  const TemporaryFolder folder;
  const std::string path = folder / "authority";
  FILE* file = fopen(path.c_str(), "wb");
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  char name[] = "MIT-MAGIC-COOKIE-1";
  for (const char number : {'6', '7'}) {
    char digits[] = {number, 0};
    char cookie[] = {'k', number};
    Xauth entry{FamilyLocal, static_cast<unsigned short>(strlen(host)), host, 1, digits, 18, name, 2, cookie};
    ASSERT_EQ(XauWriteAuth(file, &entry), 1);
  }
  fclose(file);
  setenv("XAUTHORITY", path.c_str(), 1);
  const Descriptor made = authorityFor({Display::Kind::X11, {}, "7"});
  EXPECT_FALSE(authorityFor({Display::Kind::X11, {}, "8"}));
  unsetenv("XAUTHORITY");
  ASSERT_TRUE(made);
  FILE* copy = fdopen(dup(made.get()), "rb");
  rewind(copy);
  Xauth* entry = XauReadAuth(copy);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->family, FamilyWild);
  EXPECT_EQ(std::string(entry->data, entry->data_length), "k7");
  XauDisposeAuth(entry);
  EXPECT_EQ(XauReadAuth(copy), nullptr);
  fclose(copy);
}

}  // namespace
