// What each dialog of the main screen says and how it is dressed, in both languages.
#include "tests/ui/Screens.h"

#include <functional>
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace {

using finger::tap;

const std::string backups = "/var/mobile/Documents/TweakbenchBackups";

// Colours as "#aarrggbb"; absent: the component's own.
using Colour = std::optional<const char*>;

struct Looks {
  Colour background;
  Colour separators;
  Colour cancelTitle;
  Colour cancelHighlighted;
  Colour title;
  Colour message;
  Colour buttonTitles;
  Colour fieldText;
  Colour fieldGround;
};

const char* const red = "#ffff0000";
const char* const white = "#ffffffff";
const char* const grey32 = "#ff202020";
const char* const grey40 = "#ff282828";
const char* const grey48 = "#ff303030";
const char* const grey51 = "#ff333333";
const char* const grey69 = "#ff454545";

const Looks menuLooks{grey40, grey51, red, red, {}, {}, {}, {}, {}};
const Looks messageLooks{grey40, grey51, red, red, white, white, {}, {}, {}};
const Looks promptLooks{grey40, grey48, red, red, white, white, white, white, grey69};
const Looks refusalLooks{grey32, grey32, {}, {}, white, white, {}, {}, {}};

const QString none;  // null: no such text

struct Expected {
  RQAlertViewStyle style = RQAlertViewStyle::ActionSheet;
  QString title;
  QString message;
  QStringList buttons;
  QString cancel;
  const Looks& looks;
  std::optional<QString> initialText = std::nullopt;  // of the one field
};

QStringList localizedAll(std::initializer_list<TextPair> pairs) {
  QStringList texts;
  for (const TextPair& pair : pairs) texts.append(localized(pair));
  return texts;
}

// The titles of a folder's entries, in the order in which it lists them, and what comes behind them.
QStringList entriesOf(const std::string& folder, std::initializer_list<TextPair> more = {}) {
  QStringList titles;
  for (const std::string& name : contentsOfDirectoryAtPath(folder).value_or(std::vector<std::string>{}))
    titles.append(QString::fromStdString(name));
  return titles + localizedAll(more);
}

void expectColour(const Colour& expected, const QColor& colour, const QColor& own, const char* what) {
  EXPECT_EQ(colour.name(QColor::HexArgb).toStdString(),
            expected ? std::string(*expected) : own.name(QColor::HexArgb).toStdString())
      << what;
}

void expectLooks(const Looks& looks, const RQAlertView& dialog) {
  const RQAlertView& own = *RQAlertView::appearance();
  expectColour(looks.background, dialog.backgroundColor(), own.backgroundColor(), "background");
  expectColour(looks.separators, dialog.separatorsColor(), own.separatorsColor(), "separators");
  expectColour(looks.cancelTitle, dialog.cancelButtonTitleColor(), own.cancelButtonTitleColor(),
               "cancel title");
  expectColour(looks.cancelHighlighted, dialog.cancelButtonBackgroundColorHighlighted(),
               own.cancelButtonBackgroundColorHighlighted(), "highlighted cancel background");
  expectColour(looks.buttonTitles, dialog.buttonsTitleColor(), own.buttonsTitleColor(), "button titles");
  expectColour(looks.fieldText, dialog.textFieldsTextColor(), own.textFieldsTextColor(), "field text");
  expectColour(looks.fieldGround, dialog.textFieldsBackgroundColor(), own.textFieldsBackgroundColor(),
               "field background");
  EXPECT_EQ(dialog.isUserTitleTextColor(), looks.title.has_value());
  if (looks.title) expectColour(looks.title, dialog.titleTextColor(), {}, "title");
  EXPECT_EQ(dialog.isUserMessageTextColor(), looks.message.has_value());
  if (looks.message) expectColour(looks.message, dialog.messageTextColor(), {}, "message");
}

// A text so that a failure can be read.
std::string shown(const QString& text) {
  return text.isNull() ? "none" : '"' + text.toStdString() + '"';
}

void expectDialog(const Expected& expected, const RQAlertView& dialog) {
  EXPECT_EQ(dialog.style(), expected.style);
  EXPECT_EQ(shown(dialog.title()), shown(expected.title));
  EXPECT_EQ(shown(dialog.message()), shown(expected.message));
  EXPECT_EQ(shown(dialog.buttonTitles().join(" | ")), shown(expected.buttons.join(" | ")));
  EXPECT_EQ(shown(dialog.cancelButtonTitle()), shown(expected.cancel));
  EXPECT_EQ(shown(dialog.destructiveButtonTitle()), shown(none));
  expectLooks(expected.looks, dialog);
  const auto fields = dialog.textFieldsArray();
  ASSERT_EQ(fields.size(), expected.initialText ? 1U : 0U);
  if (fields.empty()) return;
  EXPECT_EQ(shown(fields.front()->text()), shown(*expected.initialText));
  EXPECT_TRUE(fields.front()->placeholder().isEmpty());
  EXPECT_EQ(fields.front()->keyboardAppearance(), UIKeyboardAppearance::Dark);
  EXPECT_EQ(fields.front()->clearButtonMode(), UITextFieldViewMode::WhileEditing);
}

class Dialogs : public Screens {
 protected:
  Dialogs() {
    installConverter();
    rename("/usr/bin/ftt", "/usr/bin/ftt-away");
    putFile("/usr/bin/ftt", "#!/bin/sh\nprintf 'x\\n  0 - One\\ny\\n  1 - Two\\n1\\n2\\n3'\n");
    chmod("/usr/bin/ftt", 0755);
  }
  ~Dialogs() override {
    removeItemAtPath("/usr/bin/ftt");
    rename("/usr/bin/ftt-away", "/usr/bin/ftt");
    removeItemAtPath(backups);
  }

  // Opens the dialog, compares it, and closes it by its cancel button or, where it has none, its only button.
  static void check(const std::function<void()>& open, const std::function<Expected()>& expectedAfterwards) {
    open();
    const Expected expected = expectedAfterwards();
    SCOPED_TRACE(expected.title.toStdString());
    finger::waitUntil(
        [&expected] {
          const auto dialog = topDialog();
          return dialog && dialog->state() == RQAlertViewState::Shown && dialog->title() == expected.title;
        },
        "no dialog " + expected.title);
    expectDialog(expected, *topDialog());
    tap(expected.cancel.isNull() ? expected.buttons.front() : expected.cancel);
    finger::waitToSee("Reload");
  }

  static Expected sheet(const TextPair& title, const QString& message, const QStringList& buttons,
                        const Looks& looks = menuLooks) {
    return {
        RQAlertViewStyle::ActionSheet, localized(title), message, buttons, localized(text::cancel), looks};
  }
  static Expected question(const QString& title, const QString& message, const QString& button,
                           const QString& initialText = "") {
    return {RQAlertViewStyle::Alert, title,       message,    {button},
            localized(text::cancel), promptLooks, initialText};
  }
  static Expected confirmation(const TextPair& title, const QString& message, const TextPair& button) {
    return {RQAlertViewStyle::Alert, localized(title),        message,
            {localized(button)},     localized(text::cancel), messageLooks};
  }
  static Expected notice(const TextPair& title, const QString& message = none) {
    return {RQAlertViewStyle::Alert, localized(title), message, {localized(text::ok)}, none, messageLooks};
  }

  void inBothLanguages(const std::function<void()>& flow) {
    for (const char* language : {"EN", "AR"}) {
      SCOPED_TRACE(language);
      device::reset();
      removeItemAtPath(backups);
      device::speak(language);
      putFile(device::projects + "Q/x", "");
      makeProject({{"Tweak.x", ""}, {"Makefile", ""}, {"folder/x", ""}});
      start();
      flow();
      delegate_.reset();
    }
  }

  static QString confirm() { return localized(text::confirm); }
};

const std::string project = device::projects + "P";
const QString shell = QStringLiteral("~ root$");

TEST_F(Dialogs, OfProjectsAndTheirFilesSayAndWearWhatTheyShould) {
  inBothLanguages([] {
    check([] { tap("Choose Project"); },
          [] { return sheet(text::loadProject, none, entriesOf(device::projects)); });
    check([] { tap("folder"); },
          [] {
            return Expected{RQAlertViewStyle::Alert, "Not supported yet", "(null)", {},
                            localized(text::ok),     refusalLooks};
          });
    check([] { tap("New Project"); },
          [] {
            return sheet(text::projectOptions, none,
                         localizedAll({text::createNewProject, text::createHeaderFile, text::changeFileName,
                                       text::addFlexPatch}));
          });
    check([] { projectMenu(text::createNewProject); },
          [] { return question(localized(text::createNewProject), shell, confirm()); });
    check([] { projectMenu(text::createHeaderFile); },
          [] { return question(localized(text::createHeaderFile), shell, confirm()); });
    check([] { projectMenu(text::changeFileName); },
          [] { return sheet(text::whichOne, none, entriesOf(project)); });
    check(
        [] {
          projectMenu(text::changeFileName);
          tap("Makefile");
        },
        [] { return question("Makefile", shell, confirm(), "Makefile"); });
    check([] { projectMenu(text::addFlexPatch); },
          [] {
            Expected expected = sheet(text::addFlexPatch, "Flex to Theos by Mossgrove & updated by Wexley88",
                                      {"  0 - One", "  1 - Two"});
            expected.cancel = "Cancel";  // in both languages
            return expected;
          });
    check([] { tap("Delete"); },
          [] {
            return sheet(text::deleteFilesOrProjects, localized(text::whichOne),
                         entriesOf(project, {text::deleteCurrentProject, text::deleteOptions}));
          });
    check([] { deleteMenu(localized(text::deleteOptions)); },
          [] {
            return sheet(text::deleteOptions, localized(text::whichOne),
                         entriesOf(device::projects, {text::deleteAllProjects}));
          });
    check(
        [] {
          deleteMenu(localized(text::deleteOptions));
          tap(localized(text::deleteAllProjects));
        },
        [] {
          return confirmation(text::deleteAllProjects, localized(text::deleteAllProjectsQuestion),
                              text::imSure);
        });
  });
}

TEST_F(Dialogs, OfTheOptionsSayAndWearWhatTheyShould) {
  inBothLanguages([] {
    check([] { tap("Project Options"); },
          [] {
            return sheet(
                text::extraOptions, localized(text::whichOne),
                localizedAll({text::openInFilza, text::goToDebsFolder, text::importFromPath,
                              text::exportProjectToPath, text::backUp, text::restore, text::deleteAllBackups,
                              text::deleteDebsFolder, text::changeProjectName, text::changeLanguage}));
          });
    check([] { optionsMenu(text::importFromPath); },
          [] {
            return question(localized(text::importFromPath), localized(text::pathExample),
                            localized(text::import_));
          });
    check(
        [] {
          optionsMenu(text::importFromPath);
          finger::type("no/such/path");
          tap(localized(text::import_));
        },
        [] { return notice(text::noData); });
    check([] { optionsMenu(text::exportProjectToPath); },
          [] {
            return question(localized(text::exportProjectToPath), localized(text::pathExample),
                            localized(text::export_));
          });
    check([] { optionsMenu(text::changeProjectName); },
          [] { return question(localized(text::changeProjectName), "", "Change"); });
    check([] { optionsMenu(text::changeLanguage); },
          [] {
            return sheet(text::changeLanguage, "",
                         {localized(text::arabic), "English", QString::fromUtf8(text::autoLanguage)},
                         messageLooks);
          });
    check([] { optionsMenu(text::backUp); },
          [] { return notice(text::done, QString::fromStdString(backups + "/P")); });
    check([] { optionsMenu(text::restore); },
          [] { return sheet(text::whichOne, none, {"P"}, messageLooks); });
    check(
        [] {
          optionsMenu(text::restore);
          tap("P");
        },
        [] { return notice(text::done); });
    check([] { optionsMenu(text::deleteAllBackups); },
          [] { return confirmation(text::deleteAllBackupsQuestion, none, text::confirm); });
    check(
        [] {
          optionsMenu(text::deleteAllBackups);
          tap(confirm());
        },
        [] { return notice(text::done); });
    putFile(device::application + "Files.plist", device::emptyList());
    check([] { optionsMenu(text::backUp); }, [] { return notice(text::error, localized(text::noData)); });
  });
}

}  // namespace
