// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

#include "grid/columns.h"
#include "grid/history.h"
#include "model/objects.h"

/// Between the rows of a table and the texts of a grid.
namespace torvik::grid {

/// The rows of the table of that kind; @throws InternalError 51, with the row, for a flag that is not 0 or 1
std::vector<TextRow> textsOf(ObjectKind kind, const model::ObjectTables& tables);
/// A record at the end of the table; a field whose text can not be read stays 0.
void appendRecord(ObjectKind kind, const TextRow& texts, model::ObjectTables& tables);
/// Exchanges the tables of that kind.
void exchangeTable(ObjectKind kind, model::ObjectTables& a, model::ObjectTables& b);
/// Whether the cell's field would become 0 in silence.
bool wouldBeLost(const Column& column, std::string_view text);

}  // namespace torvik::grid
