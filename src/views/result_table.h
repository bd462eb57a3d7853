// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "run/run.h"

namespace torvik::views {

enum class TableKind : int { Solid = 0, Bar = 1, Tendon = 2, SectionParameter = 3, Solver = 4 };

/// The rows of a result table: a look at a run. Cells are the run's numbers and become text when they are
/// looked at. What a job has added since is shown by `follow`.
///
/// Column 0 of the model is the first data column; the texts of the fixed column are the vertical headers.
///
/// Object tables: a row for each object of the job. Section parameters: five rows. Solver: a row for each
/// step, and one behind them that is being filled.
class ResultTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// @throws InternalError 51 for a kind outside the five
  ResultTable(TableKind kind, std::shared_ptr<const run::Run> run, QObject* parent = nullptr);

  /// "Table - Solver", ... @throws InternalError 51 for a kind outside the five
  static QString title(TableKind kind);
  [[nodiscard]] TableKind kind() const { return m_kind; }
  [[nodiscard]] const run::Run& run() const { return *m_run; }
  /// Header of the fixed column.
  [[nodiscard]] QString fixedCaption() const;

  /// Looks at another run: of a table of section parameters, which all have the same rows.
  void show(std::shared_ptr<const run::Run> run);
  /// Tells the views what the run has gained since the last time.
  void follow();

  /// Header line and all rows, the fixed column in front; rows that nothing was written into are left out.
  /// Lines end in CR LF. No text of a table holds a comma, a tab or a quotation mark.
  [[nodiscard]] std::string text(char separator) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  void takeColumns();
  [[nodiscard]] int rowsOfRun() const;
  /// Empty where nothing was written.
  [[nodiscard]] std::optional<double> value(int row, int column) const;
  [[nodiscard]] std::optional<double> objectValue(int row, int column) const;
  [[nodiscard]] std::optional<double> solverValue(int row, int column) const;
  /// Whether anything was written into a row.
  [[nodiscard]] bool isWritten(int row) const;
  [[nodiscard]] std::string cellText(int row, int column) const;
  [[nodiscard]] std::string fixedText(int row) const;
  [[nodiscard]] std::int64_t cellNumber(int row, int column) const;

  TableKind m_kind;
  std::shared_ptr<const run::Run> m_run;
  std::vector<run::Column> m_columns;
  std::uint64_t m_version = 0;  ///< of the run, when the views were last told
  int m_shownRows = 0;
  std::size_t m_shownCrossings = 0;
  std::unordered_set<std::int64_t> m_crossedCells;
  std::unordered_set<int> m_crossedRows;
};

}  // namespace torvik::views
