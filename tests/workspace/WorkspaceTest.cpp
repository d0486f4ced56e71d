#include "core/Languages.h"
#include "support/Cases.h"
#include "support/Device.h"
#include "workspace/Projects.h"

#include <set>

#include <gtest/gtest.h>

namespace {

TEST(Tokens, AreIndependent) {
  std::set<std::string> tokens;
  std::set<char> letters;
  for (int count = 0; count < 500; ++count) {
    const std::string token = randomToken();
    EXPECT_EQ(token.size(), 8U);
    letters.insert(token.begin(), token.end());
    tokens.insert(token);
  }
  EXPECT_EQ(tokens.size(), 500U);
  EXPECT_EQ(letters.size(), 26U);
  EXPECT_EQ(*letters.begin(), 'a');
  EXPECT_EQ(*letters.rbegin(), 'z');
}

TEST(Languages, FollowTheSettingAndInAutomaticModeTheDevice) {
  expectCases("language", [](const Case& row) -> std::string {
    device::reset();
    if (row[1] != "-") device::speak(row[1]);
    if (row[2] != "-") setPropertyListValue(device::preferences, "XBRecentLocale", row[2]);
    return Languages("arabic", "english");
  });
  for (const std::string& missing : {device::preferences, device::application + "LangFile.plist"}) {
    device::reset();
    device::speak("Auto");
    setPropertyListValue(device::preferences, "XBRecentLocale", "ar_SA");
    removeItemAtPath(missing);
    EXPECT_STREQ(Languages("arabic", "english"), "english") << missing;
  }
}

}  // namespace
