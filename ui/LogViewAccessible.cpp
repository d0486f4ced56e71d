#include "ui/LogViewAccessible.h"

#include "ui/LogView.h"

#include <algorithm>

#include <QAccessible>
#include <QAccessibleWidget>

namespace {

// More than this is not handed over in one piece; a reader that asks for the whole of a huge log gets its
// beginning.
constexpr std::size_t mostAccessibleBytes = 4U << 20;

class LogViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit LogViewAccessible(LogView* view)
      : QAccessibleWidget(view, QAccessible::EditableText), view_(view) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
  }

  // Offsets are characters of this text.
  QString whole() const {
    const std::string& text = view_->text();
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(text.size(), mostAccessibleBytes)));
  }

  void selection(int index, int* from, int* to) const override {
    const bool selected = index == 0 && view_->hasSelection();
    *from = selected ? charactersBefore(view_->selectionBegin()) : 0;
    *to = selected ? charactersBefore(view_->selectionEnd()) : 0;
  }
  int selectionCount() const override { return view_->hasSelection() ? 1 : 0; }
  void addSelection(int from, int to) override { view_->select(bytesBefore(from), bytesBefore(to)); }
  void removeSelection(int) override { view_->select(0, 0); }
  void setSelection(int, int from, int to) override { addSelection(from, to); }
  int cursorPosition() const override { return charactersBefore(view_->selectionEnd()); }
  void setCursorPosition(int position) override {
    view_->select(bytesBefore(position), bytesBefore(position));
  }
  QString text(int from, int to) const override { return whole().mid(from, to - from); }
  int characterCount() const override { return static_cast<int>(whole().size()); }
  QRect characterRect(int) const override { return {}; }
  int offsetAtPoint(const QPoint&) const override { return -1; }
  void scrollToSubstring(int, int) override {}
  QString attributes(int, int* from, int* to) const override {
    *from = 0;
    *to = characterCount();
    return {};
  }

 private:
  int charactersBefore(std::size_t offset) const {
    return static_cast<int>(QString::fromUtf8(view_->text().data(), static_cast<qsizetype>(offset)).size());
  }
  std::size_t bytesBefore(int position) const {
    return static_cast<std::size_t>(whole().left(position).toUtf8().size());
  }

  LogView* view_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  auto* const view = qobject_cast<LogView*>(object);
  return view != nullptr ? new LogViewAccessible(view) : nullptr;
}

}  // namespace

void installLogViewAccessibility() {
  static const bool installed = (QAccessible::installFactory(makeInterface), true);
  static_cast<void>(installed);
}
