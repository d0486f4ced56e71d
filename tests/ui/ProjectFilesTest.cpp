// The files of a project, added, renamed, imported and deleted through the menus, and what is then on disk,
// to the byte.
#include "support/Tree.h"
#include "tests/ui/Screens.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>
#include <set>

#include <QElapsedTimer>
#include <QListView>
#include <QScrollBar>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;
using finger::waitUntil;

const std::string patches = "/var/mobile/Library/Flex/patches.plist";
const std::string premium =
    "// Premium\n// To build it, rename the file so that it ends in .x or .xm. A Makefile that lists its "
    "sources\n// instead "
    "of taking every one beside it has to list the file.\n\n#import <UIKit/UIKit.h>\n\n%hook Account\n\n- "
    "(BOOL)isPremium {\n\treturn "
    "YES;\n}\n\n%end\n";

class ProjectFiles : public Screens {
 protected:
  ~ProjectFiles() override { removeItemAtPath(patches); }

  static QListView& list() { return *UIScreen::mainScreen()->findChild<QListView*>("TableVV"); }

  static std::set<std::string> shownFiles() {
    std::set<std::string> names;
    for (int row = 0; row < list().model()->rowCount(); ++row)
      names.insert(list().model()->index(row, 0).data().toString().toStdString());
    return names;
  }

  // The folder holds exactly `files`, and the main screen lists exactly them.
  static void expectFiles(const std::string& folder, const Tree& files, const std::string& after) {
    EXPECT_EQ(treeAt(folder), files) << after;
    std::set<std::string> names;
    for (const auto& [name, contents] : files) names.insert(name);
    EXPECT_EQ(shownFiles(), names) << after;
  }

  static void addHeader(const QString& name) {
    projectMenu(text::createHeaderFile);
    finger::type(name);
    tap(localized(text::confirm));
  }

  static std::string firstWord(const TextPair& pair) {
    const std::string title = Languages(pair);
    return title.substr(0, title.find(' '));
  }
};

TEST_F(ProjectFiles, GoFromAFreshProjectToItsDeletionInBothLanguages) {
  putFile(patches,
          device::emptyList(
              "<key>patches</key><array><dict><key>name</key><string>Premium</string><key>units</key><array>"
              "<dict><key>class</key><string>Account</string><key>method</key>"
              "<string>- (BOOL)isPremium</string><key>returns</key><true/></dict></array></dict></array>"));
  inBothLanguages([this] {
    start();
    projectMenu(text::createNewProject);
    finger::type("Way");
    tap(localized(text::confirm));
    waitToSee("Way.plist");
    const std::string folder = device::projects + "Way";
    Tree files = treeAt(folder);
    ASSERT_EQ(files.size(), 4U);
    const std::string tweak = files["Tweak.x"];
    ASSERT_TRUE(tweak.ends_with("%end\n"));

    addHeader("First One");
    waitToSee("FirstOne.h");
    addHeader("Second");
    waitToSee("Second.h");
    files["FirstOne.h"] = files["Second.h"] = "";
    files["Tweak.x"] = "#import Second.h\n#import FirstOne.h\n" + tweak;
    expectFiles(folder, files, "two headers");

    projectMenu(text::changeFileName);
    waitToSee(localized(text::whichOne));
    tap("Second.h");
    waitToSee("~ root$");
    // The field holds the name as it is; what is typed goes behind it.
    finger::type("p p");
    tap(localized(text::confirm));
    waitToSee("Second.hpp");
    files.erase("Second.h");
    files["Second.hpp"] = "";
    expectFiles(folder, files, "a new name");

    projectMenu(text::addFlexPatch);
    waitToSee("Flex to Theos by Mossgrove & updated by Wexley88");
    EXPECT_TRUE(sees(localized(text::addFlexPatch)));
    EXPECT_TRUE(sees("Cancel")) << "the same in both languages";
    tap("\033  0 - Premium");
    waitToSee("FlexPatch0-Premium");
    files["FlexPatch0-Premium"] = premium;
    expectFiles(folder, files, "an import");
    EXPECT_FALSE(fileExistsAtPath("/var/mobile/Documents/Wexley88"));
    EXPECT_FALSE(fileExistsAtPath(device::application + "Getter.log"));
    EXPECT_TRUE(fileExistsAtPath(device::application + "titleANDObj.log"));

    deleteMenu("FirstOne.h");
    waitToMiss("FirstOne.h");
    files.erase("FirstOne.h");
    EXPECT_EQ(treeAt(folder), files);

    deleteMenu(localized(text::deleteCurrentProject));
    waitToMiss("Way");
    EXPECT_EQ(treeAt(device::projects), Tree());
    EXPECT_TRUE(shownFiles().empty());
    EXPECT_EQ(currentProject(), std::nullopt);
    EXPECT_EQ(listedProject(), "Way");
  });
}

