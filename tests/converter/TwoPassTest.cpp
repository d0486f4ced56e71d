#include "core/FileManager.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "core/run_logged.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "workspace/FlexMenu.h"
#include "workspace/StartUp.h"

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

}  // namespace
