// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/control.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "chart/impl.h"

namespace torvik::chart {

namespace {

std::size_t axisIndex(int axis) {
  if (axis != kAxisX && axis != kAxisY) throwMissing("axis " + base::plainText(axis));
  return static_cast<std::size_t>(axis);
}

}  // namespace

ChartControl::ChartControl(QWidget* parent) : QWidget(parent), m_impl(std::make_unique<Impl>(*this)) {
  setObjectName("MSChart1");
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  clear();
}

ChartControl::~ChartControl() = default;

void ChartControl::clear() {
  setColumnCount(0);
  setRowCount(0);
  setUniformAxis(false);
  for (std::size_t i = 0; i < kAxes; ++i) {
    m_impl->layout.axes[i] = {};
    m_impl->setPens(i);
  }
  resetView();
}

int ChartControl::RowCount() const {
  return m_impl->matrix.rows();
}

int ChartControl::ColumnCount() const {
  return m_impl->matrix.columns();
}

void ChartControl::setRowCount(int count) {
  m_impl->matrix.setRows(count);
  m_impl->touch();
}

void ChartControl::setColumnCount(int count) {
  m_impl->matrix.setColumns(count);
  m_impl->series.resize(static_cast<std::size_t>(count / 2));
  m_impl->touch();
}

std::string ChartControl::Data(int row, int column) const {
  const double value = m_impl->matrix.cell(row, column);
  return std::isnan(value) ? std::string() : base::plainText(value);
}

void ChartControl::setData(int row, int column, double value) {
  m_impl->matrix.setCell(row, column, value);
  m_impl->touch();
}

void ChartControl::setPair(int firstColumn, std::span<const double> x, std::span<const double> y) {
  m_impl->seriesAt(firstColumn);
  if (x.size() != y.size()) throwMissing("a point without x or y");
  m_impl->matrix.setColumn(firstColumn, x);
  m_impl->matrix.setColumn(firstColumn + 1, y);
  m_impl->touch();
}

void ChartControl::appendPoint(double x, double y) {
  Matrix& matrix = m_impl->matrix;
  matrix.setCell(matrix.rows(), 1, x);
  matrix.setCell(matrix.rows(), 2, y);
  matrix.setRows(matrix.rows() + 1);
  m_impl->touch();
}

void ChartControl::setAxisTitle(int axis, const QString& title) {
  m_impl->layout.axes[axisIndex(axis)].title = title;
  m_impl->touch();
}

QString ChartControl::axisTitle(int axis) const {
  return m_impl->layout.axes[axisIndex(axis)].title;
}

void ChartControl::setAxisPen(int axis, PenStyle style) {
  m_impl->layout.axes[axisIndex(axis)].pen = style;
  m_impl->setPens(axisIndex(axis));
}

void ChartControl::setGridPen(int axis, PenStyle style) {
  m_impl->layout.axes[axisIndex(axis)].grid = style;
  m_impl->setPens(axisIndex(axis));
}

void ChartControl::setUniformAxis(bool on) {
  m_impl->layout.uniform = on;
  m_impl->touch();
}

bool ChartControl::UniformAxis() const {
  return m_impl->layout.uniform;
}

ValueScale ChartControl::valueScale(int axis) const {
  const ValueScale& scale = m_impl->layout.axes[axisIndex(axis)].scale;
  if (!scale.Auto) return scale;
  const AxisPlan drawn = m_impl->planOfScales().axes[axisIndex(axis)];
  return {true, drawn.shown.lower, drawn.shown.upper, drawn.divisions};
}

bool ChartControl::setValueScale(int axis, const ValueScale& scale) {
  ValueScale taken = valueScale(axis);
  bool all = true;
  taken.Auto = scale.Auto;
  if (!scale.Auto) {
    const double minimum = canBePlaced(scale.Minimum) ? scale.Minimum : taken.Minimum;
    const double maximum = canBePlaced(scale.Maximum) ? scale.Maximum : taken.Maximum;
    all = canBePlaced(scale.Minimum) && canBePlaced(scale.Maximum);
    if (canBeShown({minimum, maximum})) {
      taken.Minimum = minimum;
      taken.Maximum = maximum;
    } else {
      all = false;
    }
    if (scale.MajorDivision >= kLeastDivision && scale.MajorDivision <= kMostDivision)
      taken.MajorDivision = scale.MajorDivision;
    else
      all = false;
  }
  m_impl->layout.axes[axisIndex(axis)].scale = taken;
  m_impl->touch();
  resetView();
  return all;
}

void ChartControl::setLineSeries(int firstColumn, PenStyle style, const QColor& colour) {
  Series& series = m_impl->seriesAt(firstColumn);
  series.isLine = true;
  series.isOutline = false;
  series.pen = style;
  series.colour = colour;
  m_impl->touch();
}

void ChartControl::setOutlineSeries(int firstColumn, const QColor& colour) {
  setLineSeries(firstColumn, PenStyle::Solid, colour);
  m_impl->seriesAt(firstColumn).isOutline = true;
}

void ChartControl::setMarkerSeries(int firstColumn, MarkerStyle style, int size, const QColor& colour) {
  Series& series = m_impl->seriesAt(firstColumn);
  series.isLine = false;
  series.marker = style;
  series.size = size;
  series.colour = colour;
  m_impl->touch();
}

void ChartControl::setSeriesName(int firstColumn, const QString& name, PointName pointName) {
  Series& series = m_impl->seriesAt(firstColumn);
  series.name = name;
  series.pointName = pointName;
}

int ChartControl::markHeight() const {
  const QFontMetricsF metrics(font());
  const double height = metrics.tightBoundingRect(QString::fromUtf8("●")).height();
  return static_cast<int>(std::lround(std::clamp(height, metrics.xHeight(), metrics.ascent())));
}

void ChartControl::flushNow() {
  if (m_impl->isDirty()) m_impl->draw();
}

bool ChartControl::hasPassingView() const {
  return m_impl->hasView();
}

Interval ChartControl::shownInterval(int axis) const {
  return m_impl->currentPlan().axes[axisIndex(axis)].shown;
}

QPointF ChartControl::pixelOf(double x, double y) const {
  m_impl->makeSureDrawn();
  return m_impl->mapping().toPixel(x, y);
}

QString ChartControl::readOut() const {
  return m_impl->readOut();
}

QSize ChartControl::sizeHint() const {
  return {480, 360};
}

QSize ChartControl::minimumSizeHint() const {
  return {120, 80};
}

void ChartControl::resetView() {
  m_impl->setView(std::nullopt);
}

}  // namespace torvik::chart
