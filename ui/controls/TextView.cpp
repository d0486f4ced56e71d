#include "ui/controls/TextView.h"

#include "core/Text.h"
#include "platform/UIApplication.h"
#include "ui/Localized.h"
#include "ui/controls/Layer.h"
#include "ui/controls/Looks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QAccessible>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QScrollPrepareEvent>
#include <QScroller>
#include <QShortcut>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWheelEvent>
#include <Qsci/qscicommandset.h>

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t longestWrapped = std::size_t{1} << 20;  // bytes; takes half a second
constexpr long logTabColumns = 8;
constexpr int hiddenStyle = QsciScintillaBase::STYLE_LASTPREDEFINED + 1;

constexpr int smallestZoom = -5;
constexpr int largestZoom = 12;
constexpr double zoomStep = 1.1;

int chosenZoom = 0;

// What most lines end with; where there is no line yet, a line feed.
long lineEndMode(std::string_view text) {
  std::size_t windows = 0;
  std::size_t returns = 0;
  for (std::size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1))
    ++(text.substr(at + 1, 1) == "\n" ? windows : returns);
  const std::size_t feeds = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) - windows;
  if (windows > feeds && windows >= returns) return QsciScintillaBase::SC_EOL_CRLF;
  return returns > feeds ? QsciScintillaBase::SC_EOL_CR : QsciScintillaBase::SC_EOL_LF;
}

// A table, since comparing takes seven times as long for a huge log.
constexpr auto controlCharacters = [] {
  std::array<bool, 256> table{};
  std::fill_n(table.begin(), std::size_t{' '}, true);
  table['\t'] = table['\n'] = table['\r'] = false;
  table[0x7F] = true;
  return table;
}();

constexpr auto takesNoRoom = [](char byte) { return controlCharacters[static_cast<unsigned char>(byte)]; };

}  // namespace

TextView::TextView(QWidget* parent) : QsciScintilla(parent), note_(new QLabel(this)) {
  setUtf8(true);
  setFrameShape(QFrame::NoFrame);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  // The words are Latin ones whatever the language of the interface.
  setLayoutDirection(Qt::LeftToRight);
  send(SCI_SETLAYOUTCACHE, SC_CACHE_PAGE);
  // The one that the library shows.
  setMarginWidth(1, 0);
  send(SCI_SETMARGINLEFT, 0, metrics::textPadding);
  send(SCI_SETMARGINRIGHT, 0, metrics::textPadding);
  send(SCI_SETSCROLLWIDTHTRACKING, true);
  // Room between lines, which taller scripts need.
  send(SCI_SETEXTRAASCENT, 1);
  send(SCI_SETEXTRADESCENT, 1);
  // A tab is typed as it is, whatever the blanks before it.
  setTabIndents(false);
  setUpKeys();
  setUpZoom();
  note_->setFont(systemFontOfSize(metrics::smallTextSize));
  note_->setContentsMargins(metrics::textPadding, metrics::barSpacing, metrics::textPadding,
                            metrics::barSpacing);
  viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
  QScroller& touch = *QScroller::scroller(viewport());
  QScrollerProperties properties = touch.scrollerProperties();
  for (const auto policy :
       {QScrollerProperties::VerticalOvershootPolicy, QScrollerProperties::HorizontalOvershootPolicy})
    properties.setScrollMetric(policy, QScrollerProperties::OvershootAlwaysOff);
  touch.setScrollerProperties(properties);
  reportToAssistiveTechnology();
  setWrapped(true);
}

void TextView::setReadOnly(bool readOnly) {
  QsciScintilla::setReadOnly(readOnly);
  send(SCI_SETCARETWIDTH, readOnly ? 0 : 1);
  send(SCI_SETTABWIDTH, readOnly ? logTabColumns : editorTabColumns);
  viewport()->setCursor(Qt::IBeamCursor);
}

