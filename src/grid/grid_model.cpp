// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/grid_model.h"

#include <QColor>

#include "widgets/shown_text.h"

namespace torvik::grid {

namespace {
// Dark on light in every theme.
constexpr QColor kUnreadableBack(255, 199, 199);
constexpr QColor kUnreadableText(110, 0, 0);
}  // namespace

GridModel::GridModel(const ObjectGrid& grid, QObject* parent)
    : QAbstractTableModel(parent), m_grid(grid), m_rows(grid.rowCount()) {}

void GridModel::tell(const Extent& extent) {
  if (extent.what == Extent::What::Nothing) return;
  const Selection& touched = extent.touched;
  if (extent.what == Extent::What::Cells) {
    emit dataChanged(index(touched.top(), touched.left()), index(touched.bottom(), touched.right()));
    return;
  }
  // A row is nothing but its texts: rows come and go at the end, and the texts move.
  const int rows = m_grid.rowCount();
  if (rows > m_rows) {
    beginInsertRows({}, m_rows, rows - 1);
    m_rows = rows;
    endInsertRows();
  } else if (rows < m_rows) {
    beginRemoveRows({}, rows, m_rows - 1);
    m_rows = rows;
    endRemoveRows();
  }
  if (touched.top() >= m_rows) return;
  emit dataChanged(index(touched.top(), 0), index(m_rows - 1, columnCount() - 1));
  emit headerDataChanged(Qt::Vertical, touched.top(), m_rows - 1);
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_grid.columnCount();
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= m_grid.rowCount()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return widgets::shownText(m_grid.text(index.row(), index.column()));
    case Qt::BackgroundRole:
      return m_grid.isUnreadable(index.row(), index.column()) ? QVariant(kUnreadableBack) : QVariant();
    case Qt::ForegroundRole:
      return m_grid.isUnreadable(index.row(), index.column()) ? QVariant(kUnreadableText) : QVariant();
    case Qt::ToolTipRole:
      return m_grid.isUnreadable(index.row(), index.column())
                 ? (columnsOf(m_grid.kind())[static_cast<std::size_t>(index.column())].key == "WatchStrain"
                        ? QStringLiteral("\"%1\" is no number: a job will end at it.")
                        : QStringLiteral("\"%1\" can not be read here: it counts as 0."))
                       .arg(data(index, Qt::DisplayRole).toString())
                 : QVariant();
    default:
      return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || section < 0) return {};
  if (orientation == Qt::Vertical)
    return section < m_grid.rowCount() ? QVariant(widgets::shownText(m_grid.number(section))) : QVariant();
  return section < columnCount() ? QVariant(widgets::shownText(
                                       columnsOf(m_grid.kind())[static_cast<std::size_t>(section)].caption))
                                 : QVariant();
}

}  // namespace torvik::grid
