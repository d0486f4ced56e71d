// Earlier states of the projects, which the launcher keeps outside the device.
//
// Without a launcher, everything here does nothing.
#pragma once

#include <string>

// Takes ownership of the launcher's socket at history::applicationDescriptor and makes it close-on-exec. Call
// it once, before the first command.
void connectHistory();

// Call it once before each operation that deletes or replaces something in projects, backups or packages.
// Waits at most a second for the copy. Any thread.
void keepHistory();

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