// Keys that edit whole lines or belong to the screen are no longer the text's.
void TextView::setUpKeys() {
  QsciCommandSet& commands = *standardCommands();
  for (const auto taken :
       {QsciCommand::LineCut, QsciCommand::LineDelete, QsciCommand::LineCopy, QsciCommand::LineTranspose,
        QsciCommand::SelectionDuplicate, QsciCommand::SelectionLowerCase, QsciCommand::SelectionUpperCase,
        QsciCommand::EditToggleOvertype, QsciCommand::Cancel, QsciCommand::ZoomIn, QsciCommand::ZoomOut}) {
    commands.find(taken)->setKey(0);
  }
  // Home and End go by the lines that are seen.
  const struct {
    QsciCommand::Command plain, wrapped;
    QKeyCombination key;
  } moved[] = {{QsciCommand::VCHome, QsciCommand::VCHomeWrap, Qt::Key_Home},
               {QsciCommand::VCHomeExtend, QsciCommand::VCHomeWrapExtend, Qt::SHIFT | Qt::Key_Home},
               {QsciCommand::LineEnd, QsciCommand::LineEndWrap, Qt::Key_End},
               {QsciCommand::LineEndExtend, QsciCommand::LineEndWrapExtend, Qt::SHIFT | Qt::Key_End}};
  for (const auto& each : moved) {
    commands.find(each.plain)->setKey(0);
    commands.find(each.wrapped)->setKey(each.key.toCombined());
  }
  commands.find(QsciCommand::Redo)->setAlternateKey((Qt::CTRL | Qt::SHIFT | Qt::Key_Z).toCombined());
}

void TextView::setUpZoom() {
  const auto wire = [this](const QKeySequence& key, auto level) {
    connect(new QShortcut(key, this), &QShortcut::activated, this, [this, level] { zoomTo(level()); });
  };
  // Plus has a key of its own, or shares one with the equals sign.
  wire(Qt::CTRL | Qt::Key_Plus, [] { return chosenZoom + 1; });
  wire(Qt::CTRL | Qt::Key_Equal, [] { return chosenZoom + 1; });
  wire(Qt::CTRL | Qt::Key_Minus, [] { return chosenZoom - 1; });
  wire(Qt::CTRL | Qt::Key_0, [] { return 0; });
  zoomTo(chosenZoom);
}

void TextView::zoomTo(int level) {
  chosenZoom = std::clamp(level, smallestZoom, largestZoom);
  setFont(fixedPitchFontOfSize(metrics::fixedPitchTextSize * std::pow(zoomStep, chosenZoom)));
}

void TextView::wheelEvent(QWheelEvent* event) {
  if ((event->modifiers() & Qt::ControlModifier) == 0) return QsciScintilla::wheelEvent(event);
  wheelAngle_ += event->angleDelta().y();
  const int steps = wheelAngle_ / QWheelEvent::DefaultDeltasPerStep;
  wheelAngle_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  zoomTo(chosenZoom + steps);
}

void TextView::applyLooks() {
  // Drawn straight onto the widget, text takes the direction of the application; where that is from right to
  // left, code would be mangled, which a buffer prevents.
  send(SCI_SETBUFFEREDDRAW, QGuiApplication::isRightToLeft());
  const QPalette& colours = palette();
  const QColor text = colours.color(QPalette::Active, QPalette::Text);
  const QColor base = colours.color(QPalette::Active, QPalette::Base);
  const QColor chosen = colours.color(QPalette::Active, QPalette::Highlight);
  SendScintilla(SCI_STYLESETFORE, STYLE_DEFAULT, text);
  SendScintilla(SCI_STYLESETBACK, STYLE_DEFAULT, base);
  SendScintilla(SCI_STYLESETFONT, static_cast<uintptr_t>(STYLE_DEFAULT),
                font().family().toUtf8().constData());
  send(SCI_STYLESETSIZEFRACTIONAL, STYLE_DEFAULT,
       qRound(font().pointSizeF() * static_cast<int>(SC_FONT_SIZE_MULTIPLIER)));
  // Every other style takes these over, so this comes after them.
  send(SCI_STYLECLEARALL);
  send(SCI_STYLESETVISIBLE, hiddenStyle, false);
  // The selected part has no colour of its own: it would be cut out of its run, and Arabic letters with it.
  send(SCI_SETSELFORE, false);
  SendScintilla(SCI_SETSELBACK, 1UL, chosen);
  SendScintilla(SCI_SETCARETFORE, text);
  send(SCI_SETCARETPERIOD, QGuiApplication::styleHints()->cursorFlashTime() / 2);
}

void TextView::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  switch (event->type()) {
    case QEvent::ApplicationLayoutDirectionChange:
    case QEvent::EnabledChange:
    case QEvent::FontChange:
    case QEvent::PaletteChange:
      return applyLooks();
    default:
      break;
  }
}

