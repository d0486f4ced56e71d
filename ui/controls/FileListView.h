// The list of the current project's files.
#pragma once

#include "ui/controls/RowListView.h"

#include <string>

class FileListView : public RowListView {
  Q_OBJECT

 public:
  explicit FileListView(QWidget* parent = nullptr);

  // Shows MUArray(), which has changed, keeping the place in the list where the rows still allow it: the same
  // file stays the current one wherever it is now, or if it has gone, the one in its place.
  void reloadData();

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  std::string currentName_;  // of the current row, for finding it in the next list
};
