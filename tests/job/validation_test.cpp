// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "base/profile.h"
#include "job/job_run.h"
#include "model/input_file.h"
#include "section/section_parameters.h"

/// Published numbers against the models of examples/validation. Sources, units and how each model was chosen:
/// docs/validation.md, by case number.
namespace torvik::tests {
namespace {

using Row = Numbers;

constexpr auto loadOf = [](const Row& row) { return row[0] / 1000; };  // [kN]
constexpr auto displacementOf = [](const Row& row) { return row[1]; };
constexpr auto momentOf = [](const Row& row) { return row[2] / 1e6; };  // [kN.m]
constexpr auto curvatureOf = [](const Row& row) { return row[3]; };
constexpr auto neutralAxisOf = [](const Row& row) { return row[4]; };
/// Compression strain of the edge at depth 0. It holds where nothing strains the section before loading.
constexpr auto topStrainOf = [](const Row& row) { return curvatureOf(row) * neutralAxisOf(row); };

model::ObjectTables readModel(const std::string& name) {
  const std::string folder = TORVIK_SOURCE_DIR "/examples/validation/";
  model::ObjectTables tables;
  model::readTables(base::ProfileFile::read(folder + name), tables);
  for (auto& solid : tables.Solids)
    if (!solid.File.empty()) solid.File = folder + solid.File;
  return model::BuildJobTables(tables).tables;
}

std::vector<Row> rowsOf(const model::ObjectTables& job, double LargeTo, double Precision = 1e-3) {
  job::JobOptions options;
  options.LargeTo = LargeTo;
  options.search.Precision = Precision;
  const JobRun run(job, options);
  EXPECT_EQ(run.end().message, "Loading end.");
  return run.rows();
}

/// `value` where `key` first comes up to `at`, linear between the two rows; not a number where it never does.
double interpolated(const std::vector<Row>& rows, auto key, double at, auto value) {
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const double a = key(rows[i - 1]);
    const double b = key(rows[i]);
    if (a < at && at <= b)
      return value(rows[i - 1]) + (at - a) / (b - a) * (value(rows[i]) - value(rows[i - 1]));
  }
  return std::nan("");
}

/// The difference counts relative to the published number.
void expectWithin(double tolerance, double ours, double published) {
  EXPECT_LE(std::abs(ours / published - 1), tolerance) << ours << ", published " << published;
}

void expectCurve(double tolerance, const std::vector<Row>& rows, auto key, const Row& places, auto value,
                 const Row& published) {
  for (std::size_t i = 0; i < places.size(); ++i)
    expectWithin(tolerance, interpolated(rows, key, places[i], value), published.at(i));
}

TEST(Validation, Case1MomentCurvatureOfARectangle) {
  const Row curvatures = {2e-6, 5e-6, 1e-5, 2e-5, 3e-5, 4e-5};
  for (const bool isPrecise : {false, true}) {
    const std::vector<Row> rows = rowsOf(readModel("rectangle.inp"), 4.3e-5, isPrecise ? 1e-6 : 1e-3);
    expectCurve(isPrecise ? 2e-6 : 1e-4, rows, curvatureOf, curvatures, momentOf,
                {70.7714, 172.0072, 211.1534, 215.8909, 217.0636, 217.4753});  // of 100 layers
    expectCurve(
        1e-3, rows, curvatureOf, curvatures, neutralAxisOf,
        {156.808, 162.561, 132.678, 101.887, 90.776, 85.220});  // by exact integration: the layers count
    expectCurve(1e-3, rows, topStrainOf, {0.0035}, curvatureOf, {4.1330e-5});
    expectCurve(1e-4, rows, topStrainOf, {0.0035}, momentOf, {217.52});
  }
}

TEST(Validation, Case2DeflectionOfABeam) {
  const std::vector<Row> rows = rowsOf(readModel("rectangle.inp"), 4.3e-5);
  expectCurve(0.002, rows, loadOf, {20, 50, 100, 150, 180, 200, 205}, displacementOf,
              {0.7441, 1.8694, 3.7721, 5.7141, 6.9015, 7.7037, 7.9057});
  expectCurve(0.01, rows, loadOf, {208, 210, 212, 214, 215, 216, 217}, displacementOf,
              {8.052, 8.205, 8.421, 8.730, 8.935, 9.194, 9.550});  // yielded
}

TEST(Validation, Case3TestOfAReinforcedBeam) {
  expectCurve(0.08, rowsOf(readModel("janney-1956.inp"), 9e-5), displacementOf,
              {5, 7.5, 10, 11.5, 15, 20, 30, 42}, momentOf, {19, 27, 34, 37, 37.8, 38.8, 40.3, 41.5});
}

TEST(Validation, Case4CrackedPrestressedSection) {
  // Behind the six columns: top and bottom layer, two bars, tendon.
  const std::vector<Row> rows = rowsOf(readModel("gilbert-5-7.inp"), 8e-6);
  ASSERT_EQ(rows.at(0).size(), 11u);
  const auto topEdge = [](const Row& row) { return row[6] + 5 * curvatureOf(row); };
  const auto bottomTension = [](const Row& row) { return 5 * curvatureOf(row) - row[7]; };
  expectWithin(0.015, curvatureOf(rows[0]), -0.702e-6);           // curvature after introduction
  expectCurve(0.015, rows, bottomTension, {0}, momentOf, {293});  // decompression
  const auto expectAt400 = [&](auto value, double published) {
    expectCurve(0.015, rows, momentOf, {400}, value, {published});
  };
  // The depth of zero strain in all: the result row's neutral axis is that of the strains since prestress.
  expectAt400([&](const Row& row) { return topEdge(row) / curvatureOf(row); }, 508.1);
  expectAt400([&](const Row& row) { return 30000 * topEdge(row); }, 18.0);
  expectAt400([](const Row& row) { return 200000 * row[8]; }, -108.1);   // top bars
  expectAt400([](const Row& row) { return 200000 * row[9]; }, 45.6);     // bottom bars
  expectAt400([](const Row& row) { return 200000 * row[10]; }, 1216.0);  // tendon
}

TEST(Validation, Case5CrackedElasticSection) {
  model::ObjectTables job = readModel("warner-3-1.inp");
  const section::SectionParameterRow uncracked =
      section::SectionParameters(job).table.rows[section::SectionParameterTable::X];
  expectWithin(0.01, uncracked.yTop, 234);
  expectWithin(0.01, uncracked.I, 2.47e9);

  const std::vector<Row> rows = rowsOf(job, 8e-6);
  const auto expectAt100 = [&](auto value, double published) {
    expectCurve(0.01, rows, momentOf, {100}, value, {published});
  };
  expectAt100(neutralAxisOf, 125);
  expectAt100([](const Row& row) { return 30100 * curvatureOf(row); }, 100e6 / 821e6);
  expectAt100([](const Row& row) { return 30100 * topStrainOf(row); }, 15.3);  // concrete
  expectAt100([](const Row& row) { return 200000 * row[7]; }, 213);            // steel
}

}  // namespace
}  // namespace torvik::tests
