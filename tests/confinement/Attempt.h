// What the device promises, and the ways of breaking each promise that are tried.
#pragma once

#include <string>
#include <vector>

struct Attempt {
  // Where the same attempt succeeds outside the device, which proves that it was the device that stopped it.
  enum class Control {
    Everyone,  // Whoever starts the device can do it.
    Root,      // Only root can.
    Machine,   // Whether this kernel or machine has it at all is found out by trying; without it, nothing is
               // counted.
  };
  // The title of the promise.
  const char* promise;
  const char* way;
  Control control;
  // Whether it came through. Undoes what it did. May run in the host, so it must do no harm.
  bool (*succeeds)();
};

// With this argument the probe only tells, by its status, whether it has root's rights.
inline constexpr const char* kAskForRights = "--rights";

// What the stage prepared, by name: paths, numbers, addresses. Empty where it prepared no such thing.
const std::string& given(const std::string& name);
int givenNumber(const std::string& name);

// An entry of the victim's folder in /proc: the process of the host that none is to reach.
std::string ofVictim(const char* entry);

// True and closes it where `descriptor` is one.
bool opened(int descriptor);
bool canRead(const std::string& path);
// Whether a call answered anything but that it is not allowed or does not exist. Bad arguments are an answer:
// the call was reached.
bool wasReached(long result);
// Whether `attempt` succeeds in a process of its own, where it may change that process for good.
bool inChild(bool (*attempt)());

std::vector<Attempt> attemptsOnFiles();
std::vector<Attempt> attemptsOnProcesses();
std::vector<Attempt> attemptsOnServices();
std::vector<Attempt> attemptsOnTheKernel();
std::vector<Attempt> attemptsOnTheMachine();
