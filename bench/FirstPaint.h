// The moment at which a window has been painted for the first time.
#pragma once

#include <cstdio>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

// The resident memory of this process in bytes.
inline double residentMemory() {
  long pages = 0;
  if (FILE* const file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%*d %ld", &pages) != 1) pages = 0;
    std::fclose(file);
  }
  return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// Ends the application's event loop when `window` has been painted and nothing is left to do, and prints the
// resident memory of that moment.
inline void endAfterFirstPaint(QWidget& window) {
  class Watcher : public QObject {
   public:
    using QObject::QObject;
    bool eventFilter(QObject* /*object*/, QEvent* event) override {
      if (event->type() != QEvent::UpdateRequest || ended_) return false;
      ended_ = true;
      // After this request has been answered.
      QTimer::singleShot(0, this, [] {
        std::printf("%.0f\n", residentMemory());
        std::fflush(stdout);
        QCoreApplication::quit();
      });
      return false;
    }

   private:
    bool ended_ = false;
  };
  window.installEventFilter(new Watcher(&window));
  window.update();
}
