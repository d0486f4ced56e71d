// Buttons, indicator, progress and custom view of a dialog that is shown.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"

#include <QProgressBar>

namespace {

using testing::ElementsAre;

class Content : public Dialogs {
 protected:
  static std::vector<std::string> titlesOf(const RQAlertViewButtonList& list) {
    std::vector<std::string> titles;
    for (int row = 0; row < list.rows().count(); ++row)
      titles.push_back(list.rows().at(row).title.toStdString());
    return titles;
  }
  // From left to right.
  static std::vector<std::string> buttonsInARow(const Dialog& dialog) {
    auto buttons = dialog->view()->findChildren<RQAlertViewButton*>();
    std::sort(buttons.begin(), buttons.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    std::vector<std::string> titles;
    for (auto* button : buttons) titles.push_back(button->title().toStdString());
    return titles;
  }
};

TEST_F(Content, OrdersItsButtonsByTheirKind) {
  const Dialog many = showing(alert({"A", "B"}, "Cancel", "Delete"));
  EXPECT_THAT(titlesOf(*listOf(many)), ElementsAre("Delete", "A", "B", "Cancel"));
  close(many);

  const Dialog phoneSheet = showing(sheet({"A", "B"}, "Cancel", "Delete"));
  EXPECT_THAT(titlesOf(*listOf(phoneSheet)), ElementsAre("Delete", "A", "B"));
  EXPECT_TRUE(buttonOf(phoneSheet, "Cancel"));
  // On a pad the same sheet stands in the middle and keeps its cancel button in the list.
  resize(820, 1180);
  EXPECT_THAT(titlesOf(*listOf(phoneSheet)), ElementsAre("Delete", "A", "B", "Cancel"));
  EXPECT_FALSE(buttonOf(phoneSheet, "Cancel"));
  close(phoneSheet);

  const Dialog row = showing(alert({"A"}, "Cancel", "Delete"));
  EXPECT_EQ(listOf(row), nullptr);
  EXPECT_THAT(buttonsInARow(row), ElementsAre("Cancel", "Delete", "A"));
  UIApplication::setLayoutDirection(Qt::RightToLeft);
  letGo();
  EXPECT_THAT(buttonsInARow(row), ElementsAre("A", "Delete", "Cancel"));
  row->setOneRowOneButton(true);
  EXPECT_THAT(titlesOf(*listOf(row)), ElementsAre("Delete", "A", "Cancel"));
  close(row);

  const Dialog wide = showing(alert({"A title that takes more than half of the box"}, "Cancel"));
  EXPECT_TRUE(listOf(wide));
}

TEST_F(Content, TapsOnlyWhatIsEnabled) {
  const QStringList titles{"A", "B", "C", "D"};
  for (const Dialog& dialog :
       {alert(titles, "Cancel"), sheet(titles, "Cancel"), alert({titles[0]}, "Cancel")}) {
    dialog->setButtonEnabled(false, 0);
    listeningTo(dialog);
    tap(dialog, "A");
    tap(dialog, "Cancel");
    EXPECT_THAT(answered(), ElementsAre("cancelled"));
    dialog->setButtonEnabled(true, 0);
    dialog->setCancelButtonEnabled(false);
    tap(dialog, "A");
    tap(dialog, "Cancel");
    EXPECT_THAT(answered(), ElementsAre("A"));
    close(dialog);
  }
}

TEST_F(Content, KeepsAnAnsweringButtonHighlightedWhileTheDialogGoes) {
  setMotionEnabled(true);
  for (const char* title : {"Cancel", "Delete"}) {
    const Dialog dialog = alert({}, "Cancel", "Delete");
    dialog->setAnimationDuration(0.02);
    dialog->show();
    RQAlertViewButton* button = buttonOf(dialog, title);
    bool selected = false;
    const auto look = [&](RQAlertView&) { selected = button->isSelected(); };
    dialog->setCancelHandler(look);
    dialog->setDestructiveHandler(look);
    dialog->setDismissOnAction(false);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(selected);
    EXPECT_FALSE(button->isSelected());
    dialog->setDismissOnAction(true);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissing);
    EXPECT_TRUE(button->isSelected());
    ASSERT_TRUE(becomes(dialog, RQAlertViewState::Dismissed));
  }
  // A touch on the cover is no tap of the button.
  const Dialog dialog = alert({}, "Cancel");
  dialog->setAnimationDuration(0.02);
  dialog->show();
  QTest::mouseClick(dialog->view(), Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissing);
  EXPECT_FALSE(buttonOf(dialog, "Cancel")->isSelected());
  EXPECT_TRUE(becomes(dialog, RQAlertViewState::Dismissed));
}

TEST_F(Content, TakesATapBackThatSlidesOffTheButton) {
  const Dialog dialog = listeningTo(sheet({"A", "B"}));
  RQAlertViewButtonList* list = listOf(dialog);
  const auto middle = [&](int row) { return list->visualRect(list->model()->index(row, 0)).center(); };
  QTest::mousePress(list->viewport(), Qt::LeftButton, {}, middle(0));
  QTest::mouseMove(list->viewport(), middle(1));
  QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, middle(1));
  EXPECT_THAT(answered(), ElementsAre());
}

