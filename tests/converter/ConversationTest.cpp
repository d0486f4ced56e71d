#include "converter/Conversation.h"
#include "converter/PlainText.h"
#include "core/FileManager.h"
#include "core/Text.h"
#include "support/BinaryPropertyList.h"
#include "support/Cases.h"
#include "support/TemporaryFolder.h"
#include "workspace/FlexImport.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>

#include <gtest/gtest.h>

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

class Converter : public testing::Test {
 protected:
  Converter() { putFile(places_.list, fileAt(TWEAKBENCH_FLEX_SAMPLE)); }

  // A run whose input is `answer`.
  Ending run(const std::string& answer) { return run(answer, places_); }

  Ending run(const std::string& answer, const ConverterPlaces& places) {
    putFile(folder_ / "answer", answer);
    removeItemAtPath(folder_ / "log");
    const File in(std::fopen((folder_ / "answer").c_str(), "r"), std::fclose);
    const File out(std::fopen((folder_ / "log").c_str(), "a+"), std::fclose);
    return converse(places, in.get(), out.get());
  }

  std::string log() const { return fileAt(folder_ / "log"); }
  std::string written() const { return places_.folder + "/Tweak.xm"; }

  const TemporaryFolder folder_;
  const ConverterPlaces places_{folder_ / "Library/patches.plist", folder_ / "Documents/made"};
};

TEST_F(Converter, ReadsItsOwnMenuAsAnAnswerOnceAndEnds) {
  const File in(std::fopen((folder_ / "log").c_str(), "a+"), std::fclose);
  const File out(std::fopen((folder_ / "log").c_str(), "a+"), std::fclose);
  EXPECT_EQ(converse(places_, in.get(), out.get()), Ending::Refused);
  const std::vector<std::string> entries{"\033  0 - Premium all more", "\033  1 - 7 Days",
                                         "\033  2 - كل الميزات"};
  EXPECT_EQ(flexMenuEntries(cleanedFlexMenu(log())), entries);
  EXPECT_FALSE(fileExistsAtPath(places_.folder));
}

TEST_F(Converter, WritesTheChosenPatchFromEitherFormOfTheList) {
  EXPECT_EQ(run("1-7Days\n"), Ending::Converted);
  const std::string source = fileAt(written());
  EXPECT_NE(source.find("- (NSTimeInterval)remaining {\n\treturn 604800.5;\n}"), std::string::npos);
  putFile(places_.list, binaryPropertyList(fileAt(TWEAKBENCH_FLEX_SAMPLE)));
  ASSERT_EQ(fileAt(places_.list).substr(0, 8), "bplist00");
  EXPECT_EQ(run("0\n"), Ending::Converted);
  EXPECT_NE(fileAt(written()), source) << "the older source is replaced";
  std::string wide = "\xFF\xFE";
  for (const char byte :
       std::string("<plist><dict><key>patches</key><array><dict><key>units</key><array><dict>"
                   "<key>disabled</key><string>Yes</string></dict></array></dict></array></dict></plist>"))
    (wide += byte) += '\0';
  const std::string sample = fileAt(TWEAKBENCH_FLEX_SAMPLE);
  for (const std::string& bytes : {wide, wide.substr(2)}) {
    putFile(places_.list, bytes);
    EXPECT_EQ(run("0\n"), Ending::Converted);
    EXPECT_NE(fileAt(written()).find("it is switched off."), std::string::npos);
  }
  putFile(places_.list, "\xEF\xBB\xBF" + sample);
  EXPECT_EQ(run("1"), Ending::Converted);
  EXPECT_EQ(fileAt(written()), source);
}

TEST_F(Converter, PrintsAMenuAndWhatCameOfTheAnswer) {
  expectCases("run", [this](const Case& row) {
    removeItemAtPath(places_.folder);
    const bool isWritten = run(row[0]) == Ending::Converted;
    EXPECT_EQ(isWritten, fileExistsAtPath(places_.folder));
    return replaceAll(log(), folder_.path(), "@");
  });
  EXPECT_EQ(run(std::string(1 << 20, '0')), Ending::Refused);
}

TEST_F(Converter, SaysInOneLineWhyThereIsNoMenu) {
  const auto reason = [this] {
    EXPECT_EQ(run("0\n"), Ending::Refused);
    EXPECT_FALSE(fileExistsAtPath(places_.folder));
    const std::vector<std::string> entries = flexMenuEntries(cleanedFlexMenu(log()));
    return entries.size() == 1 ? entries.front() : std::to_string(entries.size());
  };
  expectCases("reason", [&](const Case& row) {
    putFile(places_.list, row[0]);
    return reason();
  });
  std::string nested;
  for (int level = 0; level < 100; ++level) nested = "<array>" + nested + "</array>";
  const std::string sample = fileAt(TWEAKBENCH_FLEX_SAMPLE);
  for (const std::string& bytes : {sample.substr(0, 900), binaryPropertyList(sample).substr(0, 200),
                                   "<plist><dict><key>patches</key>" + nested + "</dict></plist>"}) {
    putFile(places_.list, bytes);
    EXPECT_EQ(reason(), "The list of Flex patches is damaged.");
  }
  putFile(places_.list, std::string(2 << 20, 'x'));
  EXPECT_EQ(reason(), "The list of Flex patches cannot be read.");
  removeItemAtPath(places_.list);
  EXPECT_EQ(reason(), "No Flex patches were found on this device.");
  mkfifo(places_.list.c_str(), 0600);
  EXPECT_EQ(reason(), "The list of Flex patches cannot be read.");
}

