#include "RQAlertView/RQAlertViewBox.h"

#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/EventLoop.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QKeyEvent>

using namespace RQAlertViewMetrics;

namespace {

constexpr int separatorThickness = 1;  // the room for a hairline

int rounded(double length) {
  return static_cast<int>(std::lround(length));
}

// A button may be in the middle of its own click.
void discard(RQAlertViewButton* button) {
  if (!button) return;
  button->hide();
  button->deleteLater();
}

}  // namespace

RQAlertViewBox::RQAlertViewBox(std::shared_ptr<const RQAlertViewModel> dialog, RQAlertViewPress press,
                               QWidget* parent)
    : QWidget(parent),
      dialog_(std::move(dialog)),
      press_(std::move(press)),
      card_(new RQAlertViewShadowView(dialog_, this)),
      cancelCard_(new RQAlertViewShadowView(dialog_, this)),
      header_(new RQAlertViewHeader(dialog_, this)) {
  // Shown one by one: a picture of the box is taken before the box itself is shown.
  card_->show();
  header_->show();
  hide();
}

bool RQAlertViewBox::holdsFocus() const {
  const QWidget* focused = window()->focusWidget();
  return focused && isAncestorOf(focused) && focused->isVisible();
}

void RQAlertViewBox::layOutIn(const QRect& room) {
  const bool heldFocus = holdsFocus();
  const RQAlertViewAppearance& look = dialog_->appearance;
  const int width = std::min(rounded(dialog_->width()), room.width());
  header_->applyLooks();
  arrangeButtons(width);
  const Heights heights =
      heightsFor(width, std::min(look.heightMax, room.height() - 2 * look.offsetVertical));

  const int separator = heights.header > 0 && heights.buttons > 0 ? separatorThickness : 0;
  const int cardHeight = heights.headerShown + separator + heights.buttons;
  const int cancelGap = heights.cancel > 0 && cardHeight > 0 ? rounded(look.cancelButtonOffsetY) : 0;
  const int total = cardHeight + cancelGap + heights.cancel;
  const int x = room.x() + (room.width() - width) / 2;
  const int y = RQAlertViewHelper::comesFromBottom(*dialog_)
                    ? room.y() + room.height() - rounded(look.offsetVertical) - total
                    : room.y() + (room.height() - total) / 2;
  const int margin = RQAlertViewShadowView::shadowMargin(look);
  setGeometry(QRect(x, y, width, total).adjusted(-margin, -margin, margin, margin));

  const QRect card(margin, margin, width, cardHeight);
  card_->setCardGeometry(card);
  header_->layOutIn(QRect(card.topLeft(), QSize(width, heights.headerShown)));
  placeButtons(QRect(margin, margin + heights.headerShown + separator, width, heights.buttons), card);

  cancelCard_->setCardGeometry({margin, margin + cardHeight + cancelGap, width, heights.cancel});
  if (separateCancel_) separateCancel_->place(cancelCard_->cardGeometry(), cancelCard_->outline());
  for (RQAlertViewShadowView* each : {card_, cancelCard_}) applyBackdrop(*each);
  // The focused button may have become a row, or the focused row a button.
  if (heldFocus && !holdsFocus()) initialFocus()->setFocus(Qt::OtherFocusReason);
}

void RQAlertViewBox::setBackdrop(const QPixmap& backdrop) {
  backdrop_ = backdrop;
  for (RQAlertViewShadowView* card : {card_, cancelCard_}) applyBackdrop(*card);
}

void RQAlertViewBox::applyBackdrop(RQAlertViewShadowView& card) const {
  if (backdrop_.isNull()) return card.setBackdrop({});
  const double ratio = backdrop_.devicePixelRatioF();
  const QRectF inParent = card.cardGeometry().translated(pos());
  card.setBackdrop(
      backdrop_.copy(QRectF(inParent.topLeft() * ratio, inParent.size() * ratio).toAlignedRect()));
}

bool RQAlertViewBox::fitSideBySide(const QList<RQAlertViewRow>& rows, int width) const {
  const auto count = static_cast<int>(rows.size());
  if (dialog_->style == RQAlertViewStyle::ActionSheet || dialog_->appearance.oneRowOneButton) return false;
  if (count < 2 || count > mostButtonsSideBySide) return count < 2;
  const int column = (width - (count - 1) * separatorThickness) / count;
  return std::all_of(rows.begin(), rows.end(), [&](const RQAlertViewRow& row) {
    return leastWidthOfRQAlertViewButton(row.title, dialog_->lookOf(row), buttonPaddingSideBySide) <= column;
  });
}

void RQAlertViewBox::arrangeButtons(int width) {
  QList<RQAlertViewRow> wanted = dialog_->rows();
  listed_ = !wanted.isEmpty() && !fitSideBySide(wanted, width);
  if (listed_) wanted.clear();
  // The safe answer comes first in a row, as it comes last in a list.
  std::stable_partition(wanted.begin(), wanted.end(),
                        [](const auto& row) { return row.kind == RQAlertViewButtonKind::Cancel; });
  const auto isOf = [](const RQAlertViewButton* button, const RQAlertViewRow& row) {
    return button->row() == row;
  };
  if (!std::equal(sideBySide_.begin(), sideBySide_.end(), wanted.begin(), wanted.end(), isOf)) {
    for (RQAlertViewButton* button : std::exchange(sideBySide_, {})) discard(button);
    for (const auto& row : wanted) sideBySide_.push_back(makeButton(row, buttonPaddingSideBySide));
  }
  if (!RQAlertViewHelper::isCancelButtonSeparate(*dialog_)) {
    discard(std::exchange(separateCancel_, nullptr));
  } else if (!separateCancel_) {
    separateCancel_ = makeButton(dialog_->cancelRow(), buttonPadding);
  }
  if (listed_ && !list_) list_ = new RQAlertViewButtonList(dialog_, press_, this);
  if (list_) list_->setVisible(listed_);
  if (listed_) list_->takeOver(width);
  buttonsChanged();
}

