// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "grid/object_grid.h"

namespace torvik::grid {

constexpr auto kBeam = ObjectKind::Beam;
constexpr auto kSolid = ObjectKind::Solid;
constexpr auto kBar = ObjectKind::Bar;
constexpr auto kTendon = ObjectKind::Tendon;
constexpr auto kForce = ObjectKind::AxialForce;

inline Selection at(int row, int column) {
  return {row, column, row, column};
}

inline Selection rows(int first, int last) {
  return {first, 0, last, 0};
}

/// "KEY=TEXT;KEY=TEXT": visit(key, text)
void forPairs(std::string_view pairs, const auto& visit) {
  while (!pairs.empty()) {
    const std::string_view pair = pairs.substr(0, pairs.find(';'));
    pairs.remove_prefix(std::min(pair.size() + 1, pairs.size()));
    visit(pair.substr(0, pair.find('=')), std::string(pair.substr(pair.find('=') + 1)));
  }
}

inline void fillRow(ObjectGrid& grid, int row, std::string_view pairs) {
  forPairs(pairs, [&](std::string_view key, const std::string& text) {
    grid.paste(at(row, columnOf(grid.kind(), key)), text);
  });
}

/// All that a grid shows.
inline std::string pictureOf(const ObjectGrid& grid) {
  std::string picture;
  for (int row = 0; row < grid.rowCount(); ++row) {
    picture += grid.number(row) + ":" + grid.clip({row, 0, row, grid.columnCount() - 1}) + "\n";
  }
  return picture;
}

}  // namespace torvik::grid
