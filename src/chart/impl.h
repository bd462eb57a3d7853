// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPicture>
#include <QTimer>
#include <array>
#include <optional>
#include <vector>

#include "chart/control.h"
#include "chart/drawing.h"
#include "chart/plan.h"

namespace torvik::chart {

class ChartControl::Impl {
 public:
  explicit Impl(ChartControl& owner);

  /// Something changed that the picture does not show yet.
  void touch();
  void touchLook();
  [[nodiscard]] bool isDirty() const { return m_dirty; }
  void draw();
  void resize(const QSize& size);
  void takeFont();
  void setPens(std::size_t index);
  Series& seriesAt(int firstColumn);

  [[nodiscard]] Plan currentPlan() const { return plan(m_plot->viewport().size(), m_view); }
  /// Without the passing view.
  [[nodiscard]] Plan planOfScales() const { return plan(m_owner.size(), std::nullopt); }
  [[nodiscard]] Mapping mapping() const { return m_drawing->mapping(); }
  /// The picture on the screen, so that pixels can be turned into numbers.
  void makeSureDrawn();

  /// A passing view that can not be shown is not taken.
  void setView(const std::optional<Mapping>& wanted);
  [[nodiscard]] bool hasView() const { return m_view.has_value(); }
  /// Makes what is shown `factor` times as wide round a pixel.
  void zoom(const QPointF& place, double factor);
  /// Shows the numbers `step` pixels away from where `from` has them.
  void pan(Mapping from, const QPointF& step);

  void setPointer(const std::optional<QPointF>& place);
  [[nodiscard]] QString readOut() const { return m_label->visible() ? m_label->text() : QString(); }
  /// Draws a picture of another size with a painter of its own, then takes up the one on the screen again.
  void drawInto(QPicture& picture, const QSize& size);

  Matrix matrix;
  std::vector<Series> series;
  ChartLayout layout;

  // A press of the left button, and what was shown then.
  std::optional<QPointF> pressed;
  Mapping shownAtPress;
  bool panning = false;

 private:
  /// Draws unless the window is hidden, minimised or covered; what it covers up asks for it when it goes.
  void drawWhereSeen();
  void showReadOut();
  /// Beside the pointer, on the side where there is room.
  void placeLabel(const QString& text);
  [[nodiscard]] std::array<Interval, kAxes> dataBounds() const;
  [[nodiscard]] Plan plan(const QSize& size, const std::optional<PassingView>& view) const {
    return layout.plan(size, dataBounds(), view);
  }
  void apply(const Plan& plan);

  ChartControl& m_owner;
  QCustomPlot* m_plot;
  SeriesDrawing* m_drawing;
  QCPItemEllipse* m_mark;
  QCPItemText* m_label;
  QTimer m_timer;
  int m_frame;
  bool m_dirty = true;
  bool m_lookDirty = true;
  std::optional<Plan> m_applied;
  std::optional<PassingView> m_view;
  std::optional<QPointF> m_pointer;
};

}  // namespace torvik::chart
