#include "platform/EventBoundary.h"

#include "core/NSLog.h"

#include <exception>
#include <string>

void logCurrentException(const char* place) noexcept {
  try {
    const std::string before = std::string("Uncaught exception in ") + place + ": ";
    try {
      throw;
    } catch (const std::exception& error) {
      NSLog(before + error.what());
    } catch (...) {
      NSLog(before + "of an unknown type");
    }
  } catch (...) {
    // Not even the line could be written; there is nowhere left to say so.
  }
}
