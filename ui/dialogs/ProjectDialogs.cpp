#include "ui/dialogs/ProjectDialogs.h"

#include "RQAlertView/RQAlertView.h"
#include "core/FileManager.h"
#include "platform/EventLoop.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIKeyboard.h"
#include "platform/UIScreen.h"
#include "ui/Localized.h"
#include "ui/controls/RowListView.h"
#include "ui/controls/UIButton.h"
#include "ui/dialogs/Dialogs.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"
#include "workspace/ProjectFiles.h"
#include "workspace/ProjectSearch.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int widestDialog = 560;
constexpr int sideMargin = 16;
constexpr int tallestContent = 480;
constexpr int leastContent = 150;
constexpr int roomAround = 150;   // what else the dialog has: title, button, margins
constexpr int typingPause = 150;  // milliseconds without a key before a search begins
constexpr std::size_t mostLines = 2000;

using Row = RowModel::Row;

// What such a dialog consists of: a field, rows that follow what is typed there, and a line about them. The
// arrow keys move in the rows while the field keeps the focus.
class PickPanel : public QWidget {
 public:
  PickPanel(const TextPair& fieldName, const TextPair& listName)
      : field_(new RQAlertViewTextField(this)), list_(new RowListView(this)), note_(new QLabel(this)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::barPadding);
    field_->setPlaceholder(localized(fieldName));
    field_->setFont(systemFontOfSize(metrics::bodyTextSize));
    field_->setMinimumHeight(metrics::touchSize);
    field_->setColors(grey(69), Qt::white);
    field_->setTintColor(palette().color(QPalette::Link));
    field_->setClearButtonMode(UITextFieldViewMode::WhileEditing);
    field_->installEventFilter(this);
    layout->addWidget(field_);
    list_->setAccessibleName(localized(listName));
    list_->setBackgroundColor(colours::cellGround);
    list_->setMarksCurrent(true);
    layout->addWidget(list_, 1);
    note_->setFont(systemFontOfSize(metrics::smallTextSize));
    note_->setTextFormat(Qt::PlainText);
    note_->hide();
    layout->addWidget(note_);
  }

  RQAlertViewTextField& field() { return *field_; }
  RowListView& list() { return *list_; }

  void setCount(std::size_t count) {
    list_->rows().setCount(static_cast<int>(count));
    list_->scrollToTop();
    list_->setCurrentRow(0);
  }
  void growTo(std::size_t count) {
    list_->rows().growTo(static_cast<int>(count));
    if (list_->currentRow() < 0) list_->setCurrentRow(0);
  }
  void setNote(const QString& note) {
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
  }
  // Return in the field calls this before it picks a row; true where it has done what there was to do.
  std::function<bool()> entered;

  QSize sizeHint() const override {
    const int room = UIScreen::mainScreen()->height() - roomAround;
    return {widestDialog, std::clamp(room, leastContent, tallestContent)};
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(object, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const int rows = list_->rows().rowCount();
    const int row = list_->currentRow();
    switch (key) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
        if (isRepeated(*static_cast<QKeyEvent*>(event)) || (entered && entered())) return true;
        if (row >= 0) emit list_->rowPicked(row);
        return true;
      case Qt::Key_Up:
      case Qt::Key_Down:
        // Round the ends, so that the last row is one key away.
        if (rows > 0) goTo((row + (key == Qt::Key_Down ? 1 : rows - 1)) % rows);
        return true;
      case Qt::Key_PageUp:
      case Qt::Key_PageDown: {
        const int page = std::max(list_->viewport()->height() / metrics::rowHeight, 1);
        if (rows > 0) goTo(std::clamp(row + (key == Qt::Key_PageDown ? page : -page), 0, rows - 1));
        return true;
      }
      default:
        return QWidget::eventFilter(object, event);
    }
  }

 private:
  void goTo(int row) {
    list_->setCurrentRow(row);
    list_->scrollTo(list_->currentIndex());
  }

  RQAlertViewTextField* field_;
  RowListView* list_;
  QLabel* note_;
};