TEST_F(ProjectFiles, AreDeletedWithTheirProjectsOneByOneOrAllInBothLanguages) {
  inBothLanguages([this] {
    // The titles of the actions go through the deletion first: their first words name these.
    const std::string byOptions = firstWord(text::deleteOptions);
    const std::string byAll = firstWord(text::deleteAllProjects);
    Tree all{{"P/", ""},  {"P/keep", "k"},  {"P/go", ""},      {"P/" + byOptions, ""}, {"Q/", ""},
             {"Q/x", ""}, {".unseen/", ""}, {".unseen/x", ""}, {byAll + "/", ""}};
    for (const auto& [name, contents] : all) {
      if (name.ends_with('/')) {
        createDirectoryAtPath(device::projects + name);
      } else {
        putFile(device::projects + name, contents);
      }
    }
    chooseProject("P");
    setListedProject("P");
    start();
    deleteMenu("go");
    waitToMiss("go");
    all.erase("P/go");
    EXPECT_EQ(treeAt(device::projects), all);

    deleteMenu(localized(text::deleteOptions));
    waitToSee(localized(text::deleteAllProjects));
    all.erase("P/" + byOptions);
    EXPECT_EQ(treeAt(device::projects), all) << "the title as a file's name";
    tap("Q");
    waitUntil([] { return !fileExistsAtPath(device::projects + "Q"); }, "Q is still there");
    all.erase("Q/");
    all.erase("Q/x");
    EXPECT_EQ(treeAt(device::projects), all);
    waitUntil([] { return shownFiles() == std::set<std::string>{"keep"}; },
              "the list is not brought up to date");

    const auto askForAll = [] {
      deleteMenu(localized(text::deleteOptions));
      tap(localized(text::deleteAllProjects));
      waitToSee(localized(text::deleteAllProjectsQuestion));
    };
    askForAll();
    all.erase(byAll + "/");
    EXPECT_EQ(treeAt(device::projects), all) << "the title as a project's name";
    tap(localized(text::cancel));
    waitToSee("Reload");
    EXPECT_EQ(treeAt(device::projects), all);
    EXPECT_EQ(currentProject(), "P");
    askForAll();
    tap(localized(text::imSure));
    waitToMiss("P");
    EXPECT_EQ(treeAt(device::projects), (Tree{{".unseen/", ""}, {".unseen/x", ""}}));
    EXPECT_EQ(currentProject(), std::nullopt);
  });
}

TEST_F(ProjectFiles, WhoseNamesOnlyLookAlikeAreNotTakenForEachOther) {
  makeProject({{"a\xFF", ""}, {"a\xFE", ""}, {"keep", ""}});
  for (const char* project : {"b\xFF", "b\xFE"}) putFile(device::projects + project + "/x", "");
  start();
  const auto chooseFirstLike = [](const QString& title) {
    const auto dialog = topDialog();
    const auto index = dialog->buttonTitles().indexOf(title);
    ASSERT_GE(index, 0) << title.toStdString();
    dialog->forceActionAtIndex(static_cast<std::size_t>(index));
  };
  tap("Delete");
  waitToSee(localized(text::deleteFilesOrProjects));
  const auto looksLike = [](const std::string& name) { return name[0] == 'a'; };
  const std::string chosenFile = *std::find_if(MUArray().begin(), MUArray().end(), looksLike);
  chooseFirstLike(QString("a\uFFFD"));
  Tree left = treeAt(device::projects + "P");
  EXPECT_EQ(left.size(), 2U);
  EXPECT_EQ(left.count(chosenFile), 0U);

  waitToSee("Reload");
  deleteMenu(localized(text::deleteOptions));
  waitToSee(localized(text::deleteAllProjects));
  chooseFirstLike(QString("b\uFFFD"));
  EXPECT_EQ(projectNames().size(), 2U) << "P and one of the two";
}

TEST_F(ProjectFiles, KeepTheirPlaceInTheListWhenOneOfThemGoes) {
  const std::string folder = makeProject({});
  for (int number = 100; number < 180; ++number) putFile(folder + "f" + std::to_string(number), "");
  putFile(device::projects + "Other/f110", "");
  for (int number = 200; number < 280; ++number)
    putFile(device::projects + "Other/f" + std::to_string(number), "");
  chooseProject("P");
  start();
  QScrollBar& place = *list().verticalScrollBar();
  const auto fileAtRow = [](int row) { return list().model()->index(row, 0).data().toString(); };
  const auto remove = [](const QString& file) {
    deleteMenu(file);
    waitToMiss(file);
  };
  list().setCurrentIndex(list().model()->index(40, 0));
  place.setValue(place.maximum() / 2);
  const int before = place.value();
  const QString current = fileAtRow(40);
  QElapsedTimer clock;
  clock.start();
  remove(fileAtRow(3));
  EXPECT_GE(clock.elapsed(), 100) << "the screen is brought up to date a moment later";
  EXPECT_EQ(list().currentIndex().data().toString(), current);
  EXPECT_EQ(list().currentIndex().row(), 39);
  EXPECT_EQ(place.value(), before);
  remove(current);
  EXPECT_EQ(list().currentIndex().row(), 39) << "the one in its place";
  EXPECT_EQ(place.value(), before);

  tap("Choose Project");
  tap("Other");
  waitToSee("f200");
  EXPECT_EQ(place.value(), 0);
  EXPECT_FALSE(list().currentIndex().isValid());
}

TEST_F(ProjectFiles, AreNotBroughtBackByTheEditorWhenTheirProjectIsGone) {
  makeProject({{"Tweak.x", "text"}});
  start();
  TextView& editor = openEditor("Tweak.x");
  QTest::keyClicks(&editor, "x");
  QTest::keyClick(finger::find("Save"), Qt::Key_Delete);
  EXPECT_FALSE(sees(localized(text::deleteFilesOrProjects)));
  deleteListedProject();
  leaveEditor("Save");
  EXPECT_EQ(treeAt(device::projects), Tree());
  tap("Reload");
  EXPECT_TRUE(shownFiles().empty());
}

}  // namespace
