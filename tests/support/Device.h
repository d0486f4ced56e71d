// Resets the device that a test runs in, and reads it.
#pragma once

#include "core/FileManager.h"
#include "core/PropertyList.h"
#include "core/run_cmd.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <string>

namespace device {

inline const std::string application = "/Applications/Tweakbench.app/";
inline const std::string projects = "/var/Tweakyard/Projects/";
inline const std::string documents = "/var/mobile/Documents/";
inline const std::string packages = "/var/mobile/Documents/Tweakbench";
inline const std::string preferences = "/var/mobile/Library/Preferences/com.apple.springboard.plist";

inline std::string emptyList(const std::string& inside = "") {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + inside +
         "</dict></plist>";
}

// Removes all projects, settings and logs, and every Theos but /opt/theos.
inline void reset() {
  for (const char* list : {"Choose", "Files", "LangFile", "Checker"})
    putFile(application + list + ".plist", emptyList());
  for (const char* log : {"Checkers.log", "MakeLog.log", "SuccessfullyUpdated.log"})
    removeItemAtPath(application + log);
  for (const char* path : {"/var/Tweakyard", "/var/mobile/Documents/Tweakbench", "/var/theos",
                           "/var/mobile/theos", "/var/mobile/Documents/theos"}) {
    removeItemAtPath(path);
  }
  putFile(preferences, emptyList());
}

inline MaybeText setting(const std::string& list, const std::string& key) {
  return propertyListValue(application + list + ".plist", key);
}

inline void speak(const std::string& language) {
  setPropertyListValue(application + "LangFile.plist", "Language", language);
}

}  // namespace device
