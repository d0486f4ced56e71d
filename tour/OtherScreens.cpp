#include "core/FileManager.h"
#include "core/Text.h"
#include "platform/UIApplication.h"
#include "tour/Finger.h"
#include "tour/Tour.h"
#include "ui/Localized.h"
#include "ui/controls/TextView.h"
#include "ui/dialogs/Dialogs.h"
#include "workspace/Paths.h"

#include <string>

#include <QTest>

namespace {

using finger::tap;
using finger::waitToSee;
using stops::returnBy;

constexpr const char* busyProject = "Busy";
constexpr const char* longName = "ATweakWithANameThatIsLongerThanWhatAPhoneCanShowInOneLineOfAMenu";
constexpr int manyProjects = 20;
constexpr int manyFiles = 60;
constexpr const char* chattyMakefile = R"(package:
	@for n in $$(seq 1000 3000); do printf '\033[0;32m> \033[1;39mCompiling\033[m source number %s of a project that has quite a lot of them\n' $$n; done
	@printf 'خطأ: Tweak.x:12:3: error: unknown type name\n'
	@printf 'Interface/View.xm:9:9: error: use of undeclared identifier '"'colour'"'\n'
	@printf 'Interface/View.xm:5:17: warning: unused variable '"'count'"' [-Wunused-variable]\n'
)";
constexpr const char* code = R"(#import <UIKit/UIKit.h>

/* Colours for every part of Logos. */
%hook UIView
static int const count = 5 % 3;

- (void)setFrame:(CGRect)frame animated:(BOOL)animated {
	%orig;
	[self setTintColor:colour];
	NSLog(@"%@ moved to %d", self, count);  // said once
}

%new
- (id)nameFor:(SEL)selector {
	return animated ? NSStringFromSelector(@selector(setFrame:animated:)) : nil;
}

%end
)";

std::string folderOf(const std::string& project) {
  return fill(paths::project, {project});
}

void makeMuch() {
  for (int number = 1; number <= manyProjects; ++number)
    createDirectoryAtPath(folderOf("Project" + std::to_string(number)));
  createDirectoryAtPath(folderOf(longName));
  createDirectoryAtPath(folderOf("مشروع"));
  const std::string busy = folderOf(busyProject);
  createDirectoryAtPath(busy);
  for (int number = 1; number <= manyFiles; ++number)
    createFileAtPath(busy + "/Source" + std::to_string(number) + ".xm");
  createFileAtPath(busy + '/' + longName + ".xm");
  createFileAtPath(busy + "/واجهة.h");
  writeToFileAtomically(busy + "/Makefile", chattyMakefile);
  createDirectoryAtPath(busy + "/Interface");
  writeToFileAtomically(busy + "/Interface/View.xm", code);
}

void muchOfEverything(Album& album) {
  makeMuch();
  tap("Choose Project");
  album.picture("choose-long-sheet", localized(text::loadProject));
  tap(busyProject);
  album.picture("main-long", busyProject);
  QTest::keyClick(UIApplication::sharedApplication()->focusWidget(), Qt::Key_Tab);
  album.picture("main-focus");
  tap("Build");
  tap("Make Package");
  waitToSee(localized(text::pleaseWait));
  finger::waitUntil([] { return finger::sees("Make Package"); }, "the build does not end");
  auto* const log = qobject_cast<TextView*>(finger::find("Build log"));
  album.picture("build-long-log");
  log->setFocus();
  QTest::keyClick(log, Qt::Key_A, Qt::ControlModifier);
  album.picture("build-log-selected");
  QTest::keyClick(log, Qt::Key_End, Qt::ControlModifier);
  album.picture("build-log-end");
  returnBy("Back");
}

// From the main screen to a place in a file, and from there to others.
void places(Album& album) {
  tap(text::goToFile.english);
  album.picture("go-to-file", localized(text::projectFiles));
  finger::type("new/Other.xm");
  album.picture("go-to-new-file");
  returnBy(localized(text::cancel));
  tap(text::searchInProject.english);
  finger::type("count");
  album.picture("search-in-project", localized(text::linesFound, {std::string("3")}));
  tap("Interface/View.xm:10: NSLog(@\"%@ moved to %d\", self, count);  // said once");
  album.picture("editor-place", "View.xm");
  auto* const editor = finger::find("File text");
  QTest::keyClick(editor, Qt::Key_F8, Qt::ShiftModifier);
  album.picture("editor-problem");
  QTest::keyClick(editor, Qt::Key_H, Qt::ControlModifier);
  finger::type("frame");
  QTest::keyClicks(finger::find(localized(text::replaceBy)), "bounds");
  album.picture("editor-replace");
  tap(localized(text::replaceAll));
  album.picture("editor-replaced");
  tap("Close find");
  tap(localized(text::goToLine));
  album.picture("go-to-line", localized(text::lineNumber));
  tap(localized(text::cancel));
  returnBy("Save");
}

void noneChosen(Album& album) {
  tap("Delete");
  album.picture("delete-long-sheet", localized(text::deleteFilesOrProjects));
  returnBy(localized(text::deleteCurrentProject));
  finger::waitUntil([] { return !finger::sees(busyProject); }, "the project stays");
  album.picture("main-none-chosen");
}

}  // namespace

void stops::otherScreens(Album& album) {
  tap("About");
  album.picture("about", localized(text::developedBy));
  returnBy("Back");
  muchOfEverything(album);
  places(album);
  noneChosen(album);
  showNotice(localized(text::couldNotFindTheos), localized(text::mustInstallTheos));
  album.picture("missing-theos", localized(text::mustInstallTheos));
  tap(localized(text::ok));
  showToCopy(localized(text::addressToOpen),
             "https://example.com/an/address/that/no/program/of/the/host/opens?with=" + QString(60, 'x'));
  album.picture("address", "Address");
  returnBy(localized(text::ok));
}

void stops::end(Album& album) {
  tap("Delete");
  tap(localized(text::deleteOptions));
  tap(localized(text::deleteAllProjects));
  album.picture("delete-all", localized(text::imSure));
  returnBy(localized(text::imSure));
}
