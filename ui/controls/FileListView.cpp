#include "ui/controls/FileListView.h"

#include "ui/Localized.h"
#include "workspace/ProjectFiles.h"

#include <algorithm>

#include <QScrollBar>

FileListView::FileListView(QWidget* parent) : RowListView(parent) {
  rows().rowAt = [picture = QIcon(QStringLiteral(":/pictures/na.png"))](int row) {
    const auto index = static_cast<std::size_t>(row);
    return RowModel::Row{.name = index < MUArray().size() ? shownName(MUArray()[index]) : QString(),
                         .picture = picture};
  };
}

void FileListView::reloadData() {
  const std::vector<std::string>& names = MUArray();
  const int place = verticalScrollBar()->value();
  const int row = currentRow();
  const auto same = std::find(names.begin(), names.end(), currentName_);
  rows().setCount(static_cast<int>(names.size()));
  if (row >= 0)
    setCurrentRow(same != names.end() ? static_cast<int>(same - names.begin())
                                      : std::min(row, rows().rowCount() - 1));
  verticalScrollBar()->setValue(place);
}

void FileListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  RowListView::currentChanged(current, previous);
  const auto row = static_cast<std::size_t>(current.row());
  if (current.isValid() && row < MUArray().size()) currentName_ = MUArray()[row];
}
