// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/reference_solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "analysis/models.h"
#include "analysis/sink.h"

/// The engine against the slow path, bit by bit: section parameters, every trial, state, row, piece and
/// message, in the order in which they come.
namespace torvik::analysis {
namespace {

using reference::Desk;
using reference::Transcript;
using End = JobOutcome::End;

class EngineRecorder : public Host, public Sink {
 public:
  explicit EngineRecorder(Desk& desk) : m_desk(desk), m_transcript(desk.transcript) {}

  std::string lastState;

  void doEvents() override { m_desk.doEvents(); }
  void reportMessage(const std::string& text) override { m_transcript.add("report: " + text); }
  void showMessage(const std::string& text) override { m_desk.showMessage(text); }
  void playSound(const std::string& file) override { m_transcript.add("sound: " + file); }
  void setPanel(Panel panel, const std::string& text) override {
    static constexpr std::array kNames = {"Beam Top: ", "Beam Bottom: ", "Status: ", "Mu: "};
    m_transcript.add(kNames.at(static_cast<std::size_t>(panel)) + text);
  }
  void setCount(int iteration, int outerIteration) override {
    m_transcript.add("Count: " + std::to_string(iteration) +
                     (outerIteration > 0 ? "/" + std::to_string(outerIteration) : std::string()));
  }
  std::string stepText() override { return m_desk.step; }
  void setStepText(const std::string& text) override {
    m_desk.step = text;
    m_transcript.add("step box: " + text);
  }
  void pause(PauseCause cause) override { m_desk.pause(cause); }

  void sectionParameters(const SectionParameterTable& table) override {
    for (const SectionParameterRow& row : table.rows) {
      std::string line = "section";
      Transcript::append(line, row.values());
      m_transcript.add(line);
    }
  }
  void strainWithoutLoad(const SectionState& state) override {
    m_transcript.add(lineOf("strain without load", state));
  }
  void currentValues(const SectionState& state) override {
    m_transcript.add(lineOf("current values", state));
  }
  void beginRow(int step) override { m_transcript.add("row " + std::to_string(step)); }
  void cell(int column, double value) override {
    m_transcript.add("cell " + std::to_string(column), {value});
  }
  void watchCrossed(const WatchCrossing& crossing) override {
    m_transcript.add(
        "crossed " + std::string(crossing.heading) + " column " + std::to_string(crossing.column),
        {crossing.WatchStrain, crossing.strain});
  }
  void endRow() override { m_transcript.add("row ends"); }
  void resultRow(std::span<const double> values) override {
    std::string line = "line";
    Transcript::append(line, values);
    m_transcript.add(line);
  }
  void loadStep(const LoadStep& step) override {
    m_transcript.add("charts " + std::to_string(step.Step),
                     {step.Moment, step.Curvature, step.beam.Load(), step.beam.Displacement()});
    std::string line = "pieces";
    const std::vector<double> deflection = step.beam.Deflection();
    for (std::size_t i = 0; i < step.beam.pieceCount(); ++i)
      Transcript::append(
          line, std::array{step.beam.pieceMoments()[i], step.beam.pieceCurvatures()[i], deflection[i]});
    m_transcript.add(line);
  }
  void jobOver(const SectionState& state) override { lastState = lineOf("last state", state); }

 private:
  static std::string lineOf(const std::string& name, const SectionState& state) {
    return reference::stateLine(name, [&](auto&& row) {
      const auto each = [&](const char* table, const SectionState::Rows& rows) {
        for (std::size_t i = 0; i < rows.size(); ++i)
          row(table, rows.BaseStrain[i], rows.CurrentStrain[i], rows.CurrentStress[i], rows.CurrentForce[i]);
      };
      each(" S", state.solids());
      each(" B", state.bars());
      each(" T", state.tendons());
    });
  }

