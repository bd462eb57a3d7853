// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/stress_strain_chart.h"

#include <QFile>
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/number_text.h"
#include "base/paths.h"
#include "chart/control.h"
#include "materials/stress_strain_curve.h"
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

int rowsOf(const materials::CurveRange& range, std::size_t points) {
  // A range against its step has no points; the watch strain has a row all the same.
  const double rows = std::nearbyint((range.To - range.From) / range.Step + 3);
  return static_cast<int>(std::max({rows, static_cast<double>(points), 1.0}));
}

}  // namespace

void drawStressStrainCurve(ChartWindow& window, ObjectKind kind, const model::ObjectTables& oneRow,
                           const base::ProfileFile& settings, materials::StressStrainContext& context) {
  materials::withLawRow(oneRow, kind, 0, [&](const auto& row) {
    chart::ChartControl& chart = window.chart();
    chart.setRowCount(0);
    extendTitle(window, kind, row);
    const materials::CurveRange range = materials::curveRange(kind, settings);
    std::vector<double> strains;
    std::vector<double> stresses;
    for (const materials::CurvePoint& point : materials::stressStrainCurve(row, range, context)) {
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

}  // namespace torvik::views
