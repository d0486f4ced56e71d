// A dialog: a centred alert or an action sheet with a title, a message, a content area and buttons.
#pragma once

#include "RQAlertView/RQAlertViewModel.h"
#include "RQAlertView/RQAlertViewReports.h"
#include "RQAlertView/RQAlertViewTextField.h"

#include <set>
#include <utility>

class RQAlertViewButton;
class RQAlertViewController;
class RQAlertViewRootView;
class RQAlertViewWindow;
struct NSNotification;

// Where a dialog is in its life. Allocated: no initializer has set it up yet. Showing and Dismissing: it
// moves and takes no input.
enum class RQAlertViewState { Allocated, Made, Showing, Shown, Dismissing, Dismissed };

// A getter and a setter for a handler.
#define RQ_HANDLER(Type, name, setter)   \
  const Type& name() const {             \
    return handlers_.name;               \
  }                                      \
  void setter(Type handler) {            \
    handlers_.name = std::move(handler); \
  }
// A getter and a setter for a property of the look, which is kept at appearance.member.
#define RQ_PROPERTY(Type, name, setter, member) \
  const Type& name() const {                    \
    return model_->appearance.member;           \
  }                                             \
  void setter(const Type& value) {              \
    model_->appearance.member = value;          \
    appearanceChanged();                        \
  }
// The same, and whether the application has set it, for one whose value depends on the dialog.
#define RQ_DEPENDENT_PROPERTY(Type, name, setter, isUser) \
  Type name() const {                                     \
    return model_->appearance.name.value_or(Type());      \
  }                                                       \
  void setter(const Type& value) {                        \
    model_->appearance.name = value;                      \
    appearanceChanged();                                  \
  }                                                       \
  bool isUser() const {                                   \
    return model_->appearance.name.has_value();           \
  }

// What the user does is reported three times, always in this order: to the handler, to the delegate, as a
// notification. All calls are made and all reports come on the main thread, one after the other; an exception
// from a report is logged, and the other reports follow.
//
// A null text is an absent one. Texts are plain text, never markup, and a text longer than the screen
// scrolls. A dialog keeps itself alive from show to dismissal and is shown once. Its window is made with it,
// key and transparent, so show it or drop it soon after. Handlers that the dialog keeps should hold it
// weakly, or use the reference that they are given.
class RQAlertView : public QObject, public std::enable_shared_from_this<RQAlertView> {
  Q_OBJECT

 public:
  using Shared = std::shared_ptr<RQAlertView>;

  // A dialog that must be set up with one of the initializers before it is shown.
  [[nodiscard]] static Shared alloc();
  // The shared object from which every new dialog copies its appearance. It cannot be shown.
  static const Shared& appearance();
  // Gives the shared object its starting values again.
  static void resetAppearance();

