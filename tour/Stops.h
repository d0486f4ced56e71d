// The parts of the tour. Each begins and ends on the main screen.
#pragma once

class Album;

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
