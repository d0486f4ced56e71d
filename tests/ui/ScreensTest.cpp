#include "support/Cases.h"
#include "support/Tree.h"
#include "tests/ui/Screens.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>

#include <QListView>
#include <QScrollBar>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;

TEST_F(Screens, TheEditorChangesNoByteButWhatIsTyped) {
  const std::string file = makeProject({{"f", ""}}) + "f";
  start();
  expectCases("bytes", [&file](const Case& row) {
    putFile(file, row[1]);
    openEditor("f");
    leaveEditor("Save");
    EXPECT_EQ(fileAt(file), row[1]) << row[0];
    TextView& editor = openEditor("f");
    QTest::keyClicks(&editor, "x");
    QTest::keyClick(&editor, Qt::Key_Tab);
    QTest::keyClick(&editor, Qt::Key_Return);
    leaveEditor("Save");
    return fileAt(file);
  });
}

TEST_F(Screens, NamesThatOnlyLookAlikeAreNotTakenForEachOther) {
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

TEST_F(Screens, FilesKeepTheirPlaceInTheListWhenOneOfThemGoes) {
  const std::string folder = makeProject({});
  for (int number = 100; number < 180; ++number) putFile(folder + "f" + std::to_string(number), "");
  putFile(device::projects + "Other/f110", "");
  for (int number = 200; number < 280; ++number)
    putFile(device::projects + "Other/f" + std::to_string(number), "");
  chooseProject("P");
  start();
  QListView& list = *qobject_cast<QListView*>(finger::find("Files"));
  QScrollBar& place = *list.verticalScrollBar();
  const auto fileAtRow = [&list](int row) { return list.model()->index(row, 0).data().toString(); };
  const auto remove = [](const QString& file) {
    deleteMenu(file);
    waitToMiss(file);
  };
  list.setCurrentIndex(list.model()->index(40, 0));
  place.setValue(place.maximum() / 2);
  const int before = place.value();
  const QString current = fileAtRow(40);
  remove(fileAtRow(3));
  EXPECT_EQ(list.currentIndex().data().toString(), current);
  EXPECT_EQ(list.currentIndex().row(), 39);
  EXPECT_EQ(place.value(), before);
  remove(current);
  EXPECT_EQ(list.currentIndex().row(), 39) << "the one in its place";
  EXPECT_EQ(place.value(), before);

  tap("Choose Project");
  tap("Other");
  waitToSee("f200");
  EXPECT_EQ(place.value(), 0);
  EXPECT_FALSE(list.currentIndex().isValid());
}

}  // namespace
