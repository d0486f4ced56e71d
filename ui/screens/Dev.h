// The about screen.
#pragma once

#include "platform/UIViewController.h"

#include <memory>

namespace Ui {
class Dev;
}

class Dev : public UIViewController {
  Q_OBJECT

 public:
  Dev();
  ~Dev() override;

  void viewDidLoad() override;
  void cancelOperation() override;

 protected:
  void loadView() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  std::unique_ptr<Ui::Dev> outlets_;
  QString theos_;
};
