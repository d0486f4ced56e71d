// The launcher's command line.
#pragma once

#include "device/folder/HistoryFolder.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

struct Options {
  enum class Action {
    OpenApplication,
    Execute,
    OpenShell,
    Build,
    Import,
    Export,
    ShowPath,
    Send,
    History,
    Restore,
    Examine,
    ShowText
  };

  Action action = Action::OpenApplication;
  std::optional<fs::path> device;
  std::optional<fs::path> theos;
  bool isTheosWritable = false;
  bool hasNetwork = false;
  // Execute: whether the command is started through the guard, or without the filter as the application is.
  // Only builds with tests know the second: leak checking and tracing need ptrace, which the filter takes
  // away.
  bool isFiltered = true;
  // Execute: whether the command is given the display that the application has, so that a test is where the
  // application's own commands are. Only builds with tests know that.
  bool isAsApplication = false;
  // Execute: whether the command reads what the caller would.
  bool hasInput = true;
  // Execute: the command and its arguments, untouched; never empty.
  // Build: the arguments for make, its goals among them.
  std::vector<std::string> command;
  // Build, Export, Send, Restore: the project's name. ShowPath, History: the same, or empty for all.
  std::string project;
  // Examine: whether to leave the trial out.
  bool isQuick = false;
  // Restore: what of the project, and the beginning of an entry's name, or empty.
  Kept kept = Kept::Project;
  std::string when;
  // Import: whether a project of that name is replaced.
  bool isReplacing = false;
  // Send: [USER@]HOST, or empty for what the environment says.
  std::string phone;
  // Import: the folder to copy. Export: where the copy goes.
  fs::path hostPath;
  // ShowText: what --help or --version prints.
  std::string text;
};

// Throws Refusal for a wrong command line.
Options parseOptions(int count, const char* const* arguments);
