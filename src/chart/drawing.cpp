// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace torvik::chart {

namespace {

/// Furthest that the drawn line may lie from the true one.
constexpr double kLineTolerance = 0.1;

/// Of an outline: its pen against its shortest side, and at the least.
constexpr double kPenOfSide = 0.25;
constexpr double kThinnestPen = 0.4;
/// White round a mark, where the mark before it is not closer than that.
constexpr double kRim = 1;
constexpr double kLeastRimmedDistance = 3;

/// Apart from the red and green of marks.
const std::array<QColor, 8> kAutomaticColours = {
    QColor(0, 0, 255),   QColor(0, 128, 128), QColor(128, 0, 128),  QColor(192, 112, 0),
    QColor(0, 112, 192), QColor(96, 96, 96),  QColor(160, 80, 160), QColor(112, 128, 0)};

/// The polylines of a series inside of a rectangle, with no more corners than can be told apart.
class LinePath {
 public:
  explicit LinePath(const QRectF& clip) : m_clip(clip) {}

  /// The next one of a row of joined points.
  void add(const QPointF& point) {
    if (!m_inRun) {
      m_inRun = true;
      m_runLength = 1;
      m_corner = m_last = point;
      m_hasCone = false;
      return;
    }
    ++m_runLength;
    const QPointF step = point - m_corner;
    const double distance = std::hypot(step.x(), step.y());
    if (m_hasCone && (distance < m_reach || cross(m_right, step) < 0 || cross(step, m_left) < 0)) {
      // The point leaves the cone of lines that pass all points since the corner, or turns back.
      join(m_corner, m_last);
      m_corner = m_last;
      m_hasCone = false;
      --m_runLength;
      add(point);
      return;
    }
    m_last = point;
    if (distance <= kLineTolerance) return;
    const QPointF across = QPointF(-step.y(), step.x()) * (kLineTolerance / distance);
    const QPointF left = step + across;
    const QPointF right = step - across;
    if (!m_hasCone || cross(left, m_left) > 0) m_left = left;
    if (!m_hasCone || cross(m_right, right) > 0) m_right = right;
    m_hasCone = true;
    m_reach = distance;
  }

  void endRun() {
    if (!m_inRun) return;
    m_inRun = false;
    if (m_runLength == 1) {
      if (m_clip.contains(m_last)) m_dots.append(m_last);
    } else {
      join(m_corner, m_last);
    }
  }

  [[nodiscard]] const std::vector<QPolygonF>& lines() const { return m_lines; }
  [[nodiscard]] const QPolygonF& dots() const { return m_dots; }

 private:
  static double cross(const QPointF& a, const QPointF& b) { return a.x() * b.y() - a.y() * b.x(); }

  /// Adds the part of a segment that lies inside.
  void join(const QPointF& from, const QPointF& to) {
    double begin = 0;
    double end = 1;
    const QPointF step = to - from;
    const auto cut = [&](double direction, double room) {
      if (direction == 0) return room >= 0;
      const double place = room / direction;
      if (direction < 0)
        begin = std::max(begin, place);
      else
        end = std::min(end, place);
      return begin <= end;
    };
    if (!cut(-step.x(), from.x() - m_clip.left()) || !cut(step.x(), m_clip.right() - from.x()) ||
        !cut(-step.y(), from.y() - m_clip.top()) || !cut(step.y(), m_clip.bottom() - from.y()))
      return;
    const QPointF first = begin == 0 ? from : from + begin * step;
    const QPointF last = end == 1 ? to : from + end * step;
    if (m_lines.empty() || m_lines.back().back() != first) m_lines.push_back(QPolygonF{first});
    m_lines.back().append(last);
  }

