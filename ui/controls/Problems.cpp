#include "ui/controls/Problems.h"

#include "platform/EventLoop.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"
#include "ui/controls/RowListView.h"
#include "ui/controls/UIButton.h"

#include <algorithm>
#include <utility>

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QTextDocument>
#include <Qsci/qsciscintilla.h>

namespace {

constexpr int signScale = 2;
constexpr qsizetype longestShown = 1000;
constexpr Problem::Kind kinds[] = {Problem::Kind::Error, Problem::Kind::Warning, Problem::Kind::Note};

// Names in it are shown as everywhere.
QString shownLine(const std::string& text) {
  return shownName(text.substr(0, 4 * longestShown)).left(longestShown);
}

RowModel::Row rowOf(const Problem& problem) {
  const QString name = shownLine(textOf(problem));
  // Tooltips would take what looks like a tag for one, and wrap no other text.
  return {name, shownMessage(problem), shownLine(placeOf(problem)), Qt::convertFromPlainText(name),
          QPixmap::fromImage(signOf(problem.kind, metrics::iconSize))};
}

}  // namespace

LastBuild& LastBuild::shared() {
  static LastBuild build;
  return build;
}

void LastBuild::set(const MaybeText& project, std::vector<Problem> problems) {
  project_ = project;
  problems_ = std::move(problems);
  emit changed();
}

QString shownMessage(const Problem& problem) {
  return shownLine(problem.message);
}

QColor colourOf(Problem::Kind kind) {
  constexpr QRgb colours[] = {qRgb(255, 120, 110), qRgb(245, 190, 80), qRgb(130, 190, 255)};
  return colours[static_cast<std::size_t>(kind)];
}

QImage signOf(Problem::Kind kind, int side) {
  QImage sign(side * signScale, side * signScale, QImage::Format_ARGB32);
  sign.setDevicePixelRatio(signScale);
  sign.fill(Qt::transparent);
  QPainter painter(&sign);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal size = side;
  const QRectF box(size * 0.08, size * 0.08, size * 0.84, size * 0.84);
  const QPen strokes(Qt::black, size * 0.13, Qt::SolidLine, Qt::RoundCap);
  QPainterPath shape;
  QList<QLineF> inside;
  switch (kind) {
    case Problem::Kind::Error:
      shape.addEllipse(box);
      inside = {{size * 0.34, size * 0.34, size * 0.66, size * 0.66},
                {size * 0.66, size * 0.34, size * 0.34, size * 0.66}};
      break;
    case Problem::Kind::Warning:
      shape.addPolygon(
          QPolygonF({{size * 0.5, size * 0.06}, {size * 0.97, size * 0.92}, {size * 0.03, size * 0.92}}));
      inside = {{size * 0.5, size * 0.4, size * 0.5, size * 0.6},
                {size * 0.5, size * 0.78, size * 0.5, size * 0.79}};
      break;
    case Problem::Kind::Note:
      shape.addRoundedRect(box, size * 0.15, size * 0.15);
      inside = {{size * 0.5, size * 0.28, size * 0.5, size * 0.29},
                {size * 0.5, size * 0.48, size * 0.5, size * 0.72}};
      break;
  }
  painter.fillPath(shape, colourOf(kind));
  painter.setPen(strokes);
  painter.drawLines(inside);
  return sign;
}

void setUpProblemMargin(QsciScintilla& text, int margin) {
  int mask = 0;
  for (const Problem::Kind kind : kinds) {
    text.SendScintilla(QsciScintilla::SCI_RGBAIMAGESETSCALE, 100UL * signScale);
    text.markerDefine(signOf(kind, problemMarginWidth - metrics::barSpacing), markerOf(kind));
    mask |= 1 << markerOf(kind);
  }
  text.setMarginType(margin, QsciScintilla::SymbolMarginColor);
  text.setMarginBackgroundColor(margin, text.palette().color(QPalette::Active, QPalette::Base));
  text.setMarginMarkerMask(margin, mask);
}