std::string_view TextView::text() const {
  return {static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER)),
          static_cast<std::size_t>(send(SCI_GETLENGTH))};
}

void TextView::setBytes(std::string_view bytes) {
  const bool readOnly = isReadOnly();
  byteOrderMark_ = bytes.starts_with(utf8Mark) ? utf8Mark : std::string_view();
  bytes.remove_prefix(byteOrderMark_.size());
  // Nobody hears of each step: a huge text would be handed over in one piece.
  const long heard = send(SCI_GETMODEVENTMASK);
  send(SCI_SETMODEVENTMASK, 0);
  // A huge log in which nothing is hidden does without styles, which take as much memory as the text.
  const bool isPlain =
      readOnly && bytes.size() > longestWrapped && std::none_of(bytes.begin(), bytes.end(), takesNoRoom);
  if (readOnly) {
    const long document =
        send(SCI_CREATEDOCUMENT, 0, isPlain ? SC_DOCUMENTOPTION_STYLES_NONE : SC_DOCUMENTOPTION_DEFAULT);
    send(SCI_SETDOCPOINTER, 0, document);
    send(SCI_RELEASEDOCUMENT, 0, document);
  }
  send(SCI_SETREADONLY, false);
  send(SCI_SETUNDOCOLLECTION, false);
  // A text that wraps while it comes in is wrapped on the spot, not bit by bit later.
  send(SCI_SETWRAPMODE, SC_WRAP_NONE);
  send(SCI_CLEARALL);
  send(SCI_SETSCROLLWIDTH, 1);
  send(SCI_APPENDTEXT, static_cast<long>(bytes.size()), reinterpret_cast<long>(bytes.data()));
  if (readOnly && !isPlain) hideControlCharacters(0, static_cast<long>(bytes.size()));
  setWrapped(bytes.size() <= longestWrapped);
  if (!readOnly) send(SCI_SETEOLMODE, lineEndMode(bytes));
  send(SCI_SETUNDOCOLLECTION, true);
  send(SCI_EMPTYUNDOBUFFER);
  send(SCI_SETSAVEPOINT);
  // Sets the tab width too, which belongs to the document.
  setReadOnly(readOnly);
  send(SCI_SETMODEVENTMASK, heard);
  QAccessibleTextUpdateEvent changed(this, 0, QString(), QString());
  QAccessible::updateAccessibility(&changed);
}

std::string TextView::bytes() {
  QGuiApplication::inputMethod()->commit();
  if (composing_) {
    QInputMethodEvent dropped;
    inputMethodEvent(&dropped);
  }
  return byteOrderMark_ + std::string(text());
}

void TextView::setHidden(long begin, long end, bool hidden) {
  send(SCI_STARTSTYLING, begin);
  send(SCI_SETSTYLING, end - begin, hidden ? hiddenStyle : 0);
  if (!hidden) hideControlCharacters(begin, end);
}

void TextView::hideControlCharacters(long begin, long end) {
  constexpr long piece = 1L << 20;
  std::string styles;
  for (; begin < end; begin += piece) {
    const std::string_view part = text().substr(static_cast<std::size_t>(begin),
                                                static_cast<std::size_t>(std::min(piece, end - begin)));
    if (std::none_of(part.begin(), part.end(), takesNoRoom)) continue;
    styles.resize(part.size());
    std::transform(part.begin(), part.end(), styles.begin(),
                   [](char byte) { return takesNoRoom(byte) ? char{hiddenStyle} : char{0}; });
    send(SCI_STARTSTYLING, begin);
    SendScintilla(SCI_SETSTYLINGEX, static_cast<uintptr_t>(styles.size()), styles.data());
  }
}

void TextView::setWrapped(bool wrapped) {
  send(SCI_SETWRAPMODE, wrapped ? SC_WRAP_WHITESPACE : SC_WRAP_NONE);
  note_->setText(localized(text::longLinesNotWrapped));
  note_->setVisible(!wrapped);
  placeNote();
}

void TextView::placeNote() {
  const int height = note_->isHidden() ? 0 : note_->sizeHint().height();
  setViewportMargins(0, metrics::textPadding, 0, height);
  const QRect shown = viewport()->geometry();
  note_->setGeometry(shown.left(), shown.bottom() + 1, shown.width(), height);
}

