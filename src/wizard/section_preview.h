// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QWidget>

#include "chart/control.h"
#include "wizard/section_sketch.h"

namespace torvik::wizard {

/// The section to scale (`MSChart1`), and a line (`Label1`) that tells what it will be cut into.
class SectionPreview : public QWidget {
  Q_OBJECT

 public:
  explicit SectionPreview(QWidget* parent = nullptr);
  void showSketch(const SectionSketch& sketch, bool withStrips);
  /// No picture, only a line.
  void showText(const QString& text);

 private:
  void drawLine(int firstColumn, const SketchLine& line, const QColor& colour, const char* name);

  chart::ChartControl* m_chart;
  QLabel* m_summary;
};

}  // namespace torvik::wizard
