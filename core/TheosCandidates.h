// The folders of the device in which Theos may be. Included by the guard too: no libraries.
#pragma once

#include <array>
#include <sys/stat.h>

struct TheosCandidate {
  const char* tested;
  // What is written into settings and into the environment.
  const char* recorded;

  // Links are followed. The trailing slash of `tested` keeps out what is not a folder.
  bool exists() const {
    struct stat status {};
    return stat(tested, &status) == 0;
  }
};

// Weakest first: the last one that exists is used.
inline constexpr std::array<TheosCandidate, 5> theosCandidates{{
    {"/var/theos/", "/var/theos"},
    {"/opt/theos/", "/opt/theos"},
    {"/theos", "/theos"},
    {"/var/mobile/theos", "/var/mobile/theos"},
    {"/var/mobile/Documents/theos", "/var/mobile/Documents/theos"},
}};
