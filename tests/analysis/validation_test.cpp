// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "analysis/job.h"
#include "analysis/section_parameters.h"
#include "base/profile.h"
#include "model/input_file.h"
#include "recording_host.h"

/// Published numbers against the models of examples/validation. Sources, units and how each model was chosen:
/// docs/validation.md, by case number.
namespace torvik::analysis {
namespace {

using Row = std::vector<double>;
constexpr double kNmm = 1e6;  ///< N mm in 1 kN.m

double momentOf(const Row& row) {
  return row[2] / kNmm;
}
double displacementOf(const Row& row) {
  return row[1];
}
double curvatureOf(const Row& row) {
  return row[3];
}
double neutralAxisOf(const Row& row) {
  return row[4];
}

/// Compression strain of the edge at depth 0. It holds where nothing strains the section before loading.
double topStrainOf(const Row& row) {
  return curvatureOf(row) * neutralAxisOf(row);
}

model::ObjectTables readModel(const std::string& name) {
  const std::string folder = TORVIK_SOURCE_DIR "/examples/validation/";
  model::ObjectTables tables;
  model::readTables(base::ProfileFile::read(folder + name), tables);
  EXPECT_FALSE(tables.Solids.empty()) << folder + name;
  for (auto& solid : tables.Solids)
    if (!solid.File.empty()) solid.File = folder + solid.File;
  return model::BuildJobTables(tables).tables;
}

std::vector<Row> run(model::ObjectTables job, double LargeTo, double Precision = JobOptions().Precision) {
  JobOptions options;
  options.LargeTo = LargeTo;
  options.Precision = Precision;
  RecordingHost host;
  RecordingSink sink;
  materials::StressStrainContext context;
  Sink* const sinks[] = {&sink};
  const JobOutcome outcome = runJob(job, options, host.control, host, sinks, context);
  EXPECT_EQ(outcome.end, JobOutcome::End::LoadingEnd) << outcome.message;
  return sink.rows;
}

/// `value` where `key` first comes up to `at`, linear between the two rows; not a number where it never does.
template <class Key, class Value>
double interpolated(const std::vector<Row>& rows, Key key, double at, Value value) {
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const double a = key(rows[i - 1]);
    const double b = key(rows[i]);
    if (a < at && at <= b)
      return value(rows[i - 1]) + (at - a) / (b - a) * (value(rows[i]) - value(rows[i - 1]));
  }
  return std::nan("");
}

/// The difference counts relative to the published number.
void expectWithin(double tolerance, double ours, double published, const std::string& what) {
  EXPECT_LE(std::abs(ours / published - 1), tolerance) << what << ": " << ours << ", published " << published;
}

TEST(Validation, Case1MomentCurvatureOfARectangle) {
  const struct {
    double Curvature;
    double layers;       ///< moment of 100 layers [kN.m]
    double neutralAxis;  ///< by exact integration
  } published[] = {{2e-6, 70.7714, 156.808},  {5e-6, 172.0072, 162.561}, {1e-5, 211.1534, 132.678},
                   {2e-5, 215.8909, 101.887}, {3e-5, 217.0636, 90.776},  {4e-5, 217.4753, 85.220}};
  const struct {
    double Precision;
    double tolerance;
  } runs[] = {{1e-3, 1e-4}, {1e-6, 2e-6}};
  for (const auto& [Precision, tolerance] : runs) {
    const std::vector<Row> rows = run(readModel("rectangle.inp"), 4.3e-5, Precision);
    for (const auto& row : published) {
      const std::string what = "curvature " + base::plainText(row.Curvature);
      // The steps come to the curvature but for the rounding of their sum.
      const double moment = interpolated(rows, curvatureOf, row.Curvature, momentOf);
      expectWithin(tolerance, moment, row.layers, "moment at " + what);
      expectWithin(1e-3, interpolated(rows, curvatureOf, row.Curvature, neutralAxisOf), row.neutralAxis,
                   "neutral axis at " + what);
    }
    // Published for an exact integration, so the layers count here.
    expectWithin(1e-3, interpolated(rows, topStrainOf, 0.0035, curvatureOf), 4.1330e-5,
                 "curvature at 0.0035");
    expectWithin(1e-4, interpolated(rows, topStrainOf, 0.0035, momentOf), 217.52, "moment at 0.0035");
  }
}

TEST(Validation, Case2DeflectionOfABeam) {
  const struct {
    double Load;          ///< [kN]
    double displacement;  ///< [mm]
  } published[] = {{20, 0.7441},  {50, 1.8694},  {100, 3.7721}, {150, 5.7141}, {180, 6.9015},
                   {200, 7.7037}, {205, 7.9057}, {208, 8.052},  {210, 8.205},  {212, 8.421},
                   {214, 8.730},  {215, 8.935},  {216, 9.194},  {217, 9.550}};
  const std::vector<Row> rows = run(readModel("rectangle.inp"), 4.3e-5);
  const auto loadOf = [](const Row& row) { return row[0] / 1000; };
  for (const auto& [Load, displacement] : published) {
    const bool yielded = Load > 205;
    expectWithin(yielded ? 0.01 : 0.002, interpolated(rows, loadOf, Load, displacementOf), displacement,
                 "displacement at " + base::plainText(Load) + " kN");
  }
}

TEST(Validation, Case3TestOfAReinforcedBeam) {
  const struct {
    double displacement;  ///< [mm]
    double Moment;        ///< measured [kN.m]
  } published[] = {{5, 19}, {7.5, 27}, {10, 34}, {11.5, 37}, {15, 37.8}, {20, 38.8}, {30, 40.3}, {42, 41.5}};
  const std::vector<Row> rows = run(readModel("janney-1956.inp"), 9e-5);
  for (const auto& [displacement, Moment] : published)
    expectWithin(0.08, interpolated(rows, displacementOf, displacement, momentOf), Moment,
                 "moment at " + base::plainText(displacement) + " mm");
}

TEST(Validation, Case4CrackedPrestressedSection) {
  const std::vector<Row> rows = run(readModel("gilbert-5-7.inp"), 8e-6);
  ASSERT_FALSE(rows.empty());
  ASSERT_EQ(rows[0].size(), 11u);  // behind the six columns: top and bottom layer, two bars, tendon
  const auto topEdge = [](const Row& row) { return row[6] + 5 * curvatureOf(row); };
  const auto bottomEdge = [](const Row& row) { return row[7] - 5 * curvatureOf(row); };
  const auto atMoment = [&](auto value) { return interpolated(rows, momentOf, 400, value); };
  constexpr double kTolerance = 0.015;

  expectWithin(kTolerance, curvatureOf(rows[0]), -0.702e-6, "curvature after introduction");
  const auto tensionOfBottom = [&](const Row& row) { return -bottomEdge(row); };
  expectWithin(kTolerance, interpolated(rows, tensionOfBottom, 0, momentOf), 293, "moment of decompression");

  // The depth of zero strain in all: the result row's neutral axis is that of the strains since prestress.
  expectWithin(kTolerance, atMoment([&](const Row& row) { return topEdge(row) / curvatureOf(row); }), 508.1,
               "neutral axis");
  expectWithin(kTolerance, atMoment([&](const Row& row) { return 30000 * topEdge(row); }), 18.0,
               "top stress");
  const auto steel = [&](std::size_t column) {
    return atMoment([=](const Row& row) { return 200000 * row[column]; });
  };
  expectWithin(kTolerance, steel(8), -108.1, "top bars");
  expectWithin(kTolerance, steel(9), 45.6, "bottom bars");
  expectWithin(kTolerance, steel(10), 1216.0, "tendon");
}

TEST(Validation, Case5CrackedElasticSection) {
  model::ObjectTables job = readModel("warner-3-1.inp");
  RecordingHost host;
  const SectionParameterTable table = SectionParameters(job, host);
  const SectionParameterRow& uncracked = table.rows[SectionParameterTable::X];
  constexpr double kTolerance = 0.01;
  expectWithin(kTolerance, uncracked.yTop, 234, "centroid");
  expectWithin(kTolerance, uncracked.I, 2.47e9, "second moment of area, uncracked");

  const std::vector<Row> rows = run(job, 8e-6);
  const auto atMoment = [&](auto value) { return interpolated(rows, momentOf, 100, value); };
  expectWithin(kTolerance, atMoment(neutralAxisOf), 125, "neutral axis");
  expectWithin(kTolerance, 100 * kNmm / 30100 / atMoment(curvatureOf), 821e6,
               "second moment of area, cracked");
  expectWithin(kTolerance, atMoment([](const Row& row) { return 30100 * topStrainOf(row); }), 15.3,
               "concrete");
  expectWithin(kTolerance, atMoment([](const Row& row) { return 200000 * row[7]; }), 213, "steel");
}

}  // namespace
}  // namespace torvik::analysis
