// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/job.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "analysis/models.h"
#include "analysis/recording_host.h"

namespace torvik::analysis {
namespace {

JobOptions optionsTo(double LargeTo) {
  JobOptions options;
  options.SmallTo = options.LargeTo = LargeTo;
  options.SmallStep = 1e-6;
  options.convergenceSound = "start.wav";
  options.pausePreLoadingSound = options.pauseWatchSound = "ding.wav";
  return options;
}

/// What happens in a job, without trials, cells and values.
std::string outline(const JobRun& run) {
  std::string lines;
  for (const std::string& event : run.host.events)
    if (!event.starts_with("Count") && !event.starts_with("cell"))
      lines += event.substr(0, event.find('\t')) + ", ";
  return lines;
}

TEST(Job, AsksItsSurroundingsInThisOrder) {
  // Without tendons and axial forces each of the four searches before loading ends in its first iteration; so
  // does that of step 0, which has no curvature.
  EXPECT_EQ(outline(JobRun(rectangle(10), optionsTo(1.5e-6))),
            "Beam Top: 0.0000E+00, Beam Bottom: 5.0000E+02, section, section, section, section, section, "
            "current values, strain without load, sound: ding.wav, current values, strain without load, "
            "sound: ding.wav, "
            "current values, strain without load, sound: ding.wav, current values, strain without load, "
            "sound: ding.wav, "
            "Mu: 0.0000E+00, sound: start.wav, row 0, row ends, line, current values, charts 0, pieces, "
            "Status: Loading, events, Status: Loading, events, Status: Loading, events, "
            "sound: start.wav, Mu: 3.5452E+07, row 1, row ends, line, current values, charts 1, pieces, "
            "report: Loading end., over, ");
}

TEST(Job, AWatchedStrainPausesOnceInTheMiddleOfItsRow) {
  model::ObjectTables job = rectangle(10);
  job.Bars[0].WatchStrain = "0.0005";
  RecordingHost user;
  user.pausing = true;
  const std::string lines = outline(JobRun(job, optionsTo(3e-6), user));
  const std::string expected =
      "row 2, crossed: Bar Strain 1 column 6, sound: ding.wav, pause at watch, events, Status: Loading, row "
      "ends, line, ";
  EXPECT_NE(lines.find(expected), std::string::npos) << lines;
  EXPECT_EQ(lines.find("crossed"), lines.rfind("crossed"));
}

TEST(Job, FaultsNameTheStageAndTheRow) {
  struct Spoilt {
    model::ObjectTables job = rectangle(10);
    RecordingHost user = {};
  };
  const struct {
    const char* says;
    std::function<void(Spoilt&)> spoil;
  } cases[] = {
      {"Section parameters: no solid in use", [](auto& c) { c.job.Solids.clear(); }},
      {"Section parameters: row \"g\": y' =", [](auto& c) { c.job.Solids = {solidOf(300, 0, 250)}; }},
      {"Section parameters: row \"g\": Z' =", [](auto& c) { c.job.Solids = {solidOf(300, 500, 0)}; }},
      {"Section parameters: row \"c\": y' =", [](auto& c) { c.job.Bars[0].Area = 50000; }},
      {"Prestress introduction: Internal error 51: Solid 3", [](auto& c) { c.job.Solids[2].Type = ""; }},
      {"Prestress introduction: Internal error 51: Tendon 2",
       [](auto& c) {
         c.job.Tendons = {tendonOf(9, 9, "Pre-tensioning"), tendonOf(9, 9, "")};
       }},
      {"Prestress introduction: Bar 1 of the job: user", [](auto& c) { c.job.Bars[0].Type = "File"; }},
      {"Prestress introduction: Bar 1 of the job: force",
       [](auto& c) { c.job.Bars[0].InitialStrain = 1e302; }},
      {"Prestress introduction: sum of tension: overflow",
       [](auto& c) {
         c.job.Bars[0].InitialStrain = 5e299;
         c.job.Bars.resize(2, c.job.Bars[0]);
       }},
      {"Prestress introduction: slope of the search", [](auto& c) { c.job.Solids[0].InitialStrain = 0.001; }},
      {"Loading, step 1: load", [](auto& c) { c.job.Beams[0].ShearSpan = 0; }},
      {"Loading, step 1: Bar Strain 1: WatchStrain \"soon\"",
       [](auto& c) { c.job.Bars[0].WatchStrain = "soon"; }},
      {"Loading, step 1: step box", [](auto& c) { c.user.step = "fast"; }},
      {"Loading, step 1: Internal error 51", [](auto& c) { c.user.control.state = RunState::AtRest; }},
  };
  for (const auto& [says, spoil] : cases) {
    Spoilt c;
    c.job.Bars[0].Type = "Elastic";
    spoil(c);
    const JobRun run(c.job, optionsTo(1e-5), c.user);
    EXPECT_TRUE(run.outcome.message.starts_with(says)) << run.outcome.message;
  }
}

std::vector<std::vector<double>> preciseRowsOf(const model::ObjectTables& job) {
  JobOptions options = optionsTo(3e-5);
  options.Precision = 1e-7;
  options.DiffWidth = 1e-1;
  const JobRun run(job, options);
  EXPECT_EQ(run.outcome.message, "Loading end.");
  return run.sink.rows;
}

model::ObjectTables prestressedColumn() {
  model::ObjectTables job = rectangle(50);
  for (auto& solid : job.Solids) solid.FlexuralStrain = -0.0001;
  job.Bars.push_back(barOf(2, 286.5, 50));
  job.Tendons.push_back(tendonOf(300, 380, "Pre-tensioning"));
  job.AxialForces.push_back(axialOf(2e5, 230));
  return job;
}

void eachRow(model::ObjectTables& job, auto&& change) {
  for (auto& row : job.Solids) change(row);
  for (auto& row : job.Bars) change(row);
  for (auto& row : job.Tendons) change(row);
}

TEST(JobIdentity, OneSectionInOtherWordsBendsAlike) {
  const model::ObjectTables whole = prestressedColumn();
  model::ObjectTables shifted = whole, split = whole, repeated = whole;
  eachRow(shifted, [](auto& row) { row.Depth += 1000; });
  shifted.AxialForces[0].Depth += 1000;
  eachRow(split, [](auto& row) { row.Area /= 2; });
  eachRow(split, [](auto& row) { row.Number = static_cast<std::int16_t>(row.Number * 2); });
  for (auto& solid : split.Solids) solid.Width /= 2;
  repeated.Bars[0].Number = 1;
  repeated.Bars.resize(4, repeated.Bars[0]);

  const auto wanted = preciseRowsOf(whole);
  for (const model::ObjectTables& other : {shifted, split, repeated}) {
    const auto rows = preciseRowsOf(other);
    ASSERT_EQ(rows.size(), wanted.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
      for (std::size_t k = 0; k < 4; ++k)
        ASSERT_NEAR(rows[i][k], wanted[i][k], 1e-5 * wanted.back()[k]) << "row " << i << " column " << k;
  }
}

TEST(JobIdentity, AnElasticSectionBendsWithTheStiffnessOfItsTransformedSection) {
  model::ObjectTables job = prestressedColumn();
  // Concrete under the steel is not deducted in the force sums: gross concrete and all of the steel.
  double A = 0, S = 0, I = 0;
  eachRow(job, [&](auto& row) {
    row.Type = "Elastic";
    const double EA = row.ElasticModulus * row.Area * row.Number;
    A += EA;
    S += EA * row.Depth;
    I += EA * row.Depth * row.Depth;
  });
  const auto rows = preciseRowsOf(job);
  for (std::size_t i = 1; i < rows.size(); ++i)
    ASSERT_NEAR((rows[i][2] - rows[0][2]) / (rows[i][3] - rows[0][3]) / (I - S * S / A), 1, 2e-6) << i;
}

}  // namespace
}  // namespace torvik::analysis
