#include "device/launcher/Options.h"

#include "device/Refusal.h"
#include "device/folder/Packages.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace {

constexpr const char* purpose = "Tweakbench: a workbench for tweak packages, in a device of its own.";
constexpr const char* commands = R"(Commands:
  (none)                      Open the application
  exec [-n] COMMAND [ARG...]  Run a command in the device and pass its exit status on; -n: without input
  shell                       Open a shell in the device
  build NAME [VARIABLE=VALUE...] [-- GOAL...]
                              Build the project NAME as "make package" does, or with these goals, and print
                              the host's path of each package that was made
  path [NAME]                 Print the host's path of the projects, or of one
  import [--replace] HOSTPATH
                              Copy this folder into the device as a project; --replace lets it take
                              the place of one, which is kept in the device's history
  export NAME HOSTPATH        Copy the project NAME, its packages included, to HOSTPATH
  history [NAME]              List the earlier states that are kept, of all projects or of this one
  restore NAME [WHEN] [--backup | --packages]
                              Bring the project NAME, its backup or its packages back, as history
                              lists them
  send NAME [USER@HOST]       Copy the project's newest package to a phone and install it there
  doctor [--quick]            Say whether a build works, and what to do where it does not; --quick
                              builds none

All of them work beside an open application, and replace nothing without --replace.
HOSTPATH of an export is the folder to put the copy into, or else the copy's own new name. WHEN is a
time as history prints it, or its beginning. Folders .theos and files over 64 MiB have no history.

Exit status: the command's, make's; 128 + n if signal n killed it; 125 if the device could not be set
up; the doctor's: 0 if a build works, otherwise 1; of path, import, export, restore: 0, or 1 if nothing
was found or copied; of send: 0, 1 if there is no package, 2 if the phone is not reached, 3 if it
refuses the login, 4 if the copy fails, 5 if dpkg does.)";

// Throws Refusal with the command's usage and, in front of it, what is wrong, where that does not tell by
// itself.
[[noreturn]] void refuseUsage(const std::string& usage, const std::string& reason = {}) {
  throw Refusal(reason + "Usage: tweakbench " + usage + ".");
}

void takeBuild(Options& options, std::vector<std::string> words, const char* usage) {
  const auto dashes = std::find(words.begin(), words.end(), "--");
  if (dashes == words.begin() || words.front().empty()) refuseUsage(usage);
  options.project = words.front();
  for (auto word = words.begin() + 1; word != dashes; ++word) {
    const auto equals = word->find('=');
    if (equals == std::string::npos || equals == 0 || word->starts_with('-'))
      refuseUsage(usage, "\"" + *word + "\" is not VARIABLE=VALUE, and goals come after --. ");
    options.command.push_back(*word);
  }
  if (dashes != words.end()) options.command.insert(options.command.end(), dashes + 1, words.end());
  if (dashes == words.end() || dashes + 1 == words.end()) options.command.emplace_back("package");
}

void takeExecute(Options& options, std::vector<std::string> words, const char*) {
  options.hasInput = words.empty() || words.front() != "-n";
  if (!options.hasInput) words.erase(words.begin());
  if (!words.empty() && words.front() == "--") words.erase(words.begin());
  if (words.empty()) throw Refusal("exec needs a command to run in the device.");
  options.command = std::move(words);
}

