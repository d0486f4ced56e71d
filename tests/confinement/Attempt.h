// What the device promises, and the ways of breaking each promise that are tried.
#pragma once

#include "core/Descriptor.h"

#include <string>

// Where the same attempt succeeds outside the device, which proves that it was the device that stopped it.
enum Control {
  Everyone,  // Whoever starts the device can do it.
  Root,      // Only root can.
  Machine,   // Whether this kernel or machine has it at all is found out by trying; without it, nothing is
             // counted.
};

// The title of what the device promises; the attempts that follow are ways of breaking it.
void promise(const char* title);
// Reports one way, and whether it came through. What is tried is undone, and may run in the host, so it must
// do no harm.
void attempt(const char* way, Control control, bool cameThrough);

// With this argument the probe only tells, by its status, whether it has root's rights.
inline constexpr const char* kAskForRights = "--rights";

// What was prepared outside, by name: paths, numbers, addresses. Empty where no such thing was.
const std::string& given(const std::string& name);
int givenNumber(const std::string& name);

// An entry of the victim's folder in /proc: the process of the host that none is to reach.
std::string ofVictim(const char* entry);

bool isOpened(int descriptor);
bool canOpen(const std::string& path, int flags);
bool canRead(const std::string& path);
// Whether a call answered anything but that it is not allowed or does not exist. Bad arguments are an answer:
// the call was reached.
bool wasReached(long result);
// Whether `attempt` succeeds in a process of its own, where it may change that process for good.
bool inChild(bool (*attempt)());

void tryFiles();
void tryProcesses();
void tryServices();
void tryTheKernel();
void tryTheMachine();
