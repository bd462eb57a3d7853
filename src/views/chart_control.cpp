// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/chart_control.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QPageSize>
#include <QPdfWriter>
#include <QPicture>
#include <QSvgGenerator>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::views {

namespace {

constexpr double kUnwritten = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kAxes = 2;

const QColor kTitleColour(0, 0, 255);
const QColor kLabelColour(0, 0, 128);
const QColor kLineColour(128, 128, 128);
constexpr double kTextPoints = 12;
constexpr double kReadOutPoints = 10;
constexpr double kSeriesPenWidth = 2;  // pixels, as all that follows
constexpr int kTickLength = 4;
constexpr int kGap = 3;
constexpr int kBorder = 2;
constexpr int kLeastTitlePixels = 9;
constexpr int kLeastPlotWithTitle = 60;
constexpr double kLabelDistance = 10;
constexpr int kMostAutomaticDivisions = 10;

/// Furthest that the drawn line may lie from the true one.
constexpr double kLineTolerance = 0.1;
/// Furthest from the pointer that a point is read out.
constexpr double kReadOutReach = 48;
constexpr double kReadOutMark = 9;

constexpr int kFrame = 30;  // milliseconds
constexpr int kSlowestFrame = 500;
/// A chart takes at most one part in so many of the time.
constexpr double kShareOfTime = 12;

constexpr double kWheelStep = 120;
constexpr double kZoomOfWheelStep = 0.8;
constexpr double kPanOfKey = 0.1;

/// Apart from the red and green of marks.
const std::array<QColor, 8> kAutomaticColours = {
    QColor(0, 0, 255),   QColor(0, 128, 128), QColor(128, 0, 128),  QColor(192, 112, 0),
    QColor(0, 112, 192), QColor(96, 96, 96),  QColor(160, 80, 160), QColor(112, 128, 0)};

[[noreturn]] void throwMissing(const std::string& what) {
  throw base::InternalError(base::kImpossibleCase, "chart: " + what);
}

std::size_t axisIndex(int axis) {
  if (axis != kAxisX && axis != kAxisY) throwMissing("axis " + base::plainText(axis));
  return static_cast<std::size_t>(axis);
}

Qt::PenStyle toQt(PenStyle style) {
  switch (style) {
    case PenStyle::None:
      return Qt::NoPen;
    case PenStyle::Solid:
      return Qt::SolidLine;
    case PenStyle::Dotted:
      return Qt::DotLine;
  }
  throwMissing("pen style " + base::plainText(static_cast<int>(style)));
}

struct Series {
  bool isLine = true;
  PenStyle pen = PenStyle::Solid;
  MarkerStyle marker = MarkerStyle::None;
  int size = 0;
  QColor colour;  ///< invalid: automatic
  QString name;
  PointName pointName = PointName::Series;
};

/// Cells are held as they were given; a column reaches to its last written row.
class Matrix {
 public:
  [[nodiscard]] int rows() const { return m_rows; }
  [[nodiscard]] int columns() const { return static_cast<int>(m_columns.size()); }

  void setRows(int count) {
    if (count < 0) throwMissing("rows " + base::plainText(count));
    m_rows = count;
    for (std::vector<double>& values : m_columns)
      if (values.size() > static_cast<std::size_t>(count)) values.resize(static_cast<std::size_t>(count));
  }

  void setColumns(int count) {
    if (count < 0) throwMissing("columns " + base::plainText(count));
    m_columns.resize(static_cast<std::size_t>(count));
  }

  [[nodiscard]] double cell(int row, int column) const {
    const std::vector<double>& values = at(row, column);
    const auto index = static_cast<std::size_t>(row - 1);
    return index < values.size() ? values[index] : kUnwritten;
  }

  void setCell(int row, int column, double value) {
    at(row, column);
    std::vector<double>& values = m_columns[static_cast<std::size_t>(column - 1)];
    const auto index = static_cast<std::size_t>(row - 1);
    if (index >= values.size()) values.resize(index + 1, kUnwritten);
    values[index] = value;
  }

  void setColumn(int column, std::span<const double> from) {
    if (from.empty()) return;
    at(static_cast<int>(from.size()), column);
    std::vector<double>& values = m_columns[static_cast<std::size_t>(column - 1)];
    if (values.size() < from.size()) values.resize(from.size());
    std::copy(from.begin(), from.end(), values.begin());
  }

  /// Calls use(row from 0, x, y) for every point of a series that was written and can be placed.
  template <class Use>
  void forEachPoint(std::size_t series, const Use& use) const {
    const std::vector<double>& x = m_columns[2 * series];
    const std::vector<double>& y = m_columns[2 * series + 1];
    const std::size_t count = std::min(x.size(), y.size());
    for (std::size_t i = 0; i < count; ++i)
      if (canBePlaced(x[i]) && canBePlaced(y[i])) use(i, x[i], y[i]);
  }

 private:
  const std::vector<double>& at(int row, int column) const {
    if (row < 1 || row > m_rows) throwMissing("row " + base::plainText(row));
    if (column < 1 || column > columns()) throwMissing("column " + base::plainText(column));
    return m_columns[static_cast<std::size_t>(column - 1)];
  }

  int m_rows = 0;
  std::vector<std::vector<double>> m_columns;
};

/// Places in the widget of the numbers on both axes.
struct Mapping {
  QRectF area;
  std::array<Interval, kAxes> shown;

  [[nodiscard]] QPointF toPixel(double x, double y) const {
    return {area.left() + (x - shown[kAxisX].lower) / shown[kAxisX].size() * area.width(),
            area.bottom() - (y - shown[kAxisY].lower) / shown[kAxisY].size() * area.height()};
  }

