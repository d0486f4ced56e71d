// One line of the doctor's report.
#pragma once

#include <string>
#include <string_view>

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

inline Finding ok(std::string subject, std::string sentence) {
  return {Verdict::Ok, std::move(subject), std::move(sentence)};
}
inline Finding note(std::string subject, std::string sentence) {
  return {Verdict::Note, std::move(subject), std::move(sentence)};
}
inline Finding problem(std::string subject, std::string sentence) {
  return {Verdict::Problem, std::move(subject), std::move(sentence)};
}

// What to do, in words that more than one check has. The first is a whole sentence's.
inline constexpr std::string_view kNotWhole =
    "this copy of Theos is not whole; run \"git submodule update --init --recursive\" in its folder, or get "
    "it anew with \"git clone --recursive\".";
inline constexpr const char* kToolchain =
    "put a toolchain for Linux at toolchain/linux/iphone in Theos's folder";
inline constexpr const char* kWholeCopy = "get a whole copy of Theos with \"git clone --recursive\"";
inline constexpr const char* kSubmodules =
    "run \"git submodule update --init --recursive\" in Theos's folder, which needs a clone and no unpacked "
    "archive";

}  // namespace device::doctor
