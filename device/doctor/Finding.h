// One line of the doctor's report.
#pragma once

#include <string>

namespace device::doctor {

// A Problem stops builds; a Note is worth knowing and stops nothing.
enum class Verdict { Ok, Note, Problem };

struct Finding {
  Verdict verdict;
  // A word or two.
  std::string subject;
  // One sentence: what is wrong and what to do.
  std::string sentence;
};

}  // namespace device::doctor
