#include "build/BuildProblem.h"
#include "build/LogCleanUp.h"
#include "core/Text.h"
#include "support/Sections.h"

#include <gtest/gtest.h>

namespace {

const BuiltProject project{"/p",
                           {"Makefile", "T.plist", "Tweak.x", "control", "inner/Makefile", "inner/deep/x.c",
                            "layout/DEBIAN/postinst", "layout/usr/bin/x.sh", "prefs/Makefile",
                            "prefs/P.plist", "prefs/Tweak.x", "prefs/more/Makefile", "prefs/more/M.m",
                            "scripts/x.pl", "scripts/x.sh", "sub/A.xm", "sub/B.m", "sub/Own.h"}};

std::string escaped(const std::string& line) {
  return replaceAll(replaceAll(replaceAll(line, "\\e", "\033"), "\\t", "\t"), "\\r", "\r");
}

std::string problemsOf(const std::string& log) {
  std::string all;
  for (const Problem& problem : problemsIn(log, project)) {
    if (problem.repeated) continue;
    all += std::to_string(problem.logLine) + " " + textOf(problem);
    for (std::size_t line = 0; line < problem.caretLines; ++line)
      all += " ^" + std::to_string(problem.caretLine + line);
    all += "\n";
  }
  return all;
}

TEST(BuildProblem, IsFoundInEveryKindOfLineWithColoursAndWithout) {
  const auto sections = sectionsOf(TWEAKBENCH_PROBLEMS);
  ASSERT_GT(sections.size(), 20U);
  for (const auto& [title, lines] : sections) {
    std::string log, problems;
    for (const std::string& line : lines) {
      std::string& to = line.starts_with("=> ") ? problems : log;
      to += (line.starts_with("=> ") ? line.substr(3) : escaped(line)) + "\n";
    }
    EXPECT_EQ(problemsOf(log), problems) << title;
    EXPECT_EQ(problemsOf(cleanedLog(log, BuildVariant::Package)), problems) << title << ", cleaned";
    EXPECT_EQ(problemsOf(cleanedLog(log, BuildVariant::Install)), problems) << title << ", cleaned less";
    EXPECT_EQ(problemsOf(withoutSequences(log)), problems) << title << ", without colours";
  }
}

TEST(BuildProblem, IsBoundedInLogsWithoutEnd) {
  std::string log;
  for (int line = 1; line < 30'000; ++line) log += "Tweak.x:" + std::to_string(line) + ":1: warning: a\n";
  log += "Tweak.x:1:1: error: the one that matters\n";
  const auto found = problemsIn(log, project);
  EXPECT_LT(found.size(), 10'000U);
  EXPECT_EQ(textOf(found.back()), "Tweak.x:1:1: error: the one that matters");
}

}  // namespace
