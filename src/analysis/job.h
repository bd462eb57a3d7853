// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "analysis/host.h"
#include "analysis/job_options.h"
#include "analysis/run_state.h"
#include "analysis/sink.h"
#include "materials/stress_strain.h"
#include "model/objects.h"

namespace torvik::analysis {

/// How a job came to its end. The rows that its sinks got stay in every case.
struct JobOutcome {
  enum class End {
    LoadingEnd,     ///< the curvature reached the end of the large range: the only regular end
    SearchFailed,   ///< a search came to the most iterations
    Collapsed,      ///< no compression is left
    EndedByUser,    ///< no message
    NumericFault,   ///< division by zero, overflow, a text that is no number
    InternalError,  ///< a `Type` or `Prestressing` of an unknown name
    InputError,     ///< a result file that can not be written, an answer that nobody gave
  };
  End end = End::EndedByUser;
  std::string message;  ///< as it was reported; empty where the user ended the job
  int rows = 0;         ///< converged steps of the loading stage
};

/// Runs a job on tables that `BuildJobTables` made: section parameters, introduction of the prestress, axial
/// forces, loading (docs/theory.md, "A job"). Every end but the user's is reported through the host.
///
/// @param job      `BeamTop` and `BeamBottom` of its first beam are set
/// @param control  the run state; must be running at the call
/// @param sinks    fed in their order; none may be null
/// @param context  `startJob` is called on it
JobOutcome runJob(model::ObjectTables& job, const JobOptions& options, const RunControl& control, Host& host,
                  std::span<Sink* const> sinks, materials::StressStrainContext& context);

}  // namespace torvik::analysis
