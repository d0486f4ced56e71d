// The problems that the log of a build names.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct Problem {
  enum class Kind { Error, Warning, Note };

  std::string file;  // relative to the project, or absolute outside it; empty where the log names none
  int line = 0;      // from 1; 0 where the log names none
  int column = 0;    // from 1, in bytes; 0 where the log names none
  Kind kind = Kind::Error;
  std::string message;      // without colour sequences
  std::size_t logLine = 0;  // from 0
  // The line of the log whose caret points into the copy of the source in the line above it, and how many
  // lines there are of these, with the one that suggests a correction; 0 where there are none.
  std::size_t caretLine = 0;
  std::size_t caretLines = 0;
  bool repeated = false;  // the log named it before, such as for another architecture
};

// "sub/Tweak.x:4:20", as far as it is known.
std::string placeOf(const Problem& problem);
// "sub/Tweak.x:4:20: error: expected ';'", as compilers write it.
std::string textOf(const Problem& problem);

// Where the project was that was built.
struct BuiltProject {
  std::string folder;              // absolute
  std::vector<std::string> files;  // relative to it, with those in subfolders, sorted
};

// The problems in a log of Theos, make, the compilers, linkers, Logos, Perl and dpkg-deb, in the log's order.
// Colour sequences may be there, or what the clean-up leaves of them. A path that was printed in a
// subproject's folder is looked up among the project's files, and generated files are traced back to their
// sources. What only follows from errors above, such as make's "Error 2", is left out. A log without end
// gives a bounded number of problems of each kind.
std::vector<Problem> problemsIn(std::string_view log, const BuiltProject& project);
