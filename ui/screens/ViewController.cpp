#include "ui/screens/ViewController.h"

#include "RQAlertView/RQAlertView.h"
#include "core/FileManager.h"
#include "platform/EventLoop.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"
#include "ui/controls/UIButton.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/dialogs/ProjectDialogs.h"
#include "ui/menus/Menus.h"
#include "ui/screens/Dev.h"
#include "ui/screens/MakePackage.h"
#include "ui/screens/PopOverNewController.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"
#include "workspace/ProjectFiles.h"

#include <algorithm>

#include <QScrollBar>

namespace {

constexpr double refreshDelay = 0.1;  // seconds

}  // namespace

void ViewController::loadView() {
  auto* const view = new QWidget;
  outlets_.setupUi(view);
  outlets_.ProjLableName->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  setView(view);
  outlets_.TableVV->rows().rowAt = [picture = QIcon(QStringLiteral(":/pictures/na.png"))](int row) {
    const auto index = static_cast<std::size_t>(row);
    return RowModel::Row{.name = index < MUArray().size() ? shownName(MUArray()[index]) : QString(),
                         .picture = picture};
  };
  wireButtons();
}

void ViewController::wireButtons() {
  const auto wire = [this](UIButton& button, const QKeySequence& keys, void (ViewController::*action)()) {
    button.onClick(this, [this, action] { (this->*action)(); });
    addShortcut(button, keys);
  };
  wire(*outlets_.chooseProjectButton, QKeySequence::Open, &ViewController::ChooseProjectButton);
  wire(*outlets_.newProjectButton, QKeySequence::New, &ViewController::NewProject);
  wire(*outlets_.deleteButton, Qt::Key_Delete, &ViewController::Removeer);
  wire(*outlets_.projectOptionsButton, Qt::CTRL | Qt::Key_P, &ViewController::OpenPrijectFolder);
  wire(*outlets_.reloadButton, Qt::Key_F5, &ViewController::Reload);
  wire(*outlets_.BackButton, Qt::Key_F1, &ViewController::presentAboutScreen);
  wire(*outlets_.BB, Qt::CTRL | Qt::Key_B, &ViewController::presentBuildScreen);
  outlets_.firstProjectButton->onClick(this, [this] { NewProject(); });
  nameShortcut(*outlets_.firstProjectButton, QKeySequence::New);
  outlets_.otherProjectButton->onClick(this, [this] { ChooseProjectButton(); });
  nameShortcut(*outlets_.otherProjectButton, QKeySequence::Open);
  const Layer tile{.cornerRadius = 20,
                   .borderWidth = 1,
                   .backgroundColor = colours::tileGround,
                   .borderColor = colours::tileBorder};
  outlets_.firstProjectButton->setLayer(tile);
  outlets_.otherProjectButton->setLayer(tile);
  wireProjectButtons(
      *outlets_.goToFileButton, *outlets_.searchButton,
      [this](const std::string& path, long line, long column) { presentEditor(*this, path, line, column); });
  NSNotificationCenter::defaultCenter().addObserver(this, ProjectFilesDidChangeNotification, nullptr,
                                                    [this](const NSNotification&) { Reload(); });
  connect(outlets_.TableVV, &RowListView::rowPicked, this,
          atEventBoundary([this](int row) { didSelectRow(row); }));
}

void ViewController::viewDidLoad() {
  UIViewController::viewDidLoad();
  installConverter();
  if (!theosIsPresent()) showNotice(localized(text::couldNotFindTheos), localized(text::mustInstallTheos));
  recordTheosPath();
  createProjectsFolder();
  const QString project = shownName(currentProjectLabel());
  if (project != outlets_.ProjLableName->text()) {
    outlets_.TableVV->setCurrentRow(-1);
    outlets_.TableVV->scrollToTop();
  }
  Reload();
  outlets_.ProjLableName->setText(project);
  // "[*]" alone would be a place for the mark of a changed document.
  UIScreen::mainScreen()->setWindowTitle(
      (project.isEmpty() ? QString() : QString(project).replace("[*]", "[*][*]") + QStringLiteral(" – ")) +
      QStringLiteral("Tweakbench"));
  // Without a project, the buttons that make or choose one are in the middle. Pictures only, so that a first
  // start need not load the fonts.
  outlets_.emptyState->setVisible(MUArray().empty() && outlets_.ProjLableName->text().isEmpty());
  outlets_.otherProjectButton->setVisible(!projectNames().empty());
  // The texts of this screen are the project's own; their surroundings follow the language of the next
  // dialog.
  QApplication::setLayoutDirection(languageIsArabic() ? Qt::RightToLeft : Qt::LeftToRight);
}

void ViewController::viewDidLoadAfterDelay() {
  performSelectorAfterDelay(
      this, [this] { viewDidLoad(); }, refreshDelay);
}

void ViewController::ChooseProjectButton() {
  showProjectChooser(*this);
}

void ViewController::NewProject() {
  showNewProjectMenu(*this);
}

void ViewController::Removeer() {
  showDeleteMenu(*this);
}

void ViewController::OpenPrijectFolder() {
  showOptionsMenu(*this);
}

void ViewController::Reload() {
  RowListView& list = *outlets_.TableVV;
  const std::vector<std::string>& names = MUArray();
  const int row = list.currentRow();
  const auto index = static_cast<std::size_t>(row);
  const std::string current = index < names.size() ? names[index] : std::string();
  const int place = list.verticalScrollBar()->value();
  ArraySetUp();
  const auto same = std::find(names.begin(), names.end(), current);
  list.rows().setCount(static_cast<int>(names.size()));
  if (row >= 0)
    list.setCurrentRow(same != names.end() ? static_cast<int>(same - names.begin())
                                           : std::min(row, list.rows().rowCount() - 1));
  list.verticalScrollBar()->setValue(place);
}

void ViewController::presentBuildScreen() {
  const MaybeText project = currentProject();
  if (!buildScreen_ || builtProject_ != project) buildScreen_ = std::make_shared<MakePackage>();
  builtProject_ = project;
  presentViewController(buildScreen_, true);
}

void ViewController::presentAboutScreen() {
  presentViewController(std::make_shared<Dev>(), true);
}

void ViewController::didSelectRow(int row) {
  const auto index = static_cast<std::size_t>(row);
  if (presentedViewController() || index >= MUArray().size()) return;
  // The editor comes up at once; the check below may take it away again.
  presentViewController(std::make_shared<PopOverNewController>(), true);
  const std::string entry = MUArray()[index];
  if (fileCheckRejects(entry)) rejectPick();
  removeItemAtPath(paths::checkersLog);
  SS(entry);
}

void ViewController::rejectPick() {
  dismissViewControllerAnimated(true);
  const auto dialog =
      RQAlertView::alertViewWithTitle(QString::fromUtf8(text::notSupportedYet), QStringLiteral("(null)"),
                                      RQAlertViewStyle::Alert, QStringList(), localized(text::ok), QString());
  dialog->setBackgroundColor(grey(32));
  dialog->setTitleTextColor(Qt::white);
  dialog->setMessageTextColor(Qt::white);
  dialog->setSeparatorsColor(grey(32));
  dialog->showAnimated();
}
