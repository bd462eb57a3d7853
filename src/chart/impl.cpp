// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/impl.h"

#include <QElapsedTimer>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace torvik::chart {

namespace {

const QColor kTitleColour(0, 0, 255);
const QColor kLabelColour(0, 0, 128);
const QColor kLineColour(128, 128, 128);
constexpr double kTextPoints = 12;
constexpr double kReadOutPoints = 10;

/// Furthest from the pointer that a point is read out.
constexpr double kReadOutReach = 48;
constexpr double kReadOutMark = 9;

constexpr int kFrame = 30;  // milliseconds
constexpr int kSlowestFrame = 500;
/// A chart takes at most one part in so many of the time.
constexpr double kShareOfTime = 40;

}  // namespace

ChartControl::Impl::Impl(ChartControl& owner)
    : m_owner(owner), m_plot(new QCustomPlot(&owner)), m_frame(kFrame) {
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

void ChartControl::Impl::touch() {
  m_dirty = true;
  if (!m_timer.isActive() && m_owner.isVisible()) m_timer.start(m_frame);
}

void ChartControl::Impl::touchLook() {
  m_lookDirty = true;
  touch();
}

void ChartControl::Impl::draw() {
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

void ChartControl::Impl::resize(const QSize& size) {
  m_dirty = m_lookDirty = true;
  m_plot->resize(size);  // draws, but not while it is hidden
  m_plot->setViewport(QRect(QPoint(), size));
  if (m_dirty) touch();
}

void ChartControl::Impl::takeFont() {
  // Sizes in pixels, so that a picture looks the same on every device.
  const double pixelsPerPoint = m_owner.logicalDpiY() / 72.0;
  layout.font = m_owner.font();
  layout.font.setPixelSize(static_cast<int>(std::lround(kTextPoints * pixelsPerPoint)));
  QFont readOutFont = layout.font;
  readOutFont.setPixelSize(static_cast<int>(std::lround(kReadOutPoints * pixelsPerPoint)));
  m_label->setFont(readOutFont);
  m_plot->xAxis->setTickLabelFont(layout.font);
  m_plot->yAxis->setTickLabelFont(layout.font);
  touchLook();
}

void ChartControl::Impl::setPens(std::size_t index) {
  QCPAxis* axis = index == kAxisX ? m_plot->xAxis : m_plot->yAxis;
  const QPen pen(kLineColour, 1, toQt(layout.axes[index].pen));
  axis->setBasePen(pen);
  axis->setTickPen(pen);
  axis->grid()->setPen(QPen(kLineColour, 1, toQt(layout.axes[index].grid)));
  touchLook();
}

Series& ChartControl::Impl::seriesAt(int firstColumn) {
  if (firstColumn < 1 || firstColumn % 2 == 0 || firstColumn >= matrix.columns())
    throwMissing("series of column " + base::plainText(firstColumn));
  return series[static_cast<std::size_t>(firstColumn / 2)];
}

void ChartControl::Impl::makeSureDrawn() {
  if (!m_applied || m_dirty) draw();
}

void ChartControl::Impl::setView(const std::optional<Mapping>& wanted) {
  // A chart that is squeezed until no plot is left has no places to zoom or to pan to.
  if (wanted && (wanted->area.width() < 1 || wanted->area.height() < 1 || !bothCanBeShown(wanted->shown)))
    return;
  const bool changed = m_view.has_value() != wanted.has_value();
  m_view.reset();
  if (wanted) m_view = PassingView{*wanted, m_plot->viewport().size()};
  touch();
  if (changed) emit m_owner.passingViewChanged(m_view.has_value());
}

void ChartControl::Impl::zoom(const QPointF& place, double factor) {
  makeSureDrawn();
  Mapping map = mapping();
  const bool beside = place.x() < map.area.left();
  const bool below = place.y() > map.area.bottom();
  const auto scale = [factor](Interval& interval, double part) {
    const double centre = interval.lower + part * interval.size();
    interval = {centre - (centre - interval.lower) * factor, centre + (interval.upper - centre) * factor};
  };
  if (layout.uniform || !beside || below)
    scale(map.shown[kAxisX], std::clamp((place.x() - map.area.left()) / map.area.width(), 0.0, 1.0));
  if (layout.uniform || !below || beside)
    scale(map.shown[kAxisY], std::clamp((map.area.bottom() - place.y()) / map.area.height(), 0.0, 1.0));
  setView(map);
}

void ChartControl::Impl::pan(Mapping from, const QPointF& step) {
  const double byX = -step.x() / from.area.width() * from.shown[kAxisX].size();
  const double byY = step.y() / from.area.height() * from.shown[kAxisY].size();
  from.shown[kAxisX] = {from.shown[kAxisX].lower + byX, from.shown[kAxisX].upper + byX};
  from.shown[kAxisY] = {from.shown[kAxisY].lower + byY, from.shown[kAxisY].upper + byY};
  setView(from);
}

void ChartControl::Impl::setPointer(const std::optional<QPointF>& place) {
  if (!place && !m_pointer) return;
  m_pointer = place;
  if (!m_applied) draw();
  showReadOut();
}

void ChartControl::Impl::drawInto(QPicture& picture, const QSize& size) {
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

void ChartControl::Impl::drawWhereSeen() {
  if (m_dirty && m_plot->isVisible() && !m_plot->visibleRegion().isEmpty()) draw();
}

void ChartControl::Impl::showReadOut() {
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

void ChartControl::Impl::placeLabel(const QString& text) {
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

std::array<Interval, kAxes> ChartControl::Impl::dataBounds() const {
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

void ChartControl::Impl::apply(const Plan& plan) {
  m_plot->axisRect()->setMargins(plan.margins);
  for (std::size_t i = 0; i < kAxes; ++i) {
    QCPAxis* axis = i == kAxisX ? m_plot->xAxis : m_plot->yAxis;
    const AxisPlan& from = plan.axes[i];
    axis->setRange(from.shown.lower, from.shown.upper);
    qSharedPointerCast<QCPAxisTickerText>(axis->ticker())->setTicks(from.ticks, from.labels);
    QFont font = layout.font;
    if (from.titlePixels > 0) font.setPixelSize(from.titlePixels);
    axis->setLabelFont(font);
    axis->setLabel(from.title);
  }
  m_applied = plan;
}

}  // namespace torvik::chart
