#include "ui/controls/CodeView.h"

#include "ui/controls/Looks.h"
#include "ui/controls/Problems.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <QKeyEvent>
#include <QPaintEvent>

namespace {

constexpr std::size_t longestColoured = std::size_t{4} << 20;  // bytes
constexpr long longestMatched = 1L << 20;  // bytes that are searched for the other bracket
constexpr int numberMargin = 0;
constexpr int markMargin = 1;
constexpr int firstIndicator = 8;  // of errors; the other kinds follow. The library's lexers use those before
constexpr int markKinds = 3;

}  // namespace

CodeView::CodeView(QWidget* parent) : TextView(parent) {
  for (int kind = 0; kind < markKinds; ++kind)
    send(SCI_INDICSETSTYLE, firstIndicator + kind, INDIC_SQUIGGLEPIXMAP);
  send(SCI_SETWRAPINDENTMODE, SC_WRAPINDENT_INDENT);
  connect(this, &QsciScintilla::SCN_STYLENEEDED, this, [this](int end) { styleTo(end); });
  connect(this, &QsciScintilla::SCN_CHARADDED, this, [this](int character) {
    if (character == '\n' || character == '\r') indentNewLine();
    if (character == '}') alignClosingBrace();
  });
  connect(this, &QsciScintilla::linesChanged, this, [this] { widenMargin(); });
  connect(this, &QsciScintilla::SCN_UPDATEUI, this, [this](int updated) {
    if ((updated & (SC_UPDATE_SELECTION | SC_UPDATE_CONTENT)) == 0) return;
    matchBrackets();
    const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS));
    if (std::exchange(caretLine_, line) != line) emit caretLineChanged();
  });
  // A mark whose line was deleted has stayed beside another one.
  connect(this, &QsciScintilla::SCN_SAVEPOINTREACHED, this, [this] { setProblems(problems_); });
  applyLooks();
}

void CodeView::setFile(std::string_view bytes, const std::string& name) {
  language_ = bytes.size() > longestColoured ? CodeLanguage::Plain : languageOf(name, bytes);
  setBytes(bytes);
  if (const CodeLexer* const lexer = lexerOf(language_)) {
    SendScintilla(SCI_SETLEXERLANGUAGE, 0UL, lexer->name);
    if (lexer->keywords) SendScintilla(SCI_SETKEYWORDS, 0UL, lexer->keywords);
  } else {
    send(SCI_SETLEXER, language_ == CodeLanguage::Logos ? SCLEX_CONTAINER : SCLEX_NULL);
  }
  detectIndentation(bytes);
  applyLooks();
  // What is below the lines in sight is coloured while nothing is typed.
  send(SCI_SETIDLESTYLING, SC_IDLESTYLING_TOVISIBLE);
}

void CodeView::applyLooks() {
  TextView::applyLooks();
  for (int style = 0; style < STYLE_DEFAULT; ++style)
    SendScintilla(SCI_STYLESETFORE, style, colourOf(partOfStyle(language_, style)));
  SendScintilla(SCI_STYLESETFORE, STYLE_LINENUMBER, colours::lineNumber);
  SendScintilla(SCI_STYLESETBACK, STYLE_LINENUMBER, palette().color(QPalette::Active, QPalette::Base));
  setUpProblemMargin(*this, markMargin);
  SendScintilla(SCI_STYLESETFORE, STYLE_BRACELIGHT, colours::bracket);
  SendScintilla(SCI_STYLESETBACK, STYLE_BRACELIGHT, colours::bracketGround);
  // Coloured text can be read on this ground.
  SendScintilla(SCI_SETSELBACK, 1UL, colours::codeSelection);
  send(SCI_SETCARETLINEVISIBLE, true);
  SendScintilla(SCI_SETCARETLINEBACK, colours::currentLine);
  for (int kind = 0; kind < markKinds; ++kind)
    SendScintilla(SCI_INDICSETFORE, firstIndicator + kind, colourOf(static_cast<Problem::Kind>(kind)));
  widenMargin();
}

void CodeView::widenMargin() {
  std::string digits = std::to_string(std::max(send(SCI_GETLINECOUNT), 10L));
  std::fill(digits.begin(), digits.end(), '9');
  const long width = SendScintilla(SCI_TEXTWIDTH, static_cast<uintptr_t>(STYLE_LINENUMBER), digits.c_str());
  send(SCI_SETMARGINWIDTHN, numberMargin, width + metrics::textPadding);
}

