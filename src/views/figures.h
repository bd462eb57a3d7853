// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <span>

#include "model/objects.h"
#include "views/chart_control.h"

/// The drawings of the input. Places are to scale [mm]: y is the negated depth, x runs from midspan or from
/// the section's axis. The charts are laid out by their window.
namespace torvik::views {

/// The half beam with support and load. @param beam  with its `BeamTop` and `BeamBottom`
void drawBeam(ChartControl& chart, const model::BeamObject& beam);

/// A series for each object of a job behind the two of the outline: solids as `Number` rectangles side by
/// side, bars, tendons and axial forces as `Number` marks. The outline's points go.
void drawSection(ChartControl& chart, const model::ObjectTables& job);

/// The first two series of the section: the outline of a whole shape and that of the hollow in it, empty for
/// none. Points are joined in their order.
void drawSectionOutline(ChartControl& chart, std::span<const QPointF> whole, std::span<const QPointF> hollow);

}  // namespace torvik::views
