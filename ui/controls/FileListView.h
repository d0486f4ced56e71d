// The list of the current project's files.
#pragma once

#include "ui/controls/Looks.h"

#include <string>

#include <QAbstractListModel>
#include <QListView>

// The rows are MUArray(), read when they are shown; reloadData() after each change of it.
class FileListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  void reloadData();
};

// A row is picked by a tap, by Return on it, or by assistive technology; moving over rows with the arrow keys
// picks none. Only the rows on screen cost anything.
class FileListView : public QListView {
  Q_OBJECT

 public:
  explicit FileListView(QWidget* parent = nullptr);

  void setBackgroundColor(const QColor& colour);
  void setSeparatorColor(const QColor& colour);

  // Constant, as a list takes the room that there is; the base would load the fonts to answer.
  QSize sizeHint() const override { return {metrics::touchSize, metrics::touchSize}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

  // Shows MUArray() anew, keeping the place in the list where the rows still allow it: the same file stays
  // the current one wherever it stands now, or if it has gone, the one in its place.
  void reloadData();
  // Goes back to the top, with no file current: for the files of another project.
  void leavePlace();

 signals:
  void rowPicked(int row);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void pickSelected();

  FileListModel model_;
  std::string currentName_;  // of the current row, for finding it in the next list
};