void TextView::goTo(long line, long column) {
  const long index = std::clamp(line, 1L, send(SCI_GETLINECOUNT)) - 1;
  const long begin = send(SCI_POSITIONFROMLINE, index);
  const long end = send(SCI_GETLINEENDPOSITION, index);
  long at = begin + std::clamp(column - 1, 0L, end - begin);
  while (at > begin && !startsCharacter(static_cast<char>(send(SCI_GETCHARAT, at)))) --at;
  send(SCI_GOTOPOS, at);
  // From here the arrow keys keep this column.
  send(SCI_CHOOSECARETX);
  send(SCI_VERTICALCENTRECARET);
}

TextView::Place TextView::place() const {
  return {send(SCI_GETCURRENTPOS), send(SCI_DOCLINEFROMVISIBLE, send(SCI_GETFIRSTVISIBLELINE))};
}

void TextView::goTo(const Place& place) {
  send(SCI_SETEMPTYSELECTION, std::clamp(place.caret, 0L, send(SCI_GETLENGTH)));
  send(SCI_CHOOSECARETX);
  send(SCI_SETFIRSTVISIBLELINE, send(SCI_VISIBLEFROMDOCLINE, place.topLine));
}

bool TextView::find(const QString& word, SearchDirection direction, bool mayStay) {
  if (isReadOnly()) selectFromTop();
  const QByteArray bytes = word.toUtf8();
  const bool fromEnd = (direction == SearchDirection::Forward) != mayStay;
  const auto found = findWordAround(text(), {bytes.data(), static_cast<std::size_t>(bytes.size())},
                                    fromEnd ? selectionEnd() : selectionBegin(), direction);
  if (!found) return false;
  send(SCI_SETSEL, static_cast<long>(*found), static_cast<long>(*found) + bytes.size());
  return true;
}

// Where a log has nothing selected, it goes on from the top of what is seen.
void TextView::selectFromTop() {
  if (hasSelectedText()) return;
  const long line = send(SCI_DOCLINEFROMVISIBLE, send(SCI_GETFIRSTVISIBLELINE));
  send(SCI_SETEMPTYSELECTION, send(SCI_POSITIONFROMLINE, line));
}

bool TextView::scrollByKey(QKeyEvent& event) {
  constexpr std::pair<int, QAbstractSlider::SliderAction> ofTexts[] = {
      {Qt::Key_Space, QAbstractSlider::SliderPageStepAdd},
      {Qt::Key_Home, QAbstractSlider::SliderToMinimum},
      {Qt::Key_End, QAbstractSlider::SliderToMaximum}};
  for (const auto& [key, action] : ofTexts) {
    if (event.key() != key) continue;
    verticalScrollBar()->triggerAction(action);
    return true;
  }
  // The arrows, which the editor component would move the caret by.
  QAbstractScrollArea::keyPressEvent(&event);  // NOLINT(bugprone-parent-virtual-call)
  return event.isAccepted();
}

void TextView::keyPressEvent(QKeyEvent* event) {
  // The screen's, though the library would swallow it.
  if (event->key() == Qt::Key_Escape) return event->ignore();
  if (isReadOnly()) {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::NoModifier && scrollByKey(*event)) return;
    if ((modifiers & Qt::ShiftModifier) != 0) selectFromTop();
    const bool isHome = event->key() == Qt::Key_Home;
    if (modifiers == Qt::ShiftModifier && (isHome || event->key() == Qt::Key_End)) {
      send(isHome ? SCI_DOCUMENTSTARTEXTEND : SCI_DOCUMENTENDEXTEND);
      return;
    }
  }
  QsciScintilla::keyPressEvent(event);
}

void TextView::inputMethodEvent(QInputMethodEvent* event) {
  composing_ = !event->preeditString().isEmpty();
  QsciScintilla::inputMethodEvent(event);
}

void TextView::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setLayoutDirection(QGuiApplication::layoutDirection());
  const auto add = [&](const TextPair& name, bool possible, auto action) {
    menu->addAction(localized(name), this, action)->setEnabled(possible);
  };
  const bool chosen = hasSelectedText();
  if (!isReadOnly()) {
    add(text::undo, isUndoAvailable(), &TextView::undo);
    add(text::redo, isRedoAvailable(), &TextView::redo);
    menu->addSeparator();
    add(text::cut, chosen, &TextView::cut);
  }
  add(text::copy, chosen, &TextView::copy);
  if (!isReadOnly()) {
    add(text::paste, send(SCI_CANPASTE) != 0, &TextView::paste);
    add(text::delete_, chosen, &TextView::removeSelectedText);
    menu->addSeparator();
  }
  add(text::selectAll, length() > 0, [this] { selectAll(); });
  menu->popup(event->globalPos());
}

