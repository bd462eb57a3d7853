// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

#include "base/errors.h"
#include "base/fault.h"
#include "materials/stress_strain.h"
#include "rows.h"

namespace torvik::materials {
namespace {

using base::NumericFault;
using testing::bar;
using testing::solid;
using testing::tendon;

/// A stress of any table.
struct Probe {
  Probe(const model::SolidObject& row)
      : stress([row](double e, StressStrainContext& c) { return fncSSSolid(e, row, c); }),
        plain(SolidLaw(row).isPlain()) {}
  Probe(const model::BarObject& row)
      : stress([row](double e, StressStrainContext& c) { return fncSSBar(e, row, c); }),
        plain(BarLaw(row).isPlain()) {}
  Probe(const model::TendonObject& row)
      : stress([row](double e, StressStrainContext& c) { return fncSSTendon(e, row, c); }),
        plain(TendonLaw(row).isPlain()) {}

  std::function<double(double, StressStrainContext&)> stress;
  bool plain;
};

double below(double x) {
  return std::nextafter(x, -std::numeric_limits<double>::infinity());
}
double above(double x) {
  return std::nextafter(x, std::numeric_limits<double>::infinity());
}

TEST(Laws, WorkedByHand) {
  const auto jsce = solid("JSCE (Design)");
  const auto exponential = solid("e Function (Plane)");
  // fck = 200 kgf/cm2: Ec = 231000, e0 = 0.00156, eu = 0.003717, W = 0.19769, fu = 156.68 kgf/cm2.
  const auto muguruma = solid("Muguruma (Plane)", {.fc = 19.6});
  // fck = 300, Ek = 300000 and, for a rectangle with a tie of 3000 kgf/cm2: fcc = 322.8, ecc = 0.00332, Z =
  // 33600, eu = 0.00524142857.
  const auto confined = solid("Restoration (Confined)", {.E = 29400, .fc = 29.4});
  // d = 0.1, m = 340 / 3, H(0.05) = 1.45, H(0.1) = 1.5, H(0.015) = 37 / 29 - 0.025.
  const auto steelBar = bar("Steel Bar", {.fy = 300, .ey = 0.0015, .fu = 450, .eu = 0.115});
  const auto lateYield = bar("Steel Bar", {.E = 10000, .fy = 300, .ey = 0.03, .fu = 450, .eu = 0.115});
  const auto barJsce = bar("JSCE (Design)");
  const auto frp = bar("FRP Bar", {.eu = 0.01});
  const auto tendonJsce = tendon("JSCE (Design)");
  const auto tendonSteel = tendon("Steel Bar");

  const struct {
    const char* name;
    Probe probe;
    double strain;
    double stress;
    double tolerance = 1e-9;
  } cases[] = {
      {"solid elastic at 1", solid("Elastic"), 1, 28000, 0},
      {"solid elastic far in tension", solid("Elastic"), -2, -56000, 0},
      {"solid JSCE, parabola", jsce, 0.001, 19.125},
      {"solid JSCE at 0.002", jsce, 0.002, 25.5, 0},
      {"solid JSCE at 0.0035", jsce, 0.0035, 25.5, 0},
      {"solid JSCE past 0.0035", jsce, above(0.0035), 0, 0},
      {"solid JSCE at cracking", jsce, -0.0001, 28000 * -0.0001, 0},
      {"solid JSCE below cracking", jsce, below(-0.0001), 0, 0},
      {"e function near its peak", exponential, 0.002609, 30, 1e-3},
      {"e function has no end", exponential, 0.02609, 202.5 * (std::exp(-8.12) - std::exp(-12.18))},
      {"e function in tension", exponential, -0.0001, -0.0001 / 0.002609 * 202.5 * 0.406, 0.2},
      {"e function below cracking", exponential, below(-0.0001), 0, 0},
      {"Muguruma, tension", muguruma, -0.0001, -23.1 * 0.098},
      {"Muguruma, peak", muguruma, 0.00156, 19.6},
      {"Muguruma, end of the falling line", muguruma, 0.003717, 156.68 * 0.098, 0.08},
      {"Muguruma, middle of the last line", muguruma, 0.0068585, 156.68 * 0.049, 0.04},
      {"Muguruma, at 0.01", muguruma, 0.01, 0, 0},
      {"Muguruma, beyond", muguruma, 0.02, 0, 0},
      {"Muguruma, below cracking", muguruma, -0.00011, 0, 0},
      {"confined, tension", confined, -0.0001, -2.94},
      {"confined, peak", confined, 0.00332, 322.8 * 0.098},
      {"confined, 20% down", confined, 0.005241428, 0.8 * 322.8 * 0.098, 1e-5},
      {"confined, no residual stress", confined, 0.005242, 0, 0},
      {"confined, below cracking", confined, -0.00011, 0, 0},
      {"bar JSCE at -0.03", barJsce, -0.03, 0, 0},
      {"bar JSCE above -0.03", barJsce, -0.0299, -295, 0},
      {"bar JSCE below -0.03", barJsce, -0.0301, 0, 0},
      {"bar JSCE, elastic", barJsce, -0.001, -200},
      {"bar JSCE at the limit", barJsce, 0.2, 295, 0},
      {"bar JSCE past the limit", barJsce, 0.2001, 0, 0},
      {"steel bar at -0.03", steelBar, -0.03, -300 * (37.0 / 29 - 0.025)},
      {"steel bar below -0.03", steelBar, below(-0.03), 0, 0},
      {"steel bar, compression plateau", steelBar, -0.01, -300, 0},
      {"steel bar, elastic", steelBar, 0.001, 200},
      {"steel bar, hardening begins", steelBar, above(0.015), 300},
      {"steel bar, hardening", steelBar, 0.065, 435},
      {"steel bar at eu", steelBar, 0.115, 450},
      {"steel bar past eu", steelBar, above(0.115), 0, 0},
      {"steel bar, late yield, elastic", lateYield, 0.03, 300},
      {"steel bar, late yield, no plateau", lateYield, 0.065, 435},
      {"steel bar, late yield, compression hardens first", lateYield, -0.03, -300 * (37.0 / 29 - 0.025)},
      {"FRP bar, compression", frp, -0.001, 0, 0},
      {"FRP bar at eu", frp, 0.01, 2000, 0},
      {"FRP bar past eu", frp, above(0.01), 0, 0},
      {"FRP tendon at eu", tendon("FRP Bar"), 0.05, 10000, 0},
      {"tendon JSCE at ep", tendonJsce, 0.004536, 907.2},
      {"tendon JSCE, middle of the second stretch", tendonJsce, 0.009768, 955.8},
      {"tendon JSCE, the same in compression", tendonJsce, -0.009768, -955.8},
      {"tendon JSCE at 0.015", tendonJsce, 0.015, 1004.4},
      {"tendon JSCE at eu", tendonJsce, 0.05, 1004.4},
      {"tendon JSCE past eu", tendonJsce, 0.0501, 0, 0},
      {"tendon JSCE at -0.03", tendonJsce, -0.03, 0, 0},
      {"tendon JSCE above -0.03", tendonJsce, -0.029, -1004.4},
      {"tendon JSCE below -0.03", tendonJsce, -0.031, 0, 0},
      {"tendon steel at eu", tendonSteel, 0.05, 1080},
      {"tendon steel at -eu", tendonSteel, -0.05, 0, 0},
      {"tendon steel above -eu", tendonSteel, -0.0499, -1080 + 0.0001 * 150 / 0.04535},
      {"tendon steel, elastic", tendonSteel, 0.004, 800},
      {"tendon steel past eu", tendonSteel, above(0.05), 0, 0},
  };
  StressStrainContext context;
  context.confinement = {0.2, 0.4, 3000};
  for (const auto& c : cases) EXPECT_NEAR(c.probe.stress(c.strain, context), c.stress, c.tolerance) << c.name;
}

TEST(Laws, FaultsRiseWhereTheLawFirstNeedsTheNumber) {
  using enum NumericFault::Kind;
  using Kind = std::optional<NumericFault::Kind>;  // empty: the strain has a stress
  const std::string confined = "Restoration (Confined)";
  // 30 * d + 1 is exactly 0, and m still a number.
  const double noHardening = 0.015 - 1.0 / 30;
  const auto flat = bar("Steel Bar", {.eu = noHardening});
  ASSERT_EQ(30 * (noHardening - 0.015) + 1, 0);

  const struct {
    const char* name;
    Probe probe;
    double strain;
    Kind kind;
  } cases[] = {
      {"e function, absurd strength, below cracking", solid("e Function (Plane)", {.fc = 1e308}), -1, {}},
      {"e function, absurd strength", solid("e Function (Plane)", {.fc = 1e308}), 0.001, Overflow},
      {"Muguruma, negative strength", solid("Muguruma (Plane)", {.fc = -1}), -1, InvalidOperation},
      {"Muguruma, absurd strength", solid("Muguruma (Plane)", {.fc = 1e12}), -1, Overflow},
      {"Muguruma, infinite kgf", solid("Muguruma (Plane)", {.fc = 1e308}), -1, Overflow},
      {"Muguruma, zero strength", solid("Muguruma (Plane)", {.fc = 0}), 0.001, {}},
      {"confined, no ties", solid(confined, {.VolumetricRatio = 0}), -1, DivisionByZero},
      {"confined, zero strength", solid(confined, {.fc = 0}), -1, DivisionByZero},
      {"confined, infinite kgf", solid(confined, {.fc = 1e308}), -1, Overflow},
      {"confined, zero modulus, falling line", solid(confined, {.E = 0}), 0.0034, {}},
      {"confined, zero modulus, rising curve", solid(confined, {.E = 0}), 0.001, DivisionByZero},
      {"steel bar, eu at 0.015", bar("Steel Bar", {.eu = 0.015}), -1, DivisionByZero},
      {"steel bar, fy 0", bar("Steel Bar", {.fy = 0}), -1, DivisionByZero},
      {"steel bar, fu and fy 0", bar("Steel Bar", {.fy = 0, .fu = 0}), 0, DivisionByZero},
      {"steel bar, absurd eu", bar("Steel Bar", {.eu = 1e200}), 0, Overflow},
      {"steel bar, hardening over 0, elastic", flat, 0.001, {}},
      {"steel bar, hardening over 0", flat, -0.02, DivisionByZero},
      {"tendon JSCE, no modulus, at -0.03", tendon("JSCE (Design)", {.E = 0}), -0.03, {}},
      {"tendon JSCE, no modulus, compression plateau", tendon("JSCE (Design)", {.E = 0}), -0.02, {}},
      {"tendon JSCE, no modulus, elastic", tendon("JSCE (Design)", {.E = 0}), 0, DivisionByZero},
      {"tendon JSCE, no modulus, plateau", tendon("JSCE (Design)", {.E = 0}), 0.03, DivisionByZero},
      {"tendon JSCE, infinite ep", tendon("JSCE (Design)", {.E = 1e-320}), 0, Overflow},
      // ep is the number just below 0.015.
      {"tendon JSCE, absurd slope, elastic",
       tendon("JSCE (Design)", {.E = 5.6000000000000008e301, .fu = 1e300}),
       0.001,
       {}},
      {"tendon JSCE, absurd slope", tendon("JSCE (Design)", {.E = 5.6000000000000008e301, .fu = 1e300}),
       0.015, Overflow},
      {"tendon steel, eu = ey, tension", tendon("Steel Bar", {.ey = -0.01, .eu = -0.01}), -0.01,
       DivisionByZero},
      {"tendon steel, eu = ey, elastic", tendon("Steel Bar", {.ey = 0.01, .eu = 0.01}), 0.005, {}},
      {"tendon steel, absurd strengths", tendon("Steel Bar", {.fy = -1e308, .fu = 1e308}), 0.1, Overflow},
  };
  StressStrainContext context;
  context.confinement = {0.2, 0.4, 3000};
  base::fpflags::clear();
  for (const auto& c : cases) {
    Kind kind;
    try {
      c.probe.stress(c.strain, context);
    } catch (const NumericFault& fault) {
      kind = fault.kind();
      EXPECT_FALSE(fault.where().empty()) << c.name;
    }
    EXPECT_EQ(kind, c.kind) << c.name;
    EXPECT_FALSE(c.kind.has_value() && c.probe.plain) << c.name;
  }
  EXPECT_EQ(base::fpflags::raised(), std::nullopt) << "constants leave no flags behind";
}

TEST(Laws, AbsurdStrengthIsNamed) {
  StressStrainContext context;
  try {
    fncSSSolid(0.001, solid("Muguruma (Plane)", {.fc = 1e12}), context);
    ADD_FAILURE();
  } catch (const NumericFault& fault) {
    EXPECT_EQ(fault.where(), "strain at the peak of \"Muguruma (Plane)\"");
  }
}

TEST(Laws, UnknownTypes) {
  StressStrainContext context;
  const Probe probes[] = {solid("elastic"), solid("Elastic "), solid("Steel Bar"),          bar(""),
                          bar("FRP bar"),   tendon("FILE"),    tendon("e Function (Plane)")};
  int index = 0;
  for (const Probe& probe : probes) {
    SCOPED_TRACE(index++);
    EXPECT_FALSE(probe.plain);
    try {
      probe.stress(0, context);
      ADD_FAILURE() << "accepted";
    } catch (const base::InternalError& error) {
      EXPECT_EQ(error.number(), 51);
    }
  }
}

TEST(Laws, StressesRefusesALawThatIsNotPlain) {
  double value[] = {0};
  EXPECT_THROW(SolidLaw(solid("Restoration (Confined)")).stresses(value, value), base::InternalError);
  EXPECT_THROW(BarLaw(bar("File")).stresses(value, value), base::InternalError);
  EXPECT_THROW(TendonLaw(tendon("JSCE (Design)", {.E = 0})).stresses(value, value), base::InternalError);
}

TEST(Laws, SameLawLooksAtWhatTheLawsRead) {
  const auto same = [](auto row, auto change) {
    const auto before = row;
    change(row);
    return sameLaw(before, row);
  };
  const auto jsce = solid("JSCE (Design)");
  EXPECT_TRUE(
      same(jsce, [](auto& r) { r.Depth = 1, r.UltimateStrain = 1, r.FlexuralStress = 1, r.File = "x"; }));
  EXPECT_FALSE(same(jsce, [](auto& r) { r.Type = "Elastic"; }));
  EXPECT_FALSE(same(jsce, [](auto& r) { r.ElasticModulus += 1; }));
  EXPECT_FALSE(same(jsce, [](auto& r) { r.FlexuralStrain = -0.0002; }));
  EXPECT_FALSE(same(jsce, [](auto& r) { r.UltimateStress += 1; }));
  EXPECT_FALSE(same(jsce, [](auto& r) { r.VolumetricRatio += 1; }));
  EXPECT_TRUE(same(solid("File"), [](auto& r) { r.ElasticModulus = 1; }));
  EXPECT_FALSE(same(solid("File"), [](auto& r) { r.File = "x"; }));

  EXPECT_TRUE(same(bar("Steel Bar"), [](auto& r) { r.Area = 1, r.Diameter = "13", r.Number = 2; }));
  EXPECT_FALSE(same(bar("Steel Bar"), [](auto& r) { r.UltimateStrain = 0.1; }));
  EXPECT_FALSE(same(bar("Steel Bar"), [](auto& r) { r.YieldStress = 1; }));
  EXPECT_FALSE(same(bar("Steel Bar"), [](auto& r) { r.YieldStrain = 1; }));
  EXPECT_FALSE(same(tendon("Steel Bar"), [](auto& r) { r.UltimateStress = 1; }));
  EXPECT_FALSE(same(tendon("Steel Bar"), [](auto& r) { r.ElasticModulus = 1; }));
  EXPECT_FALSE(same(tendon("File"), [](auto& r) { r.File = "x"; }));
}

}  // namespace
}  // namespace torvik::materials
