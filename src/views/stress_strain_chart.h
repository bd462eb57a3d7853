// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/profile.h"
#include "materials/stress_strain.h"
#include "model/objects.h"
#include "views/chart_window.h"

/// Charts that are drawn on command, without a job.
namespace torvik::views {

/// Extends the title of a window of kind StressStrain by the row's kind, `Type` and file, and draws the curve
/// over the range of the settings, with the point of the row's `WatchStrain`. What the chart held goes first,
/// so that nothing of another row stays where the row at hand fails.
/// @param oneRow  the row of a grid, alone in the table of its kind: solid, bar or tendon
/// @throws as `materials::stressStrainCurve`; NumericFault TypeMismatch of a `WatchStrain` that is no number
void drawStressStrainCurve(ChartWindow& window, model::ObjectKind kind, const model::ObjectTables& oneRow,
                           const base::ProfileFile& settings, materials::StressStrainContext& context);

}  // namespace torvik::views
