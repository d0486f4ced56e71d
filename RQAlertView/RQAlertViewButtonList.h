// The buttons of a dialog one below the other, of any number.
#pragma once

#include "RQAlertView/RQAlertViewModel.h"

#include <QAbstractListModel>
#include <QListView>
#include <QMouseEvent>
#include <QPainterPath>

// The rows as a model; those that are not seen cost nothing.
class RQAlertViewListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  RQAlertViewListModel(std::shared_ptr<const RQAlertViewModel> dialog, QObject* parent);

  // Takes over the rows, their looks and whether they are enabled.
  void update();
  const QList<RQAlertViewRow>& rows() const { return rows_; }
  const RQAlertViewModel& dialog() const { return *dialog_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  std::shared_ptr<const RQAlertViewModel> dialog_;
  QList<RQAlertViewRow> rows_;
};

// A click on a row, or Return or Space on it, presses the button. At the ends the arrow keys go on to what
// comes before or after the list. The focus is on the current row, if any, unless Tab brings it.
class RQAlertViewButtonList : public QListView {
  Q_OBJECT

 public:
  RQAlertViewButtonList(std::shared_ptr<const RQAlertViewModel> dialog, RQAlertViewPress press,
                        QWidget* parent);

  const RQAlertViewModel& dialog() const { return model_->dialog(); }
  const QList<RQAlertViewRow>& rows() const { return model_->rows(); }
  // Takes over the dialog's buttons and looks, for a list `width` wide.
  void takeOver(int width);
  // The looks of the rows, or whether they are enabled, may have changed.
  void looksChanged() { model_->update(); }

  // Where a title may take several lines, each row is measured; otherwise all are equally high.
  int heightOfRow(int row) const;
  double heightOfRows() const;
  // At most `most`, with half of the last row in sight, which shows that there are more below; `most` itself
  // where that would leave no whole row.
  double heightEndingInARow(double most) const;

  // The outline of the card below the list, in the list's coordinates.
  void setCard(const QPainterPath& card);
  // In the viewport's coordinates.
  QPainterPath card() const { return card_.translated(-viewport()->pos()); }
  // Held down by the pointer; -1 for none.
  int pressedRow() const { return pressedRow_; }

  // Presses the row's button unless it is disabled.
  void tap(int row);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void setPressedRow(int row);
  int rowAt(const QMouseEvent& event) const { return indexAt(event.position().toPoint()).row(); }
  bool isRowEnabled(int row) const;
  // The first enabled row from `row` on, going by `step`; -1 if there is none.
  int enabledRow(int row, int step) const;
  int firstEnabledRow() const { return enabledRow(0, 1); }
  int lastEnabledRow() const { return enabledRow(model_->rowCount() - 1, -1); }

  RQAlertViewListModel* model_;
  RQAlertViewCell* cell_;
  RQAlertViewPress press_;
  bool uniform_ = true;
  double leastHeight_ = 0;
  int width_ = 0;
  QPainterPath card_;
  int pressStartRow_ = -1;
  int pressedRow_ = -1;
};
