// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/reference_solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "analysis/models.h"
#include "base/files.h"
#include "base/temporary_folder.h"

/// The engine against the slow path, bit by bit: section parameters, every trial, state, row, piece and
/// message, in the order in which they come.
namespace torvik::analysis {
namespace {

using End = JobOutcome::End;

/// Coarse ranges, met exactly: 10 steps from "Small".
const JobOptions kCoarse{.SmallTo = 4 * 0x1p-19,
                         .SmallStep = 0x1p-19,
                         .LargeTo = 17 * 0x1p-19,
                         .LargeStep = 2 * 0x1p-19,
                         .MaxIteration = 40,
                         .convergenceSound = "ding.wav",
                         .pausePreLoadingSound = "break.wav",
                         .pauseWatchSound = "watch.wav"};

struct Case {
  std::string name;  ///< of a search that fails, the message
  model::ObjectTables tables;
  std::function<void(Case&)> change = {};
  End end = End::LoadingEnd;
  JobOptions options = kCoarse;
  RecordingHost user = {};
};

/// Runs both paths and holds them against each other. @return how the engine's job ended
JobOutcome runBoth(const Case& test) {
  JobRun engine(test.tables, test.options, test.user);
  reference::Job slow(test.tables, test.options, test.user);
  const JobOutcome& outcome = engine.outcome;
  std::vector<std::string>& events = engine.host.events;
  EXPECT_EQ(outcome.end, slow.outcome.end) << outcome.message << " / " << slow.outcome.message;
  EXPECT_EQ(outcome.rows, slow.outcome.rows);
  if (outcome.end >= End::NumericFault)
    events.erase(std::find(events.begin(), events.end(), "report: " + outcome.message), events.end());
  else
    EXPECT_EQ(outcome.message, slow.outcome.message);
  events.push_back("(end)");
  slow.host.events.push_back("(end)");
  const auto [a, b] = std::mismatch(events.begin(), events.end(), slow.host.events.begin());
  if (a != events.end())
    ADD_FAILURE() << "line " << a - events.begin() << ", behind " << (a == events.begin() ? "" : *(a - 1))
                  << "\nengine: " << *a << "\nslow:   " << *b;
  return outcome;
}

void runAll(const std::vector<Case>& cases) {
  for (Case test : cases) {
    SCOPED_TRACE(test.name);
    if (test.change) test.change(test);
    const JobOutcome outcome = runBoth(test);
    EXPECT_EQ(outcome.end, test.end) << outcome.message;
    EXPECT_TRUE(test.end != End::SearchFailed || outcome.message == test.name) << outcome.message;
  }
}

std::string writeCurve(const std::string& name, const std::string& text) {
  static const tests::TemporaryFolder folder;
  base::replaceWholeFile((folder / name).string(), text);
  return (folder / name).string();
}

using Solid = model::SolidObject;

void setAll(model::ObjectTables& tables, auto field, auto value) {
  for (Solid& solid : tables.Solids) solid.*field = value;
}

model::ObjectTables small(int layers = 10) {
  model::ObjectTables tables = rectangle(layers);
  tables.Beams[0] = beamOf(4000, 600, 15);
  return tables;
}

model::ObjectTables prestressed() {
  model::ObjectTables tables = small();
  setAll(tables, &Solid::FlexuralStrain, -0.0001);
  tables.Tendons = {tendonOf(132.7, 400, "Post-tensioning"), tendonOf(95.03, 380, "Pre-tensioning")};
  return tables;
}

TEST(ReferenceSolver, AgreesOnMembersThatReachTheEnd) {
  runAll({
      {"ranges met exactly", small()},
      {"many layers", small(150)},
      {"past the peak moment", small(),
       [](Case& c) {
         setAll(c.tables, &Solid::Type, "e Function (Plane)");
         c.tables.Bars = {barOf(3, 506.7, 450), barOf(2, 198.6, 400)};
         c.tables.Bars[0].UltimateStrain = 0.006;
         c.options.LargeTo = 2e-4;
         c.options.LargeStep = 5e-7;
       }},
      {"a relation that turns back again and again", small(),
       [](Case& c) {
         c.options.tableSolver = false;
         c.user.atEvents = [](RecordingHost& host, int call) {
           host.step = call % 97 < 2 ? "-1E-6" : "4E-8";
         };
       }},
      {"a watch strain left downward, met from below", small(),
       [](Case& c) {
         c.tables.Bars.resize(3, barOf(1, 71.33, 30));
         c.tables.Bars[1].InitialStrain = 1e-4;
         c.tables.Bars[1].WatchStrain = "1E-4";
         c.tables.Bars[2].InitialStrain = -1e-4;
         c.user.step = "1E-6";
         c.user.atEvents = [](RecordingHost& host, int call) { host.step = call < 5 ? "-1E-6" : "1"; };
       }},
      {"a step past the end", small(), [](Case& c) { c.user.step = "1"; }},
      {"pieces past the support", small(), [](Case& c) { c.tables.Beams[0].HalfSpanFiberLength = 190; }},
      {"all pieces in the flexural span", small(), [](Case& c) { c.tables.Beams[0].FlexuralSpan = 9000; }},
  });
}

/// Layers of one law under one force. Of a law without tension and of the height 50 the searches before MN
/// converge at once, of another height all before MM.
model::ObjectTables layersOf(const char* law, double height, bool isTendon) {
  model::ObjectTables tables = small();
  tables.Bars.clear();
  setAll(tables, &Solid::Type, law);
  setAll(tables, &Solid::File, writeCurve("opening.txt", "0 -0.1\n0 0\n2800 0.1\n"));
  setAll(tables, &Solid::Height, height);
  const double depth = height == 50 ? 420 : 280;
  tables.Tendons = {tendonOf(isTendon ? 132.7 : 0, depth, "Post-tensioning")};
  tables.AxialForces = {axialOf(isTendon ? 0 : 1e5, depth)};
  return tables;
}

TEST(ReferenceSolver, AgreesOnJobsThatFail) {
  const auto once = [](Case& c) { c.options.MaxIteration = 1; };
  runAll({
      {"Tendon convergence (N) failed.", layersOf("JSCE (Design)", 60, true), once, End::SearchFailed},
      {"Tendon convergence (MN) failed.", layersOf("File", 50, true), once, End::SearchFailed},
      {"Tendon convergence (MM) failed.", layersOf("File", 60, true), once, End::SearchFailed},
      {"Axial force convergence (N) failed.", layersOf("JSCE (Design)", 60, false), once, End::SearchFailed},
      {"Axial force convergence (MN) failed.", layersOf("File", 50, false), once, End::SearchFailed},
      {"Axial force convergence (MM) failed.", layersOf("File", 60, false), once, End::SearchFailed},
      {"Loading convergence failed.", small(), once, End::SearchFailed},
      {"a bar breaks", small(),
       [](Case& c) {
         c.tables.Bars[0].Type = "FRP Bar";
         c.tables.Bars[0].UltimateStrain = 0.002;
       },
       End::Collapsed},
      {"modulus 0", small(), [](Case& c) { setAll(c.tables, &Solid::ElasticModulus, 0); }, End::NumericFault},
      {"one moment", prestressed(), [](Case& c) { c.user.step = "0"; }, End::NumericFault},
  });
}

TEST(ReferenceSolver, AgreesWhereverTheUserEndsTheJob) {
  Case test{"", prestressed()};
  test.tables.AxialForces.push_back(axialOf(5e4, 300));
  test.tables.Bars[0].WatchStrain = "0.001";
  test.options.pausePreLoading = test.user.pausing = true;
  int stop = 0;
  do {
    test.user.atEvents = [at = ++stop](RecordingHost& host, int call) {
      if (call == at) host.control.state = RunState::Over;
    };
  } while (runBoth(test).end == End::EndedByUser);
  EXPECT_GT(stop, 20);
}

TEST(ReferenceSolver, AgreesUpToTheLastStepOf16Bits) {
  Case test{"", small(2)};
  test.tables.Beams[0] = beamOf(1000, 100, 2);
  setAll(test.tables, &Solid::Type, "Elastic");
  test.options.tableSolver = false;
  test.user.step = "9E-10";
  const JobOutcome outcome = runBoth(test);
  EXPECT_EQ(outcome.end, End::NumericFault);
  EXPECT_EQ(outcome.rows, 32769);  // steps 0 to 32768
}

/// Small models of every kind, sound and unsound, from one seed.
class RandomModels {
 public:
  Case next() {
    Case test{"", {}};
    model::ObjectTables& t = test.tables;
    m_hasExtremes = chance(0.2);
    m_top = oneOf({0.0, 0.0, 100.0, -150.0});
    m_height = 200 + 700 * unit();
    t.Beams.push_back(beamOf(between(1000, 9000), oneOf({0.0, 500.0, 900.0}), integer(0, 9)));
    if (t.Beams[0].HalfSpanFiberNumber == 0) t.Beams[0].HalfSpanFiberLength = 0;
    addLayers(t, 100 + 500 * unit(), m_height, integer(2, 9), m_top);
    const bool oneLaw = chance(0.5);
    const std::string law = solidLaw();
    for (auto& solid : t.Solids) {
      solid.Type = oneLaw ? law : solidLaw();
      solid.File = m_curves[static_cast<std::size_t>(integer(0, 1))];
      solid.UltimateStress = between(15, 60);
      solid.FlexuralStrain = chance(0.5) ? 0 : -between(0, 3e-4);
      solid.VolumetricRatio = between(0.002, 0.02);
      common(solid);
      if (chance(0.02)) solid.InitialStrain = between(-2e-4, 2e-4);
    }
    for (int n = integer(0, 3); n > 0; --n) {
      auto& bar = t.Bars.emplace_back(barOf(1, between(50, 900), depth(0.05, 0.95), between(250, 600)));
      bar.Type = oneOf<const char*>({"JSCE (Design)", "Steel Bar", "FRP Bar", "Elastic", "File"});
      bar.File = m_steel;
      if (chance(0.3)) bar.UltimateStrain = between(0.001, 0.03);
      common(bar);
    }
    for (int n = integer(0, 2); n > 0; --n) {
      const std::string kind = oneOf<const char*>({"Pre-tensioning", "Post-tensioning"});
      auto& tendon = t.Tendons.emplace_back(tendonOf(between(20, 300), depth(0.2, 0.95), kind));
      tendon.Type = oneOf<const char*>({"JSCE (Design)", "Steel Bar", "FRP Bar", "Elastic"});
      tendon.IntroductionStrain = between(0.0005, 0.007);
      tendon.SheathArea = chance(0.5) ? 0 : between(100, 900);
      tendon.SheathDepth = tendon.Depth;
      common(tendon);
    }
    for (int n = integer(0, 2); n > 0; --n)
      t.AxialForces.push_back(axialOf(between(-5e4, 6e5), depth(0.2, 0.7)));

    test.options.MaxIteration = oneOf<std::int16_t>({2, 4, 8, 30, 30, 30, 30, 30});
    test.options.Precision = oneOf({1e-3, 1e-3, 1e-5, 1e-2});
    test.options.DiffWidth = oneOf({1e-6, 1e-6, 1e-4});
    if (chance(0.3)) {
      test.options.LargeStep = oneOf({2e-5, 1e-4});
      test.options.LargeTo = between(2e-4, 2e-3);
    }
    test.options.tableSolver = chance(0.8);
    test.options.beepConvergence = chance(0.8);
    test.options.pauseWatch = chance(0.8);
    test.options.pausePreLoading = chance(0.3);
    test.user.pausing = chance(0.5);
    test.user.step = oneOf<const char*>({"Small", "Small", "Large", " 3.5E-6 "});
    if (chance(0.02)) t.Bars.push_back(barOf(1, 1e308, m_top));
    if (chance(0.02)) t.Solids[0].Type = "?";
    if (chance(0.03)) test.user.answers = {};
    return test;
  }

