// Whole flows on the real screens, compared with transcripts.txt: what is done, and every command line,
// setting, file operation, address, dialog and delayed call that follows, in this order, in both languages.
// The grammar stands at the head of that file.
#include "platform/NSNotificationCenter.h"
#include "support/Sections.h"
#include "support/Shell.h"
#include "support/SystemLog.h"
#include "tests/ui/Screens.h"
#include "ui/controls/CodeColours.h"
#include "ui/controls/UIButton.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <map>
#include <mutex>
#include <regex>
#include <set>
#include <spawn.h>
#include <sstream>
#include <tuple>
#include <unistd.h>
#include <vector>

#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QRegularExpression>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

struct DelayedCall {
  QPointer<QObject> target;
  std::function<void()> selector;
};

// Builds run on a worker thread.
std::mutex mutex;
bool isRecording = false;
std::vector<std::string> records;
std::vector<DelayedCall> held;  // main thread only

void record(const std::string& line) {
  const std::lock_guard lock(mutex);
  if (!isRecording) return;
  records.push_back(line);
  for (const auto& [from, to] :
       {std::pair("\n", "\\n"), {"\r", "\\r"}, {"\x1B", "\\e"}, {"\uFEFF", "\\uFEFF"}})
    records.back() = replaceAll(records.back(), from, to);
}

// All three in this order are one line.
void recordStream(const char* stream, const std::string& log) {
  record(stream + log);
  const std::lock_guard lock(mutex);
  const std::size_t count = records.size();
  if (count < 3 || records[count - 3] != "stdout " + log || records[count - 2] != "stderr " + log ||
      records[count - 1] != "stdin " + log)
    return;
  records.resize(count - 2);
  records.back() = "streams " + log;
}

std::size_t recorded() {
  const std::lock_guard lock(mutex);
  return records.size();
}

bool isOfTheDevice(const std::string& path) {
  return path.starts_with("/Applications/") || path.starts_with("/var/Tweakyard") ||
         path.starts_with("/var/mobile/Documents");
}

std::string shortened(const std::string& path) {
  return path.starts_with(device::application) ? path.substr(device::application.size()) : path;
}

// The keys that a new property list sets or removes.
std::string changeOf(const std::string& list, const std::string& next) {
  std::string changes;
  for (const char* key : {"Choose", "Files", "TheosPath", "FullPath", "Language"}) {
    const MaybeText before = propertyListValue(list, key);
    const MaybeText after = propertyListValue(next, key);
    if (before != after) changes += std::string(" ") + key + (after ? "=" + *after : " removed");
  }
  return changes.empty() ? " as before" : changes;
}

template <typename Function>
Function* next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The program's own definitions come before the C library's.
extern "C" {

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const arguments[], char* const environment[]) {
  record("sh " + std::string(arguments[2]));
  return next(&posix_spawn, "posix_spawn")(child, path, actions, attributes, arguments, environment);
}

int rename(const char* from, const char* to) noexcept {
  const std::string path = to;
  if (path.ends_with(".plist") && path.starts_with(device::application))
    record(shortened(path) + changeOf(path, from));
  else if (isOfTheDevice(path))
    record("write " + shortened(path));
  return next(&rename, "rename")(from, to);
}

int remove(const char* path) noexcept {
  if (isOfTheDevice(path)) record("remove " + shortened(path));
  return next(&remove, "remove")(path);
}

int mkdir(const char* path, mode_t mode) noexcept {
  const int status = next(&mkdir, "mkdir")(path, mode);
  if (status == 0 && isOfTheDevice(path)) record("mkdir " + std::string(path));
  return status;
}

FILE* freopen(const char* path, const char* mode, FILE* stream) {
  const char* const name = stream == stdout ? "stdout " : stream == stderr ? "stderr " : "stdin ";
  recordStream(name, shortened(path) + (mode == std::string("a+") ? "" : mode));
  return next(&freopen, "freopen")(path, mode, stream);
}
}

