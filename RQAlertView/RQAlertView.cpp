#include "RQAlertView/RQAlertView.h"

#include "RQAlertView/RQAlertViewAccessible.h"
#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewContentArea.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewMetrics.h"
#include "RQAlertView/RQAlertViewReports.h"
#include "RQAlertView/RQAlertViewRootView.h"
#include "RQAlertView/RQAlertViewWindow.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "core/Process.h"
#include "platform/EventLoop.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"
#include "platform/UIScreen.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include <QCoreApplication>
#include <QGuiApplication>

namespace {

std::shared_ptr<RQAlertView>& sharedAppearance() {
  static std::shared_ptr<RQAlertView> appearance;
  return appearance;
}

double levelFor(RQAlertViewWindowLevel level) {
  return level == RQAlertViewWindowLevel::AboveStatusBar ? UIWindowLevelAlert : UIWindowLevelStatusBar - 1;
}

// The topmost dialog of the stack that is shown, or on its way out, and not in `window`; or null.
std::shared_ptr<RQAlertView> dialogBelow(const UIWindow* window) {
  const auto& stack = RQAlertViewWindowsObserver::sharedInstance()->windowsArray();
  for (auto container = stack.rbegin(); container != stack.rend(); ++container) {
    const std::shared_ptr<UIWindow> other = container->window();
    if (!other || other.get() == window) continue;
    const auto* controller = qobject_cast<RQAlertViewController*>(other->rootViewController().get());
    const std::shared_ptr<RQAlertView> dialog = controller ? controller->alertView() : nullptr;
    if (dialog && (dialog->isShowing() || dialog->state() == RQAlertViewState::Dismissing)) return dialog;
  }
  return nullptr;
}

void call(const RQAlertViewCompletionHandler& completionHandler) {
  if (completionHandler) atEventBoundary(completionHandler)();
}

}  // namespace

RQAlertView::RQAlertView() = default;

RQAlertView::~RQAlertView() {
  // Never shown: its views, which refer to it, go with it.
  if (window_) window_->setHidden(true);
  delete window_.get();
}

std::shared_ptr<RQAlertView> RQAlertView::alloc() {
  return std::shared_ptr<RQAlertView>(new RQAlertView);
}

const std::shared_ptr<RQAlertView>& RQAlertView::appearance() {
  std::shared_ptr<RQAlertView>& shared = sharedAppearance();
  if (!shared) {
    shared = alloc()->initAsAppearance();
    // Its fonts and pictures must not outlive the application.
    qAddPostRoutine([] { sharedAppearance().reset(); });
  }
  return shared;
}

std::shared_ptr<RQAlertView> RQAlertView::initAsAppearance() {
  isAppearance_ = true;
  return shared_from_this();
}

void RQAlertView::resetAppearance() {
  appearance()->appearance_ = {};
}

std::shared_ptr<RQAlertView> RQAlertView::setUp(RQAlertViewSetup setup, RQAlertViewRecipients reports) {
  if (isAppearance_ || isInitialized()) {
    throw InternalInconsistency("RQAlertView is initialized already");
  }
  setup_ = std::move(setup);
  setProgress(setup_.progress);
  handlers_.actionHandler = std::move(reports.action);
  handlers_.cancelHandler = std::move(reports.cancel);
  handlers_.destructiveHandler = std::move(reports.destructive);
  setDelegate(std::move(reports.to));
  // The set-up handler gets a dialog that is whole, and may drop the last reference to it.
  std::shared_ptr<RQAlertView> alive = shared_from_this();
  setupDefaults();
  const auto setupHandler = std::exchange(setup_.textFieldsSetupHandler, nullptr);
  if (setupHandler && content_) content_->setUpTextFields(setupHandler);
  return alive;
}

