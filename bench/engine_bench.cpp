// SPDX-License-Identifier: GPL-3.0-or-later
// build/release/bench/torvik-bench [--benchmark_filter=REGEX]
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/files.h"
#include "base/number_text.h"
#include "job/job.h"
#include "model/input_file.h"

namespace {

using namespace torvik;

/// 300 x 500 cut into layers, three bars at depth 450.
model::ObjectTables rectangle(int layers) {
  model::ObjectTables tables;
  model::BeamObject beam;
  beam.Use = 1;
  beam.Span = 4000;
  beam.ShearSpan = 2000;
  beam.HalfSpanFiberNumber = 100;
  beam.HalfSpanFiberLength = 20;
  tables.Beams.push_back(beam);
  model::SolidObject solid;
  solid.Use = solid.Number = 1;
  solid.Type = "JSCE (Design)";
  solid.Width = 300;
  solid.Height = 500.0 / layers;
  solid.Area = solid.Width * solid.Height;
  solid.ElasticModulus = 28000;
  solid.UltimateStress = 30;
  for (int i = 0; i < layers; ++i) {
    solid.Depth = (i + 0.5) * solid.Height;
    tables.Solids.push_back(solid);
  }
  model::BarObject bar;
  bar.Use = bar.Output = 1;
  bar.Number = 3;
  bar.Type = "JSCE (Design)";
  bar.Area = 506.7;
  bar.Depth = 450;
  bar.ElasticModulus = 200000;
  bar.YieldStress = 345;
  bar.YieldStrain = 345.0 / 200000;
  bar.UltimateStrain = 0.2;
  tables.Bars.push_back(bar);
  return tables;
}

/// 500 points of moment-curvature up to the crushing strain, with the beam's load and displacement.
void momentCurvatureJob(benchmark::State& state) {
  const model::ObjectTables tables = rectangle(static_cast<int>(state.range(0)));
  job::JobOptions options;
  options.LargeTo = options.SmallTo = 4e-5;
  options.SmallStep = 4e-5 / 500;
  job::UnattendedHost host;
  int rows = 0;
  for (auto _ : state) {
    materials::StressStrainContext context;
    run::Run run(tables, {});
    run::RunWriter writer(run);
    job::runJob(options, host, writer, context);
    rows = run.steps();
    benchmark::DoNotOptimize(&run);
  }
  state.counters["rows"] = rows;
}
BENCHMARK(momentCurvatureJob)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void loadModel(benchmark::State& state) {
  base::ProfileFile written;
  model::writeTables(written, rectangle(static_cast<int>(state.range(0))));
  const std::string path = std::filesystem::temp_directory_path() / "torvik-bench.inp";
  written.save(path);
  for (auto _ : state) {
    model::ObjectTables tables;
    model::readTables(base::ProfileFile::read(path), tables);
    benchmark::DoNotOptimize(tables.Solids.data());
  }
  std::filesystem::remove(path);
}
BENCHMARK(loadModel)->Arg(10000)->Unit(benchmark::kMillisecond);

void saveModel(benchmark::State& state) {
  const model::ObjectTables tables = rectangle(static_cast<int>(state.range(0)));
  const std::string path = std::filesystem::temp_directory_path() / "torvik-bench.inp";
  for (auto _ : state) {
    base::ProfileFile file = base::ProfileFile::read(path);
    model::writeTables(file, tables);
    file.save(path);
  }
  std::filesystem::remove(path);
}
BENCHMARK(saveModel)->Arg(10000)->Unit(benchmark::kMillisecond);

/// One evaluation of a thousand rows of one law; the counter is the time of one fibre.
template <class Law, class Row>
void evaluateLaw(benchmark::State& state, Row row, double from, double to) {
  constexpr std::size_t kRows = 1000;
  std::vector<double> strains(kRows);
  std::vector<double> stresses(kRows);
  for (std::size_t i = 0; i < kRows; ++i) strains[i] = from + (to - from) * static_cast<double>(i) / kRows;

  class Prompt : public materials::ConfinementPrompt {
   public:
    void showMessage(const std::string&) override {}
    std::string inputBox(const std::string&, const std::string& title, const std::string&) override {
      return title == "Section Shape" ? "r" : "300";
    }
  } prompt;
  materials::StressStrainContext context;
  context.prompt = &prompt;
  const Law law(row, context);
  stresses[0] = law.stress(strains[0], context);
  for (auto _ : state) {
    if (!law.stresses(strains, stresses, context)) {
      for (std::size_t i = 0; i < kRows; ++i) stresses[i] = law.stress(strains[i], context);
    }
    benchmark::DoNotOptimize(stresses.data());
    benchmark::ClobberMemory();
  }
  state.counters["per_fibre"] =
      benchmark::Counter(kRows, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void solidLaw(benchmark::State& state, const char* type) {
  model::SolidObject row = rectangle(1).Solids.front();
  row.Type = type;
  row.FlexuralStrain = -0.0001;
  row.VolumetricRatio = 0.01;
  evaluateLaw<materials::SolidLaw>(state, row, -0.0005, 0.004);
}
BENCHMARK_CAPTURE(solidLaw, Elastic, "Elastic");
BENCHMARK_CAPTURE(solidLaw, JSCE, "JSCE (Design)");
BENCHMARK_CAPTURE(solidLaw, eFunction, "e Function (Plane)");
BENCHMARK_CAPTURE(solidLaw, Muguruma, "Muguruma (Plane)");
BENCHMARK_CAPTURE(solidLaw, Restoration, "Restoration (Confined)");

void barLaw(benchmark::State& state, const char* type) {
  model::BarObject row = rectangle(1).Bars.front();
  row.Type = type;
  row.UltimateStress = 520;
  evaluateLaw<materials::BarLaw>(state, row, -0.02, 0.1);
}
BENCHMARK_CAPTURE(barLaw, JSCE, "JSCE (Design)");
BENCHMARK_CAPTURE(barLaw, Steel, "Steel Bar");
BENCHMARK_CAPTURE(barLaw, FRP, "FRP Bar");

void tendonLaw(benchmark::State& state, const char* type) {
  model::TendonObject row;
  row.Type = type;
  row.ElasticModulus = 200000;
  row.YieldStress = 930;
  row.YieldStrain = 0.00465;
  row.UltimateStress = 1080;
  row.UltimateStrain = 0.05;
  evaluateLaw<materials::TendonLaw>(state, row, -0.02, 0.04);
}
BENCHMARK_CAPTURE(tendonLaw, JSCE, "JSCE (Design)");
BENCHMARK_CAPTURE(tendonLaw, Steel, "Steel Bar");
BENCHMARK_CAPTURE(tendonLaw, FRP, "FRP Bar");

void userFile(benchmark::State& state) {
  const std::string path = std::filesystem::temp_directory_path() / "torvik-bench.ss";
  std::string text;
  for (int i = 0; i < 200; ++i)
    text += base::plainText(300.0 * i / 200) + ", " + base::plainText(0.004 * i / 200) + "\n";
  base::replaceWholeFile(path, text);
  model::BarObject row = rectangle(1).Bars.front();
  row.Type = "File";
  row.File = path;
  evaluateLaw<materials::BarLaw>(state, row, 0, 0.0039);
  std::filesystem::remove(path);
}
BENCHMARK(userFile);

}  // namespace
