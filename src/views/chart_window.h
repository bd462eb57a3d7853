// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "analysis/section_state.h"
#include "analysis/sink.h"
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

/// What the size of a result chart follows: the counts of the job's rows.
struct JobExtent {
  std::size_t Solids = 0;
  std::size_t Bars = 0;
  std::size_t Tendons = 0;
  int HalfSpanFiberNumber = 0;  ///< of the first job beam
};

/// `frmChart`: a chart of one of ten kinds. The seven result charts are fed by a job; the figures and the
/// stress-strain chart get their points from whoever opens them, through `chart`.
///
/// A feed for another kind raises InternalError 51.
class ChartWindow : public ChildWindow {
  Q_OBJECT

 public:
  /// @param kind    a `ChartKind`; @throws InternalError 51 for a number outside 0 to 9
  /// @param extent  read by the kinds of which a job sets the number of rows
  ChartWindow(Shell& shell, int kind, const JobExtent& extent = {});

  [[nodiscard]] ChartKind chartKind() const { return static_cast<ChartKind>(kind()); }
  [[nodiscard]] chart::ChartControl& chart() const { return *m_chart; }

  [[nodiscard]] ChildCommands commands() const override;
  [[nodiscard]] QList<QAction*> ownActions() override;
  void copy() override;
  void unload() override;

  /// Stress, Strain: all rows.
  void currentValues(const analysis::SectionState& state);
  /// The five others: a step of the loading stage.
  void loadStep(const analysis::LoadStep& step);

  /// MomentCurvature. @param Moment [N mm] @param Curvature [1/mm]
  void appendMomentCurvature(double Moment, double Curvature);
  /// LoadDisplacement. @param Load [N] @param Displacement [mm]
  void appendLoadDisplacement(double Load, double Displacement);
  /// Moment, Curvature, Displacement: all pieces of the half span.
  /// @param place   of the pieces' centres from midspan [mm]
  /// @param values  moments [N mm], curvatures [1/mm] or displacements [mm], by the kind
  void setPieces(std::span<const double> place, std::span<const double> values);

 private:
  void layOut(const JobExtent& extent);
  void layOutFigure();
  void setLine(int firstColumn, const QString& name = {});
  void setObjectPair(int firstColumn, const analysis::SectionState::Rows& rows, double (*xOf)(double));
  void require(bool isKind) const;
  void savePicture();
  void writePicture(const QString& path);

  chart::ChartControl* m_chart;
  QAction* m_automaticScale;
  QAction* m_savePicture;
  // Kept between the steps for their memory.
  std::vector<double> m_x;
  std::vector<double> m_y;
};

}  // namespace torvik::views
