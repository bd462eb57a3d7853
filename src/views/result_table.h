// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <cstdint>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "analysis/section_parameters.h"
#include "model/objects.h"

namespace torvik::views {

enum class TableKind : int { Solid = 0, Bar = 1, Tendon = 2, SectionParameter = 3, Solver = 4 };

/// The rows of a result table. Cells are kept as numbers and become text when they are looked at, so that a
/// job can write them at every step.
///
/// What is written is shown at the next `flushNow`, which a timer calls about once a frame, and only while
/// the table is shown. Column 0 of the model is the first data column; the texts of the fixed column are the
/// vertical headers.
///
/// Object tables: a row for each object of the job. Section parameters: five rows. Solver: one row at first;
/// the bottom row is always the one that is being filled.
class ResultTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// @param job  its rows are copied as far as they are shown
  /// @throws InternalError 51 for a kind outside the five
  ResultTable(TableKind kind, const model::ObjectTables& job, QObject* parent = nullptr);

  /// "Table - Solver", ... @throws InternalError 51 for a kind outside the five
  static QString title(TableKind kind);
  [[nodiscard]] TableKind kind() const { return m_kind; }
  /// Header of the fixed column.
  [[nodiscard]] QString fixedCaption() const { return m_fixedCaption; }

  /// Object tables, a value for each row, in table order; more or fewer is InternalError 51.
  void setStrainWithoutLoad(std::span<const double> strain);
  void setCurrent(std::span<const double> strain, std::span<const double> stress,
                  std::span<const double> force);

  /// The section parameter table.
  void setSectionParameters(const analysis::SectionParameterTable& sections);

  /// The solver table. `column` is that of the result row, from 0 ("Load").
  void beginRow(int step);
  void cell(int column, double value);
  /// Colours the cell, and the row's cell in the fixed column.
  void watchCrossed(int column);
  void endRow();

  /// Shows what was written since the last time.
  void flushNow();
  /// While it is not shown nothing is told to the views; when it is shown again they catch up.
  void setShown(bool shown);

  /// Header line and all rows, the fixed column in front; rows that nothing was written into are left out.
  /// Lines end in CR LF. No text of a table holds a comma, a tab or a quotation mark.
  [[nodiscard]] std::string text(char separator) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  struct Column {
    std::string header;
    std::string meaning;  ///< with its unit, for the tool tip
    int decimals;         ///< of the scientific format, or one of the constants below
  };
  static constexpr int kPlain = -1;
  static constexpr int kNote = -2;

  void addObjectColumns(const char* strainWithoutLoad, const char* area);
  template <class Rows>
  void addObjects(const Rows& objects);
  [[nodiscard]] std::size_t at(int row, int column) const;
  [[nodiscard]] int writtenRows() const;
  [[nodiscard]] int bottomRow() const { return writtenRows() - 1; }
  void setColumn(int column, std::span<const double> values);
  void appendRow();
  void changed(int firstRow, int lastRow);
  void expectKind(bool expected) const;
  [[nodiscard]] std::string cellText(int row, int column) const;
  [[nodiscard]] std::string fixedText(int row) const;

  TableKind m_kind;
  QString m_fixedCaption;
  std::vector<Column> m_columns;
  std::vector<double> m_values;  ///< row by row; not a number: an empty cell
  std::vector<int> m_numbers;    ///< of each row in the fixed column; 0: nothing
  std::unordered_set<std::size_t> m_crossedCells;
  std::unordered_set<int> m_crossedRows;
  int m_shownRows = 0;
  int m_firstChanged = 0;  ///< rows that are shown but differ from what was last told
  int m_lastChanged = -1;
  bool m_shown = false;
  QTimer m_timer;
};

}  // namespace torvik::views
