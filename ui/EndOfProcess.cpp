#include "ui/EndOfProcess.h"

#include "core/run_cmd.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"

namespace {
// make removes its half-written targets when it is asked to end; this is the time it has for that.
constexpr int graceMilliseconds = 2000;
}  // namespace

void endCommandsWithApplication() {
  UIApplication* const application = UIApplication::sharedApplication();
  QObject::connect(application, &QCoreApplication::aboutToQuit, application, atEventBoundary([] {
                     stopCommands(graceMilliseconds);
                     dispatch_wait_for_global_queues();
                   }));
}
