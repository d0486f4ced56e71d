// The event boundary: where an exception that a handler lets out is written to the system log and forgotten.
#pragma once

#include <concepts>
#include <utility>

// Writes the exception that is being handled to the system log, with its what() where it has one. `place`
// says in a few words what was running. Call it from a catch block only.
void logCurrentException(const char* place) noexcept;

// Wraps `callable` so that nothing it throws gets out: the exception is logged and the call returns. Qt's own
// frames cannot be unwound through, so whatever is handed to connect(), a timer or a queue goes through here.
template <typename Callable>
auto atEventBoundary(Callable callable) {
  return [callable = std::move(callable)]<typename... Arguments>(
             Arguments && ... arguments) mutable -> void requires std::invocable<Callable&, Arguments...> {
    try {
      callable(std::forward<Arguments>(arguments)...);
    } catch (...) {
      logCurrentException("a handler");
    }
  };
}
