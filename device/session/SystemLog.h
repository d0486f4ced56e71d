// Passes on to the host's system log what the device writes to its own.
#pragma once

#include "core/Descriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace fs = std::filesystem;

// Stands for /dev/log in the device. What a build starts cannot reach it, since it has no local sockets.
class SystemLog {
 public:
  // Makes the socket log.PID in the device's folder at `path` and open as long as the object lives.
  // Where that fails, path() is empty and the device has no log.
  SystemLog(int folder, const fs::path& path);
  ~SystemLog();

  // The socket on the host, to be shown in the device; not needed any more once the device is set up.
  const std::string& path() const { return path_; }
  // Becomes readable with every line; -1 without a log.
  int descriptor() const { return socket_.get(); }

  // Writes what has come to syslog(3): the words alone, control characters made visible.
  void passOn();

 private:
  int folder_;
  std::string name_;
  std::string path_;
  Descriptor socket_;
};

// The words of a line as syslog(3) sends it: without priority, time and the program's name.
std::string wordsOf(std::string_view line);