  // Each initializer can be called in three ways: with the arguments below alone; with an action handler, a
  // cancel handler and a destructive handler after them, each of which may be null; or with a delegate
  // (std::weak_ptr or std::shared_ptr<RQAlertViewDelegate>) after them. The factory alertViewWith... of the
  // same name allocates and initializes in one step. All return the dialog itself.
  template <typename... Reports>
  Shared initWithTitle(const QString& title, const QString& message, RQAlertViewStyle style,
                       const QStringList& buttonTitles, const QString& cancelButtonTitle,
                       const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({RQAlertViewType::Default, title, message, style, buttonTitles, cancelButtonTitle,
                  destructiveButtonTitle},
                 {}, RQAlertViewRecipients(std::move(reports)...));
  }
  // The dialog takes ownership of `view` and gives it its own width and the height of its size hint.
  template <typename... Reports>
  Shared initWithViewAndTitle(const QString& title, const QString& message, RQAlertViewStyle style,
                              QWidget* view, const QStringList& buttonTitles,
                              const QString& cancelButtonTitle, const QString& destructiveButtonTitle,
                              Reports... reports) {
    return setUp({RQAlertViewType::Default, title, message, style, buttonTitles, cancelButtonTitle,
                  destructiveButtonTitle, view},
                 {}, RQAlertViewRecipients(std::move(reports)...));
  }
  template <typename... Reports>
  Shared initWithActivityIndicatorAndTitle(const QString& title, const QString& message,
                                           RQAlertViewStyle style, const QString& progressLabelText,
                                           const QStringList& buttonTitles, const QString& cancelButtonTitle,
                                           const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({RQAlertViewType::ActivityIndicator, title, message, style, buttonTitles, cancelButtonTitle,
                  destructiveButtonTitle, nullptr, 0, progressLabelText},
                 {}, RQAlertViewRecipients(std::move(reports)...));
  }
  // `progress` is brought into the range from 0 to 1.
  template <typename... Reports>
  Shared initWithProgressViewAndTitle(const QString& title, const QString& message, RQAlertViewStyle style,
                                      double progress, const QString& progressLabelText,
                                      const QStringList& buttonTitles, const QString& cancelButtonTitle,
                                      const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({RQAlertViewType::ProgressView, title, message, style, buttonTitles, cancelButtonTitle,
                  destructiveButtonTitle, nullptr, progress, progressLabelText},
                 {}, RQAlertViewRecipients(std::move(reports)...));
  }
  // Always an alert. `textFieldsSetupHandler`, which may be null, is called once for each field, in order,
  // when everything else has been made.
  template <typename... Reports>
  Shared initWithTextFieldsAndTitle(const QString& title, const QString& message,
                                    std::size_t numberOfTextFields,
                                    const RQAlertViewTextFieldsSetupHandler& textFieldsSetupHandler,
                                    const QStringList& buttonTitles, const QString& cancelButtonTitle,
                                    const QString& destructiveButtonTitle, Reports... reports) {
    return setUp({RQAlertViewType::TextFields,
                  title,
                  message,
                  RQAlertViewStyle::Alert,
                  buttonTitles,
                  cancelButtonTitle,
                  destructiveButtonTitle,
                  nullptr,
                  0,
                  {},
                  numberOfTextFields},
                 textFieldsSetupHandler, RQAlertViewRecipients(std::move(reports)...));
  }

  template <typename... Reports>
  static Shared alertViewWithTitle(const QString& title, const QString& message, RQAlertViewStyle style,
                                   const QStringList& buttonTitles, const QString& cancelButtonTitle,
                                   const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithTitle(title, message, style, buttonTitles, cancelButtonTitle,
                                  destructiveButtonTitle, std::move(reports)...);
  }
  template <typename... Reports>
  static Shared alertViewWithViewAndTitle(const QString& title, const QString& message,
                                          RQAlertViewStyle style, QWidget* view,
                                          const QStringList& buttonTitles, const QString& cancelButtonTitle,
                                          const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithViewAndTitle(title, message, style, view, buttonTitles, cancelButtonTitle,
                                         destructiveButtonTitle, std::move(reports)...);
  }
  template <typename... Reports>
  static Shared alertViewWithActivityIndicatorAndTitle(
      const QString& title, const QString& message, RQAlertViewStyle style, const QString& progressLabelText,
      const QStringList& buttonTitles, const QString& cancelButtonTitle,
      const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithActivityIndicatorAndTitle(title, message, style, progressLabelText, buttonTitles,
                                                      cancelButtonTitle, destructiveButtonTitle,
                                                      std::move(reports)...);
  }
  template <typename... Reports>
  static Shared alertViewWithProgressViewAndTitle(const QString& title, const QString& message,
                                                  RQAlertViewStyle style, double progress,
                                                  const QString& progressLabelText,
                                                  const QStringList& buttonTitles,
                                                  const QString& cancelButtonTitle,
                                                  const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithProgressViewAndTitle(title, message, style, progress, progressLabelText,
                                                 buttonTitles, cancelButtonTitle, destructiveButtonTitle,
                                                 std::move(reports)...);
  }
  template <typename... Reports>
  static Shared alertViewWithTextFieldsAndTitle(
      const QString& title, const QString& message, std::size_t numberOfTextFields,
      const RQAlertViewTextFieldsSetupHandler& textFieldsSetupHandler, const QStringList& buttonTitles,
      const QString& cancelButtonTitle, const QString& destructiveButtonTitle, Reports... reports) {
    return alloc()->initWithTextFieldsAndTitle(title, message, numberOfTextFields, textFieldsSetupHandler,
                                               buttonTitles, cancelButtonTitle, destructiveButtonTitle,
                                               std::move(reports)...);
  }

