// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <span>
#include <string>

#include "materials/stress_strain.h"
#include "run/run.h"
#include "section/beam_response.h"
#include "section/search.h"
#include "section/section.h"

namespace torvik::run {

/// Gets every result row as soon as it is whole, before its step is one of the run's.
class RowReader {
 public:
  virtual ~RowReader() = default;
  /// The row is `rowAtWork`. @throws InputError of a failing device: the job ends there
  virtual void row(const Run& run) = 0;
};

/// The pen of a procedure. What it writes stands in the run at once.
class RunWriter {
 public:
  /// @param run      new
  /// @param readers  told in their order
  explicit RunWriter(Run& run, std::span<RowReader* const> readers = {}) : m_run(run), m_readers(readers) {}

  [[nodiscard]] const Run& run() const { return m_run; }

  /// Section and laws of the job. @param laws  must stand until `end`
  void begin(materials::StressStrainContext& laws);
  [[nodiscard]] const section::Section& section() const;
  [[nodiscard]] section::Conditions conditionsOf(Stage stage) const;

  void extent(const section::Extent& extent);
  void sectionParameters(const section::SectionParameterTable& table);
  void message(std::string text);

  /// The base strains of the stage at work.
  [[nodiscard]] const section::BaseStrains& base() const;
  /// The rows that tables and charts show from now on. @param last  on the present base strains
  void present(Stage stage, const section::Trial& last);
  /// The strains of these rows become the base strains.
  void commit(const section::State& rows);

  // ---- the loading stage
  /// @param baseCurvature  that of the stages before it
  void beginLoading(double baseCurvature);
  /// Takes the point of a step into the relation and bends the beam. @throws as `BeamResponse::update`
  void bendBeam(double Moment, double Curvature);
  [[nodiscard]] const section::BeamResponse& beam() const;
  /// The peak becomes that moment where it is larger than the peak as it is shown.
  /// @throws NumericFault TypeMismatch where the peak is shown as no number
  void peak(double Moment);

  // A row: begun, told cell by cell, ended; then its step.
  void beginRow(int step);
  void cell(double value);
  void crossed(const Crossing& crossing);
  void endRow();
  void step(const Step& step, const section::Trial& last);

  /// @param leftover  the rows of the last trial
  void end(End end, section::State leftover);

 private:
  RunData& data();

  Run& m_run;
  std::span<RowReader* const> m_readers;
};

}  // namespace torvik::run
