// The kinds and styles of a dialog, what it is made from, and what it reports to whom.
#pragma once

#include "platform/UIKeyboard.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include <QKeyEvent>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

// what() is the message of the check that failed.
class InternalInconsistency : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

class RQAlertView;
class RQAlertViewTextField;
struct RQAlertViewButtonProperties;

enum class RQAlertViewStyle { Alert = 0, ActionSheet = 1 };

// What stands between the message and the buttons. A custom view is of the default type.
enum class RQAlertViewType { Default = 0, ActivityIndicator = 1, ProgressView = 2, TextFields = 3 };

enum class RQAlertViewWindowLevel { AboveStatusBar = 0, BelowStatusBar = 1 };

enum class RQAlertViewButtonIconPosition { Left = 0, Right = 1 };

// Where a dialog stands in its life. Allocated: not set up by an initializer yet. Showing and Dismissing: it
// moves and takes no input.
enum class RQAlertViewState { Allocated, Made, Showing, Shown, Dismissing, Dismissed };

// Whether a press of Return or Space is only the repeat of a key that is held down, which answers nothing.
inline bool isRepeatedAnswer(const QKeyEvent& press) {
  return isRepeated(press) &&
         (press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter || press.key() == Qt::Key_Space);
}

using RQAlertViewHandler = std::function<void(RQAlertView& alertView)>;
using RQAlertViewActionHandler =
    std::function<void(RQAlertView& alertView, std::size_t index, const QString& title)>;
// `duration` in seconds.
using RQAlertViewAnimationsBlock = std::function<void(RQAlertView& alertView, double duration)>;
using RQAlertViewCompletionHandler = std::function<void()>;
using RQAlertViewTextFieldsSetupHandler =
    std::function<void(RQAlertViewTextField& textField, std::size_t index)>;
using RQAlertViewButtonPropertiesHandler = std::function<void(RQAlertViewButtonProperties& properties)>;

// One row for each handler: type, name, setter. All are optional.
// clang-format off
#define RQ_ALERT_VIEW_HANDLERS(HANDLER)                                                                \
  HANDLER(RQAlertViewActionHandler, actionHandler, setActionHandler)                                   \
  HANDLER(RQAlertViewHandler, cancelHandler, setCancelHandler)                                         \
  HANDLER(RQAlertViewHandler, destructiveHandler, setDestructiveHandler)                               \
  HANDLER(RQAlertViewHandler, willShowHandler, setWillShowHandler)                                     \
  HANDLER(RQAlertViewHandler, didShowHandler, setDidShowHandler)                                       \
  HANDLER(RQAlertViewHandler, willDismissHandler, setWillDismissHandler)                               \
  HANDLER(RQAlertViewHandler, didDismissHandler, setDidDismissHandler)                                 \
  HANDLER(RQAlertViewActionHandler, didDismissAfterActionHandler, setDidDismissAfterActionHandler)     \
  HANDLER(RQAlertViewHandler, didDismissAfterCancelHandler, setDidDismissAfterCancelHandler)           \
  HANDLER(RQAlertViewHandler, didDismissAfterDestructiveHandler, setDidDismissAfterDestructiveHandler) \
  HANDLER(RQAlertViewAnimationsBlock, showAnimationsBlock, setShowAnimationsBlock)                     \
  HANDLER(RQAlertViewAnimationsBlock, dismissAnimationsBlock, setDismissAnimationsBlock)
// clang-format on

struct RQAlertViewHandlers {
#define RQ_MEMBER(Type, name, setter) Type name;
  RQ_ALERT_VIEW_HANDLERS(RQ_MEMBER)
#undef RQ_MEMBER
};

// Every member is optional: a function that is set responds. Set them before the delegate is handed to a
// dialog, which holds it weakly.
struct RQAlertViewDelegate {
  RQAlertViewHandler alertViewWillShow;
  RQAlertViewHandler alertViewDidShow;
  RQAlertViewHandler alertViewWillDismiss;
  RQAlertViewHandler alertViewDidDismiss;

  RQAlertViewActionHandler alertViewClickedButtonAtIndex;
  RQAlertViewHandler alertViewCancelled;
  RQAlertViewHandler alertViewDestructed;

  RQAlertViewActionHandler alertViewDidDismissAfterClickedButtonAtIndex;
  RQAlertViewHandler alertViewDidDismissAfterCancelled;
  RQAlertViewHandler alertViewDidDismissAfterDestructed;

  // Called inside the animation; `duration` in seconds.
  RQAlertViewAnimationsBlock showAnimationsForAlertView;
  RQAlertViewAnimationsBlock dismissAnimationsForAlertView;

  // Deprecated and never called: a dialog that gets a delegate with one of these warns in the system log.
  std::function<void(RQAlertView& alertView, const QString& title, std::size_t index)>
      alertViewButtonPressedWithTitle;
  RQAlertViewHandler alertViewDestructiveButtonPressed;
};

// Posted on the default notification center with the dialog as object.
inline const QString RQAlertViewWillShowNotification = QStringLiteral("RQAlertViewWillShowNotification");
inline const QString RQAlertViewDidShowNotification = QStringLiteral("RQAlertViewDidShowNotification");
inline const QString RQAlertViewCancelNotification = QStringLiteral("RQAlertViewCancelNotification");
inline const QString RQAlertViewDestructiveNotification =
    QStringLiteral("RQAlertViewDestructiveNotification");
