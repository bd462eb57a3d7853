// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/designations.h"

#include <algorithm>

namespace torvik::materials {

namespace {

constexpr Designation kBars[] = {
    {"D6 - JIS G 3112", "JIS G 3112 D6", 31.67},   {"D10 - JIS G 3112", "JIS G 3112 D10", 71.33},
    {"D13 - JIS G 3112", "JIS G 3112 D13", 126.7}, {"D16 - JIS G 3112", "JIS G 3112 D16", 198.6},
    {"D19 - JIS G 3112", "JIS G 3112 D19", 286.5}, {"D22 - JIS G 3112", "JIS G 3112 D22", 387.1},
    {"D25 - JIS G 3112", "JIS G 3112 D25", 506.7}, {"D29 - JIS G 3112", "JIS G 3112 D29", 642.4},
    {"D32 - JIS G 3112", "JIS G 3112 D32", 794.2}, {"D35 - JIS G 3112", "JIS G 3112 D35", 956.6},
    {"D38 - JIS G 3112", "JIS G 3112 D38", 1140},  {"D41 - JIS G 3112", "JIS G 3112 D41", 1340},
    {"D51 - JIS G 3112", "JIS G 3112 D51", 2027},
};

constexpr Designation kTendons[] = {
    {"9.2 - JIS G 3109", "JIS G 3109 9.2", 66.48},   {"11 - JIS G 3109", "JIS G 3109 11", 95.03},
    {"13 - JIS G 3109", "JIS G 3109 13", 132.7},     {"(15) - JIS G 3109", "JIS G 3109 (15)", 176.7},
    {"17 - JIS G 3109", "JIS G 3109 17", 227},       {"(19) - JIS G 3109", "JIS G 3109 (19)", 283.5},
    {"(21) - JIS G 3109", "JIS G 3109 (21)", 346.4}, {"23 - JIS G 3109", "JIS G 3109 23", 415.5},
    {"26 - JIS G 3109", "JIS G 3109 26", 530.9},     {"(29) - JIS G 3109", "JIS G 3109 (29)", 660.5},
    {"32 - JIS G 3109", "JIS G 3109 32", 804.2},     {"36 - JIS G 3109", "JIS G 3109 36", 1018},
    {"40 - JIS G 3109", "JIS G 3109 40", 1257},
};

}  // namespace

std::span<const Designation> barDesignations() {
  return kBars;
}

std::span<const Designation> tendonDesignations() {
  return kTendons;
}

std::optional<double> designationArea(std::span<const Designation> designations,
                                      std::string_view designation) {
  const auto found = std::ranges::find(designations, designation, &Designation::designation);
  if (found == designations.end()) return std::nullopt;
  return found->Area;
}

double circleArea(double diameter) {
  return diameter * diameter * 3.14159265358979 / 4;
}

}  // namespace torvik::materials
