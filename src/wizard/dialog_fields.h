// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>

#include "wizard/fibre_generation.h"

namespace torvik::wizard {

/// A box of the dialog, with the key that it is kept under.
struct FieldKey {
  const char* key;
  const char* box;
  const char* letter;            ///< of the dimension in the pictures; empty for the two of the fibres
  const char* filter;            ///< of its key strokes
  double SectionShape::*number;  ///< null for the number of fibres, which is an integer
  double defaultValue;
};

inline constexpr std::size_t kNumberField = 11;
inline constexpr int kFibresStep = 5;  ///< of the up-down control
inline constexpr std::size_t kHeightField = 12;
/// In the order of the keys. A depth may lie above the level 0.
inline constexpr std::array<FieldKey, 13> kFields = {{
    {"Whole_A", "Text11_0", "A", "Double", &SectionShape::A, 0},
    {"Whole_B", "Text11_1", "B", "Double", &SectionShape::B, 0},
    {"Whole_C", "Text11_2", "C", "Double", &SectionShape::C, 0},
    {"Whole_D", "Text11_3", "D", "Double", &SectionShape::D, 0},
    {"Whole_E", "Text11_4", "E", "Double", &SectionShape::E, 0},
    {"Whole_F", "Text11_5", "F", "Double", &SectionShape::F, 0},
    {"Whole_P", "Text13_0", "P", "-Double", &SectionShape::P, 0},
    {"Hollow_a", "Text12_0", "a", "Double", &SectionShape::a, 0},
    {"Hollow_b", "Text12_1", "b", "Double", &SectionShape::b, 0},
    {"Hollow_c", "Text12_2", "c", "Double", &SectionShape::c, 0},
    {"Hollow_p", "Text13_1", "p", "-Double", &SectionShape::p, 0},
    {"Fibers_in_Number", "Text21", "", "Integer", nullptr, 100},
    {"Fibers_in_Height", "Text22", "", "-Double", &SectionShape::fibreHeight, 10},
}};

}  // namespace torvik::wizard
