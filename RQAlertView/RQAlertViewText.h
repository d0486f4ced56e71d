// Texts of a dialog: what is drawn for a text from outside, broken into lines.
#pragma once

#include "platform/ApplicationStyle.h"

#include <memory>
#include <optional>
#include <vector>

#include <QFont>
#include <QLabel>
#include <QTextLayout>

class QPainter;

namespace RQAlertViewText {

// The direction of the first letter that has one, else the application's.
Qt::LayoutDirection direction(const QString& text);

// `text` as it is drawn. Control characters and direction marks get their visibleForm(), and in right-to-left
// text every stretch of left-to-right words (a path, a file name) is isolated, so that its slashes and dots
// stay where they belong. Handlers and assistive technology get the text itself.
QString displayText(const QString& text);

}  // namespace RQAlertViewText

// Left and right are absolute, whatever the direction of the text.
Qt::Alignment alignmentFor(NSTextAlignment alignment);

struct RQAlertViewTextStyle {
  QFont font;
  NSTextAlignment alignment = NSTextAlignment::Center;
  int numberOfLines = 0;  // 0: as many as it takes
  NSLineBreakMode lineBreakMode = NSLineBreakMode::ByWordWrapping;
  // A single line that is too wide is made smaller, down to this part of its size, before it is truncated.
  bool adjustsFontSizeToFitWidth = false;
  double minimumScaleFactor = 1;

  friend bool operator==(const RQAlertViewTextStyle&, const RQAlertViewTextStyle&) = default;
};

// A text set into lines of a given width. Plain text, never markup.
class RQAlertViewTextLayout {
 public:
  RQAlertViewTextLayout(const QString& text, const RQAlertViewTextStyle& style, double width);

  double height() const { return height_; }
  // Of the widest line.
  double naturalWidth() const { return naturalWidth_; }
  bool isTruncated() const { return truncated_; }

  // Draws in the painter's pen with the top left corner of the text at `position`; only what `exposed` meets.
  void paint(QPainter& painter, const QPointF& position, const QRectF& exposed) const;

 private:
  // Answers false when the lines are used up.
  bool addParagraph(const QString& paragraph, const RQAlertViewTextStyle& style, int& linesLeft);
  void addLastLine(const QString& rest, const RQAlertViewTextStyle& style);
  void append(std::unique_ptr<QTextLayout> layout);

  std::vector<std::unique_ptr<QTextLayout>> paragraphs_;
  Qt::LayoutDirection direction_;
  double width_;
  double height_ = 0;
  double naturalWidth_ = 0;
  bool truncated_ = false;
};

// A label to assistive technology; the setting of lines is its own, since only the visible ones may cost.
class RQAlertViewLabel : public QLabel {
  Q_OBJECT

 public:
  explicit RQAlertViewLabel(QWidget* parent);

  void setStyle(const RQAlertViewTextStyle& style, const QColor& color);

  int heightForWidth(int width) const override;
  bool hasHeightForWidth() const override { return true; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  const RQAlertViewTextLayout& layoutFor(int width) const;

  RQAlertViewTextStyle style_;
  QColor color_;
  mutable std::optional<RQAlertViewTextLayout> layout_;
  mutable QString laidOutText_;
  mutable int laidOutWidth_ = -1;
};
