#include "core/Languages.h"
#include "support/Device.h"

#include <gtest/gtest.h>

namespace {

TEST(Languages, FollowTheSettingAndInAutomaticModeTheDevice) {
  const struct {
    const char* why;
    const char* language;  // null: absent
    const char* locale;    // null: absent
    bool arabic;
  } rows[] = {
      {"nothing set", nullptr, "ar_SA", false},
      {"Arabic", "AR", "en_US", true},
      {"only upper case", "ar", "ar_SA", false},
      {"anything else", "English", "ar_SA", false},
      {"automatic, Arabic device", "Auto", "ar_SA", true},
      {"automatic, English device", "Auto", "en_US", false},
      {"automatic, Catalan device", "Auto", "ca_ES", false},
      {"automatic, no locale", "Auto", nullptr, false},
      {"automatic, ar anywhere", "Auto", "en_DE@calendar=gregorian;x-ar", true},
      {"automatic, upper case only", "Auto", "es_AR", false},
      {"automatic is case-sensitive", "auto", "ar_SA", false},
  };
  for (const auto& row : rows) {
    device::reset();
    if (row.language != nullptr) device::speak(row.language);
    if (row.locale != nullptr) setPropertyListValue(device::preferences, "XBRecentLocale", row.locale);
    EXPECT_STREQ(Languages("arabic", "english"), row.arabic ? "arabic" : "english") << row.why;
  }
  for (const std::string& missing : {device::preferences, device::application + "LangFile.plist"}) {
    device::reset();
    device::speak("Auto");
    setPropertyListValue(device::preferences, "XBRecentLocale", "ar_SA");
    removeItemAtPath(missing);
    EXPECT_STREQ(Languages("arabic", "english"), "english") << missing;
  }
}

}  // namespace