void RQAlertView::setupDefaults() {
  buttonsEnabled_.assign(static_cast<std::size_t>(setup_.buttonTitles.size()), true);
  appearance_ = appearance()->appearance_;
  // Copying this property, like setting it, reaches every button of the list; else it would say nothing.
  setButtonsEnabled(appearance_.buttonsEnabled);
  buildViews();
  setInitialized();
}

void RQAlertView::buildViews() {
  installRQAlertViewAccessibility();
  RQAlertViewWindowsObserver::sharedInstance()->startObserving();
  rootView_ = new RQAlertViewRootView(*this);
  content_ = new RQAlertViewContentArea(setup_, appearance_, rootView_);
  auto* box = new RQAlertViewBox(*this, content_, rootView_);
  rootView_->setBox(box);
  connect(box, &RQAlertViewBox::tapped, this, [this](RQAlertViewButtonKind kind, std::size_t index) {
    if (state_ == RQAlertViewState::Shown) answer(kind, index, buttonOfKind(kind));
  });
  connect(rootView_, &RQAlertViewRootView::coverTapped, this, atEventBoundary([this] {
            if (state_ == RQAlertViewState::Shown && cancelOnTouch())
              answer(RQAlertViewButtonKind::Cancel, 0, nullptr);
          }));
  connect(content_, &RQAlertViewContentArea::lastFieldEntered, this, [this] { lastFieldEntered(); });
  connect(content_, &RQAlertViewContentArea::heightChanged, this, [this] { appearanceChanged(); });

  viewController_ = std::make_shared<RQAlertViewController>(shared_from_this(), rootView_);
  window_ = makeUIWindow<RQAlertViewWindow>(levelFor(appearance_.windowLevel));
  window_->setRootViewController(viewController_);
  connect(window_.get(), &QObject::destroyed, this, [this] { windowGone(); });
  window_->makeKeyAndVisible();
}

void RQAlertView::setInitialized() {
  state_ = RQAlertViewState::Made;
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
  return content_ ? content_->textFields() : std::vector<RQAlertViewTextField*>{};
}

void RQAlertView::setProgress(double progress, bool animated) {
  setup_.progress = progress > 0 ? std::min(progress, 1.0) : 0;
  if (content_) content_->setProgress(setup_.progress, animated);
}

void RQAlertView::setProgressLabelText(const QString& text) {
  setup_.progressLabelText = text;
  if (content_) content_->setProgressLabelText(text);
}

void RQAlertView::setDelegate(std::weak_ptr<RQAlertViewDelegate> delegate) {
  delegate_ = std::move(delegate);
  const std::shared_ptr<RQAlertViewDelegate> now = delegate_.lock();
  if (!now) return;
  const auto warn = [](const char* method, const char* instead) {
    NSLog(std::string("WARNING: delegate method \"") + method + "\" is DEPRECATED, use \"" + instead +
          "\" instead");
  };
  if (now->alertViewButtonPressedWithTitle) {
    warn("alertView:buttonPressedWithTitle:index:", "alertView:clickedButtonAtIndex:title:");
  }
  if (now->alertViewDestructiveButtonPressed) {
    warn("alertViewDestructiveButtonPressed:", "alertViewDestructed:");
  }
}

void RQAlertView::setButtonEnabled(bool enabled, std::size_t index) {
  if (index >= buttonsEnabled_.size()) return;
  buttonsEnabled_[index] = enabled;
  if (rootView_) rootView_->box()->buttonChanged(RQAlertViewButtonKind::Action, index);
}

bool RQAlertView::isButtonEnabledAtIndex(std::size_t index) const {
  return buttonsEnabled_.at(index);
}

void RQAlertView::setButtonPropertiesAtIndex(std::size_t index,
                                             const RQAlertViewButtonPropertiesHandler& handler) {
  if (index >= buttonsEnabled_.size()) {
    throw std::out_of_range("There is no button at index " + std::to_string(index));
  }
  if (!handler) return;
  RQAlertViewButtonProperties& properties = buttonProperties_[index];
  properties.enabled = buttonsEnabled_[index];
  handler(properties);
  buttonsEnabled_[index] = properties.enabled.value_or(true);
  appearanceChanged();
}

