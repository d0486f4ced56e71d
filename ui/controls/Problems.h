// The problems of the last build, as the screens show them.
#pragma once

#include "build/BuildProblem.h"
#include "core/Text.h"

#include <optional>
#include <vector>

#include <QColor>
#include <QImage>
#include <QWidget>

class QLabel;
class QsciScintilla;
class RowListView;

// The last build that was finished while the application runs. Main thread.
class LastBuild : public QObject {
  Q_OBJECT

 public:
  static LastBuild& shared();

  // The project that was built and its problems in the log's order; none before the first build.
  const MaybeText& project() const { return project_; }
  const std::vector<Problem>& problems() const { return problems_; }

  void set(const MaybeText& project, std::vector<Problem> problems);

  // Tells that the text around a problem was edited and saved, so that it is in another line of its file now.
  // No `changed` comes of it.
  void moveTo(std::size_t problem, int line) { problems_.at(problem).line = line; }

 signals:
  void changed();

 private:
  MaybeText project_;
  std::vector<Problem> problems_;
};

// Its message in one line that is not endless.
QString shownMessage(const Problem& problem);

// Each kind has a colour, readable on the ground of texts, and a shape: an error is a circle, a warning a
// triangle, a note a square. The image has two pixels for each logical one.
QColor colourOf(Problem::Kind kind);
QImage signOf(Problem::Kind kind, int side);

// Lets a margin of `text`, which has no width yet, show these signs as markers, by the looks of this moment.
void setUpProblemMargin(QsciScintilla& text, int margin);
inline constexpr int problemMarginWidth = 18;
// The marker of a problem's line.
inline int markerOf(Problem::Kind kind) {
  return 1 + static_cast<int>(kind);
}

// How many errors and warnings there are, and a list of the problems. Hidden where there are none.
class ProblemsPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ProblemsPanel(QWidget* parent = nullptr);

  // Shows the problems of LastBuild; none of them is the current one.
  void reload();

  // Goes to the next error or warning in the log's order, once round; to the first or last one after
  // reload().
  void step(bool backward);
  void setCurrent(std::size_t problem);
  // Indices of LastBuild's problems.
  std::optional<std::size_t> current() const;

  // The height of as many rows as fit into `room`, but one at least, or all that there is.
  void limitHeight(std::optional<int> room);

 signals:
  // The user has gone to a problem, by step() or else within the list.
  void shown(std::size_t problem, bool stepped);
  // The user has picked a problem in the list.
  void picked(std::size_t problem);

 private:
  const Problem& problemAt(int row) const;

  QLabel* count_;
  RowListView* list_;
  std::vector<std::size_t> rows_;  // the problems that are not repeated, by their indices
  std::optional<int> room_;
  bool hasStepped_ = false;
  bool isQuiet_ = false;  // the list's current row changes by no doing of the user's
};
