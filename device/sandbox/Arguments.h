// What the device consists of, and the arguments for bubblewrap that make it.
#pragma once

#include "device/sandbox/Account.h"

#include <filesystem>
#include <string>
#include <vector>

// A small read-only file of the device: the contents of an open descriptor, shown at this path.
struct DataFile {
  int content;
  std::string path;
};

// What is at a path of the device: a local socket of the host, or the target of a link, such as /lib to
// usr/lib.
struct Shown {
  std::string source;
  std::string path;
};

// The folders of the host that become the device's, opened O_PATH. They belong to its user and are not links.
struct MountedFolders {
  Descriptor applications;
  Descriptor var;
  Descriptor userPrograms;
  Descriptor shellPrograms;
  Descriptor theosLibraries;
};

// Everything that decides what the device looks like. Descriptors stay open until bubblewrap has read them.
struct Request {
  const MountedFolders& folders;
  // Whether the device's own folder of libraries is shown as the folder lib of a read-only Theos, which must
  // have one.
  bool hasOwnLibraries = false;
  // Tweakbench's own files on the host.
  fs::path ownFiles{};
  fs::path theos{};
  bool isTheosWritable = false;
  bool hasNetwork = false;
  Environment environment{};
  std::vector<Shown> rootLinks{};
  std::vector<DataFile> dataFiles{};
  std::vector<Shown> sockets{};
  // Descriptors that the program in the device gets under the same numbers.
  std::vector<int> passedOn{};
  // Where bubblewrap tells the number of the device's first process.
  int statusOutput = -1;
};

// The arguments for --args, without the command.
std::vector<std::string> bwrapArguments(const Request& request);

// The contents of the data files by path: accounts, name service, fonts; with the network also what resolves
// names.
std::map<std::string, std::string> deviceDataFiles(const Account& account, bool hasNetwork);

// The configuration that makes fontconfig use the host's fonts and its ready cache, and nothing that the
// device can write. `rules` are the configuration files to include.
std::string fontConfiguration(const std::vector<std::string>& rules);
