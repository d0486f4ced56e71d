#include "device/launcher/Options.h"
#include "support/Cases.h"
#include "support/RefusalOf.h"

namespace {

// The action, its words, and every option that is not as without a command line.
std::string described(const Options& options) {
  const char* const actions[] = {"application", "exec", "shell",   "build",   "import", "export",
                                 "path",        "send", "history", "restore", "doctor", "text"};
  std::string text = actions[static_cast<int>(options.action)];
  for (const std::string& word : {options.project, options.when, options.phone, options.hostPath.string()}) {
    if (!word.empty()) text += " " + word;
  }
  for (const std::string& word : options.command) text += " [" + word + "]";
  if (options.device) text += ", device " + options.device->string();
  if (options.theos) text += ", Theos " + options.theos->string();
  const std::pair<bool, const char*> rest[] = {{options.isTheosWritable, "writable Theos"},
                                               {options.hasNetwork, "network"},
                                               {!options.isFiltered, "unfiltered"},
                                               {options.isAsApplication, "as the application"},
                                               {!options.hasInput, "no input"},
                                               {options.isQuick, "quick"},
                                               {options.kept == Kept::Backup, "backup"},
                                               {options.kept == Kept::Packages, "packages"},
                                               {options.isReplacing, "replacing"}};
  for (const auto& [isSo, words] : rest) {
    if (isSo) text.append(", ").append(words);
  }
  return text;
}

TEST(Options, ACommandLineSaysWhatIsDoneOrWhyNot) {
  expectCases("words", [](const Case& row) {
    std::vector<std::string> words{"tweakbench"};
    if (!row[0].empty()) {
      for (const std::string& word : splitAt(row[0], " "))
        words.push_back(replaceAll(replaceAll(word, "␣", " "), "∅", ""));
    }
    std::vector<const char*> arguments;
    for (const auto& word : words) arguments.push_back(word.c_str());
    std::string outcome;
    const std::string refusal = refusalOf(
        [&] { outcome = described(parseOptions(static_cast<int>(arguments.size()), arguments.data())); });
    return outcome.empty() ? refusal : outcome;
  });
}

}  // namespace
