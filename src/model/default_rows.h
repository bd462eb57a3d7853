// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/profile.h"
#include "model/objects.h"

/// New rows start from the defaults of the settings file (sections `Beam`, `Solid`, `Bar`, `Tendon`,
/// `AxialForce`), and where it has none from the defaults of an input file.
namespace torvik::model {

/// Adds `count` rows at the end of the table of that kind; none where `count` is not positive.
/// @throws InternalError 51 for a kind outside the five
/// @throws InputError of the key for a default that its field can not hold; no row is added then
/// @throws NumericFault Overflow where the table would hold more than 32767 rows; no row is added then
void AddDefaultRows(ObjectTables& tables, ObjectKind kind, int count, const base::ProfileFile& settings);

/// One cell of a row that becomes the default.
struct DefaultCell {
  std::string_view key;
  std::string text;  ///< of a flag "1" or "0"
};

/// Writes the keys of that kind in file order. An empty number or integer is written as the key's built-in
/// default; a key without a cell is left as it is.
/// @throws InternalError 51 for a kind outside the five, or a cell of a key that the kind does not have
/// @throws InputError of the key for a text with a line end or NUL
void writeDefaultRow(base::ProfileFile& settings, ObjectKind kind, const std::vector<DefaultCell>& cells);

}  // namespace torvik::model
