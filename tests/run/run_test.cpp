// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/run.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <memory>

#include "base/files.h"
#include "base/temporary_folder.h"
#include "model/models.h"
#include "run/writer.h"

namespace torvik::run {
namespace {

/// A procedure that imposes what it is told to.
struct Imposed {
  Run run;
  std::unique_ptr<materials::StressStrainContext> laws = std::make_unique<materials::StressStrainContext>();
  RunWriter writer{run};
  section::State rows;

  explicit Imposed(const model::ObjectTables& job) : run(job, {}) {
    writer.begin(*laws);
    rows = writer.section().emptyState();
    writer.beginLoading(0);
  }
  void step(const section::Plane& plane) {
    const section::Trial trial{plane, laws->memory};
    writer.section().evaluate(writer.base(), writer.conditionsOf(Stage::Loading), plane, *laws, rows);
    writer.bendBeam(1e3 * run.steps(), 1e-9 * run.steps());
    writer.beginRow(run.steps());
    for (std::size_t column = 0; column < run.columns().size(); ++column) writer.cell(0);
    writer.endRow();
    Step step;
    step.TopStrain = plane.TopStrain;
    step.NeutralAxisOfRows = plane.NeutralAxis;
    writer.step(step, trial);
  }
};

/// Four layers with two files in turn. At strain 1 the first file gives 10 to a search from below and 50 to
/// one from above, and a search begins where the last one of the table ended: the strains of a step do not
/// tell.
TEST(Run, ShowsEveryStepAgainWithItsFilesWhereTheyStood) {
  const tests::TemporaryFolder folder;
  base::replaceWholeFile(folder / "jump", "0 0\n10 1\n50 1\n60 2\n");
  base::replaceWholeFile(folder / "line", "-3 -1\n0 0\n3 1\n9 3\n");
  model::ObjectTables job;
  job.Beams = {tests::beamOf(4000, 0, 2)};
  tests::addLayers(job, 1, 4, 4);
  for (std::size_t i = 0; i < 4; ++i) {
    job.Solids[i].Type = "File";
    job.Solids[i].File = folder / (i % 2 == 0 ? "jump" : "line");
  }
  Imposed imposed(job);
  const run::Run& run = imposed.run;
  std::vector<std::vector<double>> were;
  const auto expectAll = [&] {
    for (int i = 0; i < run.steps(); ++i) {
      const int step = 5 * i % run.steps();
      ASSERT_NE(run.shown(step), nullptr) << step;
      EXPECT_EQ(run.shown(step)->solids.stress, were[static_cast<std::size_t>(step)]) << step;
    }
    EXPECT_EQ(run.present()->solids.stress, were.back());
  };
  // k, 0.75 k, 0.5 k and 0.25 k in the layers; at 16 all of them are past their files.
  for (const auto& [k, first] :
       {std::pair(0.5, 5.0), {1, 10}, {16, 0}, {1, 50}, {0.5, 5}, {1, 10}, {4, 0}, {2, 60}}) {
    imposed.step({.TopStrain = 1.125 * k, .NeutralAxis = 4.5});
    were.push_back(imposed.rows.solids.stress);
    EXPECT_EQ(were.back()[0], first) << k;
    expectAll();
  }
  imposed.writer.end({}, imposed.rows);
  imposed.laws.reset();
  base::replaceWholeFile(folder / "jump", "");
  expectAll();
}

TEST(Run, AStepTakesAHundredBytesWhateverHasOutput) {
  model::ObjectTables job = tests::rectangle(200);
  for (auto& solid : job.Solids) solid.Output = 1;
  Imposed imposed(job);
  const auto heldAt = [&](int steps) {
    while (imposed.run.steps() < steps) imposed.step({.TopStrain = 1e-4, .NeutralAxis = 250});
    const auto memory = ::mallinfo2();
    return memory.uordblks + memory.hblkhd;
  };
  // Containers double: from one power of 2 to the next they grow by what the steps between take.
  const std::size_t before = heldAt(4096);
  EXPECT_LE((heldAt(8192) - before) / 4096, 100u);
}

}  // namespace
}  // namespace torvik::run
