// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/plan.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace torvik::chart {

namespace {

constexpr int kBorder = 2;  // pixels, as all that follows
constexpr int kLeastTitlePixels = 9;
constexpr int kLeastPlotWithTitle = 60;
constexpr double kLabelDistance = 10;
constexpr int kMostAutomaticDivisions = 10;

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

/// The area of a plot with these margins, as `Mapping` has it.
QRectF placed(double left, double top, const QSizeF& room) {
  return {QPointF(left, top - 1), room};
}

/// Room that a label takes along its axis.
double extentOf(std::size_t index, const QString& label, const QFontMetricsF& metrics) {
  if (label.isEmpty()) return 0;
  return index == kAxisX ? metrics.horizontalAdvance(label) + kLabelDistance : metrics.height();
}

QString labelOf(double value, double division, const Interval& shown) {
  return QString::fromStdString(
      axisText(value, division, std::max(std::abs(shown.lower), std::abs(shown.upper))));
}

bool labelsFit(std::size_t index, const SteppedLimits& limits, double room, const QFontMetricsF& metrics) {
  const double division = room / limits.divisions();
  for (double k = limits.first; k <= limits.last; ++k)
    if (extentOf(index, labelOf(limits.step.times(k), limits.step.value(), limits.interval()), metrics) >
        division)
      return false;
  return true;
}

void thinLabels(AxisPlan& axis, std::size_t index, double division, const QFontMetricsF& metrics) {
  const auto count = axis.labels.size();
  const int interval = labelInterval(static_cast<int>(count) - 1, [&](int every) {
    for (qsizetype i = every; i < count; i += every)
      if ((extentOf(index, axis.labels[i - every], metrics) + extentOf(index, axis.labels[i], metrics)) / 2 >
          division * every)
        return false;
    return true;
  });
  for (qsizetype i = 0; i < count; ++i)
    if (i % interval != 0) axis.labels[i].clear();
}

/// Divisions on whole steps, from number `first` to number `last`.
AxisPlan stepped(std::size_t index, const DecimalStep& step, double first, double last, const Interval& shown,
                 double room, const QFontMetricsF& metrics) {
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
AxisPlan divided(std::size_t index, const ValueScale& scale, double room, const QFontMetricsF& metrics) {
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

int mostDivisions(std::size_t index, double room, const QFontMetricsF& metrics) {
  // Vertically two lines a division look right; horizontally the labels themselves decide.
  const double least = index == kAxisY ? 2 * metrics.height() : metrics.height() + kLabelDistance;
  return std::clamp(static_cast<int>(room / least), 1, kMostAutomaticDivisions);
}

qsizetype labelCount(const AxisPlan& axis) {
  return axis.labels.size() - axis.labels.count(QString());
}

AxisPlan planInterval(std::size_t index, const Interval& shown, double room, const QFontMetricsF& metrics) {
  const auto planOf = [&](const DecimalStep& step) {
    return stepped(index, step, step.stepAbove(shown.lower), step.stepBelow(shown.upper), shown, room,
                   metrics);
  };
  AxisPlan best =
      planOf(automaticLimits(shown, mostDivisions(index, room, metrics), [&](const SteppedLimits& tried) {
               return labelsFit(index, tried, room / shown.size() * tried.interval().size(), metrics);
             }).step);
  // Between two neighbours of a coarse step there may be no number, or a single one that tells no scale.
  constexpr int kMostParts = 16;
  for (int parts = 2; labelCount(best) < 2 && parts <= kMostParts; parts *= 2) {
    AxisPlan finer = planOf(DecimalStep::notAbove(shown.size() / parts));
    if (labelCount(finer) > labelCount(best)) best = std::move(finer);
  }
  return best;
}

}  // namespace

Plan ChartLayout::plan(const QSize& size, const std::array<Interval, kAxes>& data,
                       const std::optional<PassingView>& view) const {
  const QFontMetricsF metrics(font);
  const double line = std::ceil(metrics.height());
  const double labelRoom = kTickLength + kGap + line + kBorder;
  const double titleRoom = kGap + line;

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
      const auto shown = view->map.shownIn(placed(left, top, room));
      planView(of, view->size == size && bothCanBeShown(shown) ? shown : view->map.shown, room, metrics);
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

void ChartLayout::planTitle(AxisPlan& axis, const QString& title, double room) const {
  QFont fitted = font;
  const double available = room - 2 * kBorder;
  while (fitted.pixelSize() > kLeastTitlePixels && QFontMetricsF(fitted).horizontalAdvance(title) > available)
    fitted.setPixelSize(fitted.pixelSize() - 1);
  axis.title = QFontMetricsF(fitted).elidedText(title, Qt::ElideRight, available);
  axis.titlePixels = fitted.pixelSize();
}

AxisPlan ChartLayout::planAxis(std::size_t index, const Interval& data, double room,
                               const QFontMetricsF& metrics) const {
  if (!axes[index].scale.Auto) return divided(index, axes[index].scale, room, metrics);
  const SteppedLimits limits =
      automaticLimits(data, mostDivisions(index, room, metrics),
                      [&](const SteppedLimits& tried) { return labelsFit(index, tried, room, metrics); });
  return stepped(index, limits.step, limits.first, limits.last, limits.interval(), room, metrics);
}

void ChartLayout::planToScale(std::array<AxisPlan, kAxes>& of, const std::array<Interval, kAxes>& data,
                              const QSizeF& room, const QFontMetricsF& metrics) const {
  const std::array<double, kAxes> pixels = {room.width(), room.height()};
  std::array<Interval, kAxes> shown;
  double unit = 0;  // pixels of one unit
  std::array<SteppedLimits, kAxes> limits;
  const double longest = std::max(data[kAxisX].size() / pixels[kAxisX], data[kAxisY].size() / pixels[kAxisY]);
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
    of[i] = stepped(i, step, axis.first, axis.last, axis.interval(), unit * axis.interval().size(), metrics);
  }
}

void ChartLayout::planView(std::array<AxisPlan, kAxes>& of, std::array<Interval, kAxes> shown,
                           const QSizeF& room, const QFontMetricsF& metrics) const {
  const std::array<double, kAxes> pixels = {room.width(), room.height()};
  const double unit = std::min(pixels[kAxisX] / shown[kAxisX].size(), pixels[kAxisY] / shown[kAxisY].size());
  for (std::size_t i = 0; i < kAxes; ++i) {
    if (uniform) {
      const double spare = pixels[i] / unit - shown[i].size();
      shown[i] = {shown[i].lower - spare / 2, shown[i].upper + spare / 2};
    }
    of[i] = planInterval(i, shown[i], pixels[i], metrics);
  }
}

}  // namespace torvik::chart
