// A list whose rows are picked: of files, or of places in them.
#pragma once

#include "ui/controls/Looks.h"

#include <functional>

#include <QAbstractListModel>
#include <QIcon>
#include <QListView>

class RowCell;

// Rows that are made when they are shown.
class RowModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  struct Row {
    QString name{};     // read by assistive technology
    QString title{};    // shown; null where that is the name
    QString detail{};   // shown below it; may be empty
    QString toolTip{};  // may be empty
    QIcon picture{};    // before the texts; may be null
    // Reads in the direction of the interface, not from the left as names and code do in every language.
    bool followsInterface = false;
  };

  // Called whenever a row is shown. Set it before there are any.
  std::function<Row(int row)> rowAt;

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count_; }

  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid() || index.row() >= count_) return {};
    if (role == Qt::DisplayRole) return rowAt(index.row()).name;
    return role == Qt::ToolTipRole ? rowAt(index.row()).toolTip : QVariant();
  }

  // The rows are others from now on; none is the current one.
  void setCount(int count) {
    beginResetModel();
    count_ = count;
    endResetModel();
  }

  // Rows have come below the last one.
  void growTo(int count) {
    if (count <= count_) return;
    beginInsertRows({}, count_, count - 1);
    count_ = count;
    endInsertRows();
  }

 private:
  int count_ = 0;
};

// A row is picked by a tap, by Return on it, or by assistive technology; moving over rows with the arrow keys
// picks none. Only the rows on screen cost anything.
class RowListView : public QListView {
  Q_OBJECT

 public:
  explicit RowListView(QWidget* parent = nullptr);

  RowModel& rows() const { return *model_; }

  // -1 for none.
  int currentRow() const { return currentIndex().row(); }
  void setCurrentRow(int row) { setCurrentIndex(model_->index(row)); }

  void setBackgroundColor(const QColor& colour);
  // Marks the current row although another control has the focus and moves it.
  void setMarksCurrent(bool marks);

  // Constant, as a list takes the room that there is; the base would load the fonts to answer.
  QSize sizeHint() const override { return {metrics::touchSize, metrics::touchSize}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void rowPicked(int row);

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void pickSelected();

  RowCell* cell_;
  RowModel* model_;
};
