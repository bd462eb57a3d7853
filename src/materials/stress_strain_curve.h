// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "base/errors.h"
#include "base/profile.h"
#include "materials/stress_strain.h"
#include "model/objects.h"

namespace torvik::materials {

struct CurvePoint {
  double strain = 0;
  double stress = 0;  ///< [N/mm2], in the sign of the row's table
};

/// Calls `use` with a row of one of the three kinds that have a law; @throws InternalError 51 for the others
template <class Use>
auto withLawRow(const model::ObjectTables& tables, model::ObjectKind kind, std::size_t row, const Use& use) {
  switch (kind) {
    case model::ObjectKind::Solid:
      return use(tables.Solids.at(row));
    case model::ObjectKind::Bar:
      return use(tables.Bars.at(row));
    case model::ObjectKind::Tendon:
      return use(tables.Tendons.at(row));
    case model::ObjectKind::Beam:
    case model::ObjectKind::AxialForce:
      break;
  }
  throw base::InternalError(base::kImpossibleCase, "stress-strain curve of a row without a law");
}

/// Why a row has no curve, in the words that users are told; empty where it has one.
std::string missingForCurve(const std::string& Type, const std::string& File);

/// Strains of a curve.
struct CurveRange {
  double From = 0;
  double To = 0;
  double Step = 0;
};

/// The options of a kind: `StrainSolidFrom`, `...To`, `...Step`, and those of bars and tendons.
/// @throws InputError of an option that is no number; InternalError 51 for a kind without a law
CurveRange curveRange(model::ObjectKind kind, const base::ProfileFile& settings);

/// The stress-strain curve of a row: from the first strain, adding the step while the last one is not passed.
/// @throws NumericFault DivisionByZero for a step of 0, Overflow for a range of over a million steps, and as
/// the laws
/// @throws InternalError 51 as the laws
std::vector<CurvePoint> stressStrainCurve(const model::SolidObject& row, const CurveRange& range,
                                          StressStrainContext& context);
std::vector<CurvePoint> stressStrainCurve(const model::BarObject& row, const CurveRange& range,
                                          StressStrainContext& context);
std::vector<CurvePoint> stressStrainCurve(const model::TendonObject& row, const CurveRange& range,
                                          StressStrainContext& context);

}  // namespace torvik::materials
