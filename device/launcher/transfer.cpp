// import and export.
#include "device/transfer/Transfer.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/DeviceFolder.h"
#include "device/launcher/Commands.h"
#include "device/sandbox/Interruption.h"

#include <algorithm>
#include <grp.h>
#include <iostream>
#include <signal.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

// A project could not be copied.
constexpr int kNotCopied = 1;
constexpr std::size_t kNamedAtMost = 5;

// Opens the device for copying; root itself keeps its rights for the host's side of the copy, and who called
// sudo has only their own.
Transfer prepareTransfer(const Options& options, mode_t callerUmask) {
  const Environment caller = callerEnvironment();
  const auto calling = callingAccount(caller);
  Account account = calling ? *calling : accountForFolderOf(0, 0, caller);
  const fs::path device = deviceOf(options, caller, account);
  // An export makes no device.
  if (options.action == Options::Action::Export) requireDevice(device);
  Descriptor folder;
  if (geteuid() == 0) {
    folder = openFolderForAccount(device, caller, calling.has_value(), account);
    if (calling) become(account);
    if (!calling && setgroups(0, nullptr) != 0) refuseWithError("Root's groups could not be given up:");
  } else {
    folder = openOrMakeFolder(device);
  }
  const Rights host = Rights::own();
  const RightsAfterwards backToHost(host);
  const Rights inDevice{account.user, account.group};
  inDevice.assume();
  return {device, openVar(folder.get(), device), host, inDevice, callerUmask, Interruption::check};
}

}  // namespace

void tellLeftOut(const std::string& why, const std::vector<std::string>& leftOut) {
  if (leftOut.empty()) return;
  std::cerr << "tweakbench: Left out, since " << why << ":";
  for (std::size_t i = 0; i < std::min(leftOut.size(), kNamedAtMost); ++i) std::cerr << " " << leftOut[i];
  if (leftOut.size() > kNamedAtMost) std::cerr << " and " << leftOut.size() - kNamedAtMost << " more";
  std::cerr << ".\n";
}

int transfer(const Options& options, mode_t callerUmask) {
  const Transfer prepared = prepareTransfer(options, callerUmask);
  const bool isImport = options.action == Options::Action::Import;
  try {
    const RightsAfterwards backToHost(prepared.host);
    const Interruption interruption;
    const Transferred done = isImport ? importProject(prepared, options.hostPath)
                                      : exportProject(prepared, options.project, options.hostPath);
    tellLeftOut("they are not files, lead out of the project, or are packages that are there already",
                done.leftOut);
    std::cout << (isImport ? "The project " + done.what + " is in the device."
                           : "The project is at " + visible(done.what) + ".")
              << std::endl;
    return 0;
  } catch (const Interrupted& interrupted) {
    raise(interrupted.signal);
    return kNotCopied;
  } catch (const Refusal& refusal) {
    std::cerr << "tweakbench: " << refusal.what() << "\n";
    return kNotCopied;
  }
}

}  // namespace device