// Linked in the place of the platform's: time passes when the test says so.
extern "C++" void delayed(QObject* target, std::function<void()> selector, double seconds) asm(
    "__wrap__Z25performSelectorAfterDelayP7QObjectSt8functionIFvvEEd");
void delayed(QObject* target, std::function<void()> selector, double seconds) {
  std::ostringstream text;
  text << "after " << seconds << " s";
  record(text.str());
  held.push_back({target, std::move(selector)});
}

namespace {
class Transcripts : public Screens {
 protected:
  Transcripts() {
    for (const TextPair& own : text::all) arabic_[own.english] = own.arabic;
    for (const std::string& line : linesOf("/.host/tweakbench/tests/text-pairs.tsv")) {
      const auto pair = cellsOf(line);
      if (pair.size() == 2) arabic_[pair[1]] = pair[0];
    }
    arabic_["2 errors, 1 warning"] = fill(text::someErrors.arabic, {std::string("2")}) +
                                     text::listComma.arabic +
                                     fill(text::oneWarning.arabic, {std::string("1")});
    NSNotificationCenter::defaultCenter().addObserver(
        &observer_, reports::willShow.notification, nullptr,
        [this](const NSNotification& report) { recordDialog(dynamic_cast<RQAlertView&>(*report.object)); });
    NSNotificationCenter::defaultCenter().addObserver(
        &observer_, reports::willDismiss.notification, nullptr, [](const NSNotification& report) {
          const auto& dialog = dynamic_cast<RQAlertView&>(*report.object);
          if (dialog.type() == RQAlertViewType::ActivityIndicator) record("gone " + shown(dialog.title()));
        });
  }
  ~Transcripts() override {
    isRecording = false;
    held.clear();
  }

  void follow(const std::vector<std::string>& lines, bool isArabic) {
    isArabic_ = isArabic;
    device::reset();
    for (const char* folder : {"/var/mobile/Documents/In", "/var/mobile/Documents/Out"})
      removeItemAtPath(folder);
    removeItemAtPath(backups);
    device::speak(isArabic ? "AR" : "EN");
    UIApplication::sharedApplication()->setURLOpener([](const QUrl& url) {
      record("open " + url.toString().toStdString());
      return true;
    });
    bool isAsWritten = true;
    for (std::size_t at = 0; at < lines.size() && isAsWritten;) {
      const std::string action = lines[at++];
      std::vector<std::string> expected;
      for (; at < lines.size() && lines[at].starts_with("  "); ++at)
        expected.push_back(translated(lines[at].substr(2)));
      {
        const std::lock_guard lock(mutex);
        records.clear();
        isRecording = true;
      }
      try {
        act(action);
        settle(expected.size());
      } catch (const finger::Missing& missing) {
        record(missing.what());
      }
      const std::lock_guard lock(mutex);
      isRecording = false;
      isAsWritten = records == expected;
      if (!isAsWritten)
        ADD_FAILURE() << action << "\n wanted:\n" << joined(expected) << " came:\n" << joined(records);
    }
    for (auto dialog = topDialog(); dialog && dialog->isShowing(); dialog = topDialog()) dialog->dismiss();
    delegate_.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    held.clear();
  }

  std::map<std::string, std::string> looks_;  // colours to name
  std::map<std::string, std::string> named_;  // lines

 private:
  static std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += "  " + line + '\n';
    return text;
  }

  static std::string shown(const QString& text) {
    return text.isNull() ? "-" : '<' + text.toStdString() + '>';
  }

