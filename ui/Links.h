// The web addresses that the screens lead to. All of them are placeholders to be set by who distributes the
// program.
#pragma once

namespace links {

inline constexpr const char* authorProfile = "https://example.com/author";
inline constexpr const char* donation = "https://example.com/donate";
inline constexpr const char* thankedProfile = "https://example.com/pelbo";
// Asks the package manager to add the package source that offers the hinted package.
inline constexpr const char* addPackageSource =
    "cydia://url/https://example.com/share#?source=https://example.org/packages";

}  // namespace links
