// The gallery: writes a picture of every kind, style and state of a dialog, in two languages and four sizes.
#include "RQAlertView/RQAlertViewBox.h"
#include "alert/Describe.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "support/Clock.h"

#include <cstdio>
#include <map>

#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QRegularExpression>
#include <QTest>

namespace {

QStringList linesOf(const char* path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("%s cannot be read", path);
  return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

// With each <TEXT> in that language; a blank in it as "_".
QString translated(QString description, bool arabic) {
  static const std::map<QString, QString> pairs = [] {
    std::map<QString, QString> all;
    for (const QString& line : linesOf(TWEAKBENCH_TEXT_PAIRS))
      all[line.section('\t', 1)] = line.section('\t', 0, 0);
    return all;
  }();
  static const QString files = [] {
    QString all =
        "Makefile,a_&_b_<b>not_bold</b>,A_very_long_file_name_that_cannot_be_shown_on_one_line.plist";
    for (int index = 0; index < 10000; ++index) all += QString(",Source%1.x").arg(index);
    return all;
  }();
  static const QRegularExpression mark("<([^>]*)>");
  for (auto match = mark.match(description); match.hasMatch(); match = mark.match(description)) {
    QString text = match.captured(1);
    if (const auto pair = pairs.find(text); arabic && pair != pairs.end()) text = pair->second;
    description.replace(match.capturedStart(), match.capturedLength(), text.replace(' ', '_'));
  }
  return description.replace("@files", files);
}

struct Picture {
  QString name, state, description;
};

std::vector<Picture> pictures() {
  std::vector<std::pair<QString, QString>> named;
  std::vector<Picture> all;
  for (const QString& line : linesOf(TWEAKBENCH_PICTURES)) {
    if (line.startsWith('#')) continue;
    if (line.startsWith("let ")) {
      named.emplace_back(line.section(' ', 1, 1), line.section(' ', 2));
      continue;
    }
    const QString head = line.section(" = ", 0, 0);
    QString description = line.section(" = ", 1);
    // What is named may hold what was named before it.
    for (auto each = named.rbegin(); each != named.rend(); ++each)
      description.replace(QRegularExpression("\\b" + each->first + "\\b"), each->second);
    description.replace("@lines", QString("<No data>\\n").repeated(40));
    all.push_back({head.section(' ', 0, 0), head.section('[', 1).section(']', 0, 0), description});
  }
  return all;
}

// What Tab does.
void reach(QWidget& part) {
  part.window()->setAttribute(Qt::WA_KeyboardFocusChange);
  part.window()->activateWindow();
  part.setFocus(Qt::TabFocusReason);
}

void bring(RQAlertView& dialog, const QString& state) {
  auto& box = *dialog.view()->findChild<RQAlertViewBox*>();
  auto* const list = box.findChild<RQAlertViewButtonList*>();
  const QString title = state.section(' ', 1).replace('_', ' ');
  if (state == "focused") reach(*box.initialFocus());
  if (state == "focused list") reach(*list);
  if (state == "focused message") reach(box.header());
  if (!state.startsWith("pressed")) return;
  for (auto* button : box.findChildren<RQAlertViewButton*>()) button->setDown(button->title() == title);
  for (int row = 0; list != nullptr && row < list->rows().count(); ++row) {
    const QPoint place = list->visualRect(list->model()->index(row, 0)).center();
    if (list->rows().at(row).title == title) QTest::mousePress(list->viewport(), Qt::LeftButton, {}, place);
  }
}

// Lets what is queued happen, after so long.
void turn(int milliseconds) {
  HeldClock::turn(milliseconds);
  for (int step = 0; step < 3; ++step) UIApplication::processEvents();
}

bool write(const QString& path, const Picture& picture, const QString& notice, bool arabic) {
  UIApplication::setLayoutDirection(arabic ? Qt::RightToLeft : Qt::LeftToRight);
  UIScreen::mainScreen()->setAttribute(Qt::WA_KeyboardFocusChange, false);
  const HeldClock clock;
  const Dialog dialog = dialogFrom(translated(picture.description, arabic));
  const Dialog next = picture.state == "changing" ? dialogFrom(translated(notice, arabic)) : dialog;
  setMotionEnabled(picture.state == "coming");
  dialog->showAnimated();
  bring(*dialog, translated(picture.state, arabic));
  setMotionEnabled(true);
  if (picture.state == "going") dialog->dismissAnimated();
  if (next != dialog) dialog->transitionToAlertView(next);
  turn(0);
  turn(80);
  const bool written = UIScreen::mainScreen()->grab().save(path);
  turn(1000);
  setMotionEnabled(false);
  next->dismiss();
  turn(0);
  if (written) std::printf("%s\n", qPrintable(path));
  return written;
}

// Something behind the dialogs.
class BackgroundController : public UIViewController {
 protected:
  void loadView() override {
    auto* list = new QListWidget;
    for (int index = 1; index <= 40; ++index) list->addItem(QString("Source%1.x").arg(index));
    setView(list);
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s FOLDER [PART OF A NAME]\n", argv[0]);
    return 2;
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  UIApplication application(argc, argv);
  const QString folder = QString::fromLocal8Bit(argv[1]);
  if (!QDir().mkpath(folder)) return 1;
  const std::shared_ptr<UIWindow> window = makeUIWindow();
  window->setRootViewController(std::make_shared<BackgroundController>());
  window->makeKeyAndVisible();
  UIScreen::mainScreen()->show();
  const std::vector<Picture> all = pictures();
  for (const Picture& picture : all) {
    if (argc == 3 && !picture.name.contains(QString::fromLocal8Bit(argv[2]))) continue;
    for (const QSize size : {QSize(320, 480), QSize(390, 844), QSize(820, 1180), QSize(1600, 1200)}) {
      UIScreen::mainScreen()->resize(size);
      for (const bool arabic : {false, true}) {
        const QString path = QString("%1/%2-%3-%4x%5.png").arg(folder, picture.name, arabic ? "ar" : "en");
        if (!write(path.arg(size.width()).arg(size.height()), picture, all.front().description, arabic))
          return 1;
      }
    }
  }
  return 0;
}
