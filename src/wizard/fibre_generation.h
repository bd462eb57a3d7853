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

/// Height of the whole shape.
double wholeHeight(const SectionShape& shape);

/// Width at depth d of a tapered or elliptic whole.
/// @throws NumericFault as the two above; InternalError 51 for three rectangles, whose width steps
double wholeWidth(const SectionShape& shape, double d);

/// Appends one default row a strip to `tables.Solids`, from the top downward, with `Height`, `Depth`, `Width`
/// and `Area` set: of one piece where the strip is the pair beside a hollow. `Number` is 2 there and 1
/// elsewhere, whatever the default row holds.
///
/// A zone lower than the target height of a strip gets none and stays a gap, so that a valid shape may bring
/// no row at all.
/// @return false where the shape is invalid (a negative strip count or width): no row was added
/// @throws NumericFault as the widths, DivisionByZero for 0 strips in number mode, Overflow where the table
///         would hold more than 32767 rows; no row was added
/// @throws InputError of the key for a default that its field can not hold; no row was added
/// @throws InternalError 51 for a shape or mode outside the lists; no row was added
bool GenerateFibers(const SectionShape& shape, model::ObjectTables& tables,
                    const base::ProfileFile& settings);

}  // namespace torvik::wizard