  // Showing does nothing when the dialog is shown already or has been. A dialog that no initializer has set
  // up throws InternalInconsistency. Without an argument: animated for showAnimated, at once for show. The
  // completion handler is the last report of the show. It is also called if a report dismisses the dialog
  // before it is in sight; not if nothing is done, nor if the window is destroyed while the box moves.
  void show() { showAnimated(false); }
  void showAnimated() { showAnimated(true); }
  void showAnimated(bool animated, RQAlertViewCompletionHandler completionHandler = {}) {
    showAnimated(animated, false, std::move(completionHandler));
  }
  // `hidden`: everything is done and reported, but the dialog's view stays hidden until it is shown.
  void showAnimated(bool animated, bool hidden, RQAlertViewCompletionHandler completionHandler);

  // Dismissing does nothing when the dialog is not shown. While it goes, a completion handler is called at
  // its end after the earlier ones. One that another dialog covers goes at once. A show that still moves is
  // brought to its end first.
  void dismiss() { dismissAnimated(false); }
  void dismissAnimated() { dismissAnimated(true); }
  void dismissAnimated(bool animated, RQAlertViewCompletionHandler completionHandler = {});

  // Dismisses this dialog and shows `alertView` in its place: the cover stays, the box changes its size and
  // content. Where this dialog is not shown, the other one is shown as usual. Does nothing where the other
  // one is shown already or has been.
  void transitionToAlertView(const Shared& alertView, RQAlertViewCompletionHandler completionHandler = {});

  // As if the user had pressed the button, whether it is enabled or not. Throws InternalInconsistency if
  // there is no such button.
  void forceCancel();
  void forceDestructive();
  void forceActionAtIndex(std::size_t index);

  // An index that is out of range does nothing here...
  void setButtonEnabled(bool enabled, std::size_t index);
  // ...and throws std::out_of_range here.
  bool isButtonEnabledAtIndex(std::size_t index) const { return model_->buttonsEnabled.at(index); }
  void setButtonPropertiesAtIndex(std::size_t index, const RQAlertViewButtonPropertiesHandler& handler);
  // Every button of the list at once.
  void setButtonsEnabled(bool enabled);
  bool buttonsEnabled() const { return model_->appearance.buttons.enabled; }

  RQAlertViewState state() const { return state_; }
  bool isInitialized() const { return state_ != RQAlertViewState::Allocated; }
  // From the start of show until dismissal starts.
  bool isShowing() const { return state_ == RQAlertViewState::Showing || state_ == RQAlertViewState::Shown; }

  RQAlertViewStyle style() const { return model_->style; }
  RQAlertViewType type() const { return model_->type; }
  const QString& title() const { return model_->title; }
  const QString& message() const { return model_->message; }
  const QStringList& buttonTitles() const { return model_->buttonTitles; }
  const QString& cancelButtonTitle() const { return model_->cancelButtonTitle; }
  const QString& destructiveButtonTitle() const { return model_->destructiveButtonTitle; }
  const std::vector<bool>& buttonsEnabledArray() const { return model_->buttonsEnabled; }
  // The application's own view; null where there is none, or where it has been destroyed.
  QWidget* innerView() const { return model_->innerView; }
  // In order; the fields live until the dialog is dismissed.
  std::vector<RQAlertViewTextField*> textFieldsArray() const;
  // All of these together.
  const RQAlertViewModel& model() const { return *model_; }

