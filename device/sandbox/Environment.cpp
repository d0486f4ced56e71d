#include "device/sandbox/Environment.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/guard/Contract.h"

#include <sstream>

namespace {

// Values go on into the device as they are, so only plain ones do.
bool isPlainValue(std::string_view value) {
  return value.size() <= 128 && isMadeOf(value, "_.@+-");
}

std::string plainOr(std::optional<std::string> value, std::string_view otherwise) {
  return value && isPlainValue(*value) ? *value : std::string(otherwise);
}

// What setlocale() takes for a category.
std::optional<std::string> callerLocale(const Environment& caller, const char* category) {
  for (const char* name : {"LC_ALL", category, "LANG"}) {
    if (auto value = lookUp(caller, name)) return value;
  }
  return std::nullopt;
}

// Without encoding and variant.
std::string languageOf(const std::string& locale) {
  return locale.substr(0, locale.find_first_of(".@"));
}

bool isUntranslated(const std::string& language) {
  return language == "C" || language == "POSIX";
}

// The first entry of LANGUAGE, a list with colons.
std::string preferredLanguage(const Environment& caller) {
  const std::string list = lookUp(caller, "LANGUAGE").value_or("");
  const auto begin = list.find_first_not_of(':');
  return begin == std::string::npos ? std::string() : list.substr(begin, list.find(':', begin) - begin);
}

}  // namespace

Environment callerEnvironment() {
  Environment result;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view line(*variable);
    const auto equals = line.find('=');
    if (equals != std::string_view::npos) result.emplace(line.substr(0, equals), line.substr(equals + 1));
  }
  return result;
}

std::optional<std::string> lookUp(const Environment& environment, std::string_view name) {
  const auto found = environment.find(name);
  if (found == environment.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

Environment deviceEnvironment(const Environment& caller, Audience audience) {
  Environment result{
      {"HOME", guard::homeOfCommands},
      {"USER", "mobile"},
      {"LOGNAME", "mobile"},
      {"SHELL", "/bin/sh"},
      {"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"},
      {"LANG", "C.UTF-8"},
      {"TERM", plainOr(lookUp(caller, "TERM"), "dumb")},
      {"FONTCONFIG_FILE", "/.host/fonts.conf"},
      {"XDG_RUNTIME_DIR", "/run/mobile"},
  };
  if (audience == Audience::Application) {
    // How accents that are typed combine with letters depends on it; the interface's language does not.
    const auto typing = callerLocale(caller, "LC_CTYPE");
    if (typing && isPlainValue(*typing) && (typing->ends_with(".UTF-8") || typing->ends_with(".utf8")))
      result["LC_CTYPE"] = *typing;
    // What a build leaves under the home folder must not become the interface's fonts, styles or key maps.
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
      result[name] = guard::homeOfApplication;
    // Where a bus has no address, its library looks for one and starts a program of /usr/bin to make one, and
    // builds can write there. With these, a bus that is not shown is just not there.
    result["DBUS_SESSION_BUS_ADDRESS"] = std::string("unix:path=") + sessionBusInDevice;
    result["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/.host/no-system-bus";
    for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "QT_QPA_PLATFORM",
                             "XCURSOR_THEME", "XCURSOR_SIZE", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON"}) {
      if (auto value = lookUp(caller, name)) result[name] = *value;
    }
  }
  return result;
}

std::string localeIdentifier(const Environment& caller) {
  const std::string locale = callerLocale(caller, "LC_MESSAGES").value_or("C");
  // As gettext has it: LANGUAGE comes first, except in a locale that is not translated.
  const std::string preferred = isUntranslated(locale) ? std::string() : preferredLanguage(caller);
  const std::string language = languageOf(preferred.empty() ? locale : preferred);
  return language.empty() || isUntranslated(language) || !isPlainValue(language) ? "en_US" : language;
}

fs::path baseFolder(const Environment& caller, const char* name, const fs::path& otherwise) {
  fs::path folder = lookUp(caller, name).value_or("");
  // A relative value is to be ignored.
  return folder.is_absolute() ? folder : otherwise;
}

fs::path defaultDevice(const Environment& caller, const fs::path& home) {
  return baseFolder(caller, "XDG_DATA_HOME", home / ".local/share") / "tweakbench/device";
}

std::vector<fs::path> theosFolders(const Options& options, const Environment& caller, const fs::path& home) {
  if (options.theos) return {*options.theos};
  std::vector<fs::path> result;
  if (auto given = lookUp(caller, "THEOS")) result.emplace_back(*given);
  result.insert(result.end(), {"/opt/theos", "/var/theos", home / "theos"});
  return result;
}

bool isTheos(const fs::path& folder) {
  std::error_code error;
  return fs::is_regular_file(folder / "makefiles/common.mk", error);
}

fs::path findProgram(const Environment& caller, const char* name) {
  std::istringstream folders(lookUp(caller, "PATH").value_or("/usr/bin:/bin"));
  for (std::string folder; std::getline(folders, folder, ':');) {
    fs::path program = fs::path(folder) / name;
    if (program.is_absolute() && access(program.c_str(), X_OK) == 0) return program;
  }
  return {};
}

fs::path findBubblewrap(const Environment& caller) {
  fs::path program = findProgram(caller, "bwrap");
  if (!program.empty()) return program;
  throw Refusal("bubblewrap is not installed; install it with \"apt install bubblewrap\".");
}

fs::path findTheos(const Options& options, const Environment& caller, const fs::path& home) {
  for (const auto& candidate : theosFolders(options, caller, home)) {
    std::error_code error;
    fs::path whole = fs::canonical(candidate, error);
    if (!error && isTheos(whole)) return whole;
    if (options.theos)
      throw Refusal(candidate.string() +
                    " is not a Theos: it has no makefiles/common.mk; give Theos's own folder.");
  }
  if (options.isTheosWritable) {
    throw Refusal("--writable-theos needs a Theos, and none was found; give its folder with --theos.");
  }
  return {};
}
