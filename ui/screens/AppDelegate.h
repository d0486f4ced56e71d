// The application's delegate, which keeps the window, and what the whole application sets up: the way to
// other programs and its end.
#pragma once

#include "platform/UIApplication.h"
#include "platform/UIWindow.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

class AppDelegate : public UIApplicationDelegate {
 public:
  const std::shared_ptr<UIWindow>& window() const { return window_; }
  void setWindow(std::shared_ptr<UIWindow> window) { window_ = std::move(window); }

 private:
  std::shared_ptr<UIWindow> window_;
};

// The delegate with the window in which the main screen is shown.
std::unique_ptr<AppDelegate> makeAppDelegate();

// From now on the end of the application first ends the commands that are running and waits for the jobs that
// ran them, so that nothing goes on behind a closed window. Needs the application object; call it once.
void endCommandsWithApplication();

// The web addresses that the screens lead to, placeholders to be replaced by whoever distributes the program.
namespace links {

inline constexpr const char* authorProfile = "https://example.com/author";
inline constexpr const char* donation = "https://example.com/donate";
inline constexpr const char* thankedProfile = "https://example.com/pelbo";
// Asks the package manager to add the package source that offers the hinted package.
inline constexpr const char* addPackageSource =
    "cydia://url/https://example.com/share#?source=https://example.org/packages";

}  // namespace links

// Asks for `address` to be opened. `completion`, which may be null, hears whether it was taken.
void openAddress(const std::string& address, std::function<void(bool)> completion = {});

// From now on the window comes forward when the launcher says so, and takes the place that it had before
// startAgain(). Needs the application object; call it once, before any command is started.
void followLauncher();

// Ends the process with status 0. The launcher starts it again.
[[noreturn]] void startAgain();

// From now on addresses go to the opener outside the device, if the launcher has given one, and those that
// nothing opens are shown. Needs the application object; call it once, before any command is started.
void openAddressesOnHost();
