// Opens URLs that the application in the device hands out: in the host's file manager and browser, and
// nowhere else. What a URL may ask for: folders of the device and pages for the browser, nothing else.
#pragma once

#include "core/LauncherContract.h"
#include "device/Process.h"
#include "device/sandbox/Environment.h"

#include <chrono>
#include <deque>
#include <filesystem>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

struct OpenableAddress {
  enum class Kind {
    Refused,
    // A folder of the device.
    Folder,
    // For the opener program.
    Page,
  };
  Kind kind = Kind::Refused;
  // Folder: the path below DEVICE, which begins with var or Applications. Page: the URL; within quotes of
  // either kind it is nothing but text to a shell. Refused: why, in a few words.
  std::string value;
};

// Looks at the text alone; whether a folder exists, and where its path really leads, is for who opens it.
OpenableAddress readAddress(std::string_view url);

// A program on the host that gets the device's own path would resolve it again, and by then a build may have
// put a file or a link in the folder's place. These paths lead to the folder that was opened: they are links
// to this process's open descriptors, each in a folder of its own below `temporary`. They are valid as long
// as the object.
class ShownFolders {
 public:
  explicit ShownFolders(fs::path temporary = "/tmp") : temporary_(std::move(temporary)) {}
  ~ShownFolders();

  // Removes what others of this user's left there whose process is gone.
  void removeLeft() const;

  // The path for `folder`; the same folder gets the same path. Its last component is `name`, or another word
  // where that is no plain name, since builds choose it and file managers and their scripts read it. Empty
  // where no path could be made. The oldest of many folders is given up.
  fs::path show(Descriptor folder, const std::string& name);

 private:
  struct Shown {
    Descriptor folder;
    fs::path path;
  };
  static void forget(const Shown& shown);

  fs::path temporary_;
  std::deque<Shown> shown_;
};

// Runs outside the device and trusts nothing that comes: the application may have been taken over. Every
// request is one packet and gets one answer. A URL is one argument of the opener program, which is started
// without a shell.
class Opener {
 public:
  struct Setting {
    // DEVICE, which stays open as long as the opener lives.
    int folder;
    // The same on the host, for paths that the user is shown.
    fs::path device;
    // xdg-open; empty if there is none.
    fs::path program;
    // What the program is started with.
    Environment environment;
    // A file of the user's, outside the device, made with the first line, and its folder where missing.
    fs::path log;
    // Opener programs end at once where they hand on to a running desktop, and run on where they become the
    // browser: after that time they count as successful.
    std::chrono::milliseconds soonEnough = std::chrono::seconds(3);
  };
  explicit Opener(Setting setting) : setting_(std::move(setting)) {}

  // Makes the sockets, anew for each start of the application. Where they cannot be made, applicationEnd() is
  // -1 and nothing ever comes.
  void connect();
  // For the device, under this very number; to be closed here once the device has it.
  Descriptor& applicationEnd() { return sockets_.applicationEnd; }

  // Adds what to wait for, and serves it after poll().
  void addTo(std::vector<pollfd>& watched) const;
  void serve();
  // How long poll() may wait, in milliseconds; -1 for ever.
  int patience() const;

  // Whether this is one of the opener's own processes, for which it waits itself.
  bool hasStarted(pid_t process) const;

 private:
  using Clock = std::chrono::steady_clock;
  struct Asked {
    std::uint32_t number;
    std::string url;
    // Where the folder is on the host; empty for pages.
    std::string hostPath{};
  };
  // An opener program that has not ended yet.
  struct Started {
    pid_t process;
    Descriptor end;
    Asked asked;
    // If it still runs then, it counts as successful.
    Clock::time_point answerBy;
    bool isAnswered;
  };

  void takeRequest();
  opener::Verdict open(Asked& asked);
  // The folder of the device that a URL means or, where that is missing, the nearest one above; `path`
  // becomes its path.
  Descriptor openNearest(fs::path& path) const;
  opener::Verdict start(const Asked& asked, const std::string& argument);
  opener::Verdict refuse(const std::string& url, const std::string& reason);
  bool isTooOften();
  // One line in the log, with the time in front; control characters are made visible, long texts cut. The log
  // starts anew when it has grown large, and takes so many lines of one run only, since the device decides
  // how many there are. Where it cannot be written, lines go nowhere.
  void note(const std::string& words);
  void lookAfter(Started& started);
  void answer(const Asked& asked, opener::Verdict verdict) const;

  Setting setting_;
  Descriptor log_;
  int lines_ = 0;
  ShownFolders folders_;
  ApplicationSocket sockets_;
  std::deque<Clock::time_point> recent_;
  std::vector<Started> started_;
};

// Starts a program of the desktop's with one argument and nothing else of the launcher's, which outlives it.
// Returns its process, or -1.
pid_t spawnApart(const fs::path& program, const std::string& argument, const Environment& environment);

// What of the caller's environment the opener program gets: the desktop session's own, and no secrets.
Environment openerEnvironment(const Environment& caller);

// $XDG_STATE_HOME/tweakbench/opener.log
fs::path openerLogPath(const Environment& caller, const fs::path& home);