 private:
  template <class Row>
  void common(Row& row) {
    row.Output = integer(0, 2);
    if (chance(0.2)) row.Number = integer(-1, 3);
    if (chance(0.2)) row.WatchStrain = base::plainText(between(-3e-3, 3e-3));
  }
  std::string solidLaw() {
    return oneOf<const char*>({"JSCE (Design)", "JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)",
                               "Restoration (Confined)", "Elastic", "File"});
  }
  double unit() { return static_cast<double>(m_random() >> 11) * 0x1p-53; }
  double between(double a, double b) {
    if (m_hasExtremes && chance(0.05))
      return oneOf({0.0, 1.0, -1.0, 5e-324, 1e-300, 1e200, -1e200, 1e-155, 1e155, 1.7e308, -1.7e308});
    return a + (b - a) * unit();
  }
  double depth(double a, double b) { return m_top + (a + (b - a) * unit()) * m_height; }
  bool chance(double p) { return unit() < p; }
  std::int16_t integer(int a, int b) {
    return static_cast<std::int16_t>(a + static_cast<int>(m_random() % static_cast<unsigned>(b - a + 1)));
  }
  template <class Value>
  Value oneOf(std::initializer_list<Value> values) {
    return values.begin()[m_random() % values.size()];
  }

  std::mt19937_64 m_random{20240229};
  bool m_hasExtremes = false;
  double m_top = 0;
  double m_height = 0;
  std::array<std::string, 2> m_curves = {
      writeCurve("random1.txt", "0 -0.01\n0 0\n20 0.001\n30,0.002\n3E1 0.004\n0 0.006\n"),
      writeCurve("random2.txt", "-2 -0.0001\n0 0\n25 0.0015\n25 0.0035\n0 0.005\n")};
  std::string m_steel = writeCurve("random3.txt", "-400 -0.1\n-400 -0.002\n0 0\n400 0.002\n400 0.05\n");
};

TEST(ReferenceSolver, AgreesOnRandomModels) {
  RandomModels models;
  std::map<End, int> ends;
  for (int i = 0; i < 2500 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    ++ends[runBoth(models.next()).end];
  }
  EXPECT_EQ(ends.size(), 6u);  // all but that by the user
}

}  // namespace
}  // namespace torvik::analysis
