// To whom a dialog reports what, and in which order.
#include "alert/Dialogs.h"
#include "alert/Journal.h"

#include <functional>
#include <initializer_list>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using Lines = std::vector<std::string>;

Lines operator+(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

const Lines willShow{"handler willShow", "delegate willShow", "posted WillShow"};
const Lines showAnimations{"posted ShowAnimations duration=0.05", "block show 0.05", "delegate show 0.05"};
const Lines didShow{"handler didShow", "delegate didShow", "posted DidShow"};
const Lines willDismiss{"handler willDismiss", "delegate willDismiss", "posted WillDismiss"};
const Lines dismissAnimations{"posted DismissAnimations duration=0.05", "block dismiss 0.05",
                              "delegate dismiss 0.05"};
const Lines didDismiss{"handler didDismiss", "delegate didDismiss", "posted DidDismiss"};

class Reports : public Dialogs {
 protected:
  static Dialog everyButton(RQAlertViewStyle style) {
    const Dialog dialog =
        RQAlertView::alertViewWithTitle("Title", none, style, {"One", "Two"}, "Cancel", "Delete");
    dialog->setShouldDismissAnimated(false);
    return dialog;
  }
};

struct Answer {
  const char* title;
  std::function<void(RQAlertView&)> force;
  Lines now;
  Lines afterwards;
};

const std::vector<Answer> answers{
    {"Two",
     [](RQAlertView& dialog) { dialog.forceActionAtIndex(1); },
     {"handler action 1 Two", "delegate action 1 Two", "posted Action index=1 title=Two"},
     {"handler afterAction 1 Two", "delegate afterAction 1 Two",
      "posted DidDismissAfterAction index=1 title=Two"}},
    {"Cancel",
     [](RQAlertView& dialog) { dialog.forceCancel(); },
     {"handler cancel", "delegate cancel", "posted Cancel"},
     {"handler afterCancel", "delegate afterCancel", "posted DidDismissAfterCancel"}},
    {"Delete",
     [](RQAlertView& dialog) { dialog.forceDestructive(); },
     {"handler destructive", "delegate destructive", "posted Destructive"},
     {"handler afterDestructive", "delegate afterDestructive", "posted DidDismissAfterDestructive"}},
};

TEST_F(Reports, GoToHandlerThenDelegateThenNotificationFromShowToTheVeryEnd) {
  for (const Answer& answer : answers) {
    // As rows of an alert, as rows and separate button of a sheet, and forced.
    for (const auto way : {0, 1, 2}) {
      SCOPED_TRACE(std::string(answer.title) + " way " + std::to_string(way));
      const Dialog dialog = everyButton(way == 1 ? sheetStyle : alertStyle);
      Journal journal(*dialog);
      dialog->showAnimated(false, [&] { journal.note("show completed"); });
      EXPECT_THAT(journal.take(), ElementsAreArray(willShow + didShow + Lines{"show completed"}));
      way == 2 ? answer.force(*dialog) : tap(dialog, QString::fromLatin1(answer.title));
      EXPECT_THAT(journal.take(),
                  ElementsAreArray(answer.now + willDismiss + didDismiss + answer.afterwards));
      EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
      EXPECT_EQ(dialog->delegate(), nullptr);
      letGo();
      EXPECT_TRUE(journal.take().empty());
    }
  }
}

TEST_F(Reports, ComeFromInsideTheAnimationsToo) {
  setMotionEnabled(true);
  const Dialog dialog = alert();
  dialog->setAnimationDuration(0.05);
  Journal journal(*dialog);
  dialog->showAnimated(true, [&] { journal.note("show completed"); });
  EXPECT_THAT(journal.take(), ElementsAreArray(willShow + showAnimations));
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Shown; }));
  EXPECT_THAT(journal.take(), ElementsAreArray(didShow + Lines{"show completed"}));
  dialog->dismissAnimated(true, [&] { journal.note("dismiss completed"); });
  EXPECT_THAT(journal.take(), ElementsAreArray(willDismiss + dismissAnimations));
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Dismissed; }));
  EXPECT_THAT(journal.take(), ElementsAreArray(didDismiss + Lines{"dismiss completed"}));
}

TEST_F(Reports, TellOfAnAnswerButNotOfADismissalWhereItKeepsTheDialogOpen) {
  const Dialog dialog = everyButton(alertStyle);
  dialog->setDismissOnAction(false);
  Journal journal(*dialog);
  dialog->show();
  journal.take();
  for (const Answer& answer : answers) {
    tap(dialog, QString::fromLatin1(answer.title));
    EXPECT_THAT(journal.take(), ElementsAreArray(answer.now));
  }
  EXPECT_EQ(dialog->state(), RQAlertViewState::Shown);
  dialog->dismiss();
  EXPECT_THAT(journal.take(), ElementsAreArray(willDismiss + didDismiss));
}

TEST_F(Reports, ReachOnlyWhatTheDelegateRespondsToAndNoneOnceItHasGone) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  int shown = 0;
  delegate->alertViewDidShow = [&](RQAlertView&) { ++shown; };
  const Dialog first = alert();
  first->setDelegate(delegate);
  first->show();
  EXPECT_EQ(shown, 1);
  first->dismiss();
  const Dialog second = alert();
  second->setDelegate(delegate);
  delegate.reset();
  second->show();
  second->forceActionAtIndex(0);
  EXPECT_EQ(shown, 1);
}

