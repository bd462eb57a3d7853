// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/beam_response.h"

#include <gtest/gtest.h>

#include <random>

#include "analysis/models.h"
#include "base/errors.h"

namespace torvik::analysis {
namespace {

TEST(MomentCurvature, SkippingBlocksFindsWhatALinearScanFinds) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> step(-1.0, 1.3);
  MomentCurvature relation;
  std::vector<double> moments;
  double moment = 0;
  for (int i = 0; i < 700; ++i) {
    relation.append(moment, i);
    moments.push_back(moment);
    moment += i % 97 == 0 ? 0.0 : step(random);
  }
  const auto between = [&](double m, std::size_t j) {
    return (moments[j] <= m && m <= moments[j + 1]) || (moments[j + 1] <= m && m <= moments[j]);
  };
  std::uniform_real_distribution<double> anywhere(-30.0, 130.0);
  for (int i = 0; i < 4000; ++i) {
    const std::size_t from = random() % moments.size();
    const double m = i % 3 == 0 ? moments[random() % moments.size()] : anywhere(random);
    std::size_t upward = MomentCurvature::kNone;
    for (std::size_t j = from; j + 1 < moments.size() && upward == MomentCurvature::kNone; ++j)
      if (between(m, j)) upward = j;
    std::size_t downward = MomentCurvature::kNone;
    for (std::size_t j = from; j >= 1 && downward == MomentCurvature::kNone; --j)
      if (between(m, j - 1)) downward = j;
    ASSERT_EQ(relation.bracketUpward(m, from), upward) << m << " from " << from;
    ASSERT_EQ(relation.bracketDownward(m, from), downward) << m << " from " << from;
  }
}

TEST(BeamResponse, AnElasticBeamDeflectsAsTheClosedFormSays) {
  // Curvature M / EI; midspan deflection of two loads P / 2 at distance a from the supports:
  // P a (3 L^2 - 4 a^2) / (48 EI).
  const double EI = 2e13;
  struct Case {
    double Span, FlexuralSpan;
  };
  for (const Case c : {Case{4000, 0}, Case{10000, 3000}, Case{3000, 2900}}) {
    BeamResponse beam(beamOf(c.Span, c.FlexuralSpan, 1000));
    MomentCurvature relation;
    for (int step = 0; step <= 20; ++step) {
      relation.append(1e7 * step, 1e7 * step / EI);
      beam.update(relation, step, 0);
    }
    const double a = (c.Span - c.FlexuralSpan) / 2;
    const double load = 2e8 / (a / 2);
    EXPECT_DOUBLE_EQ(beam.Load(), load);
    const double closed = load * a * (3 * c.Span * c.Span - 4 * a * a) / (48 * EI);
    EXPECT_NEAR(beam.Displacement() / closed, 1, 2e-5);
    EXPECT_NEAR(beam.Deflection().front() / closed, 1, 2e-5);
    EXPECT_NEAR(beam.Deflection().back() / closed, 0, 2e-3);
  }
}

TEST(BeamResponse, PiecesOutsideEveryBracketKeepTheCurvatureOfTheStagesBefore) {
  model::BeamObject object = beamOf(4000, 1000, 10);
  BeamResponse beam(object);
  MomentCurvature relation;
  relation.append(5.0, 1e-6);
  beam.update(relation, 0, 3e-6);
  for (const double curvature : beam.pieceCurvatures()) EXPECT_EQ(curvature, 3e-6);
  // The middle region stands at the moment of the step; the moment of the outer pieces lies below the first
  // point.
  relation.append(6.0, 2e-6);
  beam.update(relation, 1, 3e-6);
  EXPECT_EQ(beam.pieceMoments()[2], 6.0 - (500.0 - 500.0) * (6.0 / 1500));
  EXPECT_EQ(beam.pieceCurvatures()[0], 2e-6);
  EXPECT_EQ(beam.pieceCurvatures()[9], 3e-6);
}

TEST(BeamResponse, AfterThePeakAPieceUnloadsOnTheFirstBranchFromItsLastBracket) {
  BeamResponse beam(beamOf(4000, 2000, 20));
  MomentCurvature relation;
  const double moments[] = {0, 10, 20, 18, 16};
  for (int step = 0; step < 5; ++step) {
    relation.append(moments[step], step * 1e-6);
    beam.update(relation, step, 0);
  }
  // The bracket kept at the peak is the one below it, so midspan, too, goes back on the rising branch.
  EXPECT_DOUBLE_EQ(beam.pieceCurvatures()[0], 1.6e-6);
  const double outer = beam.pieceMoments()[19];
  EXPECT_LT(outer, 1.0);
  EXPECT_DOUBLE_EQ(beam.pieceCurvatures()[19], outer / 10 * 1e-6);
}

TEST(BeamResponse, NamesWhatWasDividedByZero) {
  const auto faultOf = [](const model::BeamObject& object, std::vector<double> moments) -> std::string {
    try {
      BeamResponse beam(object);
      MomentCurvature relation;
      for (std::size_t i = 0; i < moments.size(); ++i) {
        relation.append(moments[i], 1e-6 * static_cast<double>(i));
        beam.update(relation, static_cast<int>(i), 0);
      }
    } catch (const base::NumericFault& fault) {
      return fault.what();
    }
    return "";
  };
  model::BeamObject noShearSpan = beamOf(4000, 1000, 10);
  noShearSpan.ShearSpan = 0;
  EXPECT_NE(faultOf(noShearSpan, {1.0}).find("ShearSpan"), std::string::npos);
  EXPECT_NE(faultOf(beamOf(4000, 1000, 10), {5.0, 5.0}).find("two successive steps have one moment"),
            std::string::npos);
  EXPECT_EQ(faultOf(beamOf(4000, 1000, 10), {0.0, 5.0, 6.0}), "");
}

TEST(BeamResponse, HoldsAsManyStepsAs16BitsCount) {
  BeamResponse beam(beamOf(4000, 0, 2));
  MomentCurvature relation;
  for (int step = 0; step <= 32768; ++step) {
    relation.append(step, step * 1e-9);
    beam.update(relation, step, 0);
  }
  EXPECT_GT(beam.Displacement(), 0);
  relation.append(32769, 32769e-9);
  EXPECT_THROW(beam.update(relation, 32769, 0), base::NumericFault);
}

}  // namespace
}  // namespace torvik::analysis
