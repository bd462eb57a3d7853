// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/laws.h"

#include <cmath>

#include "base/fault.h"

namespace torvik::materials::laws {

namespace {

using Kind = base::NumericFault::Kind;

/// a / b; where that is no finite number, `fault` becomes `where`, unless an earlier one is there.
double quotient(double a, double b, const char* where, Fault& fault) {
  const double result = a / b;
  if (!std::isfinite(result) && fault.where == nullptr) {
    fault = {where, b == 0 ? Kind::DivisionByZero : Kind::Overflow};
  }
  return result;
}

void expectFinite(double value, const char* where, Fault& fault) {
  if (!std::isfinite(value) && fault.where == nullptr) fault = {where, Kind::Overflow};
}

}  // namespace

void Fault::fail() const {
  throw base::NumericFault(kind, where);
}

SolidJsce::SolidJsce(const model::SolidObject& row)
    : E(row.ElasticModulus), ef(row.FlexuralStrain), plateau(0.85 * row.UltimateStress) {}

SolidExponential::SolidExponential(const model::SolidObject& row)
    : ef(row.FlexuralStrain), scale(row.UltimateStress * 6.75) {
  expectFinite(scale, "stress scale of \"e Function (Plane)\"", scaleFault);
}

SolidMuguruma::SolidMuguruma(const model::SolidObject& row) : ef(row.FlexuralStrain) {
  constexpr double kStep = 0.00001;
  constexpr double kMaxSteps =
      1e5;  // a strength hundreds of times that of any concrete; the loop takes too long

  fck = row.UltimateStress / 9.8 * 100;
  if (fck < 0) {
    fault = {"modulus of \"Muguruma (Plane)\"", Kind::InvalidOperation};
    return;
  }
  Ec = 231000 * std::sqrt(fck / 200);
  e0 = 0.0013 * (fck / 1000 + 1);
  if (!(e0 / kStep <= kMaxSteps)) {
    fault = {"strain at the peak of \"Muguruma (Plane)\"", Kind::Overflow};
    return;
  }
  eu = 0.00413 * (1 - fck / 2000);
  A = (fck - e0 * Ec) / (e0 * e0);

  // Area under the rising curve; the last part of a step beyond e0 is not counted.
  double W = 0;
  for (double t = kStep; t <= e0; t += kStep) W += (rising(t - kStep) + rising(t)) * kStep / 2;

  const double fu =
      fck + quotient(2 * (W - e0 * fck), e0 + eu, "stress at the end of \"Muguruma (Plane)\"", fault);
  // Where eu = e0 this is no number, and no strain is left for its branch.
  fallingSlope = (fu - fck) / (eu - e0);
  tailSlope = fu / (eu - 0.01);
}

SolidConfined::SolidConfined(const model::SolidObject& row)
    : E(row.ElasticModulus),
      fc(row.UltimateStress),
      ef(row.FlexuralStrain),
      VolumetricRatio(row.VolumetricRatio) {}

ConfinedCurve SolidConfined::curve(ConfinementAnswers& answers, ConfinementPrompt* prompt) const {
  const base::FlagKeeper keeper;
  ConfinedCurve curve;
  curve.ef = ef;
  const double fck = base::finite(fc / 9.8 * 100, "strength of \"Restoration (Confined)\"");
  curve.Ek = base::finite(E / 9.8 * 100, "modulus of \"Restoration (Confined)\"");
  if (!answers.complete()) {
    if (prompt == nullptr) {
      throw base::InternalError(base::kImpossibleCase,
                                "Nobody answers the questions of \"Restoration (Confined)\"");
    }
    answers.askWhereMissing(VolumetricRatio, *prompt);
  }

  const double k1 = answers.k1;
  const double k2 = answers.k2;
  const double fy = answers.fy;
  const double r = VolumetricRatio;
  constexpr const char* kPeak = "strain at the peak of \"Restoration (Confined)\"";
  constexpr const char* kEnd = "strain at the end of \"Restoration (Confined)\"";
  curve.fcc = base::finite(fck + k1 * 3.8 * r * fy, "confined strength of \"Restoration (Confined)\"");
  curve.ecc = base::finite(0.002 + base::divide(k2 * 0.033 * r * fy, fck, kPeak), kPeak);
  curve.Z = base::divide(11.2 * fck * fck, fy * r, "falling slope of \"Restoration (Confined)\"");
  curve.eu = base::finite(curve.ecc + base::divide(0.2 * curve.fcc, curve.Z, kEnd), kEnd);
  curve.n = base::divide(curve.Ek * curve.ecc, curve.Ek * curve.ecc - curve.fcc,
                         "exponent of \"Restoration (Confined)\"");
  curve.inverse = quotient(1, curve.n, "rising curve of \"Restoration (Confined)\"", curve.inverseFault);
  return curve;
}

BarJsce::BarJsce(const model::BarObject& row)
    : E(row.ElasticModulus), fy(row.YieldStress), ey(row.YieldStrain), eu(row.UltimateStrain) {}

BarSteel::BarSteel(const model::BarObject& row)
    : E(row.ElasticModulus), fy(row.YieldStress), ey(row.YieldStrain), eu(row.UltimateStrain) {
  constexpr const char* kWhere = "hardening of \"Steel Bar\"";
  const double d = eu - 0.015;
  const double square = base::power(30 * d + 1, 2);
  const double ratio = quotient(row.UltimateStress, fy, kWhere, mFault);
  m = quotient(ratio * square - 60 * d - 1, 15 * base::power(d, 2), kWhere, mFault);
  restOfM = 60 - m;
  denominator = 2 * square;
  if (denominator == 0) denominatorFault = {kWhere, Kind::DivisionByZero};
  expectFinite(denominator, kWhere, denominatorFault);
}

TendonJsce::TendonJsce(const model::TendonObject& row)
    : E(row.ElasticModulus),
      eu(row.UltimateStrain),
      elasticEnd(0.84 * row.UltimateStress),
      plateau(0.93 * row.UltimateStress) {
  ep = quotient(elasticEnd, E, "end of the elastic stretch of \"JSCE (Design)\"", epFault);
  slope = quotient((0.93 - 0.84) * row.UltimateStress, 0.015 - ep, "slope of \"JSCE (Design)\"", slopeFault);
}

TendonSteel::TendonSteel(const model::TendonObject& row)
    : E(row.ElasticModulus),
      fy(row.YieldStress),
      ey(row.YieldStrain),
      eu(row.UltimateStrain),
      rise(row.UltimateStress - row.YieldStress),
      run(row.UltimateStrain - row.YieldStrain) {
  constexpr const char* kWhere = "hardening of \"Steel Bar\"";
  if (run == 0) lineFault = {kWhere, Kind::DivisionByZero};
  expectFinite(rise, kWhere, lineFault);
  expectFinite(run, kWhere, lineFault);
}

}  // namespace torvik::materials::laws
