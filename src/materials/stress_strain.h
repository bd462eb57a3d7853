// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <variant>

#include "base/errors.h"
#include "materials/confinement.h"
#include "materials/laws.h"
#include "materials/user_curve.h"
#include "model/objects.h"

/// Stress from strain. Strains are dimensionless, stresses N/mm2; solids are compression positive, bars and
/// tendons tension positive. docs/theory.md, "Stress-strain laws", has every formula.
namespace torvik::materials {

/// What the laws keep between calls: one object for a program, or for each of the jobs that run side by side.
struct StressStrainContext {
  ConfinementAnswers confinement;
  UserCurveCache solidFiles{"fncSSSolidFile"};
  UserCurveCache barFiles{"fncSSBarFile"};
  UserCurveCache tendonFiles{"fncSSTendonFile"};
  ConfinementPrompt* prompt = nullptr;  ///< answers the questions of "Restoration (Confined)"
  UserCurveCache::Report report;        ///< shows a user file that can not be read

  void startJob();
};

/// The law of a solid row, its `Type` looked up and all that the row alone decides worked out once.
/// Evaluating it gives the very bits of the formulas as docs/theory.md writes them.
class SolidLaw {
 public:
  /// Never fails: an unknown `Type` or an impossible constant is told by the first evaluation that needs it.
  explicit SolidLaw(const model::SolidObject& row);

  /// True where `stresses` may be called: the law keeps nothing between calls, asks nothing and can not
  /// throw. "Restoration (Confined)" is plain from the first call of `stress` on, which asks its questions.
  [[nodiscard]] bool isPlain() const;

  /// A stress that overflows is returned as it is and raises the flags of `base::fpflags`.
  /// @throws InternalError 51 where `Type` names no law, or nobody answers the questions of the confined law
  /// @throws NumericFault where a constant or a quotient of the law can not be worked out
  double stress(double strain, StressStrainContext& context);

  /// Stresses of many rows of a plain law; the spans have one size. No exception; overflow raises the flags
  /// of `base::fpflags`.
  void stresses(std::span<const double> strains, std::span<double> out) const;

 private:
  std::variant<laws::Unknown, laws::UserFile, laws::Elastic, laws::SolidJsce, laws::SolidExponential,
               laws::SolidMuguruma, laws::SolidConfined>
      m_law;
};

/// The law of a bar row; see `SolidLaw`.
class BarLaw {
 public:
  explicit BarLaw(const model::BarObject& row);
  [[nodiscard]] bool isPlain() const;
  double stress(double strain, StressStrainContext& context);
  void stresses(std::span<const double> strains, std::span<double> out) const;

 private:
  std::variant<laws::Unknown, laws::UserFile, laws::Elastic, laws::BarJsce, laws::BarSteel, laws::Frp> m_law;
};

/// The law of a tendon row; see `SolidLaw`.
class TendonLaw {
 public:
  explicit TendonLaw(const model::TendonObject& row);
  [[nodiscard]] bool isPlain() const;
  double stress(double strain, StressStrainContext& context);
  void stresses(std::span<const double> strains, std::span<double> out) const;

 private:
  std::variant<laws::Unknown, laws::UserFile, laws::Elastic, laws::TendonJsce, laws::TendonSteel, laws::Frp>
      m_law;
};

/// True where both rows have one law with one set of constants, so that one object may serve both. Fields
/// that no law of the table reads take no part.
bool sameLaw(const model::SolidObject& a, const model::SolidObject& b);
bool sameLaw(const model::BarObject& a, const model::BarObject& b);
bool sameLaw(const model::TendonObject& a, const model::TendonObject& b);

/// One stress, without a law object kept.
double fncSSSolid(double strain, const model::SolidObject& row, StressStrainContext& context);
double fncSSBar(double strain, const model::BarObject& row, StressStrainContext& context);
double fncSSTendon(double strain, const model::TendonObject& row, StressStrainContext& context);

}  // namespace torvik::materials
