// Questions that several parts of a dialog ask.
#pragma once

#include <QColor>

class RQAlertView;
class UIWindow;

class RQAlertViewHelper {
 public:
  static double systemVersion();
  // The application's own window, or null.
  static UIWindow* appWindow();
  static bool isPad();
  // An action sheet in the middle of a pad's screen rather than at its bottom.
  static bool isPadAndNotForce(const RQAlertView& alertView);
  // An action sheet at the bottom of the screen.
  static bool comesFromBottom(const RQAlertView& alertView);
  // Whether the cancel button stands on its own below the list instead of being its last row.
  static bool isCancelButtonSeparate(const RQAlertView& alertView);

  // Parts from 0 to 1.
  static QColor rgb(double red, double green, double blue);
  static QColor white(double level, double alpha = 1);
};