  /// What another area of the widget shows when every number stays at its place.
  [[nodiscard]] std::array<Interval, kAxes> shownIn(const QRectF& other) const {
    const double x = shown[kAxisX].size() / area.width();
    const double y = shown[kAxisY].size() / area.height();
    return {Interval{shown[kAxisX].lower + (other.left() - area.left()) * x,
                     shown[kAxisX].lower + (other.right() - area.left()) * x},
            Interval{shown[kAxisY].lower + (area.bottom() - other.bottom()) * y,
                     shown[kAxisY].lower + (area.bottom() - other.top()) * y}};
  }
};

/// The polylines of a series inside of a rectangle, with no more corners than can be told apart.
class LinePath {
 public:
  explicit LinePath(const QRectF& clip) : m_clip(clip) {}

  /// The next point of a run of joined points.
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

QColor colourOf(const Series& series, std::size_t index) {
  return series.colour.isValid() ? series.colour : kAutomaticColours[index % kAutomaticColours.size()];
}

/// Draws all series of the matrix, straight from its columns.
class SeriesDrawing : public QCPAbstractPlottable {
 public:
  SeriesDrawing(QCPAxis* x, QCPAxis* y, const Matrix& matrix, const std::vector<Series>& series)
      : QCPAbstractPlottable(x, y), m_matrix(matrix), m_series(series) {}

  double selectTest(const QPointF&, bool, QVariant*) const override { return -1; }
  QCPRange getKeyRange(bool& found, QCP::SignDomain) const override {
    found = false;
    return {};
  }
  QCPRange getValueRange(bool& found, QCP::SignDomain, const QCPRange&) const override {
    found = false;
    return {};
  }

  [[nodiscard]] Mapping mapping() const {
    const QCPRange x = mKeyAxis->range();
    const QCPRange y = mValueAxis->range();
    // The plot counts y from its last row of pixels.
    return {QRectF(mKeyAxis->axisRect()->rect()).translated(0, -1),
            {Interval{x.lower, x.upper}, Interval{y.lower, y.upper}}};
  }

 protected:
  /// Marks and pens on the border are drawn whole.
  [[nodiscard]] QRect clipRect() const override {
    int reach = static_cast<int>(kSeriesPenWidth);
    for (const Series& series : m_series)
      if (!series.isLine) reach = std::max(reach, series.size / 2 + 2);
    return mKeyAxis->axisRect()->rect().adjusted(-reach, -reach, reach, reach);
  }

  void draw(QCPPainter* painter) override {
    painter->setAntialiasing(true);
    for (std::size_t i = 0; i < m_series.size(); ++i) {
      if (m_series[i].isLine)
        drawLine(*painter, i);
      else
        drawMarkers(*painter, i);
    }
  }

  void drawLegendIcon(QCPPainter*, const QRectF&) const override {}

 private:
  void drawLine(QCPPainter& painter, std::size_t index) const {
    if (m_series[index].pen == PenStyle::None) return;
    const Mapping map = mapping();
    LinePath path(map.area);
    std::size_t next = 0;
    m_matrix.forEachPoint(index, [&](std::size_t row, double x, double y) {
      if (row != next) path.endRun();
      next = row + 1;
      path.add(map.toPixel(x, y));
    });
    path.endRun();

    const QColor colour = colourOf(m_series[index], index);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, kSeriesPenWidth, toQt(m_series[index].pen), Qt::RoundCap, Qt::RoundJoin));
    for (const QPolygonF& line : path.lines()) painter.drawPolyline(line);
    // A point without a neighbour, as after the first step of a job.
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const QPointF& dot : path.dots()) painter.drawEllipse(dot, kSeriesPenWidth, kSeriesPenWidth);
  }

  void drawMarkers(QCPPainter& painter, std::size_t index) const {
    const Series& series = m_series[index];
    if (series.marker == MarkerStyle::None) return;
    const Mapping map = mapping();
    const QRectF inside = map.area.adjusted(-0.5, -0.5, 0.5, 0.5);
    const QPolygonF shape = markerShape(series.marker, series.size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colourOf(series, index));
    std::optional<QPointF> last;
    m_matrix.forEachPoint(index, [&](std::size_t, double x, double y) {
      const QPointF place = map.toPixel(x, y);
      if (!inside.contains(place)) return;
      if (last && (place - *last).manhattanLength() < kLineTolerance) return;
      last = place;
      if (series.marker == MarkerStyle::Circle)
        painter.drawEllipse(place, series.size / 2.0, series.size / 2.0);
      else
        painter.drawPolygon(shape.translated(place));
    });
  }

  const Matrix& m_matrix;
  const std::vector<Series>& m_series;
};

/// Everything of an axis that a picture of a certain size shows.
struct AxisPlan {
  Interval shown;
  int divisions = 1;
  QVector<double> ticks;
  QVector<QString> labels;
  QString title;
  int titlePixels = 0;
  bool operator==(const AxisPlan&) const = default;
};

struct Plan {
  std::array<AxisPlan, kAxes> axes;
  QMargins margins;
  bool operator==(const Plan&) const = default;
};

struct Axis {
  QString title;
  PenStyle pen = PenStyle::Solid;
  PenStyle grid = PenStyle::Solid;
  ValueScale scale;
};

/// At every how many divisions a label can stand; more than there are where only the first one can.
/// @param fit  whether labels so many divisions apart leave each other room
int labelInterval(int divisions, const std::function<bool(int)>& fit) {
  int least = 1;
  while (least <= divisions && !fit(least)) ++least;
  // One that also labels the far end, where that costs little.
  for (int interval = least; interval <= 2 * least && interval <= divisions; ++interval)
    if (divisions % interval == 0) return interval;
  return least;
}

}  // namespace

