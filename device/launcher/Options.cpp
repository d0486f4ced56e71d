#include "device/launcher/Options.h"

#include "device/Refusal.h"
#include "device/folder/Packages.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace {

constexpr const char* purpose = "Tweakbench: a workbench for tweak packages, in a device of its own.";
constexpr const char* commands =
    "Commands:\n"
    "  (none)                      Open the application\n"
    "  exec [-n] COMMAND [ARG...]  Run a command in the device and pass its exit status on; -n: without "
    "input\n"
    "  shell                       Open a shell in the device\n"
    "  build NAME [VARIABLE=VALUE...] [-- GOAL...]\n"
    "                              Build the project NAME as \"make package\" does, or with these goals, and "
    "print\n"
    "                              the host's path of each package that was made\n"
    "  path [NAME]                 Print the host's path of the projects, or of one\n"
    "  import [--replace] HOSTPATH\n"
    "                              Copy this folder into the device as a project; --replace lets it take\n"
    "                              the place of one, which is kept in the device's history\n"
    "  export NAME HOSTPATH        Copy the project NAME, its packages included, to HOSTPATH\n"
    "  history [NAME]              List the earlier states that are kept, of all projects or of this one\n"
    "  restore NAME [WHEN] [--backup | --packages]\n"
    "                              Bring the project NAME, its backup or its packages back, as history\n"
    "                              lists them\n"
    "  send NAME [USER@HOST]       Copy the project's newest package to a phone and install it there\n"
    "  doctor [--quick]            Say whether a build works, and what to do where it does not; --quick\n"
    "                              builds none\n\n"
    "All of them work beside an open application, and replace nothing without --replace.\n"
    "HOSTPATH of an export is the folder to put the copy into, or else the copy's own new name. WHEN is a\n"
    "time as history prints it, or its beginning. Folders .theos and files over 64 MiB have no history.\n\n"
    "Exit status: the command's, make's; 128 + n if signal n killed it; 125 if the device could not be set\n"
    "up; the doctor's: 0 if a build works, otherwise 1; of path, import, export, restore: 0, or 1 if "
    "nothing\n"
    "was found or copied; of send: 0, 1 if there is no package, 2 if the phone is not reached, 3 if it\n"
    "refuses the login, 4 if the copy fails, 5 if dpkg does.";

// The words of a command that takes exactly `count`, two dashes before them aside.
std::vector<std::string> operands(std::vector<std::string> words, std::size_t count, const char* usage) {
  if (!words.empty() && words.front() == "--") words.erase(words.begin());
  const bool hasEmpty = std::find(words.begin(), words.end(), "") != words.end();
  if (words.size() != count || hasEmpty) throw Refusal(std::string("Usage: tweakbench ") + usage + ".");
  return words;
}

void takeBuild(Options& options, const std::vector<std::string>& words) {
  constexpr const char* usage = "Usage: tweakbench build NAME [VARIABLE=VALUE...] [-- GOAL...].";
  options.action = Options::Action::Build;
  const auto dashes = std::find(words.begin(), words.end(), "--");
  if (dashes == words.begin() || words.front().empty()) throw Refusal(usage);
  options.project = words.front();
  for (auto word = words.begin() + 1; word != dashes; ++word) {
    const auto equals = word->find('=');
    if (equals == std::string::npos || equals == 0 || word->starts_with('-'))
      throw Refusal(std::string("\"") + *word + "\" is not VARIABLE=VALUE, and goals come after --. " +
                    usage);
    options.command.push_back(*word);
  }
  if (dashes != words.end()) options.command.insert(options.command.end(), dashes + 1, words.end());
  if (dashes == words.end() || dashes + 1 == words.end()) options.command.emplace_back("package");
}

void takeRestore(Options& options, std::vector<std::string> words) {
  options.action = Options::Action::Restore;
  if (const auto backup = std::find(words.begin(), words.end(), "--backup"); backup != words.end()) {
    options.kept = Kept::Backup;
    words.erase(backup);
  } else if (const auto packages = std::find(words.begin(), words.end(), "--packages");
             packages != words.end()) {
    options.kept = Kept::Packages;
    words.erase(packages);
  }
  const bool hasTime = words.size() > 1 && words[words.size() - 2] != "--";
  words = operands(std::move(words), hasTime ? 2 : 1, "restore NAME [WHEN] [--backup | --packages]");
  if (words.front().starts_with("--") || words.back().starts_with("--"))
    throw Refusal("There is no option " + words.back() + " of restore; see tweakbench --help.");
  requireEntryName(words.front());
  options.project = words.front();
  if (hasTime) options.when = words.back();
}

