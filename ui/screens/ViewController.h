// The main screen: the current project's name, its files, and the buttons that open every menu.
#pragma once

#include "core/Text.h"
#include "platform/UIViewController.h"
#include "ui/screens/ui_ViewController.h"

#include <memory>

class MakePackage;

class ViewController : public UIViewController {
  Q_OBJECT

 public:
  // The start-up procedure: converter, Theos, projects folder, then the current project's name and files. It
  // is also how the screen is brought up to date after every change, so each step may be repeated.
  void viewDidLoad() override;

  // Runs start-up again 0.1 s from now, when the operation that asks for it is over.
  void viewDidLoadAfterDelay();

  void ChooseProjectButton();
  void NewProject();
  void Removeer();
  void OpenPrijectFolder();
  // Keeps the place in the list where the rows still allow it: the same file stays the current one wherever
  // it is now, or if it has gone, the one in its place.
  void Reload();
  // Takes away whatever this screen presents.
  void DismissPop() { dismissViewControllerAnimated(true); }

 protected:
  void loadView() override;

 private:
  void wireButtons();
  void presentBuildScreen();
  void presentAboutScreen();
  void didSelectRow(int row);
  void rejectPick();

  Ui::ViewController outlets_{};
  // Kept with its log and its problems while the project stays the same.
  std::shared_ptr<MakePackage> buildScreen_;
  MaybeText builtProject_;
};