  void recordDialog(const RQAlertView& dialog) {
    std::string colours;
    for (const QColor& colour :
         {dialog.backgroundColor(), dialog.separatorsColor(), dialog.cancelButtonTitleColor(),
          dialog.cancelButtonBackgroundColorHighlighted(), dialog.titleTextColor(), dialog.messageTextColor(),
          dialog.buttonsTitleColor(), dialog.textFieldsTextColor(), dialog.textFieldsBackgroundColor(),
          dialog.activityIndicatorViewColor(), dialog.progressLabelTextColor()})
      colours += ' ' + colour.name(QColor::HexArgb).toStdString().substr(1);
    const auto look = looks_.find(colours);
    std::string line = dialog.style() == RQAlertViewStyle::Alert ? "alert " : "sheet ";
    line += (look == looks_.end() ? colours : look->second) + ' ' + shown(dialog.title()) + ' ' +
            shown(dialog.message()) + " [";
    for (const QString& title : dialog.buttonTitles())
      line += (line.ends_with('[') ? "" : ", ") + shown(title);
    line += ']';
    if (!dialog.cancelButtonTitle().isNull()) line += " cancel " + shown(dialog.cancelButtonTitle());
    if (!dialog.destructiveButtonTitle().isNull())
      line += " destructive " + shown(dialog.destructiveButtonTitle());
    if (dialog.type() == RQAlertViewType::ActivityIndicator)
      line += " spinner " + shown(dialog.progressLabelText());
    for (const auto& field : dialog.textFieldsArray()) {
      line += " field " + shown(field->text());
      if (field->keyboardAppearance() == UIKeyboardAppearance::Dark) line += " dark";
      if (field->clearButtonMode() == UITextFieldViewMode::WhileEditing) line += " clearing";
    }
    record(line);
  }

  // In the language of this run: a text of a pair, also one whose "%@" is filled.
  std::string inThisLanguage(const std::string& english) const {
    if (!isArabic_) return english;
    if (const auto whole = arabic_.find(english); whole != arabic_.end()) return whole->second;
    for (const auto& [from, to] : arabic_) {
      const std::size_t hole = from.find("%@");
      if (hole == std::string::npos || !english.starts_with(from.substr(0, hole))) continue;
      const std::string behind = from.substr(hole + 2);
      if (english.size() < hole + behind.size() || !english.ends_with(behind)) continue;
      return replaceAll(to, "%@", english.substr(hole, english.size() - hole - behind.size()));
    }
    return english;
  }

  // <text> is translated, {text} too, without its braces; <=text> is the same in both languages; @FOLDER is
  // the entries of a folder in the order in which it lists them.
  std::string translated(std::string line) const {
    if (const auto named = named_.find(line); named != named_.end()) line = named->second;
    static const std::regex mark("<=([^>]*)>|<([^>]*)>|\\{([^}]*)\\}|@(/[^,\\]]*)");
    std::string out;
    auto last = line.cbegin();
    for (std::sregex_iterator match(line.cbegin(), line.cend(), mark), end; match != end; ++match) {
      out.append(last, (*match)[0].first);
      last = (*match)[0].second;
      if ((*match)[1].matched) out += '<' + match->str(1) + '>';
      if ((*match)[2].matched) out += '<' + inThisLanguage(match->str(2)) + '>';
      if ((*match)[3].matched) out += inThisLanguage(match->str(3));
      if (!(*match)[4].matched) continue;
      std::string entries;
      for (const std::string& name :
           contentsOfDirectoryAtPath(match->str(4)).value_or(std::vector<std::string>()))
        entries += (entries.empty() ? "<" : ", <") + name + '>';
      out += entries;
    }
    return replaceAll(out.append(last, line.cend()), "[, ", "[");
  }

