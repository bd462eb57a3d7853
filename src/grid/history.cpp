// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/history.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::grid {

namespace {

std::size_t indexIn(std::size_t size, int index, const char* what) {
  if (index < 0 || static_cast<std::size_t>(index) >= size) {
    throw base::InternalError(base::kImpossibleCase, what + (" " + std::to_string(index)));
  }
  return static_cast<std::size_t>(index);
}

}  // namespace

bool isBlank(const TextRow& row) {
  return std::ranges::all_of(row, &std::string::empty);
}

TextTable::TextTable(int columns, std::vector<TextRow> rows, int numbered)
    : m_columns(columns), m_rows(std::move(rows)), m_numbers(m_rows.size()) {
  for (int i = 0; i < numbered; ++i) m_numbers[static_cast<std::size_t>(i)] = base::plainText(i + 1);
}

const TextRow& TextTable::row(int row) const {
  return m_rows[indexIn(m_rows.size(), row, "grid row")];
}

const std::string& TextTable::text(int row, int column) const {
  const TextRow& cells = this->row(row);
  return cells[indexIn(cells.size(), column, "grid column")];
}

const std::string& TextTable::number(int row) const {
  return m_numbers[indexIn(m_numbers.size(), row, "grid row")];
}

Extent TextTable::undo() {
  if (!canUndo()) return {};
  Step& step = m_steps[--m_done];
  Extent extent = extentOf(step);
  exchange(step);
  moveRowsBack(step);
  // Rows that were added at the end are gone.
  extent.touched.Row = std::min(extent.touched.Row, rowCount() - 1);
  extent.touched.RowSel = std::min(extent.touched.RowSel, rowCount() - 1);
  return extent;
}

Extent TextTable::redo() {
  if (!canRedo()) return {};
  Step& step = m_steps[m_done++];
  moveRows(step);
  exchange(step);
  return extentOf(step);
}

void TextTable::exchange(Step& step) {
  for (Change& change : step.cells) {
    m_rows[static_cast<std::size_t>(change.row)][static_cast<std::size_t>(change.column)].swap(change.text);
  }
}

void TextTable::moveRows(Step& step) {
  const TextRow empty(static_cast<std::size_t>(m_columns));
  const auto count = static_cast<std::size_t>(step.count);
  const auto first = m_rows.begin() + step.at;
  if (step.rows == Step::Rows::Added) {
    m_rows.insert(first, count, empty);
    m_numbers.resize(m_rows.size());
  } else if (step.rows == Step::Rows::Removed) {
    const auto last = first + step.count;
    step.removed.assign(std::move_iterator(first), std::move_iterator(last));
    std::fill(std::move(last, m_rows.end(), first), m_rows.end(), empty);
  }
  for (const int row : step.numbered) m_numbers[static_cast<std::size_t>(row)] = base::plainText(row + 1);
}

void TextTable::moveRowsBack(Step& step) {
  for (const int row : step.numbered) m_numbers[static_cast<std::size_t>(row)].clear();
  const auto first = m_rows.begin() + step.at;
  if (step.rows == Step::Rows::Added) {
    m_rows.erase(first, first + step.count);
    m_numbers.resize(m_rows.size());
  } else if (step.rows == Step::Rows::Removed) {
    std::move_backward(first, m_rows.end() - step.count, m_rows.end());
    std::move(step.removed.begin(), step.removed.end(), first);
    step.removed.clear();
  }
}

Extent TextTable::extentOf(const Step& step) const {
  Extent extent;
  if (step.rows != Step::Rows::Same || !step.numbered.empty()) {
    extent = {Extent::What::Rows, {step.at, 0, step.at + step.count - 1, m_columns - 1}};
  } else if (!step.cells.empty()) {
    const Change& one = step.cells.front();
    extent = {Extent::What::Cells, {one.row, one.column, one.row, one.column}};
  }
  Selection& box = extent.touched;
  for (const Change& change : step.cells) {
    box = {std::min(box.Row, change.row), std::min(box.Col, change.column), std::max(box.RowSel, change.row),
           std::max(box.ColSel, change.column)};
  }
  return extent;
}

void TextTable::Edit::put(int row, int column, const std::string& text) {
  if (m_table.text(row, column) == text) return;
  std::string& cell = m_table.m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
  m_step.cells.push_back({row, column, std::exchange(cell, text)});
}

void TextTable::Edit::addRows(int count) {
  if (count <= 0) return;
  m_step.rows = Step::Rows::Added;
  m_step.at = m_table.rowCount();
  m_step.count = count;
  m_table.moveRows(m_step);
}

void TextTable::Edit::insertRows(int at, int count) {
  m_step.rows = Step::Rows::Added;
  m_step.at = at;
  m_step.count = count;
  m_table.moveRows(m_step);
  numberFrom(at);
}

void TextTable::Edit::removeRows(int at, int count) {
  m_step.at = at;
  m_step.count = count;
  if (!std::all_of(m_table.m_rows.begin() + at, m_table.m_rows.end(), isBlank)) {
    m_step.rows = Step::Rows::Removed;
    m_table.moveRows(m_step);
  }
  numberFrom(at);
}

void TextTable::Edit::numberFrom(int at) {
  for (int row = at; row < m_table.rowCount(); ++row) {
    std::string& number = m_table.m_numbers[static_cast<std::size_t>(row)];
    if (!number.empty()) continue;
    number = base::plainText(row + 1);
    m_step.numbered.push_back(row);
  }
}

Extent TextTable::Edit::close() {
  const Extent extent = m_table.extentOf(m_step);
  // Of a cell that was written twice the first text counts, and only where the last one differs.
  const auto place = [](const Change& change) { return std::tie(change.row, change.column); };
  auto& cells = m_step.cells;
  std::ranges::stable_sort(cells, {}, place);
  const auto doubles = std::ranges::unique(cells, {}, place);
  cells.erase(doubles.begin(), doubles.end());
  std::erase_if(cells, [&](const Change& c) { return c.text == m_table.text(c.row, c.column); });
  if (cells.empty() && m_step.rows == Step::Rows::Same && m_step.numbered.empty()) return extent;

  auto& steps = m_table.m_steps;
  steps.resize(m_table.m_done);
  cells.shrink_to_fit();
  steps.push_back(std::exchange(m_step, {}));
  ++m_table.m_done;
  return extent;
}

}  // namespace torvik::grid