  double progress() const { return model_->progress; }
  // May be changed while the dialog is shown. `animated` moves the bar where motion is on.
  void setProgress(double progress, bool animated = false);
  const QString& progressLabelText() const { return model_->progressLabelText; }
  void setProgressLabelText(const QString& text);

  // Held weakly. A delegate that has a deprecated member set is warned about in the system log.
  void setDelegate(std::weak_ptr<RQAlertViewDelegate> delegate);
  std::shared_ptr<RQAlertViewDelegate> delegate() const { return delegate_.lock(); }

  RQ_HANDLER(RQAlertViewActionHandler, actionHandler, setActionHandler)
  RQ_HANDLER(RQAlertViewHandler, cancelHandler, setCancelHandler)
  RQ_HANDLER(RQAlertViewHandler, destructiveHandler, setDestructiveHandler)
  RQ_HANDLER(RQAlertViewHandler, willShowHandler, setWillShowHandler)
  RQ_HANDLER(RQAlertViewHandler, didShowHandler, setDidShowHandler)
  RQ_HANDLER(RQAlertViewHandler, willDismissHandler, setWillDismissHandler)
  RQ_HANDLER(RQAlertViewHandler, didDismissHandler, setDidDismissHandler)
  RQ_HANDLER(RQAlertViewActionHandler, didDismissAfterActionHandler, setDidDismissAfterActionHandler)
  RQ_HANDLER(RQAlertViewHandler, didDismissAfterCancelHandler, setDidDismissAfterCancelHandler)
  RQ_HANDLER(RQAlertViewHandler, didDismissAfterDestructiveHandler, setDidDismissAfterDestructiveHandler)
  RQ_HANDLER(RQAlertViewAnimationsBlock, showAnimationsBlock, setShowAnimationsBlock)
  RQ_HANDLER(RQAlertViewAnimationsBlock, dismissAnimationsBlock, setDismissAnimationsBlock)

  // The look; RQAlertViewAppearance has the starting values. Changes take effect at once, while the dialog is
  // shown too.
  // clang-format off
  RQ_PROPERTY(std::shared_ptr<RQAlertViewCell>, heightCell, setHeightCell, heightCell)
  RQ_PROPERTY(RQAlertViewWindowLevel, windowLevel, setWindowLevel, windowLevel)
  RQ_PROPERTY(bool, dismissOnAction, setDismissOnAction, dismissOnAction)
  RQ_PROPERTY(QColor, tintColor, setTintColor, tintColor)
  RQ_PROPERTY(QColor, coverColor, setCoverColor, coverColor)
  RQ_PROPERTY(std::optional<UIBlurEffectStyle>, coverBlurEffect, setCoverBlurEffect, coverBlurEffect)
  RQ_PROPERTY(double, coverAlpha, setCoverAlpha, coverAlpha)
  RQ_PROPERTY(QColor, backgroundColor, setBackgroundColor, backgroundColor)
  RQ_PROPERTY(std::optional<UIBlurEffectStyle>, backgroundBlurEffect, setBackgroundBlurEffect, backgroundBlurEffect)
  RQ_PROPERTY(double, textFieldsHeight, setTextFieldsHeight, textFieldsHeight)
  RQ_PROPERTY(double, offsetVertical, setOffsetVertical, offsetVertical)
  RQ_PROPERTY(double, cancelButtonOffsetY, setCancelButtonOffsetY, cancelButtonOffsetY)
  RQ_PROPERTY(double, heightMax, setHeightMax, heightMax)
  RQ_PROPERTY(QColor, separatorsColor, setSeparatorsColor, separatorsColor)
  RQ_PROPERTY(UIScrollViewIndicatorStyle, indicatorStyle, setIndicatorStyle, indicatorStyle)
  RQ_PROPERTY(bool, showsVerticalScrollIndicator, setShowsVerticalScrollIndicator, showsVerticalScrollIndicator)
  RQ_PROPERTY(bool, padShowsActionSheetFromBottom, setPadShowsActionSheetFromBottom, padShowsActionSheetFromBottom)
  RQ_PROPERTY(bool, oneRowOneButton, setOneRowOneButton, oneRowOneButton)
  RQ_PROPERTY(bool, shouldDismissAnimated, setShouldDismissAnimated, shouldDismissAnimated)
  RQ_PROPERTY(double, layerCornerRadius, setLayerCornerRadius, layerCornerRadius)
  RQ_PROPERTY(QColor, layerBorderColor, setLayerBorderColor, layerBorderColor)
  RQ_PROPERTY(double, layerBorderWidth, setLayerBorderWidth, layerBorderWidth)
  RQ_PROPERTY(QColor, layerShadowColor, setLayerShadowColor, layerShadowColor)
  RQ_PROPERTY(double, layerShadowRadius, setLayerShadowRadius, layerShadowRadius)
  RQ_PROPERTY(QPointF, layerShadowOffset, setLayerShadowOffset, layerShadowOffset)
  RQ_PROPERTY(double, animationDuration, setAnimationDuration, animationDuration)
  RQ_PROPERTY(double, initialScale, setInitialScale, initialScale)
  RQ_PROPERTY(double, finalScale, setFinalScale, finalScale)
  RQ_PROPERTY(NSTextAlignment, titleTextAlignment, setTitleTextAlignment, titleTextAlignment)
  RQ_PROPERTY(NSTextAlignment, messageTextAlignment, setMessageTextAlignment, messageTextAlignment)
  RQ_PROPERTY(QFont, messageFont, setMessageFont, messageFont)

