#include "RQAlertView/RQAlertView.h"

#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewRootView.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "core/Process.h"
#include "platform/EventLoop.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

using Kind = RQAlertViewButtonKind;
using Motion = RQAlertViewRootView::Motion;
using State = RQAlertViewState;

std::shared_ptr<RQAlertView> sharedAppearance;

double levelFor(RQAlertViewWindowLevel level) {
  return level == RQAlertViewWindowLevel::AboveStatusBar ? UIWindowLevelAlert : UIWindowLevelStatusBar - 1;
}

// How strongly the topmost dialog that is not in `window` dims the screen now: one that is shown or, where it
// is asked for, on its way out.
double dimmingBelow(const UIWindow* window, bool alsoGoing) {
  const auto& stack = RQAlertViewWindowsObserver::sharedInstance()->windowsArray();
  for (auto container = stack.rbegin(); container != stack.rend(); ++container) {
    const std::shared_ptr<UIWindow> other = container->window();
    if (!other || other.get() == window) continue;
    const auto* controller = qobject_cast<RQAlertViewController*>(other->rootViewController().get());
    const std::shared_ptr<RQAlertView> dialog = controller ? controller->alertView() : nullptr;
    if (!dialog || !(dialog->isShowing() || dialog->state() == State::Dismissing)) continue;
    const bool counts = dialog->view() && (alsoGoing || dialog->isShowing());
    return counts ? static_cast<RQAlertViewRootView*>(dialog->view())->dimming() : 0;
  }
  return 0;
}

}  // namespace

std::shared_ptr<RQAlertView> RQAlertView::alloc() {
  return std::shared_ptr<RQAlertView>(new RQAlertView);
}

const std::shared_ptr<RQAlertView>& RQAlertView::appearance() {
  if (!sharedAppearance) {
    sharedAppearance = alloc()->initAsAppearance();
    // Its fonts and pictures must not outlive the application.
    qAddPostRoutine([] { sharedAppearance.reset(); });
  }
  return sharedAppearance;
}

std::shared_ptr<RQAlertView> RQAlertView::initAsAppearance() {
  isAppearance_ = true;
  return shared_from_this();
}

void RQAlertView::resetAppearance() {
  appearance()->model_->appearance = {};
}

std::shared_ptr<RQAlertView> RQAlertView::setUp(
    RQAlertViewModel model, const RQAlertViewTextFieldsSetupHandler& textFieldsSetupHandler,
    RQAlertViewRecipients recipients) {
  if (isAppearance_ || isInitialized()) throw InternalInconsistency("RQAlertView is initialized already");
  *model_ = std::move(model);
  setProgress(model_->progress);
  handlers_.actionHandler = std::move(recipients.actionHandler);
  handlers_.cancelHandler = std::move(recipients.cancelHandler);
  handlers_.destructiveHandler = std::move(recipients.destructiveHandler);
  setDelegate(std::move(recipients.delegate));
  // The set-up handler gets a complete dialog, and may drop the last reference to it.
  std::shared_ptr<RQAlertView> alive = shared_from_this();
  setupDefaults();
  buildViews();
  state_ = State::Made;
  if (textFieldsSetupHandler) rootView_->box()->header().setUpTextFields(textFieldsSetupHandler);
  return alive;
}

void RQAlertView::setupDefaults() {
  RQAlertViewAppearance& look = model_->appearance = appearance()->model_->appearance;
  // The shared object's value for the list of buttons reaches every button, as setting it does.
  model_->buttonsEnabled.assign(static_cast<std::size_t>(buttonTitles().size()), look.buttons.enabled);
  const bool alert = style() == RQAlertViewStyle::Alert;
  const double sheetButtonsHeight = RQAlertViewHelper::systemVersion() < 9
                                        ? RQAlertViewMetrics::actionSheetButtonHeightBefore9
                                        : RQAlertViewMetrics::actionSheetButtonHeight;
  const auto decide = [](auto& property, const auto& value) {
    if (!property) property = value;
  };
  decide(look.cancelOnTouch, type() == RQAlertViewType::Default);
  decide(look.buttonsHeight, alert ? RQAlertViewMetrics::alertButtonHeight : sheetButtonsHeight);
  decide(look.titleTextColor, alert ? QColor(Qt::black) : grey(127.5));
  decide(look.titleFont, boldSystemFontOfSize(alert ? 18 : 14));
  decide(look.messageTextColor, alert ? QColor(Qt::black) : grey(127.5));
}

