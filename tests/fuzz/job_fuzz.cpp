// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/job.h"
#include "analysis/result_file.h"
#include "base/fault.h"
#include "base/number_text.h"
#include "base/profile.h"
#include "fuzz/fuzz_targets.h"
#include "model/input_file.h"

namespace torvik::fuzz {

namespace {

using namespace torvik::analysis;

/// The input, byte by byte; 0 behind its end.
class Choices {
 public:
  explicit Choices(std::string_view bytes) : m_bytes(bytes) {}

  unsigned byte() { return m_at < m_bytes.size() ? static_cast<unsigned char>(m_bytes[m_at++]) : 0U; }
  int upTo(int most) { return static_cast<int>(byte()) % (most + 1); }

  template <std::size_t count>
  const char* of(const std::array<const char*, count>& texts) {
    return texts[byte() % count];
  }

  /// Mostly a multiple of what is usual, else one of the numbers that go wrong.
  double number(double usual) {
    static constexpr double kFactors[] = {1,   0.5, 0.9,  1.1,  2,   3, 0.25, 10,
                                          0.1, -1,  -0.5, 1e-3, 1e3, 0, 1.5,  7};
    static constexpr double kExtremes[] = {0,     1,      -1,     5e-324, -1e-320, 1e-300,
                                           1e200, -1e200, 1e-155, 1e155,  1.7e308, -1.7e308};
    const unsigned choice = byte();
    if (choice < 230) return kFactors[choice % std::size(kFactors)] * usual;
    return kExtremes[choice % std::size(kExtremes)];
  }
  std::int16_t integer(int usual) {
    static constexpr int kOthers[] = {0, 1, -1, 2, 7, 32767, -32768};
    const unsigned choice = byte();
    return static_cast<std::int16_t>(choice < 230 ? usual : kOthers[choice % std::size(kOthers)]);
  }

