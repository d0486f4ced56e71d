// What is drawn for a text from outside.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"
#include "support/Cases.h"

namespace {

class AnyText : public Dialogs {};

TEST(DisplayText, ShowsTheTextAsItIsAndTrickeryAsWhatItIs) {
  expectCases("shown", [](const Case& row) {
    return RQAlertViewText::displayText(QString::fromStdString(row[1])).toStdString();
  });
}

TEST(DisplayText, HasTheDirectionOfItsFirstLetter) {
  UIApplication::setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(RQAlertViewText::direction(".hidden"), Qt::LeftToRight);
  EXPECT_EQ(RQAlertViewText::direction("..."), Qt::RightToLeft);
  UIApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(RQAlertViewText::direction(QString::fromUtf8("12 ملف")), Qt::RightToLeft);
  EXPECT_EQ(RQAlertViewText::direction("..."), Qt::LeftToRight);
}

TEST_F(AnyText, IsTakenForATextAndNothingElse) {
  const QString texts[] = {
      QString(),
      "",
      "<b>bold</b> <img src=\"/nowhere\"> &amp; A && B",
      QString(QChar(0)) + "\x1b[31m\n\n\n\t",
      QString(QChar(0xD800)) + QChar(0xDC00) + QChar(0xDFFF),
      QString::fromUtf8("\u202e\u2066 \u0645\u0644\u0641 / a.b / \U0001F642"),
      QString(100 * 1024, u'x'),
      QString::fromUtf8("\u0631\u0633\u0627\u0644\u0629 ").repeated(20 * 1024),
  };
  for (const auto style : {RQAlertViewStyle::Alert, RQAlertViewStyle::ActionSheet}) {
    for (const QString& text : texts) {
      SCOPED_TRACE(text.left(20).toStdString());
      const QStringList buttons = text.isNull() ? QStringList{} : QStringList{text, text};
      const Dialog dialog = showing(RQAlertView::alertViewWithTitle(text, text, style, buttons, text, text));
      QStringList answers;
      dialog->setDismissOnAction(false);
      dialog->setActionHandler([&](RQAlertView&, std::size_t, const QString& title) { answers << title; });
      // Whichever of the four is found first.
      for (const auto& set : {&RQAlertView::setCancelHandler, &RQAlertView::setDestructiveHandler})
        ((*dialog).*set)([&](RQAlertView&) { answers << text; });
      dialog->view()->grab();
      EXPECT_TRUE(dialog->view()->rect().contains(frameOf(dialog)->geometry()));
      for (const auto* label : dialog->view()->findChildren<RQAlertViewLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(label->isHidden(), label->text().isEmpty());
      }
      if (buttons.isEmpty()) {
        EXPECT_FALSE(partOf<RQAlertViewButton>(dialog) || listOf(dialog));
      } else {
        tap(dialog, text);
        dialog->forceActionAtIndex(1);
        EXPECT_TRUE(answers == (QStringList{text, text}));
      }
      close(dialog);
    }
  }
}

}  // namespace
