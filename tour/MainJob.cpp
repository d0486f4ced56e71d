#include "tour/Finger.h"
#include "tour/Tour.h"
#include "ui/Localized.h"
#include "ui/controls/TextView.h"

#include <QTest>

namespace {

using finger::tap;
using finger::waitToSee;

void buildOnce() {
  tap("Make Package");
  waitToSee(localized(text::pleaseWait));
  finger::waitUntil([] { return !finger::sees(localized(text::pleaseWait)); }, "the build does not end");
}

TextView& openEditor() {
  tap("Tweak.x");
  auto* const editor = qobject_cast<TextView*>(finger::find("File text"));
  finger::waitUntil([editor] { return !editor->bytes().empty(); }, "the editor stays empty");
  return *editor;
}

}  // namespace

void stops::mainJob(Album& album) {
  album.picture("main-empty");
  tap("New Project");
  tap(localized(text::createNewProject));
  waitToSee("~ root$");
  finger::type("Hello Tweak");
  album.picture("create-prompt");
  tap(localized(text::confirm));
  album.picture("main-project", stops::project);

  TextView& editor = openEditor();
  album.picture("editor");
  editor.setCursorPosition(0, 0);
  QTest::keyClicks(&editor, "// Edited on the tour.");
  QTest::keyClick(&editor, Qt::Key_Return);
  returnBy("Save");

  tap("Build");
  album.picture("build-empty", "Make Package");
  buildOnce();
  // The very first tap lets Theos update itself and builds nothing.
  if (!finger::sees(localized(text::goToDebFolder))) buildOnce();
  album.picture("build-success", localized(text::goToDebFolder));
  tap(localized(text::cancel));
  if (qobject_cast<TextView*>(finger::find("Build log"))->bytes().empty())
    throw finger::Missing("the build log is empty");
  album.picture("build-log");
  returnBy("Back");
}

void stops::mainJobInDetail(Album& album) {
  TextView& editor = openEditor();
  QTest::keyClick(&editor, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(finger::find("Find text"), "hook");
  album.picture("editor-find");
  QTest::keyClicks(finger::find("Find text"), "nowhere");
  album.picture("editor-find-nothing");
  QTest::keyClick(finger::find("Find text"), Qt::Key_Escape);
  QTest::keyClicks(&editor, "// Not saved.");
  album.picture("editor-unsaved");
  QTest::keyClick(&editor, Qt::Key_Escape);
  album.picture("close-unsaved", localized(text::saveChanges));
  returnBy(localized(text::discard));

  tap("Build");
  tap("Make Package");
  waitToSee(localized(text::pleaseWait));
  album.pictureAtOnce("build-progress");
  waitToSee(localized(text::goToDebFolder));
  tap(localized(text::cancel));
  QTest::keyClick(finger::find("Build log"), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(finger::find("Find text"), "pack");
  album.picture("build-find");
  tap("Close find");
  tap("Info");
  album.picture("hint", "Tip");
  tap(localized(text::cancel));
  returnBy("Back");

  // From an error of a build to its line and back.
  TextView& broken = openEditor();
  broken.setCursorPosition(0, 0);
  QTest::keyClicks(&broken, "int broken = ;");
  QTest::keyClick(&broken, Qt::Key_Return);
  returnBy("Save");
  tap("Build");
  buildOnce();
  const QString error = QStringLiteral("Tweak.x:1:14: error: expected expression");
  tap(localized(text::nextProblem));
  album.picture("build-problems");
  tap(error);
  album.picture("editor-problem", "Tweak.x");
  QTest::keyClicks(finger::find("File text"), "1");
  tap("Save");
  tap("Make Package");
  waitToSee(localized(text::goToDebFolder));
  tap(localized(text::cancel));
  returnBy("Back");
}
