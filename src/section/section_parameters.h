// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "base/errors.h"
#include "model/objects.h"
#include "section/values.h"

namespace torvik::section {

/// @throws NumericFault IndexOutOfRange where there is no beam or no solid, Overflow
Extent beamExtent(const model::ObjectTables& job);

/// What came out, as far as it came: the extent stands before anything else can fail.
struct SectionParameterResult {
  std::optional<Extent> extent;
  SectionParameterTable table;  ///< whole where there is no fault
  /// The average modulus of the solids is 0: rows D and X stay at zero. A warning.
  bool isWithoutModulus = false;
  std::optional<base::NumericFault> fault;  ///< names the row and the quotient
};

/// Works out all five rows (docs/theory.md, "Section parameters").
SectionParameterResult SectionParameters(const model::ObjectTables& job);

}  // namespace torvik::section