TEST_F(Converter, SaysWhenTheSourceCannotBeWritten) {
  const auto refused = [this](const std::string& folder) {
    const ConverterPlaces places{places_.list, folder};
    EXPECT_EQ(run("0\n", places), Ending::Refused);
    EXPECT_TRUE(log().ends_with("\n" + folder + "/Tweak.xm could not be written.\n")) << log();
  };
  refused("/proc/no-folder-can-be-made-here");
  putFile(folder_ / "file", "a file where the folder should be");
  refused(folder_ / "file");
  EXPECT_EQ(fileAt(folder_ / "file"), "a file where the folder should be");
  createDirectoryAtPath(written());
  refused(places_.folder);
  EXPECT_EQ(contentsOfDirectoryAtPath(places_.folder)->size(), 1U) << "no temporary file is left";
}

using Lines = std::vector<std::string>;

std::vector<FlexPatch> named(const Lines& names) {
  std::vector<FlexPatch> patches;
  for (const std::string& name : names) patches.push_back({name, "", {}});
  return patches;
}

TEST(FlexMenu, TextsGoOneAfterTheOtherAndEscapeBytesStay) {
  expectCases("cleaned", [](const Case& row) { return cleanedFlexMenu(row[0]); });
  EXPECT_EQ(cleanedFlexMenu(std::string(flexBanner) + "!"), "!");
}

TEST(FlexMenu, EntriesAreWhatTheDroppedLinesLeave) {
  expectCases("entries", [](const Case& row) {
    std::string entries;
    for (const std::string& entry : flexMenuEntries(row[0])) entries += '<' + entry + '>';
    return entries;
  });
  EXPECT_EQ(flexMenuEntries("0\n1\n2\n" + std::string(1'000'000, 'x') + "\n4\n5\n6\n7"), (Lines{"1", "4"}));
  EXPECT_THROW(flexMenuEntries(""), std::out_of_range);
  EXPECT_THROW(flexMenuEntries("a\nb\nc\nd"), std::out_of_range);
}

TEST(FlexMenu, AKeyIsTheEntryWithoutThreeCharactersAndBlanks) {
  expectCases("key", [](const Case& row) -> std::string {
    try {
      return '"' + flexPatchKey(row[0]) + '"';
    } catch (const std::out_of_range&) {
      return "too short";
    }
  });
}

// The promise that the two programs hold together: whatever the patches are called, each becomes one entry,
// and the key of that entry means this patch and can stand in a command line and a file name.
TEST(Menu, EachPatchIsOneEntryWhoseKeyMeansIt) {
  Lines names;
  for (const Case& row : cases("name")) names.push_back(row[0]);
  names.emplace_back();
  names.push_back(std::string(5000, 'w'));
  names.push_back(std::string(flexBanner));
  for (int more = 0; more < 90; ++more) names.push_back("Patch " + std::to_string(more));
  const auto patches = named(names);
  const std::string printed = menuText(patches) + complaintText(patches.size());
  const Lines entries = flexMenuEntries(cleanedFlexMenu(printed));
  ASSERT_EQ(entries.size(), names.size());
  for (std::size_t index = 0; index < names.size(); ++index) {
    const std::string key = flexPatchKey(entries[index]);
    EXPECT_EQ(chosenPatch(key + "\n", patches), index) << key;
    const auto isHarmless = [](unsigned char byte) {
      return byte >= 0x80 || std::isalnum(byte) != 0 || byte == '-' || byte == '_' || byte == '.' ||
             byte == ',' || byte == '+';
    };
    EXPECT_TRUE(std::all_of(key.begin(), key.end(), isHarmless)) << key;
    EXPECT_TRUE(isValidUTF8(key));
    EXPECT_LE(key.size() + std::string("FlexPatch").size(), 255U) << key;
  }
  EXPECT_EQ(entries[1], "\033  1 - 7 Days");
  EXPECT_EQ(entries[19], "\033  19 - wide blanks");
}

TEST(Menu, AnAnswerMeansAPatchOnlyByItsNumber) {
  const auto patches = named({"One", "7 Days", "-dash"});
  expectCases("answer", [&patches](const Case& row) {
    const auto chosen = chosenPatch(row[0], patches);
    return chosen ? patches[*chosen].name : "none";
  });
}

}  // namespace
