// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/beam_response.h"
#include "analysis/section_parameters.h"
#include "analysis/section_state.h"
#include "model/objects.h"

/// What a job gives to the outside. Tables, charts and the result file are sinks; a job feeds all that are
/// attached, in the order in which they are attached. A sink may throw InputError (a full disk): the job ends
/// with its message.
namespace torvik::analysis {

/// The headings of a result row: "Load", "Displacement", "Moment", "Curvature", "Neutral Axis Depth",
/// "Compression Force", then "Solid Strain ", "Bar Strain ", "Tendon Strain " and the row's number in the
/// job, from 1, for each row with `Output` 1.
std::vector<std::string> resultHeadings(const model::ObjectTables& job);

/// One converged step of the loading stage.
struct LoadStep {
  int Step = 0;
  double Moment = 0;         ///< [N mm]
  double Curvature = 0;      ///< reported: with that of prestress and axial force [1/mm]
  const BeamResponse& beam;  ///< stands until `jobOver` returns, each step writes it anew
};

/// A watched strain that crossed its watch value.
struct WatchCrossing {
  int Step = 0;
  std::string_view heading;  ///< "Bar Strain 2"
  int column = 0;            ///< of the result row, from 0
  double WatchStrain = 0;
  double strain = 0;
};

class Sink {
 public:
  virtual ~Sink() = default;

  virtual void sectionParameters(const SectionParameterTable&) {}

  /// The base strains have changed (four times a job).
  virtual void strainWithoutLoad(const SectionState&) {}
  /// Strains, stresses and forces have changed: after each iteration of the searches N and MM, and at each
  /// step.
  virtual void currentValues(const SectionState&) {}

  /// The solver table: a row is begun, its cells come one by one, with a pause between them where a watch
  /// strain is crossed, and it is ended. @param column  of the result row, from 0
  virtual void beginRow(int /*Step*/) {}
  virtual void cell(int /*column*/, double /*value*/) {}
  virtual void watchCrossed(const WatchCrossing&) {}
  virtual void endRow() {}

  /// The result file: the whole row of a step, in the order of the headings.
  virtual void resultRow(std::span<const double> /*values*/) {}

  /// The charts of a step, after its row.
  virtual void loadStep(const LoadStep&) {}

  /// The job is over, in whatever way; the state is that of the last trial.
  virtual void jobOver(const SectionState&) {}
};

}  // namespace torvik::analysis
