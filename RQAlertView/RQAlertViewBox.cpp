#include "RQAlertView/RQAlertViewBox.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewHeader.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewMetrics.h"
#include "platform/EventLoop.h"

#include <algorithm>
#include <cmath>

#include <QKeyEvent>

namespace {

using namespace RQAlertViewMetrics;

constexpr int separatorThickness = 1;  // the room for a hairline

int rounded(double length) {
  return static_cast<int>(std::lround(length));
}

RQAlertViewRow cancelRowOf(const RQAlertView& alertView) {
  return {RQAlertViewButtonKind::Cancel, 0, alertView.cancelButtonTitle()};
}

}  // namespace

RQAlertViewBox::RQAlertViewBox(const RQAlertView& alertView, RQAlertViewContentArea* content, QWidget* parent)
    : QWidget(parent),
      alertView_(alertView),
      card_(new RQAlertViewShadowView(this)),
      cancelCard_(new RQAlertViewShadowView(this)),
      header_(new RQAlertViewHeader(alertView, content, this)),
      border_(new RQAlertViewBorderView(this)),
      cancelBorder_(new RQAlertViewBorderView(this)) {
  // Shown one by one: a picture of the box is taken before the box itself is shown.
  card_->show();
  header_->show();
}

RQAlertViewBox::~RQAlertViewBox() = default;

bool RQAlertViewBox::holdsFocus() const {
  const QWidget* focused = window()->focusWidget();
  return focused && isAncestorOf(focused) && focused->isVisible();
}

void RQAlertViewBox::layOutIn(const QRect& room) {
  const bool heldFocus = holdsFocus();
  const int width = std::min(rounded(alertView_.width()), room.width());
  applyLooks(width);
  const double offset = alertView_.offsetVertical();
  const double most = std::min(alertView_.heightMax(), room.height() - 2 * offset);
  const Heights heights = heightsFor(width, most);

  const int separator = heights.header > 0 && heights.buttons > 0 ? separatorThickness : 0;
  const int cardHeight = heights.headerShown + separator + heights.buttons;
  const int cancelGap = heights.cancel > 0 && cardHeight > 0 ? rounded(alertView_.cancelButtonOffsetY()) : 0;
  const int total = cardHeight + cancelGap + heights.cancel;
  const int x = room.x() + (room.width() - width) / 2;
  const int y = RQAlertViewHelper::comesFromBottom(alertView_)
                    ? room.y() + room.height() - rounded(offset) - total
                    : room.y() + (room.height() - total) / 2;
  const int margin = RQAlertViewShadowView::shadowMargin(card_->look());
  setGeometry(QRect(x, y, width, total).adjusted(-margin, -margin, margin, margin));

  const QRect card(margin, margin, width, cardHeight);
  card_->setVisible(cardHeight > 0);
  card_->setCardGeometry(card);
  applyBackdrop(*card_, card);
  header_->layOutIn(QRect(card.topLeft(), QSize(width, heights.headerShown)));
  placeButtons(QRect(margin, margin + heights.headerShown + separator, width, heights.buttons), card);

  cancelCard_->setVisible(separateCancel_ != nullptr);
  if (separateCancel_) {
    const QRect cancel(margin, margin + cardHeight + cancelGap, width, heights.cancel);
    cancelCard_->setCardGeometry(cancel);
    applyBackdrop(*cancelCard_, cancel);
    separateCancel_->setGeometry(cancel);
    separateCancel_->setCard(cancelCard_->outline().translated(-cancel.topLeft()));
  }
  border_->frame(*card_);
  cancelBorder_->frame(*cancelCard_);
  // The button that had it may have become a row, or the other way round.
  if (heldFocus && !holdsFocus()) initialFocus()->setFocus(Qt::OtherFocusReason);
}

void RQAlertViewBox::setBackdrop(const QPixmap& backdrop) {
  if (backdrop.isNull() && backdrop_.isNull()) return;
  backdrop_ = backdrop;
  for (RQAlertViewShadowView* card : {card_, cancelCard_}) applyBackdrop(*card, card->cardGeometry());
}

