#include "platform/UIWindow.h"

#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPalette>
#include <QPixmapCache>
#include <QResizeEvent>

namespace {

// The style caches a picture of each control for each palette and never drops one: empties the cache from
// time to time.
void forgetPicturesOfFormerPalettes() {
  constexpr int palettesAtATime = 64;
  static int palettes = 0;
  if (++palettes % palettesAtATime == 0) QPixmapCache::clear();
}

void post(const QString& name, UIWindow* window) {
  NSNotificationCenter::defaultCenter().postNotificationName(name, window);
}

bool canTakeFocus(const QWidget* widget) {
  return (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && widget->isVisible() &&
         !widget->focusProxy();
}

}  // namespace

void setTakesInput(QWidget& widget, bool takesInput) {
  // The widget's own setting: its parent may be disabled as well.
  if (takesInput != widget.testAttribute(Qt::WA_ForceDisabled)) return;
  if (takesInput) {
    widget.setPalette(QPalette());
    forgetPicturesOfFormerPalettes();
  } else {
    // The cover above dims what is behind it; it is not greyed out as well.
    QPalette palette = widget.palette();
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
      const auto colorRole = static_cast<QPalette::ColorRole>(role);
      palette.setBrush(QPalette::Disabled, colorRole, palette.brush(QPalette::Active, colorRole));
    }
    widget.setPalette(palette);
  }
  widget.setEnabled(takesInput);
}

UIWindow::UIWindow(double windowLevel) : QWidget(UIScreen::mainScreen()), windowLevel_(windowLevel) {
  hide();
  UIScreen::mainScreen()->add(this);
}

UIWindow::~UIWindow() {
  UIScreen::mainScreen()->remove(this);
  if (UIApplication* application = UIApplication::sharedApplication()) application->forgetWindow(this);
}

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller) {
  if (rootLayer_) rootLayer_->deleteLater();
  rootLayer_ = nullptr;
  rootViewController_ = std::move(controller);
  if (!rootViewController_) return;
  rootLayer_ = new PresentationLayer(this, rootViewController_->view());
  rootViewController_->layer_ = rootLayer_;
  rootLayer_->show();
}

std::shared_ptr<UIViewController> UIWindow::topViewController() const {
  std::shared_ptr<UIViewController> top = rootViewController_;
  while (top && top->presentedViewController()) top = top->presentedViewController();
  return top;
}

void UIWindow::makeKeyAndVisible() {
  UIScreen::mainScreen()->bringToFront(this);
  setVisible(true);
  UIApplication::sharedApplication()->setKeyWindow(this);
}

bool UIWindow::isKeyWindow() const {
  const UIApplication* application = UIApplication::sharedApplication();
  return application && application->keyWindow() == this;
}

void UIWindow::setVisible(bool visible) {
  if (visible != isHidden()) return QWidget::setVisible(visible);
  // A report may destroy the window.
  const QPointer<UIWindow> alive(this);
  if (!visible) rememberFocus();
  QWidget::setVisible(visible);
  if (!visible && isKeyWindow()) {
    UIApplication& application = *UIApplication::sharedApplication();
    passesKeyOn_ ? application.passKeyOn() : application.setKeyWindow(nullptr);
  }
  if (alive) post(visible ? UIWindowDidBecomeVisibleNotification : UIWindowDidBecomeHiddenNotification, this);
}

void UIWindow::setWindowLevel(double level) {
  // Only a change moves the window; one below others stays there.
  if (level == windowLevel_) return;
  windowLevel_ = level;
  UIScreen::mainScreen()->bringToFront(this);
}

void UIWindow::endEditing() {
  // Without a keyboard nothing has the focus, and then Qt's Wayland plugin must not be called.
  if (QGuiApplication::focusObject() != nullptr) QGuiApplication::inputMethod()->commit();
  rememberFocus();
  if (lastFocus_ && lastFocus_ == window()->focusWidget()) setFocus(Qt::OtherFocusReason);
}

void UIWindow::resizeEvent(QResizeEvent*) {
  const auto layers = findChildren<PresentationLayer*>(Qt::FindDirectChildrenOnly);
  for (PresentationLayer* layer : layers) layer->setGeometry(rect());
}

void UIWindow::keyPressEvent(QKeyEvent* event) {
  const std::shared_ptr<UIViewController> top = topViewController();
  if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier && top) {
    if (!isRepeated(*event)) top->cancelOperation();
    event->accept();
    return;
  }
  QWidget::keyPressEvent(event);
}

bool UIWindow::focusNextPrevChild(bool next) {
  const std::shared_ptr<UIViewController> top = topViewController();
  const QWidget* trap = top && top->isViewLoaded() ? top->view() : this;
  QWidget* const from = window()->focusWidget() ? window()->focusWidget() : this;
  for (QWidget* to = next ? from->nextInFocusChain() : from->previousInFocusChain(); to != from;
       to = next ? to->nextInFocusChain() : to->previousInFocusChain()) {
    if (!trap->isAncestorOf(to) || !canTakeFocus(to)) continue;
    to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
  }
  // Nothing else inside takes the focus; it stays.
  return true;
}

void UIWindow::becomeKey() {
  setTakesInput(*this, true);
  restoreFocus();
  post(UIWindowDidBecomeKeyNotification, this);
}

void UIWindow::rememberFocus() {
  QWidget* focused = window()->focusWidget();
  // A widget counts as its own ancestor.
  if (focused && focused != this && isAncestorOf(focused)) lastFocus_ = focused;
}

void UIWindow::restoreFocus() {
  QWidget* focused = window()->focusWidget();
  if (focused && focused != this && isAncestorOf(focused) && focused->isVisible()) return;
  if (lastFocus_ && isAncestorOf(lastFocus_) && lastFocus_->isEnabled() && !lastFocus_->isHidden()) {
    lastFocus_->setFocus(Qt::ActiveWindowFocusReason);
  } else {
    setFocus(Qt::ActiveWindowFocusReason);
  }
}
