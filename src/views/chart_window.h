// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "run/run.h"
#include "views/child_window.h"

namespace torvik::chart {
class ChartControl;
}

namespace torvik::views {

enum class ChartKind {
  FigureBeam = 0,
  FigureSection = 1,
  MomentCurvature = 2,
  LoadDisplacement = 3,
  Stress = 4,
  Strain = 5,
  Moment = 6,
  Curvature = 7,
  Displacement = 8,
  StressStrain = 9,
};

/// `frmChart`: a chart of one of ten kinds. The seven result charts look at a run; the figures and the
/// stress-strain chart get their points from whoever opens them, through `chart`.
class ChartWindow : public ChildWindow {
  Q_OBJECT

 public:
  /// @param kind  a `ChartKind`; @throws InternalError 51 for a number outside 0 to 9
  /// @param run   what a result chart follows, as `catchUp` is called; null: nothing
  ChartWindow(Shell& shell, int kind, std::shared_ptr<const run::Run> run = nullptr);

  [[nodiscard]] ChartKind chartKind() const { return static_cast<ChartKind>(kind()); }
  [[nodiscard]] chart::ChartControl& chart() const { return *m_chart; }

  [[nodiscard]] ChildCommands commands() const override;
  [[nodiscard]] QList<QAction*> ownActions() override;
  void copy() override;
  void unload() override;

  void catchUp() override;
  /// MomentCurvature, LoadDisplacement: all steps that a run has by now, in place of what was shown. A run
  /// that the chart follows goes on behind them. @throws InternalError 51 for another kind
  void drawSteps(const run::Run& run);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void layOut();
  void layOutFigure();
  void setLine(int firstColumn, const QString& name = {});
  void appendSteps(const run::Run& run);
  void showRows();
  void setObjectPair(int firstColumn, const std::vector<double>& values, const auto& objects,
                     double (*xOf)(double));
  void showPieces();
  void savePicture();
  void writePicture(const QString& path);

  chart::ChartControl* m_chart;
  QAction* m_automaticScale;
  QAction* m_savePicture;
  std::shared_ptr<const run::Run> m_run;
  int m_steps = 0;             ///< shown of the run
  std::uint64_t m_rowsAt = 0;  ///< of the run's `presentVersion`, as shown
};

}  // namespace torvik::views
