// The kinds, styles and handlers of a dialog.
#pragma once

#include <cstddef>
#include <functional>

#include <QKeyEvent>
#include <QString>

class RQAlertView;
class RQAlertViewTextField;
struct RQAlertViewButtonProperties;

enum class RQAlertViewStyle { Alert = 0, ActionSheet = 1 };

// What stands between the message and the buttons. A custom view is of the default type.
enum class RQAlertViewType { Default = 0, ActivityIndicator = 1, ProgressView = 2, TextFields = 3 };

enum class RQAlertViewWindowLevel { AboveStatusBar = 0, BelowStatusBar = 1 };

enum class RQAlertViewButtonIconPosition { Left = 0, Right = 1 };

// Where a dialog stands in its life. Allocated: not set up by an initializer yet. Showing and Dismissing: it
// moves and takes no input.
enum class RQAlertViewState { Allocated, Made, Showing, Shown, Dismissing, Dismissed };

// Whether a press of Return or Space is only the repeat of a key that is held down, which answers nothing.
inline bool isRepeatedAnswer(const QKeyEvent& press) {
  return press.isAutoRepeat() &&
         (press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter || press.key() == Qt::Key_Space);
}

using RQAlertViewHandler = std::function<void(RQAlertView& alertView)>;
using RQAlertViewActionHandler =
    std::function<void(RQAlertView& alertView, std::size_t index, const QString& title)>;
// `duration` in seconds.
using RQAlertViewAnimationsBlock = std::function<void(RQAlertView& alertView, double duration)>;
using RQAlertViewCompletionHandler = std::function<void()>;
using RQAlertViewTextFieldsSetupHandler =
    std::function<void(RQAlertViewTextField& textField, std::size_t index)>;
using RQAlertViewButtonPropertiesHandler = std::function<void(RQAlertViewButtonProperties& properties)>;
