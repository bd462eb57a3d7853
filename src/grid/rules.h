// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "grid/columns.h"
#include "grid/history.h"

/// What follows when the editor of a cell is left, as data.
namespace torvik::grid {

enum class Check {
  None,
  WithinSpan,  ///< limit <= FlexuralSpan < Span
  WithinSpin,  ///< within the column's spin range
  AtMost,      ///< at most limit
};

enum class Response {
  Reject,  ///< message, then the old text comes back
  Warn,    ///< message, the new text stays
};

enum class Formula {
  HalfDifference,      ///< (a - b) / 2
  HalfQuotient,        ///< (a / 2) / b
  Product,             ///< a * b
  Quotient,            ///< a / b
  Circle,              ///< area of diameter a
  BarArea,             ///< area of the designation a, else of the diameter a
  TendonArea,          ///< the same of a tendon
  SameText,            ///< the text of a
  FileType,            ///< "File" where a has text, else empty
  ZeroIfPreTensioned,  ///< "0" where a is "Pre-tensioning", else no change
};

/// A cell of the row that follows others, all named by their keys.
struct Derived {
  std::string_view target;
  Formula formula;
  std::string_view a;
  std::string_view b;
};

struct Rule {
  ObjectKind kind;
  std::string_view key;  ///< of the column that is committed
  Check check = Check::None;
  double limit = 0;
  Response response = Response::Reject;
  std::string_view message;  ///< with "{}" for the least and the greatest value of a spin range
  std::span<const Derived> derived;
  bool onlyOne = false;  ///< a flag that at most one row has
};

/// The rule of a column; nullptr where it has none.
const Rule* ruleOf(ObjectKind kind, std::string_view key);

/// Applies check and derived cells to the row, whose committed text is in its cell already. A text that is no
/// number where one is needed, a division by zero or a result that is not finite ends the rule in silence.
/// @param before  what a rejection puts back
/// @throws InternalError 51 for a text that a closed list does not hold
void applyRule(const Rule& rule, TextTable::Edit& edit, int row, const std::string& before,
               const std::function<void(const std::string&)>& report);

}  // namespace torvik::grid
