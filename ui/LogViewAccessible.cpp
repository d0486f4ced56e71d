#include "ui/LogViewAccessible.h"

#include "core/Text.h"
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
  const QString& whole() const {
    if (revision_ != view_->revision()) {
      revision_ = view_->revision();
      whole_ = QString::fromUtf8(view_->text().data(), static_cast<qsizetype>(accessibleBytes()));
    }
    return whole_;
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
  using QAccessibleWidget::text;
  QString text(int from, int to) const override { return whole().mid(from, to - from); }
  int characterCount() const override { return static_cast<int>(whole().size()); }
  QRect characterRect(int position) const override {
    const QRect place = view_->characterRect(bytesBefore(position));
    return place.isNull() ? QRect() : place.translated(view_->viewport()->mapToGlobal(QPoint()));
  }
  int offsetAtPoint(const QPoint& point) const override {
    const QPoint place = view_->viewport()->mapFromGlobal(point);
    return view_->viewport()->rect().contains(place) ? charactersBefore(view_->offsetAt(place)) : -1;
  }
  void scrollToSubstring(int from, int) override { view_->scrollTo(bytesBefore(from)); }
  QString attributes(int, int* from, int* to) const override {
    *from = 0;
    *to = characterCount();
    return {};
  }

 private:
  std::size_t accessibleBytes() const {
    const std::string& text = view_->text();
    if (text.size() <= mostAccessibleBytes) return text.size();
    std::size_t bytes = mostAccessibleBytes;
    while (bytes > 0 && !startsCharacter(text[bytes])) --bytes;
    return bytes;
  }
  int charactersBefore(std::size_t offset) const {
    const std::size_t bytes = std::min(offset, accessibleBytes());
    return static_cast<int>(QString::fromUtf8(view_->text().data(), static_cast<qsizetype>(bytes)).size());
  }
  std::size_t bytesBefore(int position) const {
    return static_cast<std::size_t>(whole().left(position).toUtf8().size());
  }

  LogView* view_;
  mutable QString whole_;
  mutable int revision_ = 0;
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
