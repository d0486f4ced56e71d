// The text of a file that is edited: with line numbers, colours, marks of what a build said, and help with
// indentation.
#pragma once

#include "build/BuildProblem.h"
#include "ui/controls/CodeColours.h"
#include "ui/controls/TextView.h"

#include <string>
#include <vector>

#include <QStringList>

// Tab and Shift+Tab shift the lines of a selection; without one Tab types what the file indents with, a tab
// or blanks. A new line begins as deep as the one above it, one deeper behind an opening brace.
class CodeView : public TextView {
  Q_OBJECT

 public:
  explicit CodeView(QWidget* parent = nullptr);

  // As setBytes(), in the colours of the language that the file `name` is in. A text over 4 MiB has none. The
  // problems are to be set anew.
  void setFile(std::string_view bytes, const std::string& name);

  // Marks their lines beside the line numbers and, where there is a column, the word there. The marks move
  // with the text, and are where they were when all changes are undone.
  void setProblems(const std::vector<Problem>& problems);
  // Where a problem of these is by now, by its index: from 1, 0 where the text has no such line.
  long lineOfProblem(std::size_t index) const;
  // The messages of the line that the caret is in.
  QStringList messagesAtCaret() const;
  // Goes to the next line that is marked, once round the text. False when there is none.
  bool goToProblem(SearchDirection direction);

  // Replaces the selection where it is `word`, as find() compares them, and goes on to the next place of it
  // in any case. False when there is none.
  bool replaceNext(const QString& word, const QString& replacement);
  // In the whole text, as one step to undo. Returns how many places there were.
  int replaceAll(const QString& word, const QString& replacement);

 signals:
  // The caret is in another line, or the problems are others.
  void caretLineChanged();

 protected:
  void applyLooks() override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void styleTo(long end);
  void detectIndentation(std::string_view text);
  void indentNewLine();
  void alignClosingBrace();
  void matchBrackets();
  void widenMargin();

  CodeLanguage language_ = CodeLanguage::Plain;
  std::vector<Problem> problems_;
  std::vector<long> handles_;  // of their markers, which move with the text; -1 for none
  long caretLine_ = 0;
};
