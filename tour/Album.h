// The pictures of a tour.
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
