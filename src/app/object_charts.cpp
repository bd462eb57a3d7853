// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/object_charts.h"

#include "app/job_control.h"
#include "app/main_window.h"
#include "chart/control.h"
#include "materials/stress_strain_curve.h"
#include "section/section_parameters.h"
#include "views/figures.h"
#include "views/stress_strain_chart.h"
#include "widgets/shown_text.h"

namespace torvik::app {

using views::ChartKind;

namespace {

/// The hourglass over a window, while it is drawn.
class WaitCursor {
 public:
  explicit WaitCursor(QWidget& widget) : m_widget(widget) { m_widget.setCursor(Qt::WaitCursor); }
  ~WaitCursor() { m_widget.unsetCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  QWidget& m_widget;
};

template <class Draw>
void showFigure(JobControl& job, ChartKind kind, const Draw& draw) {
  chart::ChartControl& chart = job.openChart(kind).chart();
  const WaitCursor wait(chart);
  draw(chart);
  chart.flushNow();
}

}  // namespace

void showStressStrainCurve(MainWindow& window, JobControl& job, model::ObjectKind kind,
                           const model::ObjectTables& oneRow) {
  const std::string missing = materials::withLawRow(
      oneRow, kind, 0, [](const auto& row) { return materials::missingForCurve(row.Type, row.File); });
  if (!missing.empty()) {
    window.showMessage(widgets::shownText(missing));
    return;
  }
  views::ChartWindow& chart = job.openChart(ChartKind::StressStrain);
  views::drawStressStrainCurve(chart, kind, oneRow, window.readSettings(), window.program().context);
}

void rebuildResultCharts(JobControl& job, const run::Run& run) {
  for (const ChartKind kind : {ChartKind::MomentCurvature, ChartKind::LoadDisplacement})
    job.openChart(kind).drawSteps(run);
}

void showFigures(MainWindow& window, JobControl& job) {
  if (!window.storeGrids()) return;
  model::ObjectTables tables = model::BuildJobTables(window.program().document.tables).tables;
  if (tables.Beams.empty() || tables.Solids.empty()) {
    job.showMessage(std::string(model::kInsufficientObjects));
    return;
  }
  const section::Extent extent = section::beamExtent(tables);
  tables.Beams.front().BeamTop = extent.BeamTop;
  tables.Beams.front().BeamBottom = extent.BeamBottom;
  job.showExtent(extent);
  showFigure(job, ChartKind::FigureBeam,
             [&](chart::ChartControl& chart) { views::drawBeam(chart, tables.Beams.front()); });
  showFigure(job, ChartKind::FigureSection,
             [&](chart::ChartControl& chart) { views::drawSection(chart, tables); });
}

}  // namespace torvik::app