void RQAlertView::buildViews() {
  installRQAlertViewAccessibility();
  RQAlertViewWindowsObserver::sharedInstance()->startObserving();
  // The views may outlive the dialog, until the event loop destroys them.
  rootView_ = new RQAlertViewRootView(model_, [weak = weak_from_this()](const RQAlertViewRow& row) {
    const std::shared_ptr<RQAlertView> self = weak.lock();
    if (self && self->state_ == State::Shown) self->answer(row, self->buttonOfKind(row.kind));
  });
  connect(rootView_, &RQAlertViewRootView::coverTapped, this, atEventBoundary([this] {
            if (state_ == State::Shown && cancelOnTouch()) answer(model_->cancelRow(), nullptr);
          }));
  connect(&rootView_->box()->header(), &RQAlertViewHeader::lastFieldEntered, this,
          [this] { lastFieldEntered(); });

  viewController_ = std::make_shared<RQAlertViewController>(shared_from_this(), rootView_);
  window_ = makeUIWindow<RQAlertViewWindow>(levelFor(windowLevel()));
  window_->setRootViewController(viewController_);
  connect(window_.get(), &QObject::destroyed, this, [this] { windowGone(); });
  window_->makeKeyAndVisible();
}

void RQAlertView::requireInitialized() const {
  if (isInitialized()) return;
  throw InternalInconsistency(
      "You need to use one of \"- initWith...\" or \"+ alertViewWith...\" methods to initialize RQAlertView");
}

QWidget* RQAlertView::view() const {
  return window_ ? rootView_.data() : nullptr;
}

std::vector<RQAlertViewTextField*> RQAlertView::textFieldsArray() const {
  return rootView_ ? rootView_->box()->header().textFields() : std::vector<RQAlertViewTextField*>{};
}

void RQAlertView::setProgress(double progress, bool animated) {
  // The comparison is false for NaN.
  model_->progress = progress > 0 ? std::min(progress, 1.0) : 0;
  if (rootView_) rootView_->box()->header().showProgress(animated);
}

void RQAlertView::setProgressLabelText(const QString& text) {
  model_->progressLabelText = text;
  appearanceChanged();
}

void RQAlertView::setDelegate(std::weak_ptr<RQAlertViewDelegate> delegate) {
  delegate_ = std::move(delegate);
  const std::shared_ptr<RQAlertViewDelegate> now = delegate_.lock();
  if (!now) return;
  const auto warn = [](const char* method, const char* instead) {
    NSLog(std::string("WARNING: delegate method \"") + method + "\" is DEPRECATED, use \"" + instead +
          "\" instead");
  };
  if (now->alertViewButtonPressedWithTitle)
    warn("alertView:buttonPressedWithTitle:index:", "alertView:clickedButtonAtIndex:title:");
  if (now->alertViewDestructiveButtonPressed)
    warn("alertViewDestructiveButtonPressed:", "alertViewDestructed:");
}

void RQAlertView::setButtonEnabled(bool enabled, std::size_t index) {
  if (index >= model_->buttonsEnabled.size()) return;
  model_->buttonsEnabled[index] = enabled;
  if (rootView_) rootView_->box()->buttonsChanged();
}

void RQAlertView::setButtonPropertiesAtIndex(std::size_t index,
                                             const RQAlertViewButtonPropertiesHandler& handler) {
  if (index >= model_->buttonsEnabled.size())
    throw std::out_of_range("There is no button at index " + std::to_string(index));
  if (!handler) return;
  RQAlertViewButtonProperties& properties = model_->buttonProperties[index];
  properties.enabled = model_->buttonsEnabled[index];
  handler(properties);
  model_->buttonsEnabled[index] = properties.enabled.value_or(true);
  appearanceChanged();
}