ProblemsPanel::ProblemsPanel(QWidget* parent)
    : QWidget(parent), count_(new QLabel(this)), list_(new RowListView(this)) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* const bar = new QHBoxLayout;
  bar->setContentsMargins(metrics::barPadding, 0, metrics::barPadding, 0);
  bar->setSpacing(metrics::barSpacing);
  // In line with the texts of the rows, whichever side that is.
  bar->addSpacing(metrics::rowPadding - metrics::barPadding);
  column->addLayout(bar);
  column->addWidget(list_, 1);
  count_->setFont(systemFontOfSize(metrics::bodyTextSize));
  count_->setTextFormat(Qt::PlainText);
  count_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  bar->addWidget(count_, 1);
  const auto add = [&](const TextPair& name, const char* picture, const QKeySequence& keys, bool backward) {
    auto* const button = new UIButton(this);
    button->dress(picture, localized(name));
    button->onClick(this, [this, backward] { step(backward); });
    addShortcut(*button, keys);
    bar->addWidget(button);
  };
  add(text::previousProblem, "previous", Qt::SHIFT | Qt::Key_F8, true);
  add(text::nextProblem, "next", Qt::Key_F8, false);
  list_->setAccessibleName(localized(text::problems));
  list_->setMarksCurrent(true);
  list_->rows().rowAt = [this](int row) { return rowOf(problemAt(row)); };
  connect(list_, &RowListView::rowPicked, this,
          atEventBoundary([this](int row) { emit picked(rows_.at(static_cast<std::size_t>(row))); }));
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          atEventBoundary([this](const QModelIndex& current, const QModelIndex&) {
            if (current.isValid() && !isQuiet_) emit shown(*this->current(), false);
          }));
  hide();
}

const Problem& ProblemsPanel::problemAt(int row) const {
  return LastBuild::shared().problems().at(rows_.at(static_cast<std::size_t>(row)));
}

void ProblemsPanel::reload() {
  isQuiet_ = true;
  rows_.clear();
  const auto& problems = LastBuild::shared().problems();
  for (std::size_t index = 0; index < problems.size(); ++index)
    if (!problems[index].repeated) rows_.push_back(index);
  list_->rows().setCount(static_cast<int>(rows_.size()));
  hasStepped_ = false;
  isQuiet_ = false;
  const auto countOf = [&](Problem::Kind kind, const TextPair& one, const TextPair& several) {
    const auto count = std::count_if(rows_.begin(), rows_.end(),
                                     [&](std::size_t index) { return problems[index].kind == kind; });
    return count == 0 ? QString() : localized(count == 1 ? one : several, {std::to_string(count)});
  };
  const QString errors = countOf(Problem::Kind::Error, text::oneError, text::someErrors);
  const QString warnings = countOf(Problem::Kind::Warning, text::oneWarning, text::someWarnings);
  count_->setText(errors.isEmpty() || warnings.isEmpty() ? errors + warnings
                                                         : errors + localized(text::listComma) + warnings);
  setVisible(!count_->text().isEmpty());
  limitHeight(room_);
}

void ProblemsPanel::step(bool backward) {
  const int rows = list_->rows().rowCount();
  const int from = !hasStepped_ || !current() ? (backward ? rows : -1) : list_->currentRow();
  for (int steps = 1; steps <= rows + 1; ++steps) {
    const int row = (((backward ? from - steps : from + steps) % (rows + 1)) + rows + 1) % (rows + 1);
    if (row == rows || problemAt(row).kind == Problem::Kind::Note) continue;
    setCurrent(rows_[static_cast<std::size_t>(row)]);
    emit shown(*current(), true);
    return;
  }
}

void ProblemsPanel::setCurrent(std::size_t problem) {
  isQuiet_ = true;
  hasStepped_ = true;
  // The row of the problem, or of the one that it repeats.
  const auto after = std::upper_bound(rows_.begin(), rows_.end(), problem);
  list_->setCurrentRow(static_cast<int>(after - rows_.begin()) - 1);
  isQuiet_ = false;
}

std::optional<std::size_t> ProblemsPanel::current() const {
  const int row = list_->currentRow();
  return row >= 0 ? std::optional(rows_.at(static_cast<std::size_t>(row))) : std::nullopt;
}

void ProblemsPanel::limitHeight(std::optional<int> room) {
  room_ = room;
  if (!room) return list_->setMaximumHeight(QWIDGETSIZE_MAX), list_->setMinimumHeight(0);
  const int row = std::max(list_->sizeHintForRow(0), metrics::touchSize);
  const int rows = std::clamp(*room / row, 1, std::max(list_->rows().rowCount(), 1));
  list_->setFixedHeight(rows * row);
}
