// SPDX-License-Identifier: GPL-3.0-or-later
#include "section/beam_response.h"

#include <gtest/gtest.h>

#include <random>

#include "model/models.h"

namespace torvik::section {
namespace {

TEST(MomentCurvature, SkippingBlocksFindsWhatALinearScanFinds) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> step(-1.0, 1.3);
  std::uniform_real_distribution<double> anywhere(-30.0, 130.0);
  MomentCurvature relation;
  std::vector<double> moments = {0};
  for (int i = 0; i < 700; ++i) {
    relation.append(moments.back(), i);
    moments.push_back(moments.back() + (i % 97 == 0 ? 0.0 : step(random)));
  }
  moments.pop_back();
  for (int i = 0; i < 4000; ++i) {
    const std::size_t points = 1 + random() % moments.size();
    const std::size_t from = random() % points;
    const double m = i % 3 == 0 ? moments[random() % moments.size()] : anywhere(random);
    const auto misses = [&](std::size_t j) {
      return m < std::min(moments[j], moments[j + 1]) || std::max(moments[j], moments[j + 1]) < m;
    };
    std::size_t upward = from;
    while (upward + 1 < points && misses(upward)) ++upward;
    std::size_t downward = from;
    while (downward >= 1 && misses(downward - 1)) --downward;
    const auto none = MomentCurvature::kNone;
    ASSERT_EQ(relation.bracketUpward(m, from, points), upward + 1 < points ? upward : none)
        << m << " " << from;
    ASSERT_EQ(relation.bracketDownward(m, from), downward >= 1 ? downward : none) << m << " " << from;
  }
}

/// Curvature M / EI; midspan deflection of two loads P / 2 at distance a from the supports:
/// P a (3 L^2 - 4 a^2) / (48 EI).
TEST(BeamResponse, AnElasticBeamDeflectsAsTheClosedFormSays) {
  const double EI = 2e13;
  for (const auto& [Span, FlexuralSpan] : {std::pair(4000.0, 0.0), {10000, 3000}, {3000, 2900}}) {
    BeamResponse beam(tests::beamOf(Span, FlexuralSpan, 1000));
    MomentCurvature relation;
    for (int step = 0; step <= 20; ++step) {
      relation.append(1e7 * step, 1e7 * step / EI);
      beam.update(relation, step, 0);
    }
    const double a = (Span - FlexuralSpan) / 2;
    EXPECT_DOUBLE_EQ(beam.Load(), 2e8 / (a / 2));
    const double closed = beam.Load() * a * (3 * Span * Span - 4 * a * a) / (48 * EI);
    EXPECT_NEAR(beam.Displacement() / closed, 1, 2e-5);
    EXPECT_NEAR(beam.Deflection().front() / closed, 1, 2e-5);
    EXPECT_NEAR(beam.Deflection().back() / closed, 0, 2e-3);
  }
}

}  // namespace
}  // namespace torvik::section
