// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/fibre_generation.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <span>

#include "base/message_of.h"
#include "wizard/shapes.h"

namespace torvik::wizard {
namespace {

/// `count` trapezia of width a at the top and b at the bottom, or ellipses where b is -1. Strips of height s
/// have the right area, but where the width changes by m a depth, m s^3 / 12 too little of the first moment,
/// and that times twice its depth of the second.
struct Piece {
  double count, a, b, h, top, s = 0;
};

/// Area, first and second moment of area about depth 0.
std::array<double, 3> momentsOf(const std::vector<Piece>& pieces) {
  std::array<double, 3> sum{};
  for (const auto& [count, a, b, h, top, s] : pieces) {
    const double area = b < 0 ? std::numbers::pi * a * h / 4 : h * (a + b) / 2;
    const double depth = top + (b < 0 ? h / 2 : h * (a + 2 * b) / (3 * (a + b)));
    const double inertia =
        b < 0 ? area * h * h / 16 : h * h * h * (a * a + 4 * a * b + b * b) / (36 * (a + b));
    const double lack = (b - a) * s * s / 12;
    sum[0] += count * area;
    sum[1] += count * (area * depth - lack);
    sum[2] += count * (inertia + area * depth * depth - lack * 2 * (top + h / 2));
  }
  return sum;
}

TEST(GenerateFibers, AgreesWithClosedForms) {
  const std::pair<SectionShape, std::vector<Piece>> rows[] = {
      {{kTapered, kNone, 300, 300, 600, 0, 0, 0, -50}, {{1, 300, 300, 600, -50}}},
      {{kTapered, kNone, 400, 0, 300, 0, 0, 0, 0, 0, 0, 0, 0, kNumber, 10}, {{1, 400, 0, 300, 0, 30}}},
      {{kStack, kNone, 6, 2, 4, 10, 70, 20, 9}, {{1, 6, 6, 10, 9}, {1, 2, 2, 70, 19}, {1, 4, 4, 20, 89}}},
      {{kTapered, kTaper, 80, 60, 90, 0, 0, 0, 5, 30, 40, 60, 20, kNumber, 30},
       {{1, 80, 60, 90, 5, 3}, {-1, 30, 40, 60, 20, 3}}},
      {{kOval, kNone, 300, 0, 500, 0, 0, 0, 20}, {{1, 300, -1, 500, 20}}},
      {{kOval, kEllipse, 10, 0, 10, 0, 0, 0, 0, 6, 0, 6, 2}, {{1, 10, -1, 10, 0}, {-1, 6, -1, 6, 2}}},
  };
  for (const auto& [shape, pieces] : rows) {
    model::ObjectTables tables;
    ASSERT_TRUE(GenerateFibers(shape, tables, base::ProfileFile()));
    std::vector<Piece> strips;
    for (const auto& row : tables.Solids) {
      strips.push_back({1. * row.Number, row.Width, row.Width, row.Height, row.Depth - row.Height / 2});
      EXPECT_EQ(row.Area, row.Width * row.Height);
    }
    // An ellipse loses most at its ends: of n strips less than 1.2 / n^1.5.
    const double error = shape.whole == kOval ? 2.6e-3 : 1e-12;
    for (const std::size_t i : {0U, 1U, 2U})
      EXPECT_NEAR(momentsOf(strips).at(i) / momentsOf(pieces).at(i), 1, error);
  }
}

/// The rows behind the one there is, "pieces x width x height @ depth", or why there are none.
std::string outcomeOf(const SectionShape& shape) {
  model::ObjectTables tables;
  tables.Solids.resize(1);
  std::string rows;
  bool valid = false;
  const auto generate = [&] { return valid = GenerateFibers(shape, tables, base::ProfileFile()); };
  const std::string message = tests::messageOf(generate);
  for (const auto& row : std::span(tables.Solids).subspan(1))
    rows += fmt::format("{}x{}x{}@{} ", row.Number, row.Width, row.Height, row.Depth);
  return valid ? rows : rows + (message == "no error" ? "invalid" : message);
}

TEST(GenerateFibers, CutsEachZone) {
  const std::pair<SectionShape, const char*> rows[] = {
      {{kStack, kEllipse, 3, 1, 2, 2, 2, 4, 0, 1, 0, 1, 1, kNumber, 4}, "1x3x2@1 1x1x2@3 1x2x2@5 1x2x2@7 "},
      {{kTapered, kNone, 30, 30, 100, 0, 0, 0, 0, 0, 0, 0, 0, kHeight, 1, 60}, "1x30x100@50 "},  // stretched
      {{kStack, kNone, 30, 10, 30, 100, 200, 100, 0, 0, 0, 0, 0, kHeight, 1, 101}, "1x10x200@200 "},  // gaps
      {{kStack, kNone, 30, 9, 0, 2, 0, 2, 0, 0, 0, 0, 0, kHeight, 1, 2}, "1x30x2@1 1x0x2@3 "},
      {{kStack, kNone, 30, 9, 20, 2, 2, 2, 0, 0, 0, 0, 0, kHeight, 1, 0}, ""},
      {{kStack, kNone, 30, 9, 20, 2, 2, 2, 0, 0, 0, 0, 0, kHeight, 1, -1}, "invalid"},
      {{kStack, kNone, 30, 9, -1, 2, 2, 2, 0, 0, 0, 0, 0, kHeight, 1, 1}, "invalid"},
      {{kStack, kNone, 1, 1, 1, 100, 200, -1, 0, 0, 0, 0, 0, kHeight, 1, 1e-5},
       "invalid"},  // others too fine
      {{kTapered, kTaper, 40, 40, 60, 0, 0, 0, 5, 10, 10, 20, 25, kHeight, 1, 20},
       "1x40x20@15 2x15x20@35 1x40x20@55 "},
      {{kTapered, kTaper, 40, 40, 40, 0, 0, 0, 5, 10, 10, 20, 5, kHeight, 1, 20}, "2x15x20@15 1x40x20@35 "},
      {{kTapered, kTaper, 40, 40, 40, 0, 0, 0, 5, 10, 10, 20, 4, kHeight, 1, 1}, "invalid"},
      {{kTapered, kEllipse, 40, 40, 40, 0, 0, 0, 5, 10, 0, 20, 26, kHeight, 1, 1}, "invalid"},
      {{kTapered, kTaper, 40, 40, 40, 0, 0, 0, 5, 10, 41, 20, 15, kHeight, 1, 0.1}, "invalid"},
      {{kOval, kNone, 50, 0, 30, 0, 0, 0, 0, 0, 0, 0, 0, kNumber, 0}, "strip height: division by zero"},
      {{kTapered, kNone, 1, 1, 32767, 0, 0, 0, 0, 0, 0, 0, 0, kHeight, 1, 1}, "number of rows: overflow"},
      {{kTapered, kNone, 1, 1, 1e300, 0, 0, 0, 0, 0, 0, 0, 0, kHeight, 1, 1}, "number of strips: overflow"},
      {{kTapered, kNone, 1e200, 1e200, 1e200}, "strip area: overflow"},
  };
  for (const auto& [shape, outcome] : rows) EXPECT_EQ(outcomeOf(shape), outcome);
  EXPECT_THROW(outcomeOf({static_cast<WholeShape>(3), kNone, 1, 1, 1}), base::InternalError);
}

TEST(GenerateFibers, RowsStartAsDefaultRows) {
  const auto settings =
      base::ProfileFile::ofText("[Solid]\nType=Mine\nNumber=3\nWidth=7\nDepth=8\n", "a.ini");
  model::ObjectTables tables;
  GenerateFibers({kTapered, kTaper, 30, 30, 30, 0, 0, 0, 0, 10, 10, 10, 10, kNumber, 3}, tables, settings);
  for (const auto& row : tables.Solids)
    EXPECT_EQ(row.Type + std::to_string(row.Number), row.Depth == 15 ? "Mine2" : "Mine1");
}

TEST(Widths, AreFaultsWhereThereAreNone) {
  EXPECT_EQ(tests::messageOf([] { return EllipseWidth(1, 1, 0, 1.1); }),
            "width of an ellipse: invalid operation");
  EXPECT_EQ(tests::messageOf([] { return TaperWidth(1, 1, 0, 0, 0); }), "width of a taper: division by zero");
}

}  // namespace
}  // namespace torvik::wizard
