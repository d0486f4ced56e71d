#include "ui/controls/Problems.h"

#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"
#include "ui/controls/RowListView.h"
#include "ui/controls/UIButton.h"

#include <algorithm>
#include <utility>

#include <QAbstractListModel>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <Qsci/qsciscintilla.h>

namespace {

constexpr int signScale = 2;
constexpr qsizetype longestShown = 1000;
constexpr Problem::Kind kinds[] = {Problem::Kind::Error, Problem::Kind::Warning, Problem::Kind::Note};

// Names in it are shown as everywhere.
QString shownLine(const std::string& text) {
  return shownName(text.substr(0, 4 * longestShown)).left(longestShown);
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

QColor colourOf(Problem::Kind kind) {
  switch (kind) {
    case Problem::Kind::Error:
      return {255, 120, 110};
    case Problem::Kind::Warning:
      return {245, 190, 80};
    default:
      return {130, 190, 255};
  }
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

// The problems that are not repeated.
class ProblemModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  void reload() {
    beginResetModel();
    rows_.clear();
    const auto& problems = LastBuild::shared().problems();
    for (std::size_t index = 0; index < problems.size(); ++index)
      if (!problems[index].repeated) rows_.push_back(index);
    endResetModel();
  }

  int rowCount(const QModelIndex& parent = QModelIndex()) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }

  std::size_t problemOf(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  const Problem& at(int row) const { return LastBuild::shared().problems().at(problemOf(row)); }
  // The row of a problem, or of the one that it repeats or follows.
  int rowOf(std::size_t problem) const {
    const auto after = std::upper_bound(rows_.begin(), rows_.end(), problem);
    return static_cast<int>(after - rows_.begin()) - 1;
  }

  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const Problem& problem = at(index.row());
    switch (role) {
      case Qt::DisplayRole:
      case Qt::ToolTipRole:
        return shownLine(textOf(problem));
      case Qt::DecorationRole:
        return QIcon(QPixmap::fromImage(signOf(problem.kind, metrics::iconSize)));
      case RowListView::TitleRole:
        return shownLine(problem.message);
      case RowListView::DetailRole: {
        std::string place = problem.file;
        if (problem.line > 0) place += ":" + std::to_string(problem.line);
        if (problem.column > 0) place += ":" + std::to_string(problem.column);
        return shownLine(place);
      }
      default:
        return {};
    }
  }

 private:
  std::vector<std::size_t> rows_;
};

ProblemsPanel::ProblemsPanel(QWidget* parent)
    : QWidget(parent),
      count_(new QLabel(this)),
      list_(new RowListView(this)),
      model_(new ProblemModel(this)) {
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
    button->setAccessibleName(localized(name));
    button->setToolTip(localized(name));
    button->setPicture(QLatin1String(picture));
    addShortcut(*button, keys);
    connect(button, &QPushButton::clicked, this, atEventBoundary([this, backward] { step(backward); }));
    bar->addWidget(button);
  };
  add(text::previousProblem, "previous", Qt::SHIFT | Qt::Key_F8, true);
  add(text::nextProblem, "next", Qt::Key_F8, false);
  list_->setAccessibleName(localized(text::problems));
  list_->setBackgroundColor(colours::listGround);
  list_->setSeparatorColor(colours::separator);
  list_->setMarksCurrent(true);
  static_cast<QListView*>(list_)->setModel(model_);
  connect(list_, &RowListView::rowPicked, this,
          atEventBoundary([this](int row) { emit picked(model_->problemOf(row)); }));
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          atEventBoundary([this](const QModelIndex& current, const QModelIndex&) {
            if (current.isValid() && !isQuiet_) emit shown(model_->problemOf(current.row()), false);
          }));
  hide();
}

void ProblemsPanel::reload() {
  isQuiet_ = true;
  model_->reload();
  hasStepped_ = false;
  isQuiet_ = false;
  const auto countOf = [this](Problem::Kind kind, const TextPair& one, const TextPair& several) {
    int count = 0;
    for (int row = 0; row < model_->rowCount(); ++row) count += model_->at(row).kind == kind ? 1 : 0;
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
  const int rows = model_->rowCount();
  const int from =
      !hasStepped_ || !list_->currentIndex().isValid() ? (backward ? rows : -1) : list_->currentIndex().row();
  for (int steps = 1; steps <= rows + 1; ++steps) {
    const int row = (((backward ? from - steps : from + steps) % (rows + 1)) + rows + 1) % (rows + 1);
    if (row == rows || model_->at(row).kind == Problem::Kind::Note) continue;
    setCurrent(model_->problemOf(row));
    emit shown(model_->problemOf(row), true);
    return;
  }
}

void ProblemsPanel::setCurrent(std::size_t problem) {
  isQuiet_ = true;
  hasStepped_ = true;
  list_->setCurrentIndex(model_->index(model_->rowOf(problem)));
  isQuiet_ = false;
}

std::optional<std::size_t> ProblemsPanel::current() const {
  const QModelIndex index = list_->currentIndex();
  return index.isValid() ? std::optional(model_->problemOf(index.row())) : std::nullopt;
}

void ProblemsPanel::limitHeight(std::optional<int> room) {
  room_ = room;
  if (!room) return list_->setMaximumHeight(QWIDGETSIZE_MAX), list_->setMinimumHeight(0);
  const int row = std::max(list_->sizeHintForRow(0), metrics::touchSize);
  const int rows = std::clamp(*room / row, 1, std::max(model_->rowCount(), 1));
  list_->setFixedHeight(rows * row);
}
