// Buttons, indicator, progress and custom view of a dialog that is shown.
#include "RQAlertView/RQAlertViewLabel.h"
#include "alert/Dialogs.h"
#include "platform/UIActivityIndicatorView.h"

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
  const QStringList two{QStringLiteral("A"), QStringLiteral("B")};
  const QString cancel = QStringLiteral("Cancel");
  const QString destructive = QStringLiteral("Delete");

  const Dialog many = alert(two, cancel, destructive);
  many->show();
  EXPECT_THAT(titlesOf(*listOf(many)), ElementsAre("Delete", "A", "B", "Cancel"));
  many->dismiss();

  const Dialog phoneSheet = sheet(two, cancel, destructive);
  phoneSheet->show();
  EXPECT_THAT(titlesOf(*listOf(phoneSheet)), ElementsAre("Delete", "A", "B"));
  EXPECT_TRUE(buttonOf(phoneSheet, cancel));
  // On a pad the same sheet stands in the middle and keeps its cancel button in the list.
  UIScreen::mainScreen()->resize(820, 1180);
  QCoreApplication::processEvents();
  EXPECT_THAT(titlesOf(*listOf(phoneSheet)), ElementsAre("Delete", "A", "B", "Cancel"));
  EXPECT_FALSE(buttonOf(phoneSheet, cancel));
  phoneSheet->dismiss();
  UIScreen::mainScreen()->resize(390, 844);

  const Dialog row = alert({QStringLiteral("A")}, cancel, destructive);
  row->show();
  EXPECT_EQ(listOf(row), nullptr);
  EXPECT_THAT(buttonsInARow(row), ElementsAre("Cancel", "Delete", "A"));
  row->setOneRowOneButton(true);
  EXPECT_THAT(titlesOf(*listOf(row)), ElementsAre("Delete", "A", "Cancel"));
  row->dismiss();

  const Dialog wide = alert({QStringLiteral("A title that takes more than half of the box")}, cancel);
  wide->show();
  EXPECT_TRUE(listOf(wide));
  wide->dismiss();
}

TEST_F(Content, MirrorsARowOfButtonsInARightToLeftInterface) {
  UIApplication::setLayoutDirection(Qt::RightToLeft);
  const Dialog dialog = alert({QStringLiteral("A")}, QStringLiteral("Cancel"));
  dialog->show();
  EXPECT_THAT(buttonsInARow(dialog), ElementsAre("A", "Cancel"));
  dialog->dismiss();
}

TEST_F(Content, TapsOnlyWhatIsEnabled) {
  const QStringList titles{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"),
                           QStringLiteral("D")};
  for (const Dialog& dialog : {alert(titles, QStringLiteral("Cancel")),
                               sheet(titles, QStringLiteral("Cancel")), alert({titles[0], titles[1]})}) {
    dialog->setDismissOnAction(false);
    std::vector<std::size_t> tapped;
    int cancelled = 0;
    dialog->setActionHandler(
        [&](RQAlertView&, std::size_t index, const QString&) { tapped.push_back(index); });
    dialog->setCancelHandler([&](RQAlertView&) { ++cancelled; });
    dialog->setButtonEnabled(false, 0);
    dialog->show();
    tap(dialog, titles[0]);
    tap(dialog, titles[1]);
    dialog->setButtonEnabled(false, 1);
    dialog->setButtonEnabled(true, 0);
    tap(dialog, titles[0]);
    tap(dialog, titles[1]);
    EXPECT_THAT(tapped, ElementsAre(1U, 0U));
    if (!dialog->cancelButtonTitle().isNull()) {
      dialog->setCancelButtonEnabled(false);
      tap(dialog, QStringLiteral("Cancel"));
      EXPECT_EQ(cancelled, 0);
      dialog->setCancelButtonEnabled(true);
      tap(dialog, QStringLiteral("Cancel"));
      EXPECT_EQ(cancelled, 1);
    }
    dialog->dismiss();
    letGo();
  }
}

TEST_F(Content, KeepsAnAnsweringButtonHighlightedWhileTheDialogGoes) {
  setMotionEnabled(true);
  for (const bool cancels : {true, false}) {
    const Dialog dialog = alert({}, QStringLiteral("Cancel"), QStringLiteral("Delete"));
    dialog->setAnimationDuration(0.02);
    dialog->show();
    RQAlertViewButton* button =
        buttonOf(dialog, cancels ? dialog->cancelButtonTitle() : QStringLiteral("Delete"));
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
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Dismissed; }));
    letGo();
  }
  // A touch on the cover is no tap of the button.
  const Dialog dialog = alert({}, QStringLiteral("Cancel"));
  dialog->setAnimationDuration(0.02);
  dialog->show();
  QTest::mouseClick(dialog->view(), Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissing);
  EXPECT_FALSE(buttonOf(dialog, QStringLiteral("Cancel"))->isSelected());
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Dismissed; }));
}