// Colours from the last line that is, to the line of `end`.
void CodeView::styleTo(long end) {
  if (language_ != CodeLanguage::Logos) return;
  long line = send(SCI_LINEFROMPOSITION, send(SCI_GETENDSTYLED));
  const long last = send(SCI_LINEFROMPOSITION, end);
  const long begin = send(SCI_POSITIONFROMLINE, line);
  const long stop =
      last + 1 < send(SCI_GETLINECOUNT) ? send(SCI_POSITIONFROMLINE, last + 1) : send(SCI_GETLENGTH);
  // The library answers with a number. NOLINTNEXTLINE(performance-no-int-to-ptr)
  const auto* const bytes = reinterpret_cast<const char*>(
      SendScintilla(SCI_GETRANGEPOINTER, static_cast<unsigned long>(begin), stop - begin));
  std::string parts(static_cast<std::size_t>(stop - begin), '\0');
  int state = line > 0 ? static_cast<int>(send(SCI_GETLINESTATE, line - 1)) : 0;
  for (long at = begin; at < stop; ++line) {
    const long next = line + 1 < send(SCI_GETLINECOUNT) ? send(SCI_POSITIONFROMLINE, line + 1) : stop;
    state = styleLogosLine({bytes + (at - begin), static_cast<std::size_t>(next - at)}, state,
                           parts.data() + (at - begin));
    send(SCI_SETLINESTATE, line, state);
    at = next;
  }
  send(SCI_STARTSTYLING, begin);
  SendScintilla(SCI_SETSTYLINGEX, static_cast<uintptr_t>(parts.size()), parts.data());
}

// Tabs, unless the first indented line shows otherwise.
void CodeView::detectIndentation(std::string_view text) {
  std::size_t blanks = 0;
  for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
    if (text.substr(at + 1, 1) == "\t") break;
    const std::size_t first = text.find_first_not_of(' ', at + 1);
    if (first == std::string_view::npos || first < at + 3 || text[first] == '*') continue;
    blanks = std::min(first - at - 1, std::size_t{8});
    break;
  }
  if (language_ == CodeLanguage::Makefile) blanks = 0;
  send(SCI_SETUSETABS, blanks == 0);
  send(SCI_SETTABWIDTH, blanks == 0 ? editorTabColumns : static_cast<long>(blanks));
}

void CodeView::indentNewLine() {
  const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS));
  const long begin = send(SCI_POSITIONFROMLINE, line - 1);
  std::string above(static_cast<std::size_t>(send(SCI_GETLINEENDPOSITION, line - 1) - begin), '\0');
  SendScintilla(SCI_GETTEXTRANGE, begin, begin + static_cast<long>(above.size()), above.data());
  const std::size_t last = above.find_last_not_of(" \t");
  const char end = last == std::string::npos ? '\0' : above[last];
  const bool isRule = language_ == CodeLanguage::Makefile && above.find_first_of(" \t#") != 0 &&
                      above.find(':') != std::string::npos && above.find('=') == std::string::npos;
  const bool opens = language_ != CodeLanguage::Makefile && (end == '{' || end == '(' || end == '[');
  const long columns = send(SCI_GETLINEINDENTATION, line - 1) + (opens || isRule ? send(SCI_GETTABWIDTH) : 0);
  if (columns == 0) return;
  send(SCI_SETLINEINDENTATION, line, columns);
  send(SCI_GOTOPOS, send(SCI_GETLINEINDENTPOSITION, line));
}

// A closing brace that begins its line goes below the line of the opening one.
void CodeView::alignClosingBrace() {
  const long brace = send(SCI_GETCURRENTPOS) - 1;
  const long line = send(SCI_LINEFROMPOSITION, brace);
  if (send(SCI_GETLINEINDENTPOSITION, line) != brace || send(SCI_GETLENGTH) > longestMatched) return;
  const long open = send(SCI_BRACEMATCH, brace);
  if (open < 0) return;
  send(SCI_SETLINEINDENTATION, line, send(SCI_GETLINEINDENTATION, send(SCI_LINEFROMPOSITION, open)));
}

void CodeView::keyPressEvent(QKeyEvent* event) {
  const bool shifts = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
  const bool alone = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETSELECTIONSTART));
  const bool isOneLine = line == send(SCI_LINEFROMPOSITION, send(SCI_GETSELECTIONEND));
  // The library shifts several lines itself, and would replace what is selected in one.
  if (!shifts || !alone || !hasSelectedText() || !isOneLine) return TextView::keyPressEvent(event);
  const long step = event->key() == Qt::Key_Tab ? send(SCI_GETTABWIDTH) : -send(SCI_GETTABWIDTH);
  send(SCI_SETLINEINDENTATION, line, send(SCI_GETLINEINDENTATION, line) + step);
}

// Always the whole text, which takes 3 ms. Where colours or brackets change outside of what is painted, the
// library would wrap all lines below anew, which takes it a tenth of a second for 20,000 of them.
void CodeView::paintEvent(QPaintEvent*) {
  QPaintEvent whole(viewport()->rect());
  TextView::paintEvent(&whole);
}

void CodeView::matchBrackets() {
  const long caret = send(SCI_GETCURRENTPOS);
  const auto bracketAt = [this](long place) {
    const int byte = place < 0 ? 0 : static_cast<int>(send(SCI_GETCHARAT, place));
    return byte != 0 && std::strchr("()[]{}", byte) != nullptr;
  };
  const long bracket = bracketAt(caret - 1) ? caret - 1 : bracketAt(caret) ? caret : -1;
  const long other = bracket < 0 || send(SCI_GETLENGTH) > longestMatched ? -1 : send(SCI_BRACEMATCH, bracket);
  send(SCI_BRACEHIGHLIGHT, other < 0 ? -1 : bracket, other);
}