  RQ_PROPERTY(QColor, buttonsTitleColor, setButtonsTitleColor, buttons.titleColor)
  RQ_PROPERTY(QColor, buttonsTitleColorHighlighted, setButtonsTitleColorHighlighted, buttons.titleColorHighlighted)
  RQ_PROPERTY(QColor, buttonsTitleColorDisabled, setButtonsTitleColorDisabled, buttons.titleColorDisabled)
  RQ_PROPERTY(NSTextAlignment, buttonsTextAlignment, setButtonsTextAlignment, buttons.textAlignment)
  RQ_PROPERTY(QFont, buttonsFont, setButtonsFont, buttons.font)
  RQ_PROPERTY(QColor, buttonsBackgroundColor, setButtonsBackgroundColor, buttons.backgroundColor)
  RQ_PROPERTY(QColor, buttonsBackgroundColorHighlighted, setButtonsBackgroundColorHighlighted, buttons.backgroundColorHighlighted)
  RQ_PROPERTY(QColor, buttonsBackgroundColorDisabled, setButtonsBackgroundColorDisabled, buttons.backgroundColorDisabled)
  RQ_PROPERTY(int, buttonsNumberOfLines, setButtonsNumberOfLines, buttons.numberOfLines)
  RQ_PROPERTY(NSLineBreakMode, buttonsLineBreakMode, setButtonsLineBreakMode, buttons.lineBreakMode)
  RQ_PROPERTY(double, buttonsMinimumScaleFactor, setButtonsMinimumScaleFactor, buttons.minimumScaleFactor)
  RQ_PROPERTY(bool, buttonsAdjustsFontSizeToFitWidth, setButtonsAdjustsFontSizeToFitWidth, buttons.adjustsFontSizeToFitWidth)
  RQ_PROPERTY(RQAlertViewButtonIconPosition, buttonsIconPosition, setButtonsIconPosition, buttons.iconPosition)

