// SPDX-License-Identifier: GPL-3.0-or-later
#include "section/section.h"

#include <gtest/gtest.h>

#include <array>

#include "base/fault.h"
#include "model/models.h"
#include "section/section_parameters.h"

namespace torvik::section {
namespace {

using tests::barOf;
using tests::solidOf;
using tests::tendonOf;

/// A T-section whose top is 100 below the datum, against sums that are taken in another way: every object
/// once, with its number as a factor, about the datum.
TEST(SectionParameters, TransformedSectionsAgreeWithSumsAboutTheDatum) {
  model::ObjectTables job;
  job.Beams = {tests::beamOf(10000, 3000, 100)};
  job.Solids = {solidOf(1000, 150, 175), solidOf(150, 650, 575)};
  job.Solids[1].Number = 2;
  job.Solids[1].ElasticModulus = 31000;
  job.Bars = {barOf(4, 506.7, 840)};
  job.Tendons = {tendonOf(1000, 750, "Post-tensioning")};
  job.Tendons[0].Number = 2;
  job.Tendons[0].SheathArea = 2827;
  job.Tendons[0].SheathDepth = 745;
  const SectionParameterTable table = SectionParameters(job).table;

  const double E = (150000.0 * 28000 + 195000.0 * 31000) / 345000;  // of every row
  const double n = 200000 / E;
  const double weights[][3] = {{0, 0, 0}, {-1, 0, -1}, {-1, -1, 0}, {n - 1, 0, -1}, {n - 1, n - 1, 0}};
  for (std::size_t i = 0; i < 5; ++i) {
    const auto& [bars, tendons, ducts] = weights[i];
    const double parts[][3] = {{150000, 175, 1000 * 150.0 * 150 * 150 / 12},
                               {195000, 575, 300 * 650.0 * 650 * 650 / 12},
                               {bars * 4 * 506.7, 840, 0},
                               {tendons * 2 * 1000, 750, 0},
                               {ducts * 2 * 2827, 745, 0}};
    double A = 0, S = 0, I = 0;
    for (const auto& [area, depth, own] : parts) {
      A += area;
      S += area * depth;
      I += own + area * depth * depth;
    }
    const double y = S / A;
    I -= A * y * y;
    const std::array wanted = {A, y - 100, 900 - y, I, I / y, I / (900 - y), E, E * I, E * A};
    for (std::size_t k = 0; k < 9; ++k)
      EXPECT_NEAR(table.rows[i].values()[k] / wanted[k], 1, 1e-12) << "gctde"[i] << k;
  }
}

/// Concrete, bars, both kinds of tendons and an axial force, all with strains of their own.
model::ObjectTables everything() {
  model::ObjectTables job = tests::rectangle(10);
  job.Solids[3].InitialStrain = 1e-4;
  job.Bars.push_back(barOf(2, 286.5, 50));
  job.Bars[1].InitialStrain = -2e-4;
  job.Tendons = {tendonOf(140, 400, "Post-tensioning"), tendonOf(95, 350, "Pre-tensioning")};
  job.AxialForces = {tests::axialOf(2e5, 230)};
  return job;
}

/// A section with its laws and room for its rows.
struct Evaluated {
  materials::StressStrainContext laws;
  Section section;
  State rows = section.emptyState();

  explicit Evaluated(const model::ObjectTables& job) : section(job, laws) {}

