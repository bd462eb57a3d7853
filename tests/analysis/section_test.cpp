// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>

#include "analysis/models.h"
#include "analysis/recording_host.h"

namespace torvik::analysis {
namespace {

TEST(SectionParameters, ARectangleInOneRow) {
  model::ObjectTables job;
  job.Beams = {beamOf(4000, 0, 100)};
  job.Solids = {solidOf(200, 400, 200)};
  RecordingHost host;
  const SectionParameterTable table = SectionParameters(job, host);
  const double I = 200.0 * 400 * 400 * 400 / 12;
  const std::array wanted = {80000.0, 200.0, 200.0, I, I / 200, I / 200, 28000.0, 28000 * I, 28000.0 * 80000};
  for (const SectionParameterRow& row : table.rows)
    for (std::size_t k = 0; k < 9; ++k) EXPECT_DOUBLE_EQ(row.values()[k], wanted[k]) << k;
}

/// A T-section whose top is 100 below the datum, against sums that are taken in another way: every object
/// once, with its number as a factor, about the datum.
TEST(SectionParameters, TransformedSectionsAgreeWithSumsAboutTheDatum) {
  model::ObjectTables job;
  job.Beams = {beamOf(10000, 3000, 100)};
  job.Solids = {solidOf(1000, 150, 175), solidOf(150, 650, 575)};
  job.Solids[1].Number = 2;
  job.Solids[1].ElasticModulus = 31000;
  job.Bars = {barOf(4, 506.7, 840)};
  job.Tendons = {tendonOf(1000, 750, "Post-tensioning")};
  job.Tendons[0].Number = 2;
  job.Tendons[0].SheathArea = 2827;
  job.Tendons[0].SheathDepth = 745;
  RecordingHost host;
  const SectionParameterTable table = SectionParameters(job, host);

  const double E = (150000.0 * 28000 + 195000.0 * 31000) / 345000;  // of every row
  const double n = 200000 / E;
  const double weights[][3] = {{0, 0, 0}, {-1, 0, -1}, {-1, -1, 0}, {n - 1, 0, -1}, {n - 1, n - 1, 0}};
  for (std::size_t i = 0; i < 5; ++i) {
    const auto& [bars, tendons, ducts] = weights[i];
    const double parts[][3] = {{150000, 175, 1000 * 150.0 * 150 * 150 / 12},
                               {195000, 575, 300 * 650.0 * 650 * 650 / 12},
                               {bars * 4 * 506.7, 840, 0},
                               {tendons * 2 * 1000, 750, 0},
                               {ducts * 2 * 2827, 745, 0}};
    double A = 0, S = 0, I = 0;
    for (const auto& [area, depth, own] : parts) {
      A += area;
      S += area * depth;
      I += own + area * depth * depth;
    }
    const double y = S / A;
    I -= A * y * y;
    const std::array wanted = {A, y - 100, 900 - y, I, I / y, I / (900 - y), E, E * I, E * A};
    for (std::size_t k = 0; k < 9; ++k)
      EXPECT_NEAR(table.rows[i].values()[k] / wanted[k], 1, 1e-12)
          << sectionParameterLetter(static_cast<int>(i)) << k;
  }
}

TEST(SectionState, ForcesOfElasticRows) {
  model::ObjectTables job;
  job.Solids = {solidOf(100, 200, 50)};
  job.Solids[0].ElasticModulus = 10000;
  job.Bars = {barOf(3, 100, 300)};
  job.Tendons = {tendonOf(200, 250, "Pre-tensioning"), tendonOf(200, 250, "Post-tensioning")};
  job.Solids[0].Type = job.Bars[0].Type = job.Tendons[0].Type = job.Tendons[1].Type = "Elastic";
  job.AxialForces = {axialOf(50000, 100), axialOf(-20000, 200)};
  materials::StressStrainContext context;
  SectionState state(job, context);

  const auto uniform = state.EvaluateUniform(Stage::Tendon, 0.001);
  EXPECT_DOUBLE_EQ(uniform.CompressionForce, 200000 + 60000);
  EXPECT_DOUBLE_EQ(uniform.TensionForce, 200 * 200000 * 0.004 + 200 * 200000 * 0.005);
  // 0.002 at depth 0, zero at 200: 0.0015 at 50, -0.001 at 300, -0.0005 at 250.
  const auto prestress = state.EvaluateLinear(Stage::Tendon, 0.002, 200);
  EXPECT_DOUBLE_EQ(prestress.TensionForce, 60000 + 220000 + 200000);
  EXPECT_DOUBLE_EQ(prestress.SectionMoment, 150 * 300000.0 + 100 * 60000 + 50 * 420000);
  const auto loading = state.EvaluateLinear(Stage::Loading, 0.002, 200);
  EXPECT_DOUBLE_EQ(loading.CompressionForce, 300000 + 20000);
  EXPECT_DOUBLE_EQ(loading.TensionForce, 60000 + 440000 + 50000);
  EXPECT_DOUBLE_EQ(loading.SectionMoment, 150 * 300000.0 + 100 * 60000 + 50 * 440000 - 100 * 50000);
}

}  // namespace
}  // namespace torvik::analysis
