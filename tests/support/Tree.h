// A folder's contents as a value, to compare it as a whole.
#pragma once

#include "support/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <string>

// Everything below a folder: relative path to contents, folders ending in a slash.
using Tree = std::map<std::string, std::string>;

// Empty if there is no such folder.
inline Tree treeAt(const std::string& folder) {
  Tree tree;
  if (!std::filesystem::exists(folder)) return tree;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string name = std::filesystem::relative(entry.path(), folder);
    if (entry.is_directory()) {
      tree[name + "/"];
    } else {
      tree[name] = fileAt(entry.path());
    }
  }
  return tree;
}
