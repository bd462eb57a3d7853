// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/figures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/errors.h"
#include "base/fault.h"

namespace torvik::views {

namespace {

constexpr double kPi = 3.14159265358979;
constexpr int kOutlineColumns = 4;

const QColor kRed(255, 0, 0);
const QColor kGreen(0, 255, 0);
const QColor kBlue(0, 0, 255);

double equivalentDiameter(double Area) {
  return base::finite(std::sqrt(Area * 4 / kPi), "diameter of a mark");
}

// Distance between neighbouring marks of an object.
double distanceOf(const model::BarObject& bar) {
  return 2 * equivalentDiameter(bar.Area);
}
double distanceOf(const model::TendonObject& tendon) {
  return 3 * equivalentDiameter(tendon.Area);
}
double distanceOf(const model::AxialForceObject& force) {
  return force.Depth / 2;
}

/// The points of a series, kept for their memory.
struct Points {
  std::vector<double> x;
  std::vector<double> y;

  void clear() {
    x.clear();
    y.clear();
  }
  void add(double atX, double atY) {
    x.push_back(base::finite(atX, "place in the figure"));
    y.push_back(base::finite(atY, "place in the figure"));
  }
  void writeTo(chart::ChartControl& chart, int firstColumn) const { chart.setPair(firstColumn, x, y); }
};

/// Rows that an object takes, and `least` at the least.
template <class Rows>
int mostRows(const Rows& rows, int perNumber, int least) {
  for (const auto& row : rows) least = std::max(least, row.Number * perNumber + 1);
  return least;
}

class SectionDrawing {
 public:
  explicit SectionDrawing(chart::ChartControl& chart) : m_chart(chart) {}

  void addSolids(const std::vector<model::SolidObject>& solids) {
    for (const model::SolidObject& solid : solids) {
      m_chart.setOutlineSeries(m_column, QColor());
      outline(solid);
      endObject("Solid", solids, solid);
    }
  }

  template <class Row>
  void addMarks(const QString& name, const std::vector<Row>& rows, chart::MarkerStyle style,
                const QColor& colour) {
    for (const Row& row : rows) {
      m_chart.setMarkerSeries(m_column, style, 2 * m_chart.markHeight(), colour);
      try {
        const double distance = distanceOf(row);
        for (int j = 0; j < row.Number; ++j)
          m_points.add((-distance * (row.Number - 1)) / 2 + distance * j, -row.Depth);
      } catch (const base::NumericFault& fault) {
        throw fault.within((name + " " + QString::number(&row - rows.data() + 1)).toStdString());
      }
      endObject(name, rows, row);
    }
  }

 private:
  void outline(const model::SolidObject& solid) {
    if (solid.Number <= 0) return;
    const double half = solid.Width * solid.Number / 2;
    const double top = -(solid.Depth - solid.Height / 2);
    const double bottom = -(solid.Depth + solid.Height / 2);
    for (int j = 0; j < solid.Number; ++j) {
      const double right = solid.Width * (j + 1) - half;
      const double left = solid.Width * j - half;
      m_points.add(right, top);
      m_points.add(right, bottom);
      m_points.add(left, bottom);
      m_points.add(left, top);
    }
    m_points.add(half, top);
  }

  template <class Row>
  void endObject(const QString& name, const std::vector<Row>& rows, const Row& row) {
    m_chart.setSeriesName(m_column, name + " " + QString::number(&row - rows.data() + 1),
                          chart::PointName::Series);
    m_points.writeTo(m_chart, m_column);
    m_points.clear();
    m_column += 2;
  }

  chart::ChartControl& m_chart;
  int m_column = kOutlineColumns + 1;
  Points m_points;
};

}  // namespace

void drawBeam(chart::ChartControl& chart, const model::BeamObject& beam) {
  const double end = beam.Span / 2;
  const double top = -beam.BeamTop;
  const double bottom = -beam.BeamBottom;
  const double margin = (beam.BeamBottom - beam.BeamTop) * 0.1;
  const Points outline{{0, end, end, 0}, {top, top, bottom, bottom}};
  const Points support{{end}, {bottom}};
  const Points load{{beam.FlexuralSpan / 2}, {top}};
  const Points scale{{end * 1.1, end * 1.1}, {top + margin, bottom - margin}};
  int column = 1;
  for (const Points& points : {outline, support, load, scale}) {
    points.writeTo(chart, column);
    column += 2;
  }
}

void drawSection(chart::ChartControl& chart, const model::ObjectTables& job) {
  const std::size_t objects =
      job.Solids.size() + job.Bars.size() + job.Tendons.size() + job.AxialForces.size();
  int rows = mostRows(job.Solids, 4, 1);
  rows = mostRows(job.Bars, 1, rows);
  rows = mostRows(job.Tendons, 1, rows);
  rows = mostRows(job.AxialForces, 1, rows);
  chart.setRowCount(0);  // an earlier drawing goes
  chart.setRowCount(rows);
  chart.setColumnCount(static_cast<int>(2 * objects) + kOutlineColumns);

  SectionDrawing drawing(chart);
  drawing.addSolids(job.Solids);
  drawing.addMarks("Bar", job.Bars, chart::MarkerStyle::Square, kRed);
  drawing.addMarks("Tendon", job.Tendons, chart::MarkerStyle::Circle, kGreen);
  drawing.addMarks("Axial Force", job.AxialForces, chart::MarkerStyle::Diamond, kBlue);
}

}  // namespace torvik::views
