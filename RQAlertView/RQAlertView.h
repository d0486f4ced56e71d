// A dialog: a centred alert or an action sheet with a title, a message, a content area and buttons.
#pragma once

#include "RQAlertView/RQAlertViewAppearance.h"
#include "RQAlertView/RQAlertViewButtonProperties.h"
#include "RQAlertView/RQAlertViewReports.h"
#include "RQAlertView/RQAlertViewRows.h"
#include "RQAlertView/RQAlertViewTextField.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include <QObject>
#include <QPointer>
#include <QStringList>

class RQAlertViewButton;
class RQAlertViewContentArea;
class RQAlertViewController;
class RQAlertViewRootView;
class RQAlertViewWindow;
struct NSNotification;

// clang-format off
#define RQ_HANDLER_ACCESSORS(Type, name, setter)         \
  const Type& name() const { return handlers_.name; }  \
  void setter(Type handler) { handlers_.name = std::move(handler); }
#define RQ_PROPERTY_ACCESSORS(Type, name, setter, value)  \
  const Type& name() const { return appearance_.name; } \
  void setter(const Type& newValue) {                \
    appearance_.name = newValue;                        \
    appearanceChanged();                                \
  }
// clang-format on

// What the user does is reported three times, always in this order: to the handler, to the delegate, as a
// notification. All calls are made and all reports come on the main thread, one after the other; a report
// that throws is logged, and the rest comes all the same.
//
// A null text is an absent one. Texts are plain text, never markup, and a text longer than the screen
// scrolls. A dialog keeps itself alive from show to dismissal and is shown once. Its window is made, key and
// see-through from the start, so show it or drop it soon after making it. Handlers that are kept by the
// dialog should hold it weakly, or use the reference that they are given.
class RQAlertView : public QObject, public std::enable_shared_from_this<RQAlertView> {
  Q_OBJECT

 public:
  ~RQAlertView() override;

  // A dialog that must be set up with one of the initializers before it is shown.
  static std::shared_ptr<RQAlertView> alloc();
  // The shared object from which every new dialog copies its appearance. It cannot be shown.
  static const std::shared_ptr<RQAlertView>& appearance();
  // Gives the shared object its starting values again.
  static void resetAppearance();

  // Each initializer can be called in three ways: with the arguments below alone; with an action handler, a
  // cancel handler and a destructive handler after them, each of which may be null; or with a delegate
  // (std::weak_ptr or std::shared_ptr<RQAlertViewDelegate>) after them. The factory alertViewWith... of the
  // same name allocates and initializes in one step. All return the dialog itself.
  template <typename... Reports>
  std::shared_ptr<RQAlertView> initWithTitle(const QString& title, const QString& message,
                                             RQAlertViewStyle style, const QStringList& buttonTitles,
                                             const QString& cancelButtonTitle,
                                             const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({.title = title,
                  .message = message,
                  .style = style,
                  .buttonTitles = buttonTitles,
                  .cancelButtonTitle = cancelButtonTitle,
                  .destructiveButtonTitle = destructiveButtonTitle},
                 RQAlertViewRecipients(std::move(reports)...));
  }

  // The dialog takes `view` over and gives it its own width and the height of its size hint.
  template <typename... Reports>
  std::shared_ptr<RQAlertView> initWithViewAndTitle(const QString& title, const QString& message,
                                                    RQAlertViewStyle style, QWidget* view,
                                                    const QStringList& buttonTitles,
                                                    const QString& cancelButtonTitle,
                                                    const QString& destructiveButtonTitle,
                                                    Reports... reports) {
    return setUp({.title = title,
                  .message = message,
                  .style = style,
                  .buttonTitles = buttonTitles,
                  .cancelButtonTitle = cancelButtonTitle,
                  .destructiveButtonTitle = destructiveButtonTitle,
                  .innerView = view},
                 RQAlertViewRecipients(std::move(reports)...));
  }

  template <typename... Reports>
  std::shared_ptr<RQAlertView> initWithActivityIndicatorAndTitle(
      const QString& title, const QString& message, RQAlertViewStyle style, const QString& progressLabelText,
      const QStringList& buttonTitles, const QString& cancelButtonTitle,
      const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({.type = RQAlertViewType::ActivityIndicator,
                  .title = title,
                  .message = message,
                  .style = style,
                  .buttonTitles = buttonTitles,
                  .cancelButtonTitle = cancelButtonTitle,
                  .destructiveButtonTitle = destructiveButtonTitle,
                  .progressLabelText = progressLabelText},
                 RQAlertViewRecipients(std::move(reports)...));
  }

