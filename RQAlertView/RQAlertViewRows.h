// The order of a dialog's buttons: which button stands in which row of the list.
#pragma once

#include <cstddef>
#include <optional>

#include <QStringList>

class RQAlertView;

enum class RQAlertViewButtonKind { Action, Cancel, Destructive };

struct RQAlertViewRow {
  RQAlertViewButtonKind kind = RQAlertViewButtonKind::Action;
  std::size_t index = 0;  // among the button titles; 0 for the other kinds
  QString title;
};

// The destructive button is the first row; the cancel button is the last one unless it stands on its own.
class RQAlertViewRows {
 public:
  RQAlertViewRows() = default;
  explicit RQAlertViewRows(const RQAlertView& alertView);

  int count() const;
  // `row` is below count().
  RQAlertViewRow at(int row) const;
  // The row of the button with this index among the titles.
  int rowOfAction(std::size_t index) const;

  friend bool operator==(const RQAlertViewRows&, const RQAlertViewRows&) = default;

 private:
  bool hasDestructive() const { return !destructive_.isNull(); }
  bool hasCancel() const { return !cancel_.isNull(); }

  QString destructive_;
  QStringList titles_;
  QString cancel_;
};
