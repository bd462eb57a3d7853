// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "model/objects.h"

/// What the grids of the five object tables show: columns, cell kinds, lists and bounds, as data.
namespace torvik::grid {

using model::ObjectKind;

/// `Prestressing` of a tendon.
inline constexpr std::string_view kPreTensioning = "Pre-tensioning";
inline constexpr std::string_view kPostTensioning = "Post-tensioning";

/// What opens over a cell.
enum class CellKind {
  Flag,     ///< "+" or empty; a check box
  Number,   ///< free text with a key filter
  Spinner,  ///< an integer, with an up-down control
  List,     ///< one of a closed list
  Combo,    ///< one of a list, or free text
  File,     ///< a path; a button that opens the file dialog
  Fixed,    ///< nothing: a derived value
};

struct SpinRange {
  int Minimum = 1;
  int Maximum = 200;
  int Increment = 1;
};

/// Another cell of the row must hold exactly this text for the editor to open.
struct Condition {
  int column;
  std::string_view text;
};

/// One data column. Columns are numbered from 0.
struct Column {
  std::string_view caption;
  std::string_view key;  ///< of the field in `model::fieldsOf`
  CellKind cell;
  std::string_view filter;                  ///< of `base::KeyFilter`; empty for cells without typing
  SpinRange spin;                           ///< of a Spinner
  std::span<const std::string_view> items;  ///< of a List or a Combo
  std::optional<Condition> opensIf;         ///< Watch and Sheath cells
  bool firstKeyTypes = false;  ///< the key that opens the editor is handed on to it and replaces the text
};

/// @throws InternalError 51 for a kind outside the five, as all of these
std::span<const Column> columnsOf(ObjectKind kind);
/// "Object - Bar (Tension +)"
std::string_view captionOf(ObjectKind kind);
/// Number of the column of a field; @throws InternalError 51 for a key that the kind does not have
int columnOf(ObjectKind kind, std::string_view key);

}  // namespace torvik::grid
