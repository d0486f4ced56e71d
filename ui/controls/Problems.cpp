#include "ui/controls/Problems.h"

#include <utility>

LastBuild& LastBuild::shared() {
  static LastBuild build;
  return build;
}

void LastBuild::set(const MaybeText& project, std::vector<Problem> problems) {
  project_ = project;
  problems_ = std::move(problems);
  emit changed();
}

QColor colourOf(Problem::Kind kind) {
  switch (kind) {
    case Problem::Kind::Error:
      return {255, 120, 110};
    case Problem::Kind::Warning:
      return {240, 190, 80};
    default:
      return {140, 190, 255};
  }
}
