// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/job.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "analysis/models.h"
#include "analysis/recording_host.h"

namespace torvik::analysis {
namespace {

JobOptions optionsTo(double LargeTo) {
  JobOptions options;
  options.SmallTo = options.LargeTo = LargeTo;
  options.SmallStep = 1e-6;
  return options;
}

TEST(Job, FaultsNameTheStageAndTheRow) {
  using Spoil = std::function<void(model::ObjectTables&, RecordingHost&)>;
  const std::pair<const char*, Spoil> cases[] = {
      {"Section parameters: no solid in use", [](auto& job, auto&) { job.Solids.clear(); }},
      {"Section parameters: row \"g\": y' =", [](auto& job, auto&) { job.Solids = {solidOf(300, 0, 250)}; }},
      {"Section parameters: row \"c\": y' =", [](auto& job, auto&) { job.Bars[0].Area = 50000; }},
      {"Prestress introduction: Internal error 51: Solid 3",
       [](auto& job, auto&) { job.Solids[2].Type = ""; }},
      {"Prestress introduction: Internal error 51: Tendon 2",
       [](auto& job, auto&) {
         job.Tendons = {tendonOf(9, 9, "Pre-tensioning"), tendonOf(9, 9, "")};
       }},
      {"Prestress introduction: Bar 1 of the job: user", [](auto& job, auto&) { job.Bars[0].Type = "File"; }},
      {"Prestress introduction: Bar 1 of the job: force",
       [](auto& job, auto&) { job.Bars[0].InitialStrain = 1e302; }},
      {"Prestress introduction: sum of tension: overflow",
       [](auto& job, auto&) {
         job.Bars[0].InitialStrain = 5e299;
         job.Bars.resize(2, job.Bars[0]);
       }},
      {"Prestress introduction: slope of the search",
       [](auto& job, auto&) { job.Solids[0].InitialStrain = 0.001; }},
      {"Loading, step 1: load", [](auto& job, auto&) { job.Beams[0].ShearSpan = 0; }},
      {"Loading, step 1: Bar Strain 1: WatchStrain \"soon\"",
       [](auto& job, auto&) { job.Bars[0].WatchStrain = "soon"; }},
      {"Loading, step 1: step box", [](auto&, auto& user) { user.step = "fast"; }},
      {"Loading, step 1: Internal error 51",
       [](auto&, auto& user) { user.control.state = RunState::AtRest; }},
  };
  for (const auto& [says, spoil] : cases) {
    model::ObjectTables job = rectangle(10);
    RecordingHost user;
    job.Bars[0].Type = "Elastic";
    spoil(job, user);
    const JobRun run(job, optionsTo(1e-5), user);
    EXPECT_TRUE(run.outcome.message.starts_with(says)) << run.outcome.message;
  }
}

TEST(Job, AnElasticSectionBendsWithTheStiffnessOfItsTransformedSection) {
  model::ObjectTables job = rectangle(50);
  job.Bars.push_back(barOf(2, 286.5, 50));
  job.Tendons.push_back(tendonOf(300, 380, "Pre-tensioning"));
  job.AxialForces.push_back(axialOf(2e5, 230));
  // Concrete under the steel is not deducted in the force sums: gross concrete and all of the steel.
  double A = 0, S = 0, I = 0;
  const auto add = [&](auto& rows) {
    for (auto& row : rows) {
      row.Type = "Elastic";
      const double EA = row.ElasticModulus * row.Area * row.Number;
      A += EA;
      S += EA * row.Depth;
      I += EA * row.Depth * row.Depth;
    }
  };
  add(job.Solids), add(job.Bars), add(job.Tendons);
  JobOptions options = optionsTo(3e-5);
  options.Precision = 1e-7;
  options.DiffWidth = 1e-1;
  const auto rows = JobRun(job, options).sink.rows;
  ASSERT_EQ(rows.size(), 30U);
  for (std::size_t i = 1; i < rows.size(); ++i)
    ASSERT_NEAR((rows[i][2] - rows[0][2]) / (rows[i][3] - rows[0][3]) / (I - S * S / A), 1, 2e-6) << i;
}

}  // namespace
}  // namespace torvik::analysis
