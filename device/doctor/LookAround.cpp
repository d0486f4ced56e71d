#include "device/doctor/LookAround.h"

#include "device/Process.h"
#include "device/Refusal.h"
#include "device/doctor/DeviceProbe.h"
#include "device/folder/Beneath.h"
#include "device/sandbox/Account.h"
#include "device/sandbox/Environment.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace device::doctor {
namespace {

namespace fs = std::filesystem;

// Above the time limits of everything that is tried in the device together.
constexpr auto kProbeLimit = std::chrono::seconds(180);
constexpr auto kTrialLimit = std::chrono::seconds(300);
constexpr int kLauncherFailed = 125;
constexpr std::size_t kLogEnd = 4 << 20;
constexpr const char* kLog = "Applications/Tweakbench.app/MakeLog.log";

// The launcher's sentence, without its name in front.
std::string sentenceIn(const std::string& errors) {
  const std::string line = errors.substr(0, errors.find('\n'));
  const std::string name = "tweakbench: ";
  return line.starts_with(name) ? line.substr(name.size()) : line;
}

void lookInDevice(const PassingDevice& device, Facts& facts) {
  const Captured probe = device.runScript(kProbe, kProbeLimit);
  if (probe.status == kLauncherFailed) {
    facts.deviceRefusal = sentenceIn(probe.errors);
  } else if (probe.status != 0) {
    facts.deviceRefusal = "A command in the device ended with status " + std::to_string(probe.status) + ": " +
                          sentenceIn(probe.errors);
  } else {
    facts.inDevice = readProbe(probe.output);
  }
}

// The nearest folder on the way that exists.
std::uintmax_t freeSpaceAt(fs::path path) {
  struct statvfs space {};
  while (statvfs(path.c_str(), &space) != 0) {
    if (errno != ENOENT || !path.has_relative_path()) return 0;
    path = path.parent_path();
  }
  return std::uintmax_t{space.f_bavail} * space.f_frsize;
}

void lookAtDeviceFolder(const Account* account, Facts& facts) {
  facts.freeSpace = freeSpaceAt(facts.device);
  const Descriptor folder(open(facts.device.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  if (!folder || fstat(folder.get(), &status) != 0) {
    facts.deviceFolder =
        errno == ENOENT ? Facts::DeviceFolder::NotYetMade : Facts::DeviceFolder::OfAnotherUser;
    return;
  }
  const auto names = namesIn(folder.get());
  if (names && names->empty()) return;
  const bool isOwn = account == nullptr || status.st_uid == account->user;
  facts.deviceFolder = !exists(folder.get(), "lock") ? Facts::DeviceFolder::OtherFiles
                       : isOwn                       ? Facts::DeviceFolder::Good
                                                     : Facts::DeviceFolder::OfAnotherUser;
  if (facts.deviceFolder != Facts::DeviceFolder::Good) return;
  // One byte more tells whether there is more.
  facts.buildLog = readEndBeneath(folder.get(), kLog, kLogEnd + 1);
  facts.buildLogCut = facts.buildLog && facts.buildLog->size() > kLogEnd;
}

}  // namespace

PassingDevice::PassingDevice(const Options& options) : theos_(options.theos) {
  fs::path parent = lookUp(callerEnvironment(), "TMPDIR").value_or("/tmp");
  if (!parent.is_absolute()) parent = "/tmp";
  std::string name = (parent / "tweakbench-doctor-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) refuseWithError("No folder could be made in " + parent.string() + ":");
  folder_ = name;
}

PassingDevice::~PassingDevice() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

Captured PassingDevice::runScript(const char* script, std::chrono::milliseconds limit) const {
  std::vector<std::string> words{"/proc/self/exe", "--device", (folder_ / "device").string()};
  if (theos_) words.insert(words.end(), {"--theos", theos_->string()});
  words.insert(words.end(), {"exec", "/bin/sh", script});
  return capture(words, limit);
}

Trial tryBuild(const PassingDevice& device) {
  Captured build = device.runScript(kTrial, kTrialLimit);
  // The launcher's own words are there only where nothing was built.
  return {build.status, build.output + build.errors};
}

Facts lookAround(const Options& options, const PassingDevice& device) {
  Facts facts;
  const Environment caller = callerEnvironment();
  const auto calling = callingAccount(caller);
  const fs::path home = calling ? calling->home : accountForFolderOf(0, 0, caller).home;
  facts.device = options.device ? fs::absolute(*options.device) : defaultDevice(caller, home);
  lookAtDeviceFolder(calling ? &*calling : nullptr, facts);
  try {
    facts.theos = findTheos(options, caller, home);
  } catch (const Refusal& refusal) {
    facts.theosRefusal = refusal.what();
  }
  try {
    facts.bubblewrap = findBubblewrap(caller);
  } catch (const Refusal& refusal) {
    facts.bubblewrapRefusal = refusal.what();
  }
  if (facts.theosRefusal.empty() && facts.bubblewrapRefusal.empty()) lookInDevice(device, facts);
  return facts;
}

}  // namespace device::doctor
