// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>

#include "analysis/models.h"
#include "analysis/recording_host.h"

namespace torvik::analysis {
namespace {

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

}  // namespace
}  // namespace torvik::analysis
