// A folder that is deleted with the object, in memory, since a disk takes its time over every fsync.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <unistd.h>

class TemporaryFolder {
 public:
  TemporaryFolder() : path_("/dev/shm/tweakbench-test-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

inline void putFile(const std::string& path, std::string_view contents) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
}

// The file's bytes; "(no file at …)" if there is none.
inline std::string fileAt(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return "(no file at " + path + ")";
  return {std::istreambuf_iterator<char>(file), {}};
}
