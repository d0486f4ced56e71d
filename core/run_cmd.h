// The one way in which the system starts another program: a command line handed to /bin/sh.
#pragma once

#include "core/Text.h"

#include <functional>
#include <string>
#include <string_view>

// Runs `cmd` through /bin/sh and blocks until the shell has exited. The child inherits the environment and
// the standard streams. Exit status and a refused spawn are not reported: callers check files or a captured
// log. The only report is perror("waitpid"). A command that deletes or replaces is for run_kept_cmd()
// (core/History.h). Any thread.
void run_cmd(const char* cmd);

// Runs `format` with each "%@" filled by the next value (see fill() in Text.h). `variable`, as NAME=VALUE, is
// in the environment of this command alone.
void run_cmd(std::string_view format, std::initializer_list<MaybeText> values,
             const char* variable = nullptr);

// Runs `cmd` and returns its exit status as a shell does: 128 + n if signal n killed it, 127 if it could not
// be started. `variable` as above.
int run_cmd_status(const char* cmd, const char* variable = nullptr);

// The build screen's name for the same function.
inline void run_cmder(const char* cmd) {
  run_cmd(cmd);
}
inline void run_cmder(std::string_view format, std::initializer_list<MaybeText> values) {
  run_cmd(format, values);
}

// Runs `cmd` and hands its standard output over as it comes, and an empty piece at least ten times a second
// while nothing comes; the caller's thread waits meanwhile. `read` returns false to end the command with all
// that it started. For commands that change nothing: the launcher is not asked to keep anything.
void read_cmd(const std::string& cmd, const std::function<bool(std::string_view piece)>& read);

// One argument of a command line, whatever it holds.
std::string quoted(const std::string& word);

// Sends SIGTERM to every running command and its descendants, and SIGKILL after `graceMilliseconds`. Later
// calls of run_cmd do nothing. Called at the end of the process, so that no build goes on behind a closed
// window and no later step of an interrupted sequence (a deletion, a move) runs. Returns when all commands
// have ended, maybe before run_cmd returns in their threads. Processes that outlive their shell end with the
// device. Main thread.
void stopCommands(int graceMilliseconds);

// Redirects the process's standard output, error and input, in this order, to the file `log`, opened with
// "a+". Not locked and never undone: later commands write there too, until the next redirection. One captured
// run at a time; the interface ensures that.
void redirectStandardStreams(const std::string& log);

// Removes `log` or, if its folder cannot be changed, empties it. False if it is not empty afterwards.
bool discardLog(const std::string& log);

// Discards `log`, redirects the standard streams to it, runs `cmd` and returns the log's text; absent if the
// log could not be read or discarded, or is not UTF-8. The log file stays.
MaybeText run_logged(const std::string& cmd, const std::string& log);
