// The dialogs of the gallery, each made anew by its name.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QString>

class RQAlertView;

enum class GalleryLanguage { English, Arabic };

struct GalleryDialog {
  QString name;
  std::function<std::shared_ptr<RQAlertView>(GalleryLanguage)> make;
  // Brings the shown dialog into the state that the picture is of; may be empty.
  std::function<void(RQAlertView&)> prepare;
};

std::vector<GalleryDialog> galleryDialogs();
