// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/fibre_generation.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "base/errors.h"

namespace torvik::wizard {
namespace {

using Kind = base::NumericFault::Kind;

SectionShape inHeight(SectionShape shape, double fibreHeight) {
  shape.mode = FibreMode::InHeight;
  shape.fibreHeight = fibreHeight;
  return shape;
}
SectionShape inNumber(SectionShape shape, int fibreNumber) {
  shape.mode = FibreMode::InNumber;
  shape.fibreNumber = fibreNumber;
  return shape;
}
SectionShape taper(double A, double B, double C, double P) {
  return {.A = A, .B = B, .C = C, .P = P};
}
SectionShape ellipse(double A, double C, double P) {
  return {.whole = WholeShape::Ellipse, .A = A, .C = C, .P = P};
}
SectionShape stack(double A, double B, double C, double D, double E, double F, double P) {
  return {.whole = WholeShape::ThreeRectangles, .A = A, .B = B, .C = C, .D = D, .E = E, .F = F, .P = P};
}
SectionShape with(SectionShape shape, HollowShape hollow, double a, double b, double c, double p) {
  shape.hollow = hollow;
  shape.a = a;
  shape.b = b;
  shape.c = c;
  shape.p = p;
  return shape;
}
constexpr auto kTaper = HollowShape::Tapered;
constexpr auto kEllipse = HollowShape::Ellipse;

/// Area, first and second moment of area about depth 0.
struct Moments {
  double area = 0;
  double first = 0;
  double second = 0;
  Moments operator+(const Moments& b) const { return {area + b.area, first + b.first, second + b.second}; }
  Moments operator-(const Moments& b) const { return {area - b.area, first - b.first, second - b.second}; }
};

/// From an area and the inertia about its centroid at that depth.
Moments about(double area, double depth, double inertia) {
  return {area, area * depth, inertia + area * depth * depth};
}
Moments ofRectangle(double b, double h, double top) {
  return about(b * h, top + h / 2, b * h * h * h / 12);
}
Moments ofEllipse(double w, double h, double top) {
  constexpr double kPi = std::numbers::pi;
  return about(kPi * w * h / 4, top + h / 2, kPi * w * h * h * h / 64);
}
/// Less what strips of height s lack: where the width changes by m a depth, each has the right area, but
/// m s^3 / 12 too little of the first moment, and that times twice its depth of the second.
Moments ofTrapezium(double a, double b, double h, double top, double s) {
  const double centroid = top + h * (a + 2 * b) / (3 * (a + b));
  const double inertia = h * h * h * (a * a + 4 * a * b + b * b) / (36 * (a + b));
  const double lack = (b - a) * s * s / 12;
  return about(h * (a + b) / 2, centroid, inertia) - Moments{0, lack, lack * 2 * (top + h / 2)};
}

TEST(GenerateFibers, AgreesWithClosedForms) {
  /// Relative. An ellipse loses most at its ends: of n strips less than 1.2 / n^1.5.
  const double exact = 1e-12;
  const auto ofEllipseIn = [](int n) { return 1.2 * std::pow(n, -1.5); };
  struct Case {
    const char* name;
    SectionShape shape;
    Moments expected;
    double bound;
  };
  const Case cases[] = {
      {"rectangle", taper(300, 300, 600, -50), ofRectangle(300, 600, -50), exact},
      {"one strip", inNumber(taper(300, 300, 600, 0), 1), ofRectangle(300, 600, 0), exact},
      {"trapezium", inNumber(taper(200, 500, 600, 100), 20), ofTrapezium(200, 500, 600, 100, 30), exact},
      {"triangle", inNumber(taper(400, 0, 300, 0), 10), ofTrapezium(400, 0, 300, 0, 30), exact},
      {"ellipse", ellipse(300, 500, 20), ofEllipse(300, 500, 20), ofEllipseIn(100)},
      {"circle", inNumber(ellipse(400, 400, 0), 500), ofEllipse(400, 400, 0), ofEllipseIn(500)},
      {"three rectangles", stack(600, 150, 400, 120, 700, 180, 10),
       ofRectangle(600, 120, 10) + ofRectangle(150, 700, 130) + ofRectangle(400, 180, 830), exact},
      {"box", with(taper(800, 800, 900, 0), kTaper, 500, 500, 600, 200),
       ofRectangle(800, 900, 0) - ofRectangle(500, 600, 200), exact},
      {"tapered box", inNumber(with(taper(800, 600, 900, 50), kTaper, 300, 400, 600, 200), 30),
       ofTrapezium(800, 600, 900, 50, 30) - ofTrapezium(300, 400, 600, 200, 30), exact},
      {"pipe", with(ellipse(1000, 1000, 0), kEllipse, 600, 0, 600, 200),
       ofEllipse(1000, 1000, 0) - ofEllipse(600, 600, 200), ofEllipseIn(60)},
  };
  for (const Case& c : cases) {
    model::ObjectTables tables;
    ASSERT_TRUE(GenerateFibers(c.shape, tables, base::ProfileFile())) << c.name;
    Moments sum;
    for (const model::SolidObject& row : tables.Solids) {
      const Moments piece = ofRectangle(row.Width, row.Height, row.Depth - row.Height / 2);
      EXPECT_EQ(row.Area, row.Width * row.Height) << c.name;
      for (int i = 0; i < row.Number; ++i) sum = sum + piece;
    }
    EXPECT_NEAR(sum.area / c.expected.area, 1, c.bound) << c.name;
    EXPECT_NEAR(sum.first / c.expected.first, 1, c.bound) << c.name;
    EXPECT_NEAR(sum.second / c.expected.second, 1, c.bound) << c.name;
  }
}

/// Runs of like rows: how many, pieces, width, height, first and last depth.
std::string runsOf(const std::vector<model::SolidObject>& rows) {
  std::string text;
  for (std::size_t first = 0, next = 0; first < rows.size(); first = next) {
    const model::SolidObject& row = rows[first];
    while (next < rows.size() && rows[next].Width == row.Width && rows[next].Height == row.Height) ++next;
    text += fmt::format("{}: {} of {} x {} at {} to {}; ", next - first, row.Number, row.Width, row.Height,
                        row.Depth, rows[next - 1].Depth);
  }
  return text;
}

TEST(GenerateFibers, CutsEachZone) {
  const SectionShape tee = stack(300, 100, 300, 100, 200, 100, 0);
  const SectionShape whole = taper(400, 400, 600, 50);
  const char* const cutTee =
      "10: 1 of 300 x 10 at 5 to 95; 20: 1 of 100 x 10 at 105 to 295; 10: 1 of 300 x 10 at 305 to 395; ";
  struct Case {
    const char* name;
    SectionShape shape;
    std::optional<std::string> rows;  ///< none: an invalid section
  };
  const Case cases[] = {
      {"three rectangles", inHeight(tee, 10), cutTee},
      {"three rectangles have no hollow", inHeight(with(tee, kEllipse, 50, 0, 50, 10), 10), cutTee},
      {"stretched to the zone", inHeight(taper(300, 300, 100, 0), 95), "1: 1 of 300 x 100 at 50 to 50; "},
      {"a low zone is a gap", inHeight(tee, 101), "1: 1 of 100 x 200 at 200 to 200; "},
      {"a zone of height 0", inHeight(stack(300, 9, 200, 100, 0, 100, 0), 50),
       "2: 1 of 300 x 50 at 25 to 75; 2: 1 of 200 x 50 at 125 to 175; "},
      {"in number, over the whole height", inNumber(tee, 40), cutTee},
      {"in number, rounded down", inNumber(stack(300, 100, 300, 90, 220, 90, 0), 5),
       "1: 1 of 300 x 90 at 45 to 45; 2: 1 of 100 x 110 at 145 to 255; 1: 1 of 300 x 90 at 355 to 355; "},
      {"higher than the section", inHeight(tee, 1000), ""},
      {"strip height 0", inHeight(tee, 0), ""},
      {"section height 0", inNumber(taper(300, 300, 0, 0), 10), ""},
      {"strip height negative", inHeight(tee, -10), std::nullopt},
      {"number negative", inNumber(tee, -10), std::nullopt},
      {"negative zone", inHeight(stack(300, 100, 300, 100, 200, -1, 0), 10), std::nullopt},
      {"negative zone, others too fine", inHeight(stack(1, 1, 1, 100, 200, -1, 0), 1e-5), std::nullopt},
      {"negative width", inHeight(stack(300, 100, -1, 100, 200, 100, 0), 10), std::nullopt},
      {"width 0", inHeight(stack(300, 0, 300, 10, 20, 10, 0), 10),
       "1: 1 of 300 x 10 at 5 to 5; 2: 1 of 0 x 10 at 15 to 25; 1: 1 of 300 x 10 at 35 to 35; "},
      {"pairs beside a hollow", inHeight(with(whole, kTaper, 100, 100, 200, 150), 100),
       "1: 1 of 400 x 100 at 100 to 100; 2: 2 of 150 x 100 at 200 to 300; 3: 1 of 400 x 100 at 400 to 600; "},
      {"hollow at the top", inHeight(with(whole, kTaper, 100, 100, 200, 50), 100),
       "2: 2 of 150 x 100 at 100 to 200; 4: 1 of 400 x 100 at 300 to 600; "},
      {"hollow at the bottom", inHeight(with(whole, kTaper, 100, 100, 200, 450), 100),
       "4: 1 of 400 x 100 at 100 to 400; 2: 2 of 150 x 100 at 500 to 600; "},
      {"hollow above the top", inHeight(with(whole, kTaper, 100, 100, 200, 49), 100), std::nullopt},
      {"hollow below the bottom", inHeight(with(whole, kEllipse, 100, 0, 200, 451), 100), std::nullopt},
      {"hollow wider at one depth", inHeight(with(whole, kTaper, 100, 410, 200, 150), 10), std::nullopt},
      {"hollow as wide", inHeight(with(whole, kTaper, 400, 400, 600, 50), 300),
       "2: 2 of 0 x 300 at 200 to 500; "},
      {"taper", inNumber(taper(100, 200, 20, 1000), 2),
       "1: 1 of 125 x 10 at 1005 to 1005; 1: 1 of 175 x 10 at 1015 to 1015; "},
      {"ellipse", inNumber(ellipse(50, 30, 0), 1), "1: 1 of 50 x 30 at 15 to 15; "},
  };
  for (const Case& c : cases) {
    model::ObjectTables tables;
    tables.Solids.resize(2);
    EXPECT_EQ(GenerateFibers(c.shape, tables, base::ProfileFile()), c.rows.has_value()) << c.name;
    ASSERT_GE(tables.Solids.size(), 2U) << c.name;
    tables.Solids.erase(tables.Solids.begin(), tables.Solids.begin() + 2);
    EXPECT_EQ(runsOf(tables.Solids), c.rows.value_or("")) << c.name;
  }
}

std::optional<Kind> faultOf(const auto& operation) {
  try {
    operation();
  } catch (const base::NumericFault& fault) {
    return fault.kind();
  }
  return std::nullopt;
}

TEST(GenerateFibers, FaultsLeaveNoRows) {
  struct Case {
    const char* name;
    SectionShape shape;
    Kind kind;
  };
  const Case cases[] = {
      {"number 0", inNumber(taper(1, 1, 1, 0), 0), Kind::DivisionByZero},
      {"a row too many with the one there is", inHeight(taper(1, 1, 32767, 0), 1), Kind::Overflow},
      {"zones too many together", inHeight(stack(1, 1, 1, 20000, 20000, 0, 0), 1), Kind::Overflow},
      {"strips beyond any integer", inHeight(taper(1, 1, 1e300, 0), 10), Kind::Overflow},
      {"area beyond a double", taper(1e200, 1e200, 1e200, 0), Kind::Overflow},
  };
  model::ObjectTables tables;
  tables.Solids.resize(1);
  const base::ProfileFile settings;
  for (const Case& c : cases) {
    EXPECT_EQ(faultOf([&] { GenerateFibers(c.shape, tables, settings); }), c.kind) << c.name;
    EXPECT_EQ(tables.Solids.size(), 1U) << c.name;
  }
  SectionShape unknown = taper(1, 1, 1, 0);
  unknown.whole = static_cast<WholeShape>(3);
  EXPECT_THROW(GenerateFibers(unknown, tables, settings), base::InternalError);
  EXPECT_EQ(tables.Solids.size(), 1U);
}

TEST(GenerateFibers, RowsStartAsDefaultRows) {
  const base::ProfileFile settings = base::ProfileFile::ofText(
      "[Solid]\nUse=0\nType=Mine\nNumber=3\nWidth=7\nDepth=8\nUltimateStress=50\n", "torvik.ini");
  const SectionShape shape = inNumber(taper(30, 30, 30, 0), 3);
  model::ObjectTables tables;
  EXPECT_TRUE(GenerateFibers(shape, tables, settings));
  EXPECT_TRUE(GenerateFibers(with(shape, kTaper, 10, 10, 10, 10), tables, settings));
  EXPECT_TRUE(GenerateFibers(with(inNumber(stack(30, 30, 30, 10, 10, 10, 0), 3), kTaper, 9, 9, 9, 9), tables,
                             settings));
  std::string numbers;
  for (const model::SolidObject& row : tables.Solids) {
    numbers += std::to_string(row.Number);
    EXPECT_EQ(row.Use, 0);
    EXPECT_EQ(row.Type, "Mine");
    EXPECT_EQ(row.UltimateStress, 50);
  }
  EXPECT_EQ(numbers, "111121111");  // `Number` is never that of the default row
}

TEST(Widths, AtAnyDepth) {
  EXPECT_EQ(TaperWidth(100, 200, 50, 10, 60), 200);
  EXPECT_EQ(TaperWidth(100, 200, 50, 10, 85), 250);
  EXPECT_EQ(EllipseWidth(100, 50, 10, 35), 100);
  EXPECT_EQ(EllipseWidth(100, 50, 10, 20), 80);
  EXPECT_EQ(EllipseWidth(100, 50, 10, 10), 0);
  EXPECT_EQ(faultOf([] { TaperWidth(1, 1, 0, 0, 0); }), Kind::DivisionByZero);
  EXPECT_EQ(faultOf([] { EllipseWidth(1, 0, 0, 0); }), Kind::DivisionByZero);
  EXPECT_EQ(faultOf([] { EllipseWidth(100, 50, 10, 9); }), Kind::InvalidOperation);
  EXPECT_EQ(faultOf([] { EllipseWidth(100, 50, 10, 61); }), Kind::InvalidOperation);
}

}  // namespace
}  // namespace torvik::wizard