void RQAlertView::setButtonsEnabled(bool enabled) {
  model_->appearance.buttons.enabled = enabled;
  std::fill(model_->buttonsEnabled.begin(), model_->buttonsEnabled.end(), enabled);
  if (rootView_) rootView_->box()->buttonsChanged();
}

void RQAlertView::appearanceChanged() {
  if (window_) window_->setWindowLevel(levelFor(windowLevel()));
  // Before the show it is all laid out once.
  if (rootView_ && isShowing()) rootView_->layoutSubviews();
}

double RQAlertView::width() const {
  const bool unknown = !isInitialized() && model_->appearance.width == RQAlertViewNotSet;
  return unknown ? RQAlertViewNotSet : model_->width();
}

void RQAlertView::setWidth(double width) {
  model_->appearance.width = width;
  appearanceChanged();
}

// Reports.

template <typename Handler, typename... Values>
void RQAlertView::report(const RQAlertViewReport<Handler>& report,
                         const std::weak_ptr<RQAlertViewDelegate>& delegate, const QVariantMap& userInfo,
                         const Values&... values) {
  constexpr bool inAnimation = std::is_same_v<Handler, RQAlertViewAnimationsBlock>;
  const auto post = [&] {
    NSNotificationCenter::defaultCenter().postNotificationName(QString::fromLatin1(report.notification), this,
                                                               userInfo);
  };
  if constexpr (inAnimation) post();
  // Copies: a handler may set another one in its place.
  if (const Handler called = handlers_.*report.handler) atEventBoundary(called)(*this, values...);
  if (const auto to = delegate.lock(); to && (*to).*report.method)
    atEventBoundary((*to).*report.method)(*this, values...);
  if constexpr (!inAnimation) post();
}

void RQAlertView::reportAnimations(const RQAlertViewReport<RQAlertViewAnimationsBlock>& animations) {
  const double duration = animationDuration();
  report(animations, delegate_, {{QStringLiteral("duration"), duration}}, duration);
}

// How it comes and goes.

void RQAlertView::showAnimated(bool animated, bool hidden, RQAlertViewCompletionHandler completionHandler) {
  requireInitialized();
  if (rootView_ && state_ == State::Made) rootView_->setVisible(!hidden);
  showBy(
      [this](double duration, auto finished) {
        rootView_->start(Motion::BringIn, dimmingBelow(window_.get(), true), duration, std::move(finished));
      },
      animated, std::move(completionHandler));
}

void RQAlertView::showBy(const Entrance& entrance, bool animated,
                         RQAlertViewCompletionHandler completionHandler) {
  if (state_ != State::Made || !window_) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  keptAlive_ = alive;
  state_ = State::Showing;
  rootView_->setKeyboardFrame(UIKeyboard::frame().toAlignedRect(), 0, QEasingCurve::Linear);
  rootView_->layoutSubviews();
  if (UIWindow* keyWindow = UIApplication::sharedApplication()->keyWindow()) keyWindow->endEditing();
  window_->makeKeyAndVisible();
  addObservers();
  report(reports::willShow, delegate_, {});
  if (animated && state_ == State::Showing) reportAnimations(reports::showAnimations);
  // A report may have dismissed the dialog.
  if (state_ != State::Showing) return call(completionHandler);
  entrance(animated ? animationDuration() : 0,
           [this, completionHandler = std::move(completionHandler)] { showComplete(completionHandler); });
}

void RQAlertView::transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView,
                                        RQAlertViewCompletionHandler completionHandler) {
  if (!alertView) return;
  alertView->requireInitialized();
  if (alertView.get() == this || alertView->state_ != State::Made) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  if (state_ == State::Showing && rootView_) rootView_->finishMotion();
  // A did-show report may have dismissed this dialog, or used the other one up.
  if (alertView->state_ != State::Made) return;
  if (!isShowing() || !rootView_) return alertView->showAnimated(true, std::move(completionHandler));
  // The other dialog covers this one already; the picture shows it as it was before.
  const bool enabled = !window_ || window_->isEnabled();
  if (window_) window_->setEnabled(true);
  const QPixmap picture = rootView_->picture();
  if (window_) window_->setEnabled(enabled);
  const QRect place = rootView_->box()->geometry();
  const double dimming = rootView_->dimming();
  // All its reports come, though the other one's window may hide its own.
  beginDismissal();
  dismissComplete();
  alertView->showBy(
      [&](double duration, auto finished) {
        alertView->rootView_->changeFrom(picture, place, dimming, duration, std::move(finished));
      },
      true, std::move(completionHandler));
}

