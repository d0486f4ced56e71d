#include "converter/Conversation.h"

#include "converter/LogosSource.h"
#include "converter/PlainText.h"
#include "core/FileManager.h"
#include "core/PropertyList.h"
#include "core/Text.h"

#include <array>
#include <charconv>

namespace {

constexpr std::string_view banner = "Flex to Theos by Mossgrove & updated by Wexley88";
constexpr std::string_view prompt = "Enter corresponding number: ";
constexpr std::string_view invalidSelection = "Invalid selection received.";
constexpr std::string_view validBetween = "Please input a valid number between ";
constexpr std::string_view validAnd = " and ";

constexpr std::string_view blue = "\033[0;34m";
constexpr std::string_view red = "\033[31m";
constexpr std::string_view green = "\033[32m";
constexpr std::string_view plain = "\033[0m";

// Separates number and name also without blanks, as in "1-7Days".
constexpr char separator = '-';

std::string joined(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

}  // namespace

std::string menuText(const std::vector<FlexPatch>& patches) {
  std::string text = joined({blue, banner, plain, "\n", "\n", plain, "The Flex patches on this device:\n"});
  for (std::size_t index = 0; index < patches.size(); ++index) {
    // Nothing after the name, since it would become part of the key. This one colour and two blanks exactly.
    text += joined(
        {red, "  ", std::to_string(index), " ", {&separator, 1}, " ", menuName(patches[index].name), "\n"});
  }
  return text + joined({plain, "\n", green, prompt, plain});
}

std::string complaintText(std::size_t patches) {
  return joined({red, invalidSelection, " ", red, validBetween, blue, "0", red, validAnd, blue,
                 std::to_string(patches - 1), plain, "\n"});
}

std::string noMenuText(std::string_view reason) {
  return joined({blue, banner, plain, "\n", reason, "\n\n\n\n"});
}

std::optional<std::size_t> chosenPatch(std::string_view answer, const std::vector<FlexPatch>& patches) {
  answer = trimmed(answer);
  std::size_t index = 0;
  const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), index);
  if (error != std::errc() || index >= patches.size()) return std::nullopt;
  const std::string name = withoutBlanks(answer.substr(static_cast<std::size_t>(end - answer.data())));
  const std::string expected = withoutBlanks(menuName(patches[index].name));
  if (!name.empty() && name != expected && name != separator + expected) return std::nullopt;
  return index;
}

namespace {

// Failed writes are ignored: callers look for the file.
void print(std::FILE* out, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), out);
  std::fflush(out);
}

// The next line; empty at end of file and for lines longer than any answer. Reads once only: if its input is
// its own output, it would complain for ever.
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
