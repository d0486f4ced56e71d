// The opener's own log: what the device asked for and did not get.
#pragma once

#include "core/Descriptor.h"

#include <filesystem>
#include <string>
#include <utility>

namespace device {

// A file of the user's, outside the device. Starts anew when it has grown large, and takes so many lines of
// one run only, since the device decides how many there are.
class OpenerLog {
 public:
  // The first line makes the file, and its folder where missing. Where that cannot be, lines go nowhere.
  explicit OpenerLog(std::filesystem::path file) : path_(std::move(file)) {}

  // One line, with the time in front; control characters are made visible, long texts cut.
  void add(const std::string& words);

 private:
  void open();

  std::filesystem::path path_;
  Descriptor file_;
  int lines_ = 0;
};

}  // namespace device
