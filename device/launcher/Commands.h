// The launcher's commands, each in a file of its own.
#pragma once

#include "device/sandbox/Sandbox.h"
#include "device/transfer/Transfer.h"

#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

// The launcher's own failures, apart from what programs commonly return.
inline constexpr int launcherFailed = 125;

// Throws Refusal if there is no device, so that a command that only reads does not make one.
void requireDevice(const fs::path& device);

// Opens the device for copying in and out. Who called sudo has only their own rights on either side, and a
// copy that does not leave the device is made with those of the device's user.
Transfer openForCopying(const Options& options, mode_t callerUmask);

// Says on standard error what a copy lacks, and why; nothing where it lacks nothing.
void tellLeftOut(const std::string& why, const std::vector<std::string>& leftOut);

// Prints `sentence` on standard error. If that is not a terminal and the application was to be opened on a
// display, as from a menu, also shows it in a window, without waiting for that.
void complain(const Options& options, const std::string& sentence);

// A program of a command's own to run in the device.
struct Task {
  // Called when the device is ready, with its var/, before anything of it runs.
  std::function<Program(int var)> begin;
  // Called when nothing of it runs any more, with the launcher's exit status.
  std::function<void(int var, int status)> end;
};

// Each returns the launcher's exit status and throws Refusal where the device could not be set up. To be
// called from the main thread of a process without others.
//
// Opens the application, a shell or a command in the device, or what `task` says.
int run(const Options& options, const Task* task = nullptr);
int build(const Options& options);
// doctor: prints one line for each check. 0 if a build works or, where the options leave the trial out,
// nothing was found against it, otherwise 1.
int examine(const Options& options);
int showHistory(const Options& options);
// path, import, export, restore and send; `callerUmask` is taken from the modes of what is made on the host.
int transfer(const Options& options, mode_t callerUmask);
int restore(const Transfer& device, const Options& options);
