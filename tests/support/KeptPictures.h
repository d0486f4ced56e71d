// Pictures that are kept, to compare what is seen with.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <set>

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <gtest/gtest.h>

namespace pictures {

// In at most 256 colours, so that the file is small: each part of a colour is rounded to a multiple of the
// step that is written into the picture.
inline QImage inFewColours(const QImage& picture) {
  for (int step = 1;; step *= 2) {
    const auto rounded = [step](int part) { return std::min(255, (part + step / 2) / step * step); };
    QImage few = picture;
    std::set<QRgb> colours;
    for (int y = 0; y < few.height(); ++y) {
      auto* const line = reinterpret_cast<QRgb*>(few.scanLine(y));
      for (int x = 0; x < few.width(); ++x) {
        line[x] = qRgb(rounded(qRed(line[x])), rounded(qGreen(line[x])), rounded(qBlue(line[x])));
        colours.insert(line[x]);
      }
    }
    if (colours.size() > 256) continue;
    few = few.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither | Qt::AvoidDither);
    few.setText("step", QString::number(step));
    return few;
  }
}

// White where an eye sees a difference: more than the step and processors explain.
inline QImage differenceOf(const QImage& is, const QImage& kept, int& pixels) {
  const int most = kept.text("step").toInt() / 2 + 1;
  QImage difference(is.size(), QImage::Format_Grayscale8);
  difference.fill(0);
  for (int y = 0; y < is.height(); ++y) {
    for (int x = 0; x < is.width(); ++x) {
      const QRgb one = is.pixel(x, y);
      const QRgb other = kept.valid(x, y) ? kept.pixel(x, y) : ~one;
      const int apart = std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                                  std::abs(qBlue(one) - qBlue(other))});
      if (apart <= most) continue;
      difference.scanLine(y)[x] = 255;
      ++pixels;
    }
  }
  return difference;
}

// Compares with the picture at `path`, if one is kept there. What differs is written into the working folder.
// With TWEAKBENCH_RENEW it becomes the kept one instead; an empty file is renewed, too.
inline void expectAsKept(const QImage& seen, const QString& path) {
  if (!QFileInfo::exists(path)) return;
  const QImage is = seen.convertToFormat(QImage::Format_RGB32);
  const QImage kept(path);
  int pixels = 0;
  const QImage difference = differenceOf(is, kept, pixels);
  // A few points on the edges of letters are left to other processors.
  if (is.size() == kept.size() && pixels < 6) return;
  if (qEnvironmentVariableIsSet("TWEAKBENCH_RENEW")) {
    EXPECT_TRUE(inFewColours(is).save(path, "PNG", 0));
    return;
  }
  const QString beside = QDir::current().filePath(QFileInfo(path).completeBaseName());
  is.save(beside + ".png");
  difference.save(beside + "-difference.png");
  ADD_FAILURE() << pixels << " points differ from " << path.toStdString() << "\nSee " << beside.toStdString()
                << ".png and -difference.png";
}

}  // namespace pictures