void RQAlertViewBox::applyBackdrop(RQAlertViewShadowView& card, const QRect& inFrame) const {
  if (backdrop_.isNull()) {
    card.setBackdrop({});
    return;
  }
  const double ratio = backdrop_.devicePixelRatioF();
  const QRect inParent = inFrame.translated(pos());
  card.setBackdrop(backdrop_.copy(
      QRectF(inParent.x() * ratio, inParent.y() * ratio, inParent.width() * ratio, inParent.height() * ratio)
          .toAlignedRect()));
}

void RQAlertViewBox::applyLooks(int width) {
  const RQAlertView& a = alertView_;
  const RQAlertViewShadowView::Look look{.backgroundColor = a.backgroundColor(),
                                         .cornerRadius = a.layerCornerRadius(),
                                         .borderColor = a.layerBorderColor(),
                                         .borderWidth = a.layerBorderWidth(),
                                         .shadowColor = a.layerShadowColor(),
                                         .shadowRadius = a.layerShadowRadius(),
                                         .shadowOffset = a.layerShadowOffset(),
                                         .separatorsColor = a.separatorsColor()};
  card_->setLook(look);
  cancelCard_->setLook(look);
  header_->applyLooks();
  arrangeButtons(width);
  if (list_) {
    list_->setScrollIndicator(a.showsVerticalScrollIndicator(), a.indicatorStyle());
    list_->setColors(a.separatorsColor(), a.backgroundColor());
  }
  allButtonsChanged();
}

RQAlertViewBox::Arrangement RQAlertViewBox::arrangementFor(const RQAlertViewRows& rows, int width) const {
  if (rows.count() == 0) return Arrangement::None;
  if (alertView_.style() == RQAlertViewStyle::ActionSheet || alertView_.oneRowOneButton() ||
      rows.count() > mostButtonsSideBySide) {
    return Arrangement::List;
  }
  if (rows.count() == 1) return Arrangement::SideBySide;
  const int column = (width - (rows.count() - 1) * separatorThickness) / rows.count();
  for (int row = 0; row < rows.count(); ++row) {
    const RQAlertViewRow each = rows.at(row);
    const double least =
        leastWidthOfRQAlertViewButton(each.title, alertView_.buttonLook(each), buttonPaddingSideBySide);
    if (least > column) return Arrangement::List;
  }
  return Arrangement::SideBySide;
}

void RQAlertViewBox::arrangeButtons(int width) {
  const RQAlertViewRows rows(alertView_);
  const Arrangement arrangement = arrangementFor(rows, width);
  const bool changed = !(rows == rows_) || arrangement != arrangement_;
  rows_ = rows;
  arrangement_ = arrangement;
  rebuildCancel();
  if (changed) rebuildSideBySide(rows);
  if (arrangement != Arrangement::List) {
    if (list_) list_->hide();
    return;
  }
  if (!list_) {
    list_ = new RQAlertViewButtonList(
        [this](const RQAlertViewRow& row) { return alertView_.buttonLook(row); },
        [this](const RQAlertViewRow& row) { return alertView_.isButtonEnabled(row); }, this);
    connect(list_, &RQAlertViewButtonList::rowTapped, this, atEventBoundary([this](int row) {
              const RQAlertViewRow tappedRow = list_->rows().at(row);
              emit tapped(tappedRow.kind, tappedRow.index);
            }));
  }
  list_->show();
  list_->setRows(rows);
  double least = alertView_.buttonsHeight();
  if (const std::shared_ptr<RQAlertViewCell>& measure = alertView_.heightCell()) {
    for (const auto kind :
         {RQAlertViewButtonKind::Action, RQAlertViewButtonKind::Cancel, RQAlertViewButtonKind::Destructive}) {
      const int height = measure->heightOf(QStringLiteral("X"), alertView_.buttonsLook(kind), width, least);
      least = std::max<double>(least, height);
    }
  }
  list_->setRowHeights(alertView_.hasUniformRows() ? RQAlertViewButtonList::RowHeights::Uniform
                                                   : RQAlertViewButtonList::RowHeights::EachItsOwn,
                       std::ceil(least), width);
}