void RQAlertView::setButtonsEnabled(bool enabled) {
  appearance_.buttonsEnabled = enabled;
  std::fill(buttonsEnabled_.begin(), buttonsEnabled_.end(), enabled);
  if (rootView_) rootView_->box()->allButtonsChanged();
}

void RQAlertView::appearanceChanged() {
  if (window_) window_->setWindowLevel(levelFor(appearance_.windowLevel));
  // Before the show it is all laid out once.
  if (rootView_ && (state_ == RQAlertViewState::Showing || state_ == RQAlertViewState::Shown)) {
    rootView_->layoutSubviews();
  }
}

// The properties whose value depends on the dialog.

bool RQAlertView::cancelOnTouch() const {
  return appearance_.cancelOnTouch.value_or(type() == RQAlertViewType::Default);
}

double RQAlertView::buttonsHeight() const {
  if (appearance_.buttonsHeight) return *appearance_.buttonsHeight;
  if (style() == RQAlertViewStyle::Alert) return RQAlertViewMetrics::alertButtonHeight;
  return RQAlertViewHelper::systemVersion() < 9.0 ? RQAlertViewMetrics::actionSheetButtonHeightBefore9
                                                  : RQAlertViewMetrics::actionSheetButtonHeight;
}

QColor RQAlertView::titleTextColor() const {
  if (appearance_.titleTextColor) return *appearance_.titleTextColor;
  if (isAppearance_) return {};
  return style() == RQAlertViewStyle::Alert ? QColor(Qt::black) : RQAlertViewHelper::white(0.5);
}

QFont RQAlertView::titleFont() const {
  if (appearance_.titleFont || isAppearance_) return appearance_.titleFont.value_or(QFont());
  return boldSystemFontOfSize(style() == RQAlertViewStyle::Alert ? 18 : 14);
}

QColor RQAlertView::messageTextColor() const {
  if (appearance_.messageTextColor) return *appearance_.messageTextColor;
  if (isAppearance_) return {};
  return style() == RQAlertViewStyle::Alert ? QColor(Qt::black) : RQAlertViewHelper::white(0.5);
}

void RQAlertView::setCancelOnTouch(bool cancels) {
  appearance_.cancelOnTouch = cancels;
}

void RQAlertView::setButtonsHeight(double height) {
  appearance_.buttonsHeight = height;
  appearanceChanged();
}

void RQAlertView::setTitleTextColor(const QColor& color) {
  appearance_.titleTextColor = color;
  appearanceChanged();
}

void RQAlertView::setTitleFont(const QFont& font) {
  appearance_.titleFont = font;
  appearanceChanged();
}

void RQAlertView::setMessageTextColor(const QColor& color) {
  appearance_.messageTextColor = color;
  appearanceChanged();
}

double RQAlertView::width() const {
  const UIWindow* window = RQAlertViewHelper::appWindow();
  const QSize bounds = window ? window->size() : UIScreen::mainScreen()->size();
  const double most = std::min(bounds.width(), bounds.height());
  if (appearance_.width != RQAlertViewNotSet) return std::min(appearance_.width, most);
  if (!isInitialized()) return RQAlertViewNotSet;
  if (RQAlertViewHelper::comesFromBottom(*this)) {
    return RQAlertViewHelper::isPad() ? RQAlertViewMetrics::padActionSheetWidth
                                      : most - RQAlertViewMetrics::actionSheetSideMargins;
  }
  return RQAlertViewMetrics::alertWidth;
}

void RQAlertView::setWidth(double width) {
  appearance_.width = width;
  appearanceChanged();
}

// The looks of its buttons, taken from its appearance.

