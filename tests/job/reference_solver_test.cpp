// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/reference_solver.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>

#include "job/any_job.h"
#include "model/models.h"

/// The engine against the slow path, bit by bit: section parameters, the rows after every iteration before
/// loading, commits, result rows, each step shown again with its pieces, crossings, what is left, and
/// messages.
namespace torvik::tests {
namespace {

using End = run::End::Kind;

struct Case {
  std::string name;
  model::ObjectTables tables;
  std::function<void(Case&)> change = {};
  job::JobOptions options = kCoarse;
  User user = {};
};

/// Runs both paths and holds them against each other. @return how the engine's job ended
run::End runBoth(const auto& test) {
  const JobRun engine(test.tables, test.options, test.user, true);
  EXPECT_EQ(disagreement(engine, reference::Job(test.tables, test.options, test.user)), "")
      << engine.end().message;
  return engine.end();
}

void setAll(model::ObjectTables& tables, auto field, auto value) {
  for (model::SolidObject& solid : tables.Solids) solid.*field = value;
}

model::ObjectTables small(int layers = 10) {
  model::ObjectTables tables = rectangle(layers);
  tables.Beams[0] = beamOf(4000, 600, 15);
  return tables;
}

TEST(ReferenceSolver, AgreesOnLongAndWindingWays) {
  const Case cases[] = {
      {"ranges met exactly", small(150)},
      {"past the peak moment", small(),
       [](Case& c) {
         setAll(c.tables, &model::SolidObject::Type, "e Function (Plane)");
         c.tables.Bars = {barOf(3, 506.7, 450), barOf(2, 198.6, 400)};
         c.tables.Bars[0].UltimateStrain = 0.006;
         c.options.LargeTo = 2e-4;
         c.options.LargeStep = 5e-7;
       }},
      {"a relation that turns back again and again", small(),
       [](Case& c) {
         c.options.tableSolver = false;
         c.user.atPlace = [](User& user, int place) {
           user.step = place % 97 < 2 ? "-1E-6" : "4E-8";
           return true;
         };
       }},
      {"a watch strain that is left downward and met from below", small(),
       [](Case& c) {
         c.tables.Bars.resize(3, barOf(1, 71.33, 30));
         c.tables.Bars[1].InitialStrain = 1e-4;
         c.tables.Bars[1].WatchStrain = "1E-4";
         c.tables.Bars[2].InitialStrain = -1e-4;
         c.user.atPlace = [](User& user, int place) {
           user.step = place < 5 ? "1E-6" : place < 12 ? "-1E-6" : "1";
           return true;
         };
       }},
      // The first bar has the stress of the branch that the search in the files of the table stands on, which
      // the second bar changes in the upper trial of a step of curvature 2E-6, behind one of 3E-6.
      {"files whose place decides", small(),
       [](Case& c) {
         setAll(c.tables, &model::SolidObject::Type, "Elastic");
         c.tables.Bars.assign(2, barOf(1, 0, 450));
         for (auto& bar : c.tables.Bars) bar.Type = "File";
         c.tables.Bars[0].File = writeCurve("branches.txt", "-1 -1\n1 1\n10 -1\n12 1\n");
         c.tables.Bars[1].File = writeCurve("places.txt", "0 -1\n0 0.000375\n0 0.0005\n0 1\n");
         c.options.search.DiffWidth = 100;
         c.user.atPlace = [](User& user, int place) {
           user.step = place < 5 ? "3E-6" : place < 6 ? "-1E-6" : "1";
           return true;
         };
       }},
  };
  for (Case test : cases) {
    SCOPED_TRACE(test.name);
    if (test.change) test.change(test);
    EXPECT_EQ(runBoth(test).kind, End::LoadingEnd);
  }
}

TEST(ReferenceSolver, AgreesWhereverTheUserEndsTheJob) {
  Case test{"", small()};
  setAll(test.tables, &model::SolidObject::FlexuralStrain, -0.0001);
  test.tables.Tendons = {tendonOf(132.7, 400, "Post-tensioning"), tendonOf(95.03, 380, "Pre-tensioning")};
  test.tables.AxialForces.push_back(axialOf(5e4, 300));
  test.tables.Bars[0].WatchStrain = "0.001";
  int stop = 0;
  do test.user.atPlace = [at = ++stop](User&, int place) { return place != at; };
  while (runBoth(test).kind == End::EndedByUser);
  EXPECT_GT(stop, 20);
}

TEST(ReferenceSolver, AgreesUpToTheLastStepOf16Bits) {
  Case test{"", small(2)};
  test.tables.Beams[0] = beamOf(1000, 100, 2);
  setAll(test.tables, &model::SolidObject::Type, "Elastic");
  test.options.tableSolver = false;
  test.user.step = "9E-10";
  const run::End end = runBoth(test);
  EXPECT_EQ(end.kind, End::NumericFault);
  EXPECT_EQ(end.step, 32769);  // steps 0 to 32768 have a row
}

TEST(ReferenceSolver, AgreesOnAnyJob) {
  std::mt19937 random(20240229);
  std::map<End, int> ends;
  std::set<std::string> failures;
  for (int i = 0; i < 2500 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    const run::End end = runBoth(AnyJob([&] { return random() & 255U; }));
    ++ends[end.kind];
    if (end.kind == End::SearchFailed) failures.insert(end.message);
  }
  EXPECT_GT(ends[End::LoadingEnd], 700);
  EXPECT_EQ(ends.size(), 7u);
  EXPECT_EQ(failures.size(), 7u) << "N, MN and MM of two stages, and loading";
}

}  // namespace
}  // namespace torvik::tests
