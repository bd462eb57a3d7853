// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "base/errors.h"
#include "base/raises51.h"
#include "base/temporary_folder.h"
#include "chart/matrix_text.h"
#include "model/models.h"
#include "views/chart_window.h"
#include "views/fake_shell.h"
#include "views/figures.h"
#include "views/stress_strain_chart.h"

namespace torvik::views {
namespace {

TEST(Figures, section_has_a_series_for_each_object) {
  constexpr double kAreaOf10 = 78.53981633974475;  // of a diameter of 10
  model::ObjectTables job;
  job.Solids = {tests::solidOf(100, 50, 25), tests::solidOf(100, 50, 75)};
  job.Solids[0].Number = 3;
  job.Bars = {tests::barOf(1, kAreaOf10, 40), tests::barOf(2, kAreaOf10, 60), tests::barOf(0, kAreaOf10, 80),
              tests::barOf(2, 126.7, 90)};
  job.Bars[1].Diameter = "JIS G 3112 D13";
  job.Tendons = {tests::tendonOf(kAreaOf10, 70, "Pre-tensioning")};
  job.Tendons[0].Number = 3;
  job.AxialForces = {tests::axialOf(1000, 200)};
  job.AxialForces[0].Number = 2;

  FakeShell shell;
  ChartWindow window(shell, static_cast<int>(ChartKind::FigureSection));
  chart::ChartControl& chart = window.chart();
  drawSection(chart, job);
  EXPECT_EQ(chart.RowCount(), 13);
  EXPECT_EQ(chart.ColumnCount(), 20);
  for (int column = 1; const char* const expected :
                       {"", "",
                        "-50,0;-50,-50;-150,-50;-150,0;50,0;50,-50;-50,-50;-50,0;"
                        "150,0;150,-50;50,-50;50,0;150,0;",
                        "50,-50;50,-100;-50,-100;-50,-50;50,-50;", "0,-40;", "-10,-60;10,-60;", ""}) {
    EXPECT_EQ(seriesOf(chart, column), expected) << column;
    column += 2;
  }
  EXPECT_NEAR(std::stod(chart.Data(2, 15)), 12.7, 0.005);
  EXPECT_EQ(seriesOf(chart, 17), "-30,-70;0,-70;30,-70;");
  EXPECT_EQ(seriesOf(chart, 19), "-50,-200;50,-200;");

  // Drawn anew, nothing of the earlier section stays.
  job = {};
  job.Solids = {tests::solidOf(100, 50, 25)};
  job.Bars = {tests::barOf(6, kAreaOf10, 0)};
  drawSection(chart, job);
  EXPECT_EQ(chart.RowCount(), 7);
  EXPECT_EQ(seriesOf(chart, 5), "50,0;50,-50;-50,-50;-50,0;50,0;");

  job.Bars[0].Area = -1;
  EXPECT_THROW(drawSection(chart, job), base::NumericFault);
}

TEST(Figures, beam_is_drawn_with_a_margin_for_the_scale) {
  model::BeamObject beam = tests::beamOf(4000, 1000, 10);
  beam.BeamTop = -50;
  beam.BeamBottom = 450;
  FakeShell shell;
  ChartWindow window(shell, static_cast<int>(ChartKind::FigureBeam));
  drawBeam(window.chart(), beam);
  EXPECT_EQ(matrixOf(window.chart()),
            "0,50,2000,-450,500,50,2200,100;2000,50,,,,,2200,-500;2000,-450,,,,,,;0,-450,,,,,,;,,,,,,,;");
}

class StressStrain : public ::testing::Test {
 protected:
  void draw(model::ObjectKind kind) {
    drawStressStrainCurve(window, kind, row, shell.readSettings(), context);
  }
  FakeShell shell;
  materials::StressStrainContext context;
  ChartWindow window{shell, static_cast<int>(ChartKind::StressStrain)};
  chart::ChartControl& chart = window.chart();
  model::ObjectTables row;
};

TEST_F(StressStrain, chart_has_curve_and_watch_point) {
  row.Solids = {tests::solidOf(1, 1, 0)};
  row.Solids[0].WatchStrain = "0.002";
  draw(model::ObjectKind::Solid);
  EXPECT_EQ(chart.RowCount(), 1103);
  EXPECT_EQ(seriesOf(chart, 3), "0.2,25.5;");

  // In the same window, with other options; the file gives 150 at 0.001 and nothing beyond its ends.
  const torvik::tests::TemporaryFolder folder;
  const std::string file = (folder / "a-file-with-a-name-of-forty-or-more-characters.ss").string();
  std::ofstream(file) << "0,0\n300,0.002\n";
  for (const auto& [key, value] : {std::pair{"From", "-0.001"}, {"To", "0.003"}, {"Step", "0.001"}})
    shell.settings.ProfileWrite("Option", std::string("StrainBar") + key, value);
  row.Bars = {tests::barOf(1, 100, 0)};
  row.Bars[0].Type = "File";
  row.Bars[0].File = file;
  draw(model::ObjectKind::Bar);
  EXPECT_EQ(seriesOf(chart, 1), "-0.1,0;0,0;0.1,150;0.2,300;0.3,0;");
  EXPECT_EQ(seriesOf(chart, 3), "");
  EXPECT_EQ(window.windowTitle().toStdString(),
            "Chart - Stress-Strain - Solid - JSCE (Design) - Bar - File - " + file);

  // No step, no way from From to To, a watch strain that is none: what stood there is gone.
  row.Tendons = {tests::tendonOf(100, 0, "")};
  shell.settings.ProfileWrite("Option", "StrainTendonStep", "0");
  EXPECT_THROW(draw(model::ObjectKind::Tendon), base::NumericFault);
  EXPECT_EQ(seriesOf(chart, 1), "");
  shell.settings.ProfileWrite("Option", "StrainTendonStep", "-0.001");
  row.Tendons[0].WatchStrain = "0.001";
  draw(model::ObjectKind::Tendon);
  EXPECT_EQ(matrixOf(chart), ",,0.1,200;");
  EXPECT_TRUE(tests::raises51([&] { draw(model::ObjectKind::Beam); }));
}

}  // namespace
}  // namespace torvik::views
