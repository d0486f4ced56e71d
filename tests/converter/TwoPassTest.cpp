#include "core/FileManager.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "core/run_logged.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"
#include "workspace/FlexMenu.h"
#include "workspace/StartUp.h"

#include <cstdio>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

const std::string menuLog = device::application + "Getter.log";
const std::string conversionLog = device::application + "titleANDObj.log";
const std::string list = "/var/mobile/Library/Flex/patches.plist";
const std::string source = "/var/mobile/Documents/Wexley88/Tweak.xm";

class TwoPasses : public testing::Test {
 protected:
  TwoPasses() {
    device::reset();
    removeItemAtPath("/var/mobile/Documents/Wexley88");
    createDirectoryAtPath("/var/mobile/Documents");
    installConverter();
    putFile(list, device::emptyList(
                      "<key>patches</key><array><dict><key>name</key><string>First (one)</string></dict>"
                      "<dict><key>name</key><string>2nd</string><key>units</key><array><dict><key>class</key>"
                      "<string>Account</string><key>method</key><string>- (BOOL)isPremium</string>"
                      "<key>returns</key><true/></dict></array></dict></array>"));
  }
  ~TwoPasses() override { removeItemAtPath(list); }

  static std::vector<std::string> menu() {
    const MaybeText log = run_logged("ftt", menuLog);
    return log ? flexMenuEntries(cleanedFlexMenu(*log)) : std::vector<std::string>();
  }

  static std::string convert(const std::string& key) {
    return run_logged(fill("cd /var/mobile/Documents && (echo \"%@\") | ftt; echo status $?", {key}),
                      conversionLog)
        .value_or("(no log)");
  }

  const StandardStreams restored_;
};

TEST_F(TwoPasses, TheMenuIsReadWithTheLogAsInputAndTheKeyBringsTheSource) {
  ASSERT_TRUE(fileExistsAtPath("/usr/bin/ftt"));
  EXPECT_FALSE(fileExistsAtPath(device::application + "ftt"));
  const auto entries = menu();
  ASSERT_EQ(entries, (std::vector<std::string>{"\033  0 - First one", "\033  1 - 2nd"})) << fileAt(menuLog);
  EXPECT_FALSE(fileExistsAtPath(source));

  const std::string log = convert(flexPatchKey(entries[1]));
  EXPECT_TRUE(log.ends_with("status 0\n")) << log;
  const std::string made = fileAt(source);
  EXPECT_NE(made.find("%hook Account\n\n- (BOOL)isPremium {\n\treturn YES;\n}\n\n%end\n"), std::string::npos)
      << made;
}

TEST_F(TwoPasses, NothingIsWrittenForAnAnswerOrAListThatIsNoGood) {
  EXPECT_NE(convert("2").find("status 1\n"), std::string::npos);
  EXPECT_NE(convert("").find("status 1\n"), std::string::npos);
  putFile(list, "damaged");
  EXPECT_EQ(menu(), std::vector<std::string>{"The list of Flex patches is damaged."});
  const std::string log = convert("1-2nd");
  EXPECT_NE(log.find("The list of Flex patches is damaged.\n"), std::string::npos) << log;
  EXPECT_TRUE(log.ends_with("status 1\n")) << log;
  EXPECT_FALSE(fileExistsAtPath(source));
}

TEST_F(TwoPasses, AnImportLandsInTheProjectOverTheOneBefore) {
  const std::string project = device::projects + "P/";
  createDirectoryAtPath(project);
  setListedProject("P");
  putFile("/var/mobile/Documents/Wexley88/stale", "");
  putFile(menuLog, "of an earlier import");
  const auto entries = harvestFlexMenu();
  ASSERT_EQ(entries, (std::vector<std::string>{"\033  0 - First one", "\033  1 - 2nd"}));
  EXPECT_FALSE(fileExistsAtPath("/var/mobile/Documents/Wexley88"));
  EXPECT_EQ(fileAt(menuLog).find("[31m"), std::string::npos) << "the cleaned menu is written back";

  putFile(project + "FlexPatch1-2nd", "of an earlier import");
  putFile(conversionLog, "of an earlier import");
  convertFlexPatch(entries[1]);
  EXPECT_NE(fileAt(project + "FlexPatch1-2nd").find("%hook Account"), std::string::npos);
  EXPECT_EQ(contentsOfDirectoryAtPath(project)->size(), 1U);
  EXPECT_FALSE(fileExistsAtPath("/var/mobile/Documents/Wexley88"));
  EXPECT_TRUE(fileExistsAtPath(conversionLog));
  EXPECT_EQ(fileAt(conversionLog).find("earlier"), std::string::npos);
  run_cmd("echo later");
  EXPECT_TRUE(fileAt(conversionLog).ends_with("later\n")) << "the streams stay on the conversion's log";
  removeFlexMenu();
  EXPECT_FALSE(fileExistsAtPath(menuLog));

  convertFlexPatch("\033  7 - Gone");
  EXPECT_EQ(contentsOfDirectoryAtPath(project)->size(), 1U) << "what ftt refuses lands nowhere";
  EXPECT_THROW(convertFlexPatch("ab"), std::out_of_range);
  // Without a converter the menu has too few lines; the event boundary takes it from there.
  ASSERT_EQ(rename("/usr/bin/ftt", "/usr/bin/ftt-away"), 0);
  EXPECT_THROW(harvestFlexMenu(), std::out_of_range);
  ASSERT_EQ(rename("/usr/bin/ftt-away", "/usr/bin/ftt"), 0);
}

}  // namespace
