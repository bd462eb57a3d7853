// SPDX-License-Identifier: GPL-3.0-or-later
#include <cmath>
#include <vector>

#include "app/job_control.h"
#include "app/object_charts.h"
#include "app/window_fixture.h"
#include "base/number_text.h"
#include "chart/control.h"
#include "chart/matrix_text.h"

namespace torvik::app {
namespace {

class ObjectCharts : public WindowTest {
 protected:
  [[nodiscard]] chart::ChartControl& chart(const QString& title) const {
    return child<views::ChartWindow>(title).chart();
  }
  /// All points of both charts that a solver table brings back.
  [[nodiscard]] std::vector<double> points() const {
    std::vector<double> values;
    for (const char* title : {"Chart - Moment-Curvature", "Chart - Load-Displacement"})
      for (int row = 1; row < chart(title).RowCount(); ++row)
        for (const int column : {1, 2})
          values.push_back(base::toNumber(chart(title).Data(row, column)).value());
    return values;
  }
};

TEST_F(ObjectCharts, TheSolverTableBringsItsChartsBack) {
  onlyWindows({"TableSolver", "ChartMomentCurvature", "ChartLoadDisplacement"});
  openWith(smallBeam());
  trigger("mnuFileJob0");
  const std::vector<double> fed = points();
  const auto rebuild = [this] {
    window->activate(&child<views::ChildWindow>("Table - Solver"));
    trigger("mnuObjectChart");
  };
  child<views::ChildWindow>("Chart - Load-Displacement").closeNow();
  rebuild();
  const std::vector<double> rebuilt = points();
  ASSERT_EQ(rebuilt.size(), fed.size());
  for (std::size_t i = 0; i < fed.size(); ++i)  // the cells hold 15 digits
    EXPECT_NEAR(rebuilt[i], fed[i], 1e-13 * std::abs(fed[i]) + 1e-15);
  EXPECT_EQ(titles().size(), 3);

  // In the middle of a job that does not feed them they show the rows so far, and no more.
  onlyWindows({"TableSolver"});
  int rows = 0;
  atStep(5, [&] {
    rebuild();
    rows = chart("Chart - Moment-Curvature").RowCount();
  });
  trigger("mnuFileJob0");
  EXPECT_GT(rows, 3);
  EXPECT_EQ(chart("Chart - Moment-Curvature").RowCount(), rows);
}

TEST_F(ObjectCharts, FiguresShowTheRowsInUse) {
  model::ObjectTables tables = smallBeam();
  tables.Solids = {tests::solidOf(300, 100, 150), tests::solidOf(300, 100, 900)};
  tables.Solids[1].Use = 0;
  openWith(tables);
  const auto draw = [this] {
    action("mnuObjectFigure").setEnabled(true);  // as a grid does that is active
    trigger("mnuObjectFigure");
  };
  draw();
  draw();  // in the windows that stand open
  EXPECT_EQ(titles(), (QStringList{"Figure - Beam", "Figure - Section"}));
  EXPECT_EQ(chart("Figure - Section").ColumnCount(), 4 + 2 * (1 + 2 + 1 + 1));

  program.document.tables.Solids[0].Use = 0;
  draw();
  EXPECT_EQ(log, QStringList{"box: Insufficient beam/section objects."});
}

TEST_F(ObjectCharts, CurvesOfRowsSayWhatIsMissingAndAskWhatTheyNeed) {
  open();
  JobControl job(*window);
  model::ObjectTables row;
  row.Solids = {tests::solidOf(1, 1, 0)};
  const auto show = [&] { showStressStrainCurve(*window, job, model::ObjectKind::Solid, row); };
  const struct {
    const char* type;
    std::string file;
    const char* box;
  } kRows[] = {{"", "x", "box: No object type in the corrent row."},
               {"File", "", "box: No file name."},
               {"File", path("none.ss"), "box: File not found."}};
  for (const auto& refused : kRows) {
    row.Solids[0].Type = refused.type;
    row.Solids[0].File = refused.file;
    show();
    EXPECT_EQ(log, QStringList{refused.box});
    log.clear();
  }

  row.Solids[0].Type = "Restoration (Confined)";
  row.Solids[0].VolumetricRatio = 0.01;
  dialogs.inputs = QStringList{"c"};  // and Cancel for the yield stress
  EXPECT_THROW(show(), base::NumericFault);
  dialogs.inputs = QStringList{"300"};
  show();
  EXPECT_EQ(log.filter("input:"),
            (QStringList{"input: Section Shape", "input: Yield stress", "input: Yield stress"}));
  views::ChartWindow& shown = *qobject_cast<views::ChartWindow*>(window->children().value(0));
  EXPECT_EQ(shown.chart().RowCount(), 1103);
}

}  // namespace
}  // namespace torvik::app
