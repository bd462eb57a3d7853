// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QMargins>
#include <QSize>
#include <QVector>
#include <array>
#include <optional>

#include "chart/data.h"

namespace torvik::chart {

// Pixels.
inline constexpr int kTickLength = 4;
inline constexpr int kGap = 3;

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

/// A passing view, taken in a picture of a size.
struct PassingView {
  Mapping map;
  QSize size;
};

/// Lays out pictures of a chart.
struct ChartLayout {
  QFont font;  ///< sized in pixels
  std::array<Axis, kAxes> axes;
  bool uniform = false;

  /// A picture of a size. The automatic scale takes as many divisions as its labels leave room for.
  /// @param data  as `widened` gives it
  [[nodiscard]] Plan plan(const QSize& size, const std::array<Interval, kAxes>& data,
                          const std::optional<PassingView>& view) const;

 private:
  /// A title that is too long gets a smaller font, then an ellipsis.
  void planTitle(AxisPlan& axis, const QString& title, double room) const;
  [[nodiscard]] AxisPlan planAxis(std::size_t index, const Interval& data, double room,
                                  const QFontMetricsF& metrics) const;
  /// Both axes with one length for one unit. Automatic limits have one step, and take up
  /// room to spare in whole steps on both sides.
  void planToScale(std::array<AxisPlan, kAxes>& of, const std::array<Interval, kAxes>& data,
                   const QSizeF& room, const QFontMetricsF& metrics) const;
  /// Intervals of any limits; to scale the one that has room to spare gets more of its numbers.
  void planView(std::array<AxisPlan, kAxes>& of, std::array<Interval, kAxes> shown, const QSizeF& room,
                const QFontMetricsF& metrics) const;
};

}  // namespace torvik::chart
