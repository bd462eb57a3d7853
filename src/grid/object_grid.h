// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grid/columns.h"
#include "grid/history.h"
#include "grid/selection.h"
#include "model/objects.h"

namespace torvik::grid {

/// "+" gives 1, empty text 0; @throws InternalError 51 for any other text
int FlagFromCellText(std::string_view text);
/// 1 gives "+", 0 empty text; @throws InternalError 51 for any other value
std::string CellTextFromFlag(int value);

struct Summary {
  int count = 0;   ///< of the selected cells that hold a number
  double sum = 0;  ///< in row order
};

/// A grid of one object table: a plain table of texts, the rules of its cells, and the undoing of every
/// change. The texts are bytes as a file holds them. Cells and rows outside the grid raise InternalError 51.
class ObjectGrid {
 public:
  /// 10 numbered rows, and behind them as many without a number as the table has; the table's rows stand from
  /// the first row on (`FillGridFromTables`).
  /// @throws InternalError 51 for a row whose `Use` or `Output` is neither 0 nor 1: it has no text
  ObjectGrid(ObjectKind kind, const model::ObjectTables& tables);

  [[nodiscard]] ObjectKind kind() const;
  [[nodiscard]] int rowCount() const;
  [[nodiscard]] int columnCount() const;
  [[nodiscard]] const std::string& text(int row, int column) const;
  /// Text of the number column: "1" and on, or empty.
  [[nodiscard]] const std::string& number(int row) const;
  [[nodiscard]] bool RowHasData(int row) const;
  /// Whether the cell holds text that its field can not take and that would silently become 0: a number cell
  /// (a watch strain too) that is no number, an integer cell that is none of 16 bits, a flag cell with
  /// another text than "+". Empty cells are not.
  [[nodiscard]] bool isUnreadable(int row, int column) const;

  /// Puts the data rows, closed up, in place of the table of this kind; the others are not touched. A field
  /// stays 0 where its cell is empty or `isUnreadable`; an integer is rounded, a half to even.
  /// @throws InputError for more than `model::kMaxRows` data rows; the tables are as they were
  /// then
  void StoreGridToTables(model::ObjectTables& tables) const;
  /// One row as `StoreGridToTables` would read it, blank or not, alone in its table.
  [[nodiscard]] model::ObjectTables rowAsTables(int row) const;

  // ---- Editing. Each call is one step of the history, and none where nothing changed.

  /// Whether the editor of the cell opens: not on a Fixed cell, and not while `opensIf` does not hold.
  [[nodiscard]] bool opensEditor(int row, int column) const;

  using Report = std::function<void(const std::string& message)>;
  /// The commit of an editor: puts the text in the cell and applies the rules of the column: bounds with
  /// their messages, derived cells, what a flag, a list, a diameter or a file does to its neighbours.
  /// @param text    of a flag cell "+" or empty
  /// @param before  the cell's text when the editor opened: what a rejection puts back
  /// @param report  called in the middle, with the new text in the cell
  /// @return all cells that were written, also those that a rejection put back
  /// @throws InternalError 51 for a Fixed cell, for a flag's text that is neither, and for a text that the
  ///         closed list of `Prestressing` does not hold; that one is in the cell then, as a step to undo
  Extent commit(int row, int column, const std::string& text, const std::string& before,
                const Report& report);

  /// Text of the selection: a tab between cells, a carriage return between rows.
  [[nodiscard]] std::string clip(const Selection& selection) const;
  /// `FlexGridDelete`
  Extent clear(const Selection& selection);
  /// `FlexGridPaste` at the current cell. Rows end with CR, CR LF or LF; one end at the very end of the text
  /// counts for nothing. The last row is as wide as the paste: cells beyond it are left out, and what a
  /// shorter row does not give stays.
  /// @return `touched` is all that was pasted over, also where `what` is Nothing because the texts were the
  ///         same; empty where the text does not fit: nothing changed then
  std::optional<Extent> paste(const Selection& selection, std::string_view clipboard);
  /// As many empty rows above the selection as it has. All rows from there on show their number then.
  Extent insertRows(const Selection& selection);
  /// The rows of the selection go, as many empty ones come at the end. Numbers as above.
  Extent removeRows(const Selection& selection);
  /// Puts the rows of the table of this kind behind the last row that has data, into new rows where the grid
  /// has not enough behind it: those show no number. @return the place of the new rows
  /// @throws InternalError 51 as the constructor; InputError where the grid would hold more data
  ///         rows than a table can. Nothing changed then.
  Extent append(const model::ObjectTables& rows);

  [[nodiscard]] bool canUndo() const;
  [[nodiscard]] bool canRedo() const;
  /// @return what changed; Nothing where there is no step
  Extent undo();
  Extent redo();

  [[nodiscard]] Summary summary(const Selection& selection) const;

 private:
  void requireInside(const Selection& selection) const;
  void requireCell(int row, int column) const;

  ObjectKind m_kind;
  TextTable m_table;
};

}  // namespace torvik::grid
