// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/default_rows.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "base/errors.h"
#include "base/fault.h"
#include "base/number_text.h"
#include "model/fields.h"
#include "model/input_file.h"

namespace torvik::model {

namespace {

template <class Row>
void writeCells(base::ProfileFile& settings, ObjectKind kind, const std::vector<DefaultCell>& cells) {
  const auto fields = fieldsOf<Row>();
  for (const DefaultCell& cell : cells) {
    if (std::ranges::find(fields, cell.key, &Field<Row>::key) == fields.end()) {
      throw base::InternalError(base::kImpossibleCase,
                                std::string(sectionNameOf(kind)) + " has no key " + std::string(cell.key));
    }
  }
  for (const Field<Row>& field : fields) {
    const auto cell = std::ranges::find(cells, field.key, &DefaultCell::key);
    if (cell == cells.end()) continue;
    const bool isText = std::holds_alternative<typename Field<Row>::Text>(field.member);
    const bool isLeftEmpty = !isText && base::trimmed(cell->text).empty();
    settings.ProfileWrite(sectionNameOf(kind), field.key, isLeftEmpty ? field.defaultText() : cell->text);
  }
}

}  // namespace

void AddDefaultRows(ObjectTables& tables, ObjectKind kind, int count, const base::ProfileFile& settings) {
  visitTable(tables, kind, [&](auto& rows) {
    if (count <= 0) return;
    const std::size_t newSize = rows.size() + static_cast<std::size_t>(count);
    base::toInt16(static_cast<long long>(newSize), "number of rows");
    typename std::remove_reference_t<decltype(rows)>::value_type row;
    readRow(settings, sectionNameOf(kind), row);
    rows.resize(newSize, row);
  });
}

void writeDefaultRow(base::ProfileFile& settings, ObjectKind kind, const std::vector<DefaultCell>& cells) {
  const ObjectTables tables;
  visitTable(tables, kind, [&](const auto& rows) {
    writeCells<typename std::remove_reference_t<decltype(rows)>::value_type>(settings, kind, cells);
  });
}

}  // namespace torvik::model
