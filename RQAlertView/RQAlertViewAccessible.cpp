// A dialog as assistive technology sees it.
#include "RQAlertView/RQAlertViewBox.h"

#include <unordered_map>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

namespace {

// To a screen reader a plain widget is only a filler, so the box states its role.
class AccessibleBox : public QAccessibleWidget {
 public:
  explicit AccessibleBox(RQAlertViewBox* box) : QAccessibleWidget(box) {}

  QAccessible::Role role() const override {
    const RQAlertViewModel& dialog = box()->dialog();
    const bool asks =
        dialog.style == RQAlertViewStyle::ActionSheet || dialog.type == RQAlertViewType::TextFields;
    return asks ? QAccessible::Dialog : QAccessible::AlertMessage;
  }

  QString text(QAccessible::Text which) const override {
    const RQAlertViewModel& dialog = box()->dialog();
    if (which == QAccessible::Description) return dialog.message;
    if (which != QAccessible::Name) return QAccessibleWidget::text(which);
    for (const QString& text : {dialog.title, dialog.message, dialog.progressLabelText}) {
      if (!text.isEmpty()) return text;
    }
    return RQAlertViewBox::tr("Dialog");
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.modal = true;
    state.active = box()->isVisible() && box()->isEnabled();
    return state;
  }

 private:
  RQAlertViewBox* box() const { return static_cast<RQAlertViewBox*>(widget()); }
};

class AccessibleRow : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessibleRow(RQAlertViewButtonList* list, int row) : list_(list), row_(row) {}

  bool isValid() const override { return list_ && row_ < list_->rows().size(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(list_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QWindow* window() const override { return parent() ? parent()->window() : nullptr; }

  QAccessible::Role role() const override { return QAccessible::ListItem; }

  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Name && isValid() ? list_->rows().at(row_).title : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}

  QRect rect() const override {
    if (!isValid()) return {};
    const QRect inList = list_->visualRect(index());
    return {list_->viewport()->mapToGlobal(inList.topLeft()), inList.size()};
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    state.disabled = !(list_->isEnabled() && (list_->model()->flags(index()) & Qt::ItemIsEnabled));
    state.invisible = !list_->isVisible();
    state.offscreen = !list_->viewport()->rect().intersects(list_->visualRect(index()));
    state.focusable = true;
    state.focused = list_->hasFocus() && list_->currentIndex().row() == row_;
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

  QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
  void doAction(const QString& action) override {
    if (!isValid() || state().disabled) return;
    if (action == setFocusAction()) {
      list_->setFocus(Qt::OtherFocusReason);
      list_->setCurrentIndex(index());
    } else if (action == pressAction()) {
      list_->tap(row_);
    }
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QModelIndex index() const { return list_->model()->index(row_, 0); }

  QPointer<RQAlertViewButtonList> list_;
  int row_;
};

class AccessibleList : public QAccessibleWidget {
 public:
  explicit AccessibleList(RQAlertViewButtonList* list) : QAccessibleWidget(list, QAccessible::List) {}
  ~AccessibleList() override {
    for (const auto& [row, id] : rows_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return list()->model()->rowCount(); }

  // Made when it is asked for: a list may have any number of rows.
  QAccessibleInterface* child(int row) const override {
    if (row < 0 || row >= childCount()) return nullptr;
    const auto known = rows_.find(row);
    if (known != rows_.end()) return QAccessible::accessibleInterface(known->second);
    auto* made = new AccessibleRow(list(), row);
    rows_[row] = QAccessible::registerAccessibleInterface(made);
    return made;
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    for (const auto& [row, id] : rows_) {
      if (QAccessible::accessibleInterface(id) == child) return row;
    }
    return -1;
  }

  QAccessibleInterface* childAt(int x, int y) const override {
    const QPoint inViewport = list()->viewport()->mapFromGlobal(QPoint(x, y));
    return list()->viewport()->rect().contains(inViewport) ? child(list()->indexAt(inViewport).row())
                                                           : nullptr;
  }

  QAccessibleInterface* focusChild() const override {
    return list()->hasFocus() ? child(list()->currentIndex().row()) : nullptr;
  }

  QString text(QAccessible::Text which) const override {
    const QString own = QAccessibleWidget::text(which);
    return own.isEmpty() && which == QAccessible::Name ? RQAlertViewBox::tr("Choices") : own;
  }

 private:
  RQAlertViewButtonList* list() const { return static_cast<RQAlertViewButtonList*>(widget()); }

  mutable std::unordered_map<int, QAccessible::Id> rows_;
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  if (className == QLatin1String("RQAlertViewBox")) {
    return new AccessibleBox(static_cast<RQAlertViewBox*>(object));
  }
  if (className == QLatin1String("RQAlertViewButtonList")) {
    return new AccessibleList(static_cast<RQAlertViewButtonList*>(object));
  }
  return nullptr;
}

}  // namespace

void installRQAlertViewAccessibility() {
  QAccessible::installFactory(makeInterface);
}