  RQ_PROPERTY(QColor, cancelButtonTitleColor, setCancelButtonTitleColor, cancelButton.titleColor)
  RQ_PROPERTY(QColor, cancelButtonTitleColorHighlighted, setCancelButtonTitleColorHighlighted, cancelButton.titleColorHighlighted)
  RQ_PROPERTY(QColor, cancelButtonTitleColorDisabled, setCancelButtonTitleColorDisabled, cancelButton.titleColorDisabled)
  RQ_PROPERTY(NSTextAlignment, cancelButtonTextAlignment, setCancelButtonTextAlignment, cancelButton.textAlignment)
  RQ_PROPERTY(QFont, cancelButtonFont, setCancelButtonFont, cancelButton.font)
  RQ_PROPERTY(QColor, cancelButtonBackgroundColor, setCancelButtonBackgroundColor, cancelButton.backgroundColor)
  RQ_PROPERTY(QColor, cancelButtonBackgroundColorHighlighted, setCancelButtonBackgroundColorHighlighted, cancelButton.backgroundColorHighlighted)
  RQ_PROPERTY(QColor, cancelButtonBackgroundColorDisabled, setCancelButtonBackgroundColorDisabled, cancelButton.backgroundColorDisabled)
  RQ_PROPERTY(int, cancelButtonNumberOfLines, setCancelButtonNumberOfLines, cancelButton.numberOfLines)
  RQ_PROPERTY(NSLineBreakMode, cancelButtonLineBreakMode, setCancelButtonLineBreakMode, cancelButton.lineBreakMode)
  RQ_PROPERTY(double, cancelButtonMinimumScaleFactor, setCancelButtonMinimumScaleFactor, cancelButton.minimumScaleFactor)
  RQ_PROPERTY(bool, cancelButtonAdjustsFontSizeToFitWidth, setCancelButtonAdjustsFontSizeToFitWidth, cancelButton.adjustsFontSizeToFitWidth)
  RQ_PROPERTY(RQAlertViewButtonIconPosition, cancelButtonIconPosition, setCancelButtonIconPosition, cancelButton.iconPosition)
  RQ_PROPERTY(bool, cancelButtonEnabled, setCancelButtonEnabled, cancelButton.enabled)
  RQ_PROPERTY(QPixmap, cancelButtonIconImage, setCancelButtonIconImage, cancelButton.iconImage)

  RQ_PROPERTY(QColor, destructiveButtonTitleColor, setDestructiveButtonTitleColor, destructiveButton.titleColor)
  RQ_PROPERTY(QColor, destructiveButtonTitleColorHighlighted, setDestructiveButtonTitleColorHighlighted, destructiveButton.titleColorHighlighted)
  RQ_PROPERTY(QColor, destructiveButtonTitleColorDisabled, setDestructiveButtonTitleColorDisabled, destructiveButton.titleColorDisabled)
  RQ_PROPERTY(NSTextAlignment, destructiveButtonTextAlignment, setDestructiveButtonTextAlignment, destructiveButton.textAlignment)
  RQ_PROPERTY(QFont, destructiveButtonFont, setDestructiveButtonFont, destructiveButton.font)
  RQ_PROPERTY(QColor, destructiveButtonBackgroundColor, setDestructiveButtonBackgroundColor, destructiveButton.backgroundColor)
  RQ_PROPERTY(QColor, destructiveButtonBackgroundColorHighlighted, setDestructiveButtonBackgroundColorHighlighted, destructiveButton.backgroundColorHighlighted)
  RQ_PROPERTY(QColor, destructiveButtonBackgroundColorDisabled, setDestructiveButtonBackgroundColorDisabled, destructiveButton.backgroundColorDisabled)
  RQ_PROPERTY(int, destructiveButtonNumberOfLines, setDestructiveButtonNumberOfLines, destructiveButton.numberOfLines)
  RQ_PROPERTY(NSLineBreakMode, destructiveButtonLineBreakMode, setDestructiveButtonLineBreakMode, destructiveButton.lineBreakMode)
  RQ_PROPERTY(double, destructiveButtonMinimumScaleFactor, setDestructiveButtonMinimumScaleFactor, destructiveButton.minimumScaleFactor)
  RQ_PROPERTY(bool, destructiveButtonAdjustsFontSizeToFitWidth, setDestructiveButtonAdjustsFontSizeToFitWidth, destructiveButton.adjustsFontSizeToFitWidth)
  RQ_PROPERTY(RQAlertViewButtonIconPosition, destructiveButtonIconPosition, setDestructiveButtonIconPosition, destructiveButton.iconPosition)
  RQ_PROPERTY(bool, destructiveButtonEnabled, setDestructiveButtonEnabled, destructiveButton.enabled)
  RQ_PROPERTY(QPixmap, destructiveButtonIconImage, setDestructiveButtonIconImage, destructiveButton.iconImage)

