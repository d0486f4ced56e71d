// The text of a file or of a log: its bytes exactly, in the looks of the application.
#pragma once

#include "ui/controls/TextSearch.h"

#include <string>
#include <string_view>

#include <Qsci/qsciscintilla.h>

class QLabel;
class QTouchEvent;

// QsciScintilla in the application's palette and fixed-pitch font, with its touch scrolling, context menu and
// reports to assistive technology. Ctrl with +, -, 0 or the wheel changes the size of the text, which then
// holds for each new view until the application ends. Read left to right whatever the language of the
// interface. Read-only it is a log: it has no caret, keys scroll (with Shift they select, from what is
// selected or else from the top), and control characters take no room.
class TextView : public QsciScintilla {
  Q_OBJECT

 public:
  explicit TextView(QWidget* parent = nullptr);

  void setReadOnly(bool readOnly) override;

  // Replaces the text by `bytes`, which have to be valid UTF-8 of less than 2 GiB, and goes to its beginning.
  // Nothing can be undone then, and isModified() is false. A new line that is typed ends as most lines do. A
  // text over 1 MiB is not wrapped, and a note below it says so.
  void setBytes(std::string_view bytes);
  // The same bytes, but for what was edited. A text that an input method has not finished is finished first.
  std::string bytes();

  // Byte offsets, first and one past the last; the same where nothing is selected. A byte-order mark at the
  // beginning is not counted.
  std::size_t selectionBegin() const { return static_cast<std::size_t>(send(SCI_GETSELECTIONSTART)); }
  std::size_t selectionEnd() const { return static_cast<std::size_t>(send(SCI_GETSELECTIONEND)); }

  // Puts the caret at a line and a column, both from 1 and the column in bytes, or as near as the text
  // allows, and scrolls there.
  void goTo(long line, long column);
  // The caret (a byte offset) and the first line in sight, to come back to.
  struct Place {
    long caret = 0;
    long topLine = 0;
  };
  Place place() const;
  void goTo(const Place& place);

  // Selects the next place of `word`, once round the text, and scrolls it into view. From behind the
  // selection, or where `mayStay`, from its beginning. False when there is none; the selection stays then.
  bool find(const QString& word, SearchDirection direction, bool mayStay);

  // SendScintilla's overloads leave plain integers ambiguous.
  long send(unsigned int message, long first = 0, long second = 0) const {
    return SendScintilla(message, static_cast<unsigned long>(first), second);
  }

 signals:
  // A finger tapped on the line.
  void tapped(int line);

 protected:
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

  // Called again when the font or the palette changes; every style is reset first.
  virtual void applyLooks();
  // Whether the bytes of a log take room on the screen. Control characters never do.
  void setHidden(long begin, long end, bool hidden);
  // Valid until the text changes.
  std::string_view text() const;

  static constexpr long editorTabColumns = 4;

 private:
  void setUpKeys();
  void setUpZoom();
  void zoomTo(int level) override;
  void hideControlCharacters(long begin, long end);
  void setWrapped(bool wrapped);
  void placeNote();
  void paintFocusRing(QWidget& part);
  void selectFromTop();
  bool scrollByKey(QKeyEvent& event);
  void touch(const QTouchEvent& event);
  void tap(QPoint at, qint64 time);
  void scrollByTouch(QEvent& event);
  void reportToAssistiveTechnology();

  std::string byteOrderMark_;  // kept apart, so that nothing is typed before it
  QLabel* note_;
  int wheelAngle_ = 0;  // eighths of a degree that have not made a step yet
  bool composing_ = false;
  bool taps_ = false;      // what a finger does now is still a tap
  qint64 tappedTime_ = 0;  // milliseconds, of the last tap
  QPoint tappedAt_;
};
