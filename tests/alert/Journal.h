// Writes down everything that a dialog reports, in the order in which it comes.
#pragma once

#include "RQAlertView/RQAlertView.h"
#include "platform/NSNotificationCenter.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QObject>

class Journal {
 public:
  // All handlers, a delegate with every method, and all notifications.
  explicit Journal(RQAlertView& dialog) {
    listen(dialog);
    setHandlers(dialog);
    setDelegate();
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
  void setHandlers(RQAlertView& dialog) {
    dialog.setActionHandler(action("handler action"));
    dialog.setCancelHandler(plain("handler cancel"));
    dialog.setDestructiveHandler(plain("handler destructive"));
    dialog.setWillShowHandler(plain("handler willShow"));
    dialog.setDidShowHandler(plain("handler didShow"));
    dialog.setWillDismissHandler(plain("handler willDismiss"));
    dialog.setDidDismissHandler(plain("handler didDismiss"));
    dialog.setDidDismissAfterActionHandler(action("handler afterAction"));
    dialog.setDidDismissAfterCancelHandler(plain("handler afterCancel"));
    dialog.setDidDismissAfterDestructiveHandler(plain("handler afterDestructive"));
    dialog.setShowAnimationsBlock(animations("block show"));
    dialog.setDismissAnimationsBlock(animations("block dismiss"));
  }

  void setDelegate() {
    delegate->alertViewWillShow = plain("delegate willShow");
    delegate->alertViewDidShow = plain("delegate didShow");
    delegate->alertViewWillDismiss = plain("delegate willDismiss");
    delegate->alertViewDidDismiss = plain("delegate didDismiss");
    delegate->alertViewClickedButtonAtIndex = action("delegate action");
    delegate->alertViewCancelled = plain("delegate cancel");
    delegate->alertViewDestructed = plain("delegate destructive");
    delegate->alertViewDidDismissAfterClickedButtonAtIndex = action("delegate afterAction");
    delegate->alertViewDidDismissAfterCancelled = plain("delegate afterCancel");
    delegate->alertViewDidDismissAfterDestructed = plain("delegate afterDestructive");
    delegate->showAnimationsForAlertView = animations("delegate show");
    delegate->dismissAnimationsForAlertView = animations("delegate dismiss");
  }

  void listen(RQAlertView& dialog) {
    for (const char* name : {"WillShow", "ShowAnimations", "DidShow", "Action", "Cancel", "Destructive",
                             "WillDismiss", "DismissAnimations", "DidDismiss", "DidDismissAfterAction",
                             "DidDismissAfterCancel", "DidDismissAfterDestructive"}) {
      const QString whole = QString("RQAlertView%1Notification").arg(QLatin1String(name));
      NSNotificationCenter::defaultCenter().addObserver(
          &observer_, whole, &dialog, [this, name](const NSNotification& notification) {
            std::string line = std::string("posted ") + name;
            for (const auto& [key, value] : notification.userInfo.asKeyValueRange()) {
              line += " " + key.toStdString() + "=" + value.toString().toStdString();
            }
            note(line);
          });
    }
  }

  RQAlertViewHandler plain(const std::string& line) {
    return [this, line](RQAlertView&) { note(line); };
  }
  RQAlertViewActionHandler action(const std::string& line) {
    return [this, line](RQAlertView&, std::size_t index, const QString& title) {
      note(line + " " + std::to_string(index) + " " + title.toStdString());
    };
  }
  RQAlertViewAnimationsBlock animations(const std::string& line) {
    return [this, line](RQAlertView&, double duration) {
      note(line + " " + QString::number(duration).toStdString());
    };
  }

  QObject observer_;
};
