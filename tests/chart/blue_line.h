// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <vector>

#include "chart/control.h"

namespace torvik::chart {

inline const QColor kBlue(0, 0, 255);

/// The blue line of a chart with both axes from 0 to 4.
class BlueLine {
 protected:
  explicit BlueLine(ChartControl& ofChart) : chart(ofChart) {
    for (const int axis : {kAxisX, kAxisY}) chart.setValueScale(axis, {false, 0, 4, 4});
  }
  void setPoints(const std::vector<double>& x, const std::vector<double>& y) {
    chart.setRowCount(static_cast<int>(x.size()));
    chart.setPair(1, x, y);
  }
  /// Whether a picture of the chart has the colour of the line within a pixel of a point.
  bool has(const QImage& image, double x, double y, const QPointF& aside = {}) {
    const QPoint place = ((chart.pixelOf(x, y) + aside) * image.width() / chart.width()).toPoint();
    for (int i = 0; i < 9; ++i)
      if (image.pixelColor(place + QPoint(i / 3 - 1, i % 3 - 1)) == kBlue) return true;
    return false;
  }
  bool shows(double x, double y, const QPointF& aside = {}) {
    chart.flushNow();
    return has(chart.grab().toImage(), x, y, aside);
  }

  ChartControl& chart;
};

}  // namespace torvik::chart