// `picked` is called with the row once the dialog has gone.
void show(PickPanel* panel, const TextPair& title, std::function<void(int row)> picked) {
  const auto dialog =
      RQAlertView::alertViewWithViewAndTitle(localized(title), QString(), RQAlertViewStyle::Alert, panel,
                                             QStringList(), localized(text::cancel), QString());
  dressAsMessage(*dialog);
  const QSize room = UIScreen::mainScreen()->size();
  dialog->setWidth(std::min(widestDialog, std::min(room.width(), room.height()) - sideMargin));
  QObject::connect(&panel->list(), &RowListView::rowPicked, panel,
                   atEventBoundary([weak = std::weak_ptr(dialog), picked = std::move(picked)](int row) {
                     const std::shared_ptr<RQAlertView> shown = weak.lock();
                     if (shown && shown->isShowing())
                       shown->dismissAnimated(false, [picked, row] { picked(row); });
                   }));
  dialog->setShouldDismissAnimated(false);
  dialog->setDidShowHandler([panel](RQAlertView&) { panel->field().setFocus(Qt::OtherFocusReason); });
  dialog->show();
}

void create(const std::string& path, const PlaceChosen& chosen) {
  if (!createProjectFile(path))
    return showNotice(localized(text::fileNotCreated, {shownName(path).toStdString()}));
  NSNotificationCenter::defaultCenter().postNotificationName(ProjectFilesDidChangeNotification, nullptr);
  chosen(path, 0, 0);
}

// The rows for what is typed: indices of files, and at the end where that is possible a file to be made.
struct FileChoice {
  std::vector<std::string> files = currentProjectFiles();
  std::vector<std::size_t> matches;
  std::string newFile;  // empty: none
};

Row rowOf(const FileChoice& choice, std::size_t row) {
  if (row >= choice.matches.size()) {
    const QString title = localized(text::createFile, {shownName(choice.newFile).toStdString()});
    return {.name = title, .followsInterface = true};
  }
  const std::string& path = choice.files[choice.matches[row]];
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  return {
      .name = shownName(path), .title = shownName(path.substr(folder.size())), .detail = shownName(folder)};
}

void filter(FileChoice& choice, PickPanel& panel) {
  const std::string typed = withoutBlanks(panel.field().text().toStdString());
  choice.matches = bestMatches(choice.files, typed);
  const bool isNew = isBelowProject(typed) &&
                     !fileExistsAtPath(fill(paths::projectFile, {currentProject(), typed})) &&
                     fileExistsAtPath(fill(paths::project, {currentProject()}));
  choice.newFile = isNew ? typed : std::string();
  panel.setCount(choice.matches.size() + (isNew ? 1 : 0));
}

// A search that goes on on another thread until the dialog goes or something else is typed.
class Search : public QObject {
 public:
  explicit Search(PickPanel& panel) : QObject(&panel), panel_(panel) {
    panel.list().rows().rowAt = [this](int row) {
      const FoundLine& found = line(row);
      const QString place = shownName(found.path) + QLatin1Char(':') + QString::number(found.line);
      const QString text = shownName(found.text);
      return Row{.name = place + QStringLiteral(": ") + text, .title = text, .detail = place};
    };
    pause_.setSingleShot(true);
    connect(&pause_, &QTimer::timeout, this, atEventBoundary([this] { start(); }));
    connect(&panel.field(), &QLineEdit::textChanged, this, atEventBoundary([this] {
      stop();
      panel_.setCount(0);
      lines_.clear();
      panel_.setNote({});
      pause_.start(typingPause);
    }));
    panel.entered = [this] {
      if (!pause_.isActive()) return false;
      start();
      return true;
    };
  }
  ~Search() override { stop(); }

  const FoundLine& line(int row) const { return lines_.at(static_cast<std::size_t>(row)); }

 private:
  void stop() {
    if (ended_) *ended_ = true;
  }