void takeCommand(Options& options, std::vector<std::string> words) {
  if (words.empty()) return;
  const std::string name = words.front();
  words.erase(words.begin());
  if (name == "exec") {
    options.hasInput = words.empty() || words.front() != "-n";
    if (!options.hasInput) words.erase(words.begin());
    if (!words.empty() && words.front() == "--") words.erase(words.begin());
    if (words.empty()) throw Refusal("exec needs a command to run in the device.");
    options.action = Options::Action::Execute;
    options.command = std::move(words);
  } else if (name == "shell") {
    if (!words.empty()) throw Refusal("shell takes no arguments; use exec to run a command.");
    options.action = Options::Action::OpenShell;
  } else if (name == "doctor") {
    options.isQuick = !words.empty() && words.front() == "--quick";
    if (words.size() > (options.isQuick ? 1 : 0)) throw Refusal("Usage: tweakbench doctor [--quick].");
    options.action = Options::Action::Examine;
  } else if (name == "build") {
    takeBuild(options, words);
  } else if (name == "send") {
    const std::size_t given = words.size() == 1 ? 1 : 2;
    words = operands(std::move(words), given, "send NAME [USER@HOST]");
    options.action = Options::Action::Send;
    options.project = words[0];
    if (given == 2) options.phone = words[1];
  } else if (name == "path") {
    options.action = Options::Action::ShowPath;
    if (!words.empty()) options.project = operands(std::move(words), 1, "path [NAME]").front();
  } else if (name == "import") {
    options.action = Options::Action::Import;
    options.isReplacing = !words.empty() && words.front() == "--replace";
    if (options.isReplacing) words.erase(words.begin());
    options.hostPath = operands(std::move(words), 1, "import [--replace] HOSTPATH").front();
  } else if (name == "export") {
    words = operands(std::move(words), 2, "export NAME HOSTPATH");
    options.action = Options::Action::Export;
    options.project = words[0];
    options.hostPath = words[1];
  } else if (name == "history") {
    options.action = Options::Action::History;
    if (!words.empty()) options.project = operands(std::move(words), 1, "history [NAME]").front();
  } else if (name == "restore") {
    takeRestore(options, std::move(words));
  } else if (name.starts_with("-")) {
    throw Refusal("There is no option " + name + "; see tweakbench --help.");
  } else {
    throw Refusal("There is no command " + name + "; see tweakbench --help.");
  }
}

}  // namespace

Options parseOptions(int count, const char* const* arguments) {
  Options options;
  bool writableTheos = false;
  bool network = false;
  CLI::App parser(purpose, "tweakbench");
  parser.footer(commands);
  // What follows the command is the command's own.
  parser.prefix_command();
  parser.set_version_flag("--version", "tweakbench " TWEAKBENCH_VERSION);
  parser.add_option("--device", options.device, "Keep the device in this folder")->type_name("DIR");
  parser.add_option("--theos", options.theos, "Use this Theos")->type_name("DIR");
  parser.add_flag("--writable-theos", writableTheos, "Let the device change Theos");
  parser.add_flag("--network", network, "Let the device reach the network");
#ifdef TWEAKBENCH_TEST_OPTIONS
  bool noFilter = false;
  parser.add_flag("--no-filter", noFilter,
                  "Start the command without the filter, as the application is (tests)");
  bool asApplication = false;
  parser.add_flag("--as-application", asApplication, "Give the command the application's display (tests)");
#endif
  try {
    parser.parse(count, arguments);
  } catch (const CLI::CallForHelp&) {
    options.action = Options::Action::ShowText;
    options.text = parser.help();
    return options;
  } catch (const CLI::CallForVersion& version) {
    options.action = Options::Action::ShowText;
    options.text = std::string(version.what()) + "\n";
    return options;
  } catch (const CLI::ParseError& error) {
    throw Refusal(std::string(error.what()) + "; see tweakbench --help.");
  }
  if (options.device && options.device->empty()) throw Refusal("--device needs a folder.");
  if (options.theos && options.theos->empty()) throw Refusal("--theos needs a folder.");
  if (writableTheos) options.theosAccess = Options::Theos::Writable;
  if (network) options.network = Options::Network::On;
#ifdef TWEAKBENCH_TEST_OPTIONS
  if (noFilter) options.filter = Options::Filter::Off;
  if (asApplication) options.surroundings = Options::Surroundings::Application;
#endif
  takeCommand(options, parser.remaining());
  return options;
}
