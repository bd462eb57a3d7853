// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/profile.h"
#include "model/objects.h"

/// Cuts a whole section, with or without a hollow, into horizontal strips: one solid row a strip. Lengths in
/// mm.
namespace torvik::wizard {

enum class WholeShape : int { Tapered = 0, Ellipse = 1, ThreeRectangles = 2 };
enum class HollowShape : int { Tapered = 0, Ellipse = 1, None = 2 };
enum class FibreMode : int { InNumber = 0, InHeight = 1 };

struct SectionShape {
  WholeShape whole = WholeShape::Tapered;
  HollowShape hollow = HollowShape::None;           ///< not looked at with three rectangles
  double A = 0, B = 0, C = 0, D = 0, E = 0, F = 0;  ///< of the whole: widths A, B, C and heights by its shape
  double P = 0;                                     ///< depth of the top of the whole
  double a = 0, b = 0, c = 0;                       ///< of the hollow: widths a, b and height c
  double p = 0;                                     ///< depth of the top of the hollow
  FibreMode mode = FibreMode::InNumber;
  int fibreNumber = 100;    ///< strips over the whole height, in number mode
  double fibreHeight = 10;  ///< target height of a strip, in height mode
};

/// Width at depth d of a trapezium of width w1 at its top, w2 at its bottom and height h.
/// @throws NumericFault DivisionByZero where h is 0
double TaperWidth(double w1, double w2, double h, double top, double d);

/// Width at depth d of an ellipse of width w and height h.
/// @throws NumericFault InvalidOperation where d lies outside the ellipse, DivisionByZero where h is 0
double EllipseWidth(double w, double h, double top, double d);

/// Appends one default row a strip to `tables.Solids`, with `Height`, `Depth`, `Width` and `Area` set, and
/// `Number` 2 for the pairs beside a hollow.
/// @return false where the shape is invalid (a negative strip count, or a negative width): no row was added
/// @throws NumericFault as the widths, and Overflow beyond 32767 strips; no row was added
bool GenerateFibers(const SectionShape& shape, model::ObjectTables& tables,
                    const base::ProfileFile& settings);

}  // namespace torvik::wizard
