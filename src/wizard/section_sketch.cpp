// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/section_sketch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::wizard {

namespace {

constexpr std::size_t kMostStripsDrawn = 2000;

bool isStack(const SectionShape& s) {
  return s.whole == WholeShape::ThreeRectangles;
}

bool hasHollow(const SectionShape& s) {
  return !isStack(s) && s.hollow != HollowShape::None;
}

void addRectangle(SketchLine& line, double left, double right, double top, double bottom) {
  line.insert(line.end(), {SketchPoint{right, -top}, SketchPoint{right, -bottom}, SketchPoint{left, -bottom},
                           SketchPoint{left, -top}, SketchPoint{right, -top}, std::nullopt});
}

SketchLine trapezium(double w1, double w2, double h, double top) {
  return {SketchPoint{w1 / 2, -top}, SketchPoint{w2 / 2, -top - h}, SketchPoint{-w2 / 2, -top - h},
          SketchPoint{-w1 / 2, -top}, SketchPoint{w1 / 2, -top}};
}

SketchLine ellipse(double w, double h, double top) {
  constexpr int kPieces = 96;
  SketchLine line;
  for (int i = 0; i <= kPieces; ++i) {
    const double angle = 2 * std::numbers::pi * i / kPieces;
    line.emplace_back(SketchPoint{w / 2 * std::sin(angle), -top - h / 2 + h / 2 * std::cos(angle)});
  }
  return line;
}

SketchLine stack(const SectionShape& s) {
  const struct { double width, height; } pieces[] = {{s.A, s.D}, {s.B, s.E}, {s.C, s.F}};
  SketchLine right;
  double depth = s.P;
  for (const auto& piece : pieces) {
    right.emplace_back(SketchPoint{piece.width / 2, -depth});
    depth += piece.height;
    right.emplace_back(SketchPoint{piece.width / 2, -depth});
  }
  SketchLine line = right;
  for (auto point = right.rbegin(); point != right.rend(); ++point) {
    line.emplace_back(SketchPoint{-(*point)->x, (*point)->y});
  }
  line.push_back(right.front());
  return line;
}

SketchLine wholeLine(const SectionShape& s) {
  if (isStack(s)) return stack(s);
  return s.whole == WholeShape::Ellipse ? ellipse(s.A, s.C, s.P) : trapezium(s.A, s.B, s.C, s.P);
}

SketchLine hollowLine(const SectionShape& s) {
  if (!hasHollow(s)) return {};
  return s.hollow == HollowShape::Ellipse ? ellipse(s.a, s.c, s.p) : trapezium(s.a, s.b, s.c, s.p);
}

SketchLine stripLines(const SectionShape& s, const std::vector<model::SolidObject>& rows) {
  SketchLine line;
  for (const model::SolidObject& row : rows) {
    const double top = row.Depth - row.Height / 2;
    const double bottom = row.Depth + row.Height / 2;
    if (row.Number == 1) {
      addRectangle(line, -row.Width / 2, row.Width / 2, top, bottom);
      continue;
    }
    const double edge = wholeWidth(s, row.Depth) / 2;
    addRectangle(line, -edge, -edge + row.Width, top, bottom);
    addRectangle(line, edge - row.Width, edge, top, bottom);
  }
  return line;
}

/// The first dimension that is still to be entered; empty where none is.
std::string missingDimension(const SectionShape& s) {
  if (isStack(s)) {
    if (s.D + s.E + s.F <= 0) return "Enter the heights D, E and F.";
    return s.A + s.B + s.C > 0 ? "" : "Enter the widths A, B and C.";
  }
  const bool taper = s.whole == WholeShape::Tapered;
  if (taper ? s.A + s.B <= 0 : s.A <= 0) return taper ? "Enter the widths A and B." : "Enter the width A.";
  if (s.C <= 0) return "Enter the height C.";
  if (!hasHollow(s)) return "";
  if (s.hollow == HollowShape::Tapered ? s.a + s.b <= 0 : s.a <= 0) return "Enter the width of the hollow.";
  return s.c > 0 ? "" : "Enter the height c of the hollow.";
}

/// Why a section of which no dimension is missing gives no rows.
std::string reasonOf(const SectionShape& s) {
  if (s.mode == FibreMode::InHeight) {
    if (s.fibreHeight <= 0) return "Enter a fiber height above 0.";
    if (wholeHeight(s) / s.fibreHeight > model::kMaxRows) return "Too many fibers: enter a greater height.";
  }
  if (hasHollow(s)) {
    if (s.p < s.P) return "Invalid section: the hollow begins above the whole.";
    if (s.p + s.c > s.P + s.C) return "Invalid section: the hollow ends below the whole.";
  }
  if (s.mode == FibreMode::InHeight && s.fibreHeight > wholeHeight(s)) {
    return "No fibers: each part is lower than a fiber.";
  }
  return hasHollow(s) ? "Invalid section: the hollow is wider than the whole." : "Invalid section.";
}

/// A length to the micrometre.
std::string lengthText(double length) {
  return base::plainText(std::round(length * 1000) / 1000);
}

/// "100 fibers of 5 mm (pairs beside the hollow: 50)."
std::string countText(const SectionShape& s, const std::vector<model::SolidObject>& rows) {
  const auto lower = [](const auto& a, const auto& b) { return a.Height < b.Height; };
  const auto [lowest, highest] = std::ranges::minmax_element(rows, lower);
  const std::string least = lengthText(lowest->Height);
  const std::string most = lengthText(highest->Height);
  std::string text = base::plainText(static_cast<long long>(rows.size())) +
                     (rows.size() == 1 ? " fiber of " : " fibers of ") + least +
                     (least == most ? "" : " to " + most) + " mm";
  const auto pairs = std::ranges::count_if(rows, [](const auto& row) { return row.Number == 2; });
  if (pairs > 0) {
    text += " (pairs beside the hollow: " + base::plainText(static_cast<long long>(pairs)) + ")";
  }
  double filled = 0;
  for (const model::SolidObject& row : rows) filled += row.Height;
  const std::string gap = lengthText(wholeHeight(s) - filled);
  if (gap != "0") text += ". " + gap + " mm stay empty: a part lower than a fiber gets none";
  return text + ".";
}

}  // namespace

SectionSketch sketchSection(const SectionShape& shape) {
  SectionSketch sketch{wholeLine(shape), hollowLine(shape), {}, {}};
  model::ObjectTables cut;
  try {
    // Defaults of rows have no part in the geometry.
    if (!GenerateFibers(shape, cut, base::ProfileFile())) cut.Solids.clear();
    if (cut.Solids.size() <= kMostStripsDrawn) sketch.strips = stripLines(shape, cut.Solids);
  } catch (const base::NumericFault&) {
    cut.Solids.clear();
  }
  const std::string missing = missingDimension(shape);
  if (cut.Solids.empty())
    sketch.summary = missing.empty() ? reasonOf(shape) : missing;
  else
    sketch.summary = countText(shape, cut.Solids) + (missing.empty() ? "" : " " + missing);
  return sketch;
}

}  // namespace torvik::wizard
