// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "base/profile.h"
#include "materials/stress_strain.h"
#include "model/objects.h"

namespace torvik::analysis {

struct CurvePoint {
  double strain = 0;
  double stress = 0;  ///< [N/mm2], in the sign of the row's table
};

/// The stress-strain curve of a row over the option range of its kind (`StrainSolidFrom`, `...To`, `...Step`,
/// and those of bars and tendons): from the first strain, adding the step while the last one is not passed.
/// @throws NumericFault DivisionByZero for a step of 0, Overflow for a range of over a million steps, and as
/// the laws
/// @throws InputError of an option that is no number; InternalError 51 as the laws
std::vector<CurvePoint> stressStrainCurve(const model::SolidObject& row, const base::ProfileFile& settings,
                                          materials::StressStrainContext& context);
std::vector<CurvePoint> stressStrainCurve(const model::BarObject& row, const base::ProfileFile& settings,
                                          materials::StressStrainContext& context);
std::vector<CurvePoint> stressStrainCurve(const model::TendonObject& row, const base::ProfileFile& settings,
                                          materials::StressStrainContext& context);

}  // namespace torvik::analysis
