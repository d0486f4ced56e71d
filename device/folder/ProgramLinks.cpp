#include "device/folder/ProgramLinks.h"

#include "device/Refusal.h"
#include "device/folder/Beneath.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> linkTarget(int folder, const std::string& name) {
  std::array<char, 512> target{};
  const ssize_t length = readlinkat(folder, name.c_str(), target.data(), target.size());
  if (length < 0 || static_cast<std::size_t>(length) == target.size()) return std::nullopt;
  return std::string(target.data(), static_cast<std::size_t>(length));
}

bool replaceBy(int folder, const std::string& name, const std::string& target, const SetAside& setAside) {
  if (symlinkat(target.c_str(), folder, name.c_str()) == 0) return true;
  // A folder: whose it is, and what is in it, is the user's business.
  if (errno == EEXIST && unlinkat(folder, name.c_str(), 0) != 0) setAside(name);
  return symlinkat(target.c_str(), folder, name.c_str()) == 0;
}

}  // namespace

std::map<std::string, std::string> hostProgramLinks(const std::filesystem::path& hostPrograms) {
  std::map<std::string, std::string> links;
  for (const auto& entry : std::filesystem::directory_iterator(hostPrograms)) {
    const std::string name = entry.path().filename();
    links.emplace(name, std::string(kHostPrograms) + "/" + name);
  }
  links["sh"] = "/.host/tweakbench/guard";
  return links;
}

std::size_t putLinks(int folder, const std::map<std::string, std::string>& links, const SetAside& setAside) {
  const auto present = namesIn(folder);
  if (!present) refuseWithError("The device's folder of programs could not be read:");
  auto missing = links;
  for (const auto& name : *present) {
    const auto wanted = links.find(name);
    const auto target = linkTarget(folder, name);
    if (wanted != links.end()) {
      if (target == wanted->second) missing.erase(name);
    } else if (target && target->starts_with(std::string(kHostPrograms) + "/")) {
      unlinkat(folder, name.c_str(), 0);
    }
  }
  std::size_t failed = 0;
  for (const auto& [name, target] : missing) {
    if (!replaceBy(folder, name, target, setAside)) ++failed;
  }
  return failed;
}

void putLibraryLinks(int folder, const fs::path& libraries, const std::string& shown) {
  for (const auto& name : namesIn(folder).value_or(std::vector<std::string>())) {
    std::error_code error;
    const bool isGone = fs::symlink_status(libraries / name, error).type() == fs::file_type::not_found;
    if (isGone && linkTarget(folder, name) == shown + "/" + name) unlinkat(folder, name.c_str(), 0);
  }
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(libraries, error)) {
    const std::string name = entry.path().filename();
    const std::string path = shown + "/" + name;
    const bool isFolder = entry.symlink_status(error).type() == fs::file_type::directory;
    if (!isFolder || entry.path().extension() == ".framework") {
      symlinkat(path.c_str(), folder, name.c_str());
      continue;
    }
    // Such as iphone/rootless, with the libraries of a package scheme.
    mkdirat(folder, name.c_str(), 0755);
    if (const Descriptor inner = openFolderBeneath(folder, name))
      putLibraryLinks(inner.get(), entry.path(), path);
  }
}

}  // namespace device