  // `progress` from 0 to 1; what lies outside is brought inside.
  template <typename... Reports>
  std::shared_ptr<RQAlertView> initWithProgressViewAndTitle(
      const QString& title, const QString& message, RQAlertViewStyle style, double progress,
      const QString& progressLabelText, const QStringList& buttonTitles, const QString& cancelButtonTitle,
      const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({.type = RQAlertViewType::ProgressView,
                  .title = title,
                  .message = message,
                  .style = style,
                  .buttonTitles = buttonTitles,
                  .cancelButtonTitle = cancelButtonTitle,
                  .destructiveButtonTitle = destructiveButtonTitle,
                  .progress = progress,
                  .progressLabelText = progressLabelText},
                 RQAlertViewRecipients(std::move(reports)...));
  }

  // Always an alert. `textFieldsSetupHandler`, which may be null, is called once for each field, in order,
  // when everything else has been made.
  template <typename... Reports>
  std::shared_ptr<RQAlertView> initWithTextFieldsAndTitle(
      const QString& title, const QString& message, std::size_t numberOfTextFields,
      RQAlertViewTextFieldsSetupHandler textFieldsSetupHandler, const QStringList& buttonTitles,
      const QString& cancelButtonTitle, const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({.type = RQAlertViewType::TextFields,
                  .title = title,
                  .message = message,
                  .style = RQAlertViewStyle::Alert,
                  .buttonTitles = buttonTitles,
                  .cancelButtonTitle = cancelButtonTitle,
                  .destructiveButtonTitle = destructiveButtonTitle,
                  .numberOfTextFields = numberOfTextFields,
                  .textFieldsSetupHandler = std::move(textFieldsSetupHandler)},
                 RQAlertViewRecipients(std::move(reports)...));
  }

  template <typename... Reports>
  static std::shared_ptr<RQAlertView> alertViewWithTitle(
      const QString& title, const QString& message, RQAlertViewStyle style, const QStringList& buttonTitles,
      const QString& cancelButtonTitle, const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithTitle(title, message, style, buttonTitles, cancelButtonTitle,
                                  destructiveButtonTitle, std::move(reports)...);
  }

  template <typename... Reports>
  static std::shared_ptr<RQAlertView> alertViewWithViewAndTitle(const QString& title, const QString& message,
                                                                RQAlertViewStyle style, QWidget* view,
                                                                const QStringList& buttonTitles,
                                                                const QString& cancelButtonTitle,
                                                                const QString& destructiveButtonTitle,
                                                                Reports... reports) {
    return alloc()->initWithViewAndTitle(title, message, style, view, buttonTitles, cancelButtonTitle,
                                         destructiveButtonTitle, std::move(reports)...);
  }

  template <typename... Reports>
  static std::shared_ptr<RQAlertView> alertViewWithActivityIndicatorAndTitle(
      const QString& title, const QString& message, RQAlertViewStyle style, const QString& progressLabelText,
      const QStringList& buttonTitles, const QString& cancelButtonTitle,
      const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithActivityIndicatorAndTitle(title, message, style, progressLabelText, buttonTitles,
                                                      cancelButtonTitle, destructiveButtonTitle,
                                                      std::move(reports)...);
  }

  template <typename... Reports>
  static std::shared_ptr<RQAlertView> alertViewWithProgressViewAndTitle(
      const QString& title, const QString& message, RQAlertViewStyle style, double progress,
      const QString& progressLabelText, const QStringList& buttonTitles, const QString& cancelButtonTitle,
      const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithProgressViewAndTitle(title, message, style, progress, progressLabelText,
                                                 buttonTitles, cancelButtonTitle, destructiveButtonTitle,
                                                 std::move(reports)...);
  }

  template <typename... Reports>
  static std::shared_ptr<RQAlertView> alertViewWithTextFieldsAndTitle(
      const QString& title, const QString& message, std::size_t numberOfTextFields,
      RQAlertViewTextFieldsSetupHandler textFieldsSetupHandler, const QStringList& buttonTitles,
      const QString& cancelButtonTitle, const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithTextFieldsAndTitle(
        title, message, numberOfTextFields, std::move(textFieldsSetupHandler), buttonTitles,
        cancelButtonTitle, destructiveButtonTitle, std::move(reports)...);
  }

  // Showing does nothing when the dialog is shown already or has been. A dialog that no initializer has set
  // up throws InternalInconsistency. Without an argument: animated for showAnimated, at once for show. The
  // completion handler is the last report of the show. It comes, too, where a report dismisses the dialog
  // before it is in sight; not where nothing is done, nor where the window is destroyed while the box moves.
  void show();
  void showAnimated();
  void showAnimated(bool animated, RQAlertViewCompletionHandler completionHandler = {});
  // `hidden`: everything is done and reported, but the dialog's view stays hidden until it is shown.
  void showAnimated(bool animated, bool hidden, RQAlertViewCompletionHandler completionHandler);

