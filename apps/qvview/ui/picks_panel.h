#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtWidgets/QTableView>
#include <functional>

#include "model/view.h"
#include "ui/words.h"

namespace qvview {

/// The picked entities as rows, made when they are looked at: there may be a million.
class PicksModel : public QAbstractTableModel {
 public:
  enum Column { kNumber, kKind, kLayer, kColor, kCoordinates, kColumns };

  explicit PicksModel(const Words& words) : words_(words) {}
  /// The view whose picks are shown from now on.
  void set_view(const View& view) { view_ = &view; }
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// The picks have changed.
  void refresh();
  /// The rows as lines of columns with tabs between.
  QString as_text() const;

 private:
  QString cell(int entity, int column) const;

  const View* view_ = nullptr;
  const Words& words_;
  int rows_ = 0;
};

class PicksPanel : public QTableView {
 public:
  /// `show` is called with an entity whose row is double-clicked.
  PicksPanel(const Words& words, std::function<void(int)> show);
  void set_view(const View& view);
  void refresh();
  QString as_text() const { return model_.as_text(); }
  /// The entity of the current row, else the first; -1 when none is picked.
  int current() const;

 private:
  const View* view_ = nullptr;
  PicksModel model_;
};

}  // namespace qvview
