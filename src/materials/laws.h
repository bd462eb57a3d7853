// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "base/elementary.h"
#include "base/errors.h"
#include "materials/confinement.h"
#include "model/objects.h"

/// The laws of docs/theory.md, "Stress-strain laws", one struct each: `law(e)` is the stress at strain e.
/// Constructors work out what the row alone decides and nothing else, so that a stress has the bits of its
/// formula evaluated left to right. Branches are tried in the order written; a strain on a bound belongs to
/// the earlier one.
namespace torvik::materials::laws {

/// A constant that could not be worked out, told where a stress first needs it.
struct Fault {
  const char* where = nullptr;  ///< static text; null: no fault
  base::NumericFault::Kind kind = base::NumericFault::Kind::DivisionByZero;

  void raise() const {
    if (where != nullptr) [[unlikely]]
      fail();
  }
  [[noreturn]] void fail() const;
};

/// A `Type` that names no law.
struct Unknown {
  std::string Type;
};

/// A user stress-strain file; `UserCurves` evaluates it.
struct UserFile {
  std::uint16_t number;  ///< `UserCurves::numberOf`
};

/// "Elastic" of all tables: no limit on either side.
struct Elastic {
  double E = 0;

  [[nodiscard]] bool plain() const { return true; }
  double operator()(double e) const { return E * e; }
};

/// "JSCE (Design)" of solids. The limit 0.0035 is fixed.
struct SolidJsce {
  double E;
  double ef;
  double plateau;  ///< 0.85 * fc

  explicit SolidJsce(const model::SolidObject& row);
  [[nodiscard]] bool plain() const { return true; }
  double operator()(double e) const {
    if (e < ef) return 0;
    if (e <= 0) return E * e;
    if (0 <= e && e <= 0.002) return (2 - e / 0.002) * (plateau * e / 0.002);
    if (0.002 <= e && e <= 0.0035) return plateau;
    return 0;
  }
};

/// "e Function (Plane)": one expression above `FlexuralStrain`, without an upper end.
struct SolidExponential {
  double ef;
  double scale;  ///< fc * 6.75
  Fault scaleFault;

  explicit SolidExponential(const model::SolidObject& row);
  [[nodiscard]] bool plain() const { return scaleFault.where == nullptr; }
  double operator()(double e) const {
    if (e < ef) return 0;
    scaleFault.raise();
    const double x = e / 0.002609;
    return scale * (base::exponential(-0.812 * x) - base::exponential(-1.218 * x));
  }
};

/// "Muguruma (Plane)", in kgf/cm2 inside. Its modulus follows from the strength; `ElasticModulus` is not
/// read.
struct SolidMuguruma {
  double ef;
  double fck = 0;
  double Ec = 0;
  double e0 = 0;            ///< strain at the peak
  double A = 0;             ///< coefficient of the rising curve
  double eu = 0;            ///< strain at the end of the falling line
  double fallingSlope = 0;  ///< of the line from e0 to eu
  double tailSlope = 0;     ///< of the line from eu down to zero at 0.01
  Fault fault;

  explicit SolidMuguruma(const model::SolidObject& row);
  [[nodiscard]] bool plain() const { return fault.where == nullptr; }
  double operator()(double e) const {
    fault.raise();
    return inKgf(e) * 9.8 / 100;
  }

 private:
  [[nodiscard]] double rising(double t) const { return Ec * t + A * t * t; }
  [[nodiscard]] double inKgf(double e) const {
    if (e < ef) return 0;
    if (e <= 0) return Ec * e;
    if (0 <= e && e <= e0) return rising(e);
    if (e0 <= e && e <= eu) return fck + fallingSlope * (e - e0);
    if (eu <= e && e <= 0.01) return tailSlope * (e - 0.01);
    return 0;
  }
};

/// "Restoration (Confined)" with its questions answered, in kgf/cm2 inside.
struct ConfinedCurve {
  double ef = 0;
  double Ek = 0;
  double fcc = 0;  ///< confined strength
  double ecc = 0;  ///< strain at that strength
  double Z = 0;    ///< falling slope
  double eu = 0;   ///< strain where the stress has fallen by 20% of fcc
  double n = 0;
  double inverse = 0;  ///< 1 / n
  Fault inverseFault;

  [[nodiscard]] bool plain() const { return inverseFault.where == nullptr; }
  double operator()(double e) const { return inKgf(e) * 9.8 / 100; }

 private:
  [[nodiscard]] double inKgf(double e) const {
    if (e < ef) return 0;
    if (e <= 0) return Ek * e;
    if (0 <= e && e <= ecc) {
      inverseFault.raise();
      return Ek * e * (1 - inverse * base::power(e / ecc, n - 1));
    }
    if (ecc <= e && e <= eu) return fcc - (e - ecc) * Z;
    return 0;
  }
};

/// What a row of the law "Restoration (Confined)" says of its curve; the rest are answers.
struct SolidConfined {
  double E;
  double fc;
  double ef;
  double VolumetricRatio;

