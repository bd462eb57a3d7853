// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/section_parameters.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/models.h"
#include "analysis/recording_host.h"
#include "base/errors.h"

namespace torvik::analysis {
namespace {

using Table = SectionParameterTable;

TEST(SectionParameters, ARectangleInOneRow) {
  model::ObjectTables job;
  job.Beams.push_back(beamOf(4000, 0, 100));
  job.Solids.push_back(solidOf(200, 400, 200));
  RecordingHost host;
  const Table table = SectionParameters(job, host);
  const double I = 200.0 * 400 * 400 * 400 / 12;
  for (const SectionParameterRow& row : table.rows) {
    EXPECT_EQ(row.A, 80000);
    EXPECT_EQ(row.yTop, 200);
    EXPECT_EQ(row.yBottom, 200);
    EXPECT_DOUBLE_EQ(row.I, I);
    EXPECT_DOUBLE_EQ(row.ZTop, I / 200);
    EXPECT_DOUBLE_EQ(row.ZBottom, I / 200);
    EXPECT_EQ(row.E, 28000);
    EXPECT_DOUBLE_EQ(row.EI, 28000 * I);
    EXPECT_EQ(row.EA, 28000.0 * 80000);
  }
  EXPECT_EQ(host.events, (std::vector<std::string>{"Beam Top: 0.0000E+00", "Beam Bottom: 4.0000E+02"}));
}

/// A T-section with bars, a tendon and its duct, against sums of the textbook's transformed-section terms
/// that are taken in another way: every object once, with its number as a factor, about the datum (Steiner
/// from depth 0).
TEST(SectionParameters, TransformedSectionsAgreeWithSumsAboutTheDatum) {
  model::ObjectTables job;
  job.Beams.push_back(beamOf(10000, 3000, 100));
  job.Solids.push_back(solidOf(1000, 150, 75));
  job.Solids.push_back(solidOf(150, 650, 475));
  job.Solids[1].Number = 2;
  job.Solids[1].ElasticModulus = 31000;
  job.Bars.push_back(barOf(4, 506.7, 740));
  job.Bars.push_back(barOf(6, 126.7, 40));
  job.Tendons.push_back(tendonOf(1000, 650, "Post-tensioning"));
  job.Tendons[0].Number = 2;
  job.Tendons[0].SheathArea = 2827;
  job.Tendons[0].SheathDepth = 645;
  RecordingHost host;
  const Table table = SectionParameters(job, host);

  struct Sum {
    double A = 0, S = 0, Q = 0, I = 0;  // area, first moment, E-weighted area, second moment about depth 0
    void add(double area, double depth, double E, double own = 0) {
      A += area;
      S += area * depth;
      Q += E * area;
      I += own + area * depth * depth;
    }
  };
  const double Eg = (150000.0 * 28000 + 195000.0 * 31000) / 345000;
  Sum g;
  g.add(150000, 75, 28000, 1000 * std::pow(150, 3) / 12);
  g.add(195000, 475, 31000, 300 * std::pow(650, 3) / 12);
  const auto addSteel = [&](Sum& sum, double sign, bool weighted, bool tendon) {
    const double n = weighted ? 200000 / Eg : 1;
    const double E = weighted ? Eg : Eg;  // a weighted area brings Es A, which is n Eg A
    if (tendon) {
      sum.add(sign * 2000 * n, 650, E);
    } else {
      sum.add(sign * 4 * 506.7 * n, 740, E);
      sum.add(sign * 6 * 126.7 * n, 40, E);
    }
  };
  Sum c = g, t = g;
  addSteel(c, -1, false, false);
  c.add(-2 * 2827, 645, Eg);
  addSteel(t, -1, false, false);
  addSteel(t, -1, false, true);
  Sum d = c, x = t;
  addSteel(d, 1, true, false);
  addSteel(x, 1, true, false);
  addSteel(x, 1, true, true);

  const Sum sums[] = {g, c, t, d, x};
  for (int i = 0; i < 5; ++i) {
    const Sum& sum = sums[i];
    const SectionParameterRow& row = table.rows[static_cast<std::size_t>(i)];
    const double y = sum.S / sum.A;
    const double I = sum.I - sum.A * y * y;
    // Eg of the sums above stands for the modulus of what is taken out, which the definition does as well.
    EXPECT_NEAR(row.A / sum.A, 1, 1e-12) << i;
    EXPECT_NEAR(row.yTop / y, 1, 1e-12) << i;
    EXPECT_NEAR(row.yBottom / (800 - y), 1, 1e-12) << i;
    EXPECT_NEAR(row.I / I, 1, 1e-12) << i;
    EXPECT_NEAR(row.ZTop / (I / y), 1, 1e-12) << i;
    EXPECT_NEAR(row.ZBottom / (I / (800 - y)), 1, 1e-12) << i;
    EXPECT_NEAR(row.E / (sum.Q / sum.A), 1, 1e-12) << i;
    EXPECT_NEAR(row.EI / (sum.Q / sum.A * I), 1, 1e-12) << i;
    EXPECT_NEAR(row.EA / sum.Q, 1, 1e-12) << i;
  }
}

TEST(SectionParameters, AShiftedDatumMovesOnlyWhatIsMeasuredFromIt) {
  model::ObjectTables job = rectangle(10);
  RecordingHost host;
  const Table table = SectionParameters(job, host);
  model::ObjectTables shifted = job;
  for (auto& solid : shifted.Solids) solid.Depth += 100;
  for (auto& bar : shifted.Bars) bar.Depth += 100;
  const Table other = SectionParameters(shifted, host);
  for (std::size_t i = 0; i < 5; ++i) {
    const SectionParameterRow& a = table.rows[i];
    const SectionParameterRow& b = other.rows[i];
    EXPECT_NEAR(a.yTop, b.yTop, 1e-9);
    EXPECT_NEAR(a.yBottom, b.yBottom, 1e-9);
    EXPECT_NEAR(a.I / b.I, 1, 1e-12);
    // Z' is I over the depth from the datum, not over y'.
    EXPECT_NEAR(b.ZTop / (b.I / (b.yTop + 100)), 1, 1e-12);
  }
  EXPECT_EQ(shifted.Beams[0].BeamTop, 100);
  EXPECT_EQ(shifted.Beams[0].BeamBottom, 600);
}

TEST(SectionParameters, WithoutAModulusTheEquivalentSectionsStayZeroAndOneWarningIsShown) {
  model::ObjectTables job = rectangle(4);
  for (auto& solid : job.Solids) solid.ElasticModulus = 0;
  RecordingHost host;
  const Table table = SectionParameters(job, host);
  EXPECT_EQ(host.events.back(),
            "message: Warning: Avarage elastic modulus of solid is 0.\r"
            "Equivalent sections calculations are skipped.");
  for (const int row : {Table::D, Table::X})
    for (const double value : table.rows[static_cast<std::size_t>(row)].values()) EXPECT_EQ(value, 0);
  EXPECT_EQ(table.rows[Table::G].A, 150000);
}

TEST(SectionParameters, FaultsSayWhichRowAndWhichQuotient) {
  struct Case {
    const char* name;
    void (*spoil)(model::ObjectTables&);
    base::NumericFault::Kind kind;
    const char* says;
  };
  using Kind = base::NumericFault::Kind;
  const Case cases[] = {
      {"no solid", [](auto& job) { job.Solids.clear(); }, Kind::IndexOutOfRange, "no solid"},
      {"no area",
       [](auto& job) {
         for (auto& solid : job.Solids) solid.Area = 0;
       },
       Kind::DivisionByZero, "\"g\""},
      {"number 0",
       [](auto& job) {
         for (auto& solid : job.Solids) solid.Number = 0;
       },
       Kind::DivisionByZero, "\"g\""},
      {"datum at the centroid",
       [](auto& job) {
         for (auto& solid : job.Solids) solid.Depth -= 250;
       },
       Kind::DivisionByZero, "Z'"},
      {"ducts as large as the solid",
       [](auto& job) {
         job.Bars.clear();
         job.Tendons.push_back(tendonOf(0, 250, "Post-tensioning"));
         job.Tendons[0].SheathArea = 150000;
       },
       Kind::DivisionByZero, "\"c\""},
      {"too large",
       [](auto& job) {
         for (auto& solid : job.Solids) solid.Area = 1e308;
       },
       Kind::Overflow, "\"g\""},
  };
  for (const Case& c : cases) {
    model::ObjectTables job = rectangle(4);
    c.spoil(job);
    RecordingHost host;
    try {
      SectionParameters(job, host);
      ADD_FAILURE() << c.name;
    } catch (const base::NumericFault& fault) {
      EXPECT_EQ(fault.kind(), c.kind) << c.name << ": " << fault.what();
      EXPECT_NE(std::string(fault.what()).find(c.says), std::string::npos) << c.name << ": " << fault.what();
    }
  }
}

}  // namespace
}  // namespace torvik::analysis
