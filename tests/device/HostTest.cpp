// What the launcher makes of the host: environment, paths, accounts, and why bubblewrap failed.
#include "device/Refusal.h"
#include "device/sandbox/Account.h"
#include "device/sandbox/Arguments.h"
#include "device/sandbox/Environment.h"
#include "device/sandbox/Sandbox.h"
#include "device/session/Accessibility.h"
#include "device/session/Display.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

using Paths = std::vector<std::filesystem::path>;

TEST(Environment, LocaleIsSpeltAsThePhoneDoes) {
  struct Row {
    Environment caller;
    const char* locale;
  };
  const std::vector<Row> rows{
      {{{"LANG", "ar_SA.UTF-8"}}, "ar_SA"},
      {{{"LANG", "de_DE@euro"}}, "de_DE"},
      {{{"LANG", "ar_SA.UTF-8"}, {"LC_ALL", "en_GB.UTF-8"}}, "en_GB"},
      {{{"LANG", "ar_SA.UTF-8"}, {"LC_ALL", ""}}, "ar_SA"},
      {{{"LANG", "C.UTF-8"}}, "en_US"},
      {{}, "en_US"},
      {{{"LANG", "<string>ar"}}, "en_US"},
      {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", ":ar_EG.UTF-8:de"}}, "ar_EG"},
      {{{"LC_ALL", "C"}, {"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "ar"}}, "en_US"},
      {{{"LANGUAGE", "ar"}}, "en_US"},
  };
  for (const auto& row : rows) EXPECT_EQ(localeIdentifier(row.caller), row.locale);
}

TEST(Environment, NothingOfTheCallersGetsInUnasked) {
  const Environment caller{{"TOKEN", "secret"},         {"LD_PRELOAD", "/x.so"},  {"TERM", "x\033[31m"},
                           {"LANG", "ar_SA.UTF-8"},     {"THEOS", "/t"},          {"QT_SCALE_FACTOR", "2"},
                           {"QT_PLUGIN_PATH", "/evil"}, {"PATH", "/home/me/bin"}, {"HOME", "/home/me"}};
  Environment commands = deviceEnvironment(caller, Audience::Commands);
  EXPECT_EQ(commands.erase("PATH"), 1U);
  EXPECT_EQ(commands, (Environment{{"HOME", "/var/mobile"},
                                   {"LANG", "C.UTF-8"},
                                   {"TERM", "dumb"},
                                   {"SHELL", "/bin/sh"},
                                   {"USER", "mobile"},
                                   {"LOGNAME", "mobile"},
                                   {"XDG_RUNTIME_DIR", "/run/mobile"},
                                   {"FONTCONFIG_FILE", "/.host/fonts.conf"}}));
  const Environment application = deviceEnvironment(caller, Audience::Application);
  EXPECT_EQ(lookUp(application, "QT_SCALE_FACTOR"), "2");
  EXPECT_FALSE(lookUp(application, "QT_PLUGIN_PATH"));
  EXPECT_EQ(lookUp(application, "LC_CTYPE"), "ar_SA.UTF-8") << "which keys compose to which letters";
  for (const auto& [name, value] : application)
    EXPECT_EQ(value.find("/var/"), std::string::npos) << name << " leads where builds write: " << value;
}

TEST(ReducedMotion, EitherDesktopMayAskForIt) {
  const TemporaryFolder place;
  const std::string home = place.path();
  std::filesystem::create_directories(home + "/.config");
  const auto plasma = [&](const char* settings) {
    std::ofstream(home + "/.config/kdeglobals") << settings;
    return prefersReducedMotion({{"PATH", home}}, home);
  };
  EXPECT_FALSE(plasma("[General]\nAnimationDurationFactor=0\n[KDE]\nAnimationDurationFactor=0.5\n"));
  EXPECT_FALSE(plasma("[KDE]\nAnimationDurationFactor=\n"));
  EXPECT_TRUE(plasma("[General]\nx=1\n[KDE]\nLook=y\nAnimationDurationFactor=0\n"));
  EXPECT_FALSE(prefersReducedMotion({{"PATH", home}, {"XDG_CONFIG_HOME", "/no/such"}}, home));
  std::filesystem::remove(home + "/.config/kdeglobals");
  const auto gnome = [&](const char* script, std::chrono::milliseconds patience = std::chrono::minutes(1)) {
    const std::string program = home + "/gsettings";
    std::ofstream(program) << "#!/bin/sh\n" << script;
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return prefersReducedMotion({{"PATH", home}}, home, patience);
  };
  EXPECT_TRUE(gnome("[ \"$*\" = 'get org.gnome.desktop.interface enable-animations' ] && echo false\n"));
  EXPECT_FALSE(gnome("echo true\n"));
  EXPECT_FALSE(gnome("echo 'No such schema' >&2; exit 1\n"));
  EXPECT_FALSE(gnome("echo false; exec /bin/sleep 1000\n", std::chrono::milliseconds(50)))
      << "no answer in time means no";
}

TEST(Environment, DeviceAndTheosAreLookedForInOrder) {
  EXPECT_EQ(defaultDevice({}, "/home/me"), "/home/me/.local/share/tweakbench/device");
  EXPECT_EQ(defaultDevice({{"XDG_DATA_HOME", "/data"}}, "/home/me"), "/data/tweakbench/device");
  EXPECT_EQ(defaultDevice({{"XDG_DATA_HOME", "data"}}, "/home/me"),
            "/home/me/.local/share/tweakbench/device");
  Options options;
  EXPECT_EQ(theosFolders(options, {{"THEOS", "/t"}}, "/home/me"),
            (Paths{"/t", "/opt/theos", "/var/theos", "/home/me/theos"}));
  options.theos = "/given";
  EXPECT_EQ(theosFolders(options, {{"THEOS", "/t"}}, "/home/me"), Paths{"/given"});
}

TEST(DataFiles, FontsComeFromTheHostAlone) {
  EXPECT_NE(fontConfiguration({"/etc/fonts/conf.d/60-latin.conf"}).find(">/etc/fonts/conf.d/60-latin.conf<"),
            std::string::npos);
  for (const auto& file : deviceDataFiles({1000, 1000, "/home/me"}, Options::Network::Off)) {
    EXPECT_EQ(file.content.find("50-user"), std::string::npos) << file.path;
    EXPECT_NE(file.path, "/etc/resolv.conf");
  }
}

TEST(Accessibility, OnlyABusWithAShowableSocketIsJoined) {
  const auto address = busAddress("   unix:path=/run/user/1000/at-spi/bus_0,guid=12\n");
  ASSERT_TRUE(address);
  EXPECT_EQ(address->whole, "unix:path=/run/user/1000/at-spi/bus_0,guid=12");
  EXPECT_EQ(address->path, "/run/user/1000/at-spi/bus_0");
  // Others have no path, or one where the device would write.
  for (const char* other :
       {"", " \n", "Error org.freedesktop.DBus.Error.ServiceUnknown", "unix:abstract=/tmp/dbus-x",
        "tcp:host=localhost,port=1", "unix:path=/var/tmp/bus", "unix:path=/tmp/../var/tmp/bus",
        "unix:path=/run/a%20b", "unix:path=relative"}) {
    EXPECT_FALSE(busAddress(other)) << other;
  }
}

TEST(Diagnosis, CausesAreToldApart) {
  const char* map = "bwrap: setting up uid map: Permission denied\n";
  const struct {
    const char* message;
    NamespaceSettings settings;
    const char* said;
  } rows[] = {
      {"bwrap: Unknown option --bind-fd\n", {1, 100, {}}, "too old"},
      {"bwrap: No permissions to create new namespace\n", {0, 100, {}}, "kernel.unprivileged_userns_clone=1"},
      {"bwrap: Creating new namespace failed\n", {{}, 0, {}}, "user.max_user_namespaces"},
      {map, {1, 100, 1}, "AppArmor"},
      {"bwrap: loopback: Failed RTM_NEWADDR: Operation not permitted\n", {1, 100, 1}, "AppArmor"},
      {map, {1, 100, {}}, "containers do (setting up uid map: Permission denied)"},
      // AppArmor is not to blame.
      {"bwrap: Can't find source path /x: No such file\n", {1, 100, 1}, "Can't find source path /x"},
      {"", {1, 100, {}}, "gave no reason"},
  };
  for (const auto& row : rows) {
    const std::string said = explainFailure(row.message, row.settings);
    EXPECT_NE(said.find(row.said), std::string::npos) << said;
    EXPECT_EQ(said.find('\n'), std::string::npos) << said;
    EXPECT_TRUE(said.ends_with(".")) << said;
  }
}

}  // namespace
