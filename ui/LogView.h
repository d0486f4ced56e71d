// The build log as it is read: plain text in a fixed-pitch font, wrapped, to be selected and copied.
#pragma once

#include "ui/LogText.h"
#include "ui/TextSearch.h"

#include <cstddef>
#include <string>

#include <QAbstractScrollArea>

class QTextLayout;

// Lays out only the rows that are on screen, so that the size of the log costs nothing while it is scrolled.
// Exposed to assistive technology as a read-only text. Control characters take no room. Keys scroll; with
// Shift they select, by rows and characters, from what is selected or else from the top.
class LogView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit LogView(QWidget* parent = nullptr);

  // Replaces what is shown by a UTF-8 text and scrolls to its beginning.
  void setText(std::string text);
  const std::string& text() const { return text_.text(); }

  bool hasSelection() const { return anchor_ != cursor_; }
  // Byte offsets into text(), first and one past the last.
  std::size_t selectionBegin() const { return std::min(anchor_, cursor_); }
  std::size_t selectionEnd() const { return std::max(anchor_, cursor_); }
  void select(std::size_t anchor, std::size_t cursor);

  // Selects the next place of `word`, once round the text, and scrolls it into view. From behind the
  // selection, or where `mayStay`, from its beginning. False when there is none; the selection stays then.
  bool find(const QString& word, SearchDirection direction, bool mayStay);
  void scrollTo(std::size_t offset);

  // Between places in the viewport and byte offsets; a character that is not on screen has no place.
  std::size_t offsetAt(const QPoint& position) const;
  QRect characterRect(std::size_t offset) const;

  // Changes with each new text.
  int revision() const { return revision_; }

 public slots:
  void copy() const;
  void selectAll();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void fitColumns();
  int rowHeight() const;
  QString shown(const LogText::Row& row) const;
  void layOut(QTextLayout& layout) const;
  int rowsShown() const;
  std::size_t topOffset() const;
  int unitsBetween(std::size_t begin, std::size_t end) const;
  bool selectByKey(const QKeyEvent& event);
  void selectRows(qint64 rows);

  LogText text_;
  int revision_ = 0;
  std::size_t anchor_ = 0;
  std::size_t cursor_ = 0;
};
