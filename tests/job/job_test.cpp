// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/job.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "base/raises51.h"
#include "base/settings.h"
#include "job/job_run.h"
#include "job/steering.h"
#include "model/models.h"

namespace torvik::tests {
namespace {

job::JobOptions optionsTo(double LargeTo) {
  job::JobOptions options;
  options.SmallTo = options.LargeTo = LargeTo;
  options.SmallStep = 1e-6;
  return options;
}

TEST(Job, FaultsNameTheStageAndTheRow) {
  using Spoil = std::function<void(model::ObjectTables&, User&)>;
  using model::ObjectKind;
  const struct {
    const char* says;
    Spoil spoil;
    std::optional<section::RowOf> row = {};
  } cases[] = {
      {"Section parameters: no solid in use", [](auto& job, auto&) { job.Solids.clear(); }},
      {"Section parameters: row \"g\": y' =", [](auto& job, auto&) { job.Solids = {solidOf(300, 0, 250)}; }},
      {"Section parameters: row \"c\": y' =", [](auto& job, auto&) { job.Bars[0].Area = 50000; }},
      {"Prestress introduction: Internal error 51: Solid 3 of the job: Type \"\"",
       [](auto& job, auto&) { job.Solids[2].Type = ""; },
       {{ObjectKind::Solid, 2}}},
      {"Prestress introduction: Internal error 51: Tendon 2 of the job: Prestressing \"?\"",
       [](auto& job, auto&) {
         job.Tendons = {tendonOf(9, 9, "Pre-tensioning"), tendonOf(9, 9, "?")};
       },
       {{ObjectKind::Tendon, 1}}},
      {"Prestress introduction: Bar 1 of the job: user",
       [](auto& job, auto&) { job.Bars[0].Type = "File"; },
       {{ObjectKind::Bar, 0}}},
      {"Prestress introduction: slope of the search",
       [](auto& job, auto&) { job.Solids[0].InitialStrain = 0.001; }},
      {"Loading, step 1: load", [](auto& job, auto&) { job.Beams[0].ShearSpan = 0; }},
      {"Loading, step 1: Bar Strain 1: WatchStrain \"soon\"",
       [](auto& job, auto&) { job.Bars[0].WatchStrain = "soon"; }},
      {"Loading, step 1: step box", [](auto&, auto& user) { user.step = "fast"; }},
      {"nobody answers",
       [](auto& job, auto& user) {
         job.Solids[4].Type = "Restoration (Confined)";
         user.answers.clear();
       }},
  };
  for (const auto& [says, spoil, row] : cases) {
    model::ObjectTables job = rectangle(10);
    User user;
    job.Bars[0].Type = "Elastic";
    spoil(job, user);
    const JobRun run(job, optionsTo(1e-5), user);
    EXPECT_TRUE(run.end().message.starts_with(says)) << run.end().message;
    EXPECT_EQ(run.end().row, row) << says;
    // The extent stands before anything else can fail, the parameters only where nothing did.
    EXPECT_EQ(run.run.extent().has_value(), !job.Solids.empty()) << says;
    EXPECT_EQ(run.run.sectionParameters().has_value(), run.end().stage.has_value()) << says;
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
  job::JobOptions options = optionsTo(3e-5);
  options.search.Precision = 1e-7;
  options.search.DiffWidth = 1e-1;
  const std::vector<Numbers> rows = JobRun(job, options).rows();
  ASSERT_EQ(rows.size(), 30U);
  for (std::size_t i = 1; i < rows.size(); ++i)
    ASSERT_NEAR((rows[i][2] - rows[0][2]) / (rows[i][3] - rows[0][3]) / (I - S * S / A), 1, 2e-6) << i;
}

TEST(Steering, WaitsWhilePaused) {
  job::Steering steering;
  const auto wait = [&](job::JobState from, std::vector<job::JobState> events) {
    steering.state = from;
    std::size_t handled = 0;
    const bool goesOn = job::WaitWhilePaused(steering, [&] { steering.state = events.at(handled++); });
    EXPECT_EQ(handled, events.size());
    return goesOn;
  };
  using enum job::JobState;
  EXPECT_TRUE(wait(Running, {}));
  EXPECT_FALSE(wait(Over, {}));
  EXPECT_TRUE(wait(Paused, {Paused, Paused, Running}));
  EXPECT_FALSE(wait(Paused, {Paused, Over}));
  EXPECT_TRUE(raises51([&] { wait(Paused, {AtRest}); }));
}

}  // namespace
}  // namespace torvik::tests
