// Earlier states of the projects, which the launcher keeps outside the device.
//
// Without a launcher, everything here does nothing.
#pragma once

#include "core/Text.h"

#include <initializer_list>
#include <string>
#include <string_view>

// Takes ownership of the launcher's socket at history::applicationDescriptor and makes it close-on-exec. Call
// it once, before the first command.
void connectHistory();

// Call it once before each operation that deletes or replaces something in projects, backups or packages.
// Waits at most a second for the copy. Any thread.
void keepHistory();

// Runs `format` as run_cmd() does, after keepHistory().
void run_kept_cmd(std::string_view format, std::initializer_list<MaybeText> values);

// Exists while a backup of the project is made, from before the first command to after the last. Unless
// isWhole() was called, the launcher removes the new backup and restores the older one; if the application is
// killed, the next start does. Any thread.
class NotedBackup {
 public:
  explicit NotedBackup(const std::string& project);
  ~NotedBackup();
  NotedBackup(const NotedBackup&) = delete;
  NotedBackup& operator=(const NotedBackup&) = delete;

  void isWhole() { isWhole_ = true; }

 private:
  bool isWhole_ = false;
};
