#include "core/FileManager.h"
#include "tour/Finger.h"
#include "tour/Tour.h"
#include "ui/Localized.h"
#include "workspace/CurrentProject.h"
#include "workspace/Projects.h"

#include <string>

namespace {

using finger::tap;
using finger::waitToSee;
using stops::returnBy;

constexpr const char* patchFolder = "/var/mobile/Library/Flex";
constexpr const char* patchList = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>patches</key><array>
<dict><key>name</key><string>Premium for the player</string><key>units</key><array/></dict>
<dict><key>name</key><string>No advertisements</string><key>units</key><array/></dict>
<dict><key>name</key><string>وضع ليلي</string><key>units</key><array/></dict>
</array></dict></plist>)";

// Opens the entry of a menu of the main screen.
void choose(const QString& menu, const TextPair& title, const TextPair& entry) {
  tap(menu);
  waitToSee(localized(title));
  tap(localized(entry));
}

void fromNewProject(const TextPair& entry) {
  choose("New Project", text::projectOptions, entry);
}

void fromOptions(const TextPair& entry) {
  choose("Project Options", text::extraOptions, entry);
}

// The dialog `title`, closed by `button`.
void dialog(Album& album, const char* name, const QString& title, const QString& button) {
  album.picture(name, title);
  returnBy(button);
}

void cancelled(Album& album, const char* name, const QString& title) {
  dialog(album, name, title, localized(text::cancel));
}

void confirmed(Album& album, const char* name, const QString& title) {
  dialog(album, name, title, localized(text::ok));
}

void files(Album& album) {
  tap("New Project");
  cancelled(album, "project-sheet", localized(text::projectOptions));
  fromNewProject(text::createHeaderFile);
  cancelled(album, "header-prompt", "~ root$");
  fromNewProject(text::changeFileName);
  album.picture("rename-sheet", "Makefile");
  tap("Makefile");
  cancelled(album, "rename-prompt", "~ root$");
  createDirectoryAtPath(patchFolder);
  writeToFileAtomically(std::string(patchFolder) + "/patches.plist", patchList);
  fromNewProject(text::addFlexPatch);
  dialog(album, "flex-sheet", localized(text::addFlexPatch), "Cancel");
}

void deletion(Album& album) {
  tap("Delete");
  cancelled(album, "delete-sheet", localized(text::deleteFilesOrProjects));
  choose("Delete", text::deleteFilesOrProjects, text::deleteOptions);
  cancelled(album, "delete-options-sheet", localized(text::deleteAllProjects));
}

void paths(Album& album) {
  fromOptions(text::importFromPath);
  cancelled(album, "import-prompt", localized(text::import_));
  fromOptions(text::importFromPath);
  finger::type("no/such/path");
  tap(localized(text::import_));
  confirmed(album, "no-data", localized(text::noData));
  fromOptions(text::exportProjectToPath);
  cancelled(album, "export-prompt", localized(text::export_));
}

void backups(Album& album) {
  fromOptions(text::backUp);
  confirmed(album, "backup-done", localized(text::done));
  fromOptions(text::restore);
  album.picture("restore-sheet", stops::project);
  tap(stops::project);
  confirmed(album, "restore-done", localized(text::done));
  fromOptions(text::deleteAllBackups);
  album.picture("delete-backups", localized(text::confirm));
  tap(localized(text::confirm));
  confirmed(album, "backups-deleted", localized(text::done));
  // Without a listed project there is nothing to back up.
  setListedProject("gone");
  fromOptions(text::backUp);
  confirmed(album, "backup-error", localized(text::error));
  setListedProject(stops::project);
}

}  // namespace

void stops::menus(Album& album) {
  tap("Choose Project");
  cancelled(album, "choose-sheet", localized(text::loadProject));
  // A folder that the build has made.
  tap("Reload");
  tap(".theos");
  confirmed(album, "not-supported", QString::fromUtf8(text::notSupportedYet));
  files(album);
  deletion(album);
}

void stops::options(Album& album) {
  tap("Project Options");
  cancelled(album, "options-sheet", localized(text::extraOptions));
  paths(album);
  backups(album);
  fromOptions(text::changeProjectName);
  cancelled(album, "project-name-prompt", "Change");
  fromOptions(text::changeLanguage);
  cancelled(album, "language-sheet", QString::fromUtf8(text::autoLanguage));
}