  void start() {
    pause_.stop();
    stop();
    const std::string word = panel_.field().text().toStdString();
    if (word.empty()) return;
    ended_ = std::make_shared<std::atomic<bool>>(false);
    panel_.setNote(localized(text::searching));
    dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0),
                   [word, ended = ended_, self = QPointer<Search>(this)] {
                     std::size_t count = 0;
                     const auto report = [&](std::vector<FoundLine> lines, bool isLast) {
                       dispatch_async(dispatch_get_main_queue(),
                                      [self, ended, isLast, lines = std::move(lines)] {
                                        if (!*ended && self) self->add(lines, isLast);
                                      });
                     };
                     searchCurrentProject(word, [&](std::vector<FoundLine> lines) {
                       count += lines.size();
                       if (!lines.empty() && !*ended) report(std::move(lines), false);
                       return !*ended && count < mostLines;
                     });
                     report({}, true);
                   });
  }

  void add(const std::vector<FoundLine>& lines, bool isLast) {
    const std::size_t room = mostLines - lines_.size();
    lines_.insert(lines_.end(), lines.begin(),
                  lines.begin() + static_cast<long>(std::min(room, lines.size())));
    panel_.growTo(lines_.size());
    if (!isLast) return;
    const TextPair& note = lines_.empty()               ? text::noMatch
                           : lines_.size() == mostLines ? text::onlyFirstLines
                                                        : text::linesFound;
    panel_.setNote(localized(note, {std::to_string(lines_.size())}));
  }

  PickPanel& panel_;
  QTimer pause_;
  std::vector<FoundLine> lines_;
  std::shared_ptr<std::atomic<bool>> ended_;
};

void showGoToFile(PlaceChosen chosen) {
  auto* const panel = new PickPanel(text::fileName, text::projectFiles);
  const auto choice = std::make_shared<FileChoice>();
  panel->list().rows().rowAt = [choice](int row) { return rowOf(*choice, static_cast<std::size_t>(row)); };
  filter(*choice, *panel);
  if (choice->files.size() == mostProjectFiles)
    panel->setNote(localized(text::onlyFirstFiles, {std::to_string(mostProjectFiles)}));
  QObject::connect(&panel->field(), &QLineEdit::textChanged, panel,
                   atEventBoundary([panel, choice] { filter(*choice, *panel); }));
  show(panel, text::goToFile, [choice, chosen = std::move(chosen)](int row) {
    const auto index = static_cast<std::size_t>(row);
    if (index < choice->matches.size()) return chosen(choice->files[choice->matches[index]], 0, 0);
    if (!choice->newFile.empty()) create(choice->newFile, chosen);
  });
}

void showProjectSearch(const QString& word, PlaceChosen chosen) {
  auto* const panel = new PickPanel(text::searchedText, text::searchResults);
  auto* const search = new Search(*panel);
  panel->field().setText(word);
  panel->field().selectAll();
  // The lines outlive the panel, which goes with the dialog.
  const auto picked = std::make_shared<FoundLine>();
  QObject::connect(&panel->list(), &RowListView::rowPicked, panel,
                   [search, picked](int row) { *picked = search->line(row); });
  show(panel, text::searchInProject,
       [picked, chosen = std::move(chosen)](int) { chosen(picked->path, picked->line, picked->column); });
}

}  // namespace

void showGoToLine(std::function<void(long line, long column)> chosen) {
  const OneLineQuestion question{localized(text::goToLine), localized(text::lineNumber),
                                 localized(text::confirm), QString(), false};
  showOneLinePrompt(question, [chosen = std::move(chosen)](const std::string& typed) {
    // Digits of any script; what else there is parts them.
    long numbers[2] = {0, 0};
    int count = 0;
    bool inside = false;
    for (const QChar character : QString::fromStdString(typed)) {
      const int digit = character.digitValue();
      if (digit < 0) {
        count += inside ? 1 : 0;
        if (count == 2) break;
      } else if (numbers[count] < 100'000'000) {
        numbers[count] = 10 * numbers[count] + digit;
      }
      inside = digit >= 0;
    }
    if (numbers[0] > 0) chosen(numbers[0], std::max(numbers[1], 1L));
  });
}

void wireProjectButtons(UIButton& goToFile, UIButton& search, const PlaceChosen& chosen,
                        std::function<QString()> selected) {
  goToFile.dress("files", localized(text::goToFile));
  goToFile.onClick(&goToFile, [chosen] { showGoToFile(chosen); });
  addShortcut(goToFile, Qt::CTRL | Qt::Key_E);
  search.dress("search", localized(text::searchInProject));
  search.onClick(&search, [chosen, selected = std::move(selected)] {
    showProjectSearch(selected ? selected() : QString(), chosen);
  });
  addShortcut(search, Qt::CTRL | Qt::SHIFT | Qt::Key_F);
}
