// To whom a dialog reports what, and in which order.
#include "alert/Dialogs.h"
#include "alert/Journal.h"
#include "support/SystemLog.h"

#include <functional>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

Lines operator+(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

// To the handler, the delegate, and by notification.
Lines trio(const std::string& name, const std::string& values = "", const std::string& userInfo = "") {
  return {"handler " + name + values, "delegate " + name + values, "posted " + name + userInfo};
}
Lines animations(const std::string& name) {
  return {"posted " + name + " duration=0.05", "handler " + name + " 0.05", "delegate " + name + " 0.05"};
}

class Reports : public Dialogs {
 protected:
  static Dialog everyButton(RQAlertViewStyle style) {
    const Dialog dialog =
        RQAlertView::alertViewWithTitle("Title", none, style, {"One", "Two"}, "Cancel", "Delete");
    dialog->setShouldDismissAnimated(false);
    return dialog;
  }
  template <typename Call>
  static std::string messageOf(Call call) {
    try {
      call();
    } catch (const InternalInconsistency& error) {
      return error.what();
    }
    return "nothing was thrown";
  }
};

struct Answer {
  const char* title;
  std::function<void(RQAlertView&)> force;
  Lines now;
  Lines afterwards;
};

const std::vector<Answer> answers{
    {"Two", [](RQAlertView& dialog) { dialog.forceActionAtIndex(1); },
     trio("Action", " 1 Two", " index=1 title=Two"),
     trio("DidDismissAfterAction", " 1 Two", " index=1 title=Two")},
    {"Cancel", [](RQAlertView& dialog) { dialog.forceCancel(); }, trio("Cancel"),
     trio("DidDismissAfterCancel")},
    {"Delete", [](RQAlertView& dialog) { dialog.forceDestructive(); }, trio("Destructive"),
     trio("DidDismissAfterDestructive")},
};

TEST_F(Reports, GoToHandlerThenDelegateThenNotificationFromShowToTheVeryEnd) {
  for (const Answer& answer : answers) {
    // As rows of an alert, as rows and separate button of a sheet, and forced.
    for (const auto way : {0, 1, 2}) {
      SCOPED_TRACE(std::string(answer.title) + " way " + std::to_string(way));
      const Dialog dialog = everyButton(way == 1 ? sheetStyle : alertStyle);
      Journal journal(*dialog);
      dialog->showAnimated(false, [&] { journal.note("show completed"); });
      EXPECT_THAT(journal.take(),
                  ElementsAreArray(trio("WillShow") + trio("DidShow") + Lines{"show completed"}));
      way == 2 ? answer.force(*dialog) : tap(dialog, QString::fromLatin1(answer.title));
      EXPECT_THAT(journal.take(), ElementsAreArray(answer.now + trio("WillDismiss") + trio("DidDismiss") +
                                                   answer.afterwards));
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
  EXPECT_THAT(journal.take(), ElementsAreArray(trio("WillShow") + animations("ShowAnimations")));
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Shown; }));
  EXPECT_THAT(journal.take(), ElementsAreArray(trio("DidShow") + Lines{"show completed"}));
  dialog->dismissAnimated(true, [&] { journal.note("dismiss completed"); });
  EXPECT_THAT(journal.take(), ElementsAreArray(trio("WillDismiss") + animations("DismissAnimations")));
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Dismissed; }));
  EXPECT_THAT(journal.take(), ElementsAreArray(trio("DidDismiss") + Lines{"dismiss completed"}));
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
  EXPECT_THAT(journal.take(), ElementsAreArray(trio("WillDismiss") + trio("DidDismiss")));
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

TEST_F(Reports, ReachAHandlerThatWasSetBeforeTheInitializer) {
  const Dialog dialog = RQAlertView::alloc();
  dialog->setDidShowHandler([this](RQAlertView&) { heard.emplace_back("shown"); });
  dialog->initWithTitle("Title", none, alertStyle, {"A"}, none, none)->show();
  EXPECT_THAT(answered(), ElementsAre("shown"));
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

TEST_F(Reports, ThrowWhereAButtonIsForcedThatThereIsNot) {
  const Dialog dialog = alert({"A", "B"});
  EXPECT_EQ(messageOf([&] { dialog->forceCancel(); }), "Cancel button is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceDestructive(); }), "Destructive button is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceActionAtIndex(2); }), "Button at index 2 is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceActionAtIndex(18446744073709551615U); }),
            "Button at index 18446744073709551615 is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceActionAtIndex(1); }), "nothing was thrown");
}

TEST_F(Reports, ThrowWhereADialogWasNotInitialized) {
  const std::string message =
      "You need to use one of \"- initWith...\" or \"+ alertViewWith...\" methods to initialize RQAlertView";
  const Dialog dialog = RQAlertView::alloc();
  EXPECT_EQ(messageOf([&] { dialog->show(); }), message);
  EXPECT_EQ(messageOf([&] { dialog->showAnimated(); }), message);
  EXPECT_EQ(messageOf([&] { dialog->showAnimated(true, [] {}); }), message);
  EXPECT_EQ(messageOf([&] { RQAlertView::appearance()->show(); }), message);
  const Dialog shown = showing(alert());
  EXPECT_EQ(messageOf([&] { shown->transitionToAlertView(dialog); }), message);
  EXPECT_TRUE(shown->isShowing());
  shown->dismiss();
}

TEST_F(Reports, IgnoreAnIndexWhereAButtonIsEnabledAndThrowElsewhere) {
  const Dialog dialog = alert({"A"});
  dialog->setButtonEnabled(false, 1);
  EXPECT_TRUE(dialog->isButtonEnabledAtIndex(0));
  EXPECT_THROW(dialog->isButtonEnabledAtIndex(1), std::out_of_range);
  EXPECT_THROW(dialog->setButtonPropertiesAtIndex(1, [](RQAlertViewButtonProperties&) {}), std::out_of_range);
}

TEST_F(Reports, WarnOfEachDeprecatedDelegateMethodOnce) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  const Dialog dialog = alert();
  systemlog::take();
  dialog->setDelegate(delegate);
  EXPECT_THAT(systemlog::take(), IsEmpty());
  int called = 0;
  delegate->alertViewButtonPressedWithTitle = [&](RQAlertView&, const QString&, std::size_t) { ++called; };
  delegate->alertViewDestructiveButtonPressed = [&](RQAlertView&) { ++called; };
  dialog->setDelegate(delegate);
  EXPECT_THAT(
      systemlog::take(),
      ElementsAre("WARNING: delegate method \"alertView:buttonPressedWithTitle:index:\" is DEPRECATED, use "
                  "\"alertView:clickedButtonAtIndex:title:\" instead",
                  "WARNING: delegate method \"alertViewDestructiveButtonPressed:\" is DEPRECATED, use "
                  "\"alertViewDestructed:\" instead"));
  dialog->show();
  dialog->forceActionAtIndex(0);
  EXPECT_EQ(called, 0);
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
