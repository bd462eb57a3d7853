// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "grid/selection.h"

namespace torvik::grid {

using TextRow = std::vector<std::string>;
bool isBlank(const TextRow& row);

/// A table of texts with a number column, where every change is a step that can be undone. A row's number is
/// its place from 1 on, or not shown; it never moves with the row. Cells and rows outside the table raise
/// InternalError 51.
class TextTable {
 public:
  /// @param rows  of `columns` cells each
  /// @param numbered  how many rows from the first on show their number
  TextTable(int columns, std::vector<TextRow> rows, int numbered);

  [[nodiscard]] int rowCount() const { return static_cast<int>(m_rows.size()); }
  [[nodiscard]] int columnCount() const { return m_columns; }
  [[nodiscard]] const std::string& text(int row, int column) const;
  [[nodiscard]] const std::string& number(int row) const;
  [[nodiscard]] const TextRow& row(int row) const;

  [[nodiscard]] bool canUndo() const { return m_done > 0; }
  [[nodiscard]] bool canRedo() const { return m_done < m_steps.size(); }
  Extent undo();
  Extent redo();

  class Edit;

 private:
  struct Change {
    int row = 0;
    int column = 0;
    std::string text;  ///< the one that the cell does not hold now
  };

  /// Keeps what is needed to go either way, and no more.
  struct Step {
    enum class Rows { Same, Added, Removed };
    Rows rows = Rows::Same;  ///< Removed: and as many added at the end
    int at = 0;
    int count = 0;
    std::vector<TextRow> removed;  ///< while they are out of the table
    std::vector<int> numbered;     ///< rows that the step gave a number
    std::vector<Change> cells;     ///< one a cell; after the rows where the step is done again
  };

  void moveRows(Step& step);
  void moveRowsBack(Step& step);
  void exchange(Step& step);
  [[nodiscard]] Extent extentOf(const Step& step) const;

  int m_columns;
  std::vector<TextRow> m_rows;
  std::vector<std::string> m_numbers;
  std::vector<Step> m_steps;
  std::size_t m_done = 0;  ///< steps that are not undone
};

/// One step in the making. It enters the history when it is closed or goes out of scope, and not at all where
/// everything is as it was.
class TextTable::Edit {
 public:
  explicit Edit(TextTable& table) : m_table(table) {}
  ~Edit() { close(); }
  Edit(const Edit&) = delete;
  Edit& operator=(const Edit&) = delete;

  void put(int row, int column, const std::string& text);
  /// Empty rows without a number, before any `put`.
  void addRows(int count);
  /// One of the two, as the whole of the edit; rows from `at` on show their number then.
  void insertRows(int at, int count);
  void removeRows(int at, int count);

  [[nodiscard]] const TextTable& table() const { return m_table; }
  /// @return what was written, also where it was put back later
  Extent close();

 private:
  void numberFrom(int at);

  TextTable& m_table;
  Step m_step;
};

}  // namespace torvik::grid
