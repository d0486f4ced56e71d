#include "support/Tree.h"
#include "tests/ui/Screens.h"
#include "ui/controls/UIButton.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>
#include <sys/stat.h>

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QListView>
#include <QRegularExpression>
#include <QScrollBar>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;
using finger::waitUntil;

// Of all that is visible, names, captions and tooltips in Latin letters; the project is called P.
QStringList latinTexts() {
  QStringList found;
  for (const QWidget* widget : UIScreen::mainScreen()->findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    for (const QString& text :
         {read->text(QAccessible::Name), read->text(QAccessible::Description), widget->toolTip(),
          widget->property("text").toString(), widget->property("placeholderText").toString()}) {
      // Without the keys.
      if (text.section(" (", 0, 0).contains(QRegularExpression("[A-Za-z]{2}"))) found.append(text);
    }
  }
  return found;
}

TEST_F(Screens, ControlsAreCalledInTheLanguageOfTheInterface) {
  device::speak("AR");
  makeProject(
      {{"x", "text"}, {"Makefile", "package:\n\t@echo 'x:1:1: error: e'; echo 'x:1:2: warning: w'\n"}});
  putFile(updateMarker, "");
  startActive();
  EXPECT_EQ(latinTexts(), QStringList());
  press(Qt::Key_E, Qt::ControlModifier);
  waitToSee(localized(text::projectFiles));
  EXPECT_EQ(latinTexts(), QStringList());
  press(Qt::Key_Escape);
  waitToSee("Files");
  press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  waitToSee(localized(text::searchResults));
  QTest::keyClicks(QApplication::focusWidget(), "1");
  waitToSee(localized(text::linesFound, {std::string("1")}));
  EXPECT_EQ(latinTexts(), QStringList());
  press(Qt::Key_Escape);
  openBuildScreen();
  build("Make Package");
  const std::string one = "1";
  waitToSee(localized(text::oneError, {one}) + localized(text::listComma) +
            localized(text::oneWarning, {one}));
  press(Qt::Key_F, Qt::ControlModifier);
  waitToSee("Find text");
  EXPECT_EQ(latinTexts(), QStringList());
  finger::type("none");
  waitToSee("No match");
  press(Qt::Key_Escape);
  tap("Back");
  tap("About");
  waitToSee("Donate");
  EXPECT_EQ(latinTexts().filter(QRegularExpression("^(?!Pelbo|شكرا|Tweakbench|/)")), QStringList());
  tap("Back");
  openEditor("x");
  press(Qt::Key_H, Qt::ControlModifier);
  waitToSee(localized(text::replaceBy));
  EXPECT_EQ(latinTexts(), QStringList());
  press(Qt::Key_G, Qt::ControlModifier);
  waitToSee(localized(text::confirm));
  EXPECT_EQ(latinTexts(), QStringList());
  press(Qt::Key_Escape);
  leaveEditor("Cancel");
}

TEST_F(Screens, TheEditorChangesNoByteButWhatIsTyped) {
  using namespace std::string_literals;
  std::string large;
  while (large.size() < 10'000'000) large += "0123456789 مشروع\n";
  const struct {
    const char* why;
    std::string bytes;
    std::string end = "\n";  // of a line that is typed
    std::size_t begin = 0;   // where typing goes first
  } table[] = {
      {"plain", "one\ntwo\n"},
      {"Windows", "one\r\ntwo\r\n", "\r\n"},
      {"mixed, mostly Windows", "one\r\ntwo\nthree\r\n", "\r\n"},
      {"mixed, mostly plain", "one\r\ntwo\nthree\n"},
      {"lone returns", "one\rtwo\r", "\r"},
      {"byte-order mark", "\xEF\xBB\xBFone\n", "\n", 3},
      {"zero byte", "one\0two\n"s},
      {"Unicode's own line ends", "a\u2028b\u2029c\u0085d\n"},
      {"noncharacters", "a\uFDD0b\uFFFEc\U0010FFFF\n"},
      {"blanks and tabs", "  one\t\n\xC2\xA0two"},
      {"no last end", "one\ntwo"},
      {"empty", ""},
      {"large", large},
  };
  const std::string folder = makeProject({{"f", ""}, {"script", "#!/bin/sh\n"}, {"latin", "caf\xE9"}});
  start();
  for (const auto& row : table) {
    SCOPED_TRACE(row.why);
    putFile(folder + "f", row.bytes);
    openEditor("f");
    leaveEditor("Save");
    EXPECT_TRUE(fileAt(folder + "f") == row.bytes);
    TextView& editor = openEditor("f");
    QTest::keyClicks(&editor, "x");
    QTest::keyClick(&editor, Qt::Key_Tab);
    QTest::keyClick(&editor, Qt::Key_Return);
    leaveEditor("Save");
    EXPECT_TRUE(fileAt(folder + "f") == std::string(row.bytes).insert(row.begin, "x\t" + row.end));
  }

  chmod((folder + "script").c_str(), 0755);
  TextView& script = openEditor("script");
  QTest::keyClick(&script, Qt::Key_End, Qt::ControlModifier);
  QTest::keyClicks(&script, "exit 0");
  for (int characters = 0; script.isModified() && characters < 6; ++characters)
    QTest::keyClick(&script, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(script.bytes(), "#!/bin/sh\n");
  QTest::keyClicks(&script, "exit 1");
  QTest::keyClick(&script, Qt::Key_S, Qt::ControlModifier);
  waitToSee("Reload");
  EXPECT_EQ(fileAt(folder + "script"), "#!/bin/sh\nexit 1");
  EXPECT_TRUE(std::filesystem::status(folder + "script").permissions() == std::filesystem::perms(0755));

  EXPECT_EQ(openEditor("latin").bytes(), "") << "no UTF-8, no text";
  leaveEditor("Cancel");
  EXPECT_EQ(fileAt(folder + "latin"), "caf\xE9");
  openEditor("latin");
  leaveEditor("Save");
  EXPECT_EQ(fileAt(folder + "latin"), "");
}

TEST_F(Screens, TheEditorLeavesAloneWhatIsTooLargeForIt) {
  const std::string folder =
      makeProject({{"long", std::string(2'000'000, 'x')}, {"huge", std::string(40'000'000, '\n')}});
  start();
  EXPECT_EQ(openEditor("long").bytes().size(), 2'000'000U);
  leaveEditor("Cancel");
  EXPECT_EQ(openEditor("huge").bytes(), "");
  leaveEditor("Save");
  EXPECT_EQ(sizeOfFile(folder + "huge"), 40'000'000U);
}

TEST_F(Screens, AnAddressThatNothingOpensIsShownAsTextToCopy) {
  inBothLanguages([this] {
    makeProject({{"Tweak.x", ""}});
    start();
    openAddressesOnHost();
    optionsMenu(text::openInFilza);
    waitToSee(localized(text::addressToOpen));
    QWidget* const address = finger::find("Address");
    const QRect area = address->rect().translated(address->mapTo(address->window(), QPoint()));
    EXPECT_TRUE(address->window()->rect().contains(area)) << "not all of it is on screen";
    address->setFocus();
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(address, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "filza://view/var/Tweakyard/Projects/P/");
    tap(localized(text::ok));
    openAddress("filza:///var/A #%?b/");
    waitToSee(localized(text::addressToOpen));
    tap(localized(text::copy));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "filza:///var/A %23%25%3Fb/");
  });
}

