#include "platform/HostOpener.h"

#include "core/LauncherContract.h"
#include "core/Process.h"
#include "platform/EventLoop.h"

#include <algorithm>
#include <sys/socket.h>
#include <utility>

HostOpener::HostOpener(Unavailable unavailable, QObject* parent)
    : QObject(parent), unavailable_(std::move(unavailable)) {}

void HostOpener::connectTo(int descriptor) {
  if (!takeLauncherSocket(descriptor)) return;
  socket_ = Descriptor(descriptor);
  answers_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  connect(answers_.get(), &QSocketNotifier::activated, this, atEventBoundary([this] { takeAnswers(); }));
}

bool HostOpener::open(const QUrl& url) {
  const QByteArray text = url.toEncoded();
  opener::Request request{};
  const auto size = static_cast<std::size_t>(text.size());
  if (size == 0 || size > opener::longestURL) {
    // Of an invalid URL only the error contains the text.
    const QByteArray asked = url.isValid() ? text : url.errorString().toUtf8();
    NSLog("No URL that can be opened: " + asked.left(opener::longestURL).toStdString());
    return false;
  }
  request.number = ++lastNumber_;
  std::copy(text.begin(), text.end(), request.url);
  if (send(socket_.get(), &request, opener::requestHead + size, MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
    report(url);
    return false;
  }
  asked_.insert(request.number, url);
  return true;
}

void HostOpener::takeAnswers() {
  opener::Answer answer{};
  const ssize_t got = recv(socket_.get(), &answer, sizeof answer, MSG_DONTWAIT);
  if (got < 0) return;
  if (got < static_cast<ssize_t>(opener::answerHead)) {
    // The launcher is gone, and this process will follow.
    answers_->setEnabled(false);
    return;
  }
  const QUrl url = asked_.take(answer.number);
  if (answer.verdict == opener::Verdict::Unavailable && url.isValid())
    report(url, QString::fromUtf8(answer.hostPath, got - static_cast<qsizetype>(opener::answerHead)));
}

// Always from the event loop: the caller of open() is in the middle of something.
void HostOpener::report(const QUrl& url, const QString& hostPath) {
  dispatch_async(dispatch_get_main_queue(),
                 [unavailable = unavailable_, url, hostPath] { unavailable(url, hostPath); });
}
