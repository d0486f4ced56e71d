// The home folders in the device, shared by the launcher, which gives them, and the guard.
#pragma once

namespace guard {

// Of every command.
inline constexpr const char* homeOfCommands = "/var/mobile";
// Of the application, which the guard takes away from its commands: read-only and empty. Libraries of the
// interface read settings there (X resources, key compositions, pointers, the display's cookie), and builds
// can write to the other.
inline constexpr const char* homeOfApplication = "/.host/empty";

}  // namespace guard