void RQAlertViewBox::rebuildSideBySide(const RQAlertViewRows& rows) {
  // A button may be in the middle of its own click.
  for (RQAlertViewButton* button : sideBySide_) {
    button->hide();
    button->deleteLater();
  }
  sideBySide_.clear();
  sideBySideRows_.clear();
  if (arrangement_ != Arrangement::SideBySide) return;
  for (int row = 0; row < rows.count(); ++row) sideBySideRows_.push_back(rows.at(row));
  // The safe answer comes first in a row, as it comes last in a list.
  std::stable_partition(sideBySideRows_.begin(), sideBySideRows_.end(),
                        [](const RQAlertViewRow& row) { return row.kind == RQAlertViewButtonKind::Cancel; });
  for (const RQAlertViewRow& row : sideBySideRows_) {
    sideBySide_.push_back(makeButton(row, buttonPaddingSideBySide));
  }
}

void RQAlertViewBox::rebuildCancel() {
  const bool separate = RQAlertViewHelper::isCancelButtonSeparate(alertView_);
  if (separate && !separateCancel_) {
    separateCancel_ = makeButton(cancelRowOf(alertView_), buttonPadding);
  } else if (!separate && separateCancel_) {
    separateCancel_->hide();
    separateCancel_->deleteLater();
    separateCancel_ = nullptr;
  }
}

RQAlertViewButton* RQAlertViewBox::makeButton(const RQAlertViewRow& row, int padding) {
  auto* button = new RQAlertViewButton(row.title, padding, this);
  button->show();
  connect(button, &QAbstractButton::clicked, this,
          atEventBoundary([this, kind = row.kind, index = row.index] { emit tapped(kind, index); }));
  return button;
}

RQAlertViewBox::Heights RQAlertViewBox::heightsFor(int width, double roomHeight) const {
  Heights heights;
  heights.header = header_->wholeHeight(width);
  if (separateCancel_) heights.cancel = rounded(buttonHeight(*separateCancel_, width));
  double most = roomHeight;
  if (separateCancel_) most -= heights.cancel + alertView_.cancelButtonOffsetY();
  if (heights.header > 0) most -= separatorThickness;

  double buttons = 0;
  if (arrangement_ == Arrangement::SideBySide) {
    const int columns = static_cast<int>(sideBySide_.size());
    for (const RQAlertViewButton* button : sideBySide_) {
      buttons = std::max(buttons, buttonHeight(*button, width / columns));
    }
  } else if (arrangement_ == Arrangement::List) {
    buttons = list_->heightOfRows();
  }
  // Where both do not fit, each scrolls in its share.
  const double least = std::max(most - buttons, std::min<double>(heights.header, most * headerShare));
  heights.headerShown = rounded(std::clamp(least, 0.0, static_cast<double>(heights.header)));
  heights.buttons = rounded(std::min(buttons, std::max(most - heights.headerShown, 0.0)));
  if (arrangement_ == Arrangement::List && heights.buttons < buttons) {
    // The last row in sight is cut in half: that there are more below shows at a glance.
    const double row = list_->leastRowHeight();
    const double rows = std::floor(heights.buttons / row - 0.5) + 0.5;
    if (rows > 1) heights.buttons = rounded(rows * row);
  }
  if (arrangement_ == Arrangement::SideBySide) {
    // A row of buttons cannot scroll, so all of the shortage is the header's.
    heights.buttons = rounded(buttons);
    heights.headerShown = rounded(std::clamp(most - buttons, 0.0, static_cast<double>(heights.header)));
  }
  return heights;
}

void RQAlertViewBox::placeButtons(const QRect& area, const QRect& card) {
  QList<QRect> separators;
  const bool headed = area.y() > card.y();
  if (headed && !area.isEmpty()) {
    separators << QRect(area.x(), area.y() - separatorThickness, area.width(), separatorThickness);
  }
  if (arrangement_ == Arrangement::List) {
    list_->setGeometry(area);
    list_->setCard(card_->outline().translated(-area.topLeft()));
  }
  const int columns = static_cast<int>(sideBySide_.size());
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  for (int place = 0; place < columns; ++place) {
    RQAlertViewButton* button = sideBySide_[static_cast<std::size_t>(place)];
    const int column = mirrored ? columns - 1 - place : place;
    const int left = area.x() + area.width() * column / columns + (column > 0 ? separatorThickness : 0);
    const int right = area.x() + area.width() * (column + 1) / columns;
    button->setGeometry(left, area.y(), right - left, area.height());
    button->setCard(card_->outline().translated(-button->pos()));
    if (column > 0)
      separators << QRect(left - separatorThickness, area.y(), separatorThickness, area.height());
  }
  card_->setSeparators(separators);
}

