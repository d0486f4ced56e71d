// The fixed paths of the device, whatever the host looks like.
#pragma once

namespace paths {

// The projects, one folder each. A project's folder name is its name everywhere.
inline constexpr const char* projects = "/var/Tweakyard/Projects";
inline constexpr const char* project = "/var/Tweakyard/Projects/%@";
inline constexpr const char* projectFile = "/var/Tweakyard/Projects/%@/%@";  // project, entry

// Built packages, one folder a project.
inline constexpr const char* packages = "/var/mobile/Documents/Tweakbench";
inline constexpr const char* projectPackages = "/var/mobile/Documents/Tweakbench/%@";

// Copies of projects, one folder a project.
inline constexpr const char* backups = "/var/mobile/Documents/TweakbenchBackups";
inline constexpr const char* projectBackup = "/var/mobile/Documents/TweakbenchBackups/%@";

// The application folder: settings, logs, shipped files, the application's own resources.
inline constexpr const char* choosePlist = "/Applications/Tweakbench.app/Choose.plist";
inline constexpr const char* filesPlist = "/Applications/Tweakbench.app/Files.plist";
inline constexpr const char* checkerPlist = "/Applications/Tweakbench.app/Checker.plist";
inline constexpr const char* templateArchive = "/Applications/Tweakbench.app/TheosOrig.zip";
inline constexpr const char* checkersLog = "/Applications/Tweakbench.app/Checkers.log";
inline constexpr const char* makeLog = "/Applications/Tweakbench.app/MakeLog.log";

// The Flex converter: as shipped, as installed, where it writes, and the logs of its two runs.
inline constexpr const char* shippedConverter = "/Applications/Tweakbench.app/ftt";
inline constexpr const char* converter = "/usr/bin/ftt";
inline constexpr const char* converterFolder = "/var/mobile/Documents/Wexley88";
inline constexpr const char* converterMenuLog = "/Applications/Tweakbench.app/Getter.log";
inline constexpr const char* conversionLog = "/Applications/Tweakbench.app/titleANDObj.log";

// Logs of Theos's updater, whose existence means "updated". Nothing makes the install build's, so that button
// always updates and never builds.
inline constexpr const char* updateFolder = "/var/Tweakyard/tmp";
inline constexpr const char* updateLog = "/var/Tweakyard/tmp/SuccessfullyUpdated.log";
inline constexpr const char* installUpdateLog = "/Applications/Tweakbench.app/SuccessfullyUpdated.log";

}  // namespace paths
