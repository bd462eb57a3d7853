// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "model/objects.h"

/// The plain numbers of a section, for those who work them out and those who show them. Signs: solids
/// compression positive, bars and tendons tension positive.
namespace torvik::section {

/// A row of a job.
struct RowOf {
  model::ObjectKind table = model::ObjectKind::Solid;  ///< solid, bar or tendon
  std::size_t row = 0;                                 ///< in the table of the job, from 0
  bool operator==(const RowOf&) const = default;
};

/// What each of the three tables of a section has of a thing.
template <class Thing>
struct PerTable {
  Thing solids;
  Thing bars;
  Thing tendons;
};

/// Strains on which an evaluation adds its own, a number for each row in table order.
using BaseStrains = PerTable<std::vector<double>>;

/// What an evaluation gives the rows of a table, in table order.
struct RowValues {
  std::vector<double> strain;
  std::vector<double> stress;  ///< [N/mm2]
  std::vector<double> force;   ///< stress * `Area` * `Number` [N]
};
using State = PerTable<RowValues>;

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

/// Edges of all solids, as depths [mm].
struct Extent {
  double BeamTop = 0;
  double BeamBottom = 0;
};

}  // namespace torvik::section
