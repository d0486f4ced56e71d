#include "core/Languages.h"

#include "core/PropertyList.h"

namespace {

constexpr const char* languageSettings = "/Applications/Tweakbench.app/LangFile.plist";
constexpr const char* languageKey = "Language";
constexpr const char* devicePreferences =
    "/private/var/mobile/Library/Preferences/com.apple.springboard.plist";
constexpr const char* localeKey = "XBRecentLocale";

}  // namespace

bool languageIsArabic() {
  if (propertyListValue(languageSettings, languageKey) == "Auto") {
    const MaybeText locale = propertyListValue(devicePreferences, localeKey);
    return locale && locale->find("ar") != std::string::npos;
  }
  return propertyListValue(languageSettings, languageKey) == "AR";
}

const char* Languages(const char* arabic, const char* english) {
  return languageIsArabic() ? arabic : english;
}
