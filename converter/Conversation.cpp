#include "converter/Conversation.h"

#include "converter/FlexPatches.h"
#include "converter/LogosSource.h"
#include "converter/Menu.h"
#include "converter/PlainText.h"
#include "core/FileManager.h"
#include "core/PropertyListBounds.h"

#include <array>

namespace {

// Whatever cannot be printed is not missed: who cares looks for the file.
void print(std::FILE* out, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), out);
  std::fflush(out);
}

// The next line; empty at the end of the input, and for a line longer than any answer. There is one try only:
// a program whose input is its own output would otherwise never be done with complaining.
std::string answerFrom(std::FILE* in) {
  std::array<char, 1024> line{};
  if (std::fgets(line.data(), static_cast<int>(line.size()), in) == nullptr) return {};
  std::string answer = line.data();
  return answer.size() + 1 < line.size() ? answer : std::string();
}

Ending refuse(std::FILE* out, const std::string& text) {
  print(out, text);
  return Ending::Refused;
}

std::string report(const LogosSource& source, const FlexPatch& patch, const std::string& path) {
  std::string text = "\nWrote " + menuName(patch.name) + " to " + path + ": " +
                     std::to_string(source.hooked) + " of its " +
                     std::to_string(source.hooked + source.skipped) + " units.";
  if (source.skipped != 0) text += " Comments in the source say why the others were skipped.";
  return text + "\n";
}

}  // namespace

Ending converse(const ConverterPlaces& places, std::FILE* in, std::FILE* out) {
  if (!fileExistsAtPath(places.list))
    return refuse(out, noMenuText("No Flex patches were found on this device."));
  const MaybeText bytes = contentsOfFile(places.list, largestPropertyList);
  if (!bytes) return refuse(out, noMenuText("The list of Flex patches cannot be read."));
  const auto patches = flexPatches(*bytes);
  if (!patches) return refuse(out, noMenuText("The list of Flex patches is damaged."));
  if (patches->empty()) return refuse(out, noMenuText("No Flex patches were found on this device."));

  print(out, menuText(*patches));
  const auto chosen = chosenPatch(answerFrom(in), *patches);
  if (!chosen) return refuse(out, complaintText(patches->size()));

  const FlexPatch& patch = (*patches)[*chosen];
  const LogosSource source = logosSource(patch);
  const std::string path = places.folder + "/Tweak.xm";
  createDirectoryAtPath(places.folder);
  if (!writeToFileAtomically(path, source.text)) return refuse(out, "\n" + path + " could not be written.\n");
  print(out, report(source, patch, path));
  return Ending::Converted;
}