  Desk& m_desk;
  Transcript& m_transcript;
};

/// Coarse ranges: 14 steps from "Small".
JobOptions coarse(std::int16_t MaxIteration = 40) {
  JobOptions options;
  options.SmallTo = 1e-5;
  options.SmallStep = 2e-6;
  options.LargeTo = 4.1e-5;
  options.LargeStep = 4e-6;
  options.MaxIteration = MaxIteration;
  options.convergenceSound = "ding.wav";
  options.pausePreLoadingSound = "break.wav";
  options.pauseWatchSound = "watch.wav";
  return options;
}

struct Case {
  std::string name;
  model::ObjectTables tables;
  JobOptions options = coarse();
  Desk desk;  ///< of the user; each path gets a copy
  bool prompt = true;
};

bool isFault(End end) {
  return end == End::NumericFault || end == End::InternalError || end == End::InputError;
}

/// Runs both paths and holds them against each other. @return how the engine's job ended
JobOutcome runBoth(const Case& test) {
  const auto contextOf = [&](Desk& desk) {
    auto context = std::make_unique<materials::StressStrainContext>();
    if (test.prompt) context->prompt = &desk;
    context->report = [&desk](const std::string& caption, const std::string&) {
      desk.transcript.add("curve: " + caption);
    };
    return context;
  };

  Desk slowDesk = test.desk;
  const auto slowContext = contextOf(slowDesk);
  reference::Job slow(test.tables, test.options, slowDesk, *slowContext);
  const JobOutcome wanted = slow.run();

  Desk desk = test.desk;
  const auto context = contextOf(desk);
  EngineRecorder recorder(desk);
  Sink* const sinks[] = {&recorder};
  model::ObjectTables job = test.tables;
  const JobOutcome got = runJob(job, test.options, desk.control, recorder, sinks, *context);

  EXPECT_EQ(got.end, wanted.end) << test.name << ": " << got.message << " / " << wanted.message;
  EXPECT_EQ(got.rows, wanted.rows) << test.name;
  EXPECT_EQ(desk.step, slowDesk.step) << test.name;
  std::vector<std::string>& lines = desk.transcript.lines;
  if (isFault(got.end)) {
    // The words of a fault are the engine's own.
    EXPECT_FALSE(got.message.empty()) << test.name;
    EXPECT_TRUE(!lines.empty() && lines.back() == "report: " + got.message) << test.name;
    if (!lines.empty()) lines.pop_back();
  } else {
    EXPECT_EQ(got.message, wanted.message) << test.name;
    EXPECT_EQ(recorder.lastState, slow.state("last state")) << test.name;
    EXPECT_EQ(job.Beams[0].BeamTop, slow.BeamTop()) << test.name;
    EXPECT_EQ(job.Beams[0].BeamBottom, slow.BeamBottom()) << test.name;
  }
  const std::vector<std::string>& slowLines = slowDesk.transcript.lines;
  const auto [a, b] = std::mismatch(lines.begin(), lines.end(), slowLines.begin(), slowLines.end());
  if (a != lines.end() || b != slowLines.end()) {
    std::string before;
    for (auto line = a - std::min<std::ptrdiff_t>(3, a - lines.begin()); line != a; ++line)
      before += "\n  " + *line;
    ADD_FAILURE() << test.name << ": line " << a - lines.begin() << ", behind" << before
                  << "\nengine: " << (a != lines.end() ? *a : "(end: " + got.message + ")")
                  << "\nslow:   " << (b != slowLines.end() ? *b : "(end)");
  }
  return got;
}

struct Expected {
  Case test;
  End end;
  std::string message;  ///< part of it
  int rows = -1;        ///< -1: as they come
};

void runAll(const std::vector<Expected>& cases) {
  for (const Expected& c : cases) {
    SCOPED_TRACE(c.test.name);
    const JobOutcome outcome = runBoth(c.test);
    EXPECT_EQ(outcome.end, c.end) << outcome.message;
    EXPECT_NE(outcome.message.find(c.message), std::string::npos) << outcome.message;
    if (c.rows >= 0) {
      EXPECT_EQ(outcome.rows, c.rows);
    }
  }
}

template <class Change>
Case changed(std::string name, model::ObjectTables tables, Change&& change) {
  Case test;
  test.name = std::move(name);
  test.tables = std::move(tables);
  change(test);
  return test;
}

Case plain(std::string name, model::ObjectTables tables) {
  return changed(std::move(name), std::move(tables), [](Case&) {});
}

model::ObjectTables small(int layers = 10) {
  model::ObjectTables tables = rectangle(layers);
  tables.Beams[0] = beamOf(4000, 600, 15);
  return tables;
}

model::ObjectTables allLaws() {
  model::ObjectTables tables = small(12);
  tables.Bars.clear();
  for (const char* type : {"JSCE (Design)", "Steel Bar", "Elastic", "FRP Bar"}) {
    tables.Bars.push_back(barOf(2, 126.7, 380 + 20.0 * static_cast<double>(tables.Bars.size())));
    tables.Bars.back().Type = type;
    tables.Bars.push_back(barOf(1, 71.33, 40 + 10.0 * static_cast<double>(tables.Bars.size())));
    tables.Bars.back().Type = type;
    tables.Bars.back().Output = 0;
  }
  const std::array types = {"JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)", "Elastic"};
  for (std::size_t i = 0; i < tables.Solids.size(); ++i) {
    tables.Solids[i].Type = types[i % types.size()];
    tables.Solids[i].FlexuralStrain = i % 3 == 0 ? -0.0001 : 0;
    tables.Solids[i].Output = i % 5 == 0;
  }
  return tables;
}

model::ObjectTables teeBeam(double top = 0) {
  model::ObjectTables tables;
  tables.Beams.push_back(beamOf(12000, 2000, 24));
  addLayers(tables, 800, 150, 3, top);
  addLayers(tables, 250, 750, 9, top + 150);
  for (auto& solid : tables.Solids) solid.FlexuralStrain = -0.00008;
  tables.Bars.push_back(barOf(2, 198.6, top + 50));
  tables.Bars.push_back(barOf(4, 286.5, top + 850));
  tables.Tendons.push_back(tendonOf(132.7, top + 780, "Post-tensioning"));
  tables.Tendons.back().Number = 3;
  tables.Tendons.back().SheathArea = 415.4756284372497;
  tables.Tendons.back().SheathDepth = top + 775;
  tables.Tendons.push_back(tendonOf(132.7, top + 700, "Pre-tensioning"));
  tables.Tendons.back().Type = "Steel Bar";
  tables.Tendons.push_back(tendonOf(95.03, top + 100, "Post-tensioning"));
  tables.Tendons.back().Type = "FRP Bar";
  tables.Tendons.back().IntroductionStrain = 0.002;
  return tables;
}

/// A folder of this process, gone at its end.
class CurveFolder {
 public:
  CurveFolder() {
    std::string path = testing::TempDir() + "torvikXXXXXX";
    if (!mkdtemp(path.data())) throw std::runtime_error(path);
    m_path = path;
  }
  ~CurveFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  CurveFolder(const CurveFolder&) = delete;
  CurveFolder& operator=(const CurveFolder&) = delete;
  [[nodiscard]] std::string file(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

std::string curvePath(const std::string& name) {
  static const CurveFolder folder;
  return folder.file(name);
}

std::string writeCurve(const std::string& name, const std::string& text) {
  const std::string path = curvePath(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

void useFile(auto& row, const std::string& file) {
  row.Type = "File";
  row.File = file;
}

const char* const kConcreteCurve = "0 -0.01\n0 0\n20 0.001\n30,0.002\n3E1 0.004\n0 0.006\n";
const char* const kNoTension = "0 -0.1\n0 0\n2800 0.1\n";

model::ObjectTables userFiles() {
  model::ObjectTables tables = teeBeam();
  const std::string concrete = writeCurve("solid.txt", kConcreteCurve);
  const std::string weak =
      writeCurve("weak.txt", "0 -0.01\n0 0\n12 0.0008\n15 0.002\n15 0.003\n5 0.005\n2 0.02\n");
  for (std::size_t i = 0; i < tables.Solids.size(); ++i)
    useFile(tables.Solids[i], i % 3 == 1 ? weak : concrete);
  useFile(tables.Bars[0], writeCurve("bar.txt", "-400 -0.1\n-345 -0.002\n0 0\n345 0.002\n400 0.1\n"));
  useFile(tables.Bars[1], writeCurve("bar2.txt", "-420 -0.1\n-300 -0.0015\n300 0.0015\n350 0.01\n420 0.1\n"));
  useFile(tables.Tendons[1], writeCurve("tendon.txt", "0 -0.1\n0 0\n1500 0.0075\n1600 0.05\n1700 0.1\n"));
  useFile(tables.Tendons[2], writeCurve("tendon2.txt", "0 -0.1\n0 0\n900 0.0045\n1600 0.05\n1700 0.1\n"));
  return tables;
}

model::ObjectTables confined() {
  model::ObjectTables tables = small(10);
  for (auto& solid : tables.Solids) {
    solid.Type = "Restoration (Confined)";
    solid.VolumetricRatio = 0.01;
  }
  tables.Solids[3].VolumetricRatio = 0.015;
  return tables;
}

model::ObjectTables withAxial(model::ObjectTables tables, double force, double depth) {
  tables.AxialForces.push_back(axialOf(force, depth));
  tables.AxialForces.back().Number = 3;
  return tables;
}

TEST(ReferenceSolver, agreesOnMembersThatReachTheEnd) {
  runAll({
      {plain("rectangle", small()), End::LoadingEnd, "Loading end.", 14},
      {plain("all laws of bars and four of solids", allLaws()), End::LoadingEnd, ""},
      {changed("doubly reinforced, two materials", small(16),
               [](Case& c) {
                 for (std::size_t i = 0; i < 4; ++i) c.tables.Solids[i].UltimateStress = 45.5;
                 c.tables.Bars.push_back(barOf(2, 198.6, 45, 490));
                 c.tables.Beams.push_back(beamOf(1, 1, 1));
               }),
       End::LoadingEnd, ""},
      {plain("T-beam, pre- and post-tensioned, ducts", teeBeam()), End::LoadingEnd, ""},
      {plain("T-beam, datum 1000 above", teeBeam(1000)), End::LoadingEnd, ""},
      {plain("T-beam, datum inside", teeBeam(-300)), End::LoadingEnd, ""},
      {plain("eccentric column", withAxial(withAxial(small(20), 900e3, 180), 100e3, 300)), End::LoadingEnd,
       ""},
      {changed("axial tension", withAxial(small(20), -60e3, 300),
               [](Case& c) {
                 for (auto& solid : c.tables.Solids) solid.FlexuralStrain = -0.0001;
               }),
       End::LoadingEnd, ""},
      {changed("a user file that is missing, beside another: no stress", userFiles(),
               [](Case& c) { c.tables.Bars[1].File = curvePath("missing.txt"); }),
       End::LoadingEnd, ""},
      {plain("user files, two in each table", userFiles()), End::LoadingEnd, ""},
      {plain("confined, rectangular", confined()), End::LoadingEnd, ""},
      {changed("confined, circular, asked again", confined(),
               [](Case& c) {
                 c.desk.answers = {"x", "", "C", "0", " 3.45E2 "};
               }),
       End::LoadingEnd, ""},
      {changed("Muguruma", small(),
               [](Case& c) {
                 for (auto& solid : c.tables.Solids) solid.Type = "Muguruma (Plane)";
               }),
       End::LoadingEnd, ""},
      {changed("e Function, past the peak moment", small(),
               [](Case& c) {
                 for (auto& solid : c.tables.Solids) {
                   solid.Type = "e Function (Plane)";
                   solid.FlexuralStrain = -0.0001;
                 }
                 c.tables.Bars[0].UltimateStrain = 0.006;
                 c.tables.Bars.push_back(barOf(2, 198.6, 400));
                 c.tables.Beams[0] = beamOf(4000, 0, 40);
                 c.options.LargeTo = 2e-4;
                 c.options.LargeStep = 5e-7;
               }),
       End::LoadingEnd, ""},
      {changed("a relation that turns back again and again", small(),
               [](Case& c) {
                 for (auto& solid : c.tables.Solids) solid.FlexuralStrain = -0.0001;
                 c.tables.Beams[0] = beamOf(4000, 0, 6);
                 c.options.tableSolver = false;
                 c.desk.atEvents = [](Desk& desk, int call) { desk.step = call % 97 < 2 ? "-1E-6" : "4E-8"; };
               }),
       End::LoadingEnd, ""},
      {changed("ranges met exactly", small(),
               [](Case& c) {
                 c.options.SmallStep = 0x1p-19;
                 c.options.SmallTo = 4 * 0x1p-19;
                 c.options.LargeStep = 2 * 0x1p-19;
                 c.options.LargeTo = 17 * 0x1p-19;
               }),
       End::LoadingEnd, "", 11},
      {changed("watch strains met exactly, from both sides", small(),
               [](Case& c) {
                 c.tables.Bars[0].WatchStrain = "0";
                 c.tables.Bars.push_back(barOf(1, 71.33, 30));
                 c.tables.Bars.back().WatchStrain = "0";
               }),
       End::LoadingEnd, ""},
      {plain("many layers", small(150)), End::LoadingEnd, "", 14},
      {changed("FRP", small(), [](Case& c) { c.tables.Bars[0].Type = "FRP Bar"; }), End::LoadingEnd, ""},
      {changed("initial strains in balance with a tendon", teeBeam(),
               [](Case& c) {
                 for (auto& solid : c.tables.Solids) solid.InitialStrain = 0.00003;
                 c.tables.Bars[1].InitialStrain = 0.0001;
               }),
       End::LoadingEnd, ""},
      {changed("Number 0, 3 and -1", small(),
               [](Case& c) {
                 c.tables.Solids[2].Number = 3;
                 c.tables.Solids[4].Number = 0;
                 c.tables.Solids[7].Number = -1;
                 c.tables.Bars.push_back(barOf(0, 198.6, 45));
                 c.tables.Bars.back().InitialStrain = 0.3;
                 c.tables.Tendons.push_back(tendonOf(132.7, 400, "Pre-tensioning"));
                 c.tables.Tendons.back().Number = 0;
               }),
       End::LoadingEnd, ""},
      {changed("watch strains with pauses", teeBeam(),
               [](Case& c) {
                 c.tables.Solids[0].Output = 1;
                 c.tables.Solids[0].WatchStrain = " 3E-4 ";
                 c.tables.Solids[1].WatchStrain = "no number, but no output either";
                 c.tables.Bars[0].WatchStrain = "-0.0003";
                 c.tables.Bars[1].WatchStrain = "0.002";
                 c.tables.Tendons[0].WatchStrain = "0.006";
                 c.options.pausePreLoading = true;
                 c.desk.pausing = true;
               }),
       End::LoadingEnd, ""},
      {changed("no solver table: no watch", small(),
               [](Case& c) {
                 c.tables.Bars[0].WatchStrain = "no number";
                 c.options.tableSolver = false;
                 c.options.beepConvergence = false;
                 c.options.pauseWatch = false;
               }),
       End::LoadingEnd, "", 14},
      {changed("the user types steps", small(),
               [](Case& c) {
                 c.desk.step = " 1.5E-06 ";
                 c.desk.atEvents = [](Desk& desk, int call) {
                   if (call == 40) desk.step = "Large";
                   if (call == 50) desk.step = "-0.000001";
                   if (call == 60) desk.step = "Small";
                 };
               }),
       End::LoadingEnd, ""},
      {changed("a step past the end", small(), [](Case& c) { c.desk.step = "1"; }), End::LoadingEnd, "", 1},
      {changed("no pieces", small(), [](Case& c) { c.tables.Beams[0].HalfSpanFiberNumber = 0; }),
       End::LoadingEnd, ""},
      {changed("pieces past the support, no flexural span", small(),
               [](Case& c) {
                 c.tables.Beams[0] = beamOf(4000, 0, 20);
                 c.tables.Beams[0].HalfSpanFiberLength = 130;
               }),
       End::LoadingEnd, ""},
      {changed("all pieces in the flexural span", small(),
               [](Case& c) { c.tables.Beams[0].FlexuralSpan = 9000; }),
       End::LoadingEnd, ""},
      {changed("precision 0 and a wide difference", small(),
               [](Case& c) {
                 c.options.Precision = 1;
                 c.options.DiffWidth = 1e-3;
               }),
       End::LoadingEnd, ""},
  });
}

/// Layers without tension whose first three searches converge at once where nothing opens.
model::ObjectTables opening(double height) {
  model::ObjectTables tables;
  tables.Beams.push_back(beamOf(4000, 600, 5));
  addLayers(tables, 300, 500, 10);
  const std::string file = writeCurve("opening.txt", kNoTension);
  for (auto& solid : tables.Solids) {
    useFile(solid, file);
    solid.Height = height;
  }
  return tables;
}

model::ObjectTables withTendon(model::ObjectTables tables, double depth) {
  tables.Tendons.push_back(tendonOf(132.7, depth, "Post-tensioning"));
  return tables;
}

TEST(ReferenceSolver, agreesOnSearchesThatFail) {
  const auto limited = [](std::string name, model::ObjectTables tables, std::int16_t MaxIteration) {
    return changed(std::move(name), std::move(tables),
                   [&](Case& c) { c.options.MaxIteration = MaxIteration; });
  };
  runAll({
      {limited("Tendon N", teeBeam(), 1), End::SearchFailed, "Tendon convergence (N) failed.", 0},
      {limited("Tendon MN", withTendon(opening(50), 420), 1), End::SearchFailed,
       "Tendon convergence (MN) failed.", 0},
      {limited("Tendon MM", withTendon(opening(60), 280), 1), End::SearchFailed,
       "Tendon convergence (MM) failed.", 0},
      {limited("Axial N", withAxial(small(), 1e5, 250), 1), End::SearchFailed,
       "Axial force convergence (N) failed.", 0},
      {limited("Axial MN", withAxial(opening(50), 1e5, 420), 1), End::SearchFailed,
       "Axial force convergence (MN) failed.", 0},
      {limited("Axial MM", withAxial(opening(60), 1e5, 280), 1), End::SearchFailed,
       "Axial force convergence (MM) failed.", 0},
      {limited("Loading", small(), 1), End::SearchFailed, "Loading convergence failed.", 1},
      {limited("a limit of 0 is one of 1", small(), 0), End::SearchFailed, "Loading convergence failed.", 1},
      {limited("Loading, later", small(), 3), End::SearchFailed, "Loading convergence failed."},
      {changed("bars break", small(),
               [](Case& c) {
                 c.tables.Bars[0].Type = "FRP Bar";
                 c.tables.Bars[0].UltimateStrain = 0.002;
               }),
       End::Collapsed, "Loading causes compression force = tension force = 0."},
  });
}

TEST(ReferenceSolver, agreesOnFaults) {
  const auto boxes = [](std::string name, std::vector<std::string> answers) {
    return changed(std::move(name), confined(), [&](Case& c) { c.desk.answers = std::move(answers); });
  };
  runAll({
      {changed("no solid", small(), [](Case& c) { c.tables.Solids.clear(); }), End::NumericFault, "", 0},
      {changed("pieces past all measure", small(),
               [](Case& c) { c.tables.Beams[0].HalfSpanFiberLength = 1e305; }),
       End::NumericFault, "", 1},
      {changed("modulus 0", small(),
               [](Case& c) {
                 for (auto& solid : c.tables.Solids) solid.ElasticModulus = 0;
               }),
       End::NumericFault, "", 0},
      {changed("datum at the centroid", small(),
               [](Case& c) {
                 c.tables.Bars.clear();
                 for (auto& solid : c.tables.Solids) solid.Depth -= 250;
               }),
       End::NumericFault, "", 0},
      {changed("initial strain out of balance", small(),
               [](Case& c) { c.tables.Solids[0].InitialStrain = 1e-4; }),
       End::NumericFault, "", 0},
      {changed("a solid law of no name", small(), [](Case& c) { c.tables.Solids[9].Type = "elastic"; }),
       End::InternalError, "", 0},
      {changed("a bar law of no name, Number 0", small(),
               [](Case& c) {
                 c.tables.Bars[0].Number = 0;
                 c.tables.Bars[0].Type = "FRP";
               }),
       End::InternalError, "", 0},
      {changed("a prestressing of no name", teeBeam(),
               [](Case& c) { c.tables.Tendons[2].Prestressing = "Pre"; }),
       End::InternalError, "", 0},
      {changed("an overflow in a law", small(),
               [](Case& c) {
                 c.tables.Solids[0].Type = "Elastic";
                 c.tables.Solids[0].ElasticModulus = 1e300;
                 c.tables.Solids[0].Area = 1e12;
               }),
       End::NumericFault, "", 0},
      {changed("shear span 0", small(), [](Case& c) { c.tables.Beams[0].ShearSpan = 0; }), End::NumericFault,
       "", 0},
      {changed("two steps of one moment", teeBeam(), [](Case& c) { c.desk.step = "0"; }), End::NumericFault,
       ""},
      {plain("axial tension that nothing but bars carries", withAxial(small(20), -60e3, 300)),
       End::NumericFault, "", 0},
      {changed("a step that is no number", small(), [](Case& c) { c.desk.step = "tiny"; }), End::NumericFault,
       "", 1},
      {changed("a watch strain that is no number", small(),
               [](Case& c) { c.tables.Bars[0].WatchStrain = " "; }),
       End::NumericFault, "", 0},
      {changed("a user file that is missing", userFiles(),
               [](Case& c) {
                 c.tables.Bars[0].Type = "Elastic";
                 c.tables.Bars[1].File = curvePath("missing.txt");
               }),
       End::NumericFault, "", 0},
      {changed("a user file shorter than the place of the last search", userFiles(),
               [](Case& c) { c.tables.Solids[1].File = writeCurve("short.txt", "0 0\n30 0.01\n"); }),
       End::NumericFault, ""},
      {boxes("no yield stress of the tie", {"c", "strong"}), End::NumericFault, "", 0},
      {boxes("nobody answers", {"r"}), End::InputError, "", 0},
      {changed("nobody to ask", confined(), [](Case& c) { c.prompt = false; }), End::InternalError, "", 0},
      {changed("no volumetric ratio", confined(), [](Case& c) { c.tables.Solids[8].VolumetricRatio = 0; }),
       End::NumericFault, "", 0},
  });
}

TEST(ReferenceSolver, agreesWhereverTheUserEndsTheJob) {
  Case test = plain("ended", withAxial(teeBeam(), 5e4, 400));
  test.tables.Bars[1].WatchStrain = "0.001";
  test.options.pausePreLoading = true;
  test.desk.pausing = true;
  int calls = 0;
  test.desk.atEvents = [&](Desk&, int call) { calls = call; };
  ASSERT_EQ(runBoth(test).end, End::LoadingEnd);
  const int last = calls;
  for (int stop = 1; stop <= last; ++stop) {
    test.name = "ended at events " + std::to_string(stop);
    test.desk.atEvents = [stop](Desk& desk, int call) {
      if (call == stop) desk.control.state = RunState::Over;
    };
    const JobOutcome outcome = runBoth(test);
    if (stop < last) {  // behind the last call nothing asks for the state
      EXPECT_EQ(outcome.end, End::EndedByUser) << test.name;
    }
  }
}

TEST(ReferenceSolver, agreesUpToTheLastStepOf16Bits) {
  Case test = plain("steps of 16 bits", {});
  test.tables.Beams.push_back(beamOf(1000, 100, 2));
  for (const double depth : {25.0, 75.0}) {
    test.tables.Solids.push_back(solidOf(100, 50, depth));
    test.tables.Solids.back().Type = "Elastic";
  }
  test.options.tableSolver = false;
  test.options.beepConvergence = false;
  test.options.LargeTo = 1;
  test.desk.step = "1E-9";
  const JobOutcome outcome = runBoth(test);
  EXPECT_EQ(outcome.end, End::NumericFault);
  EXPECT_EQ(outcome.rows, 32769);  // steps 0 to 32768
}

/// Small models of every kind, sound and unsound, from one seed.
class RandomModels {
 public:
  Case next(int number) {
    Case test;
    test.name = "random " + std::to_string(number);
    model::ObjectTables& t = test.tables;
    m_top = oneOf({0.0, 0.0, 100.0, -150.0});
    const double height = between(200, 900);
    t.Beams.push_back(beamOf(between(1000, 9000), oneOf({0.0, 500.0, 900.0}), integer(0, 9)));
    if (t.Beams[0].HalfSpanFiberNumber == 0) t.Beams[0].HalfSpanFiberLength = 0;
    const int layers = integer(2, 9);
    addLayers(t, between(100, 600), height, layers, m_top);
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
      t.Bars.push_back(barOf(1, between(50, 900), m_top + between(0.05, 0.95) * height, between(250, 600)));
      t.Bars.back().Type = oneOf<const char*>({"JSCE (Design)", "Steel Bar", "FRP Bar", "Elastic", "File"});
      t.Bars.back().File = m_steel;
      if (chance(0.3)) t.Bars.back().UltimateStrain = between(0.001, 0.03);
      common(t.Bars.back());
    }
    for (int n = integer(0, 2); n > 0; --n) {
      t.Tendons.push_back(tendonOf(between(20, 300), m_top + between(0.2, 0.95) * height,
                                   chance(0.5) ? "Pre-tensioning" : "Post-tensioning"));
      auto& tendon = t.Tendons.back();
      tendon.Type = oneOf<const char*>({"JSCE (Design)", "Steel Bar", "FRP Bar", "Elastic"});
      tendon.IntroductionStrain = between(0.0005, 0.007);
      tendon.SheathArea = chance(0.5) ? 0 : between(100, 900);
      tendon.SheathDepth = tendon.Depth;
      common(tendon);
    }
    for (int n = integer(0, 2); n > 0; --n)
      t.AxialForces.push_back(axialOf(between(-5e4, 6e5), m_top + between(0.2, 0.7) * height));

    test.options = coarse(static_cast<std::int16_t>(oneOf({2, 4, 8, 30, 30, 30, 30, 30})));
    test.options.Precision = oneOf({1e-3, 1e-3, 1e-5, 1e-2});
    test.options.DiffWidth = oneOf({1e-6, 1e-6, 1e-4});
    if (chance(0.3)) {
      test.options.LargeStep = oneOf({2e-5, 1e-4});
      test.options.LargeTo = between(2e-4, 2e-3);
    }
    test.options.tableSolver = chance(0.8);
    test.desk.step = oneOf<const char*>({"Small", "Small", "Large", "3E-6"});
    if (chance(0.02)) t.Bars.push_back(barOf(1, 1e308, m_top));
    if (chance(0.02)) t.Solids[0].Type = "?";
    if (chance(0.03)) test.desk.answers = {};
    return test;
  }

 private:
  template <class Row>
  void common(Row& row) {
    row.Output = static_cast<std::int16_t>(integer(0, 2));
    if (chance(0.2)) row.Number = integer(0, 3);
    if (chance(0.2)) row.WatchStrain = base::plainText(between(-3e-3, 3e-3));
  }
  std::string solidLaw() {
    return oneOf<const char*>({"JSCE (Design)", "JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)",
                               "Restoration (Confined)", "Elastic", "File"});
  }
  double between(double a, double b) { return a + (b - a) * static_cast<double>(m_random() >> 11) * 0x1p-53; }
  bool chance(double p) { return between(0, 1) < p; }
  std::int16_t integer(int a, int b) {
    return static_cast<std::int16_t>(a + static_cast<int>(m_random() % static_cast<unsigned>(b - a + 1)));
  }
  template <class Value>
  Value oneOf(std::initializer_list<Value> values) {
    return values.begin()[m_random() % values.size()];
  }

  std::mt19937_64 m_random{20240229};
  double m_top = 0;
  std::array<std::string, 2> m_curves = {
      writeCurve("random1.txt", kConcreteCurve),
      writeCurve("random2.txt", "-2 -0.0001\n0 0\n25 0.0015\n25 0.0035\n0 0.005\n")};
  std::string m_steel = writeCurve("random3.txt", "-400 -0.1\n-400 -0.002\n0 0\n400 0.002\n400 0.05\n");
};

TEST(ReferenceSolver, agreesOnRandomModels) {
  RandomModels models;
  std::map<End, int> ends;
  for (int i = 0; i < 1000 && !HasFailure(); ++i) ++ends[runBoth(models.next(i)).end];
  for (const End end : {End::LoadingEnd, End::SearchFailed, End::Collapsed, End::NumericFault,
                        End::InternalError, End::InputError})
    EXPECT_GT(ends[end], 0) << static_cast<int>(end);
}

}  // namespace
}  // namespace torvik::analysis
