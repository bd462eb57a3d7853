// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/result_table.h"

#include <QColor>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <string_view>

#include "analysis/sink.h"
#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::views {

namespace {

constexpr std::chrono::milliseconds kFrame{30};
constexpr double kEmpty = std::numeric_limits<double>::quiet_NaN();
constexpr int kSectionRows = 5;
constexpr int kStrainWithoutLoadColumn = 0;
constexpr int kFirstCurrentColumn = 1;

const QColor kCrossedRowColour(255, 255, 255);
const QColor kCrossedCellColour(192, 192, 192);

[[noreturn]] void throwKind(TableKind kind) {
  throw base::InternalError(base::kImpossibleCase, "table kind " + std::to_string(static_cast<int>(kind)));
}

}  // namespace

ResultTable::ResultTable(TableKind kind, const model::ObjectTables& job, QObject* parent)
    : QAbstractTableModel(parent), m_kind(kind) {
  using base::kDisplayDecimals;
  switch (kind) {
    case TableKind::Solid:
      addObjectColumns("Strain without load, compression positive", "Area of one piece (mm²)");
      addObjects(job.Solids);
      break;
    case TableKind::Bar:
      addObjectColumns("Strain without load, tension positive", "Area of one bar (mm²)");
      addObjects(job.Bars);
      break;
    case TableKind::Tendon:
      addObjectColumns("Strain without load, tension positive", "Area of one tendon (mm²)");
      addObjects(job.Tendons);
      break;
    case TableKind::SectionParameter: {
      const char* const meanings[] = {"Area (mm²)",
                                      "From the top edge to the centroid (mm)",
                                      "From the centroid to the bottom edge (mm)",
                                      "Second moment of area about the centroid (mm⁴)",
                                      "Top section modulus: I over the depth of the centroid (mm³)",
                                      "Bottom section modulus: I / y (mm³)",
                                      "Elastic modulus (N/mm²)",
                                      "Flexural rigidity (N mm²)",
                                      "Axial rigidity (N)"};
      const auto headings = analysis::sectionParameterHeadings();
      m_fixedCaption =
          QString::fromUtf8(headings.front().data(), static_cast<qsizetype>(headings.front().size()));
      for (std::size_t i = 0; i < std::size(meanings); ++i)
        m_columns.push_back({std::string(headings[i + 1]), meanings[i], kDisplayDecimals});
      m_columns.push_back({std::string(headings.back()), "What the section is made of", kNote});
      for (int i = 0; i < kSectionRows; ++i) appendRow();
      break;
    }
    case TableKind::Solver: {
      m_fixedCaption = QStringLiteral("Output");
      const char* const meanings[] = {
          "Total load (N)",   "Displacement of midspan (mm)",   "Moment (N mm)",
          "Curvature (1/mm)", "Depth of the neutral axis (mm)", "Sum of the compression forces (N)"};
      for (const std::string& heading : analysis::resultHeadings(job)) {
        const std::size_t i = m_columns.size();
        const bool solid = heading.starts_with("Solid");
        m_columns.push_back({heading,
                             i < std::size(meanings)
                                 ? meanings[i]
                                 : heading + (solid ? ", compression" : ", tension") + " positive",
                             kPlain});
      }
      appendRow();
      break;
    }
    default:
      throwKind(kind);
  }
  m_shownRows = writtenRows();
  m_timer.setSingleShot(true);
  m_timer.setInterval(kFrame);
  connect(&m_timer, &QTimer::timeout, this, &ResultTable::flushNow);
}

void ResultTable::addObjectColumns(const char* strainWithoutLoad, const char* area) {
  using base::kDisplayDecimals;
  m_fixedCaption = QStringLiteral("No");
  m_columns = {{"Strain w/o Load", strainWithoutLoad, base::kBaseStrainDecimals},
               {"Strain", "Strain", kDisplayDecimals},
               {"Stress", "Stress (N/mm²)", kDisplayDecimals},
               {"Force", "Force (N)", kDisplayDecimals},
               {"Area", area, kDisplayDecimals},
               {"Depth", "Depth of the centre (mm)", kDisplayDecimals},
               {"Ultimate Strain", "Strain at which the object fails", kDisplayDecimals}};
}

