// The views of a build's log: the log of a build that is over, and what a running one has printed so far.
#pragma once

#include "build/BuildProblem.h"
#include "ui/controls/TextView.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <QBasicTimer>
#include <QElapsedTimer>

// Read-only. Beside the text, a margin marks the lines of problems.
class LogView : public TextView {
  Q_OBJECT

 public:
  explicit LogView(QWidget* parent = nullptr);

  // Marks the problems of the text that was set last; they have to be in its order. Where the lines are too
  // narrow for the copy of a source line, the caret below it would point anywhere: it is hidden then, and the
  // place underlined.
  void setProblems(const std::vector<Problem>& problems);
  // Selects the line of the log that names a problem and scrolls to it.
  void showProblem(const Problem& problem);
  // The index of the problem that the line names, or shows the source of.
  std::optional<std::size_t> problemAt(long line) const;

 signals:
  // Return was pressed in the problem's lines, they were clicked twice or tapped by a finger, or their mark
  // was clicked.
  void problemPicked(std::size_t problem);

 protected:
  void applyLooks() override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Lines {
    long line, caretLine, caretLines;
  };

  void pick(long line);
  void hideCarets();

  std::vector<Lines> problems_;
  std::vector<char> hidden_;  // one for each problem
};

// Covers the place of the log while a build runs: the end of a growing file and the time that has passed. It
// looks at the last part of the file a few times a second, so that it costs the same however fast that grows.
class RunningLog : public QWidget {
  Q_OBJECT

 public:
  // Changes whenever the file does.
  using FileState = std::array<long, 4>;

  // Lies over `log`, whose parent owns it. Hidden.
  explicit RunningLog(QWidget& log);

  // Shows what comes into the file `path` from now on; what is in it already belongs to an earlier build.
  void start(const std::string& path);
  // Goes on with the end of another file.
  void follow(const std::string& path);
  void stop();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void look();

  QWidget& log_;
  QBasicTimer timer_;
  QElapsedTimer elapsed_;
  std::string path_;
  FileState state_{};     // of the file when it was looked at
  FileState oldState_{};  // of the earlier build's
  std::string end_;       // the last part of the file, in whole lines
};
