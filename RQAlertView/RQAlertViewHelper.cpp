#include "RQAlertView/RQAlertViewHelper.h"

#include "RQAlertView/RQAlertView.h"
#include "platform/UIApplication.h"
#include "platform/UIDevice.h"
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

bool RQAlertViewHelper::isPadAndNotForce(const RQAlertView& alertView) {
  return isPad() && !alertView.padShowsActionSheetFromBottom();
}

bool RQAlertViewHelper::comesFromBottom(const RQAlertView& alertView) {
  return alertView.style() == RQAlertViewStyle::ActionSheet && !isPadAndNotForce(alertView);
}

bool RQAlertViewHelper::isCancelButtonSeparate(const RQAlertView& alertView) {
  if (alertView.cancelButtonTitle().isNull()) return false;
  if (comesFromBottom(alertView)) return true;
  // Of a list that has to scroll, the way out stays in sight.
  const double room = UIScreen::mainScreen()->height() - 2 * alertView.offsetVertical();
  return static_cast<double>(alertView.buttonTitles().size()) * alertView.buttonsHeight() > room;
}

QColor RQAlertViewHelper::rgb(double red, double green, double blue) {
  return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

QColor RQAlertViewHelper::white(double level, double alpha) {
  const auto part = static_cast<float>(level);
  return QColor::fromRgbF(part, part, part, static_cast<float>(alpha));
}
