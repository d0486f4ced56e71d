// The application folder's shipped files: put into a new device, and renewed when Tweakbench is.
#pragma once

#include <filesystem>

namespace device {

enum class ApplicationFolder { New, Kept };

// The device's folders that shipped files come into.
struct ShippedTo {
  int application = -1;
  // The device's /usr/bin, where the application moves the converter. It gets none from here; the one that is
  // there is only renewed. -1 where there is none.
  int programs = -1;
};

// Brings the shipped files of `source` into the device. `record` is a folder out of the device's reach that
// keeps what was shipped before, so that a file that the user or a build has changed or removed is left
// alone, while one that is as it was shipped becomes the new one. A New folder gets every file. Throws
// Refusal.
void shipFiles(const std::filesystem::path& source, const ShippedTo& device, int record,
               ApplicationFolder state);

}  // namespace device
