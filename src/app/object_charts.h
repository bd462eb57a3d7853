// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/objects.h"
#include "run/run.h"

/// Charts that a command opens, without a job.
namespace torvik::app {

class JobControl;
class MainWindow;

/// The stress-strain curve of a grid's row, or the message that says what it lacks.
/// @param oneRow  the row as the grid holds it, alone in the table of its kind; @throws InternalError 51 for
///                beams and axial forces
void showStressStrainCurve(MainWindow& window, JobControl& job, model::ObjectKind kind,
                           const model::ObjectTables& oneRow);

/// Moment-Curvature and Load-Displacement of the steps that a run has by now.
void rebuildResultCharts(JobControl& job, const run::Run& run);

/// Beam and section of the edited tables.
void showFigures(MainWindow& window, JobControl& job);

}  // namespace torvik::app
