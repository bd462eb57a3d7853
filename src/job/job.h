// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/host.h"
#include "job/job_options.h"
#include "materials/stress_strain.h"
#include "run/writer.h"

namespace torvik::job {

/// Runs the job of a run's tables: section parameters, introduction of the prestress, axial forces, loading
/// (docs/theory.md, "A job").
///
/// @param writer  of a new run, which holds all that comes out, its end included
/// @param laws    `startJob` is called on it; the only one whose files are read and whose prompt is asked
/// @return the end; whoever called tells its message
const run::End& runJob(const JobOptions& options, Host& host, run::RunWriter& writer,
                       materials::StressStrainContext& laws);

}  // namespace torvik::job
