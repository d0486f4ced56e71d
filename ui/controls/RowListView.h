// A list whose rows are picked: of files, or of places in them.
#pragma once

#include "ui/controls/Looks.h"

#include <functional>

#include <QIcon>
#include <QListView>

class RowCell;
class RowModel;

// A row is picked by a tap, by Return on it, or by assistive technology; moving over rows with the arrow keys
// picks none. Only the rows on screen cost anything.
class RowListView : public QListView {
  Q_OBJECT

 public:
  struct Row {
    QString name{};     // read by assistive technology
    QString title{};    // shown; null where that is the name
    QString detail{};   // shown below it; may be empty
    QString toolTip{};  // may be empty
    QIcon picture{};    // before the texts; may be null
    // Reads in the direction of the interface, not from the left as names and code do in every language.
    bool followsInterface = false;
  };

  explicit RowListView(QWidget* parent = nullptr);

  // Called whenever a row is shown. Set it before there are any.
  void setRowAt(std::function<Row(int row)> rowAt);
  Row rowAt(int row) const;

  int count() const;
  // The rows are others from now on; none is the current one.
  void setCount(int count);
  // Rows have come below the last one.
  void growTo(int count);

  // -1 for none.
  int currentRow() const { return currentIndex().row(); }
  void setCurrentRow(int row);

  void setBackgroundColor(const QColor& colour);
  void setSeparatorColor(const QColor& colour);
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
