// The build log as it is read: plain text in a fixed-pitch font, wrapped, to be selected and copied.
#pragma once

#include "ui/LogText.h"

#include <cstddef>
#include <string>

#include <QAbstractScrollArea>

class QTextLayout;

// Lays out only the rows that are on screen, so that the size of the log costs nothing while it is scrolled.
// Exposed to assistive technology as a read-only text. Control characters take no room.
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
  std::size_t offsetAt(const QPoint& position) const;

  LogText text_;
  std::size_t anchor_ = 0;
  std::size_t cursor_ = 0;
};
