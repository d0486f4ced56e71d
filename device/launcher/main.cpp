// tweakbench, the launcher: opens the application, a shell or a command in the device.
#include "device/Process.h"
#include "device/launcher/Commands.h"

#include <fcntl.h>
#include <iostream>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace {

void closeInheritedDescriptors() {
  syscall(SYS_close_range, 3U, ~0U, 0U);
  // A standard stream that is missing would become some file of ours.
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDWR);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  close(descriptor);
}

}  // namespace

int main(int count, char** arguments) {
  closeInheritedDescriptors();
  // The device's files have fixed modes, whatever the caller's umask.
  const mode_t callerUmask = umask(022);
  // A caller that ignores it has the kernel throw away how children end.
  signal(SIGCHLD, SIG_DFL);
  Options options;
  // A wrong command line is nothing that a menu has.
  options.action = Options::Action::ShowText;
  try {
    options = parseOptions(count, arguments);
    switch (options.action) {
      case Options::Action::ShowText:
        std::cout << options.text << std::flush;
        return std::cout ? 0 : launcherFailed;
      case Options::Action::Examine:
        return examine(options);
      case Options::Action::Build:
        return build(options);
      case Options::Action::History:
        return showHistory(options);
      case Options::Action::OpenApplication:
      case Options::Action::Execute:
      case Options::Action::OpenShell:
        return run(options);
      default:
        return transfer(options, callerUmask);
    }
  } catch (const Interrupted& interrupted) {
    raise(interrupted.signal);
    return launcherFailed;
  } catch (const std::exception& error) {
    complain(options, error.what());
    return launcherFailed;
  }
}
