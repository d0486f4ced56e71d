// The yardstick for start-up and memory: a bare window that ends once it is painted, and says what it holds
// in memory.
#include "bench/FirstPaint.h"

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(390, 844);
  endAfterFirstPaint(window);
  window.show();
  return application.exec();
}
