#include "device/launcher/Options.h"
#include "support/RefusalOf.h"

namespace {

using Words = std::vector<std::string>;

Options parse(const Words& words) {
  std::vector<const char*> arguments{"tweakbench"};
  for (const auto& word : words) arguments.push_back(word.c_str());
  return parseOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, ACommandKeepsItsArgumentsAsTheyAre) {
  const struct {
    Words words;
    Words command;
  } rows[] = {
      {{"exec", "make", "--version", "-j2"}, {"make", "--version", "-j2"}},
      {{"exec", "echo", "--device", "x", "--help"}, {"echo", "--device", "x", "--help"}},
      {{"exec", "--", "-x"}, {"-x"}},
      {{"exec", "sh", "--", "a"}, {"sh", "--", "a"}},
      {{"exec", "echo", "", "a b", "*"}, {"echo", "", "a b", "*"}},
      {{"--device", "d", "--network", "exec", "shell"}, {"shell"}},
  };
  for (const auto& row : rows) {
    const Options options = parse(row.words);
    EXPECT_EQ(options.action, Options::Action::Execute);
    EXPECT_EQ(options.command, row.command);
  }
}

TEST(Options, EveryWallStaysUnlessAnOptionOpensIt) {
  const auto walls = [](const Words& words) {
    const Options options = parse(words);
    EXPECT_EQ(options.filter, Options::Filter::On);
    return std::pair(options.theosAccess == Options::Theos::ReadOnly,
                     options.network == Options::Network::Off);
  };
  EXPECT_EQ(walls({}), std::pair(true, true));
  EXPECT_EQ(walls({"--device=/a b", "--theos", "t", "--writable-theos", "shell"}), std::pair(false, true));
  EXPECT_EQ(walls({"--network", "exec", "true"}), std::pair(true, false));
  EXPECT_EQ(parse({"--device=/a b"}).device, "/a b");
}

TEST(Options, CopiesNameTheirEnds) {
  const Options in = parse({"--device", "d", "import", "--", "--odd"});
  EXPECT_EQ(in.action, Options::Action::Import);
  EXPECT_EQ(in.hostPath, "--odd");
  EXPECT_FALSE(in.isReplacing);
  EXPECT_TRUE(parse({"import", "--replace", "a"}).isReplacing);
  const Options out = parse({"export", "My", "a b"});
  EXPECT_EQ(out.project + "|" + out.hostPath.string(), "My|a b");
}

TEST(Options, ABuildHandsVariablesAndGoalsToMake) {
  const struct {
    Words words;
    Words arguments;
  } rows[] = {
      {{"build", "P"}, {"package"}},
      {{"build", "P", "A=1", "B=x y=z"}, {"A=1", "B=x y=z", "package"}},
      {{"build", "P", "A=", "--", "clean", "-j2"}, {"A=", "clean", "-j2"}},
      {{"build", "P", "--"}, {"package"}},
  };
  for (const auto& row : rows) {
    const Options options = parse(row.words);
    EXPECT_EQ(options.action, Options::Action::Build);
    EXPECT_EQ(options.project, "P");
    EXPECT_EQ(options.command, row.arguments);
  }
}

TEST(Options, NonsenseIsRefusedWithItsReason) {
  const std::pair<Words, const char*> rows[] = {
      {{"exec"}, "exec needs a command"},
      {{"exec", "--"}, "exec needs a command"},
      {{"shell", "x"}, "shell takes no"},
      {{"open"}, "no command open"},
      {{"--devise", "x"}, "no option --devise"},
      {{"--device"}, "--device"},
      {{"--device", ""}, "needs a folder"},
      {{"--theos", ""}, "needs a folder"},
      {{"import"}, "import [--replace] HOSTPATH"},
      {{"import", "a", "b"}, "import [--replace] HOSTPATH"},
      {{"import", ""}, "import [--replace] HOSTPATH"},
      {{"export", "a"}, "export NAME HOSTPATH"},
      {{"build"}, "build NAME"},
      {{"build", "--", "clean"}, "build NAME"},
      {{"build", "P", "clean"}, "goals come"},
      {{"build", "P", "-j=2"}, "goals come"},
      {{"send"}, "send NAME [USER@HOST]"},
      {{"send", "P", ""}, "send NAME [USER@HOST]"},
      {{"path", ""}, "path [NAME]"},
      {{"import", "--replace"}, "import [--replace] HOSTPATH"},
      {{"doctor", "now"}, "doctor [--quick]"},
      {{"doctor", "--quick", "now"}, "doctor [--quick]"},
  };
  for (const auto& [words, reason] : rows) expectRefusal([&words] { parse(words); }, reason);
}

}  // namespace
