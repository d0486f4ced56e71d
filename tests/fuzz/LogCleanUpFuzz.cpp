// The clean-up in one pass against the replacements one after the other.
#include "build/LogCleanUp.h"
#include "fuzz/Fuzz.h"
#include "support/PlainCleanUp.h"

#include <initializer_list>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view log = asText(data, size);
  for (const BuildVariant variant : {BuildVariant::Package, BuildVariant::Install}) {
    const std::string plainly = cleanedPlainly(std::string(log), variant);
    mustHold(cleanedLog(log, variant) == plainly, "cleaned as by plain replacements", plainly);
  }
  return 0;
}
