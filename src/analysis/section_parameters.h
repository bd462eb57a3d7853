// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "analysis/host.h"
#include "model/objects.h"

namespace torvik::analysis {

/// Properties of one transformed section. mm, N/mm2 and N.
struct SectionParameterRow {
  double A = 0;
  double yTop = 0;     ///< from `BeamTop` to the centroid
  double yBottom = 0;  ///< from the centroid to `BeamBottom`
  double I = 0;        ///< about the centroid
  double ZTop = 0;     ///< I over the centroid's depth from the datum, not over `yTop`
  double ZBottom = 0;
  double E = 0;
  double EI = 0;
  double EA = 0;

  /// In the order of the table's columns.
  [[nodiscard]] std::array<double, 9> values() const {
    return {A, yTop, yBottom, I, ZTop, ZBottom, E, EI, EA};
  }
};

/// The five sections, in the order of the table.
struct SectionParameterTable {
  enum Row { G, C, T, D, X };
  std::array<SectionParameterRow, 5> rows;
};

/// Column headings of the table: "Section", the nine values, "Note".
std::array<std::string_view, 11> sectionParameterHeadings();
/// "g", "c", "t", "d", "e"
std::string_view sectionParameterLetter(int row);
/// "Solid", "Solid - Bars - Ducts", ...
std::string_view sectionParameterNote(int row);

/// Sets `BeamTop` and `BeamBottom` of the first beam from the edges of all solids, and shows them in the
/// panels.
/// @throws NumericFault IndexOutOfRange where there is no beam or no solid
void SetBeamExtent(model::ObjectTables& job, Host& host);

/// Works out all five rows (docs/theory.md, "Section parameters"). Warns through the host, and leaves D and X
/// at zero, where the average modulus of the solids is 0.
/// @throws NumericFault naming the row and the quotient that fails
SectionParameterTable SectionParameters(model::ObjectTables& job, Host& host);

}  // namespace torvik::analysis
