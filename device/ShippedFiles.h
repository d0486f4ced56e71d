// The application folder's shipped files: put into a new device, and renewed when Tweakbench is.
#pragma once

#include <filesystem>

namespace device {

enum class ApplicationFolder { New, Kept };

// Brings the shipped files of `source` into `application`. `record` is a folder out of the device's reach
// that keeps what was shipped before, so that a file that the user or a build has changed or removed is left
// alone, while one that is as it was shipped becomes the new one. A New folder gets every file. Throws
// Refusal.
void shipFiles(const std::filesystem::path& source, int application, int record, ApplicationFolder state);

}  // namespace device
