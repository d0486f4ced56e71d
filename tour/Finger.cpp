#include "tour/Finger.h"

#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIWindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace finger {

int patience = 180'000;

namespace {

// What controls are called in the language of the moment: callers say it in English.
QStringList inEachLanguage(const QString& name) {
  return {name, QCoreApplication::translate("", name.toUtf8().constData())};
}

bool isCalled(const QWidget& widget, const QStringList& names) {
  if (names.contains(widget.accessibleName())) return true;
  if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget))
    return names.contains(button->text());
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) return names.contains(label->text());
  return false;
}

template <typename Widget>
Widget* visible(const std::function<bool(const Widget&)>& fits) {
  UIWindow* const window = UIApplication::sharedApplication()->keyWindow();
  if (window == nullptr) return nullptr;
  for (Widget* const widget : window->findChildren<Widget*>()) {
    if (widget->isVisible() && fits(*widget)) return widget;
  }
  return nullptr;
}

template <typename Widget>
Widget* awaited(const std::function<bool(const Widget&)>& fits, const QString& what) {
  Widget* found = nullptr;
  waitUntil(
      [&] {
        found = visible<Widget>(fits);
        return found != nullptr;
      },
      what);
  return found;
}

QAbstractButton* enabledButton(const QString& name) {
  return visible<QAbstractButton>([names = inEachLanguage(name)](const QAbstractButton& button) {
    return button.isEnabled() && isCalled(button, names);
  });
}

struct Row {
  QAbstractItemView* view = nullptr;
  QModelIndex index;
};

Row enabledRow(const QString& name) {
  const QStringList names = inEachLanguage(name);
  Row row;
  visible<QAbstractItemView>([&](const QAbstractItemView& view) {
    if (!view.isEnabled()) return false;
    for (int number = 0; number < view.model()->rowCount(); ++number) {
      const QModelIndex index = view.model()->index(number, 0);
      if (!names.contains(index.data().toString())) continue;
      row = {const_cast<QAbstractItemView*>(&view), index};
      return true;
    }
    return false;
  });
  return row;
}

}  // namespace

void waitUntil(const std::function<bool()>& condition, const QString& what) {
  if (!QTest::qWaitFor(condition, patience)) throw Missing(what.toStdString());
}

void tap(const QString& name) {
  waitUntil([&name] { return enabledButton(name) != nullptr || enabledRow(name).view != nullptr; },
            QStringLiteral("nothing to tap is called ") + name);
  // A real click hides focus rings; QTest sends this one to the widget directly, so the screen does not see
  // it.
  showFocusRings(*UIScreen::mainScreen(), false);
  if (QAbstractButton* const button = enabledButton(name)) {
    QTest::mouseClick(button, Qt::LeftButton);
    return;
  }
  const Row row = enabledRow(name);
  row.view->scrollTo(row.index);
  QTest::mouseClick(row.view->viewport(), Qt::LeftButton, {}, row.view->visualRect(row.index).center());
}

bool sees(const QString& name) {
  return visible<QWidget>([names = inEachLanguage(name)](const QWidget& widget) {
           return isCalled(widget, names);
         }) != nullptr ||
         enabledRow(name).view != nullptr;
}

void waitToSee(const QString& name) {
  waitUntil([&name] { return sees(name); }, QStringLiteral("not to be seen: ") + name);
}

void type(const QString& text) {
  auto* const field = awaited<QLineEdit>([](const QLineEdit& candidate) { return candidate.isEnabled(); },
                                         QStringLiteral("no text field to type into"));
  QTest::mouseClick(field, Qt::LeftButton);
  QTest::keyClicks(field, text);
}

QWidget* find(const QString& accessibleName) {
  return awaited<QWidget>([names = inEachLanguage(accessibleName)](
                              const QWidget& widget) { return names.contains(widget.accessibleName()); },
                          QStringLiteral("not to be found: ") + accessibleName);
}

}  // namespace finger
