// A list whose rows are picked: of files, or of places in them.
#pragma once

#include "ui/controls/Looks.h"

#include <QListView>

class RowCell;

// A row is picked by a tap, by Return on it, or by assistive technology; moving over rows with the arrow keys
// picks none. Only the rows on screen cost anything.
//
// The text of a row is its model's DisplayRole. Where the model has the roles below, they are shown instead,
// one below the other. A row reads from the left in every language, as names and code do, unless its model
// answers true to the last role.
class RowListView : public QListView {
  Q_OBJECT

 public:
  enum Role { TitleRole = Qt::UserRole, DetailRole, FollowsInterfaceRole };

  explicit RowListView(QWidget* parent = nullptr);

  // The base's makes a selection model of its own, which has to be heard.
  void setModel(QAbstractItemModel* model) override;
  void setBackgroundColor(const QColor& colour);
  void setSeparatorColor(const QColor& colour);
  // The picture before each row that has none as its DecorationRole, from the program's own; none unless set.
  void setPicture(const QString& name);
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
};