void TextView::paintEvent(QPaintEvent* event) {
  QsciScintilla::paintEvent(event);
  paintFocusRing(*viewport());
}

bool TextView::event(QEvent* event) {
  const bool handled = QsciScintilla::event(event);
  // The margin above the viewport has a part of the ring.
  if (event->type() == QEvent::Paint) paintFocusRing(*this);
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  return handled;
}

void TextView::paintFocusRing(QWidget& part) {
  // Where text is typed, the caret shows the focus.
  if (!isReadOnly() || !showsFocus(*this)) return;
  QPainter painter(&part);
  const QRect text = viewport()->geometry();
  drawFocusRing(painter, text.adjusted(0, -text.top(), 0, 0).translated(-part.mapTo(this, QPoint())), 0);
}

void TextView::resizeEvent(QResizeEvent* event) {
  QsciScintilla::resizeEvent(event);
  placeNote();
}

bool TextView::viewportEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      touch(*static_cast<QTouchEvent*>(event));
      return true;
    case QEvent::ScrollPrepare:
    case QEvent::Scroll:
      scrollByTouch(*event);
      return true;
    default:
      return QsciScintilla::viewportEvent(event);
  }
}

// One finger scrolls; where it only taps, it places the caret, and tapping twice selects a word.
void TextView::touch(const QTouchEvent& event) {
  QScroller& scroller = *QScroller::scroller(viewport());
  const QPointF at = event.points().isEmpty() ? QPointF() : event.points().first().position();
  const auto time = static_cast<qint64>(event.timestamp());
  switch (event.type()) {
    case QEvent::TouchBegin:
      // The finger that stops a text on its way does no more.
      taps_ = scroller.state() == QScroller::Inactive;
      scroller.handleInput(QScroller::InputPress, at, time);
      break;
    case QEvent::TouchUpdate:
      scroller.handleInput(QScroller::InputMove, at, time);
      taps_ = taps_ && scroller.state() == QScroller::Pressed;
      break;
    case QEvent::TouchEnd:
      scroller.handleInput(QScroller::InputRelease, at, time);
      if (taps_) tap(at.toPoint(), time);
      break;
    default:
      scroller.stop();
      break;
  }
}

void TextView::tap(QPoint at, qint64 time) {
  setFocus(Qt::MouseFocusReason);
  const long place = send(SCI_POSITIONFROMPOINT, at.x(), at.y());
  const QStyleHints& hints = *QGuiApplication::styleHints();
  const bool again = time - tappedTime_ < hints.mouseDoubleClickInterval() &&
                     (at - tappedAt_).manhattanLength() < hints.touchDoubleTapDistance();
  send(SCI_SETSEL, again ? send(SCI_WORDSTARTPOSITION, place, true) : place,
       again ? send(SCI_WORDENDPOSITION, place, true) : place);
  tappedTime_ = time;
  tappedAt_ = at;
  emit tapped(static_cast<int>(send(SCI_LINEFROMPOSITION, place)));
  if (!isReadOnly()) QGuiApplication::inputMethod()->show();
}

// The scroll bar counts lines, a finger pixels.
void TextView::scrollByTouch(QEvent& event) {
  QScrollBar& across = *horizontalScrollBar();
  QScrollBar& down = *verticalScrollBar();
  const auto line = static_cast<double>(send(SCI_TEXTHEIGHT));
  event.accept();
  if (event.type() == QEvent::Scroll) {
    const QPointF place = static_cast<QScrollEvent&>(event).contentPos();
    across.setValue(qRound(place.x()));
    down.setValue(qRound(place.y() / line));
    return;
  }
  auto& prepare = static_cast<QScrollPrepareEvent&>(event);
  prepare.setViewportSize(viewport()->size());
  prepare.setContentPosRange({QPointF(), QSizeF(across.maximum(), down.maximum() * line)});
  prepare.setContentPos({static_cast<double>(across.value()), down.value() * line});
}
