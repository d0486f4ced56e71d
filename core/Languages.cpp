#include "core/Languages.h"

#include "core/PropertyList.h"

namespace {

constexpr const char* langFilePlist = "/Applications/Tweakbench.app/LangFile.plist";
constexpr const char* languageKey = "Language";
constexpr const char* devicePreferences =
    "/private/var/mobile/Library/Preferences/com.apple.springboard.plist";
constexpr const char* localeKey = "XBRecentLocale";

}  // namespace

bool languageIsArabic() {
  if (propertyListValue(langFilePlist, languageKey) == "Auto") {
    const MaybeText locale = propertyListValue(devicePreferences, localeKey);
    return locale && locale->find("ar") != std::string::npos;
  }
  return propertyListValue(langFilePlist, languageKey) == "AR";
}

const char* Languages(const char* arabic, const char* english) {
  return languageIsArabic() ? arabic : english;
}

void setLanguage(Language language) {
  setPropertyListValue(langFilePlist, languageKey,
                       language == Language::Arabic      ? MaybeText("AR")
                       : language == Language::Automatic ? MaybeText("Auto")
                                                         : std::nullopt);
}
