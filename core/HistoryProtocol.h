// How the application asks the launcher, outside the device, to keep what it is about to change.
#pragma once

#include <cstdint>

// Spoken over a pair of sockets that keep packets apart (SOCK_SEQPACKET). Each request gets one answer with
// its number when it has been done, or when it will not be.
namespace history {

// The application's end, which the launcher puts at this descriptor; beside that of the opener, and kept from
// commands in the same way.
inline constexpr int applicationDescriptor = 101;

// How long the application waits for an answer.
inline constexpr int patienceMilliseconds = 1000;

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
  // On CLOCK_MONOTONIC, in milliseconds; a backup that is about to begin is not noted later, since the
  // application has then begun without.
  std::int64_t deadline;
  // Ends with a NUL.
  char name[256];
};

struct Answer {
  std::uint32_t number;
};

}  // namespace history
