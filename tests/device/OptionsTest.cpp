#include "device/launcher/Options.h"
#include "support/Cases.h"
#include "support/RefusalOf.h"

namespace {

using Words = std::vector<std::string>;

Options parse(const Words& words) {
  std::vector<const char*> arguments{"tweakbench"};
  for (const auto& word : words) arguments.push_back(word.c_str());
  return parseOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, ACommandLineSaysWhatIsDoneOrWhyNot) {
  expectCases("words", [](const Case& row) -> std::string {
    Words words;
    for (const std::string& word : splitAt(row[0], " "))
      words.push_back(replaceAll(replaceAll(word, "␣", " "), "∅", ""));
    std::string outcome;
    const std::string refusal = refusalOf([&] {
      const Options options = parse(words);
      outcome = options.action == Options::Action::Execute ? "exec" : "build " + options.project;
      for (const std::string& word : options.command) outcome += " [" + word + "]";
    });
    return outcome.empty() ? refusal : outcome;
  });
}

TEST(Options, EveryWallStaysUnlessAnOptionOpensIt) {
  const auto walls = [](const Words& words) {
    const Options options = parse(words);
    EXPECT_TRUE(options.isFiltered);
    return std::pair(!options.isTheosWritable, !options.hasNetwork);
  };
  EXPECT_EQ(walls({}), std::pair(true, true));
  EXPECT_EQ(walls({"--device=/a b", "--theos", "t", "--writable-theos", "shell"}), std::pair(false, true));
  EXPECT_EQ(walls({"--network", "exec", "true"}), std::pair(true, false));
  EXPECT_EQ(parse({"--device=/a b"}).device, "/a b");
}

}  // namespace