  void act(const std::string& line) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string verb = line.substr(0, blank);
    const std::string rest = blank == line.size() ? "" : line.substr(blank + 1);
    if (verb == "start") {
      start();
      // Keys reach their shortcuts only in a window that is active.
      UIScreen::mainScreen()->activateWindow();
      ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
      systemlog::take();
    } else if (verb == "press") {
      QAbstractButton* button = nullptr;
      const auto isThere = [&] {
        const UIWindow* const window = UIApplication::sharedApplication()->keyWindow();
        button = window->findChild<QAbstractButton*>(QString::fromStdString(rest));
        return button != nullptr && button->isVisible() && button->isEnabled();
      };
      finger::waitUntil(isThere, "no button " + QString::fromStdString(rest));
      QTest::mouseClick(button, Qt::LeftButton);
    } else if (verb == "tap") {
      const std::string name = replaceAll(translated(rest), "\\e", "\x1B");
      finger::tap(QString::fromStdString(name.starts_with('<') ? name.substr(1, name.size() - 2) : name));
    } else if (verb == "type") {
      finger::type(QString::fromStdString(rest));
    } else if (verb == "choose") {
      isRecording = false;
      chooseProject(rest);
      isRecording = true;
    } else if (verb == "key") {
      for (const QString& key : QString::fromStdString(rest).split(' ')) press(key);
    } else if (verb == "down" || verb == "up") {
      const auto action = verb == "down" ? QTest::Press : QTest::Release;
      QTest::keyEvent(action, UIScreen::mainScreen()->windowHandle(),
                      keysNamed(QString::fromStdString(rest)).key());
    } else if (verb == "hold") {
      const QKeyCombination keys = keysNamed(QString::fromStdString(rest));
      for (int repeats = 0; repeats < 3; ++repeats)
        QTest::simulateEvent(QApplication::focusWidget(), true, keys.key(), keys.keyboardModifiers(),
                             keys.key() == Qt::Key_Return ? "\r" : "", true);
    } else if (verb == "screen") {
      UIScreen::mainScreen()->resize(QString::fromStdString(rest).section('x', 0, 0).toInt(),
                                     QString::fromStdString(rest).section('x', 1).toInt());
    } else if (verb == "tab") {
      const auto isThere = [name = translated(rest)] {
        const QWidget& focused = *QApplication::focusWidget();
        return name == focused.objectName().toStdString() || name == shown(focused.accessibleName());
      };
      for (int tabs = 0; tabs < 20 && !isThere(); ++tabs) press("Tab");
    } else if (verb == "keys") {
      QTest::keyClicks(QApplication::focusWidget(), QString::fromStdString(rest));
    } else if (verb == "compose" || verb == "commit") {
      QInputMethodEvent event(QString::fromStdString(verb == "compose" ? rest : ""), {});
      if (verb == "commit") event.setCommitString(QString::fromStdString(rest));
      QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    } else if (verb == "wheel") {
      QWidget& text = *shown<TextView>().viewport();
      const QPoint middle = text.rect().center();
      QWheelEvent wheel(middle, text.mapToGlobal(middle), {}, {0, std::stoi(rest)}, Qt::NoButton,
                        Qt::ControlModifier, Qt::NoScrollPhase, false);
      QCoreApplication::sendEvent(&text, &wheel);
    } else if (verb == "zoomed") {
      static const double usual = shown<TextView>().font().pointSizeF();
      record(std::to_string(std::lround(shown<TextView>().font().pointSizeF() / usual * 100)) + " %");
    } else if (verb == "where") {
      record(QApplication::focusWidget()->objectName().toStdString());
    } else if (verb == "caret") {
      const TextView& text = shown<TextView>();
      const long top = text.send(text.SCI_POINTYFROMPOSITION, 0, text.send(text.SCI_GETCURRENTPOS));
      const bool isInMiddle = std::abs(top - text.viewport()->height() / 2) < 60;
      record(std::to_string(text.selectionBegin()) + " to " + std::to_string(text.selectionEnd()) +
             (isInMiddle ? ", in the middle" : ""));
    } else if (verb == "text") {
      describe(shown<TextView>());
    } else if (verb == "buttons") {
      describeButtons();
    } else if (verb == "menu") {
      useMenu(shown<TextView>(), translated(rest));
    } else if (verb == "click" || verb == "twice") {
      QWidget* const text = shown<TextView>().viewport();
      QTest::mouseClick(text, Qt::LeftButton, {}, pointOf(rest));
      if (verb == "twice") QTest::mouseDClick(text, Qt::LeftButton, {}, pointOf(rest));
    } else if (verb == "touch") {
      static QPointingDevice* const screen = QTest::createTouchDevice();
      QWidget* const text = shown<TextView>().viewport();
      const QPoint from = pointOf(rest.substr(0, rest.find(' ')));
      const QPoint way = pointOf(rest.substr(rest.find(' ') + 1)) - from;
      QTest::touchEvent(text, screen).press(0, from, text);
      for (int step = 1; step <= 40 && !way.isNull(); ++step)
        QTest::touchEvent(text, screen).move(0, from + way * step / 40, text);
      QTest::touchEvent(text, screen).release(0, from + way, text);
      if (way.isNull() && rest.find(' ') != std::string::npos) {
        QTest::touchEvent(text, screen).press(0, from, text);
        QTest::touchEvent(text, screen).release(0, from, text);
      }
    } else if (verb == "scrolled") {
      const QScrollBar& down = *shown<TextView>().verticalScrollBar();
      const bool isAcross = shown<TextView>().horizontalScrollBar()->value() > 0;
      record(std::string(down.value() == 0                ? "to the top"
                         : down.value() == down.maximum() ? "to the bottom"
                                                          : "between") +
             (isAcross ? ", across" : ""));
    } else if (verb == "ring") {
      recordRing(QApplication::focusWidget()->grab().toImage());
    } else if (verb == "coloured") {
      recordColours(shown<TextView>());
    } else if (verb == "row") {
      record(shown<QListView>().currentIndex().data().toString().toStdString());
    } else if (verb == "title") {
      record(UIScreen::mainScreen()->windowTitle().toStdString());
    } else if (verb == "alone") {
      openAddressesOnHost();
    } else if (verb == "latin") {
      if (isArabic_) recordLatinTexts();
    } else if (verb == "colours") {
      const QImage picture = shown<QWidget>(rest).grab().toImage();
      record((picture.pixelColor(4, 10).name() + ' ' + picture.pixelColor(4, picture.height() - 4).name())
                 .toStdString());
    } else if (verb == "close") {
      record(UIScreen::mainScreen()->close() ? "closed" : "stays");
    } else if (verb == "copy") {
      QGuiApplication::clipboard()->setText(QString::fromStdString(replaceAll(rest, "\\n", "\n")));
    } else if (verb == "checked") {
      record(shown<QAbstractButton>(rest).isChecked() ? "yes" : "no");
    } else if (verb == "copied") {
      std::istringstream copy(QGuiApplication::clipboard()->text().toStdString());
      for (std::string copied; std::getline(copy, copied);) record("| " + copied);
    } else if (verb == "rows") {
      const QAbstractItemModel& rows = *shown<QListView>().model();
      if (rows.rowCount() > 20) record(std::to_string(rows.rowCount()) + " rows");
      for (int row = 0; row < rows.rowCount() && rows.rowCount() <= 20; ++row)
        record("| " + rows.index(row, 0).data().toString().toStdString());
    } else if (verb == "miss") {
      waitToMiss(QString::fromStdString(inThisLanguage(rest)));
    } else if (verb == "logged") {
      for (const std::string& logged : systemlog::take()) record("| " + logged);
    } else if (verb == "look") {
      look();
    } else if (verb == "see") {
      finger::waitToSee(QString::fromStdString(replaceAll(inThisLanguage(rest), "\\n", "\n")));
    } else if (verb == "read") {
      std::istringstream text(
          UIScreen::mainScreen()->findChild<TextView*>(QString::fromStdString(rest))->bytes());
      for (std::string shown; std::getline(text, shown);) record("| " + shown);
    } else {
      ASSERT_EQ(verb, "$") << line;
      isRecording = false;
      std::istringstream output(outputOf(rest));
      isRecording = true;
      for (std::string printed; std::getline(output, printed);) record("| " + printed);
    }
  }

  // The one that the user sees.
  template <typename View>
  static View& shown(const std::string& outlet = {}) {
    const QString name = outlet.empty() ? QString() : QString::fromStdString(outlet);
    for (View* view : UIApplication::sharedApplication()->keyWindow()->findChildren<View*>(name)) {
      if (view->isVisible()) return *view;
    }
    throw finger::Missing("nothing to look at");
  }

  // With "Ctrl+" and the like before it.
  static QKeyCombination keysNamed(const QString& key) { return QKeySequence(key)[0]; }
  static void press(const QString& key) {
    const QKeyCombination keys = keysNamed(key);
    QTest::keyClick(UIScreen::mainScreen()->windowHandle(), keys.key(), keys.keyboardModifiers());
  }

  // "60,500"
  static QPoint pointOf(const std::string& text) {
    return {std::stoi(text), std::stoi(text.substr(text.find(',') + 1))};
  }

  // Line by line: its marks; how many bytes are not in the usual style; what is underlined, from 1.
  static void describe(const TextView& text) {
    std::string marks;
    std::string styled;
    std::string underlined;
    for (int line = 0; line < std::min(text.lines(), 20); ++line) {
      marks += ' ' + std::to_string(text.markersAtLine(line));
      const long begin = text.send(text.SCI_POSITIONFROMLINE, line);
      const long end = text.send(text.SCI_GETLINEENDPOSITION, line);
      int bytes = 0;
      for (long place = begin; place < end; ++place) {
        bytes += text.send(text.SCI_GETSTYLEAT, place) != 0 ? 1 : 0;
        if (text.send(text.SCI_INDICATORALLONFOR, place) >> 8 != 0)
          underlined += ' ' + std::to_string(line) + ':' + std::to_string(place - begin + 1);
      }
      if (bytes > 0) styled += ' ' + std::to_string(line) + ':' + std::to_string(bytes);
    }
    record(std::string(text.wrapMode() == QsciScintilla::WrapNone ? "not wrapped" : "wrapped") + ", caret " +
           std::to_string(text.send(text.SCI_GETCARETWIDTH)) + ", tab " +
           std::to_string(text.send(text.SCI_GETTABWIDTH)));
    record("marks" + marks);
    record((text.isReadOnly() ? "unseen" : "styled") + styled);
    if (!underlined.empty()) record("underlined" + underlined);
  }

  // A letter for each byte of the first lines, by its colour.
  static void recordColours(TextView& text) {
    text.grab();
    for (int line = 0; line < std::min(text.lines(), 20); ++line) {
      std::string parts;
      const long end = text.send(text.SCI_GETLINEENDPOSITION, line);
      for (long place = text.send(text.SCI_POSITIONFROMLINE, line); place < end; ++place) {
        const auto blue = text.send(text.SCI_STYLEGETFORE, text.send(text.SCI_GETSTYLEAT, place));
        const QColor colour(blue & 255, blue >> 8 & 255, blue >> 16 & 255);
        int part = 0;
        while (part < codeParts && colourOf(static_cast<CodePart>(part)) != colour) ++part;
        parts += ".CLKDN?"[part];
      }
      record("| " + parts);
    }
  }

  static void recordRing(const QImage& picture) {
    const int right = picture.width() - 1;
    const int bottom = picture.height() - 1;
    int sides = 0;
    for (const QLine& side : {QLine(0, 0, right, 0), QLine(0, bottom, right, bottom), QLine(0, 0, 0, bottom),
                              QLine(right, 0, right, bottom)}) {
      int pixels = 0;
      for (int at = 0; at < 200; ++at)
        pixels +=
            picture.pixelColor(side.p1() + (side.p2() - side.p1()) * at / 200) == colours::focusRing ? 1 : 0;
      sides += pixels > 5 ? 1 : 0;
    }
    record("on " + std::to_string(sides) + " sides");
  }

  // The text's own, whose entries are printed, and the one that is meant is chosen.
  static void useMenu(TextView& text, const std::string& meant) {
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, text.mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(text.viewport(), &asked);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) throw finger::Missing("no menu");
    if (menu->isRightToLeft() != UIScreen::mainScreen()->isRightToLeft()) record("the wrong way round");
    for (QAction* entry : menu->actions()) {
      record(entry->isSeparator() ? "-" : (entry->isEnabled() ? "" : "not ") + shown(entry->text()));
      if (shown(entry->text()) == meant) entry->trigger();
    }
    menu->close();
    UIScreen::mainScreen()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
  }

  static void describeButtons() {
    std::set<QString> buttons;
    for (UIButton* button : UIApplication::sharedApplication()->keyWindow()->findChildren<UIButton*>()) {
      if (!button->isVisible()) continue;
      button->setAttribute(Qt::WA_UnderMouse, false);
      const QString name = button->accessibleName();
      const QString tip = button->toolTip();
      QString line = button->objectName();
      if (name.isEmpty()) line += " without a name";
      if ((button->focusPolicy() & Qt::TabFocus) == 0) line += " out of the keyboard's reach";
      if (!tip.isEmpty()) line += tip.startsWith(name) ? tip.mid(name.size()) : ' ' + tip;
      const QColor ground = button->grab().toImage().pixelColor(button->width() / 4, 6);
      buttons.insert(QString("%1 %2 %3 %4")
                         .arg(line, ground.name())
                         .arg(button->layer().cornerRadius)
                         .arg(button->layer().borderWidth));
    }
    for (const QString& button : buttons) record("| " + button.toStdString());
  }

  // Of all that is visible, names, captions and tooltips in Latin letters, but for proper names and keys.
  static void recordLatinTexts() {
    static const QRegularExpression latin("^(?!Pelbo|شكرا|Tweakbench|/).*[A-Za-z]{2}");
    for (const QWidget* widget : UIScreen::mainScreen()->findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
      for (const QString& text :
           {read->text(QAccessible::Name), read->text(QAccessible::Description), widget->toolTip(),
            widget->property("text").toString(), widget->property("placeholderText").toString()}) {
        if (text.section(" (", 0, 0).contains(latin)) record(text.toStdString());
      }
    }
  }

  static void look() {
    const UIWindow& screen = *UIApplication::sharedApplication()->keyWindow();
    const QAbstractItemModel& files = *screen.findChild<QListView*>("TableVV")->model();
    QStringList names;
    for (int row = 0; row < files.rowCount(); ++row) names.append(files.index(row, 0).data().toString());
    names.sort();
    record((screen.findChild<QLabel*>("ProjLableName")->text() + ": " + names.join(", ")).toStdString());
  }

  // Until all that is wanted has come and no dialog moves; then the delayed calls, and so on.
  static void settle(std::size_t wanted) {
    constexpr int patience = 10'000;
    const auto atRest = [] {
      const auto dialog = topDialog();
      return !dialog || dialog->state() == RQAlertViewState::Shown ||
             dialog->state() == RQAlertViewState::Dismissed;
    };
    do {
      for (const DelayedCall& call : std::exchange(held, {})) {
        if (call.target) call.selector();
      }
      std::ignore =
          QTest::qWaitFor([&] { return (recorded() >= wanted || !held.empty()) && atRest(); }, patience);
    } while (!held.empty());
    QCoreApplication::processEvents();
  }

  QObject observer_;
  bool isArabic_ = false;
  std::map<std::string, std::string> arabic_;
};

TEST_F(Transcripts, EveryFlowDoesWhatIsWrittenInThisOrderInBothLanguages) {
  auto sections = sectionsOf("/.host/tweakbench/tests/transcripts.txt");
  for (const std::string& line : sections.front().lines) {
    const std::size_t name = line.find(' ') + 1;
    const std::size_t blank = line.find(' ', name);
    if (line.starts_with("looks ")) looks_[line.substr(blank)] = line.substr(name, blank - name);
    if (line.starts_with("let ")) named_[line.substr(name, blank - name)] = line.substr(blank + 1);
  }
  sections.erase(sections.begin());
  ASSERT_GT(sections.size(), 20U);
  for (const auto& [title, lines] : sections) {
    for (const bool isArabic : {false, true}) {
      SCOPED_TRACE(title + (isArabic ? ", in Arabic" : ""));
      follow(lines, isArabic);
    }
  }
}

}  // namespace
