// Importing a patch with converters that do not do what they should.
#include "support/SystemLog.h"
#include "support/Tree.h"
#include "tests/ui/Screens.h"

#include <algorithm>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;

class FlexImport : public OtherConverter {
 protected:
  // Puts a shell script in the converter's place; none for an empty one.
  void startWithConverter(const std::string& script) {
    folder_ = makeProject({{"Tweak.x", ""}});
    if (!script.empty()) putConverter(script);
    start();
    systemlog::take();
  }

  static bool wasLogged(const std::string& words) {
    const auto lines = systemlog::take();
    return std::any_of(lines.begin(), lines.end(),
                       [&words](const std::string& line) { return line.find(words) != std::string::npos; });
  }

  // The application goes on after an error: no dialog is left, and the next menu opens.
  static void expectLife() {
    waitToSee("Reload");
    tap("Delete");
    waitToSee(localized(text::deleteFilesOrProjects));
    tap(localized(text::cancel));
    waitToSee("Reload");
  }

  std::string folder_;
};

TEST_F(FlexImport, WithoutAConverterShowsNoMenuAndGoesOn) {
  startWithConverter("");
  projectMenu(text::addFlexPatch);
  expectLife();
  EXPECT_TRUE(wasLogged("the converter's menu has too few lines"));
  EXPECT_EQ(treeAt(folder_), (Tree{{"Tweak.x", ""}}));
}

TEST_F(FlexImport, OfAnEntryThatIsTooShortConvertsNothingAndGoesOn) {
  startWithConverter("printf 'x\\nab\\ny\\n   long\\n1\\n2\\n3'\n");
  projectMenu(text::addFlexPatch);
  waitToSee("   long");
  EXPECT_FALSE(sees("x") || sees("y") || sees("1"));
  EXPECT_TRUE(wasLogged("arrayOfComponents == (x, ab, y,    long, 1, 2, 3)")) << "the lines before any goes";
  tap("ab");
  expectLife();
  EXPECT_TRUE(wasLogged("the chosen entry is shorter than three characters"));
  EXPECT_EQ(treeAt(folder_), (Tree{{"Tweak.x", ""}}));
}

TEST_F(FlexImport, OfOneOfTwoEqualEntriesConvertsTwice) {
  removeItemAtPath("/var/mobile/answers");
  startWithConverter(
      "printf 'x\\n---a b c\\ny\\n---a b c\\n1\\n2\\n3\\n'\n"
      "read -r answer\necho \"$answer\" >> /var/mobile/answers\n"
      "mkdir /var/mobile/Documents/Wexley88 && cp /var/mobile/answers "
      "/var/mobile/Documents/Wexley88/Tweak.xm\n");
  projectMenu(text::addFlexPatch);
  tap("---a b c");
  waitToSee("FlexPatchabc");
  // The first pass reads the menu's own first line.
  EXPECT_EQ(treeAt(folder_), (Tree{{"Tweak.x", ""}, {"FlexPatchabc", "x\nabc\nabc\n"}}));
  removeItemAtPath("/var/mobile/answers");
}

TEST_F(FlexImport, WithNoListedProjectPutsTheResultBesideTheProjects) {
  startWithConverter(
      "printf 'x\\n---abc\\ny\\n1\\n2\\n3'\n"
      "mkdir /var/mobile/Documents/Wexley88 && echo made > /var/mobile/Documents/Wexley88/Tweak.xm\n");
  projectMenu(text::addFlexPatch);
  waitToSee("---abc");
  putFile(device::application + "Files.plist", device::emptyList());
  tap("---abc");
  expectLife();
  EXPECT_EQ(treeAt(device::projects), (Tree{{"FlexPatchabc", "made\n"}, {"P/", ""}, {"P/Tweak.x", ""}}));
}

TEST_F(FlexImport, FromAFloodIsStillAMenu) {
  for (const char* flood :
       {"yes | head -c 50000000",
        "yes $'0\\ny' | head -3; yes | head -c 50000000 | tr -d '\\n'; yes '' | head -9"}) {
    device::reset();
    startWithConverter(flood);
    projectMenu(text::addFlexPatch);
    waitToSee("Flex to Theos by Mossgrove & updated by Wexley88");
    EXPECT_TRUE(sees("y"));
    EXPECT_GT(sizeOfFile(device::application + "Getter.log"), 24'000'000U);
    tap("Cancel");
    expectLife();
    delegate_.reset();
    removeItemAtPath(device::application + "Getter.log");
  }
}

}  // namespace
