// The editor of the picked file.
#pragma once

#include "platform/UIViewController.h"
#include "ui/screens/ui_PopOverNewController.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class RQAlertView;

// Comes up empty and loads the picked file a moment later, or with the first key, where its last editor was
// left if it is unchanged. A file that is missing, no text in UTF-8, or a folder stays empty, and saving then
// empties it; only a file that is too large to be edited is left as it is.
class PopOverNewController : public UIViewController {
  Q_OBJECT

 public:
  void viewDidLoad() override;

  // The line and the column, both from 1 and the column in bytes, where the file is opened instead. Before
  // the file is loaded.
  void openAt(long line, long column);

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
  void viewWillDisappear(bool animated) override;
  bool eventFilter(QObject* text, QEvent* event) override;

 private:
  void loadNow();
  void wireToolBar();
  void keepPlace();
  // Opens another file of the project in this editor, or another place of the same file.
  void goTo(const std::string& path, long line, long column);
  // Marks those of the last build that are in this file.
  void showProblems();
  // False when the file is as it was.
  bool writeText();
  // The one way out over text that may not be saved: calls `away` at once, or once the user has chosen to
  // save (and it is saved) or to discard it.
  void leave(const std::function<void()>& away);

  Ui::PopOverNewController outlets_{};
  std::vector<std::size_t> problems_;  // that are marked: indices of the last build's
  bool isTooLarge_ = false;
  std::string path_;          // the loaded file's; empty before it is loaded
  std::size_t textHash_ = 0;  // of what the file held when it was loaded or saved last
  long line_ = 0;             // where it is to be opened; 0: where it was left
  long column_ = 0;
  // The last time that it asked.
  std::weak_ptr<RQAlertView> question_;
};

// Picks the file `path`, relative to the current project, in any of its folders, and presents its editor over
// `presenter`, at the line and the column where these are given (see openAt). Nothing happens for a path that
// leads out of the project, or where something is presented already.
void presentEditor(UIViewController& presenter, const std::string& path, long line = 0, long column = 0);
