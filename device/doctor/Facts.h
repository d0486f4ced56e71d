// What the doctor has seen, as a value; what it means is told by the checks.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace device::doctor {

// A program that was tried in the device.
struct Trial {
  // In the device; empty where there is no such program.
  std::string path;
  // As a shell tells it: 124 took too long, 126 and 127 not started, 128 + n killed by signal n.
  int status = 127;
  // The first line that it printed, on either stream.
  std::string said;
};

// An entry of Theos's folder, as the device sees it. Astray: a link whose target the device does not show.
enum class Entry { Missing, Present, Astray };

// Everything in it is text of programs in the device, and not to be trusted.
struct DeviceFacts {
  std::map<std::string, Trial, std::less<>> trials;
  // By path below Theos's folder.
  std::map<std::string, Entry, std::less<>> theosEntries;
  bool isPracticeTheos = false;
  int sdks = 0;
  int sdksAstray = 0;
  int arabicFonts = 0;
};

struct Facts {
  // Why there is none; empty where bubblewrap was found.
  std::string bubblewrapRefusal;
  std::filesystem::path bubblewrap;

  // Why no device starts, or empty.
  std::string deviceRefusal;
  // Absent where no device starts.
  std::optional<DeviceFacts> inDevice;

  // Why the asked-for Theos cannot be used, or empty.
  std::string theosRefusal;
  // On the host; empty where none was found and the practice Theos takes its place.
  std::filesystem::path theos;

  enum class DeviceFolder { NotYetMade, Good, OfAnotherUser, OtherFiles };
  std::filesystem::path device;
  DeviceFolder deviceFolder = DeviceFolder::NotYetMade;
  // Bytes that the device's user can still write there.
  std::uintmax_t freeSpace = 0;

  // The end of the last build's log; absent where there is none or it is no plain file.
  std::optional<std::string> buildLog;
  // Whether the log is longer and its beginning is missing.
  bool buildLogCut = false;
};

}  // namespace device::doctor