class ChartControl::Impl {
 public:
  explicit Impl(ChartControl& owner) : m_owner(owner), m_plot(new QCustomPlot(&owner)) {
    m_plot->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_plot->setFocusPolicy(Qt::NoFocus);
    m_plot->setBackground(QBrush(Qt::white));
    m_plot->plotLayout()->setRowSpacing(0);
    m_plot->axisRect()->setAutoMargins(QCP::msNone);
    m_plot->axisRect()->setMinimumMargins(QMargins());
    m_drawing = new SeriesDrawing(m_plot->xAxis, m_plot->yAxis, matrix, series);
    m_drawing->layer()->setMode(QCPLayer::lmBuffered);
    // Below the series, so that a line along an axis shows.
    m_plot->moveLayer(m_plot->layer("axes"), m_plot->layer("grid"));

    for (QCPAxis* axis : {m_plot->xAxis, m_plot->yAxis}) {
      axis->setTicker(QSharedPointer<QCPAxisTickerText>::create());
      axis->setSubTicks(false);
      axis->setTickLength(0, kTickLength);
      axis->setTickLabelPadding(kGap);
      axis->setLabelPadding(kGap);
      axis->setPadding(0);
      axis->setLabelColor(kTitleColour);
      axis->setTickLabelColor(kLabelColour);
      axis->grid()->setZeroLinePen(Qt::NoPen);
      axis->grid()->setAntialiased(false);
      axis->setAntialiased(false);
    }

    m_mark = new QCPItemEllipse(m_plot);
    m_mark->setPen(QPen(kLabelColour, 2));
    m_label = new QCPItemText(m_plot);
    m_label->setColor(kLabelColour);
    m_label->setPen(QPen(kLineColour));
    m_label->setBrush(QBrush(Qt::white));
    m_label->setPadding(QMargins(4, 2, 4, 2));
    m_label->setTextAlignment(Qt::AlignLeft);
    m_label->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
    for (QCPItemPosition* position : {m_mark->topLeft, m_mark->bottomRight, m_label->position})
      position->setType(QCPItemPosition::ptAbsolute);
    for (QCPAbstractItem* item : std::initializer_list<QCPAbstractItem*>{m_mark, m_label}) {
      item->setLayer("overlay");
      item->setClipToAxisRect(false);
      item->setVisible(false);
    }

    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &owner, [this] { drawWhereSeen(); });
    QObject::connect(m_plot, &QCustomPlot::beforeReplot, &owner, [this] { apply(currentPlan()); });
    QObject::connect(m_plot, &QCustomPlot::afterReplot, &owner, [this] { m_dirty = m_lookDirty = false; });
    m_plot->installEventFilter(&owner);
    takeFont();
  }

  /// Something changed that the picture does not show yet.
  void touch() {
    m_dirty = true;
    if (!m_timer.isActive() && m_owner.isVisible()) m_timer.start(m_frame);
  }

  void touchLook() {
    m_lookDirty = true;
    touch();
  }

  [[nodiscard]] bool isDirty() const { return m_dirty; }

  void draw() {
    m_timer.stop();
    QElapsedTimer clock;
    clock.start();
    if (m_plot->size() != m_owner.size()) resize(m_owner.size());
    if (const double ratio = m_owner.devicePixelRatioF(); ratio != m_plot->bufferDevicePixelRatio())
      m_plot->setBufferDevicePixelRatio(ratio);
    if (m_lookDirty || !m_applied || *m_applied != currentPlan())
      m_plot->replot(QCustomPlot::rpQueuedRefresh);
    else
      m_drawing->layer()->replot();
    m_dirty = false;
    if (m_pointer) showReadOut();
    const double cost = static_cast<double>(clock.nsecsElapsed()) * 1e-6;
    m_frame = static_cast<int>(std::clamp(kShareOfTime * cost, double{kFrame}, double{kSlowestFrame}));
  }

  void resize(const QSize& size) {
    m_dirty = m_lookDirty = true;
    m_plot->resize(size);  // draws, but not while it is hidden
    m_plot->setViewport(QRect(QPoint(), size));
    if (m_dirty) touch();
  }

  void takeFont() {
    // Sizes in pixels, so that a picture looks the same on every device.
    const double pixelsPerPoint = m_owner.logicalDpiY() / 72.0;
    m_font = m_owner.font();
    m_font.setPixelSize(static_cast<int>(std::lround(kTextPoints * pixelsPerPoint)));
    QFont readOutFont = m_font;
    readOutFont.setPixelSize(static_cast<int>(std::lround(kReadOutPoints * pixelsPerPoint)));
    m_label->setFont(readOutFont);
    m_plot->xAxis->setTickLabelFont(m_font);
    m_plot->yAxis->setTickLabelFont(m_font);
    touchLook();
  }

  void setPens(std::size_t index) {
    QCPAxis* axis = index == kAxisX ? m_plot->xAxis : m_plot->yAxis;
    const QPen pen(kLineColour, 1, toQt(axes[index].pen));
    axis->setBasePen(pen);
    axis->setTickPen(pen);
    axis->grid()->setPen(QPen(kLineColour, 1, toQt(axes[index].grid)));
    touchLook();
  }

  Series& seriesAt(int firstColumn) {
    if (firstColumn < 1 || firstColumn % 2 == 0 || firstColumn >= matrix.columns())
      throwMissing("series of column " + base::plainText(firstColumn));
    return series[static_cast<std::size_t>(firstColumn / 2)];
  }

  [[nodiscard]] Plan currentPlan() const { return plan(m_plot->viewport().size(), m_view); }
  /// Without the passing view.
  [[nodiscard]] Plan planOfScales() const { return plan(m_owner.size(), std::nullopt); }
  [[nodiscard]] Mapping mapping() const { return m_drawing->mapping(); }

  /// The picture on the screen, so that pixels can be turned into numbers.
  void makeSureDrawn() {
    if (!m_applied || m_dirty) draw();
  }

  /// A passing view that can not be shown is not taken.
  void setView(const std::optional<Mapping>& wanted) {
    if (wanted && !(canBeShown(wanted->shown[kAxisX]) && canBeShown(wanted->shown[kAxisY]))) return;
    const bool changed = m_view.has_value() != wanted.has_value();
    m_view.reset();
    if (wanted) m_view = View{*wanted, m_plot->viewport().size()};
    touch();
    if (changed) emit m_owner.passingViewChanged(m_view.has_value());
  }

  [[nodiscard]] bool hasView() const { return m_view.has_value(); }

  /// Makes what is shown `factor` times as wide round a pixel.
  void zoom(const QPointF& place, double factor) {
    makeSureDrawn();
    Mapping map = mapping();
    const bool beside = place.x() < map.area.left();
    const bool below = place.y() > map.area.bottom();
    const auto scale = [factor](Interval& interval, double part) {
      const double centre = interval.lower + part * interval.size();
      interval = {centre - (centre - interval.lower) * factor, centre + (interval.upper - centre) * factor};
    };
    if (uniform || !beside || below)
      scale(map.shown[kAxisX], std::clamp((place.x() - map.area.left()) / map.area.width(), 0.0, 1.0));
    if (uniform || !below || beside)
      scale(map.shown[kAxisY], std::clamp((map.area.bottom() - place.y()) / map.area.height(), 0.0, 1.0));
    setView(map);
  }

  /// Shows the numbers `step` pixels away from where `from` has them.
  void pan(Mapping from, const QPointF& step) {
    const double byX = -step.x() / from.area.width() * from.shown[kAxisX].size();
    const double byY = step.y() / from.area.height() * from.shown[kAxisY].size();
    from.shown[kAxisX] = {from.shown[kAxisX].lower + byX, from.shown[kAxisX].upper + byX};
    from.shown[kAxisY] = {from.shown[kAxisY].lower + byY, from.shown[kAxisY].upper + byY};
    setView(from);
  }

  void setPointer(const std::optional<QPointF>& place) {
    if (!place && !m_pointer) return;
    m_pointer = place;
    if (!m_applied) draw();
    showReadOut();
  }

  [[nodiscard]] QString readOut() const { return m_label->visible() ? m_label->text() : QString(); }

  /// Draws a picture of another size with a painter of its own, then takes up the one on the screen again.
  void drawInto(QPicture& picture, const QSize& size) {
    const bool hasReadOut = m_label->visible();
    m_label->setVisible(false);
    m_mark->setVisible(false);
    const std::optional<Plan> before = m_applied;
    apply(plan(size, m_view));
    QCPPainter painter;
    painter.begin(&picture);
    painter.setMode(QCPPainter::pmVectorized);
    m_plot->toPainter(&painter, size.width(), size.height());
    painter.end();
    m_applied = before;
    if (before) {
      apply(*before);
      for (const auto phase :
           {QCPLayoutElement::upPreparation, QCPLayoutElement::upMargins, QCPLayoutElement::upLayout})
        m_plot->plotLayout()->update(phase);
    }
    m_label->setVisible(hasReadOut);
    m_mark->setVisible(hasReadOut);
  }

  Matrix matrix;
  std::vector<Series> series;
  std::array<Axis, kAxes> axes;
  bool uniform = false;

  // A press of the left button, and what was shown then.
  std::optional<QPointF> pressed;
  Mapping shownAtPress;
  bool panning = false;

 private:
  /// A passing view, taken in a picture of a size.
  struct View {
    Mapping map;
    QSize size;
  };

  /// Draws unless the window is hidden, minimised or covered; what it covers up asks for it when it goes.
  void drawWhereSeen() {
    if (m_dirty && m_plot->isVisible() && !m_plot->visibleRegion().isEmpty()) draw();
  }

  void showReadOut() {
    struct Nearest {
      double distance = kReadOutReach;
      std::size_t series = 0;
      std::size_t row = 0;
      double x = 0;
      double y = 0;
    };
    std::optional<Nearest> nearest;
    const Mapping map = mapping();
    if (m_pointer && !panning) {
      for (std::size_t i = 0; i < series.size(); ++i) {
        if (series[i].isLine ? series[i].pen == PenStyle::None : series[i].marker == MarkerStyle::None)
          continue;
        matrix.forEachPoint(i, [&](std::size_t row, double x, double y) {
          const QPointF place = map.toPixel(x, y);
          const double distance = std::hypot(place.x() - m_pointer->x(), place.y() - m_pointer->y());
          if (distance < (nearest ? nearest->distance : kReadOutReach) &&
              map.area.adjusted(-1, -1, 1, 1).contains(place))
            nearest = Nearest{distance, i, row, x, y};
        });
      }
    }
    m_label->setVisible(nearest.has_value());
    m_mark->setVisible(nearest.has_value());
    if (nearest) {
      const Series& named = series[nearest->series];
      QString text = named.name;
      if (!text.isEmpty() && named.pointName == PointName::SeriesAndRow)
        text += " " + QString::number(nearest->row + 1);
      if (!text.isEmpty()) text += "\n";
      text += QString::fromStdString("x " + readOutText(nearest->x) + "\ny " + readOutText(nearest->y));
      m_label->setText(text);
      const QPointF place = map.toPixel(nearest->x, nearest->y);
      m_mark->topLeft->setPixelPosition(place - QPointF(kReadOutMark / 2, kReadOutMark / 2));
      m_mark->bottomRight->setPixelPosition(place + QPointF(kReadOutMark / 2, kReadOutMark / 2));
      placeLabel(text);
    }
    m_plot->layer("overlay")->replot();
  }

  /// Beside the pointer, on the side where there is room.
  void placeLabel(const QString& text) {
    constexpr double kAside = 14;
    const QMargins padding = m_label->padding();
    const QRectF textSize = QFontMetricsF(m_label->font()).boundingRect(QRectF(), Qt::AlignLeft, text);
    const QSizeF size(textSize.width() + padding.left() + padding.right(),
                      textSize.height() + padding.top() + padding.bottom());
    QPointF corner = *m_pointer + QPointF(kAside, kAside);
    if (corner.x() + size.width() > m_owner.width()) corner.setX(m_pointer->x() - kAside - size.width());
    if (corner.y() + size.height() > m_owner.height()) corner.setY(m_pointer->y() - kAside - size.height());
    m_label->position->setPixelPosition({std::max(corner.x(), 0.0), std::max(corner.y(), 0.0)});
  }

  [[nodiscard]] std::array<Interval, kAxes> dataBounds() const {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    std::array<Interval, kAxes> bounds;
    bounds.fill({kInfinity, -kInfinity});
    for (std::size_t i = 0; i < series.size(); ++i) {
      matrix.forEachPoint(i, [&](std::size_t, double x, double y) {
        bounds[kAxisX] = {std::min(bounds[kAxisX].lower, x), std::max(bounds[kAxisX].upper, x)};
        bounds[kAxisY] = {std::min(bounds[kAxisY].lower, y), std::max(bounds[kAxisY].upper, y)};
      });
    }
    if (bounds[kAxisX].lower > bounds[kAxisX].upper) bounds.fill({0, 1});
    return {widened(bounds[kAxisX]), widened(bounds[kAxisY])};
  }

  /// Lays out a picture of a size. The automatic scale takes as many divisions as its labels leave room for.
  [[nodiscard]] Plan plan(const QSize& size, const std::optional<View>& view) const {
    const QFontMetricsF metrics(m_font);
    const double line = std::ceil(metrics.height());
    const double labelRoom = kTickLength + kGap + line + kBorder;
    const double titleRoom = kGap + line;
    const std::array<Interval, kAxes> data = dataBounds();

    const double height = size.height();
    const double width = size.width();
    double top = std::ceil(line / 2) + kBorder;
    double bottom = labelRoom;
    const bool titleBelow =
        !axes[kAxisX].title.isEmpty() && height - top - bottom - titleRoom >= kLeastPlotWithTitle;
    if (titleBelow) bottom += titleRoom;
    const bool titleBeside = !axes[kAxisY].title.isEmpty() && width - 2 * labelRoom >= kLeastPlotWithTitle;
    const double leftWithoutLabels = kTickLength + kGap + kBorder + (titleBeside ? titleRoom : 0);

    Plan result;
    std::array<AxisPlan, kAxes>& of = result.axes;
    double left = leftWithoutLabels + line;
    double right = kBorder;
    // Labels need margins and margins leave room for labels: two or three rounds settle it.
    constexpr int kRounds = 4;
    for (int round = 0; round < kRounds; ++round) {
      const QSizeF room(std::max(width - left - right, 1.0), std::max(height - top - bottom, 1.0));
      if (view) {
        // In the size in which it was taken, numbers stay where they are while margins change.
        planView(of, view->size == size ? view->map.shownIn(placed(left, top, room)) : view->map.shown, room,
                 metrics);
      } else if (uniform) {
        planToScale(of, data, room, metrics);
      } else {
        of[kAxisX] = planAxis(kAxisX, data[kAxisX], room.width(), metrics);
        of[kAxisY] = planAxis(kAxisY, data[kAxisY], room.height(), metrics);
      }
      double widest = 0;
      for (const QString& label : of[kAxisY].labels)
        widest = std::max(widest, metrics.horizontalAdvance(label));
      double needLeft = leftWithoutLabels + widest;
      double needRight = kBorder;
      for (qsizetype i = 0; i < of[kAxisX].labels.size(); ++i) {
        const double half = metrics.horizontalAdvance(of[kAxisX].labels[i]) / 2;
        const double part = (of[kAxisX].ticks[i] - of[kAxisX].shown.lower) / of[kAxisX].shown.size();
        needLeft = std::max(needLeft, half - part * room.width() + kBorder);
        needRight = std::max(needRight, half - (1 - part) * room.width() + kBorder);
      }
      if (round > 0 && needLeft <= left && needRight <= right) break;
      left = std::ceil(round == 0 ? needLeft : std::max(left, needLeft));
      right = std::ceil(std::max(right, needRight));
    }

    if (uniform && !view) {
      // What the scales leave over stands round the picture in equal parts.
      const double x = of[kAxisX].shown.size();
      const double y = of[kAxisY].shown.size();
      const double unit = std::min((width - left - right) / x, (height - top - bottom) / y);
      const double spareX = std::max(width - left - right - unit * x, 0.0) / 2;
      const double spareY = std::max(height - top - bottom - unit * y, 0.0) / 2;
      left += spareX;
      right += spareX;
      top += spareY;
      bottom += spareY;
    }
    result.margins = QMargins(static_cast<int>(std::ceil(left)), static_cast<int>(std::ceil(top)),
                              static_cast<int>(std::ceil(right)), static_cast<int>(std::ceil(bottom)));
    const double middleX = left + (width - left - right) / 2;
    const double middleY = top + (height - top - bottom) / 2;
    if (titleBelow) planTitle(of[kAxisX], axes[kAxisX].title, 2 * std::min(middleX, width - middleX));
    if (titleBeside) planTitle(of[kAxisY], axes[kAxisY].title, 2 * std::min(middleY, height - middleY));
    return result;
  }

  /// The area of a plot with these margins, as `Mapping` has it.
  static QRectF placed(double left, double top, const QSizeF& room) { return {QPointF(left, top - 1), room}; }

  /// A title that is too long gets a smaller font, then an ellipsis.
  void planTitle(AxisPlan& axis, const QString& title, double room) const {
    QFont font = m_font;
    const double available = room - 2 * kBorder;
    while (font.pixelSize() > kLeastTitlePixels && QFontMetricsF(font).horizontalAdvance(title) > available)
      font.setPixelSize(font.pixelSize() - 1);
    axis.title = QFontMetricsF(font).elidedText(title, Qt::ElideRight, available);
    axis.titlePixels = font.pixelSize();
  }

  /// Room that a label takes along its axis.
  static double extentOf(std::size_t index, const QString& label, const QFontMetricsF& metrics) {
    if (label.isEmpty()) return 0;
    return index == kAxisX ? metrics.horizontalAdvance(label) + kLabelDistance : metrics.height();
  }

  static QString labelOf(double value, double division, const Interval& shown) {
    return QString::fromStdString(
        axisText(value, division, std::max(std::abs(shown.lower), std::abs(shown.upper))));
  }

  static bool labelsFit(std::size_t index, const SteppedLimits& limits, double room,
                        const QFontMetricsF& metrics) {
    const double division = room / limits.divisions();
    for (double k = limits.first; k <= limits.last; ++k)
      if (extentOf(index, labelOf(limits.step.times(k), limits.step.value(), limits.interval()), metrics) >
          division)
        return false;
    return true;
  }

  /// Divisions on whole steps, from number `first` to number `last`.
  static AxisPlan stepped(std::size_t index, const DecimalStep& step, double first, double last,
                          const Interval& shown, double room, const QFontMetricsF& metrics) {
    AxisPlan axis;
    axis.shown = shown;
    axis.divisions = std::max(static_cast<int>(last - first), 1);
    for (double k = first; k <= last; ++k) {
      axis.ticks.append(step.times(k));
      axis.labels.append(labelOf(axis.ticks.back(), step.value(), shown));
    }
    thinLabels(axis, index, room / shown.size() * step.value(), metrics);
    return axis;
  }

  /// Divisions of a scale with given limits.
  static AxisPlan divided(std::size_t index, const ValueScale& scale, double room,
                          const QFontMetricsF& metrics) {
    AxisPlan axis;
    axis.shown = {scale.Minimum, scale.Maximum};
    axis.divisions = scale.MajorDivision;
    const double division = axis.shown.size() / axis.divisions;
    for (int i = 0; i <= axis.divisions; ++i) {
      axis.ticks.append(i == axis.divisions ? scale.Maximum : scale.Minimum + division * i);
      axis.labels.append(labelOf(axis.ticks.back(), division, axis.shown));
    }
    thinLabels(axis, index, room / axis.divisions, metrics);
    return axis;
  }

  static void thinLabels(AxisPlan& axis, std::size_t index, double division, const QFontMetricsF& metrics) {
    const auto count = axis.labels.size();
    const int interval = labelInterval(static_cast<int>(count) - 1, [&](int every) {
      for (qsizetype i = every; i < count; i += every)
        if ((extentOf(index, axis.labels[i - every], metrics) + extentOf(index, axis.labels[i], metrics)) /
                2 >
            division * every)
          return false;
      return true;
    });
    for (qsizetype i = 0; i < count; ++i)
      if (i % interval != 0) axis.labels[i].clear();
  }

  [[nodiscard]] static int mostDivisions(std::size_t index, double room, const QFontMetricsF& metrics) {
    // Vertically two lines a division look right; horizontally the labels themselves decide.
    const double least = index == kAxisY ? 2 * metrics.height() : metrics.height() + kLabelDistance;
    return std::clamp(static_cast<int>(room / least), 1, kMostAutomaticDivisions);
  }

  static AxisPlan planInterval(std::size_t index, const Interval& shown, double room,
                               const QFontMetricsF& metrics) {
    const SteppedLimits limits =
        automaticLimits(shown, mostDivisions(index, room, metrics), [&](const SteppedLimits& tried) {
          return labelsFit(index, tried, room / shown.size() * tried.interval().size(), metrics);
        });
    return stepped(index, limits.step, limits.step.stepAbove(shown.lower), limits.step.stepBelow(shown.upper),
                   shown, room, metrics);
  }

  /// Intervals of any limits; to scale the one that has room to spare gets more of its numbers.
  void planView(std::array<AxisPlan, kAxes>& of, std::array<Interval, kAxes> shown, const QSizeF& room,
                const QFontMetricsF& metrics) const {
    const std::array<double, kAxes> pixels = {room.width(), room.height()};
    const double unit =
        std::min(pixels[kAxisX] / shown[kAxisX].size(), pixels[kAxisY] / shown[kAxisY].size());
    for (std::size_t i = 0; i < kAxes; ++i) {
      if (uniform) {
        const double spare = pixels[i] / unit - shown[i].size();
        shown[i] = {shown[i].lower - spare / 2, shown[i].upper + spare / 2};
      }
      of[i] = planInterval(i, shown[i], pixels[i], metrics);
    }
  }

  [[nodiscard]] AxisPlan planAxis(std::size_t index, const Interval& data, double room,
                                  const QFontMetricsF& metrics) const {
    if (!axes[index].scale.Auto) return divided(index, axes[index].scale, room, metrics);
    const SteppedLimits limits =
        automaticLimits(data, mostDivisions(index, room, metrics),
                        [&](const SteppedLimits& tried) { return labelsFit(index, tried, room, metrics); });
    return stepped(index, limits.step, limits.first, limits.last, limits.interval(), room, metrics);
  }

  /// Both axes with one length for one unit. Automatic limits have one step, and take up
  /// room to spare in whole steps on both sides.
  void planToScale(std::array<AxisPlan, kAxes>& of, const std::array<Interval, kAxes>& data,
                   const QSizeF& room, const QFontMetricsF& metrics) const {
    const std::array<double, kAxes> pixels = {room.width(), room.height()};
    std::array<Interval, kAxes> shown;
    double unit = 0;  // pixels of one unit
    std::array<SteppedLimits, kAxes> limits;
    const double longest =
        std::max(data[kAxisX].size() / pixels[kAxisX], data[kAxisY].size() / pixels[kAxisY]);
    DecimalStep step = DecimalStep::notAbove(longest * metrics.height());
    const auto tooMany = [&](std::size_t i) { return limits[i].divisions() > kMostAutomaticDivisions; };
    while (true) {
      bool coarsest = true;
      for (std::size_t i = 0; i < kAxes; ++i) {
        limits[i] = {step, step.stepBelow(data[i].lower), step.stepAbove(data[i].upper)};
        if (limits[i].divisions() > 2) coarsest = false;
        const ValueScale& scale = axes[i].scale;
        shown[i] = scale.Auto ? limits[i].interval() : Interval{scale.Minimum, scale.Maximum};
      }
      unit = std::min(pixels[kAxisX] / shown[kAxisX].size(), pixels[kAxisY] / shown[kAxisY].size());
      bool fit = true;
      for (std::size_t i = 0; i < kAxes; ++i)
        if (axes[i].scale.Auto && (tooMany(i) || !labelsFit(i, limits[i], unit * shown[i].size(), metrics)))
          fit = false;
      if (fit || coarsest) break;
      step = step.next();
    }
    for (std::size_t i = 0; i < kAxes; ++i) {
      if (!axes[i].scale.Auto) {
        of[i] = divided(i, axes[i].scale, unit * shown[i].size(), metrics);
        continue;
      }
      SteppedLimits& axis = limits[i];
      while ((axis.interval().size() + 2 * step.value()) * unit <= pixels[i] &&
             axis.divisions() + 2 <= kMostDivision) {
        --axis.first;
        ++axis.last;
      }
      of[i] =
          stepped(i, step, axis.first, axis.last, axis.interval(), unit * axis.interval().size(), metrics);
    }
  }

  void apply(const Plan& plan) {
    m_plot->axisRect()->setMargins(plan.margins);
    for (std::size_t i = 0; i < kAxes; ++i) {
      QCPAxis* axis = i == kAxisX ? m_plot->xAxis : m_plot->yAxis;
      const AxisPlan& from = plan.axes[i];
      axis->setRange(from.shown.lower, from.shown.upper);
      qSharedPointerCast<QCPAxisTickerText>(axis->ticker())->setTicks(from.ticks, from.labels);
      QFont font = m_font;
      if (from.titlePixels > 0) font.setPixelSize(from.titlePixels);
      axis->setLabelFont(font);
      axis->setLabel(from.title);
    }
    m_applied = plan;
  }

  ChartControl& m_owner;
  QCustomPlot* m_plot;
  SeriesDrawing* m_drawing;
  QCPItemEllipse* m_mark;
  QCPItemText* m_label;
  QFont m_font;
  QTimer m_timer;
  int m_frame = kFrame;
  bool m_dirty = true;
  bool m_lookDirty = true;
  std::optional<Plan> m_applied;
  std::optional<View> m_view;
  std::optional<QPointF> m_pointer;
};

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
    m_impl->axes[i] = {};
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
  m_impl->axes[axisIndex(axis)].title = title;
  m_impl->touch();
}