TEST_F(Content, TakesATapBackThatSlidesOffTheButton) {
  const Dialog dialog = sheet({QStringLiteral("A"), QStringLiteral("B")});
  int tapped = 0;
  dialog->setActionHandler([&](RQAlertView&, std::size_t, const QString&) { ++tapped; });
  dialog->show();
  RQAlertViewButtonList* list = listOf(dialog);
  const auto middle = [&](int row) { return list->visualRect(list->model()->index(row, 0)).center(); };
  QTest::mousePress(list->viewport(), Qt::LeftButton, {}, middle(0));
  QTest::mouseMove(list->viewport(), middle(1));
  QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, middle(1));
  EXPECT_EQ(tapped, 0);
  dialog->dismiss();
}

TEST_F(Content, PaintsAButtonAsItsStateAndItsOwnPropertiesSay) {
  const Dialog dialog = alert({QStringLiteral("A")}, QStringLiteral("Cancel"));
  dialog->setButtonsBackgroundColor(Qt::green);
  dialog->setButtonsBackgroundColorHighlighted(Qt::blue);
  dialog->setButtonsBackgroundColorDisabled(Qt::yellow);
  dialog->show();
  RQAlertViewButton* button = buttonOf(dialog, QStringLiteral("A"));
  const auto color = [&] { return button->grab().toImage().pixelColor(12, 12); };
  EXPECT_EQ(color(), QColor(Qt::green));
  button->setDown(true);
  EXPECT_EQ(color(), QColor(Qt::blue));
  button->setDown(false);
  dialog->setButtonEnabled(false, 0);
  EXPECT_EQ(color(), QColor(Qt::yellow));
  dialog->setButtonPropertiesAtIndex(0, [](RQAlertViewButtonProperties& properties) {
    properties.backgroundColor = Qt::cyan;
    properties.enabled = true;
  });
  EXPECT_EQ(color(), QColor(Qt::cyan));
  EXPECT_TRUE(dialog->isButtonEnabledAtIndex(0));
  // The corner of the card stays round.
  EXPECT_NE(button->grab().toImage().pixelColor(button->width() - 1, button->height() - 1), QColor(Qt::cyan));
  dialog->dismiss();
}

TEST_F(Content, PaintsTheBorderAboveTheButtonsAndAShadowWithoutARadius) {
  const Dialog dialog = alert();
  dialog->setButtonsBackgroundColor(Qt::green);
  dialog->setLayerBorderColor(Qt::red);
  dialog->setLayerBorderWidth(4);
  dialog->setLayerShadowColor(Qt::blue);
  dialog->setLayerShadowOffset({10, 10});
  dialog->show();
  const auto* button = buttonOf(dialog, QStringLiteral("One"));
  const QRect place = button->geometry();
  const QImage picture = frameOf(dialog)->grab().toImage();
  EXPECT_EQ(picture.pixelColor(place.left() + 2, place.center().y()), QColor(Qt::red));
  EXPECT_EQ(picture.pixelColor(place.left() + 6, place.center().y()), QColor(Qt::green));
  EXPECT_EQ(picture.pixelColor(place.right() + 5, place.center().y()), QColor(Qt::blue));
  // The border takes no taps.
  int tapped = 0;
  dialog->setActionHandler([&](RQAlertView&, std::size_t, const QString&) { ++tapped; });
  QTest::mouseClick(UIScreen::mainScreen()->windowHandle(), Qt::LeftButton, {},
                    frameOf(dialog)->mapTo(UIScreen::mainScreen(), place.center()));
  EXPECT_EQ(tapped, 1);
}

TEST_F(Content, FollowsItsProgressWhileShown) {
  const Dialog dialog = RQAlertView::alertViewWithProgressViewAndTitle(
      QStringLiteral("Title"), none, alertStyle, 7, QStringLiteral("Starting"), {}, none, none);
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
  dialog->dismiss();
}

TEST_F(Content, SpinsOnlyWhileItIsSeen) {
  setMotionEnabled(true);
  const Dialog dialog = RQAlertView::alertViewWithActivityIndicatorAndTitle(QStringLiteral("Wait"), none,
                                                                            alertStyle, none, {}, none, none);
  auto* indicator = dialog->view()->findChild<UIActivityIndicatorView*>();
  ASSERT_TRUE(indicator);
  EXPECT_FALSE(indicator->isTicking());
  dialog->show();
  EXPECT_TRUE(indicator->isTicking());
  const Dialog above = alert();
  above->show();
  EXPECT_FALSE(indicator->isTicking());
  above->dismiss();
  letGo();
  EXPECT_TRUE(indicator->isTicking());
  dialog->dismiss();
  EXPECT_FALSE(indicator->isTicking());
}

TEST_F(Content, TakesAViewOfTheApplicationsOwnOver) {
  auto* view = new QWidget;
  view->setMinimumHeight(77);
  QPointer<QWidget> watched(view);
  Dialog dialog = RQAlertView::alertViewWithViewAndTitle(QStringLiteral("Title"), none, alertStyle, view,
                                                         {QStringLiteral("OK")}, none, none);
  dialog->show();
  EXPECT_EQ(dialog->innerView(), view);
  EXPECT_TRUE(view->isVisible());
  EXPECT_EQ(view->height(), 77);
  dialog->dismiss();
  letGo();
  EXPECT_TRUE(watched.isNull());
  EXPECT_EQ(dialog->innerView(), nullptr);
}

}  // namespace
