#include "device/opener/Opener.h"

#include "device/Visible.h"
#include "device/folder/Beneath.h"

#include <cstdio>
#include <fcntl.h>
#include <iomanip>
#include <sstream>
#include <sys/socket.h>
#include <sys/wait.h>

namespace {

// As often as a person taps; a program in the device must not fill the desktop with windows.
constexpr std::size_t mostOpenedAtOnce = 5;
constexpr auto within = std::chrono::seconds(10);
constexpr std::size_t mostRunning = 16;

}  // namespace

pid_t spawnApart(const fs::path& program, const std::string& argument, const Environment& environment) {
  ProcessStart start{{program, argument}};
  start.environment.emplace();
  for (const auto& [name, value] : environment)
    start.environment->push_back(std::string(name).append("=").append(value));
  // Control-C at the launcher's terminal ends no browser.
  start.place = ProcessStart::Place::OwnSession;
  return spawn(start);
}

void Opener::connect() {
  folders_.removeLeft();
  sockets_ = {};
  sockets_ = connectApplication(opener::applicationDescriptor);
}

void Opener::addTo(std::vector<pollfd>& watched) const {
  if (sockets_.own) watched.push_back({sockets_.own.get(), POLLIN, 0});
  for (const auto& started : started_) watched.push_back({started.end.get(), POLLIN, 0});
}

void Opener::serve() {
  for (auto& started : started_) lookAfter(started);
  std::erase_if(started_, [](const Started& started) { return started.process < 0; });
  takeRequest();
}

int Opener::patience() const {
  constexpr int oftenEnough = 100;
  return std::any_of(started_.begin(), started_.end(), [](const auto& each) { return !each.isAnswered; })
             ? oftenEnough
             : -1;
}

bool Opener::hasStarted(pid_t process) const {
  return std::any_of(started_.begin(), started_.end(),
                     [process](const Started& started) { return started.process == process; });
}

void Opener::takeRequest() {
  opener::Request request{};
  const ssize_t got = recv(sockets_.own.get(), &request, sizeof request, MSG_DONTWAIT | MSG_TRUNC);
  if (got < 0) return;
  // The application has ended, or sends nothing.
  if (got == 0) return sockets_.own.close();
  const auto size = static_cast<std::size_t>(got);
  Asked asked{request.number, {}};
  if (size <= opener::requestHead || size > sizeof request)
    return answer(asked, refuse({}, "a request of " + std::to_string(size) + " bytes"));
  asked.url.assign(request.url, size - opener::requestHead);
  const opener::Verdict verdict = open(asked);
  // One that was started is answered when it is known how that went.
  if (verdict != opener::Verdict::Opened) answer(asked, verdict);
}

opener::Verdict Opener::open(Asked& asked) {
  const std::string& url = asked.url;
  const OpenableAddress address = readAddress(url);
  if (address.kind == OpenableAddress::Kind::Refused) return refuse(url, address.value);
  if (started_.size() >= mostRunning) return refuse(url, "too many opener programs are running");
  if (isTooOften()) return refuse(url, "too often");
  if (address.kind == OpenableAddress::Kind::Page) return start(asked, address.value);
  fs::path below = address.value;
  Descriptor folder = openNearest(below);
  if (!folder) return refuse(url, "not a folder of the device");
  asked.hostPath = setting_.device / below;
  const fs::path path = folders_.show(std::move(folder), below.filename());
  return path.empty() ? refuse(url, "it could not be shown") : start(asked, path);
}

Descriptor Opener::openNearest(fs::path& path) const {
  while (true) {
    // Never a file: a file manager might run it.
    Descriptor folder = openBeneath(setting_.folder, path, O_PATH | O_DIRECTORY);
    if (folder || errno != ENOENT || !path.has_parent_path()) return folder;
    path = path.parent_path();
  }
}

