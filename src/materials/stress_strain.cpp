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
bool isPlainLaw(const Laws& laws) {
  return std::visit(
      []<class Law>(const Law& law) {
        if constexpr (kHasFormula<Law>) {
          return law.plain();
        } else {
          return false;
        }
      },
      laws);
}

template <class Laws>
double stressOf(Laws& laws, double strain, UserCurveCache& files, StressStrainContext& context) {
  return std::visit(
      [&]<class Law>(Law& law) -> double {
        if constexpr (std::is_same_v<Law, laws::Unknown>) {
          throw base::InternalError(base::kImpossibleCase, "Type \"" + base::printable(law.Type) + "\"");
        } else if constexpr (std::is_same_v<Law, laws::UserFile>) {
          return files.stress(strain, law.File, context.report);
        } else {
          if constexpr (std::is_same_v<Law, laws::SolidConfined>) {
            law.prepare(context.confinement, context.prompt);
          }
          return law(strain);
        }
      },
      laws);
}

template <class Laws>
void stressesOf(const Laws& laws, std::span<const double> strains, std::span<double> out) {
  if (!isPlainLaw(laws))
    throw base::InternalError(base::kImpossibleCase, "Stresses of a law that is not plain");
  std::visit(
      [&]<class Law>(const Law& shared) {
        if constexpr (kHasFormula<Law>) {
          const Law law = shared;  // a copy that `out` can not alias: its constants stay in registers
          for (std::size_t i = 0; i < strains.size(); ++i) out[i] = law(strains[i]);
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
  solidFiles.startJob();
  barFiles.startJob();
  tendonFiles.startJob();
}

SolidLaw::SolidLaw(const model::SolidObject& row) {
  const base::FlagKeeper keeper;
  if (row.Type == "File") {
    m_law = laws::UserFile{row.File};
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

bool SolidLaw::isPlain() const {
  return isPlainLaw(m_law);
}

double SolidLaw::stress(double strain, StressStrainContext& context) {
  return stressOf(m_law, strain, context.solidFiles, context);
}

void SolidLaw::stresses(std::span<const double> strains, std::span<double> out) const {
  stressesOf(m_law, strains, out);
}

BarLaw::BarLaw(const model::BarObject& row) {
  const base::FlagKeeper keeper;
  if (row.Type == "File") {
    m_law = laws::UserFile{row.File};
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

bool BarLaw::isPlain() const {
  return isPlainLaw(m_law);
}

double BarLaw::stress(double strain, StressStrainContext& context) {
  return stressOf(m_law, strain, context.barFiles, context);
}

void BarLaw::stresses(std::span<const double> strains, std::span<double> out) const {
  stressesOf(m_law, strains, out);
}

TendonLaw::TendonLaw(const model::TendonObject& row) {
  const base::FlagKeeper keeper;
  if (row.Type == "File") {
    m_law = laws::UserFile{row.File};
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

bool TendonLaw::isPlain() const {
  return isPlainLaw(m_law);
}

double TendonLaw::stress(double strain, StressStrainContext& context) {
  return stressOf(m_law, strain, context.tendonFiles, context);
}

void TendonLaw::stresses(std::span<const double> strains, std::span<double> out) const {
  stressesOf(m_law, strains, out);
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
  return SolidLaw(row).stress(strain, context);
}

double fncSSBar(double strain, const model::BarObject& row, StressStrainContext& context) {
  return BarLaw(row).stress(strain, context);
}

double fncSSTendon(double strain, const model::TendonObject& row, StressStrainContext& context) {
  return TendonLaw(row).stress(strain, context);
}

}  // namespace torvik::materials
