// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "analysis/sink.h"
#include "app/job_control.h"

namespace torvik::app {

/// Feeds the result windows that stand open at its construction: those that open later follow no job. The
/// data follow every call; the windows paint once a frame.
class ViewSink : public analysis::Sink {
 public:
  explicit ViewSink(const ResultWindows& windows) : m_windows(windows) {}

  void sectionParameters(const analysis::SectionParameterTable& sections) override;
  void strainWithoutLoad(const analysis::SectionState& state) override;
  void currentValues(const analysis::SectionState& state) override;
  void beginRow(int Step) override;
  void cell(int column, double value) override;
  void watchCrossed(const analysis::WatchCrossing& crossing) override;
  void endRow() override;
  void loadStep(const analysis::LoadStep& step) override;

  /// Hands over what is only worked out when somebody may look: the lines along the beam, of the last step.
  /// To be called before the window's events run.
  void beforeEvents();
  /// Shows all that was fed.
  void flush();

 private:
  void feedPieces();
  [[nodiscard]] views::ResultTable* table(views::TableKind kind) const;
  [[nodiscard]] views::ChartWindow* chart(views::ChartKind kind) const;

  ResultWindows m_windows;
  std::optional<analysis::BeamResponse> m_beam;  ///< as of the last step's charts
  bool m_piecesWaiting = false;
};

}  // namespace torvik::app
