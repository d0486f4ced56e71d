#include "ui/dialogs/AddressNotice.h"

#include "RQAlertView/RQAlertView.h"
#include "ui/Localized.h"
#include "ui/controls/Metrics.h"
#include "ui/dialogs/DialogLooks.h"

#include <QPlainTextEdit>

namespace {

class AddressText : public QPlainTextEdit {
 public:
  explicit AddressText(const QString& address) : QPlainTextEdit(address) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // An address has no blanks to break at, and reads from the left in every language.
    setWordWrapMode(QTextOption::WrapAnywhere);
    setLayoutDirection(Qt::LeftToRight);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(QStringLiteral("Address"));
    selectAll();
  }

  QSize sizeHint() const override {
    const int lines = metrics::addressLines * fontMetrics().lineSpacing();
    return {QPlainTextEdit::sizeHint().width(), lines + 2 * qRound(document()->documentMargin())};
  }
};

}  // namespace

void showAddress(const QString& address) {
  const auto notice = RQAlertView::alertViewWithViewAndTitle(
      localized(text::error), QString(), RQAlertViewStyle::Alert, new AddressText(address),
      QStringList{localized(text::ok)}, QString(), QString());
  dressAsMessage(*notice);
  notice->showAnimated();
}