inline const QString RQAlertViewWillDismissNotification =
    QStringLiteral("RQAlertViewWillDismissNotification");
inline const QString RQAlertViewDidDismissNotification = QStringLiteral("RQAlertViewDidDismissNotification");
inline const QString RQAlertViewDidDismissAfterCancelNotification =
    QStringLiteral("RQAlertViewDidDismissAfterCancelNotification");
inline const QString RQAlertViewDidDismissAfterDestructiveNotification =
    QStringLiteral("RQAlertViewDidDismissAfterDestructiveNotification");

// userInfo: "title" (QString) and "index" (qulonglong).
inline const QString RQAlertViewActionNotification = QStringLiteral("RQAlertViewActionNotification");
inline const QString RQAlertViewDidDismissAfterActionNotification =
    QStringLiteral("RQAlertViewDidDismissAfterActionNotification");

// Posted inside the animation. userInfo: "duration" (double, seconds).
inline const QString RQAlertViewShowAnimationsNotification =
    QStringLiteral("RQAlertViewShowAnimationsNotification");
inline const QString RQAlertViewDismissAnimationsNotification =
    QStringLiteral("RQAlertViewDismissAnimationsNotification");

// Null texts are absent ones.
struct RQAlertViewSetup {
  RQAlertViewType type = RQAlertViewType::Default;
  QString title{};
  QString message{};
  RQAlertViewStyle style = RQAlertViewStyle::Alert;
  QStringList buttonTitles{};
  QString cancelButtonTitle{};
  QString destructiveButtonTitle{};

  QPointer<QWidget> innerView{};
  double progress = 0;
  QString progressLabelText{};
  std::size_t numberOfTextFields = 0;
  RQAlertViewTextFieldsSetupHandler textFieldsSetupHandler{};
};

// To whom a dialog reports: nobody yet, three handlers, or a delegate.
struct RQAlertViewRecipients {
  RQAlertViewRecipients() = default;
  RQAlertViewRecipients(RQAlertViewActionHandler actionHandler, RQAlertViewHandler cancelHandler,
                        RQAlertViewHandler destructiveHandler)
      : action(std::move(actionHandler)),
        cancel(std::move(cancelHandler)),
        destructive(std::move(destructiveHandler)) {}
  explicit RQAlertViewRecipients(std::weak_ptr<RQAlertViewDelegate> delegate) : to(std::move(delegate)) {}

  RQAlertViewActionHandler action;
  RQAlertViewHandler cancel;
  RQAlertViewHandler destructive;
  std::weak_ptr<RQAlertViewDelegate> to;
};

// One report: the handler that is called, the delegate's function, and the notification that is posted.
template <typename Handler>
struct RQAlertViewReport {
  Handler RQAlertViewHandlers::*handler;
  Handler RQAlertViewDelegate::*method;
  const QString& notification;
};

namespace reports {

using Handlers = RQAlertViewHandlers;
using Delegate = RQAlertViewDelegate;

inline const RQAlertViewReport<RQAlertViewHandler> willShow{
    &Handlers::willShowHandler, &Delegate::alertViewWillShow, RQAlertViewWillShowNotification};
inline const RQAlertViewReport<RQAlertViewAnimationsBlock> showAnimations{
    &Handlers::showAnimationsBlock, &Delegate::showAnimationsForAlertView,
    RQAlertViewShowAnimationsNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didShow{
    &Handlers::didShowHandler, &Delegate::alertViewDidShow, RQAlertViewDidShowNotification};
inline const RQAlertViewReport<RQAlertViewActionHandler> action{
    &Handlers::actionHandler, &Delegate::alertViewClickedButtonAtIndex, RQAlertViewActionNotification};
inline const RQAlertViewReport<RQAlertViewHandler> cancel{
    &Handlers::cancelHandler, &Delegate::alertViewCancelled, RQAlertViewCancelNotification};
inline const RQAlertViewReport<RQAlertViewHandler> destructive{
    &Handlers::destructiveHandler, &Delegate::alertViewDestructed, RQAlertViewDestructiveNotification};
inline const RQAlertViewReport<RQAlertViewHandler> willDismiss{
    &Handlers::willDismissHandler, &Delegate::alertViewWillDismiss, RQAlertViewWillDismissNotification};
inline const RQAlertViewReport<RQAlertViewAnimationsBlock> dismissAnimations{
    &Handlers::dismissAnimationsBlock, &Delegate::dismissAnimationsForAlertView,
    RQAlertViewDismissAnimationsNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didDismiss{
    &Handlers::didDismissHandler, &Delegate::alertViewDidDismiss, RQAlertViewDidDismissNotification};
inline const RQAlertViewReport<RQAlertViewActionHandler> didDismissAfterAction{
    &Handlers::didDismissAfterActionHandler, &Delegate::alertViewDidDismissAfterClickedButtonAtIndex,
    RQAlertViewDidDismissAfterActionNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didDismissAfterCancel{
    &Handlers::didDismissAfterCancelHandler, &Delegate::alertViewDidDismissAfterCancelled,
    RQAlertViewDidDismissAfterCancelNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didDismissAfterDestructive{
    &Handlers::didDismissAfterDestructiveHandler, &Delegate::alertViewDidDismissAfterDestructed,
    RQAlertViewDidDismissAfterDestructiveNotification};

}  // namespace reports