  QRectF m_clip;
  std::vector<QPolygonF> m_lines;
  QPolygonF m_dots;
  bool m_inRun = false;
  std::size_t m_runLength = 0;
  QPointF m_corner;
  QPointF m_last;
  bool m_hasCone = false;
  QPointF m_left;
  QPointF m_right;
  double m_reach = 0;
};

QPolygonF markerShape(MarkerStyle style, double size) {
  const double half = size / 2;
  switch (style) {
    case MarkerStyle::Square:
      return {{-half, -half}, {half, -half}, {half, half}, {-half, half}};
    case MarkerStyle::Diamond:
      return {{0, -half}, {half, 0}, {0, half}, {-half, 0}};
    case MarkerStyle::UpTriangle:
      return {{0, -half}, {half, half}, {-half, half}};
    case MarkerStyle::DownTriangle:
      return {{0, half}, {-half, -half}, {half, -half}};
    case MarkerStyle::Circle:
    case MarkerStyle::None:
      return {};
  }
  throwMissing("marker style " + base::plainText(static_cast<int>(style)));
}

void drawMark(QPainter& painter, const Series& series, const QPointF& place, double size,
              const QColor& colour) {
  painter.setBrush(colour);
  if (series.marker == MarkerStyle::Circle)
    painter.drawEllipse(place, size / 2, size / 2);
  else
    painter.drawPolygon(markerShape(series.marker, size).translated(place));
}

QColor colourOf(const Series& series, std::size_t index) {
  return series.colour.isValid() ? series.colour : kAutomaticColours[index % kAutomaticColours.size()];
}

}  // namespace

QRect SeriesDrawing::clipRect() const {
  int reach = static_cast<int>(kSeriesPenWidth);
  for (const Series& series : m_series)
    if (!series.isLine) reach = std::max(reach, series.size / 2 + 2);
  return mKeyAxis->axisRect()->rect().adjusted(-reach, -reach, reach, reach);
}

void SeriesDrawing::draw(QCPPainter* painter) {
  painter->setAntialiasing(true);
  for (std::size_t i = 0; i < m_series.size(); ++i) {
    if (m_series[i].isLine)
      drawLine(*painter, i);
    else
      drawMarkers(*painter, i);
  }
}

void SeriesDrawing::drawLine(QCPPainter& painter, std::size_t index) const {
  if (m_series[index].pen == PenStyle::None) return;
  const Mapping map = mapping();
  LinePath path(map.area);
  double shortestSide = std::numeric_limits<double>::infinity();
  QPointF last;
  std::size_t next = 0;
  m_matrix.forEachPoint(index, [&](std::size_t row, double x, double y) {
    const QPointF place = map.toPixel(x, y);
    if (row != next)
      path.endRun();
    else if (const double side = QLineF(last, place).length(); row > 0 && side > 0)
      shortestSide = std::min(shortestSide, side);
    next = row + 1;
    last = place;
    path.add(place);
  });
  path.endRun();

  const QColor colour = colourOf(m_series[index], index);
  const double width = m_series[index].isOutline
                           ? std::clamp(shortestSide * kPenOfSide, kThinnestPen, kSeriesPenWidth)
                           : kSeriesPenWidth;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colour, width, toQt(m_series[index].pen), Qt::RoundCap, Qt::RoundJoin));
  for (const QPolygonF& line : path.lines()) painter.drawPolyline(line);
  // A point without a neighbour, as after the first step of a job.
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  for (const QPointF& dot : path.dots()) painter.drawEllipse(dot, kSeriesPenWidth, kSeriesPenWidth);
}

void SeriesDrawing::drawMarkers(QCPPainter& painter, std::size_t index) const {
  const Series& series = m_series[index];
  if (series.marker == MarkerStyle::None) return;
  const Mapping map = mapping();
  const QRectF inside = map.area.adjusted(-0.5, -0.5, 0.5, 0.5);
  const QColor colour = colourOf(series, index);
  painter.setPen(Qt::NoPen);
  std::optional<QPointF> last;
  m_matrix.forEachPoint(index, [&](std::size_t, double x, double y) {
    const QPointF place = map.toPixel(x, y);
    if (!inside.contains(place)) return;
    if (last && (place - *last).manhattanLength() < kLineTolerance) return;
    if (!last || (place - *last).manhattanLength() >= kLeastRimmedDistance)
      drawMark(painter, series, place, series.size + 2 * kRim, Qt::white);
    drawMark(painter, series, place, series.size, colour);
    last = place;
  });
}

}  // namespace torvik::chart
