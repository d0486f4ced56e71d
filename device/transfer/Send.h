// A project's package on its way to a phone, with the host's own ssh and scp.
#pragma once

#include "device/transfer/Transfer.h"

#include <string>

struct Phone {
  std::string user;
  // As ssh takes it: a name, an address without brackets, or an alias of the user's configuration.
  std::string host;
  // Empty for the one that ssh takes by itself.
  std::string port;
};

// `typed` is [USER@]HOST or empty; what is missing comes from THEOS_DEVICE_IP, THEOS_DEVICE_PORT and
// THEOS_DEVICE_USER, the user else is root. Throws Refusal, also for what ssh or a shell would take for
// something else.
Phone phoneFor(const std::string& typed, const Environment& caller);

// Exit statuses of "send" besides 0.
enum SendStatus {
  NothingToSend = 1,
  Unreachable = 2,
  LoginRefused = 3,
  NotCopiedToPhone = 4,
  NotInstalled = 5
};

// Copies the newest package of `project` to the phone and has dpkg install it there, through sudo unless the
// user is root. Says on standard error what it does and what went wrong; what dpkg prints goes where ssh puts
// it. Returns 0 or a SendStatus; throws Refusal where there is no such project or package, or no ssh, and
// Interrupted.
int sendPackage(const Transfer& transfer, const std::string& project, const Phone& phone,
                const Environment& caller);
