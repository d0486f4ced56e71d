// The one way in which the system starts another program: a command line handed to /bin/sh.
#pragma once

#include "core/Text.h"

// Runs `cmd` through /bin/sh and blocks until the shell has exited. The child inherits the environment and
// the standard streams as they are at that moment. Nothing is returned: exit status and a refused spawn are
// not reported; who cares looks at files or at a captured log afterwards. The only report ever made is
// perror("waitpid") when waiting fails. What the command line may delete or replace is in the history before
// (core/History.h). Any thread.
void run_cmd(const char* cmd);

// Runs `format` with each "%@" filled by the next value (see fill() in Text.h). `variable`, as NAME=VALUE, is
// in the environment of this command alone.
void run_cmd(std::string_view format, std::initializer_list<MaybeText> values,
             const char* variable = nullptr);

// Runs `cmd`, and returns how the command ended, as a shell tells it: its exit status, or 128 + n if signal n
// killed it; 127 if it could not be started. `variable` as above.
int run_cmd_status(const char* cmd, const char* variable = nullptr);

// The build screen's name for the same function.
inline void run_cmder(const char* cmd) {
  run_cmd(cmd);
}
inline void run_cmder(std::string_view format, std::initializer_list<MaybeText> values) {
  run_cmd(format, values);
}

// Ends the running of commands for the rest of the process's life: every command that is running, with all
// that it started, is asked to end and, if it is still there after `graceMilliseconds`, killed; later calls
// of run_cmd return at once without starting anything. For the end of the process, so that no build goes on
// behind a closed window and no step of a broken-off sequence (a deletion, a move) runs after the step that
// was cut short. Returns when every running command has ended; the thread that runs it is about to go on
// then. What outlives its shell is not reached: that ends with the device. Main thread.
void stopCommands(int graceMilliseconds);
