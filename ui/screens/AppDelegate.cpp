#include "ui/screens/AppDelegate.h"

#include "ui/screens/ViewController.h"

std::unique_ptr<AppDelegate> makeAppDelegate() {
  auto delegate = std::make_unique<AppDelegate>();
  delegate->setWindow(makeUIWindow());
  // The window first: start-up may show a dialog, which must come to lie above it.
  delegate->window()->makeKeyAndVisible();
  delegate->window()->setRootViewController(std::make_shared<ViewController>());
  return delegate;
}
