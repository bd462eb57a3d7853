// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include "grid/object_grid.h"

namespace torvik::grid {

/// An `ObjectGrid` as a view shows it. Whoever changes the grid says so with `tell`.
class GridModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// @param grid  outlives the model
  GridModel(const ObjectGrid& grid, QObject* parent);

  /// Shows what a change did. Row numbers and texts from the place of the change on are read anew.
  void tell(const Extent& extent);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const ObjectGrid& m_grid;
  int m_rows;  ///< as the view knows it
};

}  // namespace torvik::grid
