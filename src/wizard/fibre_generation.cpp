// SPDX-License-Identifier: GPL-3.0-or-later
#include "wizard/fibre_generation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "base/errors.h"
#include "base/fault.h"
#include "model/default_rows.h"

namespace torvik::wizard {

namespace {

double square(double x) {
  return x * x;
}

[[noreturn]] void failUnknown(const char* what, int index) {
  throw base::InternalError(base::kImpossibleCase, what + std::to_string(index));
}

/// A stretch of the height that is cut by itself.
struct Zone {
  double top;
  double height;
  bool besideHollow = false;
  double width = 0;  ///< of a stacked rectangle
};

std::vector<Zone> zonesOf(const SectionShape& s) {
  if (s.whole == WholeShape::ThreeRectangles) {
    return {{s.P, s.D, false, s.A}, {s.P + s.D, s.E, false, s.B}, {s.P + s.D + s.E, s.F, false, s.C}};
  }
  if (s.hollow == HollowShape::None) return {{s.P, s.C}};
  return {{s.P, s.p - s.P}, {s.p, s.c, true}, {s.p + s.c, (s.P + s.C) - (s.p + s.c)}};
}

double targetHeight(const SectionShape& s) {
  switch (s.mode) {
    case FibreMode::InNumber:
      return base::divide(wholeHeight(s), s.fibreNumber, "strip height");
    case FibreMode::InHeight:
      return s.fibreHeight;
  }
  failUnknown("fibre mode ", static_cast<int>(s.mode));
}

double hollowWidth(const SectionShape& s, double depth) {
  switch (s.hollow) {
    case HollowShape::Tapered:
      return TaperWidth(s.a, s.b, s.c, s.p, depth);
    case HollowShape::Ellipse:
      return EllipseWidth(s.a, s.c, s.p, depth);
    case HollowShape::None:
      break;
  }
  failUnknown("hollow shape ", static_cast<int>(s.hollow));
}

/// Strips of a zone, rounded down, before it is known whether a table can hold so many.
double stripCount(const Zone& zone, double target) {
  if (target == 0) return 0;
  return std::floor(base::divide(zone.height, target, "number of strips"));
}

/// Takes back the rows of a run that does not succeed.
class AddedRows {
 public:
  explicit AddedRows(std::vector<model::SolidObject>& rows) : m_rows(rows), m_before(rows.size()) {}
  ~AddedRows() {
    if (!m_kept) m_rows.resize(m_before);
  }
  AddedRows(const AddedRows&) = delete;
  AddedRows& operator=(const AddedRows&) = delete;
  void keep() { m_kept = true; }

 private:
  std::vector<model::SolidObject>& m_rows;
  std::size_t m_before;
  bool m_kept = false;
};

/// @return false at a negative width
bool fillStrips(const SectionShape& shape, const Zone& zone, std::span<model::SolidObject> strips) {
  const auto n = static_cast<double>(strips.size());
  double k = 0;
  for (model::SolidObject& strip : strips) {
    strip.Height = zone.height / n;
    strip.Depth = base::finite(zone.top + (k + 0.5) * strip.Height, "strip depth");
    strip.Width = shape.whole == WholeShape::ThreeRectangles ? zone.width : wholeWidth(shape, strip.Depth);
    strip.Number = zone.besideHollow ? 2 : 1;
    if (zone.besideHollow) strip.Width = (strip.Width - hollowWidth(shape, strip.Depth)) / 2;
    if (strip.Width < 0) return false;
    strip.Area = base::finite(strip.Width * strip.Height, "strip area");
    k += 1;
  }
  return true;
}

}  // namespace

double TaperWidth(double w1, double w2, double h, double top, double d) {
  return base::finite(w1 + base::divide(w2 - w1, h, "width of a taper") * (d - top), "width of a taper");
}

double EllipseWidth(double w, double h, double top, double d) {
  constexpr const char* kWhere = "width of an ellipse";
  const double radicand =
      square(w / 2) - base::divide(square(w / 2), square(h / 2), kWhere) * square(h / 2 - (d - top));
  if (radicand < 0) throw base::NumericFault(base::NumericFault::Kind::InvalidOperation, kWhere);
  return base::finite(2 * std::sqrt(radicand), kWhere);
}

double wholeHeight(const SectionShape& shape) {
  return shape.whole == WholeShape::ThreeRectangles ? shape.D + shape.E + shape.F : shape.C;
}

double wholeWidth(const SectionShape& shape, double d) {
  switch (shape.whole) {
    case WholeShape::Tapered:
      return TaperWidth(shape.A, shape.B, shape.C, shape.P, d);
    case WholeShape::Ellipse:
      return EllipseWidth(shape.A, shape.C, shape.P, d);
    case WholeShape::ThreeRectangles:
      break;
  }
  failUnknown("whole shape ", static_cast<int>(shape.whole));
}

bool GenerateFibers(const SectionShape& shape, model::ObjectTables& tables,
                    const base::ProfileFile& settings) {
  const double target = targetHeight(shape);
  const std::vector<Zone> zones = zonesOf(shape);
  std::vector<double> counts;
  for (const Zone& zone : zones) counts.push_back(stripCount(zone, target));
  if (std::ranges::any_of(counts, [](double count) { return count < 0; })) return false;

  AddedRows added(tables.Solids);
  for (std::size_t i = 0; i < zones.size(); ++i) {
    if (counts[i] > model::kMaxRows) {
      throw base::NumericFault(base::NumericFault::Kind::Overflow, "number of strips");
    }
    const std::size_t first = tables.Solids.size();
    model::AddDefaultRows(tables, model::ObjectKind::Solid, static_cast<int>(counts[i]), settings);
    if (!fillStrips(shape, zones[i], std::span(tables.Solids).subspan(first))) return false;
  }
  added.keep();
  return true;
}

}  // namespace torvik::wizard
