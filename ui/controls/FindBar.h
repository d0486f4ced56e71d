// The bar below a text in which a word is typed that is to be found there.
#pragma once

#include "ui/controls/TextSearch.h"

#include <QWidget>

class CodeView;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;
class TextView;
class UIButton;

// Hidden until Ctrl+F, or over a text that is edited until Ctrl+H, which has a second line for replacing.
// What is typed is found at once; Return goes on to the next place, Shift+Return to the one before, as do F3
// and Shift+F3; Esc closes the bar and leaves the place selected.
class FindBar : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent = nullptr);

  // `text` has the focus back when the bar closes. The keys work all over the screen of `text`.
  void setText(TextView* text);

  void open();
  // False when it was not open.
  bool dismiss();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  // Adds a field, with room for more beside it.
  QHBoxLayout* addLine(QLineEdit*& field, const QString& name, const QString& placeholder);
  void replace();
  void find(SearchDirection direction, bool mayStay);

  QVBoxLayout* lines_;
  QLineEdit* word_ = nullptr;
  QLabel* result_;
  UIButton* previous_ = nullptr;
  UIButton* next_ = nullptr;
  TextView* text_ = nullptr;
  CodeView* code_ = nullptr;  // the same where it is edited
  QLineEdit* replacement_ = nullptr;
};
