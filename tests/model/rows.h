// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "model/input_file.h"

namespace torvik::model {

inline ObjectTables tablesOf(std::string text) {
  ObjectTables tables;
  readTables(base::ProfileFile::ofText(std::move(text), "a.inp"), tables);
  return tables;
}

/// All tables in the text form of a file.
inline std::string fileTextOf(const ObjectTables& tables) {
  base::ProfileFile file;
  writeTables(file, tables);
  return file.text();
}

/// A row of defaults in each table.
inline const std::string kOneOfEach =
    "[Beams]\nAll=1\n[Solids]\nAll=1\n[Bars]\nAll=1\n[Tendons]\nAll=1\n[AxialForces]\nAll=1\n";

}  // namespace torvik::model
