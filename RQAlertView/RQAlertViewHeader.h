// What is above a dialog's buttons: title, message and content (fields, an indicator, a progress bar or a
// view of the application's own), in an area that scrolls where they do not fit.
#pragma once

#include "RQAlertView/RQAlertViewModel.h"
#include "RQAlertView/RQAlertViewTextField.h"

#include <QScrollArea>

class RQAlertViewLabel;
class RQAlertViewOverlay;
class UIActivityIndicatorView;

class RQAlertViewHeader : public QScrollArea {
  Q_OBJECT

 public:
  // Takes ownership of the dialog's inner view.
  RQAlertViewHeader(std::shared_ptr<const RQAlertViewModel> dialog, QWidget* parent);

  // Calls `handler` once for each field, in order. It may destroy a field, and the header with all of them.
  void setUpTextFields(const RQAlertViewTextFieldsSetupHandler& handler);
  std::vector<RQAlertViewTextField*> textFields() const;

  // Takes over the dialog's fonts, colours and progress label. Of a field's looks it sets only those that
  // have changed since the last time: what a set-up handler has changed stays.
  void applyLooks();
  // Takes over the dialog's progress.
  void showProgress(bool animated);

  // With paddings; 0 where there is nothing to show.
  int wholeHeight(int width) const;
  // Lays everything out for `area`, which is in the parent's coordinates; empty: nothing is shown.
  void layOutIn(const QRect& area);

 signals:
  // Return was pressed in the last field.
  void lastFieldEntered();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class ProgressBar;

  void addTextFields();
  void applyLooksTo(RQAlertViewTextField& field) const;
  void fieldEntered(std::size_t index);
  // Scrolls to what has the focus, where that is in the header.
  void keepFocusInSight();
  // Fades out the last line where the text goes on; has the ring where the keys scroll it.
  void paintOver(QPainter& painter, const QRect& area) const;
  int paddingVertical() const;
  // Calls visit(part, top, height) for each part that is shown, from the top; returns the height of all.
  template <typename Visit>
  int eachPart(int innerWidth, Visit visit) const;

  std::shared_ptr<const RQAlertViewModel> dialog_;
  std::optional<RQAlertViewAppearance> applied_;
  QWidget* parts_;
  RQAlertViewLabel* title_;
  RQAlertViewLabel* message_;
  UIActivityIndicatorView* indicator_ = nullptr;
  ProgressBar* progressBar_ = nullptr;
  RQAlertViewLabel* progressLabel_ = nullptr;
  std::vector<QPointer<RQAlertViewTextField>> fields_;
  RQAlertViewOverlay* overlay_;
};
