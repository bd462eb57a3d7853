// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/section_preview.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace torvik::wizard {

namespace {

// Columns 1 to 4 are those that the figure of the section leaves to the whole and the hollow.
constexpr int kWhole = 1;
constexpr int kHollow = 3;
constexpr int kStrips = 5;
constexpr int kOverStrips = 7;  // the two outlines once more
const QColor kBlue(0, 0, 255);
const QColor kTeal(0, 128, 128);
const QColor kPale(190, 208, 235);

}  // namespace

SectionPreview::SectionPreview(QWidget* parent)
    : QWidget(parent), m_chart(new chart::ChartControl), m_summary(new QLabel) {
  m_chart->setObjectName("MSChart1");
  m_chart->setMinimumSize(300, 300);
  m_chart->setFocusPolicy(Qt::NoFocus);
  m_summary->setObjectName("Label1");
  m_summary->setWordWrap(true);
  m_summary->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  m_summary->setMinimumHeight(3 * fontMetrics().lineSpacing());
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_chart, 1);
  layout->addWidget(m_summary);
  showText({});
}

void SectionPreview::drawLine(int firstColumn, const SketchLine& line, const QColor& colour,
                              const char* name) {
  m_chart->setSeriesName(firstColumn, name, chart::PointName::Series);
  m_chart->setLineSeries(firstColumn, chart::PenStyle::Solid, colour);
  int row = 0;
  for (const auto& point : line) {
    ++row;
    if (!point || !std::isfinite(point->x) || !std::isfinite(point->y)) continue;
    m_chart->setData(row, firstColumn, point->x);
    m_chart->setData(row, firstColumn + 1, point->y);
  }
}

void SectionPreview::showText(const QString& text) {
  m_summary->setText(text);
  m_chart->clear();
  m_chart->setUniformAxis(true);
  m_chart->setAxisTitle(chart::kAxisX, "Width [mm]");
  m_chart->setAxisTitle(chart::kAxisY, "Depth [mm]");
  for (const int axis : {chart::kAxisX, chart::kAxisY}) {
    m_chart->setAxisPen(axis, chart::PenStyle::None);
    m_chart->setGridPen(axis, chart::PenStyle::Dotted);
  }
}

void SectionPreview::showSketch(const SectionSketch& sketch, bool withStrips) {
  showText(QString::fromStdString(sketch.summary));
  const std::size_t points =
      std::max({sketch.whole.size(), sketch.hollow.size(), withStrips ? sketch.strips.size() : 0});
  m_chart->setRowCount(static_cast<int>(points));
  m_chart->setColumnCount(withStrips ? kOverStrips + 3 : kHollow + 1);
  const auto drawOutlines = [&](int firstColumn) {
    drawLine(firstColumn, sketch.whole, kBlue, "Whole");
    drawLine(firstColumn + 2, sketch.hollow, kTeal, "Hollow");
  };
  drawOutlines(kWhole);
  if (!withStrips) return;
  drawLine(kStrips, sketch.strips, kPale, "Fibers");
  drawOutlines(kOverStrips);
}

}  // namespace torvik::wizard
