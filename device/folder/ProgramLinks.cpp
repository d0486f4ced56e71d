#include "device/folder/ProgramLinks.h"

#include "device/Refusal.h"
#include "device/folder/Beneath.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace device {
namespace {

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

}  // namespace device