TEST_F(Content, LetsTouchesThroughTheBorderAboveTheButtons) {
  const Dialog dialog = alert();
  dialog->setButtonsBackgroundColor(Qt::green);
  dialog->setLayerBorderColor(Qt::red);
  dialog->setLayerBorderWidth(4);
  listeningTo(dialog);
  const QRect place = buttonOf(dialog, "One")->geometry();
  const QImage picture = frameOf(dialog)->grab().toImage();
  EXPECT_EQ(picture.pixelColor(place.left() + 2, place.center().y()), QColor(Qt::red));
  EXPECT_EQ(picture.pixelColor(place.left() + 6, place.center().y()), QColor(Qt::green));
  QTest::mouseClick(UIScreen::mainScreen()->windowHandle(), Qt::LeftButton, {},
                    frameOf(dialog)->mapTo(UIScreen::mainScreen(), place.center()));
  EXPECT_THAT(answered(), ElementsAre("One"));
}

TEST_F(Content, FollowsItsProgressWhileShown) {
  const Dialog dialog = RQAlertView::alertViewWithProgressViewAndTitle("Title", none, alertStyle, 7,
                                                                       "Starting", {}, none, none);
  EXPECT_EQ(dialog->progress(), 1);
  dialog->show();
  auto* bar = dialog->view()->findChild<QProgressBar*>();
  auto* label = dialog->view()->findChild<RQAlertViewLabel*>();
  ASSERT_TRUE(bar && label);
  for (const auto& [given, kept] : std::initializer_list<std::pair<double, double>>{
           {0.25, 0.25}, {-1, 0}, {std::nan(""), 0}, {0.5, 0.5}, {2, 1}}) {
    dialog->setProgress(given, true);
    EXPECT_EQ(dialog->progress(), kept);
    EXPECT_EQ(bar->value(), static_cast<int>(kept * 100));
  }
  const int before = frameOf(dialog)->height();
  dialog->setProgressLabelText(none);
  EXPECT_LT(frameOf(dialog)->height(), before);
}

TEST_F(Content, TakesAViewOfTheApplicationsOwnOver) {
  auto* view = new QWidget;
  view->setMinimumHeight(77);
  QPointer<QWidget> watched(view);
  Dialog dialog = RQAlertView::alertViewWithViewAndTitle("Title", none, alertStyle, view, {"OK"}, none, none);
  dialog->show();
  EXPECT_EQ(dialog->innerView(), view);
  EXPECT_TRUE(view->isVisible());
  EXPECT_EQ(view->height(), 77);
  close(dialog);
  EXPECT_TRUE(watched.isNull());
  EXPECT_EQ(dialog->innerView(), nullptr);
}

}  // namespace
