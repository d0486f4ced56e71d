// A TextView as assistive technology reads and edits it. The library's own interface knows the place of no
// character nor of the caret, and reports nothing.
#include "core/Text.h"
#include "ui/controls/TextView.h"

#include <algorithm>

#include <QAccessible>
#include <QAccessibleWidget>

namespace {

// More than this is not handed over in one piece; of a huge text there is only the beginning.
constexpr long mostAccessibleBytes = 4L << 20;

// Offsets are UTF-16 units of the text, positions bytes in it.
class TextViewAccessible : public QAccessibleWidget,
                           public QAccessibleTextInterface,
                           public QAccessibleEditableTextInterface {
 public:
  explicit TextViewAccessible(TextView* view)
      : QAccessibleWidget(view, QAccessible::EditableText), view_(view) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface && !view_->isReadOnly())
      return static_cast<QAccessibleEditableTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = view_->isReadOnly();
    state.editable = !view_->isReadOnly();
    state.multiLine = true;
    state.selectableText = true;
    return state;
  }

  void selection(int index, int* from, int* to) const override {
    const bool selected = index == 0 && view_->hasSelectedText();
    *from = selected ? offsetOf(view_->send(view_->SCI_GETSELECTIONSTART)) : 0;
    *to = selected ? offsetOf(view_->send(view_->SCI_GETSELECTIONEND)) : 0;
  }
  int selectionCount() const override { return view_->hasSelectedText() ? 1 : 0; }
  void addSelection(int from, int to) override {
    view_->send(view_->SCI_SETSEL, positionOf(from), positionOf(to));
  }
  void removeSelection(int) override { setCursorPosition(cursorPosition()); }
  void setSelection(int, int from, int to) override { addSelection(from, to); }
  int cursorPosition() const override { return offsetOf(view_->send(view_->SCI_GETCURRENTPOS)); }
  void setCursorPosition(int offset) override { addSelection(offset, offset); }

  using QAccessibleWidget::text;
  QString text(int from, int to) const override {
    QByteArray bytes(positionOf(to) - positionOf(from), '\0');
    if (!bytes.isEmpty())
      view_->SendScintilla(view_->SCI_GETTEXTRANGE, positionOf(from), positionOf(to), bytes.data());
    return QString::fromUtf8(bytes);
  }
  int characterCount() const override { return offsetOf(end()); }

  QRect characterRect(int offset) const override {
    const long at = positionOf(offset);
    const QRect here = placeOf(at);
    const QRect next = placeOf(positionOf(offset + 1));
    const int width = next.top() == here.top() ? next.left() - here.left() : 0;
    return QRect(here.topLeft(), QSize(std::max(width, 1), here.height()))
        .translated(view_->viewport()->mapToGlobal(QPoint()));
  }
  int offsetAtPoint(const QPoint& point) const override {
    const QPoint place = view_->viewport()->mapFromGlobal(point);
    if (!view_->viewport()->rect().contains(place)) return -1;
    return offsetOf(view_->send(view_->SCI_CHARPOSITIONFROMPOINT, place.x(), place.y()));
  }
  void scrollToSubstring(int from, int to) override {
    view_->send(view_->SCI_SCROLLRANGE, positionOf(to), positionOf(from));
  }
  QString attributes(int, int* from, int* to) const override {
    *from = 0;
    *to = characterCount();
    return {};
  }

  void deleteText(int from, int to) override { replaceText(from, to, QString()); }
  void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
  void replaceText(int from, int to, const QString& text) override {
    const QByteArray bytes = text.toUtf8();
    view_->send(view_->SCI_SETTARGETRANGE, positionOf(from), positionOf(to));
    view_->SendScintilla(view_->SCI_REPLACETARGET, static_cast<uintptr_t>(bytes.size()), bytes.constData());
  }

 private:
  long end() const {
    const long length = view_->send(view_->SCI_GETLENGTH);
    if (length <= mostAccessibleBytes) return length;
    long at = mostAccessibleBytes;
    while (!startsCharacter(static_cast<char>(view_->send(view_->SCI_GETCHARAT, at)))) --at;
    return at;
  }
  int offsetOf(long position) const {
    return static_cast<int>(view_->send(view_->SCI_COUNTCODEUNITS, 0, std::min(position, end())));
  }
  long positionOf(int offset) const {
    if (offset <= 0) return 0;
    const long position = view_->send(view_->SCI_POSITIONRELATIVECODEUNITS, 0, offset);
    // Nothing is behind the end.
    return position == 0 ? end() : std::min(position, end());
  }
  QRect placeOf(long position) const {
    return {static_cast<int>(view_->send(view_->SCI_POINTXFROMPOSITION, 0, position)),
            static_cast<int>(view_->send(view_->SCI_POINTYFROMPOSITION, 0, position)), 1,
            static_cast<int>(view_->send(view_->SCI_TEXTHEIGHT, 0))};
  }

  TextView* view_;
};

}  // namespace

void TextView::reportToAssistiveTechnology() {
  static const bool installed = (QAccessible::installFactory([](const QString& name, QObject* object) {
                                   QAccessibleInterface* made = nullptr;
                                   if (name == QLatin1String(staticMetaObject.className()))
                                     made = new TextViewAccessible(static_cast<TextView*>(object));
                                   return made;
                                 }),
                                 true);
  static_cast<void>(installed);
  const auto textInterface = [this]() -> QAccessibleTextInterface* {
    if (!QAccessible::isActive()) return nullptr;
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(this);
    return interface == nullptr ? nullptr : interface->textInterface();
  };
  connect(this, &QsciScintilla::SCN_MODIFIED, this,
          [this, textInterface](int position, int type, const char* text, int length) {
            if ((type & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)) == 0 || !textInterface()) return;
            const int offset = static_cast<int>(send(SCI_COUNTCODEUNITS, 0, position));
            const QString changed = QString::fromUtf8(text, length);
            QAccessibleTextInsertEvent inserted(this, offset, changed);
            QAccessibleTextRemoveEvent removed(this, offset, changed);
            const bool more = (type & SC_MOD_INSERTTEXT) != 0;
            QAccessible::updateAccessibility(more ? static_cast<QAccessibleEvent*>(&inserted) : &removed);
          });
  connect(this, &QsciScintilla::SCN_UPDATEUI, this, [this, textInterface](int updated) {
    const QAccessibleTextInterface* const text =
        (updated & SC_UPDATE_SELECTION) != 0 ? textInterface() : nullptr;
    if (text == nullptr) return;
    QAccessibleTextCursorEvent moved(this, text->cursorPosition());
    QAccessible::updateAccessibility(&moved);
    int from = 0;
    int to = 0;
    text->selection(0, &from, &to);
    QAccessibleTextSelectionEvent selected(this, from, to);
    selected.setCursorPosition(text->cursorPosition());
    QAccessible::updateAccessibility(&selected);
  });
}