 private:
  std::string_view m_bytes;
  std::size_t m_at = 0;
};

constexpr std::array kSolidTypes = {"JSCE (Design)",
                                    "JSCE (Design)",
                                    "e Function (Plane)",
                                    "Muguruma (Plane)",
                                    "Restoration (Confined)",
                                    "Elastic",
                                    "File",
                                    "elastic"};
constexpr std::array kSteelTypes = {"JSCE (Design)", "JSCE (Design)", "Steel Bar", "FRP Bar",
                                    "Elastic",       "File",          ""};
constexpr std::array kPrestressing = {"Post-tensioning", "Pre-tensioning", "Post-tensioning", "none"};
constexpr std::array kWatches = {"", "", "0.001", "-1E-05", "0", "?"};
constexpr std::array kSteps = {"Small", "Large", "1E-06", "Small", "-1E-06", "0", "1E308", "step"};

struct Case {
  model::ObjectTables tables;
  JobOptions options;
  std::string step;
  unsigned user;  ///< what the user does at pauses and after how many events he ends the job
};

template <class Row>
void common(Row& row, Choices& next) {
  row.Use = 1;
  row.Output = static_cast<std::int16_t>(next.upTo(1));
  row.File = "no such file";
  row.Number = next.integer(1 + next.upTo(2));
  row.WatchStrain = next.of(kWatches);
}

Case caseOf(std::string_view bytes) {
  Choices next(bytes);
  Case result;
  model::ObjectTables& tables = result.tables;
  const auto counts = next.byte();
  tables.Beams.resize(counts % 8 == 7 ? 0 : 1);
  tables.Solids.resize((counts / 8) % 5);
  tables.Bars.resize((counts / 40) % 3);
  tables.Tendons.resize(counts >= 160 ? 1 + next.byte() % 2 : 0);
  tables.AxialForces.resize(counts >= 200 ? 1 + next.byte() % 2 : 0);

  result.options.MaxIteration = static_cast<std::int16_t>(1 + next.upTo(29));
  result.options.SmallStep = next.number(2e-6);
  result.options.LargeStep = next.number(1e-5);
  result.options.SmallTo = next.number(2e-5);
  result.options.LargeTo = next.number(1e-4);
  result.options.DiffWidth = next.number(1e-6);
  result.options.Precision = next.number(1e-3);
  result.options.tableSolver = next.upTo(3) != 0;
  result.options.pausePreLoading = next.upTo(1) != 0;
  result.step = next.of(kSteps);
  result.user = next.byte();

  for (model::BeamObject& row : tables.Beams) {
    row.Use = 1;
    row.Span = next.number(4000);
    row.FlexuralSpan = next.number(1000);
    row.ShearSpan = next.number(1500);
    row.HalfSpanFiberNumber = static_cast<std::int16_t>(next.upTo(12) - 1);
    row.HalfSpanFiberLength = next.number(200);
  }
  const double start = next.number(50);
  double top = std::fabs(start) < 1e300 ? start - 50 : 0;
  for (model::SolidObject& row : tables.Solids) {
    common(row, next);
    row.Type = next.of(kSolidTypes);
    row.Width = next.number(300);
    row.Height = next.number(100);
    row.Area = next.number(30000);
    const double below = next.number(50);
    row.Depth = std::fabs(below) < 1e300 ? top + below : below;
    row.InitialStrain = next.number(0);
    row.ElasticModulus = next.number(28000);
    row.FlexuralStrain = next.number(-1.4e-4);
    row.UltimateStress = next.number(30);
    row.UltimateStrain = next.number(0.0035);
    row.VolumetricRatio = next.number(0.01);
    top += 100;
  }
  for (model::BarObject& row : tables.Bars) {
    common(row, next);
    row.Type = next.of(kSteelTypes);
    row.Area = next.number(500);
    row.Depth = next.number(top - 50);
    row.InitialStrain = next.number(0);
    row.ElasticModulus = next.number(200000);
    row.YieldStress = next.number(345);
    row.YieldStrain = next.number(0.001725);
    row.UltimateStress = next.number(520);
    row.UltimateStrain = next.number(0.2);
  }
  for (model::TendonObject& row : tables.Tendons) {
    common(row, next);
    row.Type = next.of(kSteelTypes);
    row.Area = next.number(140);
    row.Depth = next.number(top - 80);
    row.IntroductionStrain = next.number(0.005);
    row.Prestressing = next.of(kPrestressing);
    row.SheathArea = next.number(400);
    row.SheathDepth = next.number(top - 80);
    row.ElasticModulus = next.number(200000);
    row.YieldStress = next.number(1600);
    row.YieldStrain = next.number(0.008);
    row.UltimateStress = next.number(1860);
    row.UltimateStrain = next.number(0.05);
  }
  for (model::AxialForceObject& row : tables.AxialForces) {
    row.Use = 1;
    row.Depth = next.number(top / 2);
    row.Force = next.number(100000);
  }
  return result;
}

class User : public Host, public materials::ConfinementPrompt {
 public:
  explicit User(const Case& of) : m_step(of.step), m_user(of.user) {}

  RunControl control{RunState::Running};

  void doEvents() override {
    static_cast<void>(std::feraiseexcept(FE_INVALID | FE_OVERFLOW));  // a window system may raise anything
    const int most = m_user % 8 == 7 ? 10 : 500;
    if (++m_events >= most) control.state = RunState::Over;
    if (control.state == RunState::Paused && m_events % 2 == 0)
      control.state = m_user % 4 == 1 ? RunState::Over : RunState::Running;
  }
  void reportMessage(const std::string& text) override {
    expectOneLine(text);
    reported.push_back(text);
  }
  void showMessage(const std::string&) override {}
  void playSound(const std::string&) override {}
  void setPanel(Panel, const std::string& text) override {
    expect(text.find("NAN") == text.npos && text.find("INF") == text.npos, "a panel shows numbers: " + text);
  }
  void setCount(int iteration, int outerIteration) override {
    expect(iteration >= 1 && outerIteration >= 0, "iterations count from 1");
  }
  std::string stepText() override { return m_step; }
  void setStepText(const std::string& text) override { m_step = text; }
  void pause(PauseCause) override { control.state = RunState::Paused; }
  std::string inputBox(const std::string&, const std::string& title, const std::string&) override {
    if (title == "Section Shape") return m_user % 2 == 0 ? "r" : "C";
    static constexpr std::array kAnswers = {"300", "1E-300", "-200", "1E308", "ties"};
    return kAnswers[(m_user / 4) % kAnswers.size()];
  }

