// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace torvik::grid {

/// A rectangle of data cells, counted from 0: from the current cell to the far corner, which may stand on
/// either side of it.
struct Selection {
  int Row = 0;
  int Col = 0;
  int RowSel = 0;
  int ColSel = 0;
  [[nodiscard]] int top() const { return Row < RowSel ? Row : RowSel; }
  [[nodiscard]] int bottom() const { return Row < RowSel ? RowSel : Row; }
  [[nodiscard]] int left() const { return Col < ColSel ? Col : ColSel; }
  [[nodiscard]] int right() const { return Col < ColSel ? ColSel : Col; }
  bool operator==(const Selection&) const = default;
};

/// What a change did to the grid, for whoever shows it.
struct Extent {
  enum class What { Nothing, Cells, Rows };  ///< Rows: their number or their order may have changed
  What what = What::Nothing;
  Selection touched;  ///< the smallest rectangle around what changed; for Rows the place of the change
};

}  // namespace torvik::grid
