// The about screen.
#pragma once

#include "platform/UIViewController.h"
#include "ui/screens/ui_Dev.h"

class Dev : public UIViewController {
  Q_OBJECT

 public:
  void viewDidLoad() override;
  void cancelOperation() override { dismissViewControllerAnimated(true); }

 protected:
  void loadView() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  Ui::Dev outlets_{};
  QString theos_;
};
