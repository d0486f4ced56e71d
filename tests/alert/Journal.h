// Writes down everything that a dialog reports, in the order in which it comes: "handler", "delegate" or
// "posted", the report, and its values. The three of one report, in the order in which they have to come, are
// one line, without these words.
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
  // All handlers, a delegate with every method, and all notifications. Each line begins with `prefix`.
  explicit Journal(RQAlertView& dialog, std::vector<std::string>* lines = nullptr, std::string prefix = {})
      : lines_(lines ? lines : &own_), prefix_(std::move(prefix)) {
    listen(dialog, reports::willShow, &RQAlertView::setWillShowHandler);
    listen(dialog, reports::showAnimations, &RQAlertView::setShowAnimationsBlock);
    listen(dialog, reports::didShow, &RQAlertView::setDidShowHandler);
    listen(dialog, reports::action, &RQAlertView::setActionHandler);
    listen(dialog, reports::cancel, &RQAlertView::setCancelHandler);
    listen(dialog, reports::destructive, &RQAlertView::setDestructiveHandler);
    listen(dialog, reports::willDismiss, &RQAlertView::setWillDismissHandler);
    listen(dialog, reports::dismissAnimations, &RQAlertView::setDismissAnimationsBlock);
    listen(dialog, reports::didDismiss, &RQAlertView::setDidDismissHandler);
    listen(dialog, reports::didDismissAfterAction, &RQAlertView::setDidDismissAfterActionHandler);
    listen(dialog, reports::didDismissAfterCancel, &RQAlertView::setDidDismissAfterCancelHandler);
    listen(dialog, reports::didDismissAfterDestructive, &RQAlertView::setDidDismissAfterDestructiveHandler);
    dialog.setDelegate(delegate_);
  }

  std::vector<std::string> take() { return std::exchange(*lines_, {}); }
  void note(const std::string& line) {
    lines_->push_back(prefix_ + line);
    if (meddle) meddle(line);
  }

  // Called with each report, after it has been written down; may throw.
  std::function<void(const std::string& line)> meddle;

 private:
  void note(const char* who, const std::string& report) {
    static const std::vector<std::string> usual{"handler ", "delegate ", "posted "};
    static const std::vector<std::string> inMotion{"posted ", "handler ", "delegate "};
    lines_->push_back(prefix_ + who + report);
    const auto& order = report.find("Animations") == std::string::npos ? usual : inMotion;
    const std::size_t count = lines_->size();
    bool whole = count >= 3;
    for (std::size_t at = 0; whole && at < 3; ++at)
      whole = (*lines_)[count - 3 + at] == prefix_ + order[at] + report;
    if (whole) {
      lines_->resize(count - 2);
      lines_->back() = prefix_ + report;
    }
    if (meddle) meddle(who + report);
  }

  template <typename Handler>
  void listen(RQAlertView& dialog, const RQAlertViewReport<Handler>& report,
              void (RQAlertView::*setHandler)(Handler)) {
    const std::string name =
        QString(report.notification).remove("RQAlertView").remove("Notification").toStdString();
    const auto noting = [this, name](const char* who) {
      return [this, name, who](RQAlertView&, const auto&... values) {
        std::string line = name;
        ((line += " " + QVariant::fromValue(values).toString().toStdString()), ...);
        note(who, line);
      };
    };
    (dialog.*setHandler)(noting("handler "));
    (*delegate_).*report.method = noting("delegate ");
    NSNotificationCenter::defaultCenter().addObserver(
        &observer_, report.notification, &dialog, [this, name](const NSNotification& notification) {
          std::string line = name;
          for (const QString key : {"index", "title", "duration"}) {
            if (notification.userInfo.contains(key))
              line += " " + notification.userInfo.value(key).toString().toStdString();
          }
          note("posted ", line);
        });
  }

  std::vector<std::string> own_;
  std::vector<std::string>* lines_;
  std::string prefix_;
  std::shared_ptr<RQAlertViewDelegate> delegate_ = std::make_shared<RQAlertViewDelegate>();
  QObject observer_;
};