QColor colourAt(QWidget& widget, const QPoint& place) {
  return widget.grab().toImage().pixelColor(place);
}

void expectButtons(std::initializer_list<const char*> names, const QColor& ground, int radius, int border) {
  for (const char* name : names) {
    auto* const button = qobject_cast<UIButton*>(finger::find(name));
    EXPECT_EQ(colourAt(*button, {button->width() / 4, 6}), ground) << name;
    EXPECT_EQ(button->layer().cornerRadius, radius) << name;
    EXPECT_EQ(button->layer().borderWidth, border) << name;
  }
}

TEST_F(Screens, ControlsAndDialogsWearTheirColours) {
  const auto grey = [](int level) { return QColor(level, level, level); };
  makeProject({{"Tweak.x", ""}});
  start();
  QWidget* const list = finger::find("Files");
  EXPECT_EQ(colourAt(*list, {4, 10}), grey(53));
  EXPECT_EQ(colourAt(*list, {4, list->height() - 4}), grey(40));
  tap("Tweak.x");
  expectButtons({"Cancel"}, grey(32), 18, 0);
  expectButtons({"Save"}, grey(32), 20, 0);
  leaveEditor("Cancel");
  openBuildScreen();
  expectButtons({"Clear Log", "Respring"}, grey(80), 20, 1);
  expectButtons({"Make Package", "Make Package Install"}, grey(80), 26, 1);
  tap("Info");
  waitToSee("Tip");
  // Just inside the box, left of its title.
  const QRect screen = UIScreen::mainScreen()->rect();
  EXPECT_EQ(colourAt(*UIScreen::mainScreen(), screen.center() - QPoint(130, 30)), grey(40));
  tap(localized(text::cancel));
  tap("Back");
  tap("About");
  expectButtons({"Profile", "Donate", "Pelbo"}, QColor(64, 95, 223), 20, 0);
}

TEST_F(Screens, AHundredThousandFilesAreListedAtOnce) {
  const std::string folder = makeProject({{"Makefile", ""}});
  run_cmd(("cd " + folder + " && seq -f f%.0f 100000 | xargs touch").c_str());
  start();
  const auto* const list = qobject_cast<QListView*>(finger::find("Files"));
  EXPECT_EQ(list->model()->rowCount(), 100'001);
  const QString last = QString::fromStdString(MUArray().back());
  tap(last);
  waitToSee("Save");
  EXPECT_EQ(pickedFile(), folder + last.toStdString());
}

TEST_F(Screens, AConvertersFloodIsStillAMenu) {
  const std::string converter = "/usr/bin/ftt";
  installConverter();
  rename(converter.c_str(), "/usr/bin/ftt-away");
  for (const char* flood :
       {"yes | head -c 50000000",
        "yes $'0\\ny' | head -3; yes | head -c 50000000 | tr -d '\\n'; yes '' | head -9"}) {
    device::reset();
    makeProject({{"Tweak.x", ""}});
    putFile(converter, std::string("#!/bin/sh\n") + flood);
    chmod(converter.c_str(), 0755);
    start();
    projectMenu(text::addFlexPatch);
    waitToSee("Flex to Theos by Mossgrove & updated by Wexley88");
    EXPECT_TRUE(sees("y"));
    EXPECT_GT(sizeOfFile(device::application + "Getter.log"), 24'000'000U);
    tap("Cancel");
    waitToSee("Reload");
    delegate_.reset();
    removeItemAtPath(device::application + "Getter.log");
  }
  rename("/usr/bin/ftt-away", converter.c_str());
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