void RQAlertView::showComplete(const RQAlertViewCompletionHandler& completionHandler) {
  if (state_ != State::Showing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  state_ = State::Shown;
  // If another dialog covers it by now, it takes the focus when it comes back.
  takeFocus();
  report(reports::didShow, delegate_, {});
  call(completionHandler);
}

void RQAlertView::takeFocus() {
  if (state_ != State::Shown || !window_ || !window_->isKeyWindow()) return;
  const auto fields = textFieldsArray();
  const auto usable = std::find_if(fields.begin(), fields.end(),
                                   [](const RQAlertViewTextField* field) { return field->isEnabled(); });
  if (usable != fields.end()) {
    (*usable)->becomeFirstResponder();
  } else {
    rootView_->box()->initialFocus()->setFocus(Qt::OtherFocusReason);
  }
}

void RQAlertView::dismissAnimated(bool animated, RQAlertViewCompletionHandler completionHandler) {
  const bool dismissing = state_ == State::Dismissing || (state_ == State::Dismissed && window_);
  if (!isShowing() && !dismissing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  // A show that still moves is completed with all its reports, one of which may dismiss the dialog.
  if (state_ == State::Showing && rootView_) rootView_->finishMotion();
  if (state_ == State::Dismissed && !window_) return call(completionHandler);
  afterDismissal_.push_back(std::move(completionHandler));
  if (!isShowing()) return;
  if (!window_ || window_->isHidden()) {
    state_ = State::Dismissing;
    return dismissComplete();
  }
  beginDismissal();
  if (animated) reportAnimations(reports::dismissAnimations);
  if (!rootView_) return dismissComplete();
  rootView_->start(Motion::TakeOut, dimmingBelow(window_.get(), false), animated ? animationDuration() : 0,
                   [this] { dismissComplete(); });
}

void RQAlertView::beginDismissal() {
  state_ = State::Dismissing;
  window_->endEditing();
  report(reports::willDismiss, delegate_, {});
}

void RQAlertView::dismissComplete() {
  if (state_ != State::Dismissing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  state_ = State::Dismissed;
  removeObservers();
  if (window_) window_->setHidden(true);
  report(reports::didDismiss, delegate_, {});
  if (window_) window_->disconnect(this);
  release();
  delegate_.reset();
  for (const auto& completionHandler : std::exchange(afterDismissal_, {})) call(completionHandler);
}

void RQAlertView::release() {
  viewController_.reset();
  window_.reset();
  autorelease(std::move(keptAlive_));
}

void RQAlertView::windowGone() {
  // Most likely the application is ending: there is nothing left to show.
  state_ = State::Dismissed;
  removeObservers();
  afterDismissal_.clear();
  release();
}

void RQAlertView::addObservers() {
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  for (const QString& name : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification,
                              UIKeyboardWillChangeFrameNotification}) {
    center.addObserver(this, name, nullptr,
                       [this](const NSNotification& notification) { keyboardFrameChanged(notification); });
  }
  center.addObserver(this, UIWindowDidBecomeVisibleNotification, nullptr,
                     [this](const NSNotification& notification) { windowVisibleChanged(notification); });
  center.addObserver(this, UIWindowDidBecomeKeyNotification, window_.get(), [this](const NSNotification&) {
    // What had the focus may have gone while another dialog covered this one.
    const QWidget* focused = rootView_->window()->focusWidget();
    if (!focused || !rootView_->box()->isAncestorOf(focused)) takeFocus();
  });
}

void RQAlertView::removeObservers() {
  NSNotificationCenter::defaultCenter().removeObserver(this);
}

void RQAlertView::keyboardFrameChanged(const NSNotification& notification) {
  if (!isShowing() || !window_ || window_->isHidden()) return;
  const QVariantMap& info = notification.userInfo;
  const bool hides = notification.name == UIKeyboardWillHideNotification;
  const QRectF frame = hides ? QRectF() : info.value(UIKeyboardFrameEndUserInfoKey).toRectF();
  const int curve = info.value(UIKeyboardAnimationCurveUserInfoKey, QEasingCurve::OutCubic).toInt();
  rootView_->setKeyboardFrame(frame.toAlignedRect(),
                              info.value(UIKeyboardAnimationDurationUserInfoKey).toDouble(),
                              static_cast<QEasingCurve::Type>(curve));
}

void RQAlertView::windowVisibleChanged(const NSNotification& notification) {
  const auto* other = qobject_cast<UIWindow*>(notification.object);
  if (other && other == window_.get()) {
    // It is no longer covered; the keyboard may have changed since.
    rootView_->setKeyboardFrame(UIKeyboard::frame().toAlignedRect(), 0, QEasingCurve::Linear);
    return;
  }
  if (!other || !window_ || window_->isHidden() || qobject_cast<const RQAlertViewWindow*>(other) ||
      other->windowLevel() > window_->windowLevel()) {
    return;
  }
  // A window that comes up below a dialog does not take the input from it.
  dispatch_after(0, dispatch_get_main_queue(), [weak = weak_from_this()] {
    const std::shared_ptr<RQAlertView> self = weak.lock();
    if (self && self->isShowing() && self->window_ && !self->window_->isHidden())
      self->window_->makeKeyAndVisible();
  });
}

// What the user does with it.

void RQAlertView::forceCancel() {
  if (cancelButtonTitle().isNull()) throw InternalInconsistency("Cancel button is not exists");
  answer(model_->cancelRow(), buttonOfKind(Kind::Cancel));
}

void RQAlertView::forceDestructive() {
  if (destructiveButtonTitle().isNull()) throw InternalInconsistency("Destructive button is not exists");
  answer({Kind::Destructive, 0, destructiveButtonTitle()}, buttonOfKind(Kind::Destructive));
}

void RQAlertView::forceActionAtIndex(std::size_t index) {
  if (index >= static_cast<std::size_t>(buttonTitles().size()))
    throw InternalInconsistency("Button at index " + std::to_string(index) + " is not exists");
  answer({Kind::Action, index, buttonTitles().at(static_cast<qsizetype>(index))}, nullptr);
}

void RQAlertView::lastFieldEntered() {
  if (state_ == State::Shown && buttonTitles().size() == 1 && model_->buttonsEnabled.front())
    forceActionAtIndex(0);
}

RQAlertViewButton* RQAlertView::buttonOfKind(RQAlertViewButtonKind kind) const {
  return rootView_ ? rootView_->box()->buttonOfKind(kind) : nullptr;
}

void RQAlertView::answer(const RQAlertViewRow& row, RQAlertViewButton* sender) {
  // Ignores answers during the dismissal, and re-entrant ones.
  const bool leaving = state_ == State::Dismissing || state_ == State::Dismissed;
  if (leaving || !answering_.insert({row.kind, row.index}).second) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  const auto reportAs = [alive, answered = row](const auto& delegate, const auto& action, const auto& cancel,
                                                const auto& destructive) {
    const QVariantMap userInfo{{QStringLiteral("title"), answered.title},
                               {QStringLiteral("index"), static_cast<qulonglong>(answered.index)}};
    if (answered.kind == Kind::Cancel) return alive->report(cancel, delegate, {});
    if (answered.kind == Kind::Destructive) return alive->report(destructive, delegate, {});
    alive->report(action, delegate, userInfo, answered.index, answered.title);
  };
  const std::pair answering(row.kind, row.index);
  const QPointer<RQAlertViewButton> marked(sender);
  if (marked) marked->setSelected(true);
  reportAs(delegate_, reports::action, reports::cancel, reports::destructive);
  answering_.erase(answering);
  if (!dismissOnAction()) {
    if (marked) marked->setSelected(false);
    return;
  }
  // The dismissal clears the delegate, which still gets the reports that follow.
  dismissAnimated(shouldDismissAnimated(), [reportAs, delegate = delegate_] {
    reportAs(delegate, reports::didDismissAfterAction, reports::didDismissAfterCancel,
             reports::didDismissAfterDestructive);
  });
}
