// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/object_grid.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "base/number_text.h"
#include "grid/records.h"
#include "grid/rules.h"

namespace torvik::grid {

namespace {

constexpr int kSpareRows = 10;
constexpr char kCellEnd = '\t';
constexpr char kRowEnd = '\r';

int widthOf(ObjectKind kind) {
  return static_cast<int>(columnsOf(kind).size());
}

TextTable filledTable(ObjectKind kind, const model::ObjectTables& tables) {
  std::vector<TextRow> rows = textsOf(kind, tables);
  rows.resize(rows.size() + kSpareRows, TextRow(columnsOf(kind).size()));
  return {widthOf(kind), std::move(rows), kSpareRows};
}

void requireTableSize(std::size_t rows) {
  if (rows > std::size_t{model::kMaxRows})
    throw base::InputError("A table holds at most " + base::plainText(model::kMaxRows) +
                           " rows: remove some.");
}

/// Every row end as one CR, and none at the very end. This platform ends lines with a LF alone; a LF behind a
/// CR is part of it.
std::string withRowEnds(std::string_view clipboard) {
  std::string text;
  text.reserve(clipboard.size());
  char last = '\0';
  for (const char c : clipboard) {
    if (c != '\n') {
      text.push_back(c);
    } else if (last != kRowEnd) {
      text.push_back(kRowEnd);
    }
    last = c;
  }
  if (text.ends_with(kRowEnd)) text.pop_back();
  return text;
}

/// Calls `visit(part)` for what stands between the ends; an empty text is one part.
void forParts(std::string_view text, char end, const auto& visit) {
  for (std::size_t at = text.find(end); at != std::string_view::npos; at = text.find(end)) {
    visit(text.substr(0, at));
    text.remove_prefix(at + 1);
  }
  visit(text);
}

std::size_t partsOf(std::string_view text, char end) {
  return static_cast<std::size_t>(std::ranges::count(text, end)) + 1;
}

void forCells(const Selection& selection, const auto& visit) {
  for (int row = selection.top(); row <= selection.bottom(); ++row) {
    for (int column = selection.left(); column <= selection.right(); ++column) visit(row, column);
  }
}

}  // namespace

ObjectGrid::ObjectGrid(ObjectKind kind, const model::ObjectTables& tables)
    : m_kind(kind), m_table(filledTable(kind, tables)) {}

ObjectKind ObjectGrid::kind() const {
  return m_kind;
}

int ObjectGrid::rowCount() const {
  return m_table.rowCount();
}

int ObjectGrid::columnCount() const {
  return m_table.columnCount();
}

const std::string& ObjectGrid::text(int row, int column) const {
  return m_table.text(row, column);
}

const std::string& ObjectGrid::number(int row) const {
  return m_table.number(row);
}

bool ObjectGrid::RowHasData(int row) const {
  return !isBlank(m_table.row(row));
}

bool ObjectGrid::isUnreadable(int row, int column) const {
  const std::string& cell = text(row, column);
  return wouldBeLost(columnsOf(m_kind)[static_cast<std::size_t>(column)], cell);
}

void ObjectGrid::StoreGridToTables(model::ObjectTables& tables) const {
  model::ObjectTables stored;
  for (int row = 0; row < rowCount(); ++row) {
    if (RowHasData(row)) appendRecord(m_kind, m_table.row(row), stored);
  }
  requireTableSize(stored.rowCount(m_kind));
  exchangeTable(m_kind, tables, stored);
}

model::ObjectTables ObjectGrid::rowAsTables(int row) const {
  model::ObjectTables tables;
  appendRecord(m_kind, m_table.row(row), tables);
  return tables;
}

bool ObjectGrid::opensEditor(int row, int column) const {
  requireCell(row, column);
  const Column& cell = columnsOf(m_kind)[static_cast<std::size_t>(column)];
  if (cell.cell == CellKind::Fixed) return false;
  return !cell.opensIf || text(row, cell.opensIf->column) == cell.opensIf->text;
}

Extent ObjectGrid::commit(int row, int column, const std::string& text, const std::string& before,
                          const Report& report) {
  requireCell(row, column);
  const Column& cell = columnsOf(m_kind)[static_cast<std::size_t>(column)];
  if (cell.cell == CellKind::Fixed) {
    throw base::InternalError(base::kImpossibleCase, "editor of " + std::string(cell.key));
  }
  const bool isTicked = cell.cell == CellKind::Flag && FlagFromCellText(text) == 1;
  const Rule* const rule = ruleOf(m_kind, cell.key);

  // The caller's texts may be cells of this grid.
  const std::string typed = text;
  const std::string old = before;
  TextTable::Edit edit(m_table);
  if (isTicked && rule && rule->onlyOne) {
    for (int other = 0; other < rowCount(); ++other) edit.put(other, column, "");
  }
  edit.put(row, column, typed);
  if (rule) applyRule(*rule, edit, row, old, report);
  return edit.close();
}

std::string ObjectGrid::clip(const Selection& selection) const {
  requireInside(selection);
  std::string clip;
  forCells(selection, [&](int row, int column) {
    if (column > selection.left()) {
      clip += kCellEnd;
    } else if (row > selection.top()) {
      clip += kRowEnd;
    }
    clip += text(row, column);
  });
  return clip;
}

Extent ObjectGrid::clear(const Selection& selection) {
  requireInside(selection);
  TextTable::Edit edit(m_table);
  forCells(selection, [&](int row, int column) { edit.put(row, column, ""); });
  return edit.close();
}

std::optional<Extent> ObjectGrid::paste(const Selection& selection, std::string_view clipboard) {
  requireInside(selection);
  const std::string text = withRowEnds(clipboard);
  const std::string_view lastRow = std::string_view(text).substr(text.find_last_of(kRowEnd) + 1);
  const std::size_t height = partsOf(text, kRowEnd);
  const std::size_t width = partsOf(lastRow, kCellEnd);
  if (height > static_cast<std::size_t>(rowCount() - selection.Row) ||
      width > static_cast<std::size_t>(columnCount() - selection.Col)) {
    return std::nullopt;
  }
  const Selection target{selection.Row, selection.Col, selection.Row + static_cast<int>(height) - 1,
                         selection.Col + static_cast<int>(width) - 1};

  TextTable::Edit edit(m_table);
  int row = target.Row;
  forParts(text, kRowEnd, [&](std::string_view cells) {
    int column = target.Col;
    forParts(cells, kCellEnd, [&](std::string_view cell) {
      if (column <= target.ColSel) edit.put(row, column, std::string(cell));
      ++column;
    });
    ++row;
  });
  return Extent{edit.close().what, target};
}

Extent ObjectGrid::insertRows(const Selection& selection) {
  requireInside(selection);
  TextTable::Edit edit(m_table);
  edit.insertRows(selection.top(), selection.bottom() - selection.top() + 1);
  return edit.close();
}

Extent ObjectGrid::removeRows(const Selection& selection) {
  requireInside(selection);
  TextTable::Edit edit(m_table);
  edit.removeRows(selection.top(), selection.bottom() - selection.top() + 1);
  return edit.close();
}

Extent ObjectGrid::append(const model::ObjectTables& rows) {
  const std::vector<TextRow> texts = textsOf(m_kind, rows);
  if (texts.empty()) return {};
  std::size_t dataRows = texts.size();
  int first = 0;
  for (int row = 0; row < rowCount(); ++row) {
    if (!RowHasData(row)) continue;
    ++dataRows;
    first = row + 1;
  }
  requireTableSize(dataRows);

  const int count = static_cast<int>(texts.size());
  TextTable::Edit edit(m_table);
  edit.addRows(first + count - rowCount());
  for (int i = 0; i < count; ++i) {
    for (int column = 0; column < columnCount(); ++column) {
      edit.put(first + i, column, texts[static_cast<std::size_t>(i)][static_cast<std::size_t>(column)]);
    }
  }
  return {edit.close().what, {first, 0, first + count - 1, columnCount() - 1}};
}

bool ObjectGrid::canUndo() const {
  return m_table.canUndo();
}

bool ObjectGrid::canRedo() const {
  return m_table.canRedo();
}

Extent ObjectGrid::undo() {
  return m_table.undo();
}

Extent ObjectGrid::redo() {
  return m_table.redo();
}

Summary ObjectGrid::summary(const Selection& selection) const {
  requireInside(selection);
  Summary summary;
  forCells(selection, [&](int row, int column) {
    const std::optional<double> number = base::toNumber(text(row, column));
    if (!number) return;
    ++summary.count;
    summary.sum += *number;
  });
  return summary;
}

void ObjectGrid::requireInside(const Selection& selection) const {
  requireCell(selection.top(), selection.left());
  requireCell(selection.bottom(), selection.right());
}

void ObjectGrid::requireCell(int row, int column) const {
  static_cast<void>(m_table.text(row, column));  // raises what is outside
}

}  // namespace torvik::grid
