// What the launcher makes of the host: environment, paths, accounts, and why bubblewrap failed.
#include "device/Refusal.h"
#include "device/sandbox/Account.h"
#include "device/sandbox/Arguments.h"
#include "device/sandbox/Environment.h"
#include "device/sandbox/Sandbox.h"
#include "device/session/Accessibility.h"
#include "device/session/Display.h"
#include "support/Cases.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

using Paths = std::vector<std::filesystem::path>;

TEST(Environment, LocaleIsSpeltAsThePhoneDoes) {
  expectCases("locale", [](const Case& row) { return localeIdentifier(environmentOf(row[0])); });
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
  for (const auto& [path, content] : deviceDataFiles({1000, 1000, "/home/me"}, false)) {
    EXPECT_EQ(content.find("50-user"), std::string::npos) << path;
    EXPECT_NE(path, "/etc/resolv.conf");
  }
}

TEST(Accessibility, OnlyABusWithAShowableSocketIsJoined) {
  expectCases("bus", [](const Case& row) {
    const auto address = busAddress(row[0]);
    return address ? address->path + " of " + address->whole : "none";
  });
}

TEST(Diagnosis, CausesAreToldApart) {
  expectCases("cause", [](const Case& row) {
    std::vector<std::optional<long>> settings;
    for (const std::string& number : splitAt(row[1], " "))
      settings.push_back(number == "-" ? std::nullopt : std::optional(std::stol(number)));
    const std::string said = explainFailure(row[0], {settings[0], settings[1], settings.at(2)});
    EXPECT_TRUE(said.ends_with(".") && said.find('\n') == std::string::npos) << said;
    return said;
  });
}

}  // namespace
