// The build screen.
#pragma once

#include "build/LogCleanUp.h"
#include "platform/UIViewController.h"
#include "ui/screens/ui_MakePackage.h"

#include <cstddef>
#include <memory>

class RQAlertView;
class RunningLog;

class MakePackage : public UIViewController {
  Q_OBJECT

 public:
  void viewDidLoad() override;

  // Runs Theos's updater. On the build job's thread.
  void UpdateTheos();
  // Both return at once; a progress dialog stays until the build is over.
  void MakePackageAction() { startBuild(BuildVariant::Package); }
  void MakePackageInstall() { startBuild(BuildVariant::Install); }
  // Restarts the device's user interface, without a question.
  void Respring();
  void ClearLog();
  void InfoButton();

  // Closes the find bar, or else the screen.
  void cancelOperation() override;

 protected:
  void loadView() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void wireButtons();
  void startBuild(BuildVariant variant);
  void finishBuild(BuildVariant variant, bool hasOnlyUpdated);

  void showProblems();
  void forgetProblems();
  void openProblem(std::size_t index);

  class LogHint;

  Ui::MakePackage outlets_{};
  LogHint* hint_ = nullptr;        // the view's
  RunningLog* running_ = nullptr;  // the view's
  // While a build runs: this screen and its progress dialog, which live at least as long as the job. They are
  // held here and not by the job, so that the worker thread never drops the last reference to something on
  // screen.
  std::shared_ptr<UIViewController> keptWhileBuilding_;
  std::shared_ptr<RQAlertView> progress_;
};
