#include "core/FileManager.h"
#include "platform/UIScreen.h"
#include "tour/Finger.h"
#include "tour/Tour.h"

#include <QCursor>
#include <QPixmap>
#include <QTest>

namespace {

constexpr int settleMilliseconds = 50;
constexpr const char* folder = "/var/mobile/Pictures";

}  // namespace

Album::Album(FILE* report) : report_(report) {
  createDirectoryAtPath(folder);
  // Every screen is empty there, so no control is hovered in the pictures.
  const UIScreen& screen = *UIScreen::mainScreen();
  QCursor::setPos(screen.mapToGlobal(QPoint(screen.width() / 4, 2)));
}

void Album::picture(const std::string& name, const QString& shown) {
  if (!shown.isNull()) finger::waitToSee(shown);
  QTest::qWait(settleMilliseconds);
  // On a busy machine the wait may end before them.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  pictureAtOnce(name);
}

void Album::pictureAtOnce(const std::string& name) {
  const QString path = QStringLiteral("%1/%2-%3%4.png")
                           .arg(QLatin1String(folder))
                           .arg(++number_, 3, 10, QLatin1Char('0'))
                           .arg(QString::fromStdString(name), QString::fromStdString(ending_));
  if (!UIScreen::mainScreen()->grab().save(path)) throw finger::Missing("cannot save " + path.toStdString());
  std::fprintf(report_, "picture %s\n", qUtf8Printable(path));
}

void stops::returnBy(const QString& name) {
  finger::tap(name);
  finger::waitToSee("Reload");
}
