// What is drawn for a text from outside.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"
#include "platform/ApplicationStyle.h"

namespace {

class AnyText : public Dialogs {};

struct Shown {
  const char* what;
  const char16_t* text;
  const char16_t* shown;
};

TEST(DisplayText, ShowsTheTextAsItIsAndTrickeryAsWhatItIs) {
  const std::vector<Shown> rows{
      {"plain", u"Tweak.x & <b>", u"Tweak.x & <b>"},
      {"a path in Arabic is isolated", u"الملف في /var/mobile", u"الملف في \u2066/var/mobile\u2069"},
      {"words in a row are isolated together", u"انقر Open Project الآن",
       u"انقر \u2066Open Project\u2069 الآن"},
      {"apart where Arabic stands between", u"ملف A ثم B", u"ملف \u2066A\u2069 ثم \u2066B\u2069"},
      {"numbers go with the words around them", u"ملف iOS 14 بعد", u"ملف \u2066iOS\u2069 14 بعد"},
      {"each line for itself", u"سطر\nfoo.x", u"سطر\n\u2066foo.x\u2069"},
      {"Latin text is left alone", u"file ملف.x", u"file ملف.x"},
      {"direction marks are made visible", u"a\u202Etxt.exe\u200F\u2067.\u2069",
       u"a\uFFFDtxt.exe\uFFFD\uFFFD.\uFFFD"},
      {"control characters too", u"a\x07[31mb\x7f", u"a\u2407[31mb\u2421"},
      {"what begins a colour takes no room", u"\x1b  0 - Name", u"\u200B  0 - Name"},
      {"a closing mark keeps to its word", u"say \" a/b \"", u"say \" a/\u2060b\u00A0\""},
      {"line ends are one line end", u"a\r\nb\u2028c", u"a\nb\nc"},
      {"tabs are blanks", u"a\tb", u"a b"},
  };
  for (const Shown& row : rows) {
    EXPECT_EQ(RQAlertViewText::displayText(QString::fromUtf16(row.text)).toStdString(),
              QString::fromUtf16(row.shown).toStdString())
        << row.what;
  }
}

TEST(DisplayText, HasTheDirectionOfItsFirstLetter) {
  UIApplication::setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(RQAlertViewText::direction(".hidden"), Qt::LeftToRight);
  EXPECT_EQ(RQAlertViewText::direction("..."), Qt::RightToLeft);
  UIApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(RQAlertViewText::direction(QString::fromUtf8("12 ملف")), Qt::RightToLeft);
  EXPECT_EQ(RQAlertViewText::direction("..."), Qt::LeftToRight);
}

TEST(SetText, SaysWhetherItIsCutOff) {
  const QString text = "one two three four five six seven eight nine ten\nand more";
  RQAlertViewTextStyle style{.font = systemFontOfSize(14), .numberOfLines = 1};
  const double natural = RQAlertViewTextLayout::singleLineWidth(text, style.font);
  const auto isCutOff = [&](double part) {
    return RQAlertViewTextLayout(text, style, natural * part).isTruncated();
  };
  EXPECT_TRUE(isCutOff(0.6));
  style.adjustsFontSizeToFitWidth = true;
  style.minimumScaleFactor = 0.5;
  EXPECT_FALSE(isCutOff(0.6));
  EXPECT_TRUE(isCutOff(0.3));
  style.numberOfLines = 2;
  EXPECT_TRUE(isCutOff(0.3));
  style.numberOfLines = 9;
  EXPECT_FALSE(isCutOff(0.3));
  // A path without a blank is broken rather than cut.
  EXPECT_LE(RQAlertViewTextLayout(QString(80, u'/'), {.font = style.font}, 100).naturalWidth(), 100);
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