  explicit SolidConfined(const model::SolidObject& row);

  /// The curve that follows from the answers; those that are missing are asked for.
  /// @throws NumericFault  InternalError where `prompt` is null and an answer is missing
  ConfinedCurve curve(ConfinementAnswers& answers, ConfinementPrompt* prompt) const;
};

/// "JSCE (Design)" of bars. The compression side ends at the fixed strain -0.03, at zero already on the
/// bound.
struct BarJsce {
  double E;
  double fy;
  double ey;
  double eu;

  explicit BarJsce(const model::BarObject& row);
  [[nodiscard]] bool plain() const { return true; }
  double operator()(double e) const {
    if (e == -0.03) return 0;
    if (-0.03 < e && e <= -ey) return -fy;
    if (-ey <= e && e <= ey) return E * e;
    if (ey <= e && e <= eu) return fy;
    return 0;
  }
};

/// "Steel Bar" of bars: hardens from the fixed strain 0.015 on. The compression side keeps its value at
/// -0.03.
struct BarSteel {
  double E;
  double fy;
  double ey;
  double eu;
  double m = 0;
  double restOfM = 0;      ///< 60 - m
  double denominator = 0;  ///< 2 * (30 * d + 1) ^ 2
  Fault mFault;            ///< told before the branches
  Fault denominatorFault;  ///< told where the hardening curve is reached

  explicit BarSteel(const model::BarObject& row);
  [[nodiscard]] bool plain() const { return mFault.where == nullptr && denominatorFault.where == nullptr; }
  double operator()(double e) const {
    mFault.raise();
    if (e < -0.03) return 0;
    if (-0.03 <= e && e <= -0.015) return -fy * hardening(-e - 0.015);
    if (-0.015 <= e && e <= -ey) return -fy;
    if (-ey <= e && e <= ey) return E * e;
    if (ey <= e && e <= 0.015) return fy;
    if (0.015 <= e && e <= eu) return fy * hardening(e - 0.015);
    return 0;
  }

 private:
  [[nodiscard]] double hardening(double t) const {
    denominatorFault.raise();
    return (m * t + 2) / (60 * t + 2) + t * restOfM / denominator;
  }
};

/// "FRP Bar" of bars and tendons: linear, tension only, breaks past eu.
struct Frp {
  double E = 0;
  double eu = 0;

  [[nodiscard]] bool plain() const { return true; }
  double operator()(double e) const {
    if (e < 0) return 0;
    if (e <= eu) return E * e;
    return 0;
  }
};

/// "JSCE (Design)" of tendons: trilinear, built on `UltimateStress` alone.
struct TendonJsce {
  double E;
  double eu;
  double elasticEnd;  ///< 0.84 * fu, the stress at ep
  double plateau;     ///< 0.93 * fu
  double ep = 0;      ///< end of the elastic stretch
  double slope = 0;   ///< of the middle stretch
  Fault epFault;      ///< told by the first branch that compares with ep
  Fault slopeFault;   ///< told where the middle stretch is reached

  explicit TendonJsce(const model::TendonObject& row);
  [[nodiscard]] bool plain() const { return epFault.where == nullptr && slopeFault.where == nullptr; }
  double operator()(double e) const {
    if (e == -0.03) return 0;
    if (-0.03 < e && e <= -0.015) return -plateau;
    epFault.raise();
    if (-0.015 <= e && e <= -ep) return -middle(-e);
    if (-ep <= e && e <= ep) return E * e;
    if (ep <= e && e <= 0.015) return middle(e);
    if (0.015 <= e && e <= eu) return plateau;
    return 0;
  }

 private:
  [[nodiscard]] double middle(double t) const {
    slopeFault.raise();
    return elasticEnd + slope * (t - ep);
  }
};

/// "Steel Bar" of tendons: bilinear with straight hardening. It gives 0 at -eu and the ultimate stress at eu.
struct TendonSteel {
  double E;
  double fy;
  double ey;
  double eu;
  double rise;  ///< fu - fy
  double run;   ///< eu - ey
  Fault lineFault;

  explicit TendonSteel(const model::TendonObject& row);
  [[nodiscard]] bool plain() const { return lineFault.where == nullptr; }
  double operator()(double e) const {
    if (e == -eu) return 0;
    if (-eu < e && e <= -ey) return -line(-e);
    if (-ey <= e && e <= ey) return E * e;
    if (ey <= e && e <= eu) return line(e);
    return 0;
  }

 private:
  [[nodiscard]] double line(double t) const {
    lineFault.raise();
    return (t - ey) * rise / run + fy;
  }
};

}  // namespace torvik::materials::laws
