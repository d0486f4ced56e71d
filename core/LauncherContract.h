// What the application, the launcher and the guard agree on. Needs no library.
#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <sys/stat.h>

// --- Theos

// A folder of the device in which Theos may be.
struct TheosCandidate {
  const char* tested;
  // Written into settings and into the environment.
  const char* recorded;

  // Links are followed. The trailing slash of `tested` excludes files.
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

// Where the device shows the Theos that the launcher has found, ...
inline constexpr const char* theosMount = "/opt/theos";
// ... and a file with its path on the host, for the user; nothing in the device can change it.
inline constexpr const char* theosOnHostFile = "/.host/theos-on-host";

// --- Reduced motion

// The launcher sets this environment variable, to any value, if the desktop asks for reduced motion. The
// guard removes it before it starts a command.
inline constexpr const char* reducedMotionVariable = "TWEAKBENCH_REDUCED_MOTION";

// --- Files that were being written when the application was killed; the launcher removes them

// The pattern for mkostemp. It does not contain the file's name, which may already be as long as a name can
// be.
inline constexpr std::string_view temporaryNamePattern = ".tweakbench-saving-XXXXXX";

// Whether `name` was made from the pattern.
inline bool isTemporaryName(std::string_view name) {
  constexpr std::size_t drawn = 6;
  constexpr std::string_view head = temporaryNamePattern.substr(0, temporaryNamePattern.size() - drawn);
  return name.size() == temporaryNamePattern.size() && name.starts_with(head) &&
         std::all_of(name.begin() + head.size(), name.end(),
                     [](unsigned char letter) { return std::isalnum(letter) != 0; });
}

// --- The application asks the launcher to open a URL

// Over a SOCK_SEQPACKET pair. A request is a number, which the answer repeats, followed by the URL in ASCII.
// Packets of any other size are refused.
namespace opener {

// The launcher leaves the application's end at this file descriptor. The application makes it close-on-exec
// before it starts a command. A path could be found by a build.
inline constexpr int applicationDescriptor = 100;

inline constexpr std::size_t longestURL = 2048;

struct Request {
  std::uint32_t number;
  char url[longestURL];
};
inline constexpr std::size_t requestHead = offsetof(Request, url);

enum class Verdict : std::uint32_t {
  // The host's program took it.
  Opened = 1,
  // URLs like this are not opened from the device.
  Refused = 2,
  // The host has no program for it, or the program failed: show the user the URL.
  Unavailable = 3,
};

struct Answer {
  std::uint32_t number;
  Verdict verdict;
  // Where an unavailable folder is on the host, up to the end of the packet.
  char hostPath[4096];
};
inline constexpr std::size_t answerHead = offsetof(Answer, hostPath);

}  // namespace opener

// --- The launcher brings the application's window forward, and starts the application again

// Over a SOCK_SEQPACKET pair; each packet begins with its kind.
namespace window {

// As opener::applicationDescriptor.
inline constexpr int applicationDescriptor = 102;

// To the application: show the window in front of others. The desktop's activation token follows, or nothing.
inline constexpr char comeForward = 'f';
// To the launcher: start the application once more when it has ended with status 0. The window's geometry
// follows, which the launcher does not look at, ...
inline constexpr char startAgain = 'a';
// ... and sends to the application that it starts.
inline constexpr char wasAt = 'w';
inline constexpr std::size_t longestMessage = 1 + 256;

}  // namespace window

// --- The application asks the launcher to keep what it is about to change

// Over a SOCK_SEQPACKET pair. Each request gets one answer with its number once it was carried out or given
// up.
namespace history {

// As opener::applicationDescriptor.
inline constexpr int applicationDescriptor = 101;

// How long the application waits for an answer.
inline constexpr int patienceMilliseconds = 1000;

// The time by CLOCK_MONOTONIC, by which deadlines count.
inline std::int64_t milliseconds() {
  return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::milliseconds(1);
}

enum class Wish : std::uint32_t {
  // A copy of everything, made after the request came.
  Copy = 1,
  // The steps of a backup of the project `name`: it is about to be made, is whole, or has failed.
  BeginBackup = 2,
  FinishBackup = 3,
  UndoBackup = 4,
};

struct Request {
  std::uint32_t number;
  Wish wish;
  // In milliseconds(). After it BeginBackup is ignored: the application has begun without.
  std::int64_t deadline;
  // Ends with a NUL.
  char name[256];
};

struct Answer {
  std::uint32_t number;
};

}  // namespace history
