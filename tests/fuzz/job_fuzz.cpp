// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cfenv>
#include <cmath>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/job.h"
#include "analysis/recording_host.h"
#include "base/fault.h"
#include "fuzz/fuzz_targets.h"

namespace torvik::fuzz {

namespace {

using namespace torvik::analysis;

/// The input, byte by byte; 0 behind its end.
struct Choices {
  std::string_view bytes;

  unsigned byte() {
    const unsigned first = bytes.empty() ? 0U : static_cast<unsigned char>(bytes[0]);
    bytes.remove_prefix(bytes.empty() ? 0 : 1);
    return first;
  }
  int upTo(int most) { return static_cast<int>(byte()) % (most + 1); }
  /// One of the texts between the bars.
  std::string of(std::string_view texts) {
    const auto number = byte() % static_cast<unsigned>(std::ranges::count(texts, '|') + 1);
    for (unsigned i = 0; i < number; ++i) texts.remove_prefix(texts.find('|') + 1);
    return std::string(texts.substr(0, texts.find('|')));
  }

  /// Mostly a multiple of what is usual, else one of the numbers that go wrong.
  double number(double usual) {
    static constexpr double kFactors[] = {1,   0.5, 0.9,  1.1,  2,   3, 0.25, 10,
                                          0.1, -1,  -0.5, 1e-3, 1e3, 0, 1.5,  7};
    static constexpr double kExtremes[] = {0,     1,      -1,     5e-324, -1e-320, 1e-300,
                                           1e200, -1e200, 1e-155, 1e155,  1.7e308, -1.7e308};
    const unsigned choice = byte();
    return choice < 230 ? kFactors[choice % 16] * usual : kExtremes[choice % 12];
  }
  void numbers(std::initializer_list<double*> into, std::initializer_list<double> usual) {
    for (auto value = usual.begin(); double* number : into) *number = this->number(*value++);
  }
};

constexpr const char* kSolidTypes =
    "JSCE (Design)|JSCE (Design)|e Function (Plane)|Muguruma (Plane)|"
    "Restoration (Confined)|Elastic|File|elastic";
constexpr const char* kSteelTypes = "JSCE (Design)|JSCE (Design)|Steel Bar|FRP Bar|Elastic|File|";

struct Case {
  model::ObjectTables tables;
  JobOptions options;
  RecordingHost user;
};

template <class Row>
void common(Row& row, Choices& next, const char* types) {
  row.Output = static_cast<std::int16_t>(next.upTo(1));
  row.File = "no such file";
  constexpr int kOddNumbers[] = {0, 1, -1, 2, 7, 32767, -32768};
  const int number = 1 + next.upTo(2);
  const unsigned choice = next.byte();
  row.Number = static_cast<std::int16_t>(choice < 230 ? number : kOddNumbers[choice % 7]);
  row.WatchStrain = next.of("||0.001|-1E-05|0|?");
  row.Type = next.of(types);
}

Case caseOf(std::string_view bytes) {
  Choices next{bytes};
  Case result;
  model::ObjectTables& tables = result.tables;
  const unsigned counts = next.byte();
  tables.Beams.resize(counts % 8 == 7 ? 0 : 1);
  tables.Solids.resize((counts / 8) % 5);
  tables.Bars.resize((counts / 40) % 3);
  tables.Tendons.resize(counts >= 160 ? 1 + next.byte() % 2 : 0);
  tables.AxialForces.resize(counts >= 200 ? 1 + next.byte() % 2 : 0);

  JobOptions& options = result.options;
  options.MaxIteration = static_cast<std::int16_t>(1 + next.upTo(29));
  next.numbers({&options.SmallStep, &options.LargeStep, &options.SmallTo, &options.LargeTo,
                &options.DiffWidth, &options.Precision},
               {2e-6, 1e-5, 2e-5, 1e-4, 1e-6, 1e-3});
  options.tableSolver = next.upTo(3) != 0;
  options.pausePreLoading = next.upTo(1) != 0;
  result.user.step = next.of("Small|Large|1E-06|Small|-1E-06|0|1E308|step");
  const unsigned user = next.byte();
  constexpr const char* kTieStresses[] = {"300", "1E-300", "-200", "1E308", "ties"};
  result.user.answers = {user % 2 == 0 ? "r" : "C", kTieStresses[(user / 4) % 5]};
  result.user.pausing = true;
  result.user.atEvents = [most = user % 8 == 7 ? 10 : 500](RecordingHost& host, int call) {
    static_cast<void>(std::feraiseexcept(FE_INVALID | FE_OVERFLOW));  // a window system may raise anything
    if (call >= most) host.control.state = RunState::Over;
  };

  for (model::BeamObject& row : tables.Beams) {
    next.numbers({&row.Span, &row.FlexuralSpan, &row.ShearSpan}, {4000, 1000, 1500});
    row.HalfSpanFiberNumber = static_cast<std::int16_t>(next.upTo(12) - 1);
    row.HalfSpanFiberLength = next.number(200);
  }
  const double start = next.number(50);
  double top = std::fabs(start) < 1e300 ? start - 50 : 0;
  for (model::SolidObject& row : tables.Solids) {
    common(row, next, kSolidTypes);
    next.numbers({&row.Width, &row.Height, &row.Area, &row.Depth, &row.InitialStrain, &row.ElasticModulus,
                  &row.FlexuralStrain, &row.UltimateStress, &row.UltimateStrain, &row.VolumetricRatio},
                 {300, 100, 30000, 50, 0, 28000, -1.4e-4, 30, 0.0035, 0.01});
    if (std::fabs(row.Depth) < 1e300) row.Depth += top;
    top += 100;
  }
  for (model::BarObject& row : tables.Bars) {
    common(row, next, kSteelTypes);
    next.numbers({&row.Area, &row.Depth, &row.InitialStrain, &row.ElasticModulus, &row.YieldStress,
                  &row.YieldStrain, &row.UltimateStress, &row.UltimateStrain},
                 {500, top - 50, 0, 200000, 345, 0.001725, 520, 0.2});
  }
  for (model::TendonObject& row : tables.Tendons) {
    common(row, next, kSteelTypes);
    next.numbers({&row.Area, &row.Depth, &row.IntroductionStrain}, {140, top - 80, 0.005});
    row.Prestressing = next.of("Post-tensioning|Pre-tensioning|Post-tensioning|none");
    next.numbers({&row.SheathArea, &row.SheathDepth, &row.ElasticModulus, &row.YieldStress, &row.YieldStrain,
                  &row.UltimateStress, &row.UltimateStrain},
                 {400, top - 80, 200000, 1600, 0.008, 1860, 0.05});
  }
  for (model::AxialForceObject& row : tables.AxialForces)
    next.numbers({&row.Depth, &row.Force}, {top / 2, 100000});
  return result;
}

}  // namespace

void job(std::string_view bytes) {
  const Case given = caseOf(bytes);
  const JobRun run(given.tables, given.options, given.user);
  const std::vector<std::string>& events = run.host.events;
  const auto isOver = [](const std::string& event) { return event.starts_with("over"); };
  const std::string& message = run.outcome.message;
  const bool isEnded = run.outcome.end == JobOutcome::End::EndedByUser;

  const JobRun again(given.tables, given.options, given.user);
  expect(again.host.events == events, "the same job gives the same bits");
  expect(std::ranges::count_if(events, isOver) == 1, "a job tells its sinks that it is over");
  expect(message.empty() == isEnded, "every end but the user's has a message");
  if (!isEnded) expectOneLine(message);
  expect(std::ranges::count(events, "report: " + message) == (isEnded ? 0 : 1), "a message is told once");
  for (const std::string& event : events) {
    // States and the deflections of the chart may overflow.
    const std::string kind = event.substr(0, event.find_first_of(" \t"));
    if (kind == "over" || kind == "current" || kind == "strain" || kind == "pieces") continue;
    for (const char* bad : {"nan", "inf", "NAN", "INF"})
      expect(event.find(bad) == event.npos, "numbers are finite: " + event);
  }
  expect(static_cast<int>(run.sink.rows.size()) == run.outcome.rows, "every row counts");
  for (const auto& row : run.sink.rows)
    expect(row.size() == resultHeadings(given.tables).size(), "a row has a value under each heading");
  base::fpflags::clear();
}

}  // namespace torvik::fuzz
