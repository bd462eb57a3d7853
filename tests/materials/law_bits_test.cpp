// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "base/elementary.h"
#include "materials/stress_strain.h"
#include "rows.h"

/// The laws against their formulas written out in full, every constant worked out anew at every call.
namespace torvik::materials {
namespace {

using base::exponential;
using base::power;
using testing::bar;
using testing::solid;
using testing::tendon;

constexpr ConfinementAnswers kAnswers{0.2, 0.4, 3061.2244897959183};

double solidLongHand(double e, const model::SolidObject& row) {
  const double E = row.ElasticModulus;
  const double ef = row.FlexuralStrain;
  const double fc = row.UltimateStress;
  if (row.Type == "Elastic") return E * e;
  if (row.Type == "JSCE (Design)") {
    if (e < ef) return 0;
    if (e <= 0) return E * e;
    if (0 <= e && e <= 0.002) return (2 - e / 0.002) * (0.85 * fc * e / 0.002);
    if (0.002 <= e && e <= 0.0035) return 0.85 * fc;
    return 0;
  }
  if (row.Type == "e Function (Plane)") {
    if (e < ef) return 0;
    const double x = e / 0.002609;
    return fc * 6.75 * (exponential(-0.812 * x) - exponential(-1.218 * x));
  }
  const double fck = fc / 9.8 * 100;
  double kgf = 0;
  if (row.Type == "Muguruma (Plane)") {
    const double Ec = 231000 * std::sqrt(fck / 200);
    const double e0 = 0.0013 * (fck / 1000 + 1);
    const double eu = 0.00413 * (1 - fck / 2000);
    const auto s = [&](double t) { return Ec * t + (fck - e0 * Ec) / (e0 * e0) * t * t; };
    double W = 0;
    double t = 0.00001;
    while (t <= e0) {
      W = W + (s(t - 0.00001) + s(t)) * 0.00001 / 2;
      t = t + 0.00001;
    }
    const double fu = fck + 2 * (W - e0 * fck) / (e0 + eu);
    if (e < ef) {
      kgf = 0;
    } else if (e <= 0) {
      kgf = Ec * e;
    } else if (0 <= e && e <= e0) {
      kgf = s(e);
    } else if (e0 <= e && e <= eu) {
      kgf = fck + (fu - fck) / (eu - e0) * (e - e0);
    } else if (eu <= e && e <= 0.01) {
      kgf = fu / (eu - 0.01) * (e - 0.01);
    }
    return kgf * 9.8 / 100;
  }
  const auto& [k1, k2, fy] = kAnswers;
  const double Ek = E / 9.8 * 100;
  const double r = row.VolumetricRatio;
  const double fcc = fck + k1 * 3.8 * r * fy;
  const double ecc = 0.002 + k2 * 0.033 * r * fy / fck;
  const double Z = 11.2 * fck * fck / (fy * r);
  const double eu = ecc + 0.2 * fcc / Z;
  const double n = Ek * ecc / (Ek * ecc - fcc);
  if (e < ef) {
    kgf = 0;
  } else if (e <= 0) {
    kgf = Ek * e;
  } else if (0 <= e && e <= ecc) {
    kgf = Ek * e * (1 - (1 / n) * power(e / ecc, n - 1));
  } else if (ecc <= e && e <= eu) {
    kgf = fcc - (e - ecc) * Z;
  }
  return kgf * 9.8 / 100;
}

double barLongHand(double e, const model::BarObject& row) {
  const double E = row.ElasticModulus;
  const double fy = row.YieldStress;
  const double ey = row.YieldStrain;
  const double fu = row.UltimateStress;
  const double eu = row.UltimateStrain;
  if (row.Type == "Elastic") return E * e;
  if (row.Type == "JSCE (Design)") {
    if (e == -0.03) return 0;
    if (-0.03 < e && e <= -ey) return -fy;
    if (-ey <= e && e <= ey) return E * e;
    if (ey <= e && e <= eu) return fy;
    return 0;
  }
  if (row.Type == "Steel Bar") {
    const double d = eu - 0.015;
    const double m = ((fu / fy) * power(30 * d + 1, 2) - 60 * d - 1) / (15 * power(d, 2));
    const auto H = [&](double t) {
      return (m * t + 2) / (60 * t + 2) + t * (60 - m) / (2 * power(30 * d + 1, 2));
    };
    if (e < -0.03) return 0;
    if (-0.03 <= e && e <= -0.015) return -fy * H(-e - 0.015);
    if (-0.015 <= e && e <= -ey) return -fy;
    if (-ey <= e && e <= ey) return E * e;
    if (ey <= e && e <= 0.015) return fy;
    if (0.015 <= e && e <= eu) return fy * H(e - 0.015);
    return 0;
  }
  if (e < 0) return 0;
  if (e <= eu) return E * e;
  return 0;
}

double tendonLongHand(double e, const model::TendonObject& row) {
  const double E = row.ElasticModulus;
  const double fy = row.YieldStress;
  const double ey = row.YieldStrain;
  const double fu = row.UltimateStress;
  const double eu = row.UltimateStrain;
  if (row.Type == "Elastic") return E * e;
  if (row.Type == "JSCE (Design)") {
    const double ep = 0.84 * fu / E;
    const auto T = [&](double t) { return 0.84 * fu + (0.93 - 0.84) * fu / (0.015 - ep) * (t - ep); };
    if (e == -0.03) return 0;
    if (-0.03 < e && e <= -0.015) return -0.93 * fu;
    if (-0.015 <= e && e <= -ep) return -T(-e);
    if (-ep <= e && e <= ep) return E * e;
    if (ep <= e && e <= 0.015) return T(e);
    if (0.015 <= e && e <= eu) return 0.93 * fu;
    return 0;
  }
  if (row.Type == "Steel Bar") {
    const auto L = [&](double t) { return (t - ey) * (fu - fy) / (eu - ey) + fy; };
    if (e == -eu) return 0;
    if (-eu < e && e <= -ey) return -L(-e);
    if (-ey <= e && e <= ey) return E * e;
    if (ey <= e && e <= eu) return L(e);
    return 0;
  }
  if (e < 0) return 0;
  if (e <= eu) return E * e;
  return 0;
}

/// A dense sweep, and every bound of every law with its neighbours on both sides.
std::vector<double> strainsFor(std::vector<double> bounds) {
  bounds.insert(bounds.end(), {0, 0.002, 0.0035, 0.002609, 0.01, 0.015, 0.03, 1e-300, 1});
  std::vector<double> strains;
  for (int i = -4000; i <= 4000; ++i) strains.push_back(i * 1.7e-5 + 3e-7);
  for (const double bound : bounds) {
    for (const double b : {bound, -bound}) {
      strains.insert(strains.end(), {b, std::nextafter(b, 1e9), std::nextafter(b, -1e9)});
    }
  }
  return strains;
}

template <class Law, class Row>
void expectSameBits(const Row& row, const std::vector<double>& strains,
                    double (*longHand)(double, const Row&)) {
  SCOPED_TRACE(row.Type + ", UltimateStress " + std::to_string(row.UltimateStress));
  StressStrainContext context;
  context.confinement = kAnswers;
  Law law(row);
  law.stress(0, context);
  ASSERT_TRUE(law.isPlain());
  std::vector<double> together(strains.size());
  law.stresses(strains, together);
  for (std::size_t i = 0; i < strains.size(); ++i) {
    const auto expected = std::bit_cast<std::uint64_t>(longHand(strains[i], row));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(law.stress(strains[i], context)), expected) << strains[i];
    ASSERT_EQ(std::bit_cast<std::uint64_t>(together[i]), expected) << strains[i];
  }
}

TEST(LawBits, Solids) {
  for (const char* type :
       {"Elastic", "JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)", "Restoration (Confined)"}) {
    for (const auto& [E, ef, fc, ratio] :
         {testing::SolidValues{28000, -0.00014482340769084444, 30, 0.01},
          testing::SolidValues{31234.567, -0.0123, 23.7, 0.0173}, testing::SolidValues{35000, 0, 82.4, 0.003},
          testing::SolidValues{40000, -0.0002, 250, 0.02},
          // Muguruma's t comes to stand exactly on e0
          testing::SolidValues{25000, -0.0001, 21.107692307692574, 0.01}}) {
      const double fck = fc / 9.8 * 100;
      const double fcc = fck + kAnswers.k1 * 3.8 * ratio * kAnswers.fy;
      const double ecc = 0.002 + kAnswers.k2 * 0.033 * ratio * kAnswers.fy / fck;
      const double end = ecc + 0.2 * fcc / (11.2 * fck * fck / (kAnswers.fy * ratio));
      expectSameBits<SolidLaw>(
          solid(type, {E, ef, fc, ratio}),
          strainsFor({ef, ecc, end, 0.0013 * (fck / 1000 + 1), 0.00413 * (1 - fck / 2000)}), &solidLongHand);
    }
  }
}

constexpr testing::SteelValues kSteels[] = {
    {200000, 295, 0.001475, 440, 0.2},      {193700.5, 345.6, 0.00178, 491.3, 0.0437},
    {10000, 301.3, 0.0301, 452.7, 0.117},   {200000, 930, 0.00465, 1080, 0.05},
    {197000, 1180.7, 0.0061, 1272.3, 0.03}, {50000, 900, -0.002, 1103.3, 0.014},
};

TEST(LawBits, Bars) {
  for (const char* type : {"Elastic", "JSCE (Design)", "Steel Bar", "FRP Bar"}) {
    for (const auto& values : kSteels) {
      expectSameBits<BarLaw>(bar(type, values), strainsFor({values.ey, values.eu}), &barLongHand);
    }
  }
}

TEST(LawBits, Tendons) {
  for (const char* type : {"Elastic", "JSCE (Design)", "Steel Bar", "FRP Bar"}) {
    for (const auto& values : kSteels) {
      const double ep = 0.84 * values.fu / values.E;
      expectSameBits<TendonLaw>(tendon(type, values), strainsFor({values.ey, values.eu, ep}),
                                &tendonLongHand);
    }
  }
}

}  // namespace
}  // namespace torvik::materials