QString ChartControl::axisTitle(int axis) const {
  return m_impl->axes[axisIndex(axis)].title;
}

void ChartControl::setAxisPen(int axis, PenStyle style) {
  m_impl->axes[axisIndex(axis)].pen = style;
  m_impl->setPens(axisIndex(axis));
}

void ChartControl::setGridPen(int axis, PenStyle style) {
  m_impl->axes[axisIndex(axis)].grid = style;
  m_impl->setPens(axisIndex(axis));
}

void ChartControl::setUniformAxis(bool on) {
  m_impl->uniform = on;
  m_impl->touch();
}

bool ChartControl::UniformAxis() const {
  return m_impl->uniform;
}

ValueScale ChartControl::valueScale(int axis) const {
  const ValueScale& scale = m_impl->axes[axisIndex(axis)].scale;
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
  m_impl->axes[axisIndex(axis)].scale = taken;
  m_impl->touch();
  resetView();
  return all;
}

void ChartControl::setLineSeries(int firstColumn, PenStyle style, const QColor& colour) {
  Series& series = m_impl->seriesAt(firstColumn);
  series.isLine = true;
  series.pen = style;
  series.colour = colour;
  m_impl->touch();
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

void ChartControl::paint(QPainter& painter, const QRectF& target) {
  const double scaleX = painter.device()->logicalDpiX() / static_cast<double>(logicalDpiX());
  const double scaleY = painter.device()->logicalDpiY() / static_cast<double>(logicalDpiY());
  const QSize size = QSizeF(target.width() / scaleX, target.height() / scaleY).toSize();
  if (size.isEmpty()) return;
  QPicture picture;
  m_impl->drawInto(picture, size);
  painter.save();
  painter.setClipRect(target, Qt::IntersectClip);
  painter.translate(target.topLeft());
  // A painted picture adapts itself to the device's resolution.
  painter.scale(target.width() / size.width() * picture.logicalDpiX() / painter.device()->logicalDpiX(),
                target.height() / size.height() * picture.logicalDpiY() / painter.device()->logicalDpiY());
  painter.drawPicture(0, 0, picture);
  painter.restore();
}

QImage ChartControl::picture() {
  constexpr int kPixelRatio = 2;
  constexpr double kInchesPerMetre = 1000 / 25.4;
  QImage image(size() * kPixelRatio, QImage::Format_RGB32);
  image.setDevicePixelRatio(kPixelRatio);
  image.setDotsPerMeterX(static_cast<int>(std::lround(logicalDpiX() * kInchesPerMetre)));
  image.setDotsPerMeterY(static_cast<int>(std::lround(logicalDpiY() * kInchesPerMetre)));
  image.fill(Qt::white);
  QPainter painter(&image);
  paint(painter, QRectF(QPointF(), QSizeF(size())));
  return image;
}

QByteArray ChartControl::png() {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  picture().save(&buffer, "PNG");
  return buffer.data();
}

QByteArray ChartControl::svg(const QString& title) {
  QBuffer buffer;
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setResolution(logicalDpiX());
  generator.setSize(size());
  generator.setViewBox(QRect(QPoint(), size()));
  generator.setTitle(title);
  QPainter painter(&generator);
  paint(painter, QRectF(QPointF(), QSizeF(size())));
  painter.end();
  return buffer.data();
}

QByteArray ChartControl::pdf(const QString& title) {
  constexpr int kResolution = 1200;
  constexpr double kPointsPerInch = 72;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kResolution);
  writer.setTitle(title);
  writer.setPageSize(
      QPageSize(QSizeF(width() * kPointsPerInch / logicalDpiX(), height() * kPointsPerInch / logicalDpiY()),
                QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF());
  QPainter painter(&writer);
  paint(painter, QRectF(0, 0, writer.width(), writer.height()));
  painter.end();
  return buffer.data();
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

void ChartControl::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange && m_impl) m_impl->takeFont();
}

