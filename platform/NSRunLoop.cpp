#include "platform/NSRunLoop.h"

#include "platform/EventBoundary.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QTimer>

namespace {

class DelayedCall : public QTimer {
  Q_OBJECT
 public:
  using QTimer::QTimer;
};

}  // namespace

void performSelectorAfterDelay(QObject* target, std::function<void()> selector, double seconds) {
  auto* call = new DelayedCall(target);
  call->setSingleShot(true);
  call->setTimerType(Qt::PreciseTimer);
  QObject::connect(call, &QTimer::timeout, target,
                   atEventBoundary([call, selector = std::move(selector)]() mutable {
                     // The selector may destroy the target, and the call with it.
                     const std::function<void()> made = std::move(selector);
                     call->deleteLater();
                     made();
                   }));
  call->start(static_cast<int>(std::lround(std::max(seconds, 0.0) * 1000.0)));
}

void cancelPreviousPerformRequests(QObject* target) {
  const auto calls = target->findChildren<DelayedCall*>(Qt::FindDirectChildrenOnly);
  for (DelayedCall* call : calls) {
    call->stop();
    call->deleteLater();
  }
}

#include "NSRunLoop.moc"
