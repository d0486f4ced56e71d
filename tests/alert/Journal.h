// Writes down everything that a dialog reports, in the order in which it comes.
#pragma once

#include "RQAlertView/RQAlertView.h"
#include "platform/NSNotificationCenter.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class Journal {
 public:
  // All handlers, a delegate with every method, and all notifications.
  explicit Journal(RQAlertView& dialog) {
    listen(dialog, "WillShow", &RQAlertView::setWillShowHandler, delegate->alertViewWillShow);
    listen(dialog, "ShowAnimations", &RQAlertView::setShowAnimationsBlock,
           delegate->showAnimationsForAlertView);
    listen(dialog, "DidShow", &RQAlertView::setDidShowHandler, delegate->alertViewDidShow);
    listen(dialog, "Action", &RQAlertView::setActionHandler, delegate->alertViewClickedButtonAtIndex);
    listen(dialog, "Cancel", &RQAlertView::setCancelHandler, delegate->alertViewCancelled);
    listen(dialog, "Destructive", &RQAlertView::setDestructiveHandler, delegate->alertViewDestructed);
    listen(dialog, "WillDismiss", &RQAlertView::setWillDismissHandler, delegate->alertViewWillDismiss);
    listen(dialog, "DismissAnimations", &RQAlertView::setDismissAnimationsBlock,
           delegate->dismissAnimationsForAlertView);
    listen(dialog, "DidDismiss", &RQAlertView::setDidDismissHandler, delegate->alertViewDidDismiss);
    listen(dialog, "DidDismissAfterAction", &RQAlertView::setDidDismissAfterActionHandler,
           delegate->alertViewDidDismissAfterClickedButtonAtIndex);
    listen(dialog, "DidDismissAfterCancel", &RQAlertView::setDidDismissAfterCancelHandler,
           delegate->alertViewDidDismissAfterCancelled);
    listen(dialog, "DidDismissAfterDestructive", &RQAlertView::setDidDismissAfterDestructiveHandler,
           delegate->alertViewDidDismissAfterDestructed);
    dialog.setDelegate(delegate);
  }

  std::vector<std::string> take() { return std::exchange(lines, {}); }
  void note(const std::string& line) {
    lines.push_back(line);
    if (meddle) meddle();
  }

  std::vector<std::string> lines;
  // Called from within every report, after it has been written down; may throw.
  std::function<void()> meddle;
  std::shared_ptr<RQAlertViewDelegate> delegate = std::make_shared<RQAlertViewDelegate>();

 private:
  template <typename Handler>
  void listen(RQAlertView& dialog, const std::string& name, void (RQAlertView::*setHandler)(Handler),
              Handler& method) {
    const auto noting = [this](const std::string& line) {
      return [this, line](RQAlertView&, const auto&... values) {
        std::string whole = line;
        ((whole += " " + QVariant::fromValue(values).toString().toStdString()), ...);
        note(whole);
      };
    };
    (dialog.*setHandler)(noting("handler " + name));
    method = noting("delegate " + name);
    NSNotificationCenter::defaultCenter().addObserver(
        &observer_, QString("RQAlertView%1Notification").arg(QString::fromStdString(name)), &dialog,
        [this, name](const NSNotification& notification) {
          std::string line = "posted " + name;
          for (const auto& [key, value] : notification.userInfo.asKeyValueRange())
            line += " " + key.toStdString() + "=" + value.toString().toStdString();
          note(line);
        });
  }

  QObject observer_;
};