// The appearance has the same fourteen properties for each kind of button, told apart by how they begin.
#define RQ_LOOK(beginning)                                                                      \
  RQAlertViewButtonLook {                                                                       \
    .titleColor = appearance_.beginning##TitleColor,                                            \
    .titleColorHighlighted = appearance_.beginning##TitleColorHighlighted,                      \
    .titleColorDisabled = appearance_.beginning##TitleColorDisabled,                            \
    .backgroundColor = appearance_.beginning##BackgroundColor,                                  \
    .backgroundColorHighlighted = appearance_.beginning##BackgroundColorHighlighted,            \
    .backgroundColorDisabled = appearance_.beginning##BackgroundColorDisabled,                  \
    .textAlignment = appearance_.beginning##TextAlignment, .font = appearance_.beginning##Font, \
    .numberOfLines = appearance_.beginning##NumberOfLines,                                      \
    .lineBreakMode = appearance_.beginning##LineBreakMode,                                      \
    .minimumScaleFactor = appearance_.beginning##MinimumScaleFactor,                            \
    .adjustsFontSizeToFitWidth = appearance_.beginning##AdjustsFontSizeToFitWidth,              \
    .iconPosition = appearance_.beginning##IconPosition                                         \
  }

RQAlertViewButtonLook RQAlertView::buttonsLook(RQAlertViewButtonKind kind) const {
  switch (kind) {
    case RQAlertViewButtonKind::Cancel: {
      RQAlertViewButtonLook look = RQ_LOOK(cancelButton);
      look.iconImage = appearance_.cancelButtonIconImage;
      return look;
    }
    case RQAlertViewButtonKind::Destructive: {
      RQAlertViewButtonLook look = RQ_LOOK(destructiveButton);
      look.iconImage = appearance_.destructiveButtonIconImage;
      return look;
    }
    case RQAlertViewButtonKind::Action:
      break;
  }
  return RQ_LOOK(buttons);
}

RQAlertViewButtonLook RQAlertView::buttonLook(const RQAlertViewRow& row) const {
  RQAlertViewButtonLook look = buttonsLook(row.kind);
  if (row.kind == RQAlertViewButtonKind::Action) {
    const auto own = buttonProperties_.find(row.index);
    if (own != buttonProperties_.end()) own->second.applyTo(look);
  }
  return look;
}

bool RQAlertView::isButtonEnabled(const RQAlertViewRow& row) const {
  switch (row.kind) {
    case RQAlertViewButtonKind::Cancel:
      return cancelButtonEnabled();
    case RQAlertViewButtonKind::Destructive:
      return destructiveButtonEnabled();
    case RQAlertViewButtonKind::Action:
      break;
  }
  return row.index < buttonsEnabled_.size() && buttonsEnabled_[row.index];
}

bool RQAlertView::hasUniformRows() const {
  const auto oneLine = [this](RQAlertViewButtonKind kind) { return buttonsLook(kind).numberOfLines == 1; };
  return oneLine(RQAlertViewButtonKind::Action) && oneLine(RQAlertViewButtonKind::Cancel) &&
         oneLine(RQAlertViewButtonKind::Destructive) &&
         std::none_of(buttonProperties_.begin(), buttonProperties_.end(), [](const auto& entry) {
           const RQAlertViewButtonProperties& own = entry.second;
           return own.numberOfLines || own.font || own.iconImage;
         });
}

// Reports.

