// The list of the current project's files.
#pragma once

#include <QAbstractListModel>
#include <QListView>

#include "ui/Metrics.h"

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

  // Shows MUArray() anew, keeping the place in the list where the rows still allow it.
  void reloadData();

 signals:
  void rowPicked(int row);

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void pickSelected();

  FileListModel model_;
};
