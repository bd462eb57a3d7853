// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/section_state.h"

#include <gtest/gtest.h>

#include "analysis/models.h"
#include "base/errors.h"
#include "base/fault.h"

namespace torvik::analysis {
namespace {

/// One elastic row of each kind, so that every sum can be written down by hand.
model::ObjectTables elasticRows() {
  model::ObjectTables job;
  job.Beams.push_back(beamOf(4000, 0, 10));
  job.Solids.push_back(solidOf(100, 100, 50));
  job.Solids[0].Type = "Elastic";
  job.Solids[0].ElasticModulus = 10000;
  job.Solids[0].Number = 2;
  job.Bars.push_back(barOf(3, 100, 300));
  job.Bars[0].Type = "Elastic";
  job.Tendons.push_back(tendonOf(200, 250, "Pre-tensioning"));
  job.Tendons.push_back(tendonOf(200, 250, "Post-tensioning"));
  for (auto& tendon : job.Tendons) tendon.Type = "Elastic";
  job.AxialForces.push_back(axialOf(50000, 100));
  job.AxialForces.push_back(axialOf(-20000, 200));
  job.AxialForces[0].Number = 7;  // takes no part
  return job;
}

TEST(SectionState, UniformStrainInEachStage) {
  const model::ObjectTables job = elasticRows();
  materials::StressStrainContext context;
  SectionState state(job, context);
  // Solid: 2 x 10000 mm2 x 10000 N/mm2 x 0.001 = 200 kN; bar: 3 x 100 x 200000 x -0.001 = -60 kN.
  const SectionState::Forces tendon = state.EvaluateUniform(Stage::Tendon, 0.001);
  EXPECT_DOUBLE_EQ(tendon.CompressionForce, 200000 + 60000);
  EXPECT_DOUBLE_EQ(tendon.TensionForce, 200 * 200000 * 0.004 + 200 * 200000 * 0.005);
  EXPECT_EQ(state.tendons().CurrentStrain[1], 0.005);
  const SectionState::Forces axial = state.EvaluateUniform(Stage::AxialForce, 0.001);
  EXPECT_DOUBLE_EQ(axial.CompressionForce, 200000 + 60000 + 20000);
  EXPECT_DOUBLE_EQ(axial.TensionForce, 2 * 200 * 200000 * 0.004 + 50000);
  EXPECT_EQ(axial.SectionMoment, 0);
  // In tension everything changes sides.
  const SectionState::Forces tension = state.EvaluateUniform(Stage::AxialForce, -0.001);
  EXPECT_DOUBLE_EQ(tension.CompressionForce, 20000);
  EXPECT_DOUBLE_EQ(tension.TensionForce, 200000 + 60000 + 2 * 200 * 200000 * 0.006 + 50000);
}

TEST(SectionState, LinearStrainAndTheMomentAboutTheNeutralAxis) {
  const model::ObjectTables job = elasticRows();
  materials::StressStrainContext context;
  SectionState state(job, context);
  // 0.002 at depth 0, zero at 200: 0.0015 at 50, -0.001 at 300, -0.0005 at 250.
  const SectionState::Forces forces = state.EvaluateLinear(Stage::Loading, 0.002, 200);
  EXPECT_DOUBLE_EQ(state.solids().CurrentStrain[0], 0.0015);
  EXPECT_DOUBLE_EQ(state.bars().CurrentStrain[0], 0.001);
  EXPECT_DOUBLE_EQ(state.tendons().CurrentStrain[0], 0.0055);
  const double solid = 20000 * 15.0;
  const double bar = 300 * 200.0;
  const double tendons = 2 * 200 * 1100.0;
  EXPECT_DOUBLE_EQ(forces.CompressionForce, solid + 20000);
  EXPECT_DOUBLE_EQ(forces.TensionForce, bar + tendons + 50000);
  EXPECT_DOUBLE_EQ(forces.SectionMoment, 150 * solid + 100 * bar + 50 * tendons - 100 * 50000 + 0);
  // In the prestress stage a post-tensioned tendon stays as it is, but its force takes part; axial forces do
  // not.
  const SectionState::Forces prestress = state.EvaluateLinear(Stage::Tendon, 0.002, 200);
  EXPECT_DOUBLE_EQ(prestress.TensionForce, bar + 200 * 1100.0 + 200 * 1000.0);
  EXPECT_DOUBLE_EQ(prestress.SectionMoment, 150 * solid + 100 * bar + 50 * (200 * 1100.0 + 200 * 1000.0));
}

TEST(SectionState, StrainsStandOnTheCommittedBaseAndNeverOnTheLastTrial) {
  const model::ObjectTables job = elasticRows();
  materials::StressStrainContext context;
  SectionState state(job, context);
  state.EvaluateUniform(Stage::AxialForce, 0.5);
  state.EvaluateUniform(Stage::AxialForce, 0.001);
  EXPECT_EQ(state.solids().BaseStrain[0], 0);
  state.CommitStrains();
  EXPECT_EQ(state.solids().BaseStrain[0], 0.001);
  EXPECT_EQ(state.bars().BaseStrain[0], -0.001);
  EXPECT_EQ(state.tendons().BaseStrain[1], 0.005 - 0.001);
  state.EvaluateLinear(Stage::Loading, 0.002, 200);
  EXPECT_DOUBLE_EQ(state.solids().CurrentStrain[0], 0.0025);
  EXPECT_DOUBLE_EQ(state.bars().CurrentStrain[0], 0.0);
}

TEST(SectionState, ARowOfNumberZeroHasStrainAndStressButNoForce) {
  model::ObjectTables job = elasticRows();
  job.Solids[0].Number = 0;
  materials::StressStrainContext context;
  SectionState state(job, context);
  state.EvaluateUniform(Stage::Tendon, 0.001);
  EXPECT_EQ(state.solids().CurrentStress[0], 10);
  EXPECT_EQ(state.solids().CurrentForce[0], 0);
}

TEST(SectionState, FaultsNameTheRow) {
  struct Case {
    const char* name;
    void (*spoil)(model::ObjectTables&);
    double NeutralAxis;
    const char* says;
  };
  const Case cases[] = {
      {"unknown law", [](auto& job) { job.Bars[0].Type = "elastic"; }, 200, "Bar 1"},
      {"unknown prestressing", [](auto& job) { job.Tendons[1].Prestressing = "post"; }, 200, "Tendon 2"},
      {"neutral axis 0", [](auto&) {}, 0, "neutral axis"},
      {"stress overflows",
       [](auto& job) {
         job.Solids[0].ElasticModulus = 1e308;
         job.Solids[0].InitialStrain = 1e5;
       },
       200, "Solid 1 of the job: stress"},
      {"law that can not be worked out",
       [](auto& job) {
         job.Bars.push_back(job.Bars[0]);
         job.Bars[1].Type = "Steel Bar";
         job.Bars[1].UltimateStrain = 0.015;
       },
       200, "Bar 2"},
      {"force sum overflows",
       [](auto& job) {
         job.Solids[0].Area = 5e306;
         job.Solids.push_back(job.Solids[0]);
       },
       200, "sum of compression"},
  };
  for (const Case& c : cases) {
    model::ObjectTables job = elasticRows();
    c.spoil(job);
    materials::StressStrainContext context;
    SectionState state(job, context);
    base::fpflags::clear();
    std::string said;
    try {
      state.EvaluateLinear(Stage::Tendon, 0.002, c.NeutralAxis);
    } catch (const std::exception& error) {
      said = error.what();
    }
    EXPECT_NE(said.find(c.says), std::string::npos) << c.name << ": " << said;
  }
}

}  // namespace
}  // namespace torvik::analysis
