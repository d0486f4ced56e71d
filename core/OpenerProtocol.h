// How the application asks the launcher, outside the device, to open a URL.
#pragma once

#include <cstddef>
#include <cstdint>

// Spoken over a pair of sockets that keep packets apart (SOCK_SEQPACKET). A request is a number of the
// asker's, which the answer repeats, and the URL in plain ASCII behind it; what is longer or shorter is
// refused.
namespace opener {

// The application's end, which the launcher puts at this descriptor; the application takes it at its start,
// before it starts any command, and closes it for them. A number and not a path, so that no build can find
// it, and no setting of the application's.
inline constexpr int applicationDescriptor = 100;

inline constexpr std::size_t longestURL = 2048;

struct Request {
  std::uint32_t number;
  char url[longestURL];
};
inline constexpr std::size_t requestHead = offsetof(Request, url);

enum class Verdict : std::uint32_t {
  // The opener program took it.
  Opened = 1,
  // Not a URL that is opened from the device.
  Refused = 2,
  // There is no opener program, or it failed: the user can only be shown the URL.
  Unavailable = 3,
};

struct Answer {
  std::uint32_t number;
  Verdict verdict;
};

}  // namespace opener
