#include "ui/controls/LogView.h"

#include "core/FileManager.h"
#include "core/Text.h"
#include "platform/EventLoop.h"
#include "platform/UIKeyboard.h"
#include "ui/controls/Looks.h"
#include "ui/controls/Problems.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

#include <QKeyEvent>
#include <QPainter>
#include <QPalette>

namespace {

constexpr int problemMargin = 0;
constexpr int caretIndicator = 8;
constexpr int logTab = 8;
constexpr int lookMilliseconds = 200;
constexpr int dialogHeight = 160;    // about that of the one that says that a build runs
constexpr long lastPart = 32 << 10;  // bytes of a file that are looked at

// How many columns a line takes at most: characters beyond ASCII may be wide.
long widestColumns(std::string_view line) {
  long columns = 0;
  for (const char byte : line) {
    if (byte == '\t') {
      columns += logTab - columns % logTab;
    } else if (startsCharacter(byte)) {
      columns += static_cast<unsigned char>(byte) < 0x80 ? 1 : 2;
    }
  }
  return columns;
}

RunningLog::FileState stateOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  return {static_cast<long>(status.st_ino), status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

}  // namespace

LogView::LogView(QWidget* parent) : TextView(parent) {
  setReadOnly(true);
  setUpProblemMargin(*this, problemMargin);
  send(SCI_INDICSETSTYLE, caretIndicator, INDIC_SQUIGGLEPIXMAP);
  setMarginSensitivity(problemMargin, true);
  connect(this, &QsciScintilla::SCN_DOUBLECLICK, this,
          atEventBoundary([this](int, int line, int) { pick(line); }));
  connect(this, &QsciScintilla::marginClicked, this,
          atEventBoundary([this](int, int line, Qt::KeyboardModifiers) { pick(line); }));
  connect(this, &TextView::tapped, this, atEventBoundary([this](int line) { pick(line); }));
  applyLooks();
}

void LogView::applyLooks() {
  TextView::applyLooks();
  setUpProblemMargin(*this, problemMargin);
  SendScintilla(SCI_INDICSETFORE, caretIndicator, colourOf(Problem::Kind::Error));
  hideCarets();
}

void LogView::setProblems(const std::vector<Problem>& problems) {
  send(SCI_MARKERDELETEALL, -1);
  problems_.clear();
  for (const Problem& problem : problems) {
    problems_.push_back({static_cast<long>(problem.logLine), static_cast<long>(problem.caretLine),
                         static_cast<long>(problem.caretLines)});
    send(SCI_MARKERADD, problems_.back().line, markerOf(problem.kind));
  }
  setMarginWidth(problemMargin, problems.empty() ? 0 : problemMarginWidth);
  hidden_.assign(problems.size(), 0);
  hideCarets();
}

void LogView::showProblem(const Problem& problem) {
  const auto line = static_cast<long>(problem.logLine);
  const long begin = send(SCI_POSITIONFROMLINE, line);
  const long last = std::max(line, static_cast<long>(problem.caretLine));
  send(SCI_SETSEL, send(SCI_GETLINEENDPOSITION, line), begin);
  send(SCI_SCROLLRANGE, send(SCI_GETLINEENDPOSITION, last), begin);
  send(SCI_SETXOFFSET, 0);
}

std::optional<std::size_t> LogView::problemAt(long line) const {
  const auto after = std::upper_bound(problems_.begin(), problems_.end(), line,
                                      [](long wanted, const Lines& each) { return wanted < each.line; });
  if (after == problems_.begin()) return std::nullopt;
  const Lines& found = *(after - 1);
  if (line > std::max(found.line, found.caretLine + found.caretLines - 1)) return std::nullopt;
  return static_cast<std::size_t>(after - 1 - problems_.begin());
}

void LogView::pick(long line) {
  if (const auto problem = problemAt(line)) emit problemPicked(*problem);
}

void LogView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return TextView::keyPressEvent(event);
  if (!isRepeated(*event)) pick(send(SCI_LINEFROMPOSITION, send(SCI_GETSELECTIONSTART)));
}

void LogView::resizeEvent(QResizeEvent* event) {
  TextView::resizeEvent(event);
  hideCarets();
}

