#include "RQAlertView/RQAlertViewHelper.h"

#include "RQAlertView/RQAlertViewModel.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"

double RQAlertViewHelper::systemVersion() {
  return UIDevice::currentDevice().systemVersion();
}

UIWindow* RQAlertViewHelper::appWindow() {
  return UIApplication::sharedApplication()->appWindow();
}

bool RQAlertViewHelper::isPad() {
  return UIDevice::currentDevice().userInterfaceIdiom() == UIUserInterfaceIdiom::Pad;
}

bool RQAlertViewHelper::isPadAndNotForce(const RQAlertViewModel& dialog) {
  return isPad() && !dialog.appearance.padShowsActionSheetFromBottom;
}

bool RQAlertViewHelper::comesFromBottom(const RQAlertViewModel& dialog) {
  return dialog.style == RQAlertViewStyle::ActionSheet && !isPadAndNotForce(dialog);
}

bool RQAlertViewHelper::isCancelButtonSeparate(const RQAlertViewModel& dialog) {
  if (dialog.cancelButtonTitle.isNull()) return false;
  if (comesFromBottom(dialog)) return true;
  // It stays in sight where the list has to scroll.
  const double room = UIScreen::mainScreen()->height() - 2 * dialog.appearance.offsetVertical;
  return static_cast<double>(dialog.buttonTitles.size()) * *dialog.appearance.buttonsHeight > room;
}
