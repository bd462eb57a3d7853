// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/stress_strain_curve.h"

#include "base/errors.h"
#include "base/fault.h"
#include "base/files.h"
#include "base/settings.h"

namespace torvik::materials {

namespace {

using base::OptionId;

constexpr double kMostSteps = 1e6;

template <class Law, class Row>
std::vector<CurvePoint> sample(const Row& row, const CurveRange& range, StressStrainContext& context) {
  const auto& [from, to, step] = range;
  if (base::divide(to - from, step, "steps of the stress-strain curve, (To - From) / Step") > kMostSteps)
    throw base::NumericFault(base::NumericFault::Kind::Overflow, "steps of the stress-strain curve");

  const Law law(row, context);
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

std::string missingForCurve(const std::string& Type, const std::string& File) {
  if (Type.empty()) return "No object type in the corrent row.";
  if (Type != "File") return {};
  if (File.empty()) return "No file name.";
  return base::isFile(File) ? "" : "File not found.";
}

CurveRange curveRange(model::ObjectKind kind, const base::ProfileFile& settings) {
  const auto read = [&](OptionId from, OptionId to, OptionId step) {
    return CurveRange{base::optionReal(settings, from), base::optionReal(settings, to),
                      base::optionReal(settings, step)};
  };
  switch (kind) {
    case model::ObjectKind::Solid:
      return read(OptionId::StrainSolidFrom, OptionId::StrainSolidTo, OptionId::StrainSolidStep);
    case model::ObjectKind::Bar:
      return read(OptionId::StrainBarFrom, OptionId::StrainBarTo, OptionId::StrainBarStep);
    case model::ObjectKind::Tendon:
      return read(OptionId::StrainTendonFrom, OptionId::StrainTendonTo, OptionId::StrainTendonStep);
    case model::ObjectKind::Beam:
    case model::ObjectKind::AxialForce:
      break;
  }
  throw base::InternalError(base::kImpossibleCase, "strains of a kind without a law");
}

std::vector<CurvePoint> stressStrainCurve(const model::SolidObject& row, const CurveRange& range,
                                          StressStrainContext& context) {
  return sample<SolidLaw>(row, range, context);
}

std::vector<CurvePoint> stressStrainCurve(const model::BarObject& row, const CurveRange& range,
                                          StressStrainContext& context) {
  return sample<BarLaw>(row, range, context);
}

std::vector<CurvePoint> stressStrainCurve(const model::TendonObject& row, const CurveRange& range,
                                          StressStrainContext& context) {
  return sample<TendonLaw>(row, range, context);
}

}  // namespace torvik::materials
