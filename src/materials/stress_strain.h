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

/// Where each table's searches in user files have come to.
struct CurvePlaces {
  CurvePlace solids;
  CurvePlace bars;
  CurvePlace tendons;
};

/// What the laws keep from one evaluation to the next: a value. Bringing one back brings back what a law gave
/// then, bit by bit.
struct LawMemory {
  ConfinementAnswers confinement;
  CurvePlaces places;
};

/// What the laws keep, and where they get the rest: one object for a program, or for each of the jobs that
/// run side by side. Views work on copies (`lookOnly`), so that a look changes no result.
struct StressStrainContext {
  LawMemory memory;
  UserCurves solidFiles{"fncSSSolidFile"};
  UserCurves barFiles{"fncSSBarFile"};
  UserCurves tendonFiles{"fncSSTendonFile"};
  ConfinementPrompt* prompt = nullptr;  ///< answers the questions of "Restoration (Confined)"
  UserCurves::Report report;            ///< shows a user file that can not be read

  void startJob();
  /// A copy that shares what was read, asks nobody and reports nothing.
  [[nodiscard]] StressStrainContext lookOnly() const;
};

/// The law of a solid row, its `Type` looked up and all that the row alone decides worked out once. It keeps
/// nothing between calls. Evaluating it gives the very bits of the formulas as docs/theory.md writes them.
class SolidLaw {
 public:
  /// Never fails: an unknown `Type` or an impossible constant is told by the first evaluation that needs it.
  SolidLaw(const model::SolidObject& row, StressStrainContext& context);

  /// A stress that overflows is returned as it is and raises the flags of `base::fpflags`.
  /// @throws InternalError 51 where `Type` names no law, or nobody answers the questions of the confined law
  /// @throws NumericFault where a constant or a quotient of the law can not be worked out
  double stress(double strain, StressStrainContext& context) const;

  /// Stresses of many rows; the spans have one size. No exception; overflow raises the flags of
  /// `base::fpflags`.
  /// @return false, with `out` untouched, where the rows have to be gone through one by one: the law keeps a
  ///         place in a file, has a question left to ask, or may fail
  bool stresses(std::span<const double> strains, std::span<double> out,
                const StressStrainContext& context) const;

 private:
  std::variant<laws::Unknown, laws::UserFile, laws::Elastic, laws::SolidJsce, laws::SolidExponential,
               laws::SolidMuguruma, laws::SolidConfined>
      m_law;
};

/// The law of a bar row; see `SolidLaw`.
class BarLaw {
 public:
  BarLaw(const model::BarObject& row, StressStrainContext& context);
  double stress(double strain, StressStrainContext& context) const;
  bool stresses(std::span<const double> strains, std::span<double> out,
                const StressStrainContext& context) const;

 private:
  std::variant<laws::Unknown, laws::UserFile, laws::Elastic, laws::BarJsce, laws::BarSteel, laws::Frp> m_law;
};

/// The law of a tendon row; see `SolidLaw`.
class TendonLaw {
 public:
  TendonLaw(const model::TendonObject& row, StressStrainContext& context);
  double stress(double strain, StressStrainContext& context) const;
  bool stresses(std::span<const double> strains, std::span<double> out,
                const StressStrainContext& context) const;

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
