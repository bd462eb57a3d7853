// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "base/errors.h"
#include "base/number_text.h"
#include "chart/control.h"

/// What the parts of the chart control share: series, their cells, and the place of numbers in the widget.
namespace torvik::chart {

inline constexpr double kUnwritten = std::numeric_limits<double>::quiet_NaN();
inline constexpr std::size_t kAxes = 2;

[[noreturn]] inline void throwMissing(const std::string& what) {
  throw base::InternalError(base::kImpossibleCase, "chart: " + what);
}

inline Qt::PenStyle toQt(PenStyle style) {
  switch (style) {
    case PenStyle::None:
      return Qt::NoPen;
    case PenStyle::Solid:
      return Qt::SolidLine;
    case PenStyle::Dotted:
      return Qt::DotLine;
  }
  throwMissing("pen style " + base::plainText(static_cast<int>(style)));
}

struct Series {
  bool isLine = true;
  bool isOutline = false;
  PenStyle pen = PenStyle::Solid;
  MarkerStyle marker = MarkerStyle::None;
  int size = 0;
  QColor colour;  ///< invalid: automatic
  QString name;
  PointName pointName = PointName::Series;
};

/// Cells are held as they were given; a column reaches to its last written row.
class Matrix {
 public:
  [[nodiscard]] int rows() const { return m_rows; }
  [[nodiscard]] int columns() const { return static_cast<int>(m_columns.size()); }

  void setRows(int count) {
    if (count < 0) throwMissing("rows " + base::plainText(count));
    m_rows = count;
    for (std::vector<double>& values : m_columns)
      if (values.size() > static_cast<std::size_t>(count)) values.resize(static_cast<std::size_t>(count));
  }

  void setColumns(int count) {
    if (count < 0) throwMissing("columns " + base::plainText(count));
    m_columns.resize(static_cast<std::size_t>(count));
  }

  [[nodiscard]] double cell(int row, int column) const {
    const std::vector<double>& values = at(row, column);
    const auto index = static_cast<std::size_t>(row - 1);
    return index < values.size() ? values[index] : kUnwritten;
  }

  void setCell(int row, int column, double value) {
    at(row, column);
    std::vector<double>& values = m_columns[static_cast<std::size_t>(column - 1)];
    const auto index = static_cast<std::size_t>(row - 1);
    if (index >= values.size()) values.resize(index + 1, kUnwritten);
    values[index] = value;
  }

  void setColumn(int column, std::span<const double> from) {
    if (from.empty()) return;
    at(static_cast<int>(from.size()), column);
    std::vector<double>& values = m_columns[static_cast<std::size_t>(column - 1)];
    if (values.size() < from.size()) values.resize(from.size());
    std::copy(from.begin(), from.end(), values.begin());
  }

  /// Calls use(row from 0, x, y) for every point of a series that was written and can be placed.
  template <class Use>
  void forEachPoint(std::size_t series, const Use& use) const {
    const std::vector<double>& x = m_columns[2 * series];
    const std::vector<double>& y = m_columns[2 * series + 1];
    const std::size_t count = std::min(x.size(), y.size());
    for (std::size_t i = 0; i < count; ++i)
      if (canBePlaced(x[i]) && canBePlaced(y[i])) use(i, x[i], y[i]);
  }

 private:
  const std::vector<double>& at(int row, int column) const {
    if (row < 1 || row > m_rows) throwMissing("row " + base::plainText(row));
    if (column < 1 || column > columns()) throwMissing("column " + base::plainText(column));
    return m_columns[static_cast<std::size_t>(column - 1)];
  }

  int m_rows = 0;
  std::vector<std::vector<double>> m_columns;
};

inline bool bothCanBeShown(const std::array<Interval, kAxes>& shown) {
  return canBeShown(shown[kAxisX]) && canBeShown(shown[kAxisY]);
}

/// Places in the widget of the numbers on both axes.
struct Mapping {
  QRectF area;
  std::array<Interval, kAxes> shown;

  [[nodiscard]] QPointF toPixel(double x, double y) const {
    return {area.left() + (x - shown[kAxisX].lower) / shown[kAxisX].size() * area.width(),
            area.bottom() - (y - shown[kAxisY].lower) / shown[kAxisY].size() * area.height()};
  }

  /// What another area of the widget shows when every number stays at its place.
  [[nodiscard]] std::array<Interval, kAxes> shownIn(const QRectF& other) const {
    const double x = shown[kAxisX].size() / area.width();
    const double y = shown[kAxisY].size() / area.height();
    return {Interval{shown[kAxisX].lower + (other.left() - area.left()) * x,
                     shown[kAxisX].lower + (other.right() - area.left()) * x},
            Interval{shown[kAxisY].lower + (area.bottom() - other.bottom()) * y,
                     shown[kAxisY].lower + (area.bottom() - other.top()) * y}};
  }
};

}  // namespace torvik::chart
