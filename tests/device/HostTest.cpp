// What the launcher makes of the host: environment, paths, accounts, and why bubblewrap failed.
#include "device/opener/Opener.h"
#include "device/sandbox/Environment.h"
#include "device/sandbox/Sandbox.h"
#include "device/session/Accessibility.h"
#include "device/session/Display.h"
#include "support/Cases.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace {

TEST(Environment, LocaleIsSpeltAsThePhoneDoes) {
  expectCases("locale", [](const Case& row) { return localeIdentifier(environmentOf(row[0])); });
}

TEST(Environment, NothingOfTheCallersGetsOnUnasked) {
  expectCases("environment", [](const Case& row) {
    const Environment caller = environmentOf(row[1]);
    std::string all;
    for (const auto& [name, value] :
         row[0] == "opener" ? openerEnvironment(caller)
                            : deviceEnvironment(caller, row[0] == "application" ? Audience::Application
                                                                                : Audience::Commands))
      all.append(all.empty() ? "" : " ").append(name).append("=").append(value);
    return all;
  });
}

TEST(ReducedMotion, EitherDesktopMayAskForIt) {
  expectCases("motion", [](const Case& row) {
    const TemporaryFolder place;
    if (row[0] != "-") putFile(place / "kdeglobals", row[0]);
    if (row[1] != "-") putFile(place / "gsettings", "#!/bin/sh\n" + row[1] + "\n");
    if (row[1] != "-") std::filesystem::permissions(place / "gsettings", std::filesystem::perms::owner_all);
    // No answer in time means no.
    const auto patience = std::chrono::milliseconds(row[1].find("sleep") != std::string::npos ? 50 : 60'000);
    const Environment caller{{"PATH", place.path()}, {"XDG_CONFIG_HOME", place.path()}};
    return std::string(prefersReducedMotion(caller, "/nowhere", patience) ? "yes" : "no");
  });
}

TEST(Environment, PlacesAreLookedForInOrder) {
  expectCases("place", [](const Case& row) -> std::string {
    const Environment caller = environmentOf(row[1]);
    if (row[0] == "device") return defaultDevice(caller, "/home/me");
    if (row[0] == "log") return openerLogPath(caller, "/home/me");
    if (row[0] == "sh") return findProgram(caller, "sh");
    Options options;
    if (row[0] == "given Theos") options.theos = "/given";
    std::string all;
    for (const auto& folder : theosFolders(options, caller, "/home/me")) all += folder.string() + ":";
    return all;
  });
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
    return explainFailure(row[0], {settings[0], settings[1], settings.at(2)});
  });
}

}  // namespace
