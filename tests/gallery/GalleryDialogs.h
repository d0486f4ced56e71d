// The dialogs of the gallery, each made anew by its name.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QString>

class RQAlertView;

enum class GalleryLanguage { English, Arabic };

// The moment of its life at which a dialog is pictured; the last three are in the middle of a motion.
enum class GalleryMoment { Shown, Coming, Going, ChangingIntoNotice };

struct GalleryDialog {
  QString name;
  std::function<std::shared_ptr<RQAlertView>(GalleryLanguage)> make;
  // Brings the shown dialog into the state that the picture is of; may be empty.
  std::function<void(RQAlertView&)> prepare;
  GalleryMoment moment = GalleryMoment::Shown;
};

std::vector<GalleryDialog> galleryDialogs();
// What a dialog changes into.
std::shared_ptr<RQAlertView> galleryNotice(GalleryLanguage language);
