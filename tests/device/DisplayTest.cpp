#include "device/Display.h"
#include "device/Refusal.h"
#include "support/TemporaryFolder.h"

#include <X11/Xauth.h>
#include <cstdio>
#include <cstring>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace device {
namespace {

Descriptor listenAt(const std::string& path) {
  Descriptor made(socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  EXPECT_EQ(bind(made.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return made;
}

std::string reasonFor(const Environment& caller) {
  try {
    findDisplay(caller, WaylandSupport::Present);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "none";
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
  EXPECT_NE(reasonFor({}).find("no display"), std::string::npos);
  EXPECT_NE(reasonFor({{"WAYLAND_DISPLAY", "/nowhere/wayland-0"}}).find("no display"), std::string::npos);
  EXPECT_NE(reasonFor({{"DISPLAY", "localhost:10.0"}}).find("over the network"), std::string::npos);
  EXPECT_NE(reasonFor({{"DISPLAY", ":4711"}}).find("has no socket"), std::string::npos);
  for (const char* broken : {"0", ":", ":x", ":1/../../etc", ":123456"}) {
    EXPECT_NE(reasonFor({{"DISPLAY", broken}}).find("not one that"), std::string::npos) << broken;
  }
  EXPECT_EQ(findDisplay({{"QT_QPA_PLATFORM", "offscreen"}}, WaylandSupport::Present).kind,
            Display::Kind::None);
}

TEST(Display, TheOneEntryOfTheAuthorityIsValidInTheDevice) {
  const TemporaryFolder folder;
  const std::string path = folder.path() + "/authority";
  FILE* file = fopen(path.c_str(), "wb");
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  char name[] = "MIT-MAGIC-COOKIE-1";
  for (const char* number : {"6", "7"}) {
    char digits[] = {number[0], 0};
    char cookie[] = {'k', number[0]};
    Xauth entry{FamilyLocal, static_cast<unsigned short>(strlen(host)), host, 1, digits, 18, name, 2, cookie};
    ASSERT_EQ(XauWriteAuth(file, &entry), 1);
  }
  fclose(file);
  setenv("XAUTHORITY", path.c_str(), 1);
  const Descriptor made = authorityFor({Display::Kind::X11, {}, "7"});
  const Descriptor none = authorityFor({Display::Kind::X11, {}, "8"});
  unsetenv("XAUTHORITY");
  EXPECT_FALSE(none);
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
}  // namespace device