void ChartControl::contextMenuEvent(QContextMenuEvent* event) {
  // The mouse has its menu from the press of the button.
  if (event->reason() == QContextMenuEvent::Keyboard) emit menuRequested(event->globalPos());
}

bool ChartControl::eventFilter(QObject* watched, QEvent* event) {
  // A part of the chart came into sight.
  if (event->type() == QEvent::Paint && m_impl->isDirty()) m_impl->touch();
  return QWidget::eventFilter(watched, event);
}

void ChartControl::keyPressEvent(QKeyEvent* event) {
  const auto pan = [this](double x, double y) {
    m_impl->makeSureDrawn();
    const Mapping map = m_impl->mapping();
    m_impl->pan(map, {-x * kPanOfKey * map.area.width(), y * kPanOfKey * map.area.height()});
  };
  const auto zoom = [this](double factor) {
    m_impl->makeSureDrawn();
    m_impl->zoom(m_impl->mapping().area.center(), factor);
  };
  switch (event->key()) {
    case Qt::Key_Home:
      resetView();
      break;
    case Qt::Key_Left:
      pan(-1, 0);
      break;
    case Qt::Key_Right:
      pan(1, 0);
      break;
    case Qt::Key_Up:
      pan(0, 1);
      break;
    case Qt::Key_Down:
      pan(0, -1);
      break;
    case Qt::Key_Plus:
      zoom(kZoomOfWheelStep);
      break;
    case Qt::Key_Minus:
      zoom(1 / kZoomOfWheelStep);
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

void ChartControl::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  m_impl->setPointer(std::nullopt);
}

void ChartControl::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit doubleClicked();
}

