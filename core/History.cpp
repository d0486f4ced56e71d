#include "core/History.h"

#include "core/LauncherContract.h"
#include "core/Process.h"
#include "core/run_cmd.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <poll.h>
#include <sys/socket.h>

namespace {

std::mutex asking;
int launcher = -1;
std::uint32_t lastNumber = 0;

// Returns when the answer has come or will not.
void ask(history::Wish wish, const std::string& name = {}) {
  const std::lock_guard lock(asking);
  history::Request request{};
  if (launcher < 0 || name.size() >= sizeof request.name) return;
  request.number = ++lastNumber;
  request.wish = wish;
  request.deadline = history::milliseconds() + history::patienceMilliseconds;
  std::copy(name.begin(), name.end(), request.name);
  if (send(launcher, &request, sizeof request, MSG_DONTWAIT | MSG_NOSIGNAL) < 0) return;
  while (true) {
    pollfd answer{launcher, POLLIN, 0};
    const auto left = std::max<std::int64_t>(0, request.deadline - history::milliseconds());
    const int ready = poll(&answer, 1, static_cast<int>(left));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return;
    history::Answer got{};
    if (recv(launcher, &got, sizeof got, MSG_DONTWAIT) != static_cast<ssize_t>(sizeof got)) return;
    // Others are late answers to earlier requests.
    if (got.number == request.number) return;
  }
}

}  // namespace

void connectHistory() {
  if (!takeLauncherSocket(history::applicationDescriptor)) return;
  const std::lock_guard lock(asking);
  launcher = history::applicationDescriptor;
}

void keepHistory() {
  ask(history::Wish::Copy);
}

void run_kept_cmd(std::string_view format, std::initializer_list<MaybeText> values) {
  keepHistory();
  run_cmd(format, values);
}

NotedBackup::NotedBackup(const std::string& project) {
  ask(history::Wish::BeginBackup, project);
}

NotedBackup::~NotedBackup() {
  // Also if no answer came: the launcher may have noted the backup, and the next start would remove it.
  ask(isWhole_ ? history::Wish::FinishBackup : history::Wish::UndoBackup);
}
