// The process beside the launcher that takes copies while the device is used.
#pragma once

#include "device/Process.h"
#include "device/folder/HistoryFolder.h"

// Copies at the start, at most a minute after something changed, when the application asks for it, and once
// more after the object's end or the launcher's, whichever comes first: that copy nobody waits for, and it
// holds no lock of the device. The process has no terminal and none of the caller's streams.
class HistoryKeeper {
 public:
  // `servesApplication`: for a run whose program may ask for copies.
  explicit HistoryKeeper(bool servesApplication);

  // Starts the process. `device` and `var` are DEVICE and DEVICE/var. To be called as the device's user, and
  // before anything of this launcher's runs in the device. Where no other application runs there
  // (`undoesBackup`), first a backup that a killed one has left half is replaced by the older one. Without
  // `tools.rsync` no copies are taken, and that is said once for a device. Failures are said on standard
  // error, and there is no history then.
  void start(int device, int var, const HistoryTools& tools, bool undoesBackup);

  // Goes to the application under this very number; -1 where nobody is served.
  int applicationEnd() const { return sockets_.applicationEnd.get(); }

  // Waits until everything that was in the device at the start is in the history, at most a second.
  void awaitFirstCopy() const;

 private:
  ApplicationSocket sockets_;
  // To the process: closes here with the launcher, and there with its first copy.
  Descriptor process_;
};