double RQAlertViewBox::buttonHeight(const RQAlertViewButton& button, int width) const {
  return heightOfRQAlertViewButton(button.title(), button.look(), width, button.padding(),
                                   alertView_.buttonsHeight());
}

void RQAlertViewBox::buttonChanged(RQAlertViewButtonKind kind, std::size_t index) {
  if (separateCancel_ && kind == RQAlertViewButtonKind::Cancel) {
    separateCancel_->setLook(alertView_.buttonLook(cancelRowOf(alertView_)));
    separateCancel_->setEnabled(alertView_.cancelButtonEnabled());
    return;
  }
  for (std::size_t place = 0; place < sideBySide_.size(); ++place) {
    const RQAlertViewRow& row = sideBySideRows_[place];
    if (row.kind != kind || row.index != index) continue;
    sideBySide_[place]->setLook(alertView_.buttonLook(row));
    sideBySide_[place]->setEnabled(alertView_.isButtonEnabled(row));
  }
  if (arrangement_ != Arrangement::List) return;
  switch (kind) {
    case RQAlertViewButtonKind::Action:
      list_->rowChanged(rows_.rowOfAction(index));
      break;
    case RQAlertViewButtonKind::Cancel:
      list_->rowChanged(rows_.count() - 1);
      break;
    case RQAlertViewButtonKind::Destructive:
      list_->rowChanged(0);
      break;
  }
}

void RQAlertViewBox::allButtonsChanged() {
  if (separateCancel_) buttonChanged(RQAlertViewButtonKind::Cancel, 0);
  for (const RQAlertViewRow& row : sideBySideRows_) buttonChanged(row.kind, row.index);
  if (arrangement_ == Arrangement::List) list_->looksChanged();
}

QWidget* RQAlertViewBox::initialFocus() {
  if (separateCancel_ && separateCancel_->isEnabled()) return separateCancel_;
  // The cancel button comes first among them where there is one.
  for (std::size_t place = 0; place < sideBySide_.size(); ++place) {
    if (sideBySideRows_[place].kind != RQAlertViewButtonKind::Destructive &&
        sideBySide_[place]->isEnabled()) {
      return sideBySide_[place];
    }
  }
  if (arrangement_ == Arrangement::List) {
    // The list stays at its beginning, wherever the safe row is.
    list_->setAutoScroll(false);
    list_->setCurrentIndex(list_->model()->index(safeRow(), 0));
    list_->setAutoScroll(true);
    return list_;
  }
  return this;
}

int RQAlertViewBox::safeRow() const {
  int safe = -1;
  for (int row = 0; row < rows_.count(); ++row) {
    const RQAlertViewRow each = rows_.at(row);
    if (!alertView_.isButtonEnabled(each)) continue;
    if (each.kind == RQAlertViewButtonKind::Cancel) return row;
    if (each.kind == RQAlertViewButtonKind::Action && safe == -1) safe = row;
  }
  return safe;
}

RQAlertViewButton* RQAlertViewBox::buttonOfKind(RQAlertViewButtonKind kind) const {
  if (separateCancel_ && kind == RQAlertViewButtonKind::Cancel) return separateCancel_;
  for (std::size_t place = 0; place < sideBySide_.size(); ++place) {
    if (sideBySideRows_[place].kind == kind) return sideBySide_[place];
  }
  return nullptr;
}

void RQAlertViewBox::keyPressEvent(QKeyEvent* event) {
  // What fields and buttons leave over: round and round inside the box.
  if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
    focusNextPrevChild(event->key() == Qt::Key_Down);
    return;
  }
  QWidget::keyPressEvent(event);
}
