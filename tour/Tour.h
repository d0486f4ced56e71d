// The parts of the guided tour, and its pictures.
#pragma once

#include <cstdio>
#include <string>

#include <QString>

// Saves numbered pictures of the whole screen in a folder of the device, and reports their paths.
class Album {
 public:
  // Reports go to `report`, since the application redirects its standard streams onto its logs.
  explicit Album(FILE* report);

  // A suffix for the names of the following pictures: the language.
  void setEnding(std::string ending) { ending_ = std::move(ending); }

  // The screen after pending layout; where it is given, once `shown` is to be seen.
  void picture(const std::string& name, const QString& shown = {});
  // The screen now, for what would be gone by then.
  void pictureAtOnce(const std::string& name);

 private:
  FILE* report_;
  std::string ending_;
  int number_ = 0;
};

// Each begins and ends on the main screen.
namespace stops {

inline constexpr const char* project = "HelloTweak";

// Taps what leads back to the main screen, and waits for that.
void returnBy(const QString& name);

// From no project at all to a package in seven pictures: creates the project, edits a file of it, builds it.
void mainJob(Album& album);
// The rest of the editor and the build screen, on the project of the main job.
void mainJobInDetail(Album& album);

// Every dialog that the main screen leads to.
void menus(Album& album);
void options(Album& album);

// Rarer states: the about screen, a project with many files and a long log, no project chosen, no Theos, an
// address that nothing opens.
void otherScreens(Album& album);

// Deletes every project.
void end(Album& album);

}  // namespace stops
