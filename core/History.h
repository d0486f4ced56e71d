// Earlier states of the projects, which the launcher keeps outside the device.
//
// Without a launcher that answers, everything here does nothing.
#pragma once

#include <string>

// Takes the socket over that the launcher has put at history::applicationDescriptor, and keeps it from every
// command. Call it once, before the first command.
void connectHistory();

// Call it once before each operation that deletes or replaces something in projects, backups or packages.
// Waits at most a second for the copy. Any thread.
void keepHistory();

// Lives while a backup of the project is made, from before the first command to after the last. Until it says
// that it is whole, the launcher takes it away, and the next start does so where the application is killed;
// the older backup comes back then. Any thread.
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
