// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/result_table.h"

#include <QColor>
#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::views {

namespace {

const QColor kCrossedRowColour(255, 255, 255);
const QColor kCrossedCellColour(192, 192, 192);

[[noreturn]] void throwKind(TableKind kind) {
  throw base::InternalError(base::kImpossibleCase, "table kind " + std::to_string(static_cast<int>(kind)));
}

/// Calls `use` with what a run has of the objects of a table: their records, and which of the three they are.
template <class Use>
auto withObjects(const run::Run& run, TableKind kind, const Use& use) {
  switch (kind) {
    case TableKind::Solid:
      return use(
          run.job().Solids, [](const auto& of3) -> const auto& { return of3.solids; });
    case TableKind::Bar:
      return use(
          run.job().Bars, [](const auto& of3) -> const auto& { return of3.bars; });
    case TableKind::Tendon:
      return use(
          run.job().Tendons, [](const auto& of3) -> const auto& { return of3.tendons; });
    default:
      throwKind(kind);
  }
}

}  // namespace

ResultTable::ResultTable(TableKind kind, std::shared_ptr<const run::Run> run, QObject* parent)
    : QAbstractTableModel(parent), m_kind(kind), m_run(std::move(run)) {
  takeColumns();
  m_shownRows = rowsOfRun();
  follow();
}

void ResultTable::takeColumns() {
  switch (m_kind) {
    case TableKind::Solid:
    case TableKind::Bar:
    case TableKind::Tendon: {
      const auto columns = run::objectColumns(m_kind == TableKind::Solid ? model::ObjectKind::Solid
                                              : m_kind == TableKind::Bar ? model::ObjectKind::Bar
                                                                         : model::ObjectKind::Tendon);
      m_columns.assign(columns.begin(), columns.end());
      return;
    }
    case TableKind::SectionParameter: {
      const auto columns = run::sectionParameterColumns();
      m_columns.assign(columns.begin(), columns.end());
      m_columns.push_back({std::string(run::kNoteHeading), "", "What the section is made of"});
      return;
    }
    case TableKind::Solver:
      m_columns = m_run->columns();
      return;
  }
  throwKind(m_kind);
}

QString ResultTable::title(TableKind kind) {
  switch (kind) {
    case TableKind::Solid:
      return QStringLiteral("Table - Solid (Compression +)");
    case TableKind::Bar:
      return QStringLiteral("Table - Bar (Tension +)");
    case TableKind::Tendon:
      return QStringLiteral("Table - Tendon (Tension +)");
    case TableKind::SectionParameter:
      return QStringLiteral("Table - Section Parameter");
    case TableKind::Solver:
      return QStringLiteral("Table - Solver");
  }
  throwKind(kind);
}

QString ResultTable::fixedCaption() const {
  if (m_kind == TableKind::Solver) return QStringLiteral("Output");
  if (m_kind == TableKind::SectionParameter)
    return QString::fromLatin1(run::kSectionHeading.data(),
                               static_cast<qsizetype>(run::kSectionHeading.size()));
  return QStringLiteral("No");
}

// ---- Following the run

int ResultTable::rowsOfRun() const {
  switch (m_kind) {
    case TableKind::SectionParameter:
      return run::kSectionRows;
    case TableKind::Solver: {
      const auto& atWork = m_run->rowAtWork();
      return m_run->steps() + (atWork && atWork->isWhole ? 1 : 0) + 1;
    }
    default:
      return withObjects(*m_run, m_kind,
                         [](const auto& objects, const auto&) { return static_cast<int>(objects.size()); });
  }
}

void ResultTable::show(std::shared_ptr<const run::Run> run) {
  m_run = std::move(run);
  m_version = 0;
  follow();
}

void ResultTable::follow() {
  if (m_version == m_run->version()) return;
  m_version = m_run->version();
  for (; m_shownCrossings < m_run->crossings().size(); ++m_shownCrossings) {
    const run::Crossing& crossing = m_run->crossings()[m_shownCrossings];
    m_crossedRows.insert(crossing.step);
    m_crossedCells.insert(cellNumber(crossing.step, static_cast<int>(crossing.column)));
  }
  // A solver row changes only while it stands at the bottom.
  const int firstChanged = m_kind == TableKind::Solver ? m_shownRows - 1 : 0;
  if (m_shownRows > 0) {
    emit dataChanged(index(firstChanged, 0), index(m_shownRows - 1, columnCount() - 1));
    if (m_kind > TableKind::Tendon) emit headerDataChanged(Qt::Vertical, firstChanged, m_shownRows - 1);
  }
  if (const int rows = rowsOfRun(); m_shownRows < rows) {
    beginInsertRows({}, m_shownRows, rows - 1);
    m_shownRows = rows;
    endInsertRows();
  }
}