template <typename Handler, typename... Values>
void RQAlertView::report(const RQAlertViewReport<Handler>& report,
                         const std::weak_ptr<RQAlertViewDelegate>& delegate, const QVariantMap& userInfo,
                         const Values&... values) {
  constexpr bool inAnimation = std::is_same_v<Handler, RQAlertViewAnimationsBlock>;
  const auto post = [&] {
    NSNotificationCenter::defaultCenter().postNotificationName(report.notification, this, userInfo);
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

bool RQAlertView::isShowing() const {
  return state_ == RQAlertViewState::Showing || state_ == RQAlertViewState::Shown;
}

void RQAlertView::show() {
  showAnimated(false, false, {});
}

void RQAlertView::showAnimated() {
  showAnimated(true, false, {});
}

void RQAlertView::showAnimated(bool animated, RQAlertViewCompletionHandler completionHandler) {
  showAnimated(animated, false, std::move(completionHandler));
}

void RQAlertView::showAnimated(bool animated, bool hidden, RQAlertViewCompletionHandler completionHandler) {
  requireInitialized();
  if (rootView_ && state_ == RQAlertViewState::Made) rootView_->setVisible(!hidden);
  showBy([this](double duration,
                auto finished) { rootView_->bringIn(dimmingBelow(), duration, std::move(finished)); },
         animated, std::move(completionHandler));
}

void RQAlertView::showBy(const Entrance& entrance, bool animated,
                         RQAlertViewCompletionHandler completionHandler) {
  if (state_ != RQAlertViewState::Made || !window_) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  keptAlive_ = alive;
  state_ = RQAlertViewState::Showing;
  rootView_->setKeyboardFrame(UIKeyboard::frame().toAlignedRect(), 0, QEasingCurve::Linear);
  rootView_->layoutSubviews();
  if (UIWindow* keyWindow = UIApplication::sharedApplication()->keyWindow()) keyWindow->endEditing();
  window_->makeKeyAndVisible();
  addObservers();
  report(reports::willShow, delegate_, {});
  if (animated && state_ == RQAlertViewState::Showing) {
    reportAnimations(reports::showAnimations);
  }
  if (state_ != RQAlertViewState::Showing) {
    // A report has dismissed the dialog.
    call(completionHandler);
    return;
  }
  entrance(animated ? animationDuration() : 0,
           [this, completionHandler = std::move(completionHandler)] { showComplete(completionHandler); });
}

double RQAlertView::dimmingBelow() const {
  const std::shared_ptr<RQAlertView> below = dialogBelow(window_.get());
  return below && below->rootView_ ? below->rootView_->dimming() : 0;
}

double RQAlertView::dimmingAfterwards() const {
  const std::shared_ptr<RQAlertView> below = dialogBelow(window_.get());
  return below && below->isShowing() && below->rootView_ ? below->rootView_->dimming() : 0;
}

void RQAlertView::transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView) {
  transitionToAlertView(alertView, {});
}

void RQAlertView::transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView,
                                        RQAlertViewCompletionHandler completionHandler) {
  if (!alertView) return;
  alertView->requireInitialized();
  if (alertView.get() == this || alertView->state_ != RQAlertViewState::Made) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  if (state_ == RQAlertViewState::Showing && rootView_) rootView_->finishMotion();
  // A did-show report may have dismissed this dialog, or used the other one up.
  if (alertView->state_ != RQAlertViewState::Made) return;
  if (!isShowing() || !rootView_) {
    alertView->showAnimated(true, std::move(completionHandler));
    return;
  }
  // The other dialog covers this one already; the picture is to show it as it was before.
  const bool enabled = !window_ || window_->isEnabled();
  if (window_) window_->setEnabled(true);
  const QPixmap picture = rootView_->picture();
  if (window_) window_->setEnabled(enabled);
  const QRect place = rootView_->box()->geometry();
  const double dimming = rootView_->dimming();
  // It goes as a dialog in sight does, though the other one's window may hide its own.
  beginDismissal();
  dismissComplete();
  alertView->showBy(
      [&](double duration, auto finished) {
        alertView->rootView_->changeFrom(picture, place, dimming, duration, std::move(finished));
      },
      true, std::move(completionHandler));
}

