// The buttons of a dialog one below the other, of any number.
#pragma once

#include "RQAlertView/RQAlertViewButtonProperties.h"
#include "RQAlertView/RQAlertViewRows.h"

#include <functional>

#include <QAbstractListModel>
#include <QListView>
#include <QPainterPath>

// The rows as a model, at no cost for those that are not seen.
class RQAlertViewListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using EnabledQuestion = std::function<bool(const RQAlertViewRow&)>;

  RQAlertViewListModel(EnabledQuestion enabled, QObject* parent);

  void setRows(const RQAlertViewRows& rows);
  const RQAlertViewRows& rows() const { return rows_; }
  // What is answered about a row has changed.
  void rowChanged(int row);
  void allRowsChanged();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  EnabledQuestion enabled_;
  RQAlertViewRows rows_;
};

class RQAlertViewCell;
class RQAlertViewListModel;

// Tapping a row, or Return or Space on it, taps the button. At the ends the arrow keys go on to what comes
// before or after the list. The focus is on the row that is current, if any, unless Tab brings it.
class RQAlertViewButtonList : public QListView {
  Q_OBJECT

 public:
  using LookQuestion = std::function<RQAlertViewButtonLook(const RQAlertViewRow&)>;
  using EnabledQuestion = std::function<bool(const RQAlertViewRow&)>;

  RQAlertViewButtonList(LookQuestion look, EnabledQuestion enabled, QWidget* parent);

  void setRows(const RQAlertViewRows& rows);
  const RQAlertViewRows& rows() const;
  // The looks of all rows, or whether they are enabled, may have changed.
  void looksChanged();
  void rowChanged(int row);

  enum class RowHeights { Uniform, EachItsOwn };
  // Uniform rows are all `leastHeight` high, and only those that are seen cost anything; otherwise every row
  // is measured for the width and is at least that high.
  void setRowHeights(RowHeights heights, double leastHeight, int width);
  double heightOfRows() const;
  double leastRowHeight() const;

  // `background`: of the card that the list lies in.
  void setColors(const QColor& separators, const QColor& background);
  void setScrollIndicator(bool shows, UIScrollViewIndicatorStyle style);
  // The outline of the card that the list lies in, in the list's coordinates.
  void setCard(const QPainterPath& card);

  // As if the row had been tapped; a disabled row cannot be.
  void tap(int row);

 signals:
  void rowTapped(int row);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void setPressedRow(int row);
  int rowAt(const QPoint& position) const;
  bool isRowEnabled(int row) const;
  // -1 where no row is enabled.
  int firstEnabledRow() const;
  int lastEnabledRow() const;

  RQAlertViewListModel* model_;
  RQAlertViewCell* cell_;
  QColor background_;
  int pressStartRow_ = -1;
};