// ---- Cells

std::int64_t ResultTable::cellNumber(int row, int column) const {
  return static_cast<std::int64_t>(row) * columnCount() + column;
}

std::optional<double> ResultTable::objectValue(int row, int column) const {
  const auto index = static_cast<std::size_t>(row);
  return withObjects(*m_run, m_kind, [&](const auto& objects, const auto& tableOf) -> std::optional<double> {
    switch (column) {
      case run::kStrainWithoutLoad:
        if (m_run->commits() == 0) return {};
        return tableOf(m_run->strainsWithoutLoad(m_run->commits())).at(index);
      case run::kArea:
        return objects.at(index).Area;
      case run::kDepth:
        return objects.at(index).Depth;
      case run::kUltimateStrain:
        return objects.at(index).UltimateStrain;
      default:
        break;
    }
    const section::State* present = m_run->present();
    if (!present) return {};
    const section::RowValues& values = tableOf(*present);
    return (column == run::kStrain   ? values.strain
            : column == run::kStress ? values.stress
                                     : values.force)
        .at(index);
  });
}

std::optional<double> ResultTable::solverValue(int row, int column) const {
  const auto index = static_cast<std::size_t>(column);
  if (row < m_run->steps()) return m_run->cell(row, index);
  const auto& atWork = m_run->rowAtWork();
  if (!atWork || atWork->step != row || index >= atWork->cells.size()) return {};
  return atWork->cells[index];
}

std::optional<double> ResultTable::value(int row, int column) const {
  switch (m_kind) {
    case TableKind::SectionParameter: {
      const auto& sections = m_run->sectionParameters();
      if (!sections) return {};
      return sections->rows.at(static_cast<std::size_t>(row)).values().at(static_cast<std::size_t>(column));
    }
    case TableKind::Solver:
      return solverValue(row, column);
    default:
      return objectValue(row, column);
  }
}

bool ResultTable::isWritten(int row) const {
  switch (m_kind) {
    case TableKind::SectionParameter:
      return m_run->sectionParameters().has_value();
    case TableKind::Solver:
      return row < m_run->steps() || (m_run->rowAtWork() && m_run->rowAtWork()->step == row);
    default:
      return true;
  }
}

std::string ResultTable::text(char separator) const {
  std::string text = fixedCaption().toStdString();
  for (const run::Column& column : m_columns) {
    text += separator;
    text += column.heading;
  }
  text += "\r\n";
  for (int row = 0; row < rowsOfRun(); ++row) {
    if (!isWritten(row)) continue;
    text += fixedText(row);
    for (int column = 0; column < columnCount(); ++column) {
      text += separator;
      text += cellText(row, column);
    }
    text += "\r\n";
  }
  return text;
}

std::string ResultTable::fixedText(int row) const {
  if (!isWritten(row)) return {};
  if (m_kind == TableKind::SectionParameter) return std::string(run::sectionParameterLetter(row));
  return base::plainText(row + 1);
}

std::string ResultTable::cellText(int row, int column) const {
  if (m_kind == TableKind::SectionParameter && column + 1 == columnCount())
    return isWritten(row) ? std::string(run::sectionParameterNote(row)) : std::string();
  const std::optional<double> number = value(row, column);
  if (!number) return {};
  if (m_kind == TableKind::Solver) return base::plainText(*number);
  const bool isBaseStrain = m_kind <= TableKind::Tendon && column == run::kStrainWithoutLoad;
  return base::scientificText(*number, isBaseStrain ? base::kBaseStrainDecimals : base::kDisplayDecimals);
}

int ResultTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_shownRows;
}

int ResultTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ResultTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int row = index.row();
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return QString::fromStdString(cellText(row, column));
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::BackgroundRole:
    case Qt::ForegroundRole:
      if (m_kind != TableKind::Solver || !m_crossedCells.contains(cellNumber(row, column))) return {};
      return role == Qt::BackgroundRole ? kCrossedCellColour : QColor(Qt::black);
    default:
      return {};
  }
}

QVariant ResultTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (section < 0 || section >= (orientation == Qt::Horizontal ? columnCount() : m_shownRows)) return {};
  if (orientation == Qt::Horizontal) {
    const run::Column& column = m_columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return QString::fromStdString(column.heading);
    if (role == Qt::ToolTipRole) return QString::fromStdString(column.explained());
    return {};
  }
  if (role == Qt::DisplayRole) return QString::fromStdString(fixedText(section));
  const bool isCrossed = m_kind == TableKind::Solver && m_crossedRows.contains(section);
  if ((role == Qt::BackgroundRole || role == Qt::ForegroundRole) && isCrossed)
    return role == Qt::BackgroundRole ? kCrossedRowColour : QColor(Qt::black);
  return {};
}

}  // namespace torvik::views
