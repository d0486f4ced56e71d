// What is drawn for a text from outside.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"
#include "platform/UIFont.h"

namespace {

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
      {"overrides are made visible", u"a\u202Etxt.exe", u"a\uFFFDtxt.exe"},
      {"control characters too", u"a\x1b[31mb\x7f", u"a\u241B[31mb\u2421"},
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
  EXPECT_EQ(RQAlertViewText::direction(QStringLiteral(".hidden")), Qt::LeftToRight);
  EXPECT_EQ(RQAlertViewText::direction(QStringLiteral("...")), Qt::RightToLeft);
  UIApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(RQAlertViewText::direction(QString::fromUtf8("12 ملف")), Qt::RightToLeft);
  EXPECT_EQ(RQAlertViewText::direction(QStringLiteral("...")), Qt::LeftToRight);
}

TEST(SetText, IsMadeSmallerThenTruncatedOnOneLine) {
  const QString text = QStringLiteral("A title that is rather long for its button");
  RQAlertViewTextStyle style{.font = systemFontOfSize(18),
                             .numberOfLines = 1,
                             .lineBreakMode = NSLineBreakMode::ByTruncatingMiddle,
                             .adjustsFontSizeToFitWidth = true,
                             .minimumScaleFactor = 0.5};
  const double natural = RQAlertViewTextLayout::singleLineWidth(text, style.font);
  const RQAlertViewTextLayout whole(text, style, natural + 1);
  const RQAlertViewTextLayout smaller(text, style, natural * 0.7);
  EXPECT_FALSE(smaller.isTruncated());
  EXPECT_LE(smaller.naturalWidth(), natural * 0.7);
  EXPECT_LT(smaller.height(), whole.height());
  const RQAlertViewTextLayout cut(text, style, natural * 0.3);
  EXPECT_TRUE(cut.isTruncated());
  EXPECT_LE(cut.naturalWidth(), natural * 0.3);
}

TEST(SetText, TakesAsManyLinesAsItMayAndSaysSoOnTheLast) {
  const QString text = QStringLiteral("one two three four five six seven eight nine ten\nand more");
  RQAlertViewTextStyle style{.font = systemFontOfSize(14)};
  const double line = RQAlertViewTextLayout(QStringLiteral("one"), style, 100).height();
  const auto linesOf = [&](int most, NSLineBreakMode mode) {
    style.numberOfLines = most;
    style.lineBreakMode = mode;
    return qRound(RQAlertViewTextLayout(text, style, 100).height() / line);
  };
  const int all = linesOf(0, NSLineBreakMode::ByWordWrapping);
  EXPECT_GT(all, 3);
  EXPECT_EQ(linesOf(2, NSLineBreakMode::ByTruncatingTail), 2);
  EXPECT_TRUE(RQAlertViewTextLayout(text, style, 100).isTruncated());
  EXPECT_EQ(linesOf(all, NSLineBreakMode::ByWordWrapping), all);
  EXPECT_FALSE(RQAlertViewTextLayout(text, style, 100).isTruncated());
  // A path without a blank is broken rather than cut.
  EXPECT_LE(RQAlertViewTextLayout(QString(80, u'/'), {.font = systemFontOfSize(14)}, 100).naturalWidth(),
            100);
}

}  // namespace