void CodeView::setProblems(const std::vector<Problem>& problems) {
  problems_ = problems;
  handles_.assign(problems_.size(), -1);
  for (int kind = 0; kind < markKinds; ++kind) {
    send(SCI_MARKERDELETEALL, markerOf(static_cast<Problem::Kind>(kind)));
    send(SCI_SETINDICATORCURRENT, firstIndicator + kind);
    send(SCI_INDICATORCLEARRANGE, 0, send(SCI_GETLENGTH));
  }
  const long lines = send(SCI_GETLINECOUNT);
  for (std::size_t index = 0; index < problems_.size(); ++index) {
    const Problem& problem = problems_[index];
    if (problem.line < 1 || problem.line > lines) continue;
    const int kind = static_cast<int>(problem.kind);
    const long line = problem.line - 1;
    handles_[index] = send(SCI_MARKERADD, line, markerOf(problem.kind));
    const long end = send(SCI_GETLINEENDPOSITION, line);
    const long at = send(SCI_POSITIONFROMLINE, line) + problem.column - 1;
    if (problem.column < 1 || at >= end) continue;
    const long wordEnd = std::max(send(SCI_WORDENDPOSITION, at, true), send(SCI_POSITIONAFTER, at));
    send(SCI_SETINDICATORCURRENT, firstIndicator + kind);
    send(SCI_INDICATORFILLRANGE, at, wordEnd - at);
  }
  send(SCI_SETMARGINWIDTHN, markMargin, problems_.empty() ? 0 : problemMarginWidth);
  emit caretLineChanged();
}

long CodeView::lineOfProblem(std::size_t index) const {
  const long handle = handles_.at(index);
  return handle < 0 ? 0 : send(SCI_MARKERLINEFROMHANDLE, handle) + 1;
}

QStringList CodeView::messagesAtCaret() const {
  const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS)) + 1;
  QStringList messages;
  for (std::size_t index = 0; index < problems_.size(); ++index) {
    if (lineOfProblem(index) != line) continue;
    const QString message = shownMessage(problems_[index]);
    if (!messages.contains(message)) messages.append(message);
  }
  return messages;
}

bool CodeView::goToProblem(SearchDirection direction) {
  const bool forward = direction == SearchDirection::Forward;
  const long mask = send(SCI_GETMARGINMASKN, markMargin);
  const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS));
  const unsigned int message = forward ? SCI_MARKERNEXT : SCI_MARKERPREVIOUS;
  long found = send(message, forward ? line + 1 : line - 1, mask);
  if (found < 0) found = send(message, forward ? 0 : send(SCI_GETLINECOUNT), mask);
  if (found < 0) return false;
  // The first place that is marked in the line.
  const long begin = send(SCI_POSITIONFROMLINE, found);
  const long end = send(SCI_GETLINEENDPOSITION, found);
  long place = end;
  for (int indicator = firstIndicator; indicator < firstIndicator + markKinds; ++indicator) {
    const bool isHere = send(SCI_INDICATORVALUEAT, indicator, begin) != 0;
    const long next = isHere ? begin : send(SCI_INDICATOREND, indicator, begin);
    if (next >= begin && send(SCI_INDICATORVALUEAT, indicator, next) != 0) place = std::min(place, next);
  }
  goTo(found + 1, place == end ? 1 : place - begin + 1);
  return true;
}

bool CodeView::replaceNext(const QString& word, const QString& replacement) {
  const long begin = send(SCI_GETSELECTIONSTART);
  const QByteArray bytes = replacement.toUtf8();
  // The selection is the word when the search that may stay there does.
  if (!word.isEmpty() && hasSelectedText() && selectedText().size() == word.size() &&
      find(word, SearchDirection::Forward, true) && send(SCI_GETSELECTIONSTART) == begin) {
    send(SCI_TARGETFROMSELECTION);
    SendScintilla(SCI_REPLACETARGET, static_cast<uintptr_t>(bytes.size()), bytes.constData());
    send(SCI_SETEMPTYSELECTION, begin + bytes.size());
  }
  return find(word, SearchDirection::Forward, true);
}

int CodeView::replaceAll(const QString& word, const QString& replacement) {
  const QByteArray sought = word.toUtf8();
  const QByteArray bytes = replacement.toUtf8();
  std::vector<std::size_t> places;
  const std::string_view whole = text();
  std::size_t from = 0;
  while (const auto at = findWord(whole, {sought.data(), static_cast<std::size_t>(sought.size())}, from,
                                  SearchDirection::Forward)) {
    places.push_back(*at);
    from = *at + static_cast<std::size_t>(sought.size());
  }
  send(SCI_BEGINUNDOACTION);
  // From the end, so that the places before it stay where they are.
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    send(SCI_SETTARGETRANGE, static_cast<long>(*place), static_cast<long>(*place) + sought.size());
    SendScintilla(SCI_REPLACETARGET, static_cast<uintptr_t>(bytes.size()), bytes.constData());
  }
  send(SCI_ENDUNDOACTION);
  return static_cast<int>(places.size());
}
