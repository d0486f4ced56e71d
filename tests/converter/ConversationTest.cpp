#include "converter/Conversation.h"
#include "converter/LogosReader.h"
#include "core/FileManager.h"
#include "support/BinaryPropertyList.h"
#include "support/TemporaryFolder.h"
#include "workspace/FlexImport.h"

#include <memory>
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
  EXPECT_EQ(LogosReader::read(source).hooks.at("Trial").at("- (NSTimeInterval)remaining"),
            "return 604800.5;\n");
  EXPECT_NE(log().find("1 of its 1 units."), std::string::npos);

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

TEST_F(Converter, RefusesAnAnswerThatMeansNoPatch) {
  for (const char* answer : {"", "\n", "3\n", "-1\n", "what?\n", "2-7Days\n", "\nwait\n0\n"}) {
    EXPECT_EQ(run(answer), Ending::Refused) << answer;
    EXPECT_EQ(flexMenuEntries(cleanedFlexMenu(log())).size(), 3U) << answer;
    EXPECT_TRUE(cleanedFlexMenu(log()).ends_with("\n\033\n2\033\n")) << log();
  }
  EXPECT_EQ(run(std::string(1 << 20, '0')), Ending::Refused);
  EXPECT_FALSE(fileExistsAtPath(places_.folder));
}

TEST_F(Converter, SaysInOneLineWhyThereIsNoMenu) {
  const auto list = [](const std::string& patches) {
    return "<plist><dict><key>patches</key>" + patches + "</dict></plist>";
  };
  std::string nested;
  for (int level = 0; level < 100; ++level) nested = "<array>" + nested + "</array>";
  const std::string sample = fileAt(TWEAKBENCH_FLEX_SAMPLE);
  const auto expectRefusal = [this](const std::string& reason) {
    EXPECT_EQ(run("0\n"), Ending::Refused);
    EXPECT_EQ(flexMenuEntries(cleanedFlexMenu(log())), std::vector<std::string>{reason});
    EXPECT_FALSE(fileExistsAtPath(places_.folder));
  };
  for (const std::string& bytes : {list("<array/>"), list("<array><string>x</string></array>")}) {
    putFile(places_.list, bytes);
    expectRefusal("No Flex patches were found on this device.");
  }
  for (const std::string& bytes : {std::string(), std::string("patches"), sample.substr(0, 900),
                                   binaryPropertyList(sample).substr(0, 200), list("<dict/>"),
                                   std::string("<plist><array/></plist>"), list(nested)}) {
    putFile(places_.list, bytes);
    expectRefusal("The list of Flex patches is damaged.");
  }
  putFile(places_.list, std::string(2 << 20, 'x'));
  expectRefusal("The list of Flex patches cannot be read.");
  removeItemAtPath(places_.list);
  expectRefusal("No Flex patches were found on this device.");
  mkfifo(places_.list.c_str(), 0600);
  expectRefusal("The list of Flex patches cannot be read.");
  removeItemAtPath(places_.list);
  createDirectoryAtPath(places_.list);
  expectRefusal("The list of Flex patches cannot be read.");
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

}  // namespace
