// The parts of the guided tour, and the pictures that it takes on its way.
#pragma once

#include <cstdio>
#include <string>

// Takes numbered pictures of the whole screen into a folder of the device, and says on the report where each
// lies.
class Album {
 public:
  // Reports go to `report`, since the application redirects its standard streams onto its logs.
  explicit Album(FILE* report);

  // Ends the names of all that follow, as the language's.
  void setEnding(std::string ending) { ending_ = std::move(ending); }

  // The screen once everything that was asked for has been laid out.
  void picture(const std::string& name);
  // The screen of this very moment: of what would be gone by then.
  void pictureAtOnce(const std::string& name);

 private:
  FILE* report_;
  std::string ending_;
  int number_ = 0;
};

// Each begins and ends on the main screen.
namespace stops {

inline constexpr const char* project = "HelloTweak";

// From no project at all to a package: creates the project, edits a file of it, builds it.
void mainJob(Album& album);

// Every dialog that the main screen leads to.
void menus(Album& album);
void options(Album& album);

// What only some meet: a project with much in it and a log that is long, no project chosen among several, no
// Theos, an address that nothing opens; and the about screen.
void otherScreens(Album& album);

// Deletes every project, whose last dialog is the last of all.
void end(Album& album);

}  // namespace stops
