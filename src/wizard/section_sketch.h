// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "wizard/fibre_generation.h"

/// What a preview shows of a section while it is being entered.
namespace torvik::wizard {

inline constexpr int kFewestFibres = 5;  ///< that the dialog lets through, in number mode
inline constexpr int kMostFibres = 500;

struct SketchPoint {
  double x;  ///< from the axis of symmetry
  double y;  ///< negated depth
};
/// Points joined in order; an empty one lifts the pen.
using SketchLine = std::vector<std::optional<SketchPoint>>;

struct SectionSketch {
  SketchLine whole;
  SketchLine hollow;  ///< empty where the section has none
  SketchLine strips;  ///< the pieces that the section will be cut into; empty where too many to be told apart
  std::string summary;  ///< how many rows will come, or what keeps them from coming
};

/// Never throws for the numbers of a shape.
SectionSketch sketchSection(const SectionShape& shape);

}  // namespace torvik::wizard
