// The editor of the picked file.
#pragma once

#include "platform/UIViewController.h"

#include <functional>
#include <memory>

namespace Ui {
class PopOverNewController;
}
class RQAlertView;

// Comes up empty and loads the picked file a moment later. A file that is missing, no text in UTF-8, or a
// folder stays empty, and saving then empties it; only a file that is too large to be edited is left as it
// is.
class PopOverNewController : public UIViewController {
  Q_OBJECT

 public:
  PopOverNewController();
  ~PopOverNewController() override;

  void viewDidLoad() override;

  // Loads the picked file.
  void Rep();
  // Writes the whole text over the picked file and closes the editor.
  void SaveButton();
  // Closes the editor without saving.
  void DismissPop();

  // Closes the find bar, or else the editor, and like the window asks first where text is not saved.
  void cancelOperation() override;
  bool screenShouldClose() override;

 protected:
  void loadView() override;

 private:
  // False when the file is as it was.
  bool writeText();
  bool hasUnsavedText() const;
  // The one way out over text that may not be saved: calls `away` at once, or once the user has chosen to
  // save (and it is saved) or to discard it.
  void leave(const std::function<void()>& away);

  std::unique_ptr<Ui::PopOverNewController> outlets_;
  bool isTooLarge_ = false;
  // The last time that it asked.
  std::weak_ptr<RQAlertView> question_;
};