  RQ_PROPERTY(UIActivityIndicatorViewStyle, activityIndicatorViewStyle, setActivityIndicatorViewStyle, activityIndicatorViewStyle)
  RQ_PROPERTY(QColor, activityIndicatorViewColor, setActivityIndicatorViewColor, activityIndicatorViewColor)
  RQ_PROPERTY(QColor, progressViewProgressTintColor, setProgressViewProgressTintColor, progressViewProgressTintColor)
  RQ_PROPERTY(QColor, progressViewTrackTintColor, setProgressViewTrackTintColor, progressViewTrackTintColor)
  RQ_PROPERTY(QPixmap, progressViewProgressImage, setProgressViewProgressImage, progressViewProgressImage)
  RQ_PROPERTY(QPixmap, progressViewTrackImage, setProgressViewTrackImage, progressViewTrackImage)
  RQ_PROPERTY(QColor, progressLabelTextColor, setProgressLabelTextColor, progressLabelTextColor)
  RQ_PROPERTY(NSTextAlignment, progressLabelTextAlignment, setProgressLabelTextAlignment, progressLabelTextAlignment)
  RQ_PROPERTY(QFont, progressLabelFont, setProgressLabelFont, progressLabelFont)
  RQ_PROPERTY(int, progressLabelNumberOfLines, setProgressLabelNumberOfLines, progressLabelNumberOfLines)
  RQ_PROPERTY(NSLineBreakMode, progressLabelLineBreakMode, setProgressLabelLineBreakMode, progressLabelLineBreakMode)
  RQ_PROPERTY(QColor, textFieldsBackgroundColor, setTextFieldsBackgroundColor, textFieldsBackgroundColor)
  RQ_PROPERTY(QColor, textFieldsTextColor, setTextFieldsTextColor, textFieldsTextColor)
  RQ_PROPERTY(QFont, textFieldsFont, setTextFieldsFont, textFieldsFont)
  RQ_PROPERTY(NSTextAlignment, textFieldsTextAlignment, setTextFieldsTextAlignment, textFieldsTextAlignment)
  RQ_PROPERTY(bool, textFieldsClearsOnBeginEditing, setTextFieldsClearsOnBeginEditing, textFieldsClearsOnBeginEditing)
  RQ_PROPERTY(bool, textFieldsAdjustsFontSizeToFitWidth, setTextFieldsAdjustsFontSizeToFitWidth, textFieldsAdjustsFontSizeToFitWidth)
  RQ_PROPERTY(double, textFieldsMinimumFontSize, setTextFieldsMinimumFontSize, textFieldsMinimumFontSize)
  RQ_PROPERTY(UITextFieldViewMode, textFieldsClearButtonMode, setTextFieldsClearButtonMode, textFieldsClearButtonMode)

  // These depend on the style and type until they are set. The shared object knows whether they are set there.
  RQ_DEPENDENT_PROPERTY(bool, cancelOnTouch, setCancelOnTouch, isUserCancelOnTouch)
  RQ_DEPENDENT_PROPERTY(double, buttonsHeight, setButtonsHeight, isUserButtonsHeight)
  RQ_DEPENDENT_PROPERTY(QColor, titleTextColor, setTitleTextColor, isUserTitleTextColor)
  RQ_DEPENDENT_PROPERTY(QFont, titleFont, setTitleFont, isUserTitleFont)
  RQ_DEPENDENT_PROPERTY(QColor, messageTextColor, setMessageTextColor, isUserMessageTextColor)
  // clang-format on

