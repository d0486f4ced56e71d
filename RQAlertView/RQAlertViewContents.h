// What a dialog is made from.
#pragma once

#include "RQAlertView/RQAlertViewDelegate.h"
#include "RQAlertView/RQAlertViewTypes.h"

#include <memory>

#include <QPointer>
#include <QStringList>
#include <QWidget>

// Null texts are absent ones.
struct RQAlertViewContents {
  RQAlertViewType type = RQAlertViewType::Default;
  QString title{};
  QString message{};
  RQAlertViewStyle style = RQAlertViewStyle::Alert;
  QStringList buttonTitles{};
  QString cancelButtonTitle{};
  QString destructiveButtonTitle{};

  QPointer<QWidget> innerView{};
  double progress = 0;
  QString progressLabelText{};
  std::size_t numberOfTextFields = 0;
  RQAlertViewTextFieldsSetupHandler textFieldsSetupHandler{};
};

// To whom a dialog reports: nobody yet, three handlers, or a delegate.
struct RQAlertViewReports {
  RQAlertViewReports() = default;
  RQAlertViewReports(RQAlertViewActionHandler actionHandler, RQAlertViewHandler cancelHandler,
                     RQAlertViewHandler destructiveHandler);
  explicit RQAlertViewReports(std::weak_ptr<RQAlertViewDelegate> delegate);

  RQAlertViewActionHandler action;
  RQAlertViewHandler cancel;
  RQAlertViewHandler destructive;
  std::weak_ptr<RQAlertViewDelegate> to;
};