template <class Rows>
void ResultTable::addObjects(const Rows& objects) {
  m_values.reserve(objects.size() * m_columns.size());
  for (const auto& object : objects) {
    m_values.insert(m_values.end(),
                    {kEmpty, kEmpty, kEmpty, kEmpty, object.Area, object.Depth, object.UltimateStrain});
    m_numbers.push_back(static_cast<int>(m_numbers.size()) + 1);
  }
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

std::size_t ResultTable::at(int row, int column) const {
  return static_cast<std::size_t>(row) * m_columns.size() + static_cast<std::size_t>(column);
}

int ResultTable::writtenRows() const {
  return static_cast<int>(m_numbers.size());
}

void ResultTable::expectKind(bool expected) const {
  if (!expected) throwKind(m_kind);
}

void ResultTable::appendRow() {
  m_values.resize(m_values.size() + m_columns.size(), kEmpty);
  m_numbers.push_back(0);
}

void ResultTable::setColumn(int column, std::span<const double> values) {
  expectKind(m_kind <= TableKind::Tendon);
  if (values.size() != m_numbers.size())
    throw base::InternalError(base::kImpossibleCase, "row count of a result table");
  for (std::size_t row = 0; row < values.size(); ++row)
    m_values[at(static_cast<int>(row), column)] = values[row];
}

void ResultTable::setStrainWithoutLoad(std::span<const double> strain) {
  setColumn(kStrainWithoutLoadColumn, strain);
  changed(0, bottomRow());
}

void ResultTable::setCurrent(std::span<const double> strain, std::span<const double> stress,
                             std::span<const double> force) {
  setColumn(kFirstCurrentColumn, strain);
  setColumn(kFirstCurrentColumn + 1, stress);
  setColumn(kFirstCurrentColumn + 2, force);
  changed(0, bottomRow());
}

void ResultTable::setSectionParameters(const analysis::SectionParameterTable& sections) {
  expectKind(m_kind == TableKind::SectionParameter);
  for (int row = 0; row < kSectionRows; ++row) {
    const auto values = sections.rows[static_cast<std::size_t>(row)].values();
    std::copy(values.begin(), values.end(), m_values.begin() + static_cast<std::ptrdiff_t>(at(row, 0)));
    m_numbers[static_cast<std::size_t>(row)] = row + 1;
  }
  changed(0, bottomRow());
}

void ResultTable::beginRow(int step) {
  expectKind(m_kind == TableKind::Solver);
  m_numbers.back() = step + 1;
  changed(bottomRow(), bottomRow());
}

void ResultTable::cell(int column, double value) {
  expectKind(m_kind == TableKind::Solver);
  m_values.at(at(bottomRow(), column)) = value;
  changed(bottomRow(), bottomRow());
}

void ResultTable::watchCrossed(int column) {
  expectKind(m_kind == TableKind::Solver);
  m_crossedRows.insert(bottomRow());
  m_crossedCells.insert(at(bottomRow(), column));
  changed(bottomRow(), bottomRow());
}

void ResultTable::endRow() {
  expectKind(m_kind == TableKind::Solver);
  appendRow();
  changed(bottomRow(), bottomRow());
}

void ResultTable::changed(int firstRow, int lastRow) {
  if (m_firstChanged > m_lastChanged) {
    m_firstChanged = firstRow;
    m_lastChanged = lastRow;
  } else {
    m_firstChanged = std::min(m_firstChanged, firstRow);
    m_lastChanged = std::max(m_lastChanged, lastRow);
  }
  if (m_shown && !m_timer.isActive()) m_timer.start();
}

void ResultTable::flushNow() {
  m_timer.stop();
  const int firstChanged = m_firstChanged;
  const int lastChanged = std::min(m_lastChanged, m_shownRows - 1);
  m_firstChanged = 0;
  m_lastChanged = -1;
  if (firstChanged <= lastChanged) {
    emit dataChanged(index(firstChanged, 0), index(lastChanged, columnCount() - 1));
    if (m_kind > TableKind::Tendon) emit headerDataChanged(Qt::Vertical, firstChanged, lastChanged);
  }
  if (m_shownRows < writtenRows()) {
    beginInsertRows({}, m_shownRows, bottomRow());
    m_shownRows = writtenRows();
    endInsertRows();
  }
}

void ResultTable::setShown(bool shown) {
  m_shown = shown;
  if (shown)
    flushNow();
  else
    m_timer.stop();
}

std::string ResultTable::text(char separator) const {
  std::string text = m_fixedCaption.toStdString();
  for (const Column& column : m_columns) {
    text += separator;
    text += column.header;
  }
  text += "\r\n";
  for (int row = 0; row < writtenRows(); ++row) {
    if (m_numbers[static_cast<std::size_t>(row)] == 0) continue;
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
  const int number = m_numbers[static_cast<std::size_t>(row)];
  if (number == 0) return {};
  if (m_kind == TableKind::SectionParameter) return std::string(analysis::sectionParameterLetter(row));
  return base::plainText(number);
}

std::string ResultTable::cellText(int row, int column) const {
  const int decimals = m_columns[static_cast<std::size_t>(column)].decimals;
  if (decimals == kNote) {
    if (m_numbers[static_cast<std::size_t>(row)] == 0) return {};
    return std::string(analysis::sectionParameterNote(row));
  }
  const double value = m_values[at(row, column)];
  if (std::isnan(value)) return {};
  return decimals == kPlain ? base::plainText(value) : base::scientificText(value, decimals);
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
      if (!m_crossedCells.contains(at(row, column))) return {};
      return role == Qt::BackgroundRole ? kCrossedCellColour : QColor(Qt::black);
    default:
      return {};
  }
}

QVariant ResultTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (section < 0 || section >= (orientation == Qt::Horizontal ? columnCount() : m_shownRows)) return {};
  if (orientation == Qt::Horizontal) {
    const Column& column = m_columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return QString::fromStdString(column.header);
    if (role == Qt::ToolTipRole) return QString::fromStdString(column.meaning);
    return {};
  }
  if (role == Qt::DisplayRole) return QString::fromStdString(fixedText(section));
  if ((role == Qt::BackgroundRole || role == Qt::ForegroundRole) && m_crossedRows.contains(section))
    return role == Qt::BackgroundRole ? kCrossedRowColour : QColor(Qt::black);
  return {};
}

}  // namespace torvik::views