  // The width that the dialog has in the application's window as it is now, whatever was set;
  // RQAlertViewNotSet before an initializer, unless it is set.
  double width() const;
  void setWidth(double width);

  // Free for the application's use; the largest value means none.
  std::int64_t tag() const { return tag_; }
  void setTag(std::int64_t tag) { tag_ = tag; }

  // Null before an initializer and after the dismissal; the event loop then destroys the view.
  std::shared_ptr<RQAlertViewWindow> window() const { return window_; }
  std::shared_ptr<RQAlertViewController> viewController() const { return viewController_; }
  QWidget* view() const;

 private:
  RQAlertView() = default;

  // Creation.
  Shared initAsAppearance();
  Shared setUp(RQAlertViewModel model, const RQAlertViewTextFieldsSetupHandler& textFieldsSetupHandler,
               RQAlertViewRecipients recipients);
  void setupDefaults();
  void buildViews();
  void requireInitialized() const;
  void appearanceChanged();

  // Showing and dismissing. An entrance brings the box in and calls what it is given when it is in place.
  using Entrance = std::function<void(double duration, std::function<void()> finished)>;
  void showBy(const Entrance& entrance, bool animated, RQAlertViewCompletionHandler completionHandler);
  void showComplete(const RQAlertViewCompletionHandler& completionHandler);
  // Gives the focus to the first field, else to the safe answer, unless another dialog covers this one.
  void takeFocus();
  void beginDismissal();
  void dismissComplete();
  // Lets go of window and controller, and of itself once the event loop runs again.
  void release();
  void addObservers();
  void removeObservers();
  // Lays the dialog out above the keyboard, with the duration and the curve that the notification gives.
  void keyboardFrameChanged(const NSNotification& notification);
  void windowVisibleChanged(const NSNotification& notification);
  void windowGone();

  // What the user does.
  void lastFieldEntered();
  // `sender`: the button that was pressed, which keeps its highlighted look while the dialog goes, or null.
  void answer(const RQAlertViewRow& row, RQAlertViewButton* sender);
  // The cancel or the destructive button where it is not a row of the list; else null.
  RQAlertViewButton* buttonOfKind(RQAlertViewButtonKind kind) const;

  // Reports to the handler, then the delegate, then by notification; inside an animation by notification
  // first. `values` follow the dialog itself.
  template <typename Handler, typename... Values>
  void report(const RQAlertViewReport<Handler>& report, const std::weak_ptr<RQAlertViewDelegate>& delegate,
              const QVariantMap& userInfo, const Values&... values);
  void reportAnimations(const RQAlertViewReport<RQAlertViewAnimationsBlock>& animations);

  std::shared_ptr<RQAlertViewModel> model_ = std::make_shared<RQAlertViewModel>();
  bool isAppearance_ = false;
  RQAlertViewState state_ = RQAlertViewState::Allocated;
  std::int64_t tag_ = INT64_MAX;
  std::weak_ptr<RQAlertViewDelegate> delegate_;
  RQAlertViewHandlers handlers_;

  std::shared_ptr<RQAlertViewWindow> window_;
  std::shared_ptr<RQAlertViewController> viewController_;
  QPointer<RQAlertViewRootView> rootView_;
  // The answers that are being reported: a handler that forces the same one again is ignored.
  std::set<std::pair<RQAlertViewButtonKind, std::size_t>> answering_;
  // Called at the end of the present dismissal.
  std::vector<RQAlertViewCompletionHandler> afterDismissal_;
  // While shown.
  Shared keptAlive_;
};

#undef RQ_HANDLER
#undef RQ_PROPERTY
#undef RQ_DEPENDENT_PROPERTY
