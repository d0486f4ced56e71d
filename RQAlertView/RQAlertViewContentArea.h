// What stands between a dialog's message and its buttons: fields, an indicator, a progress bar, or a view of
// the application's own. It knows neither the box around it nor the stack of dialogs.
#pragma once

#include "RQAlertView/RQAlertViewAppearance.h"
#include "RQAlertView/RQAlertViewReports.h"

#include <functional>
#include <vector>

#include <QPointer>
#include <QWidget>

class RQAlertViewLabel;
class RQAlertViewProgressView;
class RQAlertViewTextField;
class UIActivityIndicatorView;

class RQAlertViewContentArea : public QWidget {
  Q_OBJECT

 public:
  // Takes `contents.innerView` over.
  RQAlertViewContentArea(const RQAlertViewSetup& contents, const RQAlertViewAppearance& appearance,
                         QWidget* parent);

  // Calls `handler` once for each field, in order. It may destroy a field, and the content with all of them.
  void setUpTextFields(const RQAlertViewTextFieldsSetupHandler& handler);

  // There is nothing to show: the content takes no room.
  bool isEmpty() const;

  // Takes over what has changed since the last time; what a set-up handler has changed stays.
  void applyAppearance(const RQAlertViewAppearance& appearance);

  void setProgress(double progress, bool animated);
  void setProgressLabelText(const QString& text);

  std::vector<RQAlertViewTextField*> textFields() const;

  int heightForWidth(int width) const override;
  bool hasHeightForWidth() const override { return true; }

 signals:
  // Return was pressed in the last field.
  void lastFieldEntered();
  // The height for a given width has changed.
  void heightChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void addTextFields(const RQAlertViewSetup& contents);
  void addProgressLabel(const QString& text);
  void applyToTextField(RQAlertViewTextField& field, const RQAlertViewAppearance& now) const;
  void fieldEntered(std::size_t index);
  // Lays the parts out, or only measures them; answers the height.
  int place(int width, bool measureOnly) const;

  RQAlertViewAppearance applied_;
  bool everApplied_ = false;
  QPointer<QWidget> innerView_;
  UIActivityIndicatorView* indicator_ = nullptr;
  RQAlertViewProgressView* progressView_ = nullptr;
  RQAlertViewLabel* progressLabel_ = nullptr;
  std::vector<QPointer<RQAlertViewTextField>> fields_;
};
