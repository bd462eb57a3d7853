// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/section_sketch.h"

#include <gtest/gtest.h>

#include "wizard/shapes.h"

namespace torvik::wizard {
namespace {

/// Area within the closed figures of a line, and the extent that they reach to the right and down.
struct Measure {
  double area = 0, right = 0, down = 0;
};
Measure measure(const SketchLine& line) {
  Measure result;
  for (std::size_t i = 0; i + 1 < line.size(); ++i) {
    if (!line[i] || !line[i + 1]) continue;
    result.area += (line[i]->y * line[i + 1]->x - line[i]->x * line[i + 1]->y) / 2;
    result.right = std::max(result.right, line[i]->x);
    result.down = std::max(result.down, -line[i]->y);
  }
  return {std::abs(result.area), result.right, result.down};
}

TEST(SectionSketch, LinesStandWhereTheSectionIs) {
  const struct {
    SectionShape shape;
    Measure whole, hollow, strips;
  } rows[] = {
      {{kTapered, kTaper, 60, 80, 90, 0, 0, 0, 5, 20, 40, 30, 35},
       {6300, 40, 95},
       {900, 20, 65},
       {5400, 40, 95}},
      {{kStack, kTaper, 60, 20, 40, 10, 50, 30, -5, 9, 9, 9, 9}, {2800, 30, 85}, {}, {2800, 30, 85}},
  };
  for (const auto& [shape, whole, hollow, strips] : rows) {
    const SectionSketch sketch = sketchSection(shape);
    for (const auto& [line, expected] : {std::pair(sketch.whole, whole), std::pair(sketch.hollow, hollow),
                                         std::pair(sketch.strips, strips)}) {
      EXPECT_NEAR(measure(line).area, expected.area, 1e-9);
      EXPECT_NEAR(measure(line).right, expected.right, 0.2);
      EXPECT_NEAR(measure(line).down, expected.down, 1e-9);
    }
  }
}

TEST(SectionSketch, SaysWhatWillComeOrWhatIsMissing) {
  const std::pair<SectionShape, const char*> rows[] = {
      {{kTapered, kNone, 300, 300, 500}, "100 fibers of 5 mm."},
      {{kTapered, kTaper, 40, 40, 60, 0, 0, 0, 5, 10, 10, 20, 25, kHeight, 1, 20},
       "3 fibers of 20 mm (pairs beside the hollow: 1)."},
      {{kStack, kTaper, 30, 10, 30, 100, 205, 95, 0, 9, 9, 9, 9, kHeight, 1, 100},
       "3 fibers of 100 to 102.5 mm. 95 mm stay empty: a part lower than a fiber gets none."},
      {{kTapered, kNone, 0, 0, 100}, "100 fibers of 1 mm. Enter the widths A and B."},
      {{kStack, kNone, 1, 1, 1}, "Enter the heights D, E and F."},
      {{kTapered, kTaper, 9, 9, 9}, "100 fibers of 0.09 mm. Enter the width of the hollow."},
      {{kTapered, kTaper, 9, 9, 9, 0, 0, 0, 2, 1, 1, 1, 1},
       "Invalid section: the hollow begins above the whole."},
      {{kTapered, kTaper, 9, 9, 9, 0, 0, 0, 2, 1, 1, 5, 8},
       "Invalid section: the hollow ends below the whole."},
      {{kTapered, kTaper, 9, 9, 9, 0, 0, 0, 2, 8, 10, 5, 3},
       "Invalid section: the hollow is wider than the whole."},
      {{kTapered, kNone, 9, 9, 9, 0, 0, 0, 0, 0, 0, 0, 0, kHeight, 1, 1e-4},
       "Too many fibers: enter a greater height."},
  };
  for (const auto& [shape, summary] : rows) EXPECT_EQ(sketchSection(shape).summary, summary);
}

}  // namespace
}  // namespace torvik::wizard