// A command of options and operands. Its usage names them: a word in capitals is an operand, and one in
// brackets is optional.
void takeOperands(Options& options, std::vector<std::string> words, const char* usage) {
  CLI::App parser;
  parser.set_help_flag();
  const auto flag = [&](const char* name, auto& target, auto value) {
    if (std::strstr(usage, name) != nullptr)
      parser.add_flag_callback(name, [&target, value] { target = value; });
  };
  flag("--replace", options.isReplacing, true);
  flag("--quick", options.isQuick, true);
  flag("--backup", options.kept, Kept::Backup);
  flag("--packages", options.kept, Kept::Packages);
  const auto operand = [&](const char* name, auto& target) {
    const char* place = std::strstr(usage, name);
    if (place == nullptr) return;
    parser.add_option(name, target)->required(place[-1] != '[')->check([](const std::string& word) {
      return word.empty() ? std::string("is empty") : std::string();
    });
  };
  operand("NAME", options.project);
  operand("HOSTPATH", options.hostPath);
  operand("WHEN", options.when);
  operand("USER@HOST", options.phone);
  try {
    std::reverse(words.begin(), words.end());
    parser.parse(std::move(words));
  } catch (const CLI::ParseError&) {
    refuseUsage(usage);
  }
  if (options.action == Options::Action::Restore) requireEntryName(options.project);
}

constexpr struct {
  std::string_view name;
  Options::Action action;
  void (*take)(Options& options, std::vector<std::string> words, const char* usage);
  const char* usage;
} commandTable[] = {
    {"exec", Options::Action::Execute, takeExecute, "exec [-n] COMMAND [ARG...]"},
    {"shell", Options::Action::OpenShell, takeOperands, "shell"},
    {"build", Options::Action::Build, takeBuild, "build NAME [VARIABLE=VALUE...] [-- GOAL...]"},
    {"path", Options::Action::ShowPath, takeOperands, "path [NAME]"},
    {"import", Options::Action::Import, takeOperands, "import [--replace] HOSTPATH"},
    {"export", Options::Action::Export, takeOperands, "export NAME HOSTPATH"},
    {"history", Options::Action::History, takeOperands, "history [NAME]"},
    {"restore", Options::Action::Restore, takeOperands, "restore NAME [WHEN] [--backup | --packages]"},
    {"send", Options::Action::Send, takeOperands, "send NAME [USER@HOST]"},
    {"doctor", Options::Action::Examine, takeOperands, "doctor [--quick]"},
};

}  // namespace

Options parseOptions(int count, const char* const* arguments) {
  Options options;
  CLI::App parser(purpose, "tweakbench");
  parser.footer(commands);
  // What follows the command is the command's own.
  parser.prefix_command();
  parser.set_version_flag("--version", "tweakbench " TWEAKBENCH_VERSION);
  parser.add_option("--device", options.device, "Keep the device in this folder")->type_name("DIR");
  parser.add_option("--theos", options.theos, "Use this Theos")->type_name("DIR");
  parser.add_flag("--writable-theos", options.isTheosWritable, "Let the device change Theos");
  parser.add_flag("--network", options.hasNetwork, "Let the device reach the network");
#ifdef TWEAKBENCH_TEST_OPTIONS
  parser.add_flag("!--no-filter", options.isFiltered,
                  "Start the command without the filter, as the application is (tests)");
  parser.add_flag("--as-application", options.isAsApplication,
                  "Give the command the application's display (tests)");
#endif
  try {
    parser.parse(count, arguments);
  } catch (const CLI::CallForHelp&) {
    options.text = parser.help();
  } catch (const CLI::CallForVersion& version) {
    options.text = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    throw Refusal(std::string(error.what()) + "; see tweakbench --help.");
  }
  if (!options.text.empty()) {
    options.action = Options::Action::ShowText;
    return options;
  }
  if (options.device && options.device->empty()) throw Refusal("--device needs a folder.");
  if (options.theos && options.theos->empty()) throw Refusal("--theos needs a folder.");
  std::vector<std::string> words = parser.remaining();
  if (words.empty()) return options;
  const std::string name = words.front();
  words.erase(words.begin());
  const auto* const command = std::find_if(std::begin(commandTable), std::end(commandTable),
                                           [&](const auto& each) { return each.name == name; });
  if (command == std::end(commandTable)) {
    const std::string kind = name.starts_with("-") ? "option " : "command ";
    throw Refusal("There is no " + kind + name + "; see tweakbench --help.");
  }
  options.action = command->action;
  command->take(options, std::move(words), command->usage);
  return options;
}
