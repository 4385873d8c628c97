#include "ui/picks_panel.h"

#include <QtWidgets/QHeaderView>

#include "qvtools/platform/qt/qt_text.h"
#include "ui/colors.h"
#include "ui/entity_text.h"

namespace qvview {

int PicksModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int PicksModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QString PicksModel::cell(int entity, int column) const {
  const Drawing& drawing = *view_->drawing();
  switch (column) {
    case kNumber:
      return QString::number(entity + 1);
    case kKind:
      return kind_of(drawing.entity(entity), words_);
    case kLayer:
      return qv::qt_text(drawing.layer_of(entity).name.c_str());
    case kColor: {
      const int own = drawing.own_color(entity);
      return own < 0 ? words_(Text::ByLayer) : QString::number(own);
    }
    default:
      return describe(drawing.entity(entity), words_);
  }
}

QVariant PicksModel::data(const QModelIndex& index, int role) const {
  if (!view_ || !view_->drawing() || index.row() >= rows_) return {};
  const int entity = view_->picks()[static_cast<std::size_t>(index.row())];
  if (role == Qt::DisplayRole) return cell(entity, index.column());
  if (role == Qt::ToolTipRole && index.column() == kCoordinates) return cell(entity, kCoordinates);
  if (role == Qt::DecorationRole && index.column() == kColor) {
    const int own = view_->drawing()->own_color(entity);
    return swatch(own < 0 ? view_->drawing()->layer_of(entity).color : own);
  }
  return {};
}

QVariant PicksModel::headerData(int section, Qt::Orientation orientation, int role) const {
  static constexpr Text kHeads[] = {Text::NumberColumn, Text::KindColumn, Text::LayerColumn, Text::ColorColumn,
                                    Text::CoordinatesColumn};
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return words_(kHeads[section]);
}

void PicksModel::refresh() {
  beginResetModel();
  rows_ = view_ && view_->drawing() ? static_cast<int>(view_->picks().size()) : 0;
  endResetModel();
}

QString PicksModel::as_text() const {
  QString text;
  for (int row = 0; row < rows_; ++row) {
    const int entity = view_->picks()[static_cast<std::size_t>(row)];
    for (int column = 0; column < kColumns; ++column)
      text += cell(entity, column) + QLatin1Char(column + 1 < kColumns ? '\t' : '\n');
  }
  return text;
}

PicksPanel::PicksPanel(const Words& words, std::function<void(int)> show) : model_(words) {
  setModel(&model_);
  setSelectionBehavior(SelectRows);
  setEditTriggers(NoEditTriggers);
  verticalHeader()->hide();
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  horizontalHeader()->setStretchLastSection(true);
  setWordWrap(false);
  connect(this, &QTableView::doubleClicked, this, [this, show = std::move(show)](const QModelIndex& index) {
    show(view_->picks()[static_cast<std::size_t>(index.row())]);
  });
  refresh();
}

void PicksPanel::set_view(const View& view) {
  view_ = &view;
  model_.set_view(view);
  refresh();
}

void PicksPanel::refresh() {
  constexpr int kRowsMeasured = 100;
  model_.refresh();
  horizontalHeader()->setResizeContentsPrecision(kRowsMeasured);
  for (int column = 0; column < PicksModel::kCoordinates; ++column) resizeColumnToContents(column);
}

int PicksPanel::current() const {
  if (!view_ || view_->picks().empty()) return -1;
  const int row = currentIndex().isValid() ? currentIndex().row() : 0;
  return view_->picks()[static_cast<std::size_t>(row)];
}

}  // namespace qvview
