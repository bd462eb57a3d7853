// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/control.h"
#include "model/objects.h"

/// The drawings of the input. Places are to scale [mm]: y is the negated depth, x runs from midspan or from
/// the section's axis. The charts are laid out by their window.
/// @throws NumericFault InvalidOperation for a negative area, Overflow for a place that no number can hold
namespace torvik::views {

/// The half beam with support and load. @param beam  with its `BeamTop` and `BeamBottom`
void drawBeam(chart::ChartControl& chart, const model::BeamObject& beam);

/// A series for each object of a job behind the two of the outline: solids as `Number` rectangles side by
/// side, bars, tendons and axial forces as `Number` marks. The outline's points go.
void drawSection(chart::ChartControl& chart, const model::ObjectTables& job);

}  // namespace torvik::views
