#include "converter/LogosReader.h"
#include "converter/LogosSource.h"
#include "converter/ObjectiveC.h"
#include "converter/PlainText.h"
#include "core/Text.h"
#include "support/Cases.h"
#include "support/Sections.h"
#include "support/Shell.h"
#include "support/TemporaryFolder.h"

#include <array>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

namespace {

PropertyListValue text(const char* words) {
  return {std::string(words)};
}
PropertyListValue whole(std::int64_t number) {
  return {number};
}
PropertyListValue setting(PropertyListValue::Dictionary arguments) {
  return {std::move(arguments)};
}

std::string declared(const std::string& signature) {
  try {
    return methodSignature(signature).declaration();
  } catch (const NotUnderstood& reason) {
    return replaceAll(reason.what(), "the method is ", "");
  }
}

std::vector<std::vector<std::string>> table(const char* name) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : linesOf(TWEAKBENCH_CONVERTER_TABLES + std::string(name)))
    rows.push_back(cellsOf(replaceAll(line, "\\n", "\n")));
  EXPECT_GT(rows.size(), 20U);
  return rows;
}

// What the converter knows of a name that may stand in a patch: whether it is a word of a type, a class,
// taken by the headers, a macro or reserved; then the type of that name.
std::string meaningOf(const std::string& name) {
  constexpr std::array kinds{"void",      "boolean", "integer",      "real",    "enumeration",
                             "structure", "text",    "mutable text", "number",  "any object",
                             "object",    "pointer", "word",         "unknown", "opaque"};
  std::string meaning;
  if (known::isQualifier(name)) meaning += "qualifier, ";
  if (known::isClass(name)) meaning += "class, ";
  if (known::isTaken(name)) meaning += "taken, ";
  if (known::isMacro(name)) meaning += "macro, ";
  if (known::isReserved(name)) meaning += "reserved, ";
  const ValueType type = valueType(name);
  if (type.sign == Sign::Unsigned) meaning += "unsigned ";
  meaning += kinds.at(static_cast<std::size_t>(type.kind));
  if (type.bits != 0) meaning += " of " + std::to_string(type.bits) + " bits";
  return type.written == name ? meaning : meaning + " as " + type.written;
}

TEST(Names, MeanWhatTheHeadersMakeOfThem) {
  for (const std::string& line : linesOf(TWEAKBENCH_CONVERTER_TABLES "names.txt")) {
    const std::size_t end = line.find(": ");
    for (const std::string& name : splitAt(line.substr(end + 2), " "))
      EXPECT_EQ(meaningOf(name), line.substr(0, end)) << name;
  }
}

TEST(Signatures, AreDeclaredAnewOrNotUnderstood) {
  for (const auto& row : table("signatures.tsv")) EXPECT_EQ(declared(row[0]), row[1]) << row[0];
  for (const char* type : {"struct Own", "union { int a; }", "short long", "CDStruct_1b6d18a9",
                           "__attribute__((vector_size(16))) float", "std::string", "CMTime", "id id", ""})
    EXPECT_EQ(valueType(type).kind, ValueKind::Opaque) << type;
}

PropertyListValue valueOf(const std::string& cell) {
  if (cell.starts_with('"'))
    return {replaceAll(cell.substr(1, cell.size() - 2), "\\0", std::string(1, '\0'))};
  if (cell == "array") return {PropertyListValue::Array{}};
  if (cell == "yes") return {true};
  if (cell.find('.') != std::string::npos) return {std::stod(cell)};
  if (cell == std::to_string(UINT64_MAX)) return {UINT64_MAX};
  return {static_cast<std::int64_t>(std::stoll(cell))};
}

// NUMBER=VALUE and so on, or one value; absent where the cell is empty.
std::optional<PropertyListValue> settingOf(const std::string& cell) {
  if (cell.empty()) return std::nullopt;
  if (cell != " " && cell.find('=') == std::string::npos) return valueOf(cell);
  PropertyListValue::Dictionary arguments;
  std::istringstream settings(cell);
  for (std::string each; settings >> each;)
    arguments[each.substr(0, each.find('='))] = valueOf(each.substr(each.find('=') + 1));
  return setting(arguments);
}

TEST(Values, FitTheirTypesOrAreRefused) {
  for (const auto& row : table("values.tsv")) {
    std::string expression = "refused";
    try {
      expression = valueExpression(valueOf(row[1]), valueType(row[0]));
    } catch (const NotUnderstood&) {
    }
    EXPECT_EQ(expression, row[2]) << row[0] << ' ' << row[1];
  }
}