  // Dismissing does nothing when the dialog is not shown, but while it goes, a completion handler is called
  // at its end after the earlier ones. One that another dialog covers goes at once. A show that still moves
  // is brought to its end first.
  void dismiss();
  void dismissAnimated();
  void dismissAnimated(bool animated, RQAlertViewCompletionHandler completionHandler = {});

  // Dismisses this dialog and shows `alertView`, which stands in its place: the cover stays, the box changes
  // its size and content. Where this dialog is not shown, the other one is shown as usual. Does nothing where
  // the other one is shown already or has been.
  void transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView);
  void transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView,
                             RQAlertViewCompletionHandler completionHandler);

  // As if the user had tapped the button, be it enabled or not. A button that there is not throws
  // InternalInconsistency.
  void forceCancel();
  void forceDestructive();
  void forceActionAtIndex(std::size_t index);

  // An index that is out of range does nothing here...
  void setButtonEnabled(bool enabled, std::size_t index);
  // ...and throws std::out_of_range here.
  bool isButtonEnabledAtIndex(std::size_t index) const;
  void setButtonPropertiesAtIndex(std::size_t index, const RQAlertViewButtonPropertiesHandler& handler);
  // Every button of the list at once.
  void setButtonsEnabled(bool enabled);
  bool buttonsEnabled() const { return appearance_.buttonsEnabled; }

  RQAlertViewState state() const { return state_; }
  bool isInitialized() const { return state_ != RQAlertViewState::Allocated; }
  // From the start of show until dismissal starts.
  bool isShowing() const;

  RQAlertViewStyle style() const { return setup_.style; }
  RQAlertViewType type() const { return setup_.type; }
  const QString& title() const { return setup_.title; }
  const QString& message() const { return setup_.message; }
  const QStringList& buttonTitles() const { return setup_.buttonTitles; }
  const QString& cancelButtonTitle() const { return setup_.cancelButtonTitle; }
  const QString& destructiveButtonTitle() const { return setup_.destructiveButtonTitle; }
  const std::vector<bool>& buttonsEnabledArray() const { return buttonsEnabled_; }
  // The application's own view; null where there is none, or where it has been destroyed.
  QWidget* innerView() const { return setup_.innerView; }
  // In order; the fields live as long as the dialog is not dismissed.
  std::vector<RQAlertViewTextField*> textFieldsArray() const;

  double progress() const { return setup_.progress; }
  // May be changed while the dialog is shown. `animated` moves the bar where motion is on.
  void setProgress(double progress, bool animated = false);
  const QString& progressLabelText() const { return setup_.progressLabelText; }
  void setProgressLabelText(const QString& text);

  // Held weakly. A delegate that has a deprecated member set is warned about in the system log.
  void setDelegate(std::weak_ptr<RQAlertViewDelegate> delegate);
  std::shared_ptr<RQAlertViewDelegate> delegate() const { return delegate_.lock(); }

  // actionHandler() and setActionHandler(), and so on.
  RQ_ALERT_VIEW_HANDLERS(RQ_HANDLER_ACCESSORS);

  // A getter and a setter for each row of the appearance table: backgroundColor() and setBackgroundColor(),
  // and so on. Changes take effect at once, while the dialog is shown too.
  RQ_ALERT_VIEW_APPEARANCE(RQ_PROPERTY_ACCESSORS);

  // The width that the dialog has in the application's window as it is now, whatever was set.
  double width() const;
  void setWidth(double width);

  // These depend on the dialog's style and type until they are set; the appearance object answers whether the
  // application has set them there.
  bool cancelOnTouch() const;
  void setCancelOnTouch(bool cancels);
  bool isUserCancelOnTouch() const { return appearance_.cancelOnTouch.has_value(); }
  double buttonsHeight() const;
  void setButtonsHeight(double height);
  bool isUserButtonsHeight() const { return appearance_.buttonsHeight.has_value(); }
  QColor titleTextColor() const;
  void setTitleTextColor(const QColor& color);
  bool isUserTitleTextColor() const { return appearance_.titleTextColor.has_value(); }
  QFont titleFont() const;
  void setTitleFont(const QFont& font);
  bool isUserTitleFont() const { return appearance_.titleFont.has_value(); }
  QColor messageTextColor() const;
  void setMessageTextColor(const QColor& color);
  bool isUserMessageTextColor() const { return appearance_.messageTextColor.has_value(); }

  // Free for the application's use; the largest value means none.
  std::int64_t tag() const { return tag_; }
  void setTag(std::int64_t tag) { tag_ = tag; }

  // Null before an initializer and after the dismissal; the event loop then destroys the view.
  std::shared_ptr<RQAlertViewWindow> window() const { return window_; }
  std::shared_ptr<RQAlertViewController> viewController() const { return viewController_; }
  QWidget* view() const;

  // How the button of a row looks, with what it has of its own, and whether it can be tapped.
  RQAlertViewButtonLook buttonLook(const RQAlertViewRow& row) const;
  RQAlertViewButtonLook buttonsLook(RQAlertViewButtonKind kind) const;
  bool isButtonEnabled(const RQAlertViewRow& row) const;
  // Whether every row of the list is as high as the others.
  bool hasUniformRows() const;
  const RQAlertViewAppearance& appearanceValues() const { return appearance_; }

 private:
  RQAlertView();

  // Creation.
  std::shared_ptr<RQAlertView> initAsAppearance();
  std::shared_ptr<RQAlertView> setUp(RQAlertViewSetup setup, RQAlertViewRecipients reports);
  void setupDefaults();
  void buildViews();
  void setInitialized();
  void requireInitialized() const;
  void appearanceChanged();

  // Showing and dismissing. An entrance brings the box in and calls what it is given when it is in place.
  using Entrance = std::function<void(double duration, std::function<void()> finished)>;
  // How strongly the dialog that this one covers, and which may be on its way out, dims what is below now.
  double dimmingBelow() const;
  // The same for the one that comes back when this one goes.
  double dimmingAfterwards() const;
  void showBy(const Entrance& entrance, bool animated, RQAlertViewCompletionHandler completionHandler);
  void showComplete(const RQAlertViewCompletionHandler& completionHandler);
  // Gives the focus to the first field, else to the safe answer, unless another dialog covers this one.
  void takeFocus();
  void beginDismissal();
  void dismissComplete();
  void releaseViews();
  void addObservers();
  void removeObservers();
  void keyboardVisibleChanged(const NSNotification& notification);
  void keyboardFrameChanged(const NSNotification& notification);
  // Lays the dialog out above `keyboard`, with the duration and the curve that the notification gives.
  void moveFor(const QRectF& keyboard, const NSNotification& notification);
  void windowVisibleChanged(const NSNotification& notification);
  void windowGone();

  // What the user does.
  void lastFieldEntered();
  // `sender`: the button that was tapped, which keeps its highlighted look while the dialog goes, or null.
  void answer(RQAlertViewButtonKind kind, std::size_t index, RQAlertViewButton* sender);
  enum class Moment { Now, AfterDismissal };
  void reportAnswer(RQAlertViewButtonKind kind, std::size_t index, Moment moment,
                    const std::weak_ptr<RQAlertViewDelegate>& delegate);
  // The cancel or the destructive button where it is no row of the list; else null.
  RQAlertViewButton* buttonOfKind(RQAlertViewButtonKind kind) const;

  // Reports to the handler, then the delegate, then by notification; inside an animation by notification
  // first. `values` follow the dialog itself.
  template <typename Handler, typename... Values>
  void report(const RQAlertViewReport<Handler>& report, const std::weak_ptr<RQAlertViewDelegate>& delegate,
              const QVariantMap& userInfo, const Values&... values);
  void reportAnimations(const RQAlertViewReport<RQAlertViewAnimationsBlock>& animations);

  RQAlertViewSetup setup_;
  RQAlertViewAppearance appearance_;
  bool isAppearance_ = false;
  RQAlertViewState state_ = RQAlertViewState::Allocated;
  std::vector<bool> buttonsEnabled_;
  std::map<std::size_t, RQAlertViewButtonProperties> buttonProperties_;
  std::int64_t tag_ = INT64_MAX;
  std::weak_ptr<RQAlertViewDelegate> delegate_;
  RQAlertViewHandlers handlers_;

  std::shared_ptr<RQAlertViewWindow> window_;
  std::shared_ptr<RQAlertViewController> viewController_;
  QPointer<RQAlertViewRootView> rootView_;
  QPointer<RQAlertViewContentArea> content_;
  // The answers that are being reported: a handler that forces the same one once more is ignored.
  std::set<std::pair<RQAlertViewButtonKind, std::size_t>> answering_;
  // Called when the dismissal that is under way has ended.
  std::vector<RQAlertViewCompletionHandler> afterDismissal_;
  // While shown.
  std::shared_ptr<RQAlertView> keptAlive_;
};

#undef RQ_HANDLER_ACCESSORS
#undef RQ_PROPERTY_ACCESSORS
