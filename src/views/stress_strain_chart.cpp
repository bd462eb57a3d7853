// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/stress_strain_chart.h"

#include <QFile>
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "analysis/stress_strain_curve.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "chart/control.h"
#include "widgets/shown_text.h"

namespace torvik::views {

namespace {

using model::ObjectKind;

constexpr double kPercent = 100;
constexpr int kWatchColumn = 3;

double stressOf(double strain, const model::SolidObject& row, materials::StressStrainContext& context) {
  return materials::fncSSSolid(strain, row, context);
}
double stressOf(double strain, const model::BarObject& row, materials::StressStrainContext& context) {
  return materials::fncSSBar(strain, row, context);
}
double stressOf(double strain, const model::TendonObject& row, materials::StressStrainContext& context) {
  return materials::fncSSTendon(strain, row, context);
}

template <class Row>
void extendTitle(ChartWindow& window, ObjectKind kind, const Row& row) {
  QString title = window.windowTitle() + " - " +
                  QString::fromStdString(std::string(model::sectionNameOf(kind))) + " - " +
                  widgets::shownText(row.Type);
  if (row.Type == "File") title += " - " + widgets::shownText(base::shortenPath(row.File));
  window.setWindowTitle(title);
}

int rowsOf(const analysis::CurveRange& range, std::size_t points) {
  // A range against its step has no points; the watch strain has a row all the same.
  const double rows = std::nearbyint((range.To - range.From) / range.Step + 3);
  return static_cast<int>(std::max({rows, static_cast<double>(points), 1.0}));
}

}  // namespace

void drawStressStrainCurve(ChartWindow& window, ObjectKind kind, const model::ObjectTables& oneRow,
                           const base::ProfileFile& settings, materials::StressStrainContext& context) {
  analysis::withLawRow(oneRow, kind, 0, [&](const auto& row) {
    chart::ChartControl& chart = window.chart();
    chart.setRowCount(0);
    extendTitle(window, kind, row);
    const analysis::CurveRange range = analysis::curveRange(kind, settings);
    std::vector<double> strains;
    std::vector<double> stresses;
    for (const analysis::CurvePoint& point : analysis::stressStrainCurve(row, range, context)) {
      strains.push_back(kPercent * point.strain);
      stresses.push_back(point.stress);
    }
    chart.setRowCount(rowsOf(range, strains.size()));
    chart.setPair(1, strains, stresses);
    if (row.WatchStrain.empty()) return;
    const double watch = base::numberOf(row.WatchStrain, "watch strain");
    chart.setData(1, kWatchColumn, kPercent * watch);
    chart.setData(1, kWatchColumn + 1, stressOf(watch, row, context));
  });
}

void redraw(ChartWindow& window, ResultTable& solver) {
  solver.flushNow();
  const int rows = solver.rowCount();
  const auto columnOf = [&](int column) {
    std::vector<double> values;
    for (int row = 0; row + 1 < rows; ++row)  // the last row is yet to be filled
      values.push_back(base::toNumber(solver.index(row, column).data().toString().toStdString())
                           .value_or(std::numeric_limits<double>::quiet_NaN()));
    return values;
  };
  enum Column { Load, Displacement, Moment, Curvature };
  const bool isMoment = window.chartKind() == ChartKind::MomentCurvature;
  const std::vector<double> y = columnOf(isMoment ? Moment : Load);
  const std::vector<double> x = columnOf(isMoment ? Curvature : Displacement);
  window.chart().setRowCount(0);
  window.chart().setRowCount(1);
  for (std::size_t i = 0; i < y.size(); ++i) {
    if (isMoment)
      window.appendMomentCurvature(y[i], x[i]);
    else
      window.appendLoadDisplacement(y[i], x[i]);
  }
}

}  // namespace torvik::views
