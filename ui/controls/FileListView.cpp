#include "ui/controls/FileListView.h"

#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"
#include "ui/Localized.h"
#include "ui/controls/Layer.h"
#include "ui/controls/Looks.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>

#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>

namespace {

constexpr int separatorHeight = 1;

// One cell: picture, name, and the separator below.
class FileCell : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QColor separatorColor;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    return {0, std::max(metrics::rowHeight, option.fontMetrics.height() + metrics::rowPadding)};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const bool underPointer = (option.state & QStyle::State_MouseOver) != 0;
    const bool focused =
        (option.state & QStyle::State_HasFocus) != 0 && option.widget && showsFocus(*option.widget);
    painter->fillRect(option.rect, underPointer ? colours::cellUnderPointer : colours::cellGround);
    const bool rightToLeft = option.direction == Qt::RightToLeft;
    const QRect inside = option.rect.adjusted(metrics::rowPadding, 0, -metrics::rowPadding, -separatorHeight);
    const QSize pictureSize(metrics::iconSize, metrics::iconSize);
    const QRect picture =
        QStyle::alignedRect(option.direction, Qt::AlignLeading | Qt::AlignVCenter, pictureSize, inside);
    static const QIcon icon(QStringLiteral(":/pictures/na.png"));
    icon.paint(painter, picture);
    const int indent = metrics::iconSize + metrics::rowPadding;
    const QRect text = rightToLeft ? inside.adjusted(0, 0, -indent, 0) : inside.adjusted(indent, 0, 0, 0);
    painter->setPen(colours::cellText);
    painter->setFont(option.font);
    const QString name =
        option.fontMetrics.elidedText(index.data().toString(), Qt::ElideMiddle, text.width());
    // The name keeps its own direction; only where it stands follows the interface.
    QTextOption layout(rightToLeft ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignVCenter);
    layout.setTextDirection(Qt::LeftToRight);
    layout.setWrapMode(QTextOption::NoWrap);
    painter->drawText(QRectF(text), name, layout);
    painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), separatorHeight),
                      separatorColor);
    if (focused) drawFocusRing(*painter, option.rect.adjusted(0, 0, 0, -separatorHeight), 0);
  }
};

}  // namespace

int FileListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(MUArray().size());
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= MUArray().size()) return {};
  if (role == Qt::DisplayRole) return shownName(MUArray()[row]);
  return {};
}

void FileListModel::reloadData() {
  beginResetModel();
  endResetModel();
}

FileListView::FileListView(QWidget* parent) : QListView(parent), model_(this) {
  setItemDelegate(new FileCell(this));
  setModel(&model_);
  setUniformItemSizes(true);
  setFont(systemFontOfSize(metrics::bodyTextSize));
  setFrameShape(QFrame::NoFrame);
  setMouseTracking(true);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setAttribute(Qt::WA_Hover);
  connect(this, &QListView::clicked, this,
          atEventBoundary([this](const QModelIndex& index) { emit rowPicked(index.row()); }));
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { pickSelected(); });
}

void FileListView::setBackgroundColor(const QColor& colour) {
  QPalette colours = palette();
  colours.setColor(QPalette::Base, colour);
  setPalette(colours);
}

void FileListView::setSeparatorColor(const QColor& colour) {
  static_cast<FileCell*>(itemDelegate())->separatorColor = colour;
  viewport()->update();
}

void FileListView::reloadData() {
  const int place = verticalScrollBar()->value();
  const int row = currentIndex().row();
  const std::string name = currentName_;
  model_.reloadData();
  if (row >= 0) {
    const std::vector<std::string>& names = MUArray();
    const auto found = std::find(names.begin(), names.end(), name);
    const int same = static_cast<int>(found - names.begin());
    setCurrentIndex(model_.index(found != names.end() ? same : std::min(row, model_.rowCount() - 1)));
  }
  verticalScrollBar()->setValue(place);
}

void FileListView::leavePlace() {
  setCurrentIndex(QModelIndex());
  scrollToTop();
}

void FileListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  const auto row = static_cast<std::size_t>(current.row());
  if (current.isValid() && row < MUArray().size()) currentName_ = MUArray()[row];
}

QItemSelectionModel::SelectionFlags FileListView::selectionCommand(const QModelIndex& /*index*/,
                                                                   const QEvent* /*event*/) const {
  // Taps and keys select nothing, so that a selection is always the doing of assistive technology.
  return QItemSelectionModel::NoUpdate;
}

void FileListView::pickSelected() {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  if (selected.isEmpty()) return;
  const int row = selected.first().row();
  // Outside the selection's own signal, where nothing of the view may be changed.
  QTimer::singleShot(0, this, atEventBoundary([this, row] {
                       clearSelection();
                       setCurrentIndex(model_.index(row));
                       emit rowPicked(row);
                     }));
}

void FileListView::keyPressEvent(QKeyEvent* event) {
  const bool picks =
      event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
  if (picks && currentIndex().isValid()) {
    if (!isRepeated(*event)) emit rowPicked(currentIndex().row());
    return;
  }
  QListView::keyPressEvent(event);
}
