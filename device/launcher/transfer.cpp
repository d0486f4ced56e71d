// path, import, export and send; what they share with restore.

#include "device/Process.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/folder/Packages.h"
#include "device/launcher/Commands.h"

#include <algorithm>
#include <grp.h>
#include <iostream>

namespace {

// A project could not be copied.
constexpr int notCopied = 1;
constexpr std::size_t skippedNamedAtMost = 5;

// Why what is copied may be left out.
constexpr const char* whyLeftOut =
    "they are not files, lead out of the project, or are packages that are there already";

void import(const Transfer& prepared, const Options& options) {
  const Transferred done =
      importProject(prepared, options.hostPath, options.isReplacing ? Existing::Replaced : Existing::Refused);
  tellLeftOut(whyLeftOut, done.leftOut);
  if (!done.warning.empty()) say(done.warning);
  std::cout << "The project " << done.what << " is in the device."
            << (done.kept.empty() ? "" : " The old one is kept in " + done.kept.string() + ".") << std::endl;
}

void exportTo(const Transfer& prepared, const Options& options) {
  const Transferred done = exportProject(prepared, options.project, options.hostPath);
  tellLeftOut(whyLeftOut, done.leftOut);
  std::cout << "The project is at " << visible(done.what) << "." << std::endl;
}

void showPath(const Transfer& prepared, const Options& options) {
  prepared.inDevice.assume();
  if (!options.project.empty()) openProject(prepared.var.get(), options.project);
  if (!openFolderBeneath(prepared.var.get(), projectsFolder))
    refuseWithError("The device's folder of projects cannot be opened:");
  const fs::path projects = prepared.device / "var" / projectsFolder;
  std::cout << (options.project.empty() ? projects : projects / options.project).string() << std::endl;
}

}  // namespace

Transfer openForCopying(const Options& options, mode_t callerUmask) {
  Caller caller(options);
  // Only an import makes a device.
  if (options.action != Options::Action::Import) requireDevice(caller.device);
  Descriptor folder = openDevice(caller);
  const bool isAllInDevice =
      options.action == Options::Action::History || options.action == Options::Action::Restore;
  // Otherwise root itself keeps its rights for the host's side of the copy.
  if (caller.isSettled || isAllInDevice) become(caller.account);
  if (geteuid() == 0 && setgroups(0, nullptr) != 0) refuseWithError("Root's groups could not be given up:");
  const Rights host = Rights::own();
  const RightsAfterwards backToHost(host);
  const Rights inDevice{caller.account.user, caller.account.group};
  inDevice.assume();
  Descriptor var = openVar(folder.get(), caller.device);
  return {caller.device, std::move(folder), std::move(var), host, inDevice, callerUmask, Interruption::check};
}

void tellLeftOut(const std::string& why, const std::vector<std::string>& leftOut) {
  if (leftOut.empty()) return;
  const std::size_t named = std::min(leftOut.size(), skippedNamedAtMost);
  std::string sentence = "Skipped, since " + why + ":";
  for (std::size_t i = 0; i < named; ++i) sentence += " " + leftOut[i];
  if (leftOut.size() > named) sentence += " and " + std::to_string(leftOut.size() - named) + " more";
  say(sentence + ".");
}

int transfer(const Options& options, mode_t callerUmask) {
  const Environment caller = callerEnvironment();
  const Phone phone = options.action == Options::Action::Send ? phoneFor(options.phone, caller) : Phone();
  const Transfer prepared = openForCopying(options, callerUmask);
  try {
    const RightsAfterwards backToHost(prepared.host);
    const Interruption interruption;
    if (options.action == Options::Action::Import) import(prepared, options);
    if (options.action == Options::Action::Export) exportTo(prepared, options);
    if (options.action == Options::Action::ShowPath) showPath(prepared, options);
    if (options.action == Options::Action::Restore) return restore(prepared, options);
    if (options.action == Options::Action::Send) return sendPackage(prepared, options.project, phone, caller);
    return 0;
  } catch (const Refusal& refusal) {
    say(refusal.what());
    return notCopied;
  }
}
