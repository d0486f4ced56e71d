// The caller's environment as a value, and what of it the device gets.
#pragma once

#include "device/launcher/Options.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

using Environment = std::map<std::string, std::string, std::less<>>;

Environment callerEnvironment();

// Absent also if the variable is empty.
std::optional<std::string> lookUp(const Environment& environment, std::string_view name);

// Where the device shows the session's bus, if it does.
inline constexpr const char* sessionBusInDevice = "/.host/session";

// What every program in the device gets. Application adds what the interface needs and the caller has set.
enum class Audience { Commands, Application };
Environment deviceEnvironment(const Environment& caller, Audience audience);

// The locale as the phone's preferences spell it, such as ar_SA; en_US where the caller has none.
std::string localeIdentifier(const Environment& caller);

// The folder that the variable `name` of the XDG base directories gives.
fs::path baseFolder(const Environment& caller, const char* name, const fs::path& otherwise);

// The device's folder if no --device is given.
fs::path defaultDevice(const Environment& caller, const fs::path& home);

// The folders that may hold Theos, best first. A given --theos is the only one.
std::vector<fs::path> theosFolders(const Options& options, const Environment& caller, const fs::path& home);

// Whether `folder` can be used as Theos: it has makefiles/common.mk.
bool isTheos(const fs::path& folder);

// The first program of that name in the caller's PATH; empty where there is none.
fs::path findProgram(const Environment& caller, const char* name);

// The first bwrap in the caller's PATH; throws Refusal where there is none.
fs::path findBubblewrap(const Environment& caller);

// The folder of the Theos that the device gets. Empty where there is none, and the practice Theos takes its
// place; throws Refusal where that is not what the options ask for. `home` is where ~/theos is looked for.
fs::path findTheos(const Options& options, const Environment& caller, const fs::path& home);
