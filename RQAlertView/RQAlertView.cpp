#include "RQAlertView/RQAlertView.h"

#include "RQAlertView/RQAlertViewAccessible.h"
#include "RQAlertView/RQAlertViewContent.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewFrame.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewMetrics.h"
#include "RQAlertView/RQAlertViewStage.h"
#include "RQAlertView/RQAlertViewWindow.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "core/NSLog.h"
#include "platform/EventBoundary.h"
#include "platform/UIScreen.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include <QCoreApplication>

namespace {

std::shared_ptr<RQAlertView>& sharedAppearance() {
  static std::shared_ptr<RQAlertView> appearance;
  return appearance;
}

double levelFor(RQAlertViewWindowLevel level) {
  return level == RQAlertViewWindowLevel::AboveStatusBar ? UIWindowLevelAlert : UIWindowLevelStatusBar - 1;
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

std::shared_ptr<RQAlertView> RQAlertView::setUp(RQAlertViewContents contents, RQAlertViewReports reports) {
  if (isAppearance_ || isInitialized()) {
    throw InternalInconsistency("RQAlertView is initialized already");
  }
  contents_ = std::move(contents);
  contents_.progress = contents_.progress > 0 ? std::min(contents_.progress, 1.0) : 0;
  handlers_.actionHandler = std::move(reports.action);
  handlers_.cancelHandler = std::move(reports.cancel);
  handlers_.destructiveHandler = std::move(reports.destructive);
  setDelegate(std::move(reports.to));
  // The set-up handler gets a dialog that is whole, and may drop the last reference to it.
  std::shared_ptr<RQAlertView> alive = shared_from_this();
  setupDefaults();
  const auto setupHandler = std::exchange(contents_.textFieldsSetupHandler, nullptr);
  if (setupHandler && content_) content_->setUpTextFields(setupHandler);
  return alive;
}

void RQAlertView::setupDefaults() {
  buttonsEnabled_.assign(static_cast<std::size_t>(contents_.buttonTitles.size()), true);
  appearance_ = appearance()->appearance_;
  // Copying this property, like setting it, reaches every button of the list; else it would say nothing.
  setButtonsEnabled(appearance_.buttonsEnabled);
  buildViews();
  setInitialized();
}

void RQAlertView::buildViews() {
  installRQAlertViewAccessibility();
  RQAlertViewWindowsObserver::sharedInstance()->startObserving();
  stage_ = new RQAlertViewStage(*this);
  content_ = new RQAlertViewContent(contents_, appearance_, stage_);
  auto* frame = new RQAlertViewFrame(*this, content_, stage_);
  stage_->setFrame(frame);
  connect(frame, &RQAlertViewFrame::tapped, this,
          [this](RQAlertViewButtonKind kind, std::size_t index) { tapped(kind, index); });
  connect(stage_, &RQAlertViewStage::coverTapped, this, atEventBoundary([this] { coverTapped(); }));
  connect(content_, &RQAlertViewContent::lastFieldEntered, this, [this] { lastFieldEntered(); });
  connect(content_, &RQAlertViewContent::heightChanged, this, [this] { appearanceChanged(); });

  viewController_ = std::make_shared<RQAlertViewController>(shared_from_this(), stage_);
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
  return window_ ? stage_.data() : nullptr;
}

std::vector<RQAlertViewTextField*> RQAlertView::textFieldsArray() const {
  return content_ ? content_->textFields() : std::vector<RQAlertViewTextField*>{};
}

void RQAlertView::setProgress(double progress, bool animated) {
  contents_.progress = progress > 0 ? std::min(progress, 1.0) : 0;
  if (content_) content_->setProgress(contents_.progress, animated);
}

void RQAlertView::setProgressLabelText(const QString& text) {
  contents_.progressLabelText = text;
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
  if (stage_) stage_->frame()->buttonChanged(RQAlertViewButtonKind::Action, index);
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
  if (stage_) stage_->frame()->allButtonsChanged();
}

void RQAlertView::appearanceChanged() {
  if (window_) window_->setWindowLevel(levelFor(appearance_.windowLevel));
  // Before the show it is all laid out once.
  if (stage_ && (state_ == RQAlertViewState::Showing || state_ == RQAlertViewState::Shown)) {
    stage_->layoutSubviews();
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
  if (style() == RQAlertViewStyle::ActionSheet && !RQAlertViewHelper::isPadAndNotForce(*this)) {
    return RQAlertViewHelper::isPad() ? RQAlertViewMetrics::padActionSheetWidth
                                      : most - RQAlertViewMetrics::actionSheetSideMargins;
  }
  return RQAlertViewMetrics::alertWidth;
}

void RQAlertView::setWidth(double width) {
  appearance_.width = width;
  appearanceChanged();
}
