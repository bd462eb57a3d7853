// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "model/objects.h"

/// One description of each record's fields: key, kind and default. The input file, the default rows and the
/// columns of the grids all go by these lists.
namespace torvik::model {

/// One input field of record `Row`, in the order in which a file holds it.
/// A number's default passes through text, so it has at most 15 significant digits.
template <class Row>
struct Field {
  using Integer = std::int16_t Row::*;
  using Number = double Row::*;
  using Text = std::string Row::*;

  std::string_view key;
  std::variant<Integer, Number, Text> member;
  std::variant<std::int16_t, double, std::string_view>
      defaultValue;  ///< of the alternative that `member` holds

  [[nodiscard]] bool isNumber() const { return std::holds_alternative<Number>(member); }
  /// The default as text: plain decimal, plain text or the text.
  [[nodiscard]] std::string defaultText() const;
};

/// The fields of a record type, in file order. Instantiated for the five records.
template <class Row>
std::span<const Field<Row>> fieldsOf();

/// A field's value as text, in the form that a file and a grid hold.
template <class Row>
std::string textOf(const Row& row, const Field<Row>& field);

}  // namespace torvik::model
