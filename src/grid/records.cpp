// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/records.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "base/errors.h"
#include "base/number_text.h"
#include "grid/object_grid.h"
#include "model/fields.h"

namespace torvik::grid {

namespace {

template <class Row>
const model::Field<Row>& fieldOf(const Column& column) {
  const auto fields = model::fieldsOf<Row>();
  const auto found = std::ranges::find(fields, column.key, &model::Field<Row>::key);
  if (found == fields.end()) throw base::InternalError(base::kImpossibleCase, std::string(column.key));
  return *found;
}

template <class Rows>
using RowOf = typename std::remove_cvref_t<Rows>::value_type;

template <class Row>
std::string cellText(const Row& row, const Column& column) {
  const model::Field<Row>& field = fieldOf<Row>(column);
  if (column.cell != CellKind::Flag) return model::textOf(row, field);
  return CellTextFromFlag(row.*std::get<typename model::Field<Row>::Integer>(field.member));
}

std::optional<int> flagOf(std::string_view text) {
  if (text == "+") return 1;
  if (text.empty()) return 0;
  return std::nullopt;
}

std::optional<std::int16_t> integerOf(std::string_view text) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::optional<double> number = base::toNumber(text);
  if (!number) return std::nullopt;
  const double rounded = std::nearbyint(*number);
  if (rounded < Limits::min() || rounded > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(rounded);
}

void read(const Column& column, const std::string& text, std::int16_t& value) {
  if (column.cell == CellKind::Flag) {
    value = static_cast<std::int16_t>(flagOf(text).value_or(value));
  } else {
    value = integerOf(text).value_or(value);
  }
}

void read(const Column&, const std::string& text, double& value) {
  value = base::toNumber(text).value_or(value);
}

void read(const Column&, const std::string& text, std::string& value) {
  value = text;
}

}  // namespace

int FlagFromCellText(std::string_view text) {
  if (const std::optional<int> value = flagOf(text)) return *value;
  throw base::InternalError(base::kImpossibleCase, "flag cell \"" + base::printable(text) + "\"");
}

std::string CellTextFromFlag(int value) {
  if (value == 1) return "+";
  if (value == 0) return "";
  throw base::InternalError(base::kImpossibleCase, "flag " + base::plainText(value));
}

std::vector<TextRow> textsOf(ObjectKind kind, const model::ObjectTables& tables) {
  const auto columns = columnsOf(kind);
  std::vector<TextRow> texts;
  model::visitTable(tables, kind, [&](const auto& rows) {
    texts.reserve(rows.size());
    for (const auto& row : rows) {
      TextRow& cells = texts.emplace_back();
      cells.reserve(columns.size());
      try {
        for (const Column& column : columns) cells.push_back(cellText(row, column));
      } catch (const base::InternalError& error) {
        throw error.within(std::string(model::sectionNameOf(kind)) + " " +
                           base::plainText(static_cast<long long>(texts.size() - 1)) + " " +
                           std::string(columns[cells.size()].key));
      }
    }
  });
  return texts;
}

void appendRecord(ObjectKind kind, const TextRow& texts, model::ObjectTables& tables) {
  const auto columns = columnsOf(kind);
  model::visitTable(tables, kind, [&](auto& rows) {
    using Row = RowOf<decltype(rows)>;
    Row& row = rows.emplace_back();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      std::visit([&](auto member) { read(columns[i], texts[i], row.*member); },
                 fieldOf<Row>(columns[i]).member);
    }
  });
}

void exchangeTable(ObjectKind kind, model::ObjectTables& a, model::ObjectTables& b) {
  model::visitTable(a, kind, [&](auto& ofA) {
    model::visitTable(b, kind, [&](auto& ofB) {
      if constexpr (std::is_same_v<decltype(ofA), decltype(ofB)>) ofA.swap(ofB);
    });
  });
}

bool wouldBeLost(const Column& column, std::string_view text) {
  if (text.empty()) return false;
  switch (column.cell) {
    case CellKind::Flag:
      return !flagOf(text);
    case CellKind::Spinner:
      return !integerOf(text);
    case CellKind::Number:
    case CellKind::Fixed:
      return !base::toNumber(text);
    case CellKind::List:
    case CellKind::Combo:
    case CellKind::File:
      return false;
  }
  return false;
}

}  // namespace torvik::grid
