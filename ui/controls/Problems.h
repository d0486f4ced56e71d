// The problems of the last build, as the screens show them.
#pragma once

#include "build/BuildProblem.h"
#include "core/Text.h"

#include <vector>

#include <QColor>
#include <QObject>

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

// Readable on the ground of texts, and told apart by shape as well.
QColor colourOf(Problem::Kind kind);
