// Where everything lies. All paths are fixed: they exist in the device, whatever the host looks like.
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

// The application folder: settings, logs, what is shipped. It is also where the application's own resources
// lie.
inline constexpr const char* applicationFolder = "/Applications/Tweakbench.app/";
inline constexpr const char* choosePlist = "/Applications/Tweakbench.app/Choose.plist";
inline constexpr const char* filesPlist = "/Applications/Tweakbench.app/Files.plist";
inline constexpr const char* templateArchive = "/Applications/Tweakbench.app/TheosOrig.zip";
inline constexpr const char* checkersLog = "/Applications/Tweakbench.app/Checkers.log";
inline constexpr const char* makeLog = "/Applications/Tweakbench.app/MakeLog.log";

}  // namespace paths