void LogView::hideCarets() {
  if (problems_.empty()) return;
  const bool wraps = send(SCI_GETWRAPMODE) != SC_WRAP_NONE;
  const long room =
      viewport()->width() - problemMarginWidth - send(SCI_GETMARGINLEFT) - send(SCI_GETMARGINRIGHT);
  const long tenColumns = SendScintilla(SCI_TEXTWIDTH, static_cast<uintptr_t>(STYLE_DEFAULT), "MMMMMMMMMM");
  const long columns = 10 * std::max(room, 0L) / std::max(tenColumns, 1L);
  const auto lineText = [this](long line) {
    const auto begin = static_cast<std::size_t>(send(SCI_POSITIONFROMLINE, line));
    return text().substr(begin, static_cast<std::size_t>(send(SCI_GETLINEENDPOSITION, line)) - begin);
  };
  for (std::size_t index = 0; index < problems_.size(); ++index) {
    const Lines& lines = problems_[index];
    if (lines.caretLines == 0) continue;
    const std::string_view source = lineText(lines.caretLine - 1);
    const std::string_view caret = lineText(lines.caretLine);
    const std::string plain = withoutSequences(caret);
    // A sequence that the clean-up left takes room before the caret.
    const bool isMoved =
        static_cast<std::size_t>(std::count(caret.begin(), caret.end(), '\033')) + plain.size() !=
        caret.size();
    const bool hide = isMoved || (wraps && std::max(widestColumns(source), widestColumns(caret)) > columns);
    if (hide == (hidden_[index] != 0)) continue;
    hidden_[index] = hide ? 1 : 0;
    const long begin = send(SCI_POSITIONFROMLINE, lines.caretLine);
    setHidden(begin, send(SCI_GETLINEENDPOSITION, lines.caretLine + lines.caretLines - 1), hide);
    // Where it points to, among the columns of the source.
    const auto wanted = static_cast<long>(std::min(plain.find('^'), plain.size()));
    const auto signs = static_cast<long>(plain.find_first_not_of("^~", static_cast<std::size_t>(wanted)));
    long at = send(SCI_POSITIONFROMLINE, lines.caretLine - 1);
    const long end = at + static_cast<long>(source.size());
    long column = 0;
    for (const char byte : source) {
      if (startsCharacter(byte) && byte != '\033' && column++ >= wanted) break;
      ++at;
    }
    const long length = std::max((signs < 0 ? static_cast<long>(plain.size()) : signs) - wanted, 1L);
    send(SCI_SETINDICATORCURRENT, caretIndicator);
    send(hide ? SCI_INDICATORFILLRANGE : SCI_INDICATORCLEARRANGE, std::min(at, end - 1),
         std::clamp(length, 1L, std::max(end - at, 1L)));
  }
}

RunningLog::RunningLog(QWidget& log) : QWidget(log.parentWidget()), log_(log) {
  setObjectName(QStringLiteral("runningLog"));
  setLayoutDirection(Qt::LeftToRight);
  setAttribute(Qt::WA_OpaquePaintEvent);
  log_.installEventFilter(this);
  hide();
}

void RunningLog::start(const std::string& path) {
  path_ = path;
  oldState_ = state_ = stateOf(path);
  end_.clear();
  elapsed_.start();
  timer_.start(lookMilliseconds, this);
  setGeometry(log_.geometry());
  raise();
  show();
}

void RunningLog::follow(const std::string& path) {
  path_ = path;
  oldState_ = state_ = {};
}

void RunningLog::stop() {
  timer_.stop();
  hide();
}

void RunningLog::timerEvent(QTimerEvent*) {
  look();
  update();
}

void RunningLog::look() {
  const FileState now = stateOf(path_);
  if (now == state_ || now == oldState_) return;
  state_ = now;
  end_.clear();
  const Descriptor file = openRegularFile(path_);
  if (!file) return;
  const off_t size = lseek(file.get(), 0, SEEK_END);
  const off_t begin = std::max<off_t>(size - lastPart, 0);
  end_.resize(static_cast<std::size_t>(size - begin));
  const ssize_t got = pread(file.get(), end_.data(), end_.size(), begin);
  end_.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  if (begin > 0) end_.erase(0, end_.find('\n') + 1);
}

bool RunningLog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move) setGeometry(log_.geometry());
  return QWidget::eventFilter(watched, event);
}

void RunningLog::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Active, QPalette::Base));
  painter.setPen(palette().color(QPalette::Active, QPalette::Text));
  const QFont font = log_.font();
  painter.setFont(font);
  const QFontMetrics size(font);
  QRect area = rect().adjusted(metrics::textPadding, metrics::textPadding, -metrics::textPadding,
                               -metrics::textPadding);
  // The end stays in sight above the dialog where there is not room for it below.
  const int middle = mapFrom(window(), window()->rect().center()).y();
  if (area.bottom() < middle + dialogHeight) area.setBottom(std::max(middle - dialogHeight / 2, area.top()));
  // From the last line up, each cut into as many as it takes.
  const auto columns = std::max<qsizetype>(area.width() / std::max(size.horizontalAdvance(u'M'), 1), 1);
  const auto rows = static_cast<std::size_t>(std::max(area.height() / size.lineSpacing(), 1));
  std::vector<QString> shown;
  for (std::string_view rest = end_; !rest.empty() && shown.size() < rows;) {
    if (rest.ends_with('\n')) rest.remove_suffix(1);
    const std::size_t begin = rest.rfind('\n') + 1;
    const std::string plain = withoutSequences(rest.substr(begin).substr(0, std::size_t{4} << 10));
    const QString line = QString::fromStdString(plain);
    const auto parts = std::max<qsizetype>((line.size() + columns - 1) / columns, 1);
    for (qsizetype part = parts; part-- > 0 && shown.size() < rows;)
      shown.push_back(line.mid(part * columns, columns));
    rest.remove_suffix(rest.size() - begin);
  }
  int top = area.top();
  for (auto line = shown.rbegin(); line != shown.rend(); ++line, top += size.lineSpacing())
    painter.drawText(QPoint(area.left(), top + size.ascent()), *line);
  const qint64 seconds = elapsed_.elapsed() / 1000;
  const QString time = QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
  painter.setFont(systemFontOfSize(metrics::bodyTextSize));
  QRect place = painter.fontMetrics().boundingRect(time).adjusted(-metrics::barPadding, -metrics::barSpacing,
                                                                  metrics::barPadding, metrics::barSpacing);
  place.moveTopRight(area.topRight());
  painter.fillRect(place, colours::tileGround);
  painter.drawText(place, Qt::AlignCenter, time);
}
