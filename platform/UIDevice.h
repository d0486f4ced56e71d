// What the screen stands for: the kind of device, and whether anything on it moves.
#pragma once

#include <optional>

enum class UIUserInterfaceIdiom { Phone = 0, Pad = 1 };

class UIDevice {
 public:
  static UIDevice& currentDevice();

  // A screen whose shorter side is as long as the smallest pad's is a pad, any other a phone. It follows the
  // screen as it is resized.
  UIUserInterfaceIdiom userInterfaceIdiom() const;
  // Stands in for the rule above until set to nullopt again.
  void setUserInterfaceIdiom(std::optional<UIUserInterfaceIdiom> idiom);

  double systemVersion() const { return systemVersion_; }
  void setSystemVersion(double version) { systemVersion_ = version; }

 private:
  UIDevice() = default;

  std::optional<UIUserInterfaceIdiom> idiom_;
  double systemVersion_ = 14.0;
};

// True until switched off, unless the desktop asks for reduced motion. With motion off everything that would
// be animated takes its final state at once, with the same reports in the same order. Main thread.
bool motionEnabled();
void setMotionEnabled(bool enabled);
