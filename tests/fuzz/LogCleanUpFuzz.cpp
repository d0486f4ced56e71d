// The clean-up in one pass against the replacements one after the other; the problems of whatever it is.
#include "build/BuildProblem.h"
#include "build/LogCleanUp.h"
#include "fuzz/Fuzz.h"
#include "support/PlainCleanUp.h"

#include <algorithm>
#include <initializer_list>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view log = asText(data, size);
  for (const BuildVariant variant : {BuildVariant::Package, BuildVariant::Install}) {
    const std::string plainly = cleanedPlainly(std::string(log), variant);
    mustHold(cleanedLog(log, variant) == plainly, "cleaned as by plain replacements", plainly);
  }
  const auto ends = static_cast<std::size_t>(std::count(log.begin(), log.end(), '\n'));
  for (const Problem& problem : problemsIn(log, {"/p", {"Tweak.x", "sub/B.m"}}))
    mustHold(problem.logLine <= ends && problem.caretLine <= ends && !problem.message.empty(),
             "problems are in the log", textOf(problem));
  return 0;
}
