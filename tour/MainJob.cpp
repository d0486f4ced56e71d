#include "tour/Finger.h"
#include "tour/Tour.h"
#include "ui/Localized.h"
#include "ui/controls/TextView.h"

#include <QTest>

namespace {

using finger::tap;
using finger::waitToSee;

void create(Album& album) {
  album.picture("main-empty");
  tap("New Project");
  waitToSee(localized(text::projectOptions));
  album.picture("project-sheet");
  tap(localized(text::createNewProject));
  waitToSee("~ root$");
  finger::type("Hello Tweak");
  album.picture("create-prompt");
  tap(localized(text::confirm));
  waitToSee(stops::project);
  album.picture("main-project");
}

void edit(Album& album) {
  tap("Tweak.x");
  auto* const editor = qobject_cast<TextView*>(finger::find("File text"));
  finger::waitUntil([editor] { return !editor->bytes().empty(); }, "the editor stays empty");
  album.picture("editor");
  QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(finger::find("Find text"), "hook");
  album.picture("editor-find");
  QTest::keyClicks(finger::find("Find text"), "nowhere");
  album.picture("editor-find-nothing");
  QTest::keyClick(finger::find("Find text"), Qt::Key_Escape);
  editor->setCursorPosition(0, 0);
  QTest::keyClicks(editor, "// Edited on the tour.");
  QTest::keyClick(editor, Qt::Key_Return);
  album.picture("editor-unsaved");
  // Typed text is not lost by leaving: a dialog asks.
  QTest::keyClick(editor, Qt::Key_Escape);
  waitToSee(localized(text::saveChanges));
  album.picture("close-unsaved");
  tap(localized(text::cancel));
  tap("Save");
  waitToSee("Reload");
}

void build(Album& album) {
  tap("Build");
  waitToSee("Make Package");
  album.picture("build-empty");
  tap("Make Package");
  waitToSee(localized(text::pleaseWait));
  album.pictureAtOnce("build-progress");
  finger::waitUntil([] { return !finger::sees(localized(text::pleaseWait)); }, "the build does not end");
  // The very first tap lets Theos update itself and builds nothing.
  if (!finger::sees(localized(text::goToDebFolder))) tap("Make Package");
  waitToSee(localized(text::goToDebFolder));
  album.picture("build-success");
  tap(localized(text::cancel));
  auto* const log = qobject_cast<TextView*>(finger::find("Build log"));
  if (log->bytes().empty()) throw finger::Missing("the build log is empty");
  album.picture("build-log");
  QTest::keyClick(log, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(finger::find("Find text"), "pack");
  album.picture("build-find");
  tap("Close find");
  tap("Info");
  waitToSee("Tip");
  album.picture("hint");
  tap(localized(text::cancel));
  tap("Back");
  waitToSee("Reload");
}

}  // namespace

void stops::mainJob(Album& album) {
  create(album);
  edit(album);
  build(album);
}
