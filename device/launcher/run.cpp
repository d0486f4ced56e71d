// How the device is opened and what runs in it: the application, a shell, a command.
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/folder/HistoryKeeper.h"
#include "device/launcher/Commands.h"
#include "device/opener/Opener.h"
#include "device/session/Accessibility.h"
#include "device/session/Display.h"
#include "device/session/SingleWindow.h"
#include "device/session/SystemLog.h"

namespace {

// Everything about the host that root may know and the device's user perhaps not.
struct Host {
  fs::path bubblewrap;
  fs::path ownFiles;
  fs::path theos;
  std::optional<Display> display;
  Descriptor authority;
};

fs::path findOwnFiles() {
  const fs::path program = fs::read_symlink("/proc/self/exe");
  fs::path files = program.parent_path().parent_path() / "lib/tweakbench";
  if (fs::exists(files / "starter")) return files;
  throw Refusal("Tweakbench's own files are not at " + files.string() + "; install it again.");
}

bool isForTheApplication(const Options& options) {
  return options.action == Options::Action::OpenApplication || options.isAsApplication;
}

Host lookAt(const Options& options, const Environment& caller, const fs::path& home) {
  Host host{findBubblewrap(caller), findOwnFiles(), findTheos(options, caller, home), {}, {}};
  if (isForTheApplication(options)) {
    host.display = findDisplay(caller, waylandSupport());
    host.authority = authorityFor(*host.display);
    if (options.action == Options::Action::OpenApplication && !fs::exists(host.ownFiles / "Tweakbench")) {
      throw Refusal("The application is not at " + (host.ownFiles / "Tweakbench").string() +
                    "; install it again.");
    }
  }
  return host;
}

// As root: settles whom the device belongs to, shows that user all it needs, and becomes it. Changes the
// paths of `host` to where they are shown; returns where the device is.
fs::path leaveRoot(Host& host, Caller& caller) {
  enterMountNamespace();
  const Descriptor folder = openDevice(caller);
  fs::path shown = pathOf(folder.get());
  std::vector<Staged> staged{{&shown, "device"}, {&host.ownFiles, "tweakbench", true}};
  if (!host.theos.empty()) staged.push_back({&host.theos, "theos"});
  if (host.display && host.display->kind == Display::Kind::Wayland)
    staged.push_back({&host.display->socket, "wayland"});
  showOnStage(staged);
  become(caller.account);
  return shown;
}

std::vector<Shown> rootLinks() {
  std::vector<Shown> links{{"/usr/sbin", "/sbin"}};
  for (const char* name : {"/lib", "/lib32", "/lib64", "/libx32"}) {
    std::error_code error;
    const fs::path target = fs::read_symlink(name, error);
    if (!error) links.push_back({target.string(), name});
  }
  std::error_code noZone;
  const fs::path zone = fs::read_symlink("/etc/localtime", noZone);
  if (zone.string().starts_with("/usr/share/zoneinfo/")) links.push_back({zone.string(), "/etc/localtime"});
  return links;
}

Program programFor(const Options& options) {
  const auto streams = options.hasInput ? Relay::Streams::Caller : Relay::Streams::CallerWithoutInput;
  switch (options.action) {
    case Options::Action::Execute:
      return {options.command, streams, options.isFiltered};
    case Options::Action::OpenShell:
      return {{"/bin/sh"}, streams};
    default:
      return {{"/.host/tweakbench/Tweakbench"}, Relay::Streams::Errors};
  }
}

}  // namespace

void complain(const Options& options, const std::string& sentence) {
  say(sentence);
  if (options.action != Options::Action::OpenApplication || isatty(STDERR_FILENO) != 0 || geteuid() == 0)
    return;
  try {
    const Environment caller = callerEnvironment();
    if (findDisplay(caller, waylandSupport()).kind == Display::Kind::None) return;
    spawnApart(findOwnFiles() / "notice", sentence, caller);
  } catch (const std::exception&) {
  }
}

void requireDevice(const fs::path& device) {
  if (access(device.c_str(), F_OK) != 0)
    refuseWithError("The device " + device.string() + " cannot be reached:");
}