void RQAlertView::showComplete(const RQAlertViewCompletionHandler& completionHandler) {
  if (state_ != RQAlertViewState::Showing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  state_ = RQAlertViewState::Shown;
  // Covered meanwhile by another dialog, it takes the focus when it comes back.
  takeFocus();
  report(reports::didShow, delegate_, {});
  call(completionHandler);
}

void RQAlertView::takeFocus() {
  if (state_ != RQAlertViewState::Shown || !window_ || !window_->isKeyWindow()) return;
  const auto fields = textFieldsArray();
  if (type() == RQAlertViewType::TextFields && !fields.empty()) {
    fields.front()->becomeFirstResponder();
  } else {
    rootView_->box()->initialFocus()->setFocus(Qt::OtherFocusReason);
  }
}

void RQAlertView::dismiss() {
  dismissAnimated(false);
}

void RQAlertView::dismissAnimated() {
  dismissAnimated(true);
}

void RQAlertView::dismissAnimated(bool animated, RQAlertViewCompletionHandler completionHandler) {
  const bool showing = isShowing();
  const bool dismissing =
      state_ == RQAlertViewState::Dismissing || (state_ == RQAlertViewState::Dismissed && window_);
  if (!showing && !dismissing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  // A show that still moves ends as any other does, with all its reports, one of which may dismiss the
  // dialog.
  if (state_ == RQAlertViewState::Showing && rootView_) rootView_->finishMotion();
  if (state_ == RQAlertViewState::Dismissed && !window_) return call(completionHandler);
  afterDismissal_.push_back(std::move(completionHandler));
  if (!isShowing()) return;
  if (!window_ || window_->isHidden()) {
    state_ = RQAlertViewState::Dismissing;
    dismissComplete();
    return;
  }
  beginDismissal();
  if (animated) reportAnimations(reports::dismissAnimations);
  if (!rootView_) {
    dismissComplete();
    return;
  }
  rootView_->takeOut(dimmingAfterwards(), animated ? animationDuration() : 0, [this] { dismissComplete(); });
}

void RQAlertView::beginDismissal() {
  state_ = RQAlertViewState::Dismissing;
  window_->endEditing();
  report(reports::willDismiss, delegate_, {});
}

void RQAlertView::dismissComplete() {
  if (state_ != RQAlertViewState::Dismissing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  state_ = RQAlertViewState::Dismissed;
  removeObservers();
  if (window_) window_->setHidden(true);
  report(reports::didDismiss, delegate_, {});
  releaseViews();
  delegate_.reset();
  for (const auto& completionHandler : std::exchange(afterDismissal_, {})) call(completionHandler);
}

void RQAlertView::releaseViews() {
  if (window_) window_->disconnect(this);
  if (rootView_) rootView_->keep(std::move(keptAlive_));
  viewController_.reset();
  window_.reset();
}

void RQAlertView::windowGone() {
  // Somebody has destroyed the window, most likely the application's end: there is nothing left to show.
  state_ = RQAlertViewState::Dismissed;
  removeObservers();
  viewController_.reset();
  window_.reset();
  afterDismissal_.clear();
  autorelease(std::move(keptAlive_));
}

void RQAlertView::addObservers() {
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  for (const QString& name : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification,
                              UIKeyboardWillChangeFrameNotification}) {
    const auto changed = name == UIKeyboardWillChangeFrameNotification ? &RQAlertView::keyboardFrameChanged
                                                                       : &RQAlertView::keyboardVisibleChanged;
    center.addObserver(this, name, nullptr, [this, changed](const NSNotification& notification) {
      (this->*changed)(notification);
    });
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

void RQAlertView::keyboardVisibleChanged(const NSNotification& notification) {
  const bool hides = notification.name == UIKeyboardWillHideNotification;
  moveFor(hides ? QRectF() : notification.userInfo.value(UIKeyboardFrameEndUserInfoKey).toRectF(),
          notification);
}

void RQAlertView::keyboardFrameChanged(const NSNotification& notification) {
  moveFor(notification.userInfo.value(UIKeyboardFrameEndUserInfoKey).toRectF(), notification);
}

void RQAlertView::moveFor(const QRectF& keyboard, const NSNotification& notification) {
  if (!isShowing() || !window_ || window_->isHidden()) return;
  rootView_->setKeyboardFrame(
      keyboard.toAlignedRect(),
      notification.userInfo.value(UIKeyboardAnimationDurationUserInfoKey).toDouble(),
      static_cast<QEasingCurve::Type>(
          notification.userInfo.value(UIKeyboardAnimationCurveUserInfoKey, QEasingCurve::OutCubic).toInt()));
}

void RQAlertView::windowVisibleChanged(const NSNotification& notification) {
  const auto* other = qobject_cast<UIWindow*>(notification.object);
  if (other && other == window_.get()) {
    // Uncovered again: the keyboard may have come or gone meanwhile.
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
    if (self && self->isShowing() && self->window_ && !self->window_->isHidden()) {
      self->window_->makeKeyAndVisible();
    }
  });
}

// What the user does with it.

void RQAlertView::forceCancel() {
  if (cancelButtonTitle().isNull()) throw InternalInconsistency("Cancel button is not exists");
  answer(RQAlertViewButtonKind::Cancel, 0, buttonOfKind(RQAlertViewButtonKind::Cancel));
}

void RQAlertView::forceDestructive() {
  if (destructiveButtonTitle().isNull()) throw InternalInconsistency("Destructive button is not exists");
  answer(RQAlertViewButtonKind::Destructive, 0, buttonOfKind(RQAlertViewButtonKind::Destructive));
}

void RQAlertView::forceActionAtIndex(std::size_t index) {
  if (index >= static_cast<std::size_t>(buttonTitles().size())) {
    throw InternalInconsistency("Button at index " + std::to_string(index) + " is not exists");
  }
  answer(RQAlertViewButtonKind::Action, index, nullptr);
}

void RQAlertView::lastFieldEntered() {
  if (state_ == RQAlertViewState::Shown && buttonTitles().size() == 1 && buttonsEnabled_.front())
    forceActionAtIndex(0);
}

RQAlertViewButton* RQAlertView::buttonOfKind(RQAlertViewButtonKind kind) const {
  if (!rootView_ || kind == RQAlertViewButtonKind::Action) return nullptr;
  return rootView_->box()->buttonOfKind(kind);
}

void RQAlertView::answer(RQAlertViewButtonKind kind, std::size_t index, RQAlertViewButton* sender) {
  // On its way out the dialog takes no more answers, and an answer that is being reported is not given again.
  const bool leaving = state_ == RQAlertViewState::Dismissing || state_ == RQAlertViewState::Dismissed;
  if (leaving || !answering_.insert({kind, index}).second) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  const QPointer<RQAlertViewButton> marked(sender);
  if (marked) marked->setSelected(true);
  reportAnswer(kind, index, Moment::Now, delegate_);
  answering_.erase({kind, index});
  if (!dismissOnAction()) {
    if (marked) marked->setSelected(false);
    return;
  }
  // The dismissal clears the delegate, which is still to hear what comes after it.
  dismissAnimated(shouldDismissAnimated(), [alive, kind, index, delegate = delegate_] {
    alive->reportAnswer(kind, index, Moment::AfterDismissal, delegate);
  });
}

void RQAlertView::reportAnswer(RQAlertViewButtonKind kind, std::size_t index, Moment moment,
                               const std::weak_ptr<RQAlertViewDelegate>& delegate) {
  const bool now = moment == Moment::Now;
  switch (kind) {
    case RQAlertViewButtonKind::Action: {
      const QString title = buttonTitles().at(static_cast<qsizetype>(index));
      return report(
          now ? reports::action : reports::didDismissAfterAction, delegate,
          {{QStringLiteral("title"), title}, {QStringLiteral("index"), static_cast<qulonglong>(index)}},
          index, title);
    }
    case RQAlertViewButtonKind::Cancel:
      return report(now ? reports::cancel : reports::didDismissAfterCancel, delegate, {});
    case RQAlertViewButtonKind::Destructive:
      return report(now ? reports::destructive : reports::didDismissAfterDestructive, delegate, {});
  }
}