  std::vector<std::string> reported;

 private:
  std::string m_step;
  unsigned m_user;
  int m_events = 0;
};

struct Recorder : Sink {
  std::vector<std::vector<double>> rows;
  int cells = 0;
  bool over = false;

  void cell(int, double value) override {
    expect(std::isfinite(value), "a cell is finite");
    ++cells;
  }
  void watchCrossed(const WatchCrossing& crossing) override {
    expect(std::isfinite(crossing.WatchStrain) && std::isfinite(crossing.strain), "a crossing is finite");
  }
  void resultRow(std::span<const double> values) override {
    for (const double value : values) expect(std::isfinite(value), "a result row is finite");
    rows.emplace_back(values.begin(), values.end());
  }
  void loadStep(const LoadStep& step) override {
    expect(static_cast<std::size_t>(step.Step) + 1 == rows.size(), "a step follows its row");
    for (std::size_t i = 0; i < step.beam.pieceCount(); ++i)
      expect(std::isfinite(step.beam.pieceMoments()[i]) && std::isfinite(step.beam.pieceCurvatures()[i]),
             "moment and curvature of a piece are finite");
  }
  void jobOver(const SectionState&) override { over = true; }
};

struct Run {
  JobOutcome outcome;
  std::vector<std::vector<double>> rows;
};

Run runOnce(const Case& given) {
  model::ObjectTables tables = given.tables;
  User user(given);
  materials::StressStrainContext context;
  context.prompt = &user;
  context.report = [](const std::string&, const std::string& text) { expectOneLine(text); };
  Recorder recorder;
  Sink* const sinks[] = {&recorder};
  Run run;
  run.outcome = runJob(tables, given.options, user.control, user, sinks, context);

  expect(recorder.over, "a job tells its sinks that it is over");
  expect(static_cast<int>(recorder.rows.size()) == run.outcome.rows, "every row counts");
  expect(run.outcome.message.empty() == (run.outcome.end == JobOutcome::End::EndedByUser),
         "every end but the user's has a message");
  expect(user.reported.size() == (run.outcome.message.empty() ? 0 : 1), "the message is reported once");
  const std::size_t width = resultHeadings(tables).size();
  for (const auto& row : recorder.rows) expect(row.size() == width, "a row has a value under each heading");
  expect(!given.options.tableSolver || recorder.cells >= run.outcome.rows * static_cast<int>(width),
         "a table row has all cells");
  run.rows = std::move(recorder.rows);
  return run;
}

std::string textOf(const Case& given) {
  base::ProfileFile file;
  model::writeTables(file, given.tables);
  return file.text() + "; step " + given.step;
}

}  // namespace

void job(std::string_view bytes) {
  const Case given = caseOf(bytes);
  try {
    const Run first = runOnce(given);
    const Run second = runOnce(given);
    expect(first.outcome.message == second.outcome.message && first.rows == second.rows,
           "the same job gives the same bits");
  } catch (const Violated& broken) {
    throw Violated(std::string(broken.what()) + "\n" + textOf(given));
  }
  expect(std::fegetround() == FE_TONEAREST, "a job leaves the rounding alone");
  base::fpflags::clear();
}

}  // namespace torvik::fuzz
