#include "RQAlertView/RQAlertViewText.h"

#include "core/Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>

namespace {

constexpr QChar leftToRightIsolate(0x2066);
constexpr QChar popIsolate(0x2069);
constexpr QChar ellipsis(0x2026);
constexpr QChar takesNoRoom(0x200b);
constexpr QChar wordJoiner(0x2060);

constexpr qsizetype longestWord = 1000;

enum class Strength { Neutral, LeftToRight, RightToLeft };

Strength strengthOf(QChar character) {
  const QChar::Direction direction = character.direction();
  if (direction == QChar::DirL) return Strength::LeftToRight;
  return direction == QChar::DirR || direction == QChar::DirAL ? Strength::RightToLeft : Strength::Neutral;
}

// A word takes the direction of its letters; the usual rules apply to one that mixes them.
Strength strengthOf(QStringView word) {
  Strength found = Strength::Neutral;
  for (const QChar character : word) {
    if (const Strength strength = strengthOf(character); strength != Strength::Neutral) found = strength;
    if (found == Strength::RightToLeft) break;
  }
  return found;
}

QChar visible(QChar character) {
  const char16_t code = character.unicode();
  if (code == u'\n') return code;
  if (code == u'\t') return u' ';
  if (code == QChar::LineSeparator || code == QChar::ParagraphSeparator) return u'\n';
  // It begins a colour on a terminal.
  if (code == 0x1b) return takesNoRoom;
  return visibleForm(code);
}

// Wraps each run of left-to-right words of a right-to-left line.
QString isolated(QStringView line) {
  QString result;
  qsizetype written = 0;
  qsizetype runStart = -1;
  qsizetype runEnd = 0;
  const auto closeRun = [&] {
    if (runStart < 0) return;
    result += line.mid(written, runStart - written);
    result += leftToRightIsolate;
    result += line.mid(runStart, runEnd - runStart);
    result += popIsolate;
    written = runEnd;
    runStart = -1;
  };
  qsizetype start = 0;
  while (start < line.size()) {
    qsizetype end = start;
    while (end < line.size() && !line[end].isSpace()) ++end;
    const Strength strength = strengthOf(line.mid(start, end - start));
    if (strength == Strength::LeftToRight) {
      if (runStart < 0) runStart = start;
      runEnd = end;
    } else if (strength == Strength::RightToLeft) {
      closeRun();
    }
    start = end + 1;
  }
  closeRun();
  result += line.mid(written);
  return result;
}

// Keeps a mark that closes a quotation in one line with the word before it, a path as a whole.
void keepClosingMark(QString& line) {
  if (!line.endsWith(QStringLiteral(" \""))) return;
  line[line.size() - 2] = QChar::Nbsp;
  const qsizetype word = line.lastIndexOf(u' ') + 1;
  const QString joined = line.mid(word).replace(u'/', QStringLiteral("/") + wordJoiner);
  line.replace(word, line.size() - word, joined);
}

// Looking for the ends of words takes quadratic time in a stretch without blanks.
bool hasEndlessWord(QStringView text) {
  qsizetype length = 0;
  for (const QChar character : text) {
    length = character.isSpace() ? 0 : length + 1;
    if (length > longestWord) return true;
  }
  return false;
}

// Leaves out the middle of a line that is far too long for its width, before anything is measured: the rest
// still has to be truncated, in the same places.
QString shortened(const QString& line, double width) {
  const auto most = static_cast<qsizetype>(width) + longestWord;
  if (line.size() <= 2 * most) return line;
  return line.left(most) + ellipsis + line.right(most);
}

QTextOption optionFor(const QString& text, const RQAlertViewTextStyle& style, Qt::LayoutDirection direction) {
  QTextOption option;
  option.setTextDirection(direction);
  option.setAlignment(alignmentFor(style.alignment));
  if (style.numberOfLines == 1) {
    option.setWrapMode(QTextOption::NoWrap);
  } else if (style.lineBreakMode == NSLineBreakMode::ByCharWrapping || hasEndlessWord(text)) {
    option.setWrapMode(QTextOption::WrapAnywhere);
  } else {
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  }
  return option;
}

Qt::TextElideMode elideModeFor(NSLineBreakMode mode) {
  if (mode == NSLineBreakMode::ByTruncatingHead) return Qt::ElideLeft;
  if (mode == NSLineBreakMode::ByTruncatingMiddle) return Qt::ElideMiddle;
  return mode == NSLineBreakMode::ByClipping ? Qt::ElideNone : Qt::ElideRight;
}

double sizeOf(const QFont& font) {
  return font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize();
}

void setSize(QFont& font, double size) {
  if (font.pointSizeF() > 0) {
    font.setPointSizeF(size);
  } else {
    font.setPixelSize(std::max(1, static_cast<int>(size)));
  }
}

QFont fitted(const QString& text, const RQAlertViewTextStyle& style, double width) {
  QFont font = style.font;
  if (style.numberOfLines != 1 || !style.adjustsFontSizeToFitWidth) return font;
  const double least = sizeOf(font) * style.minimumScaleFactor;
  double size = sizeOf(font);
  // Letters do not shrink in proportion, so one step may not be enough.
  for (double taken = QFontMetricsF(font).horizontalAdvance(text); taken > width && size > least;
       taken = QFontMetricsF(font).horizontalAdvance(text)) {
    size = std::max(least, std::min(size * width / taken, size - 0.25));
    setSize(font, size);
  }
  return font;
}

}  // namespace

