// Whatever a dialog is given, and whatever is done to it from within its own reports.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"
#include "alert/Journal.h"
#include "support/SystemLog.h"

#include <functional>
#include <set>
#include <stdexcept>

namespace {

using testing::ElementsAreArray;

class Robustness : public Dialogs {
 protected:
  // A dialog that comes, is answered and goes, all of it animated; `meddle` is called from every report.
  static std::vector<std::string> lifeOf(const QString& description,
                                         const std::function<void(Dialog&)>& meddle) {
    setMotionEnabled(true);
    Dialog dialog = dialogFrom(description + " animationDuration=0.02");
    const std::weak_ptr<RQAlertView> weak = dialog;
    Journal journal(*dialog);
    journal.meddle = [&](const std::string&) { meddle(dialog); };
    dialog->showAnimated(true, [&] { journal.note("show completed"); });
    const auto is = [&](RQAlertViewState state) {
      const auto self = weak.lock();
      return !self || self->state() == state || self->state() == RQAlertViewState::Dismissed;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return is(RQAlertViewState::Shown); }));
    if (const auto self = weak.lock()) self->forceActionAtIndex(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return is(RQAlertViewState::Dismissed); }));
    dialog.reset();
    letGo();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(keyWindow()->metaObject()->className(), std::string("UIWindow"));
    return journal.take();
  }
};

TEST_F(Robustness, ReportsEachStepOnceWhateverItsHandlersDo) {
  const QString description = "alert message=Message buttons=One cancel=Cancel";
  const std::vector<std::string> undisturbed = lifeOf(description, [](Dialog&) {});
  ASSERT_EQ(undisturbed.size(), 8 + 1U);
  const std::pair<const char*, std::function<void(Dialog&)>> cases[] = {
      {"show once more",
       [](Dialog& dialog) {
         dialog->show();
         dialog->showAnimated();
       }},
      {"drop the only reference", [](Dialog& dialog) { dialog.reset(); }},
      {"throw", [](Dialog&) { throw std::runtime_error("meddling"); }},
      {"throw what is no exception", [](Dialog&) { throw 1; }},
      {"change what is shown",
       [](Dialog& dialog) {
         change(*dialog, "messageTextColor=red button0.enabled=0");
         dialog->setOneRowOneButton(!dialog->oneRowOneButton());
         UIScreen::mainScreen()->resize(dialog->oneRowOneButton() ? QSize(390, 844) : QSize(820, 1180));
       }},
      {"run the event loop", [](Dialog&) { QCoreApplication::processEvents(); }},
  };
  for (const auto& [name, meddle] : cases) {
    SCOPED_TRACE(name);
    systemlog::take();
    EXPECT_THAT(lifeOf(description, meddle), ElementsAreArray(undisturbed));
    // What was thrown is logged, once for each who is told.
    EXPECT_EQ(systemlog::take().size(), std::string(name).starts_with("throw") ? 8 * 3 + 1U : 0);
  }
}

TEST_F(Robustness, ReportsNothingTwiceWhereverItIsEnded) {
  const std::function<void(RQAlertView&)> ends[] = {
      [](RQAlertView& dialog) { delete dialog.window().get(); },
      [](RQAlertView& dialog) { dialog.dismiss(); },
      [](RQAlertView& dialog) { dialog.dismissAnimated(); },
  };
  for (std::size_t moment = 0; moment < 25; ++moment) {
    for (const auto& end : ends) {
      SCOPED_TRACE(std::to_string(moment) + ", end " + std::to_string(&end - ends));
      std::size_t reports = 0;
      const std::vector<std::string> lines = lifeOf("alert buttons=One", [&](Dialog& dialog) {
        if (reports++ == moment && dialog->window()) end(*dialog);
      });
      EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), lines.size());
    }
  }
}

TEST_F(Robustness, TakesAnyTextForATextAndNothingElse) {
  const QString texts[] = {
      QString(),
      "",
      "<b>bold</b> <img src=\"/nowhere\"> &amp; A && B",
      QString(QChar(0)) + "\x1b[31m\n\n\n\t",
      QString(QChar(0xD800)) + QChar(0xDC00) + QChar(0xDFFF),
      QString::fromUtf8("\u202e\u2066 \u0645\u0644\u0641 / a.b / \U0001F642"),
      QString(100 * 1024, u'x'),
      QString::fromUtf8("\u0631\u0633\u0627\u0644\u0629 ").repeated(20 * 1024),
  };
  for (const auto style : {RQAlertViewStyle::Alert, RQAlertViewStyle::ActionSheet}) {
    for (const QString& text : texts) {
      SCOPED_TRACE(text.left(20).toStdString());
      const QStringList buttons = text.isNull() ? QStringList{} : QStringList{text, text};
      const Dialog dialog = showing(RQAlertView::alertViewWithTitle(text, text, style, buttons, text, text));
      QStringList answers;
      dialog->setDismissOnAction(false);
      dialog->setActionHandler([&](RQAlertView&, std::size_t, const QString& title) { answers << title; });
      // Whichever of the four is found first.
      for (const auto& set : {&RQAlertView::setCancelHandler, &RQAlertView::setDestructiveHandler})
        ((*dialog).*set)([&](RQAlertView&) { answers << text; });
      dialog->view()->grab();
      EXPECT_TRUE(dialog->view()->rect().contains(frameOf(dialog)->geometry()));
      for (const auto* label : dialog->view()->findChildren<RQAlertViewLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(label->isHidden(), label->text().isEmpty());
      }
      if (buttons.isEmpty()) {
        EXPECT_FALSE(partOf<RQAlertViewButton>(dialog) || listOf(dialog));
      } else {
        tap(dialog, text);
        dialog->forceActionAtIndex(1);
        EXPECT_TRUE(answers == (QStringList{text, text}));
      }
      close(dialog);
    }
  }
}

}  // namespace
