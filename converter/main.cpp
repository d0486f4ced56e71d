#include "converter/Conversation.h"

#include <cstdlib>

int main() {
  return converse(ConverterPlaces(), stdin, stdout) == Ending::Converted ? EXIT_SUCCESS : EXIT_FAILURE;
}
