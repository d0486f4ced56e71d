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
using testing::IsEmpty;

class Robustness : public Dialogs {
 protected:
  void SetUp() override {
    Dialogs::SetUp();
    setMotionEnabled(true);
  }

  // A dialog that comes, is answered and goes, all of it animated; `meddle` is called from every report.
  static std::vector<std::string> lifeOf(Dialog dialog, const std::function<void(Dialog&)>& meddle) {
    const std::weak_ptr<RQAlertView> weak = dialog;
    dialog->setAnimationDuration(0.02);
    Journal journal(*dialog);
    journal.meddle = [&] { meddle(dialog); };
    const auto alive = [&] { return weak.lock(); };
    dialog->showAnimated(true, [&] { journal.note("show completed"); });
    const auto is = [&](RQAlertViewState state) {
      const auto self = alive();
      return !self || self->state() == state || self->state() == RQAlertViewState::Dismissed;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return is(RQAlertViewState::Shown); }));
    if (const auto self = alive()) self->forceActionAtIndex(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return is(RQAlertViewState::Dismissed); }));
    dialog.reset();
    letGo();
    EXPECT_FALSE(alive());
    EXPECT_EQ(keyWindow()->metaObject()->className(), std::string("UIWindow"));
    return journal.take();
  }
};

TEST_F(Robustness, ReportsEachStepOnceWhateverItsHandlersDo) {
  const std::vector<std::string> undisturbed = lifeOf(alert(), [](Dialog&) {});
  ASSERT_EQ(undisturbed.size(), 8 * 3 + 1U);
  const struct {
    const char* name;
    std::function<void(Dialog&)> meddle;
  } cases[] = {
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
         dialog->setOneRowOneButton(!dialog->oneRowOneButton());
         dialog->setMessageTextColor(Qt::red);
         dialog->setButtonEnabled(false, 0);
         UIScreen::mainScreen()->resize(dialog->oneRowOneButton() ? QSize(390, 844) : QSize(820, 1180));
       }},
      {"run the event loop", [](Dialog&) { QCoreApplication::processEvents(); }},
  };
  for (const auto& [name, meddle] : cases) {
    SCOPED_TRACE(name);
    systemlog::take();
    EXPECT_THAT(lifeOf(alert({"One"}, "Cancel"), meddle), ElementsAreArray(undisturbed));
    // What was thrown is logged, once for each report.
    EXPECT_EQ(systemlog::take().size(), std::string(name).starts_with("throw") ? undisturbed.size() : 0);
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
      const std::vector<std::string> lines = lifeOf(alert(), [&](Dialog& dialog) {
        if (reports++ == moment && dialog->window()) end(*dialog);
      });
      EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), lines.size());
    }
  }
}

TEST_F(Robustness, TakesCommandsOutOfTurnOnce) {
  const Dialog dialog = alert({"One"}, "Cancel");
  dialog->setAnimationDuration(0.02);
  Journal journal(*dialog);
  dialog->dismiss();
  EXPECT_THAT(journal.lines, IsEmpty());
  dialog->showAnimated(true, [&] { journal.note("shown"); });
  dialog->showAnimated(true, [&] { journal.note("shown once more"); });
  dialog->dismissAnimated(true, [&] { journal.note("dismissed"); });
  ASSERT_EQ(dialog->state(), RQAlertViewState::Dismissing);
  // On its way out it takes nothing but one more completion, and once it has gone nothing at all.
  const auto command = [&] {
    const auto soFar = journal.lines;
    dialog->dismissAnimated(true, [&] { journal.note("dismissed once more"); });
    dialog->dismiss();
    dialog->show();
    dialog->showAnimated();
    dialog->forceCancel();
    dialog->forceActionAtIndex(0);
    dialog->transitionToAlertView(dialog);
    EXPECT_THAT(journal.lines, ElementsAreArray(soFar));
  };
  command();
  EXPECT_TRUE(becomes(dialog, RQAlertViewState::Dismissed));
  command();
  EXPECT_EQ(std::set<std::string>(journal.lines.begin(), journal.lines.end()).size(), journal.lines.size());
  EXPECT_EQ(journal.lines.size(), 6 * 3 + 3U);
  EXPECT_EQ(std::count(journal.lines.begin(), journal.lines.end(), "shown"), 1);
  EXPECT_EQ(journal.lines.back(), "dismissed once more");
  EXPECT_EQ(dialog->window(), nullptr);
  EXPECT_EQ(dialog->viewController(), nullptr);
  EXPECT_EQ(dialog->view(), nullptr);
}

TEST_F(Robustness, TakesAnyTextForATextAndNothingElse) {
  setMotionEnabled(false);
  const QString texts[] = {
      none,
      "",
      "<b>bold</b> <img src=\"/nowhere\"> &amp; A && B",
      QString(QChar(0)) + "\x1b[31m\n\n\n\t",
      QString(QChar(0xD800)) + QChar(0xDC00) + QChar(0xDFFF),
      QString::fromUtf8("\u202e\u2066 \u0645\u0644\u0641 / a.b / \U0001F642"),
      QString(100 * 1024, u'x'),
      QString::fromUtf8("\u0631\u0633\u0627\u0644\u0629 ").repeated(20 * 1024),
  };
  for (const auto style : {alertStyle, sheetStyle}) {
    for (const QString& text : texts) {
      SCOPED_TRACE(text.left(20).toStdString());
      const QStringList buttons = text.isNull() ? QStringList{} : QStringList{text, text};
      const Dialog dialog =
          listeningTo(RQAlertView::alertViewWithTitle(text, text, style, buttons, text, text));
      dialog->view()->grab();
      EXPECT_TRUE(dialog->view()->rect().contains(frameOf(dialog)->geometry()));
      for (const auto* label : dialog->view()->findChildren<RQAlertViewLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(label->isHidden(), label->text().isEmpty());
      }
      if (buttons.isEmpty()) {
        EXPECT_TRUE(dialog->view()->findChildren<RQAlertViewButton*>().isEmpty());
        EXPECT_EQ(listOf(dialog), nullptr);
      } else {
        tap(dialog, text);
        dialog->forceActionAtIndex(1);
        const auto answers = answered();
        ASSERT_EQ(answers.size(), 2U);
        EXPECT_TRUE(answers.back() == text.toStdString());
      }
      close(dialog);
    }
  }
}

}  // namespace