  Forces at(const Profile& profile, TendonsFollow tendons = TendonsFollow::Section) {
    return section.evaluate(section.initialStrains(), {section.axialForces(), tendons}, profile, laws, rows);
  }
};

/// Runs `with` over all numbers of two states.
void eachPair(const State& a, const State& b, const auto& with) {
  for (const auto table : {&State::solids, &State::bars, &State::tendons})
    for (const auto values : {&RowValues::strain, &RowValues::stress, &RowValues::force})
      for (std::size_t i = 0; i < (a.*table.*values).size(); ++i)
        with((a.*table.*values)[i], (b.*table.*values)[i]);
}

TEST(Section, AProfileMayBeTakenFromAnyDepth) {
  const double T = 0.0012, N = 180;
  Evaluated plane(everything());
  const Forces expected = plane.at(Plane{.TopStrain = T, .NeutralAxis = N});
  for (const double depth : {0.0, 180.0, 250.0, -1e3}) {
    SCOPED_TRACE(depth);
    Evaluated same(everything());
    const Profile profile = AtDepth{.strain = T - T / N * depth, .depth = depth, .curvature = T / N};
    const Forces forces = same.at(profile);
    eachPair(plane.rows, same.rows, [](double a, double b) { EXPECT_NEAR(a, b, 1e-12 * (1 + std::abs(a))); });
    EXPECT_NEAR(forces.CompressionForce, expected.CompressionForce, 1e-6);
    EXPECT_NEAR(forces.TensionForce, expected.TensionForce, 1e-6);
    // The moment of one force is its distance from the other axis.
    EXPECT_NEAR(forces.SectionMoment, expected.SectionMoment + (depth - N) * forces.outOfBalance(), 1e-2);
    EXPECT_EQ(same.section.strain({model::ObjectKind::Bar, 1}, same.section.initialStrains(), profile),
              same.rows.bars.strain[1]);
  }
}

TEST(Section, ACurvatureOf0IsAUniformStrain) {
  Evaluated uniform(everything());
  const Forces expected = uniform.at(Uniform{3e-4});
  Evaluated same(everything());
  // Rows that hold other values change nothing.
  same.at(Plane{.TopStrain = -0.002, .NeutralAxis = 333});
  const Forces forces = same.at(AtDepth{.strain = 3e-4, .depth = 200, .curvature = 0});
  eachPair(uniform.rows, same.rows, [](double a, double b) { EXPECT_EQ(a, b); });
  EXPECT_EQ(forces.CompressionForce, expected.CompressionForce);
  EXPECT_EQ(forces.TensionForce, expected.TensionForce);
  EXPECT_EQ(expected.SectionMoment, 0);
}

TEST(Section, AFaultNamesItsKindItsTableAndItsRow) {
  using Kind = base::NumericFault::Kind;
  using model::ObjectKind;
  const Profile kPlane = Plane{0.001, 200};
  const struct {
    std::string what;
    std::optional<Kind> kind;
    std::optional<RowOf> row;
    void (*spoil)(model::ObjectTables&);
    Profile profile = Plane{0.001, 200};
    TendonsFollow tendons = TendonsFollow::Section;
  } cases[] = {
      {"Type \"?\"", {}, {{ObjectKind::Solid, 4}}, [](auto& job) { job.Solids[4].Type = "\n"; }},
      {"force", Kind::Overflow, {{ObjectKind::Solid, 2}}, [](auto& job) { job.Solids[2].Area = 1e308; }},
      {"stress",
       Kind::Overflow,
       {{ObjectKind::Bar, 1}},
       [](auto& job) {
         job.Bars[1].Type = "Elastic";
         job.Bars[1].InitialStrain = 1e307;
       }},
      {"strain",
       Kind::Overflow,
       {{ObjectKind::Tendon, 0}},
       [](auto& job) { job.Tendons[0].Depth = 1e308; },
       Plane{1, 1e-3}},
      {"Prestressing \"?\"",
       {},
       {{ObjectKind::Tendon, 1}},
       [](auto& job) { job.Tendons[1].Prestressing = "?"; },
       kPlane,
       TendonsFollow::Prestressing},
      {"sum of tension",
       Kind::Overflow,
       {},
       [](auto& job) { job.AxialForces.assign(2, tests::axialOf(1e308, 1)); }},
      {"moment of the section",
       Kind::Overflow,
       {},
       [](auto& job) { job.AxialForces.assign(1, tests::axialOf(1e306, 1e9)); }},
      {"strain profile: the neutral axis depth is 0",
       Kind::DivisionByZero,
       {},
       [](auto&) {},
       Plane{0.001, 0}},
  };
  for (const auto& [what, kind, row, spoil, profile, tendons] : cases) {
    SCOPED_TRACE(what);
    model::ObjectTables job = everything();
    spoil(job);
    base::fpflags::clear();
    try {
      Evaluated(job).at(profile, tendons);
      ADD_FAILURE() << "no fault";
    } catch (const Fault& fault) {
      EXPECT_EQ(fault.subject(), what);
      EXPECT_EQ(fault.kind(), kind);
      EXPECT_EQ(fault.row(), row);
    }
  }
  // Only the introduction of the prestress asks for its kind.
  model::ObjectTables job = everything();
  job.Tendons[1].Prestressing = "?";
  EXPECT_NO_THROW(Evaluated(job).at(kPlane));
}

}  // namespace
}  // namespace torvik::section
