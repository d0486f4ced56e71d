#include "converter/Conversation.h"

#include <cstdlib>

#ifdef __SANITIZE_ADDRESS__
// LeakSanitizer needs ptrace, which commands in the device do not have; its complaint would get into the
// menu.
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0";
}
#endif

int main() {
  return converse(ConverterPlaces(), stdin, stdout) == Ending::Converted ? EXIT_SUCCESS : EXIT_FAILURE;
}
