#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"

#include <cstdio>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

const std::string menuLog = device::application + "Getter.log";
const std::string conversionLog = device::application + "titleANDObj.log";
const std::string list = "/var/mobile/Library/Flex/patches.plist";
const std::string work = "/var/mobile/Documents/Wexley88";

class TwoPasses : public testing::Test {
 protected:
  TwoPasses() {
    device::reset();
    removeItemAtPath(work);
    createDirectoryAtPath("/var/mobile/Documents");
    installConverter();
    putFile(list, device::emptyList(
                      "<key>patches</key><array><dict><key>name</key><string>First (one)</string></dict>"
                      "<dict><key>name</key><string>2nd</string><key>units</key><array><dict><key>class</key>"
                      "<string>Account</string><key>method</key><string>- (BOOL)isPremium</string>"
                      "<key>returns</key><true/></dict></array></dict></array>"));
  }
  ~TwoPasses() override { removeItemAtPath(list); }

  const StandardStreams restored_;
};

TEST_F(TwoPasses, AnImportLandsInTheProjectOverTheOneBefore) {
  const std::string project = device::projects + "P/";
  createDirectoryAtPath(project);
  setListedProject("P");
  putFile(work + "/stale", "");
  putFile(menuLog, "of an earlier import");
  const auto entries = harvestFlexMenu();
  ASSERT_EQ(entries, (std::vector<std::string>{"\033  0 - First one", "\033  1 - 2nd"})) << fileAt(menuLog);
  EXPECT_FALSE(fileExistsAtPath(work)) << "the menu's run converts nothing";
  EXPECT_EQ(fileAt(menuLog).find("[31m"), std::string::npos) << "the cleaned menu is written back";

  putFile(project + "FlexPatch1-2nd", "of an earlier import");
  putFile(conversionLog, "of an earlier import");
  convertFlexPatch(entries[1]);
  const std::string made = fileAt(project + "FlexPatch1-2nd");
  EXPECT_NE(made.find("%hook Account\n\n- (BOOL)isPremium {\n\treturn YES;\n}\n\n%end\n"), std::string::npos)
      << made;
  EXPECT_EQ(contentsOfDirectoryAtPath(project)->size(), 1U);
  EXPECT_FALSE(fileExistsAtPath(work));
  EXPECT_TRUE(fileExistsAtPath(conversionLog));
  EXPECT_EQ(fileAt(conversionLog).find("earlier"), std::string::npos);
  run_cmd("echo later");
  EXPECT_TRUE(fileAt(conversionLog).ends_with("later\n")) << "the streams stay on the conversion's log";
  removeFlexMenu();
  EXPECT_FALSE(fileExistsAtPath(menuLog));
}

TEST_F(TwoPasses, WhatTheConverterRefusesLandsNowhere) {
  const std::string project = device::projects + "P/";
  createDirectoryAtPath(project);
  setListedProject("P");
  EXPECT_EQ(run_logged("echo 7 | ftt > /dev/null; echo $?; echo 0 | ftt > /dev/null; echo $?", menuLog),
            "1\n0\n");
  removeItemAtPath(work);
  convertFlexPatch("\033  7 - Gone");
  EXPECT_THROW(convertFlexPatch("ab"), std::out_of_range);
  putFile(list, "damaged");
  EXPECT_EQ(harvestFlexMenu(), std::vector<std::string>{"The list of Flex patches is damaged."});
  convertFlexPatch("\033  1 - 2nd");
  EXPECT_TRUE(contentsOfDirectoryAtPath(project)->empty());
  EXPECT_NE(fileAt(conversionLog).find("The list of Flex patches is damaged.\n"), std::string::npos);
  // Without a converter the menu has too few lines; the event boundary takes it from there.
  ASSERT_EQ(rename("/usr/bin/ftt", "/usr/bin/ftt-away"), 0);
  EXPECT_THROW(harvestFlexMenu(), std::out_of_range);
  ASSERT_EQ(rename("/usr/bin/ftt-away", "/usr/bin/ftt"), 0);
}

}  // namespace
