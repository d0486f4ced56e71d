#include "converter/Conversation.h"

#include <cstdlib>

#ifdef __SANITIZE_ADDRESS__
// Commands in the device run without ptrace, which the search for leaks needs; its complaint would end up in
// the menu.
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0";
}
#endif

int main() {
  return converse(ConverterPlaces(), stdin, stdout) == Ending::Converted ? EXIT_SUCCESS : EXIT_FAILURE;
}
