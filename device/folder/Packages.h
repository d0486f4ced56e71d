// The finished packages of a project, found below the device's var/ without following links.
#pragma once

#include "core/Descriptor.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace fs = std::filesystem;

// Where projects are, below var/.
inline constexpr const char* projectsFolder = "Tweakyard/Projects";
// Where what comes in is put together: on the same file system, and not a project.
inline constexpr const char* besideProjects = "Tweakyard";
// Where builds of the application leave packages, in a folder for each project; those of make alone stay in
// the project.
inline constexpr const char* packagesFolder = "mobile/Documents/Tweakbench";
inline constexpr const char* ownPackages = "packages";

struct Package {
  // Below var/.
  fs::path path;
  // Times in nanoseconds. A build cannot forge these two: a package with both the same is the same one, even
  // if it was moved.
  ino_t number;
  std::int64_t changed;
  std::int64_t modified;

  bool isSameAs(const Package& other) const { return number == other.number && changed == other.changed; }
};

// All regular files that end in ".deb" in the package folder of `project`, then in its own "packages", sorted
// by name. Leaves out names with control characters, which could not be printed.
std::vector<Package> packagesOf(int var, const std::string& project);

// Opens the package that was modified last for reading and sets `name`. Empty if there is no package.
Descriptor openNewestPackage(int var, const std::string& project, std::string& name);

// Opens the project's folder, whose name may be any that a folder can have. Throws Refusal where there is
// none.
Descriptor openProject(int var, const std::string& project);

// Throws Refusal for a folder name that cannot go into command lines as it is, as the names of projects do.
void requireProjectName(const std::string& name);

// Throws Refusal for what cannot be the name of an entry, is too long, or holds control characters.
void requireEntryName(const std::string& name);