Qt::Alignment alignmentFor(NSTextAlignment alignment) {
  // In the order of NSTextAlignment.
  constexpr Qt::Alignment alignments[] = {Qt::AlignLeft | Qt::AlignAbsolute, Qt::AlignHCenter,
                                          Qt::AlignRight | Qt::AlignAbsolute, Qt::AlignJustify,
                                          Qt::AlignLeading};
  return alignments[static_cast<std::size_t>(alignment)];
}

Qt::LayoutDirection RQAlertViewText::direction(const QString& text) {
  for (const QChar character : text) {
    const Strength strength = strengthOf(character);
    if (strength != Strength::Neutral) {
      return strength == Strength::RightToLeft ? Qt::RightToLeft : Qt::LeftToRight;
    }
  }
  return QGuiApplication::layoutDirection();
}

QString RQAlertViewText::displayText(const QString& text) {
  QString shown = text;
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (QChar& character : shown) character = visible(character);
  const bool fromRight = direction(shown) == Qt::RightToLeft;
  QStringList lines = shown.split(u'\n');
  for (QString& line : lines) {
    if (fromRight) line = isolated(line);
    keepClosingMark(line);
  }
  return lines.join(u'\n');
}

RQAlertViewTextLayout::RQAlertViewTextLayout(const QString& text, const RQAlertViewTextStyle& style,
                                             double width)
    : direction_(RQAlertViewText::direction(text)), width_(std::max(width, 1.0)) {
  if (text.isEmpty()) return;
  QString shown = RQAlertViewText::displayText(text);
  if (style.numberOfLines == 1) shown = shortened(shown, width_);
  RQAlertViewTextStyle set = style;
  set.font = fitted(shown, style, width_);
  int linesLeft = style.numberOfLines > 0 ? style.numberOfLines : INT_MAX;
  const QStringList paragraphs = shown.split(u'\n');
  for (qsizetype index = 0; index < paragraphs.size(); ++index) {
    // Where there is room for one more line, it has all the rest.
    const bool isLast = linesLeft == 1 && index + 1 < paragraphs.size();
    if (isLast) addLastLine(paragraphs.mid(index).join(u' '), set);
    if (isLast || !addParagraph(paragraphs[index], set, linesLeft)) return;
  }
}

bool RQAlertViewTextLayout::addParagraph(const QString& paragraph, const RQAlertViewTextStyle& style,
                                         int& linesLeft) {
  auto layout = std::make_unique<QTextLayout>(paragraph, style.font);
  layout->setTextOption(optionFor(paragraph, style, direction_));
  layout->setCacheEnabled(true);
  layout->beginLayout();
  double y = 0;
  int restStart = -1;
  for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
    line.setLineWidth(width_);
    if (linesLeft == 1) {
      restStart = line.textStart();
      break;
    }
    line.setPosition({0, y});
    y += line.height();
    --linesLeft;
  }
  layout->endLayout();
  if (restStart < 0) {
    append(std::move(layout));
    return linesLeft > 0;
  }
  // Laid out again without the line that is replaced below.
  int ignored = INT_MAX;
  if (restStart > 0) addParagraph(paragraph.left(restStart), style, ignored);
  addLastLine(paragraph.mid(restStart), style);
  return false;
}

void RQAlertViewTextLayout::addLastLine(const QString& rest, const RQAlertViewTextStyle& style) {
  const QString line = shortened(rest, width_);
  const QFontMetricsF metrics(style.font);
  const QString elided = metrics.elidedText(line, elideModeFor(style.lineBreakMode), width_);
  truncated_ = elided != line;
  RQAlertViewTextStyle single = style;
  single.numberOfLines = 1;
  auto layout = std::make_unique<QTextLayout>(elided, style.font);
  layout->setTextOption(optionFor(elided, single, direction_));
  layout->beginLayout();
  layout->createLine().setLineWidth(width_);
  layout->endLayout();
  append(std::move(layout));
}

void RQAlertViewTextLayout::append(std::unique_ptr<QTextLayout> layout) {
  layout->setPosition({0, height_});
  height_ += layout->boundingRect().height();
  for (int index = 0; index < layout->lineCount(); ++index) {
    naturalWidth_ = std::max(naturalWidth_, layout->lineAt(index).naturalTextWidth());
  }
  paragraphs_.push_back(std::move(layout));
}

void RQAlertViewTextLayout::paint(QPainter& painter, const QPointF& position, const QRectF& exposed) const {
  for (const auto& paragraph : paragraphs_) {
    const double top = position.y() + paragraph->position().y();
    if (top > exposed.bottom()) return;
    if (top + paragraph->boundingRect().height() < exposed.top()) continue;
    paragraph->draw(&painter, position, {}, exposed);
  }
}

RQAlertViewLabel::RQAlertViewLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void RQAlertViewLabel::setStyle(const RQAlertViewTextStyle& style, const QColor& color) {
  if (!(style == style_)) layout_.reset();
  style_ = style;
  color_ = color;
  update();
}

int RQAlertViewLabel::heightForWidth(int width) const {
  return static_cast<int>(std::ceil(layoutFor(width).height()));
}

void RQAlertViewLabel::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setPen(color_);
  layoutFor(width()).paint(painter, {0, 0}, event->rect());
}

void RQAlertViewLabel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LayoutDirectionChange) layout_.reset();
  QLabel::changeEvent(event);
}

const RQAlertViewTextLayout& RQAlertViewLabel::layoutFor(int width) const {
  if (!layout_ || laidOutWidth_ != width || laidOutText_ != text()) {
    layout_.emplace(text(), style_, width);
    laidOutText_ = text();
    laidOutWidth_ = width;
  }
  return *layout_;
}
