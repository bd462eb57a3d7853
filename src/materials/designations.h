// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string_view>

/// Standard sizes of bars and tendons: `Diameter` sets `Area`.
namespace torvik::materials {

struct Designation {
  std::string_view listEntry;    ///< as a list offers it: "D13 - JIS G 3112"
  std::string_view designation;  ///< as a row holds it: "JIS G 3112 D13"
  double Area;                   ///< [mm2]
};

std::span<const Designation> barDesignations();
std::span<const Designation> tendonDesignations();

/// Area of the designation (not of the list entry), compared exactly.
std::optional<double> designationArea(std::span<const Designation> designations,
                                      std::string_view designation);

/// d * d * 3.14159265358979 / 4, for a plain diameter and for a sheath.
double circleArea(double diameter);

}  // namespace torvik::materials