TEST(Literals, MeanTheirTextAndNeverEndEarly) {
  const std::string hostile = "\"];\n%end\\\" \?\?/ \xE2\x80\xAE \x01 مرحبا";
  const std::string literal = stringLiteral(hostile);
  EXPECT_EQ(literal, "@\"\\042];\\012\\045end\\134\\042 \\077\\077/ \\342\\200\\256 \\001 مرحبا\"");
  EXPECT_EQ(commentText("a\n%end \\\?\?/ \xE2\x80\xA8 b\r\"*/"), "a end b *");
}

std::optional<std::vector<FlexPatch>> sample() {
  return flexPatches(fileAt(TWEAKBENCH_FLEX_SAMPLE));
}

TEST(Source, IsAsWrittenAndLetsNothingOut) {
  for (const auto& [title, lines] : sectionsOf(TWEAKBENCH_CONVERTER_TABLES "sources.txt")) {
    if (title.empty()) continue;
    FlexPatch patch;
    std::string expected;
    for (const std::string& line : lines) {
      const auto cells = cellsOf(replaceAll(line, "\\n", "\n"));
      if (line.starts_with('|'))
        expected += line.substr(std::min<std::size_t>(line.size(), 2)) + '\n';
      else if (cells[0] == "sample")
        patch = sample()->at(std::stoul(cells.at(1)));
      else if (cells[0] == "patch")
        patch = {cells.at(1), cells.at(2), {}};
      else
        patch.units.push_back(
            {cells.at(0), cells.at(1), settingOf(cells.at(2)), settingOf(cells.at(3)), cells.size() < 5});
    }
    const LogosSource source = logosSource(patch);
    EXPECT_EQ(source.text, expected) << title;
    EXPECT_NO_THROW(LogosReader::read(source.text)) << title;
    EXPECT_EQ(source.hooked + source.skipped, patch.units.size()) << title;
  }
}

// Every kind of signature, value and name, through Logos and the compiler as the template builds them.
TEST(Theos, CompilesWhatIsWritten) {
  const char* const theos = std::getenv("TWEAKBENCH_TEST_THEOS");
  if (theos == nullptr) GTEST_SKIP() << "TWEAKBENCH_TEST_THEOS names no Theos";
  std::vector<FlexPatch> patches = sample().value();
  FlexPatch& patch = patches.emplace_back();
  const auto add = [&patch](const std::string& name, const std::string& signature,
                            const PropertyListValue& value) {
    patch.units.push_back({"Returning" + name, signature, value, {}});
    patch.units.push_back({"Setting" + name, signature, {}, setting({{"1", value}})});
  };
  for (const auto& row : table("signatures.tsv")) {
    add("Nothing", row[0], text("nil"));
    add("Number", row[0], whole(1));
  }
  for (const auto& row : table("values.tsv")) {
    const std::string& type = row[0];
    const PropertyListValue value = valueOf(row[1]);
    const std::string number = std::to_string(patch.units.size());
    add("Values", "- (" + type + ")a" + number + ":(" + type + ")x", value);
    for (const char* name :
         {"init", "initWith", "_initWith", "new", "newWith", "copy", "mutableCopyOf", "alloc", "dealloc"})
      add(number, "- (" + type + ")" + name, value);
  }
  for (const std::string name :
       {"id", "operator", "CGRect", "Point", "Style", "BOOL", "UIView", "UIFooView", "NSInteger",
        "_TtC4Shop4Item", "Shop.Item", "A$b", "NSObject", "Protocol", "select", "Hooked1"}) {
    add("Names", "- (" + name + " *)a" + std::to_string(patch.units.size()) + ":(" + name + " *)x",
        text("nil"));
    patch.units.push_back({name, "- (BOOL)dealloc", whole(1), {}});
    patch.units.push_back({name, "+ (BOOL)class:(int)x for:(BOOL)x", whole(1), {}});
  }
  for (const char* name : {"errno", "bool", "true", "EOF", "class", "default", "URL", "nullptr", "retain",
                           "release", "YES", "CGRectZero"})
    add("Selectors", std::string("- (bool)") + name + ":(id)x", {true});
  const TemporaryFolder project;
  for (std::size_t index = 0; index < patches.size(); ++index) {
    for (const char* ending : {".x", ".xm"})
      putFile(project / (std::to_string(index) + ending), logosSource(patches[index]).text);
  }
  putFile(project / "Makefile",
          "ARCHS = arm64\nTARGET := iphone:clang:latest:12.0\ninclude "
          "$(THEOS)/makefiles/common.mk\nTWEAK_NAME = T\n"
          "T_FILES = $(wildcard *.x *.xm)\nT_CFLAGS = -fobjc-arc\ninclude $(THEOS_MAKE_PATH)/tweak.mk\n");
  const std::string log =
      outputOf("make -C " + project.path() + " THEOS=" + theos + " FINALPACKAGE= && echo built");
  EXPECT_TRUE(log.ends_with("built\n")) << log;
}

}  // namespace
