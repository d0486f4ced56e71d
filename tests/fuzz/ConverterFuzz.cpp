// The converter's parser: bytes as a list of patches, and as the texts of one patch, up to source that must
// be well formed whatever they are.
#include "converter/Conversation.h"
#include "converter/FlexPatches.h"
#include "converter/LogosReader.h"
#include "converter/LogosSource.h"
#include "core/Text.h"
#include "fuzz/Fuzz.h"

namespace {

void convert(const FlexPatch& patch) {
  const LogosSource source = logosSource(patch);
  mustHold(isValidUTF8(source.text), "source is text", source.text);
  mustHold(source.hooked + source.skipped == patch.units.size(), "every unit is accounted for", source.text);
  try {
    LogosReader::read(source.text);
  } catch (const std::exception& error) {
    mustHold(false, error.what(), source.text);
  }
}

// The fields of a patch, each from one zero byte to the next: name, application, and for each unit a class, a
// signature, a result and an argument.
FlexPatch patchOf(std::string_view bytes) {
  const auto take = [&bytes] {
    const std::size_t end = std::min(bytes.find('\0'), bytes.size());
    std::string field(bytes.substr(0, end));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return isValidUTF8(field) ? field : std::string();
  };
  FlexPatch patch{take(), take(), {}};
  while (!bytes.empty() && patch.units.size() < 8) {
    FlexUnit unit{take(), take(), {}, {}};
    if (const std::string returned = take(); !returned.empty()) unit.returned = PropertyListValue{returned};
    if (const std::string argument = take(); !argument.empty())
      unit.arguments = PropertyListValue{PropertyListValue::Array{PropertyListValue{argument}}};
    patch.units.push_back(unit);
  }
  return patch;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = asText(data, size);
  convert(patchOf(bytes));
  const auto patches = flexPatches(bytes);
  if (!patches) return 0;
  for (const FlexPatch& patch : *patches) convert(patch);
  if (patches->empty()) return 0;
  mustHold(isValidUTF8(menuText(*patches)), "the menu is text", "");
  chosenPatch("1", *patches);
  return 0;
}
