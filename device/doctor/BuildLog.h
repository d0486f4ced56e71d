// One line of the doctor's report, and what a build's log tells of a failure.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace doctor {

// A Problem stops builds; a Note is worth knowing and stops nothing.
enum class Verdict { Ok, Note, Problem };

struct Finding {
  Verdict verdict;
  // A word or two.
  std::string subject;
  // One sentence: what is wrong and what to do.
  std::string sentence;
};

inline Finding ok(std::string subject, std::string sentence) {
  return {Verdict::Ok, std::move(subject), std::move(sentence)};
}
inline Finding note(std::string subject, std::string sentence) {
  return {Verdict::Note, std::move(subject), std::move(sentence)};
}
inline Finding problem(std::string subject, std::string sentence) {
  return {Verdict::Problem, std::move(subject), std::move(sentence)};
}

// For a copy of Theos of which something is missing: what is wrong and what to do.
inline constexpr std::string_view notWhole =
    "this copy of Theos is not whole; run \"git submodule update --init --recursive\" in its folder, or get "
    "it anew with \"git clone --recursive\".";

// The first line of a log that describes why the build failed, before make's own lines about the failure.
struct FirstError {
  // Counted from 1; 0 where the build did not fail.
  std::size_t number = 0;
  // As it is in the log, without the sequences that colour it.
  std::string line;
  // What Theos was at then, or last, in its own words: "Compiling Tweak.x (arm64)..."; empty before that.
  std::string stage;
};
FirstError firstErrorIn(std::string_view log);

// What a message of a known cause means and what to do, beginning in lower case; empty for any other line.
std::string_view meaningOf(const std::string& line);

// Notes on the first error, each known message and the line where it is, each once, in the log's order; empty
// for the log of a build that worked. `cut`: the log's beginning is missing.
std::vector<Finding> explainBuildLog(std::string_view log, bool cut = false);

// Enough of a line that a program said to look it up.
std::string shortened(const std::string& said);

}  // namespace doctor
