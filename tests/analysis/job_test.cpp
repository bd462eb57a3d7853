// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/job.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis/models.h"
#include "analysis/recording_host.h"

namespace torvik::analysis {
namespace {

using End = JobOutcome::End;

JobOptions optionsTo(double LargeTo, double step = 1e-6) {
  JobOptions options;
  options.SmallTo = LargeTo;
  options.SmallStep = step;
  options.LargeTo = LargeTo;
  options.convergenceSound = "start.wav";
  options.pausePreLoadingSound = "ding.wav";
  options.pauseWatchSound = "ding.wav";
  return options;
}

struct JobRun {
  RecordingHost host;
  RecordingSink sink{&host};
  JobOutcome outcome;

  JobRun(model::ObjectTables job, const JobOptions& options) : JobRun(job, options, [](RecordingHost&) {}) {}
  template <class Prepare>
  JobRun(model::ObjectTables job, const JobOptions& options, Prepare prepare) {
    prepare(host);
    materials::StressStrainContext context;
    context.prompt = &host;
    Sink* const sinks[] = {&sink};
    outcome = runJob(job, options, host.control, host, sinks, context);
  }
  [[nodiscard]] std::ptrdiff_t count(const std::string& event) const {
    return std::count(host.events.begin(), host.events.end(), event);
  }
};

TEST(Job, AsksItsSurroundingsInThisOrder) {
  const JobRun run(rectangle(10), optionsTo(1.5e-6));
  const std::vector<std::string> expected = {
      "Beam Top: 0.0000E+00", "Beam Bottom: 5.0000E+02", "section parameters",
      // Without tendons and axial forces each of the four searches ends in its first iteration.
      "current values", "strain without load", "sound: ding.wav", "current values", "strain without load",
      "sound: ding.wav", "current values", "strain without load", "sound: ding.wav", "current values",
      "strain without load", "sound: ding.wav", "Mu: 0.0000E+00",
      // Step 0: no curvature.
      "sound: start.wav", "row 0", "row ends", "line", "current values", "charts", "Status: Loading",
      "events",
      // Step 1 needs further iterations; then the curvature reaches the end of the large range.
      "Status: Loading", "events", "Status: Loading", "events", "sound: start.wav", "Mu: 3.5452E+07", "row 1",
      "row ends", "line", "current values", "charts", "report: Loading end.", "over"};
  EXPECT_EQ(run.host.events, expected);
  EXPECT_EQ(run.outcome.end, End::LoadingEnd);
  EXPECT_EQ(run.outcome.rows, 2);
}

TEST(Job, CountsTheIterationsOfEachSearch) {
  model::ObjectTables job = rectangle(10);
  job.Tendons.push_back(tendonOf(300, 400, "Pre-tensioning"));
  const JobRun run(job, optionsTo(1e-9), [](RecordingHost& host) { host.recordCounts = true; });
  EXPECT_EQ(run.outcome.end, End::LoadingEnd) << run.outcome.message;
  const auto first = std::find(run.host.events.begin(), run.host.events.end(), "Count: 1");
  ASSERT_NE(first, run.host.events.end());
  EXPECT_EQ(*(first + 1), "Count: 1");  // three trials an iteration
  EXPECT_EQ(*(first + 2), "Count: 1");
  EXPECT_GE(run.count("Count: 1/1"), 9);  // each of three outer trials starts its own inner count
  EXPECT_GT(run.count("Status: Tendon (N)"), 0);
  EXPECT_GT(run.count("Status: Tendon (MN)"), 0);
}

TEST(Job, EverySearchThatFailsSaysWhich) {
  model::ObjectTables tendon = rectangle(10);
  tendon.Tendons.push_back(tendonOf(300, 400, "Post-tensioning"));
  model::ObjectTables axial = rectangle(10);
  axial.AxialForces.push_back(axialOf(4e5, 100));
  struct Case {
    const char* message;
    model::ObjectTables job;
    double precision;
    std::int16_t MaxIteration;
  };
  const Case cases[] = {
      {"Tendon convergence (N) failed.", tendon, 1e-9, 1},
      {"Axial force convergence (N) failed.", axial, 1e-9, 1},
      {"Loading convergence failed.", rectangle(10), 1e-3, 1},
  };
  for (const Case& c : cases) {
    JobOptions options = optionsTo(1e-4);
    options.Precision = c.precision;
    options.MaxIteration = c.MaxIteration;
    const JobRun run(c.job, options);
    EXPECT_EQ(run.outcome.end, End::SearchFailed) << c.message;
    EXPECT_EQ(run.outcome.message, c.message);
    EXPECT_EQ(run.count("report: " + run.outcome.message), 1);
  }
}

TEST(Job, TheEndAfterCrushingIsACollapseOrAFailedSearchNeverAWrongRow) {
  const JobRun run(rectangle(20), optionsTo(1.0, 1e-6));
  EXPECT_TRUE(run.outcome.end == End::Collapsed || run.outcome.end == End::SearchFailed ||
              run.outcome.end == End::NumericFault)
      << run.outcome.message;
  for (const auto& row : run.sink.rows)
    for (const double value : row) EXPECT_TRUE(std::isfinite(value));
}

TEST(Job, WithoutCompressionTheSectionHasCollapsed) {
  model::ObjectTables job;
  job.Beams.push_back(beamOf(4000, 0, 10));
  job.Solids.push_back(solidOf(300, 100, 250));  // one fibre: nothing balances it
  job.Solids[0].FlexuralStrain = -1e-9;
  JobOptions options = optionsTo(1e-4);
  options.Precision = options.DiffWidth = 1e-9;  // or the perturbed trial would still press a little
  const JobRun run(job, options);
  EXPECT_EQ(run.outcome.end, End::Collapsed) << run.outcome.message;
  EXPECT_EQ(run.outcome.message, "Loading causes compression force = tension force = 0.");
  EXPECT_EQ(run.outcome.rows, 1);
}

TEST(Job, TheStepBoxDecidesTheNextCurvature) {
  const auto curvatures = [](const char* step, JobOptions options) {
    return JobRun(rectangle(10), options, [&](RecordingHost& host) { host.step = step; })
        .sink.reportedCurvatures;
  };
  JobOptions options = optionsTo(1e-5);
  options.SmallTo = 2e-6;
  options.SmallStep = 1e-6;
  options.LargeStep = 3e-6;
  // The small step is left by the first curvature above the end of the small range.
  const std::vector<double> small = curvatures("Small", options);
  EXPECT_EQ(small, (std::vector<double>{0, 1e-6, 1e-6 + 1e-6, 1e-6 + 1e-6 + 1e-6, 1e-6 + 1e-6 + 1e-6 + 3e-6,
                                        1e-6 + 1e-6 + 1e-6 + 3e-6 + 3e-6}));
  EXPECT_EQ(curvatures("Large", options), (std::vector<double>{0, 3e-6, 3e-6 + 3e-6, 3e-6 + 3e-6 + 3e-6}));
  EXPECT_EQ(curvatures("4E-06", options), (std::vector<double>{0, 4e-6, 4e-6 + 4e-6}));
  EXPECT_EQ(curvatures("1", options), (std::vector<double>{0}));

  const JobRun changed(rectangle(10), options);
  EXPECT_EQ(changed.count("step box: Large"), 1);
  const JobRun noNumber(rectangle(10), options, [](RecordingHost& host) { host.step = "fast"; });
  EXPECT_EQ(noNumber.outcome.end, End::NumericFault);
  EXPECT_NE(noNumber.outcome.message.find("step box"), std::string::npos);
  EXPECT_EQ(noNumber.outcome.rows, 1);
}

TEST(Job, AWatchedStrainPausesInTheMiddleOfItsRow) {
  model::ObjectTables job = rectangle(10);
  job.Solids[0].Output = 1;
  job.Solids[0].WatchStrain = "5E-05";
  job.Bars[0].WatchStrain = "0.0005";
  const auto after = [](const JobRun& run, const std::string& event) {
    const auto at = std::find(run.host.events.begin(), run.host.events.end(), event);
    return std::vector<std::string>(at, std::min(at + 5, run.host.events.end()));
  };
  const JobRun run(job, optionsTo(3e-6));
  EXPECT_EQ(after(run, "crossed: Solid Strain 1 column 6"),
            (std::vector<std::string>{"crossed: Solid Strain 1 column 6", "sound: ding.wav", "pause at watch",
                                      "Status: Loading", "row ends"}));
  EXPECT_EQ(run.count("pause at watch"), 2);  // each strain crosses once
  // End during the pause: the row has no line in the file, and no message is given.
  const JobRun ended(job, optionsTo(3e-6), [](RecordingHost& host) {
    host.onEvent = [&host](const std::string& event) {
      if (event == "pause at watch") host.control.state = RunState::Over;
    };
  });
  EXPECT_EQ(ended.outcome.end, End::EndedByUser);
  EXPECT_EQ(ended.outcome.message, "");
  EXPECT_EQ(ended.host.events.back(), "over");
  EXPECT_EQ(static_cast<std::size_t>(ended.outcome.rows), ended.sink.rows.size());

  JobOptions quiet = optionsTo(3e-6);
  quiet.pauseWatch = false;
  EXPECT_EQ(JobRun(job, quiet).count("pause at watch"), 0);
  quiet.tableSolver = false;  // the watch lives in the solver table
  EXPECT_EQ(JobRun(job, quiet).count("crossed: Solid Strain 1 column 6"), 0);
  job.Bars[0].WatchStrain = "soon";
  const JobRun bad(job, optionsTo(3e-6));
  EXPECT_EQ(bad.outcome.end, End::NumericFault);
  EXPECT_NE(bad.outcome.message.find("WatchStrain"), std::string::npos) << bad.outcome.message;
  job.Bars[0].Output = 0;  // nothing is watched that is not put out
  EXPECT_EQ(JobRun(job, optionsTo(3e-6)).outcome.end, End::LoadingEnd);
}

TEST(Job, EndsAtItsNextYieldWhereverTheUserEndsIt) {
  model::ObjectTables job = rectangle(10);
  job.Tendons.push_back(tendonOf(300, 400, "Pre-tensioning"));
  JobOptions options = optionsTo(1e-5);
  options.pausePreLoading = true;
  const JobRun whole(job, options);
  ASSERT_EQ(whole.outcome.end, End::LoadingEnd) << whole.outcome.message;
  EXPECT_EQ(whole.count("pause before loading"), 4);
  for (std::size_t at = 0; at < whole.host.events.size(); at += 3) {
    const JobRun run(job, options, [&](RecordingHost& host) {
      host.onEvent = [&host, at](const std::string&) {
        if (host.events.size() > at) host.control.state = RunState::Over;
      };
    });
    if (run.outcome.end == End::LoadingEnd) continue;  // it came too late
    EXPECT_EQ(run.outcome.end, End::EndedByUser) << at;
    EXPECT_TRUE(std::none_of(run.host.events.begin(), run.host.events.end(),
                             [](const std::string& event) { return event.starts_with("report"); }));
  }
}

TEST(Job, AYieldPointAtRestIsAnInternalError) {
  const JobRun run(rectangle(10), optionsTo(1e-5),
                   [](RecordingHost& host) { host.control.state = RunState::AtRest; });
  EXPECT_EQ(run.outcome.end, End::InternalError);
  EXPECT_NE(run.outcome.message.find("51"), std::string::npos);
}

TEST(Job, FaultsAndUnknownNamesEndItWithAMessageThatNamesTheStage) {
  struct Case {
    const char* name;
    void (*spoil)(model::ObjectTables&);
    End end;
    std::vector<const char*> says;
  };
  const Case cases[] = {
      {"law",
       [](auto& job) { job.Solids[2].Type = "elastic"; },
       End::InternalError,
       {"Prestress introduction", "51", "Solid 3"}},
      {"prestressing",
       [](auto& job) { job.Tendons.push_back(tendonOf(100, 400, "")); },
       End::InternalError,
       {"Prestress introduction", "51", "Tendon 1"}},
      {"no modulus",
       [](auto& job) {
         for (auto& solid : job.Solids) solid.ElasticModulus = 0;
       },
       End::NumericFault,
       {"Prestress introduction", "division by zero"}},
      {"bars alone",
       [](auto& job) { job.Solids.clear(); },
       End::NumericFault,
       {"Section parameters", "no solid"}},
      {"out of balance from the start",
       [](auto& job) { job.Solids[0].InitialStrain = 0.001; },
       End::NumericFault,
       {"Prestress introduction", "slope of the search"}},
      {"shear span",
       [](auto& job) { job.Beams[0].ShearSpan = 0; },
       End::NumericFault,
       {"Loading, step 1", "ShearSpan"}},
      {"missing file",
       [](auto& job) {
         job.Bars[0].Type = "File";
         job.Bars[0].File = "no such file";
       },
       End::NumericFault,
       {"Bar 1"}},
  };
  for (const Case& c : cases) {
    model::ObjectTables job = rectangle(10);
    c.spoil(job);
    const JobRun run(job, optionsTo(1e-5));
    EXPECT_EQ(run.outcome.end, c.end) << c.name << ": " << run.outcome.message;
    for (const char* text : c.says)
      EXPECT_NE(run.outcome.message.find(text), std::string::npos) << c.name << ": " << run.outcome.message;
    EXPECT_EQ(run.count("report: " + run.outcome.message), 1);
  }
}

TEST(Job, AsksTheConfinedLawsQuestionsOnce) {
  model::ObjectTables job = rectangle(10);
  for (auto& solid : job.Solids) {
    solid.Type = "Restoration (Confined)";
    solid.VolumetricRatio = 0.01;
  }
  const JobRun run(job, optionsTo(1e-5));
  EXPECT_EQ(run.outcome.end, End::LoadingEnd) << run.outcome.message;
  EXPECT_EQ(run.count("ask: Section Shape"), 1);
  EXPECT_EQ(run.count("ask: Yield stress"), 1);
}

// ---- Identities
// ----------------------------------------------------------------------------------------------

std::vector<std::vector<double>> rowsOf(const model::ObjectTables& job, const JobOptions& options) {
  JobRun run(job, options);
  EXPECT_EQ(run.outcome.end, End::LoadingEnd) << run.outcome.message;
  return run.sink.rows;
}

/// Compares load, displacement, moment and curvature.
void expectSameBehaviour(const std::vector<std::vector<double>>& a, const std::vector<std::vector<double>>& b,
                         double tolerance) {
  ASSERT_EQ(a.size(), b.size());
  double greatest[4] = {};
  for (const auto& row : a)
    for (std::size_t k = 0; k < 4; ++k) greatest[k] = std::max(greatest[k], std::fabs(row[k]));
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t k = 0; k < 4; ++k)
      ASSERT_NEAR(a[i][k], b[i][k], tolerance * greatest[k]) << "row " << i << " column " << k;
}

model::ObjectTables prestressedColumn() {
  model::ObjectTables job = rectangle(50);
  for (auto& solid : job.Solids) solid.FlexuralStrain = -0.0001;
  job.Bars.push_back(barOf(2, 286.5, 50));
  job.Tendons.push_back(tendonOf(300, 380, "Pre-tensioning"));
  job.AxialForces.push_back(axialOf(2e5, 230));
  return job;
}

JobOptions tight() {
  JobOptions options = optionsTo(3e-5);
  options.Precision = 1e-7;
  options.DiffWidth = 1e-1;
  return options;
}

TEST(JobIdentity, TwoRunsGiveTheSameBits) {
  EXPECT_EQ(rowsOf(prestressedColumn(), optionsTo(3e-5)), rowsOf(prestressedColumn(), optionsTo(3e-5)));
}

TEST(JobIdentity, TheDatumDoesNotMatter) {
  model::ObjectTables shifted = prestressedColumn();
  for (auto& row : shifted.Solids) row.Depth += 1000;
  for (auto& row : shifted.Bars) row.Depth += 1000;
  for (auto& row : shifted.Tendons) row.Depth += 1000;
  for (auto& row : shifted.AxialForces) row.Depth += 1000;
  expectSameBehaviour(rowsOf(prestressedColumn(), tight()), rowsOf(shifted, tight()), 1e-5);
}

TEST(JobIdentity, AFibreMayBeSplitInTwoOfHalfItsArea) {
  model::ObjectTables split = prestressedColumn();
  const auto halve = [](auto& rows) {
    for (auto& row : rows) row.Area /= 2;
    const auto copy = rows;
    rows.insert(rows.end(), copy.begin(), copy.end());
  };
  halve(split.Solids);
  halve(split.Bars);
  halve(split.Tendons);
  for (auto& solid : split.Solids) solid.Width /= 2;
  expectSameBehaviour(rowsOf(prestressedColumn(), tight()), rowsOf(split, tight()), 1e-6);
}

TEST(JobIdentity, NumberStandsForSoManyRows) {
  model::ObjectTables rows = rectangle(20);
  rows.Bars[0].Number = 1;
  rows.Bars.push_back(rows.Bars[0]);
  rows.Bars.push_back(rows.Bars[0]);
  model::ObjectTables number = rectangle(20);
  expectSameBehaviour(rowsOf(number, tight()), rowsOf(rows, tight()), 1e-9);
}

TEST(JobIdentity, AnElasticSectionBendsWithTheStiffnessOfItsTransformedSection) {
  model::ObjectTables job = prestressedColumn();
  for (auto& row : job.Solids) row.Type = "Elastic";
  for (auto& row : job.Bars) row.Type = "Elastic";
  for (auto& row : job.Tendons) row.Type = "Elastic";
  RecordingHost host;
  // Concrete under the steel is not deducted in the force sums: gross concrete and all of the steel.
  double A = 0, S = 0, I = 0;
  const auto add = [&](double EA, double depth) {
    A += EA;
    S += EA * depth;
    I += EA * depth * depth;
  };
  for (const auto& row : job.Solids) add(row.ElasticModulus * row.Area, row.Depth);
  for (const auto& row : job.Bars) add(row.ElasticModulus * row.Area * row.Number, row.Depth);
  for (const auto& row : job.Tendons) add(row.ElasticModulus * row.Area * row.Number, row.Depth);
  const double EI = I - S * S / A;
  const auto rows = rowsOf(job, tight());
  for (std::size_t i = 1; i < rows.size(); ++i)
    ASSERT_NEAR((rows[i][2] - rows[0][2]) / (rows[i][3] - rows[0][3]) / EI, 1, 2e-6) << i;
}

}  // namespace
}  // namespace torvik::analysis
