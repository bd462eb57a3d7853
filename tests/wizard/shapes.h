// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "wizard/fibre_generation.h"

namespace torvik::wizard {

// Shapes are written as whole, hollow, A, B, C, D, E, F, P, a, b, c, p, mode, number, height.
inline constexpr auto kTapered = WholeShape::Tapered;
inline constexpr auto kOval = WholeShape::Ellipse;
inline constexpr auto kStack = WholeShape::ThreeRectangles;
inline constexpr auto kNone = HollowShape::None;
inline constexpr auto kTaper = HollowShape::Tapered;
inline constexpr auto kEllipse = HollowShape::Ellipse;
inline constexpr auto kNumber = FibreMode::InNumber;
inline constexpr auto kHeight = FibreMode::InHeight;

}  // namespace torvik::wizard