opener::Verdict Opener::start(const Asked& asked, const std::string& argument) {
  if (setting_.program.empty()) return opener::Verdict::Unavailable;
  const pid_t process = spawnApart(setting_.program, argument, setting_.environment);
  if (process < 0) {
    note(setting_.program.string() + " could not be started for " + asked.url);
    return opener::Verdict::Unavailable;
  }
  Descriptor end = endOf(process);
  started_.push_back({process, std::move(end), asked, Clock::now() + setting_.soonEnough, false});
  return opener::Verdict::Opened;
}

opener::Verdict Opener::refuse(const std::string& url, const std::string& reason) {
  note("Refused (" + reason + "): " + url);
  return opener::Verdict::Refused;
}

bool Opener::isTooOften() {
  const auto now = Clock::now();
  while (!recent_.empty() && now - recent_.front() >= within) recent_.pop_front();
  if (recent_.size() >= mostOpenedAtOnce) return true;
  recent_.push_back(now);
  return false;
}

void Opener::lookAfter(Started& started) {
  int status = 0;
  const pid_t ended = waitpid(started.process, &status, WNOHANG);
  const bool hasEnded = ended != 0;
  if (hasEnded) started.process = -1;
  if (started.isAnswered || (!hasEnded && Clock::now() < started.answerBy)) return;
  started.isAnswered = true;
  if (!hasEnded || status == 0) return answer(started.asked, opener::Verdict::Opened);
  note(setting_.program.string() + " failed for " + started.asked.url);
  answer(started.asked, opener::Verdict::Unavailable);
}

void Opener::answer(const Asked& asked, opener::Verdict verdict) const {
  opener::Answer answer{asked.number, verdict, {}};
  const std::size_t length = verdict == opener::Verdict::Unavailable
                                 ? asked.hostPath.copy(answer.hostPath, sizeof answer.hostPath)
                                 : 0;
  // An application that takes no answers gets none.
  send(sockets_.own.get(), &answer, opener::answerHead + length, MSG_DONTWAIT | MSG_NOSIGNAL);
}

Environment openerEnvironment(const Environment& caller) {
  Environment kept;
  for (const auto& [name, value] : caller) {
    if (name.starts_with("XDG_") || name.starts_with("LC_")) kept[name] = value;
  }
  for (const char* name :
       {"HOME", "PATH", "USER", "LOGNAME", "SHELL", "LANG", "LANGUAGE", "DISPLAY", "WAYLAND_DISPLAY",
        "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS", "DESKTOP_SESSION", "GNOME_DESKTOP_SESSION_ID",
        "KDE_FULL_SESSION", "KDE_SESSION_VERSION", "BROWSER"}) {
    if (auto value = lookUp(caller, name)) kept[name] = *value;
  }
  return kept;
}

fs::path openerLogPath(const Environment& caller, const fs::path& home) {
  return baseFolder(caller, "XDG_STATE_HOME", home / ".local/state") / "tweakbench/opener.log";
}

void Opener::note(const std::string& words) {
  constexpr int mostLines = 500;
  constexpr std::size_t longestLine = 300;
  constexpr off_t largest = 256 << 10;
  if (lines_ == 0) {
    std::error_code error;
    fs::create_directories(setting_.log.parent_path(), error);
    log_ = Descriptor(::open(setting_.log.c_str(),
                             O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    const struct stat status = statusOf(log_.get());
    if (!S_ISREG(status.st_mode) || (status.st_size > largest && ftruncate(log_.get(), 0) != 0)) log_.close();
  }
  if (!log_ || ++lines_ > mostLines + 1) return;
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  std::ostringstream time;
  time << std::put_time(localtime_r(&now, &parts), "%Y-%m-%d %H:%M:%S");
  // A lost line does not stop the opener.
  dprintf(log_.get(), "%s %s\n", time.str().c_str(),
          lines_ > mostLines ? "Nothing more is noted in this run."
                             : visible(words.substr(0, longestLine)).c_str());
}
