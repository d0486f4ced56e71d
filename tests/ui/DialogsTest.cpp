// What each dialog of the main screen says and how it is dressed, in both languages.
#include "support/Tree.h"
#include "tests/ui/Screens.h"
#include "workspace/CurrentProject.h"
#include "workspace/Projects.h"

#include <optional>
#include <vector>

namespace {

using finger::tap;

// Those of background, separators, cancel button, cancel button when pressed, title, message, buttons, typed
// text and field.
using Colours = std::vector<std::string>;

Colours coloursOf(const RQAlertView& dialog) {
  Colours names;
  for (const QColor& colour :
       {dialog.backgroundColor(), dialog.separatorsColor(), dialog.cancelButtonTitleColor(),
        dialog.cancelButtonBackgroundColorHighlighted(), dialog.titleTextColor(), dialog.messageTextColor(),
        dialog.buttonsTitleColor(), dialog.textFieldsTextColor(), dialog.textFieldsBackgroundColor()})
    names.push_back(colour.name(QColor::HexArgb).toStdString());
  return names;
}

const std::string red = "#ffff0000";
const std::string white = "#ffffffff";
const std::string grey32 = "#ff202020";
const std::string grey40 = "#ff282828";
const std::string grey48 = "#ff303030";
const std::string grey51 = "#ff333333";
const std::string grey69 = "#ff454545";
// The component's own.
const std::string black = "#ff000000";
const std::string blue = "#ff0080ff";
const std::string grey128 = "#ff808080";
const std::string grey247 = "#fff7f7f7";

const Colours menuLooks{grey40, grey51, red, red, grey128, grey128, blue, black, grey247};
const Colours messageLooks{grey40, grey51, red, red, white, white, blue, black, grey247};
const Colours promptLooks{grey40, grey48, red, red, white, white, white, white, grey69};
const Colours refusalLooks{grey32, grey32, blue, blue, white, white, blue, black, grey247};

const QString none;  // null: no such text

struct Expected {
  RQAlertViewStyle style = RQAlertViewStyle::ActionSheet;
  QString title;
  QString message;
  QStringList buttons;
  QString cancel;
  const Colours& looks;
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
  EXPECT_EQ(coloursOf(dialog), expected.looks);
  const auto fields = dialog.textFieldsArray();
  ASSERT_EQ(fields.size(), expected.initialText ? 1U : 0U);
  if (fields.empty()) return;
  EXPECT_EQ(shown(fields.front()->text()), shown(*expected.initialText));
  EXPECT_TRUE(fields.front()->placeholder().isEmpty());
  EXPECT_EQ(fields.front()->keyboardAppearance(), UIKeyboardAppearance::Dark);
  EXPECT_EQ(fields.front()->clearButtonMode(), UITextFieldViewMode::WhileEditing);
}

class Dialogs : public OtherConverter {
 protected:
  Dialogs() { putConverter("printf 'x\\n  0 - One\\ny\\n  1 - Two\\n1\\n2\\n3'\n"); }

  // Opens the dialog with these taps, compares it, and closes it by its cancel button or, where it has none,
  // its only button.
  static void check(const QStringList& taps, const Expected& expected) {
    SCOPED_TRACE(expected.title.toStdString());
    for (const QString& name : taps) tap(name);
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
                        const Colours& looks = menuLooks) {
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

  void amongProjects(const std::function<void()>& flow) {
    inBothLanguages([&] {
      putFile(device::projects + "Q/x", "");
      makeProject({{"Tweak.x", ""}, {"Makefile", ""}, {"folder/x", ""}});
      start();
      flow();
    });
  }

  static QString confirm() { return localized(text::confirm); }
};

const std::string project = device::projects + "P";
const QString shell = "~ root$";

TEST_F(Dialogs, OfProjectsAndTheirFilesSayAndWearWhatTheyShould) {
  amongProjects([] {
    const Tree before = treeAt(device::projects);
    check({"Choose Project"}, sheet(text::loadProject, none, entriesOf(device::projects)));
    check({"folder"},
          {RQAlertViewStyle::Alert, "Not supported yet", "(null)", {}, localized(text::ok), refusalLooks});
    const QStringList actions = localizedAll(
        {text::createNewProject, text::createHeaderFile, text::changeFileName, text::addFlexPatch});
    check({"New Project"}, sheet(text::projectOptions, none, actions));
    for (const QString& creating : actions.first(2))
      check({"New Project", creating}, question(creating, shell, confirm()));
    const QString renaming = localized(text::changeFileName);
    check({"New Project", renaming}, sheet(text::whichOne, none, entriesOf(project)));
    check({"New Project", renaming, "Makefile"}, question("Makefile", shell, confirm(), "Makefile"));
    Expected patches = sheet(text::addFlexPatch, "Flex to Theos by Mossgrove & updated by Wexley88",
                             {"  0 - One", "  1 - Two"});
    patches.cancel = "Cancel";  // in both languages
    check({"New Project", localized(text::addFlexPatch)}, patches);
    check({"Delete"}, sheet(text::deleteFilesOrProjects, localized(text::whichOne),
                            entriesOf(project, {text::deleteCurrentProject, text::deleteOptions})));
    const QString more = localized(text::deleteOptions);
    check({"Delete", more}, sheet(text::deleteOptions, localized(text::whichOne),
                                  entriesOf(device::projects, {text::deleteAllProjects})));
    check({"Delete", more, localized(text::deleteAllProjects)},
          confirmation(text::deleteAllProjects, localized(text::deleteAllProjectsQuestion), text::imSure));
    EXPECT_EQ(treeAt(device::projects), before) << "cancelling changes nothing";
    EXPECT_EQ(currentProject(), "P");
  });
}

TEST_F(Dialogs, OfTheOptionsSayAndWearWhatTheyShould) {
  amongProjects([] {
    const auto options = [](const TextPair& entry) {
      return QStringList{"Project Options", localized(entry)};
    };
    check({"Project Options"},
          sheet(text::extraOptions, localized(text::whichOne),
                localizedAll({text::openInFilza, text::goToDebsFolder, text::importFromPath,
                              text::exportProjectToPath, text::backUp, text::restore, text::deleteAllBackups,
                              text::deleteDebsFolder, text::changeProjectName, text::changeLanguage})));
    check(options(text::importFromPath),
          question(localized(text::importFromPath), localized(text::pathExample), localized(text::import_)));
    check(options(text::exportProjectToPath),
          question(localized(text::exportProjectToPath), localized(text::pathExample),
                   localized(text::export_)));
    check(options(text::changeProjectName), question(localized(text::changeProjectName), "", "Change"));
    check(options(text::changeLanguage),
          sheet(text::changeLanguage, "",
                {localized(text::arabic), "English", QString::fromUtf8(text::autoLanguage)}, messageLooks));
    check(options(text::backUp), notice(text::done, QString::fromStdString(backups + "/P")));
    check(options(text::restore), sheet(text::whichOne, none, {"P"}, messageLooks));
    check(options(text::restore) << "P", notice(text::done));
    check(options(text::deleteAllBackups), confirmation(text::deleteAllBackupsQuestion, none, text::confirm));
    check(options(text::deleteAllBackups) << confirm(), notice(text::done));
    putFile(device::application + "Files.plist", device::emptyList());
    check(options(text::backUp), notice(text::error, localized(text::noData)));
  });
}

}  // namespace
