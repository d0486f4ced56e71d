// The bar below a text in which a word is typed that is to be found there.
#pragma once

#include "ui/TextSearch.h"

#include <functional>

#include <QWidget>

class QLabel;
class QLineEdit;
class UIButton;

// Hidden until Ctrl+F. What is typed is found at once; Return goes on to the next place, Shift+Return to the
// one before, as do F3 and Shift+F3; Esc closes the bar and leaves the place selected.
class FindBar : public QWidget {
  Q_OBJECT

 public:
  // Selects a place of the word in the text, once round it; `mayStay`: the one that is selected will do.
  // False where there is none.
  using Find = std::function<bool(const QString& word, SearchDirection direction, bool mayStay)>;

  explicit FindBar(QWidget* parent = nullptr);

  // `text` has the focus back when the bar closes. The keys work all over the screen that `text` lies in.
  void setText(QWidget* text, Find find);

  void open();
  // False when it was not open.
  bool dismiss();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void find(SearchDirection direction, bool mayStay);

  QLineEdit* word_;
  QLabel* result_;
  UIButton* previous_ = nullptr;
  UIButton* next_ = nullptr;
  QWidget* text_ = nullptr;
  Find find_;
};