RQAlertViewButton* RQAlertViewBox::makeButton(const RQAlertViewRow& row, int padding) {
  auto* button = new RQAlertViewButton(row, padding, this);
  button->show();
  connect(button, &QAbstractButton::clicked, this, atEventBoundary([this, row] { press_(row); }));
  return button;
}

RQAlertViewBox::Heights RQAlertViewBox::heightsFor(int width, double roomHeight) const {
  Heights heights;
  const RQAlertViewAppearance& look = dialog_->appearance;
  heights.header = header_->wholeHeight(width);
  double most = roomHeight;
  if (separateCancel_) {
    heights.cancel = separateCancel_->heightFor(width, *look.buttonsHeight);
    most -= heights.cancel + look.cancelButtonOffsetY;
  }
  if (heights.header > 0) most -= separatorThickness;
  const auto headerWithin = [&](double room) {
    return rounded(std::clamp(room, 0.0, static_cast<double>(heights.header)));
  };
  if (!listed_) {
    // A row of buttons cannot scroll, so all of the shortage is the header's.
    const int columns = static_cast<int>(sideBySide_.size());
    for (const RQAlertViewButton* button : sideBySide_)
      heights.buttons = std::max(heights.buttons, button->heightFor(width / columns, *look.buttonsHeight));
    heights.headerShown = headerWithin(most - heights.buttons);
    return heights;
  }
  // Where both do not fit, each scrolls in its share.
  const double rows = list_->heightOfRows();
  heights.headerShown =
      headerWithin(std::max(most - rows, std::min<double>(heights.header, most * headerShare)));
  heights.buttons = rounded(std::min(rows, std::max(most - heights.headerShown, 0.0)));
  if (heights.buttons < rows) heights.buttons = rounded(list_->heightEndingInARow(heights.buttons));
  return heights;
}

void RQAlertViewBox::placeButtons(const QRect& area, const QRect& card) {
  QList<QRect> separators;
  if (area.y() > card.y() && !area.isEmpty())
    separators << QRect(area.x(), area.y() - separatorThickness, area.width(), separatorThickness);
  if (listed_) {
    list_->setGeometry(area);
    list_->setCard(card_->outline().translated(-area.topLeft()));
  }
  const int columns = static_cast<int>(sideBySide_.size());
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  for (int place = 0; place < columns; ++place) {
    const int column = mirrored ? columns - 1 - place : place;
    const int left = area.x() + area.width() * column / columns + (column > 0 ? separatorThickness : 0);
    const int right = area.x() + area.width() * (column + 1) / columns;
    sideBySide_[static_cast<std::size_t>(place)]->place({left, area.y(), right - left, area.height()},
                                                        card_->outline());
    if (column > 0)
      separators << QRect(left - separatorThickness, area.y(), separatorThickness, area.height());
  }
  card_->setSeparators(separators);
}

std::vector<RQAlertViewButton*> RQAlertViewBox::buttons() const {
  std::vector<RQAlertViewButton*> all(sideBySide_);
  if (separateCancel_) all.insert(all.begin(), separateCancel_);
  return all;
}

void RQAlertViewBox::buttonsChanged() {
  for (RQAlertViewButton* button : buttons()) button->setLook(dialog_->lookOf(button->row()));
  if (listed_) list_->looksChanged();
}

QWidget* RQAlertViewBox::initialFocus() {
  // The cancel button comes first among them where there is one.
  for (RQAlertViewButton* button : buttons()) {
    if (button->row().kind != RQAlertViewButtonKind::Destructive && button->isEnabled()) return button;
  }
  if (!listed_) return this;
  // The list does not scroll to the safe row.
  list_->setAutoScroll(false);
  list_->setCurrentIndex(list_->model()->index(safeRow(), 0));
  list_->setAutoScroll(true);
  return list_;
}

int RQAlertViewBox::safeRow() const {
  int safe = -1;
  for (int row = 0; row < list_->rows().size(); ++row) {
    const RQAlertViewRow& each = list_->rows().at(row);
    if (!dialog_->isEnabled(each)) continue;
    if (each.kind == RQAlertViewButtonKind::Cancel) return row;
    if (each.kind == RQAlertViewButtonKind::Action && safe == -1) safe = row;
  }
  return safe;
}

RQAlertViewButton* RQAlertViewBox::buttonOfKind(RQAlertViewButtonKind kind) const {
  if (kind == RQAlertViewButtonKind::Action) return nullptr;
  for (RQAlertViewButton* button : buttons()) {
    if (button->row().kind == kind) return button;
  }
  return nullptr;
}

void RQAlertViewBox::keyPressEvent(QKeyEvent* event) {
  // Arrows that fields and buttons do not use move the focus inside the box.
  if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
    focusNextPrevChild(event->key() == Qt::Key_Down);
    return;
  }
  QWidget::keyPressEvent(event);
}