TEST_F(Reports, ReachTheDelegateThatAHandlerHasSet) {
  const auto named = [&](const std::string& name) {
    auto delegate = std::make_shared<RQAlertViewDelegate>();
    delegate->alertViewCancelled = [this, name](RQAlertView&) { heard.push_back(name + " cancelled"); };
    delegate->alertViewDidDismissAfterCancelled = [this, name](RQAlertView&) {
      heard.push_back(name + " afterwards");
    };
    return delegate;
  };
  const auto before = named("before");
  const auto after = named("after");
  const Dialog dialog = everyButton(alertStyle);
  dialog->setDelegate(before);
  dialog->setCancelHandler([&](RQAlertView& self) { self.setDelegate(after); });
  dialog->show();
  dialog->forceCancel();
  EXPECT_THAT(answered(), ElementsAre("after cancelled", "after afterwards"));
}

// Every way of making a dialog, told apart by who hears of the action.
struct EntryPoint {
  const char* name;
  RQAlertViewType type;
  std::function<Dialog()> bare;
  std::function<Dialog(RQAlertViewActionHandler, RQAlertViewHandler, RQAlertViewHandler)> withHandlers;
  std::function<Dialog(std::shared_ptr<RQAlertViewDelegate>)> withDelegate;
};

#define ENTRY_POINT(type, name, ...)                                                                     \
  {#name " (instance)", type, [] { return RQAlertView::alloc()->init##name(__VA_ARGS__); },              \
   [](auto a, auto c, auto d) { return RQAlertView::alloc()->init##name(__VA_ARGS__, a, c, d); },        \
   [](auto delegate) { return RQAlertView::alloc()->init##name(__VA_ARGS__, delegate); }},               \
  {                                                                                                      \
#name " (factory)", type, [] { return RQAlertView::alertView##name(__VA_ARGS__); },                    \
   [](auto a, auto c, auto d) { return RQAlertView::alertView##name(__VA_ARGS__, a, c, d); },             \
   [](auto delegate) { return RQAlertView::alertView##name(__VA_ARGS__, delegate); } \
  }
#define BUTTONS QStringList{"A", "B"}, "Cancel", "Delete"

const std::vector<EntryPoint> entryPoints{
    ENTRY_POINT(RQAlertViewType::Default, WithTitle, "Title", "Message", sheetStyle, BUTTONS),
    ENTRY_POINT(RQAlertViewType::Default, WithViewAndTitle, "Title", "Message", sheetStyle, new QWidget,
                BUTTONS),
    ENTRY_POINT(RQAlertViewType::ActivityIndicator, WithActivityIndicatorAndTitle, "Title", "Message",
                sheetStyle, "Label", BUTTONS),
    ENTRY_POINT(RQAlertViewType::ProgressView, WithProgressViewAndTitle, "Title", "Message", sheetStyle, 0.5,
                "Label", BUTTONS),
    ENTRY_POINT(
        RQAlertViewType::TextFields, WithTextFieldsAndTitle, "Title", "Message", 2,
        [](RQAlertViewTextField&, std::size_t) {}, BUTTONS),
};

TEST_F(Reports, AreAttachedByEveryEntryPoint) {
  ASSERT_EQ(entryPoints.size() * 3, 30U);
  for (const EntryPoint& entry : entryPoints) {
    SCOPED_TRACE(entry.name);
    const auto action = [&](RQAlertView&, std::size_t, const QString& title) {
      heard.push_back(title.toStdString());
    };
    const auto plain = [&](const char* what) {
      return [this, what](RQAlertView&) { heard.push_back(what); };
    };
    auto delegate = std::make_shared<RQAlertViewDelegate>();
    delegate->alertViewClickedButtonAtIndex = action;
    delegate->alertViewCancelled = plain("cancelled");
    delegate->alertViewDestructed = plain("destructed");
    for (const Dialog& dialog :
         {entry.bare(), entry.withHandlers(action, plain("cancelled"), plain("destructed")),
          entry.withDelegate(delegate)}) {
      EXPECT_TRUE(dialog->isInitialized());
      EXPECT_EQ(dialog->type(), entry.type);
      const bool fields = entry.type == RQAlertViewType::TextFields;
      const bool progress = entry.type == RQAlertViewType::ProgressView;
      const bool labelled = progress || entry.type == RQAlertViewType::ActivityIndicator;
      EXPECT_EQ(dialog->style(), fields ? alertStyle : sheetStyle);
      EXPECT_EQ(dialog->innerView() != nullptr, std::string(entry.name).find("View") == 4);
      EXPECT_EQ(dialog->progress(), progress ? 0.5 : 0);
      EXPECT_EQ(dialog->progressLabelText(), labelled ? "Label" : none);
      EXPECT_EQ(dialog->buttonTitles(), (QStringList{"A", "B"}));
      EXPECT_EQ(dialog->title(), "Title");
      EXPECT_EQ(dialog->message(), "Message");
      EXPECT_EQ(dialog->cancelButtonTitle(), "Cancel");
      EXPECT_EQ(dialog->destructiveButtonTitle(), "Delete");
      EXPECT_EQ(dialog->textFieldsArray().size(), fields ? 2U : 0U);
      dialog->forceActionAtIndex(1);
      dialog->forceCancel();
      dialog->forceDestructive();
    }
    EXPECT_THAT(answered(), ElementsAre("B", "cancelled", "destructed", "B", "cancelled", "destructed"));
  }
}

}  // namespace
