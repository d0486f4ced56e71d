// Any bytes as a settings file: read, changed, written and read again.
#include "core/FileManager.h"
#include "core/PropertyList.h"
#include "fuzz/Fuzz.h"

#include <unistd.h>

namespace {

struct File {
  File() : path("/dev/shm/tweakbench-fuzz-" + std::to_string(getpid())) {}
  ~File() { unlink(path.c_str()); }
  const std::string path;
};

std::size_t countAll(const PropertyListValue& value) {
  std::size_t count = 1;
  if (const auto* const array = value.array()) {
    for (const auto& each : *array) count += countAll(each);
  }
  if (const auto* const dictionary = value.dictionary()) {
    for (const auto& [key, each] : *dictionary) {
      mustHold(isValidUTF8(key), "a key is text", key);
      count += countAll(each);
    }
  }
  if (value.text() != nullptr) mustHold(isValidUTF8(*value.text()), "a text is text", *value.text());
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const File file;
  const std::string_view bytes = asText(data, size);
  const auto tree = propertyListTree(bytes);
  if (tree) mustHold(countAll(*tree) <= 100'000, "a list has bounds", "");

  writeToFileAtomically(file.path, bytes, Durability::Deferred);
  if (!setPropertyListValue(file.path, "Choose", "value \xD8\xB9 <&>")) return 0;
  mustHold(tree.has_value(), "what is a setting is a list", bytes);
  const MaybeText again = propertyListValue(file.path, "Choose");
  mustHold(again == "value \xD8\xB9 <&>", "a written setting is read back",
           fileExistsAtPath(file.path) ? "file" : "none");
  return 0;
}
