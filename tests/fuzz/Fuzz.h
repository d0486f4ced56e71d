// What the fuzzed code must keep, apart from not crashing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

inline void mustHold(bool condition, const char* what, std::string_view about) {
  if (condition) return;
  std::fprintf(stderr, "does not hold: %s\n%.*s\n", what, static_cast<int>(about.size()), about.data());
  std::abort();
}
