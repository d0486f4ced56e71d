// What dialogs do with fingers, keys, each other and their own reports: flows.txt, line by line. The grammar
// stands at the head of that file.
#include "alert/Dialogs.h"
#include "alert/Journal.h"
#include "platform/UIKeyboard.h"
#include "support/Clock.h"
#include "support/Sections.h"
#include "support/SystemLog.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include <QAccessible>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>

namespace {

using Records = std::vector<std::string>;

class Flows : public Dialogs {
 protected:
  // Of all dialogs of one flow: what the test holds of them, and what they report.
  struct Cast {
    Dialog dialog;
    std::weak_ptr<RQAlertView> weak;
    std::unique_ptr<Journal> journal;
    int reports = 0;
  };

  void follow(const Records& lines) {
    cast_.clear();
    orders_.clear();
    place_ = "app Behind";
    systemlog::take();
    for (std::size_t at = 0; at < lines.size();) {
      const std::string action = lines[at++];
      std::string expected;
      for (; at < lines.size() && lines[at].starts_with("  "); ++at) expected += lines[at] + "\n";
      records_.clear();
      joins_ = true;
      try {
        act(QString::fromStdString(action));
      } catch (const std::logic_error& error) {
        record(std::string("refused: ") + error.what());
      }
      observe();
      const std::size_t atOnce = records_.size();
      joins_ = false;
      letGo();
      observe();
      if (records_.size() > atOnce) records_.insert(records_.begin() + static_cast<long>(atOnce), "later");
      std::string came;
      for (const std::string& record : records_) came += "  " + record + "\n";
      ASSERT_EQ(came, expected) << "after: " << action;
    }
  }

  // Each report of a dialog that is shown, answered and ended at the moment with this number.
  Records lifeEndedAt(int moment, const QString& end) {
    records_.clear();
    orders_.clear();
    act("motion; a = alert buttons=One; when a " + QString::number(moment) + ": a " + end + "; a show");
    for (const char* next : {"a force 0", "a forget"}) {
      HeldClock::turn(1000);
      letGo();
      act(next);
    }
    HeldClock::turn(1000);
    letGo();
    EXPECT_TRUE(cast_["a"].weak.expired());
    return std::exchange(records_, {});
  }

