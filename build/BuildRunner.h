// Building the current project with Theos.
#pragma once

#include "build/LogCleanUp.h"
#include "core/Text.h"

#include <functional>
#include <string>
#include <vector>

// The whole command sequence of one tap on a build button: when Theos has not been updated yet, `updateTheos`
// runs instead of a build; otherwise the project is built, everything printed going to the build log, and its
// packages replace those in its package folder. Blocks on each command: run it on a worker thread, one job at
// a time, since it re-points the process's standard streams. Success shows in the package folder alone.
void runBuildJob(BuildVariant variant, const std::function<void()>& updateTheos);

// Runs Theos's own updater once, its output captured into the log whose existence means "updated", whether or
// not it succeeded.
void updateTheos();

// The build without a screen: runs make in the folder of `project`, whose name must be fit for command lines,
// with `arguments`, which are passed on as they are: variables, goals, options. Returns make's exit status,
// or 128 + n if signal n killed it. What make prints goes to the standard streams as they are. Packages
// replace those in the package folder only where make succeeded and made some; throws std::runtime_error with
// a sentence where they could not be moved there.
int buildProject(const std::string& project, const std::vector<std::string>& arguments);

// What a finished build leaves for the screen, read after the log was cleaned.
struct BuildResult {
  MaybeText log;      // UTF-8, bytes that are not replaced; absent when the log is missing
  MaybeText project;  // the current project, absent when none is
  bool hasPackages;   // the project's package folder exists
};

// The result of the last job. Cleans the build log on the way.
BuildResult collectBuildResult(BuildVariant variant);