void ChartControl::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    m_impl->makeSureDrawn();
    m_impl->pressed = event->position();
    m_impl->shownAtPress = m_impl->mapping();
  } else if (event->button() == Qt::RightButton) {
    emit menuRequested(event->globalPosition().toPoint());
  }
}

void ChartControl::mouseMoveEvent(QMouseEvent* event) {
  if (m_impl->pressed && (event->buttons() & Qt::LeftButton)) {
    const QPointF step = event->position() - *m_impl->pressed;
    if (!m_impl->panning && step.manhattanLength() >= QApplication::startDragDistance()) {
      m_impl->panning = true;
      setCursor(Qt::ClosedHandCursor);
    }
    if (m_impl->panning) m_impl->pan(m_impl->shownAtPress, step);
  }
  m_impl->setPointer(event->position());
}

void ChartControl::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  m_impl->pressed.reset();
  if (std::exchange(m_impl->panning, false)) unsetCursor();
}

void ChartControl::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  m_impl->resize(event->size());
}

void ChartControl::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (m_impl->isDirty()) m_impl->touch();
}

void ChartControl::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / kWheelStep;
  if (steps != 0) m_impl->zoom(event->position(), std::pow(kZoomOfWheelStep, steps));
  event->accept();
}

}  // namespace torvik::views
