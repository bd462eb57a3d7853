// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "job/job_run.h"
#include "model/models.h"

/// The calls of a job, in their order, and what stands in its run at each.
namespace torvik::tests {
namespace {

/// A host, a reader of rows and a user who write down what they are called for.
class Recorder : public job::Host, public materials::ConfinementPrompt, public run::RowReader {
 public:
  std::vector<std::string> lines;
  run::Run run;

  /// @param endAt  the line at which the user ends the job
  Recorder(const model::ObjectTables& tables, const job::JobOptions& options, std::size_t endAt)
      : run(tables, {}), m_endAt(endAt) {
    materials::StressStrainContext laws;
    laws.prompt = this;
    run::RowReader* const readers[] = {this};
    run::RunWriter writer(run, readers);
    job::runJob(options, *this, writer, laws);
  }

  /// What tables and files may read at this moment.
  [[nodiscard]] std::string standing() const {
    std::string text = fmt::format("{} commits, {} steps", run.commits(), run.steps());
    if (const auto& row = run.rowAtWork())
      text +=
          fmt::format(", row {}: {} cells{}", row->step, row->cells.size(), row->isWhole ? "" : " so far");
    return text;
  }

  void count(int iteration, int outerIteration) override {
    line(fmt::format("trial {}/{}", iteration, outerIteration));
  }
  bool proceed(run::Stage stage, section::Search search) override {
    return line(std::string(job::statusOf(stage, search)) + " goes on: " + standing());
  }
  bool breakBeforeLoading() override { return line("break: " + standing()); }
  bool watchCrossed() override {
    return line(
        fmt::format("{} crossed: {}", run.columns()[run.crossings().back().column].heading, standing()));
  }
  void stepConverged() override { line("converged: " + standing()); }
  void notice(job::Notice) override { line("notice"); }
  std::string stepText() override {
    line("step text asked: " + standing());
    return m_step;
  }
  void setStepText(const std::string& text) override { line("step text: " + (m_step = text)); }
  void row(const run::Run&) override { line("row read: " + standing()); }
  void showMessage(const std::string&) override { line("message"); }
  std::string inputBox(const std::string&, const std::string& title, const std::string& proposal) override {
    line(title + "?");
    return proposal;
  }

 private:
  bool line(const std::string& text) {
    lines.push_back(text);
    return lines.size() != m_endAt;
  }
  std::size_t m_endAt;
  std::string m_step = "Small";
};

/// Elastic, so that a search whose start value is a solution takes one iteration and any other takes two.
model::ObjectTables elasticBeam() {
  model::ObjectTables job;
  job.Beams = {beamOf(4000, 0, 4)};
  addLayers(job, 300, 500, 10);
  job.Solids.push_back(solidOf(0, 0, 250));
  for (auto& solid : job.Solids) solid.Type = "Elastic";
  job.Solids[9].Output = 1;
  job.Solids[9].WatchStrain = "0";
  // No area: it asks, and carries nothing.
  job.Solids[10].Type = "Restoration (Confined)";
  job.Solids[10].VolumetricRatio = 0.01;
  job.Tendons = {tendonOf(1000, 400, "Post-tensioning")};
  job.Tendons[0].Type = "Elastic";
  return job;
}

TEST(Protocol, CallsComeInTheirOrderAndAUsersEndLeavesAllAsItIs) {
  job::JobOptions options;
  options.SmallTo = 1e-7;
  options.SmallStep = 1e-6;
  options.LargeStep = 3e-6;
  options.LargeTo = 5e-6;
  const struct {
    std::string line;
    std::string endsAs;  ///< where a user may end the job
    int times = 1;
  } calls[] = {
      // Uniform strain: the start value is the prestress over the gross section, its solution.
      {"trial 1/0", ""},
      {"message", ""},
      {"Section Shape?", ""},
      {"message", ""},
      {"Yield stress?", ""},
      {"trial 1/0", "", 2},
      {"break: 1 commits, 0 steps", "Prestress introduction"},
      // Top strain: the start value counts the layers' own inertia, which the sums do not have. The neutral
      // axis
      // starts in the centroid, where it stays.
      {"trial 1/1", "", 9},
      {"Tendon (MM) goes on: 1 commits, 0 steps", "Prestress introduction"},
      {"trial 1/2", "", 9},
      {"break: 2 commits, 0 steps", "Prestress introduction"},
      // No axial force: nothing moves.
      {"trial 1/0", "", 3},
      {"break: 3 commits, 0 steps", "Axial force stage"},
      {"trial 1/1", "", 9},
      {"break: 4 commits, 0 steps", "Axial force stage"},
      {"trial 1/0", "", 3},
      {"converged: 4 commits, 0 steps", ""},
      {"row read: 4 commits, 0 steps, row 0: 8 cells", ""},
      {"step text asked: 4 commits, 1 steps", ""},
      {"Loading goes on: 4 commits, 1 steps", "Loading, step 1"},
      // From the axis of row "e", which deducts the concrete under the tendon, to that of the sums.
      {"trial 1/0", "", 3},
      {"Loading goes on: 4 commits, 1 steps", "Loading, step 2"},
      {"trial 2/0", "", 3},
      {"converged: 4 commits, 1 steps", ""},
      {"row read: 4 commits, 1 steps, row 1: 8 cells", ""},
      {"step text asked: 4 commits, 2 steps", ""},
      {"step text: Large", ""},
      {"Loading goes on: 4 commits, 2 steps", "Loading, step 2"},
      {"trial 1/0", "", 3},
      {"converged: 4 commits, 2 steps", ""},
      {"Solid Strain 10 crossed: 4 commits, 2 steps, row 2: 7 cells so far", "Loading, step 3"},
      {"row read: 4 commits, 2 steps, row 2: 8 cells", ""},
      {"step text asked: 4 commits, 3 steps", ""},
  };
  std::vector<std::string> expected;
  for (const auto& call : calls) {
    expected.insert(expected.end(), static_cast<std::size_t>(call.times), call.line);
    if (call.endsAs.empty()) continue;
    const Recorder ended(elasticBeam(), options, expected.size());
    EXPECT_EQ(ended.lines, expected);
    EXPECT_TRUE(call.line.ends_with(": " + ended.standing()))
        << call.line << ", at the end " << ended.standing();
    const run::End& end = *ended.run.end();
    EXPECT_EQ(end.kind, run::End::Kind::EndedByUser) << call.line;
    EXPECT_EQ(job::placeOf(end.stage, end.step) + end.message, call.endsAs) << call.line;
  }
  const Recorder whole(elasticBeam(), options, 0);
  EXPECT_EQ(whole.lines, expected);
  EXPECT_EQ(whole.run.end()->message, "Loading end.");
  EXPECT_FALSE(whole.run.rowAtWork());
}

}  // namespace
}  // namespace torvik::tests