namespace {

// Releases all that it holds before it returns, since a signal may end the process right after.
Ending useDevice(const Options& options, const Task* task) {
  Caller who(options);
  const Environment& caller = who.environment;
  Host host = lookAt(options, caller, who.account.home);
  const fs::path& device = who.device;
  // Root's start shows it elsewhere.
  const std::string theosOnHost = host.theos;
  const bool isRoots = geteuid() == 0;
  const fs::path reached = isRoots ? leaveRoot(host, who) : device;

  DeviceFolder folder(openOrMakeFolder(reached), device);
  const int var = folder.folders().var.get();
  const bool isApplication = options.action == Options::Action::OpenApplication;
  SingleWindow window(folder.folder());
  if (isApplication && !window.claim(lookUp(caller, "XDG_ACTIVATION_TOKEN").value_or(""))) {
    say("Tweakbench is open already; its window was brought forward.");
    return {0};
  }
  HistoryKeeper history(isApplication || task != nullptr);
  const fs::path theos = host.theos.empty() ? host.ownFiles / "theos" : host.theos;
  if (!isTheos(theos)) {
    throw Refusal("Theos cannot be read by the device's user (number " + std::to_string(who.account.user) +
                  "); open it up with \"chmod -R go+rX\" and its folder's name.");
  }
  std::error_code noLibraries;
  const fs::path libraries = theos / "lib";
  // Projects that build a library or framework install it there.
  const bool hasOwnLibraries = !options.isTheosWritable &&
                               fs::symlink_status(libraries, noLibraries).type() == fs::file_type::directory;
  // Without an account of its own the device's user has no session.
  auto accessibility = isApplication && who.isSettled ? Accessibility::join(caller) : nullptr;
  SystemLog log(folder.folder(), reached);
  std::vector<Descriptor> contents;
  // Made for each start: bubblewrap reads the files to their ends.
  const auto makeRequest = [&] {
    Request request{folder.folders(), hasOwnLibraries};
    request.ownFiles = host.ownFiles;
    request.theos = theos;
    request.isTheosWritable = options.isTheosWritable;
    request.hasNetwork = options.hasNetwork;
    request.environment =
        deviceEnvironment(caller, isForTheApplication(options) ? Audience::Application : Audience::Commands);
    request.rootLinks = rootLinks();
    auto dataFiles = deviceDataFiles(who.account, options.hasNetwork);
    dataFiles[theosOnHostFile] = theosOnHost.empty() ? "practice Theos" : theosOnHost;
    contents.clear();
    for (const auto& [path, content] : dataFiles)
      request.dataFiles.push_back({contents.emplace_back(inMemory(content)).get(), path});
    if (host.display && host.display->kind != Display::Kind::None) {
      request.sockets.push_back({host.display->socket, socketInDevice(*host.display)});
      addDisplay(request.environment, *host.display, host.authority.get());
      if (host.authority) request.passedOn.push_back(host.authority.get());
    }
    if (accessibility) {
      for (const auto& socket : accessibility->sockets()) request.sockets.push_back(socket);
    }
    if (!log.path().empty()) request.sockets.push_back({log.path(), "/.host/log"});
    if (history.applicationEnd() >= 0) request.passedOn.push_back(history.applicationEnd());
    return request;
  };
  // Root's start has become a user whose desktop session this is not.
  Opener opener({folder.folder(), device, isRoots ? fs::path() : findProgram(caller, "xdg-open"),
                 openerEnvironment(caller), openerLogPath(caller, who.account.home)});
  Program program = task != nullptr ? task->begin(var) : programFor(options);
  // Root's start has become a user whose settings these are not.
  const auto hasReducedMotion = [&] {
    return isApplication && !isRoots && prefersReducedMotion(caller, who.account.home);
  };
  program.beforeStart = [&] {
    folder.complete(host.ownFiles,
                    isForTheApplication(options) ? std::optional(localeIdentifier(caller)) : std::nullopt);
    if (hasOwnLibraries) putLibraryLinks(folder.folders().theosLibraries.get(), libraries);
    history.start(folder.folder(), var, {host.bubblewrap, findProgram(caller, "rsync")},
                  folder.isAlone() || isApplication);
    folder.share();
    // A command may be about to delete what the last one has made; a window does not wait.
    if (!isApplication) history.awaitFirstCopy();
    return hasReducedMotion();
  };
  Ending ending{};
  do {
    if (isApplication) {
      opener.connect();
      window.connect();
    }
    ending = runInDevice(host.bubblewrap, makeRequest(), program, log, opener, window);
    program.beforeStart = hasReducedMotion;
  } while (window.isToStartAgain() && ending.status == 0);
  folder.remainDevice();
  if (task != nullptr && ending.interruption == 0) task->end(var, ending.status);
  return ending;
}

}  // namespace

int run(const Options& options, const Task* task) {
  const Ending ending = useDevice(options, task);
  const std::string name = options.action == Options::Action::Execute           ? options.command.front()
                           : options.action == Options::Action::OpenApplication ? "The application"
                           : task != nullptr                                    ? "The build"
                                                                                : "The shell";
  if (!ending.complaint.empty()) complain(options, name + ending.complaint);
  if (ending.interruption != 0) {
    signal(ending.interruption, SIG_DFL);
    raise(ending.interruption);
  }
  return ending.status;
}
