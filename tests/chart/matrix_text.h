// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "chart/control.h"

namespace torvik::chart {

/// All cells: commas between those of a row, semicolons behind rows.
inline std::string matrixOf(const ChartControl& chart) {
  std::string text;
  for (int row = 1; row <= chart.RowCount(); ++row)
    for (int column = 1; column <= chart.ColumnCount(); ++column)
      text += chart.Data(row, column) + (column < chart.ColumnCount() ? "," : ";");
  return text;
}

/// The written points of a series: a comma between x and y, semicolons behind points.
inline std::string seriesOf(const ChartControl& chart, int firstColumn) {
  std::string text;
  for (int row = 1; row <= chart.RowCount(); ++row)
    if (!chart.Data(row, firstColumn).empty() || !chart.Data(row, firstColumn + 1).empty())
      text += chart.Data(row, firstColumn) + "," + chart.Data(row, firstColumn + 1) + ";";
  return text;
}

}  // namespace torvik::chart
