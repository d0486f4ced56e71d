// Reading texts: what assistive technology asks for, and a log that grows; whether screens fit.
#include "tests/ui/Screens.h"

#include <array>
#include <vector>

#include <QAccessible>
#include <QLabel>

namespace {

using finger::sees;
using finger::tap;
using finger::waitUntil;

class Reading : public Screens {
 protected:
  // The build screen after a build that prints this.
  TextView& openLog(const std::string& printed) {
    makeProject({{"Makefile", "package:\n\t@cat log\n"}, {"log", printed}});
    putFile(updateMarker, "");
    start();
    openBuildScreen();
    build("Make Package");
    return log();
  }
};

TEST_F(Reading, AssistiveTechnologyReadsTheLogWithinItsBounds) {
  TextView& view = openLog("one مشروع\ntwo\n");
  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&view);
  QAccessibleTextInterface* const text = interface->textInterface();
  EXPECT_EQ(text->text(4, 9), QString("مشروع"));
  EXPECT_TRUE(interface->state().readOnly);
  EXPECT_GT(text->characterRect(1).x(), text->characterRect(0).x());
  EXPECT_EQ(text->offsetAtPoint(text->characterRect(2).center()), 2);
  text->setSelection(0, 4, 9);
  EXPECT_EQ(view.selectionEnd(), std::string("one مشروع").size());
  EXPECT_EQ(text->cursorPosition(), 9);
}

TEST_F(Reading, EveryScreenFitsEveryWidth) {
  UIScreen& screen = *UIScreen::mainScreen();
  const auto expectWhole = [&screen](const char* what, const QSize& size) {
    screen.resize(size);
    for (int pass = 0; pass < 2; ++pass) QCoreApplication::processEvents();
    std::vector<std::pair<const QWidget*, QRect>> places;
    for (const QWidget* part : UIApplication::sharedApplication()->keyWindow()->findChildren<QWidget*>()) {
      const QString kind = part->metaObject()->className();
      if (!part->isVisible() || !QStringList({"UIButton", "UISwitch", "QLabel"}).contains(kind)) continue;
      const QRect place(part->mapTo(&screen, QPoint()), part->size());
      const std::string name =
          part->objectName().toStdString() + " of " + what + " at " + std::to_string(size.width());
      EXPECT_TRUE(screen.rect().contains(place)) << name;
      EXPECT_GE(part->height(), part->hasHeightForWidth() ? part->heightForWidth(part->width())
                                                          : part->minimumSizeHint().height())
          << name;
      for (const auto& [other, taken] : places)
        EXPECT_FALSE(taken.intersects(place)) << name << " and " << other->objectName().toStdString();
      places.emplace_back(part, place);
    }
    EXPECT_GT(places.size(), 2U);
  };
  // From wide to narrow, as nothing may keep the width that it once had.
  const std::array sizes{QSize(1440, 900), QSize(820, 1180), QSize(390, 844), QSize(320, 480)};
  TextView& view = openLog("built\n");
  for (const QSize& size : sizes) {
    expectWhole("build", size);
    const QWidget& button = *finger::find("Make Package");
    const int left = button.mapTo(&screen, QPoint()).x();
    const bool isBeside = view.mapTo(&screen, QPoint(view.width(), 0)).x() <= left;
    EXPECT_EQ(isBeside, size.width() >= 900) << size.width();
    if (!isBeside) {
      EXPECT_NEAR(left + button.width() / 2, size.width() / 2, 1);
    }
  }
  tap("Back");
  for (const QSize& size : sizes) expectWhole("main", size);
  tap("About");
  finger::waitToSee(localized(text::developedBy));
  for (const QSize& size : sizes) expectWhole("about", size);
  tap("Back");
  openEditor("log");
  for (const QSize& size : sizes) expectWhole("editor", size);
}

// The build ends only when the interface, alive meanwhile, lets it.
TEST_F(Reading, ARunningBuildShowsWhatItHasPrintedOnAnInterfaceThatLives) {
  makeProject({{"Makefile", "package:\n\t@seq 100; until test -e go; do sleep 0.01; done\n"}});
  putFile(updateMarker, "");
  start();
  openBuildScreen();
  tap("Make Package");
  auto* const running = UIScreen::mainScreen()->findChild<QWidget*>("runningLog");
  waitUntil([running] { return running->isVisible(); }, "nothing is shown");
  const QImage empty = running->grab().toImage();
  waitUntil([&] { return running->grab().toImage().copy(0, 0, 60, 200) != empty.copy(0, 0, 60, 200); },
            "nothing of the log");
  EXPECT_EQ(log().bytes(), "") << "which is set at the end";
  EXPECT_TRUE(sees(localized(text::pleaseWait)));
  EXPECT_FALSE(sees("Make Package")) << "the dialog covers the build screen";
  UIScreen::mainScreen()->resize(800, 600);
  putFile(device::projects + "P/go", "");
  waitUntil([running] { return !running->isVisible(); }, "the build does not end");
  EXPECT_TRUE(log().bytes().starts_with("1\n2\n"));
}

}  // namespace
