// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/stress_strain.h"

#include <bit>
#include <cstdint>
#include <string>
#include <type_traits>

#include "base/fault.h"

namespace torvik::materials {

namespace {

template <class Law>
constexpr bool kHasFormula = std::is_invocable_r_v<double, const Law&, double>;

template <class Laws>
double stressOf(const Laws& laws, double strain, UserCurves& files, CurvePlace& place,
                StressStrainContext& context) {
  return std::visit(
      [&]<class Law>(const Law& law) -> double {
        if constexpr (std::is_same_v<Law, laws::Unknown>) {
          throw base::InternalError(base::kImpossibleCase, "Type \"" + base::printable(law.Type) + "\"");
        } else if constexpr (std::is_same_v<Law, laws::UserFile>) {
          return files.stress(strain, law.number, place, context.report);
        } else if constexpr (std::is_same_v<Law, laws::SolidConfined>) {
          return law.curve(context.memory.confinement, context.prompt)(strain);
        } else {
          return law(strain);
        }
      },
      laws);
}

template <class Law>
bool evaluatePlain(Law law, std::span<const double> strains, std::span<double> out) {
  if (!law.plain()) return false;
  // `law` is a copy that `out` can not alias: its constants stay in registers.
  for (std::size_t i = 0; i < strains.size(); ++i) out[i] = law(strains[i]);
  return true;
}

bool evaluateConfined(const laws::SolidConfined& law, std::span<const double> strains, std::span<double> out,
                      ConfinementAnswers answers) {
  if (!answers.complete()) return false;
  try {
    return evaluatePlain(law.curve(answers, nullptr), strains, out);
  } catch (const base::NumericFault&) {
    return false;  // told again with the name of its row
  }
}

template <class Laws>
bool stressesOf(const Laws& laws, std::span<const double> strains, std::span<double> out,
                const StressStrainContext& context) {
  return std::visit(
      [&]<class Law>(const Law& law) {
        if constexpr (std::is_same_v<Law, laws::SolidConfined>) {
          return evaluateConfined(law, strains, out, context.memory.confinement);
        } else if constexpr (kHasFormula<Law>) {
          return evaluatePlain(law, strains, out);
        } else {
          return false;
        }
      },
      laws);
}

bool sameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

template <class Row>
bool sameSteelLaw(const Row& a, const Row& b) {
  if (a.Type != b.Type) return false;
  if (a.Type == "File") return a.File == b.File;
  return sameBits(a.ElasticModulus, b.ElasticModulus) && sameBits(a.YieldStress, b.YieldStress) &&
         sameBits(a.YieldStrain, b.YieldStrain) && sameBits(a.UltimateStress, b.UltimateStress) &&
         sameBits(a.UltimateStrain, b.UltimateStrain);
}

}  // namespace

void StressStrainContext::startJob() {
  solidFiles.startJob(memory.places.solids);
  barFiles.startJob(memory.places.bars);
  tendonFiles.startJob(memory.places.tendons);
}

StressStrainContext StressStrainContext::lookOnly() const {
  StressStrainContext copy = *this;
  copy.prompt = nullptr;
  copy.report = nullptr;
  for (UserCurves* files : {&copy.solidFiles, &copy.barFiles, &copy.tendonFiles}) files->stopReading();
  return copy;
}

SolidLaw::SolidLaw(const model::SolidObject& row, StressStrainContext& context) {
  const base::FlagKeeper keeper;
  if (row.Type == "File") {
    m_law = laws::UserFile{context.solidFiles.numberOf(row.File)};
  } else if (row.Type == "Elastic") {
    m_law = laws::Elastic{row.ElasticModulus};
  } else if (row.Type == "JSCE (Design)") {
    m_law = laws::SolidJsce(row);
  } else if (row.Type == "e Function (Plane)") {
    m_law = laws::SolidExponential(row);
  } else if (row.Type == "Muguruma (Plane)") {
    m_law = laws::SolidMuguruma(row);
  } else if (row.Type == "Restoration (Confined)") {
    m_law = laws::SolidConfined(row);
  } else {
    m_law = laws::Unknown{row.Type};
  }
}

double SolidLaw::stress(double strain, StressStrainContext& context) const {
  return stressOf(m_law, strain, context.solidFiles, context.memory.places.solids, context);
}

bool SolidLaw::stresses(std::span<const double> strains, std::span<double> out,
                        const StressStrainContext& context) const {
  return stressesOf(m_law, strains, out, context);
}

BarLaw::BarLaw(const model::BarObject& row, StressStrainContext& context) {
  const base::FlagKeeper keeper;
  if (row.Type == "File") {
    m_law = laws::UserFile{context.barFiles.numberOf(row.File)};
  } else if (row.Type == "Elastic") {
    m_law = laws::Elastic{row.ElasticModulus};
  } else if (row.Type == "JSCE (Design)") {
    m_law = laws::BarJsce(row);
  } else if (row.Type == "Steel Bar") {
    m_law = laws::BarSteel(row);
  } else if (row.Type == "FRP Bar") {
    m_law = laws::Frp{row.ElasticModulus, row.UltimateStrain};
  } else {
    m_law = laws::Unknown{row.Type};
  }
}

double BarLaw::stress(double strain, StressStrainContext& context) const {
  return stressOf(m_law, strain, context.barFiles, context.memory.places.bars, context);
}

bool BarLaw::stresses(std::span<const double> strains, std::span<double> out,
                      const StressStrainContext& context) const {
  return stressesOf(m_law, strains, out, context);
}

TendonLaw::TendonLaw(const model::TendonObject& row, StressStrainContext& context) {
  const base::FlagKeeper keeper;
  if (row.Type == "File") {
    m_law = laws::UserFile{context.tendonFiles.numberOf(row.File)};
  } else if (row.Type == "Elastic") {
    m_law = laws::Elastic{row.ElasticModulus};
  } else if (row.Type == "JSCE (Design)") {
    m_law = laws::TendonJsce(row);
  } else if (row.Type == "Steel Bar") {
    m_law = laws::TendonSteel(row);
  } else if (row.Type == "FRP Bar") {
    m_law = laws::Frp{row.ElasticModulus, row.UltimateStrain};
  } else {
    m_law = laws::Unknown{row.Type};
  }
}

double TendonLaw::stress(double strain, StressStrainContext& context) const {
  return stressOf(m_law, strain, context.tendonFiles, context.memory.places.tendons, context);
}

bool TendonLaw::stresses(std::span<const double> strains, std::span<double> out,
                         const StressStrainContext& context) const {
  return stressesOf(m_law, strains, out, context);
}

bool sameLaw(const model::SolidObject& a, const model::SolidObject& b) {
  if (a.Type != b.Type) return false;
  if (a.Type == "File") return a.File == b.File;
  return sameBits(a.ElasticModulus, b.ElasticModulus) && sameBits(a.FlexuralStrain, b.FlexuralStrain) &&
         sameBits(a.UltimateStress, b.UltimateStress) && sameBits(a.VolumetricRatio, b.VolumetricRatio);
}

bool sameLaw(const model::BarObject& a, const model::BarObject& b) {
  return sameSteelLaw(a, b);
}

bool sameLaw(const model::TendonObject& a, const model::TendonObject& b) {
  return sameSteelLaw(a, b);
}

double fncSSSolid(double strain, const model::SolidObject& row, StressStrainContext& context) {
  return SolidLaw(row, context).stress(strain, context);
}

double fncSSBar(double strain, const model::BarObject& row, StressStrainContext& context) {
  return BarLaw(row, context).stress(strain, context);
}

double fncSSTendon(double strain, const model::TendonObject& row, StressStrainContext& context) {
  return TendonLaw(row, context).stress(strain, context);
}

}  // namespace torvik::materials