  void finish() {
    // Where a report ran the event loop, Qt's clock of animations goes on until another one ends.
    act("motion; z = alert; z show");
    HeldClock::turn(10'000);
    letGo();
    other_.reset();
    UIDevice::currentDevice().setSystemVersion(14);
    TearDown();
    resize(390, 844);
    appField->setFocus();
  }

 private:
  static QAccessibleInterface* interfaceOf(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
  }

  // As a screen reader is told; a field by its number, since all have the dialog's name.
  std::string nameOf(QWidget* widget) const {
    for (const auto& [name, cast] : cast_) {
      const auto dialog = cast.weak.lock();
      const auto fields = dialog ? dialog->textFieldsArray() : std::vector<RQAlertViewTextField*>();
      for (std::size_t index = 0; index < fields.size(); ++index) {
        if (fields[index] == widget) return "field " + std::to_string(index);
      }
    }
    QAccessibleInterface* told = interfaceOf(widget);
    if (told->focusChild() != nullptr) told = told->focusChild();
    const std::string name = told->text(QAccessible::Name).toStdString();
    return told->state().focused ? name + (told->state().offscreen ? " out of sight" : "") : "no " + name;
  }

  // Where the input goes to.
  void observe() {
    std::string key = keyWindow() == nullptr ? "none" : keyWindow() == appWindow.get() ? "app" : "other";
    for (const auto& [name, cast] : cast_) {
      const auto dialog = cast.weak.lock();
      if (dialog && dialog->window() && dialog->window().get() == keyWindow()) key = name;
    }
    const std::string name = focus() != nullptr ? nameOf(focus()) : "";
    const std::string place = name.empty() ? key : key + ' ' + name;
    if (place == place_) return;
    place_ = place;
    if (joins_ && !name.empty() && !records_.empty() && records_.back().starts_with("focus " + key + ' '))
      records_.back() += " > " + name;
    else
      records_.push_back("focus " + place);
  }

  void record(const std::string& line) { records_.push_back(line); }

  // All parts that a screen reader finds, from the top, then from the left.
  void look(const Dialog& dialog) {
    QAccessibleInterface* box = interfaceOf(frameOf(dialog));
    const std::map<QAccessible::Role, const char*> roles{
        {QAccessible::AlertMessage, "alert"}, {QAccessible::Dialog, "question"},
        {QAccessible::Button, "button"},      {QAccessible::ListItem, "row"},
        {QAccessible::StaticText, "text"},    {QAccessible::EditableText, "field"},
        {QAccessible::ProgressBar, "bar"},    {QAccessible::List, "list"}};
    const auto role = [&](const QAccessibleInterface& part) {
      return roles.contains(part.role()) ? roles.at(part.role()) : "";
    };
    std::vector<std::tuple<int, int, std::string>> parts;
    const std::function<void(QAccessibleInterface*)> visit = [&](QAccessibleInterface* parent) {
      for (int index = 0; index < parent->childCount(); ++index) {
        QAccessibleInterface* part = parent->child(index);
        EXPECT_EQ(part->parent()->indexOfChild(part), index);
        if (part->state().invisible) continue;
        const QRect place = part->rect();
        std::string line = role(*part) + std::string(" ") + part->text(QAccessible::Name).toStdString();
        if (part->role() == QAccessible::ProgressBar)
          line = "bar " + part->text(QAccessible::Value).toStdString();
        if (part->state().disabled) line = "(" + line + ")";
        if (part->role() == QAccessible::ListItem) {
          EXPECT_EQ(parent->childAt(place.center().x(), place.center().y()), part) << line;
        }
        if (*role(*part) != '\0' && part->role() != QAccessible::List)
          parts.emplace_back(place.y(), place.x(), line);
        visit(part);
      }
    };
    visit(box);
    std::sort(parts.begin(), parts.end());
    std::string line = role(*box) + std::string(" <") + box->text(QAccessible::Name).toStdString() + "> <" +
                       box->text(QAccessible::Description).toStdString() + ">";
    if (!box->state().modal) line += " not modal";
    if (box->state().active) line += " active";
    for (const auto& [top, left, part] : parts)
      line += (&part == &std::get<2>(parts[0]) ? ": " : ", ") + part;
    record(line);
  }

  void actOn(const std::string& name, Cast& cast, const QString& words) {
    const QString verb = words.section(' ', 0, 0);
    const QString rest = words.section(' ', 1);
    const Dialog dialog = cast.dialog ? cast.dialog : cast.weak.lock();
    const auto done = [this, name](const char* what) { return [this, name, what] { record(name + what); }; };
    if (verb == "=") {
      cast = {};
      cast.dialog = dialogFrom(rest);
      cast.weak = cast.dialog;
      cast.journal = std::make_unique<Journal>(*cast.dialog, &records_, name + ' ');
      cast.journal->meddle = [this, name](const std::string& report) {
        for (const std::string& when : {report, std::to_string(++cast_[name].reports), std::string("any")}) {
          const auto found = orders_.find(name + ' ' + when);
          if (found != orders_.end()) act(found->second);
        }
      };
    } else if (verb == "bare") {
      cast.dialog = RQAlertView::alloc();
    } else if (verb == "forget") {
      cast.dialog.reset();
    } else if (verb == "state") {
      const char* const states[] = {"allocated", "made", "showing", "shown", "dismissing", "dismissed"};
      record(!dialog ? "freed" : states[static_cast<int>(dialog->state())]);
    } else if (verb == "show") {
      dialog->showAnimated(rest != "at once", rest == "hidden", done(" show completed"));
    } else if (verb == "dismiss") {
      dialog->dismissAnimated(rest != "at once", done(" dismiss completed"));
    } else if (verb == "into") {
      dialog->transitionToAlertView(rest == "nothing" ? nullptr : cast_.at(rest.toStdString()).dialog,
                                    done(" transition completed"));
    } else if (verb == "force") {
      rest == "cancel"        ? dialog->forceCancel()
      : rest == "destructive" ? dialog->forceDestructive()
                              : dialog->forceActionAtIndex(rest.toULongLong());
    } else if (verb == "lose") {
      delete dialog->window().get();
    } else if (verb == "hide") {
      dialog->window()->setHidden(true);
    } else if (verb == "look") {
      look(dialog);
    } else if (verb == "label") {
      dialog->setProgressLabelText(rest);
    } else if (verb == "progress") {
      dialog->setProgress(rest.toDouble(), true);
    } else if (verb == "fields") {
      Records texts;
      for (const auto* field : dialog->textFieldsArray()) record('"' + field->text().toStdString() + '"');
    } else if (verb == "scrolled") {
      const QScrollBar* bar = partOf<QScrollArea>(dialog)->verticalScrollBar();
      const bool isAtEnd = bar->value() == 0 || bar->value() == bar->maximum();
      record(!isAtEnd ? "between" : bar->value() == 0 ? "to the top" : "to the bottom");
    } else if (verb == "lit") {
      for (const auto* button : dialog->view()->findChildren<RQAlertViewButton*>()) {
        if (button->isSelected()) record("lit " + button->title().toStdString());
      }
    } else {
      change(*dialog, words);
    }
  }

  void act(const QString& line) {
    if (line.contains("; ")) {
      for (const QString& each : line.split("; ")) act(each);
      return;
    }
    const QString verb = line.section(' ', 0, 0);
    const QString rest = line.section(' ', 1);
    QWindow* const screen = UIScreen::mainScreen()->windowHandle();
    const auto keyNamed = [](const QString& name) {
      return static_cast<Qt::Key>(QKeySequence(name)[0].key());
    };
    const auto top = [this] {
      for (const auto& [name, cast] : cast_) {
        const auto dialog = cast.weak.lock();
        if (dialog && dialog->window() && dialog->window().get() == keyWindow()) return dialog;
      }
      throw std::runtime_error("no dialog is key");
    };
    const std::string name = verb.toStdString();
    if (verb == "open") {
      // What is reported is told elsewhere.
      act(rest);
      act(rest.left(1) + " show at once");
      records_.clear();
    } else if (verb == "shut") {
      act(rest + " dismiss at once");
      records_.clear();
    } else if (verb.size() == 1) {
      actOn(name, cast_[name], rest);
    } else if (verb == "press") {
      for (const QString& key : rest.split(' ')) {
        QTest::keyClick(screen, keyNamed(key));
        observe();
      }
    } else if (verb == "hold") {
      for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent repeated(type, keyNamed(rest), {}, rest == "Space" ? " " : "\r", true);
        QCoreApplication::sendEvent(focus(), &repeated);
      }
      QTest::keyRelease(focus(), keyNamed(rest));
    } else if (verb == "down") {
      QTest::keyPress(screen, keyNamed(rest));
    } else if (verb == "up") {
      QTest::keyRelease(screen, keyNamed(rest));
    } else if (verb == "type") {
      for (const QChar letter : rest) QTest::keyClick(screen, letter.toLatin1());
    } else if (verb == "tap") {
      tap(top(), rest);
    } else if (verb == "push") {
      const auto [widget, place] = placeOf(top(), rest);
      auto* told = interfaceOf(listOf(top()) && widget == listOf(top())->viewport() ? listOf(top()) : widget);
      if (told->role() == QAccessible::List) told = told->child(listOf(top())->indexAt(place.center()).row());
      told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
      // A button is seen to go down before it comes up again.
      letGo();
      HeldClock::turn(200);
    } else if (verb == "slide") {
      const auto [widget, from] = placeOf(top(), rest.section(' ', 0, 0));
      const QPoint to = placeOf(top(), rest.section(' ', 1)).second.center();
      QTest::mousePress(widget, Qt::LeftButton, {}, from.center());
      QTest::mouseMove(widget, to);
      QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
    } else if (verb == "touch") {
      const Dialog dialog = top();
      QWidget* const part = rest == "box" ? static_cast<QWidget*>(frameOf(dialog)) : dialog->view();
      QTest::mouseClick(part, Qt::LeftButton, {},
                        rest == "box" ? QPoint(part->width() / 2, 4) : QPoint(3, 3));
    } else if (verb == "finger") {
      QTest::mouseEvent(rest == "down" ? QTest::MousePress : QTest::MouseRelease, top()->view(),
                        Qt::LeftButton, {}, {3, 3});
    } else if (verb == "focus" && rest == "message") {
      partOf<QScrollArea>(top())->setFocus();
    } else if (verb == "focus") {
      top()->textFieldsArray().at(rest.toULongLong())->setFocus();
    } else if (verb == "screen") {
      resize(rest.section('x', 0, 0).toInt(), rest.section('x', 1).toInt());
    } else if (verb == "from") {
      UIApplication::setLayoutDirection(rest == "right" ? Qt::RightToLeft : Qt::LeftToRight);
    } else if (verb == "motion") {
      setMotionEnabled(true);
    } else if (verb == "turn") {
      HeldClock::turn(rest.toLong());
    } else if (verb == "when") {
      orders_[rest.section(": ", 0, 0).toStdString()] = rest.section(": ", 1).replace(", ", "; ");
    } else if (verb == "where") {
      place_.clear();
      observe();
    } else if (verb == "throw") {
      if (rest == "a number") throw 1;
      throw std::runtime_error("a report failed");
    } else if (verb == "logged") {
      std::map<std::string, int> times;
      for (const std::string& logged : systemlog::take()) ++times[logged];
      for (const auto& [logged, count] : times) record(std::to_string(count) + " x " + logged);
    } else if (verb == "spin") {
      QCoreApplication::processEvents();
    } else if (verb == "version") {
      UIDevice::currentDevice().setSystemVersion(rest.toDouble());
    } else if (verb == "all") {
      rest == "show" ? RQAlertView::appearance()->show() : change(*RQAlertView::appearance(), rest);
    } else if (verb == "of") {
      const Dialog dialog = dialogFrom(rest.section(": ", 0, 0));
      QStringList values;
      for (const QString& each : rest.section(": ", 1).split(' ')) values << lookOf(*dialog, each);
      record(values.join(' ').toStdString());
    } else if (verb == "window") {
      other_ = makeUIWindow();
      other_->makeKeyAndVisible();
    } else if (verb == "windows") {
      // From the lowest.
      std::string all;
      for (const UIWindow* window : UIScreen::mainScreen()->windows()) {
        std::string shown = window == appWindow.get() ? "app" : "other";
        for (const auto& [known, cast] : cast_) {
          const auto dialog = cast.weak.lock();
          if (dialog && dialog->window().get() == window) shown = known;
        }
        all += (all.empty() ? "" : ", ") + shown + (window->isHidden() ? " hidden" : "") +
               (window->isEnabled() ? "" : " disabled");
      }
      record(all);
    } else {
      ADD_FAILURE() << line.toStdString();
    }
  }

  std::map<std::string, Cast> cast_;
  std::map<std::string, QString> orders_;
  Records records_;
  std::string place_;
  bool joins_ = false;  // steps of the focus, which belong to one action, into one line
  const HeldClock clock_;
  std::shared_ptr<UIWindow> other_;
};

TEST_F(Flows, GoAsWritten) {
  const auto sections = sectionsOf(TWEAKBENCH_DIALOG_FLOWS);
  ASSERT_GT(sections.size(), 20U);
  for (const Section& section : sections) {
    SCOPED_TRACE(section.title);
    follow(section.lines);
    finish();
  }
}

TEST_F(Flows, ReportNothingTwiceWhereverADialogIsEnded) {
  for (int moment = 1; moment <= 25; ++moment) {
    for (const char* end : {"lose", "dismiss at once", "dismiss"}) {
      const Records lines = lifeEndedAt(moment, end);
      EXPECT_GE(lines.size(), 1U);
      EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), lines.size()) << moment << end;
      finish();
    }
  }
}

}  // namespace
