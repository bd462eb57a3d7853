// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <qcustomplot.h>

#include <vector>

#include "chart/data.h"

namespace torvik::chart {

/// Of the pen of lines [pixels].
inline constexpr double kSeriesPenWidth = 2;

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
  [[nodiscard]] QRect clipRect() const override;
  void draw(QCPPainter* painter) override;
  void drawLegendIcon(QCPPainter*, const QRectF&) const override {}

 private:
  void drawLine(QCPPainter& painter, std::size_t index) const;
  void drawMarkers(QCPPainter& painter, std::size_t index) const;

  const Matrix& m_matrix;
  const std::vector<Series>& m_series;
};

}  // namespace torvik::chart
