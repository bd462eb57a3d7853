// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/stress_strain_curve.h"

#include "base/fault.h"
#include "base/settings.h"

namespace torvik::analysis {

namespace {

using base::OptionId;

constexpr double kMostSteps = 1e6;

template <class Law, class Row>
std::vector<CurvePoint> sample(const Row& row, const base::ProfileFile& settings, OptionId fromKey,
                               OptionId toKey, OptionId stepKey, materials::StressStrainContext& context) {
  const double from = base::optionReal(settings, fromKey);
  const double to = base::optionReal(settings, toKey);
  const double step = base::optionReal(settings, stepKey);
  if (base::divide(to - from, step, "steps of the stress-strain curve, (To - From) / Step") > kMostSteps)
    throw base::NumericFault(base::NumericFault::Kind::Overflow, "steps of the stress-strain curve");

  Law law(row);
  std::vector<CurvePoint> points;
  for (double strain = from; step > 0 ? strain <= to : strain >= to; strain += step) {
    points.push_back({strain, base::finite(law.stress(strain, context), "stress")});
    if (strain + step == strain)
      throw base::NumericFault(base::NumericFault::Kind::InvalidOperation,
                               "steps of the stress-strain curve: the step is lost in the strain");
  }
  return points;
}

}  // namespace

std::vector<CurvePoint> stressStrainCurve(const model::SolidObject& row, const base::ProfileFile& settings,
                                          materials::StressStrainContext& context) {
  return sample<materials::SolidLaw>(row, settings, OptionId::StrainSolidFrom, OptionId::StrainSolidTo,
                                     OptionId::StrainSolidStep, context);
}

std::vector<CurvePoint> stressStrainCurve(const model::BarObject& row, const base::ProfileFile& settings,
                                          materials::StressStrainContext& context) {
  return sample<materials::BarLaw>(row, settings, OptionId::StrainBarFrom, OptionId::StrainBarTo,
                                   OptionId::StrainBarStep, context);
}

std::vector<CurvePoint> stressStrainCurve(const model::TendonObject& row, const base::ProfileFile& settings,
                                          materials::StressStrainContext& context) {
  return sample<materials::TendonLaw>(row, settings, OptionId::StrainTendonFrom, OptionId::StrainTendonTo,
                                      OptionId::StrainTendonStep, context);
}

}  // namespace torvik::analysis
