// SPDX-License-Identifier: GPL-3.0-or-later
#include "section/section_parameters.h"

#include "base/elementary.h"
#include "base/fault.h"

namespace torvik::section {

namespace {

using base::divide;
using base::finite;

double square(double x) {
  return base::power(x, 2);
}

/// Runs `add` as often as the row says: a row that stands for n objects is summed n times, one by one.
template <class Row, class Add>
void overEach(const std::vector<Row>& rows, Add&& add) {
  for (const Row& row : rows)
    for (int n = 0; n < row.Number; ++n) add(row);
}

void setModuli(SectionParameterRow& row, double centroid) {
  finite(row.yBottom, "y");
  row.ZTop = divide(row.I, centroid, "Z' = I / y' (y' is the centroid's depth from the datum)");
  row.ZBottom = divide(row.I, row.yBottom, "Z = I / y");
  row.EI = finite(row.E * row.I, "EI");
  row.EA = finite(row.E * row.A, "EA");
}

/// Names the row in a fault of its calculation.
template <class Calculation>
auto inRow(SectionParameterTable::Row row, Calculation&& calculation) {
  try {
    return calculation();
  } catch (const base::NumericFault& fault) {
    throw fault.within(std::string("row \"") + "gctde"[row] + "\"");
  }
}

}  // namespace

Extent beamExtent(const model::ObjectTables& job) {
  if (job.Beams.empty())
    throw base::NumericFault(base::NumericFault::Kind::IndexOutOfRange, "no beam in use");
  if (job.Solids.empty())
    throw base::NumericFault(base::NumericFault::Kind::IndexOutOfRange, "no solid in use");
  Extent extent{job.Solids.front().Depth, job.Solids.front().Depth};
  for (const model::SolidObject& solid : job.Solids) {
    if (solid.Depth - solid.Height / 2 < extent.BeamTop) extent.BeamTop = solid.Depth - solid.Height / 2;
    if (solid.Height / 2 + solid.Depth > extent.BeamBottom)
      extent.BeamBottom = solid.Height / 2 + solid.Depth;
  }
  finite(extent.BeamTop, "top edge of the section");
  finite(extent.BeamBottom, "bottom edge of the section");
  return extent;
}

namespace {

void workOut(const model::ObjectTables& job, SectionParameterResult& result) {
  using Table = SectionParameterTable;
  Table& table = result.table;
  SectionParameterRow& g = table.rows[Table::G];
  SectionParameterRow& c = table.rows[Table::C];
  SectionParameterRow& t = table.rows[Table::T];
  SectionParameterRow& d = table.rows[Table::D];
  SectionParameterRow& x = table.rows[Table::X];

  result.extent = beamExtent(job);
  const double bottom = result.extent->BeamBottom;

  // Gross solid. yTop holds the depth of the centroid from the datum until the end.
  inRow(Table::G, [&] {
    double S = 0;
    double Q = 0;
    overEach(job.Solids, [&](const model::SolidObject& solid) {
      g.A += solid.Area;
      S += solid.Area * solid.Depth;
      Q += solid.ElasticModulus * solid.Area;
    });
    g.yTop = divide(S, g.A, "y' = S / A");
    g.yBottom = bottom - g.yTop;
    g.E = divide(Q, g.A, "E = sum of E A / A");
    overEach(job.Solids, [&](const model::SolidObject& solid) {
      g.I += base::power(solid.Height, 3) * solid.Width / 12;
      g.I += square(solid.Depth - g.yTop) * solid.Area;
    });
    setModuli(g, g.yTop);
  });

  double B = 0, Bm = 0, Be = 0;
  overEach(job.Bars, [&](const model::BarObject& bar) {
    B += bar.Area;
    Bm += bar.Area * bar.Depth;
    Be += bar.Area * g.E;
  });
  double P = 0, H = 0, Pm = 0, Hm = 0, Pe = 0, He = 0;
  overEach(job.Tendons, [&](const model::TendonObject& tendon) {
    P += tendon.Area;
    H += tendon.SheathArea;
    Pm += tendon.Depth * tendon.Area;
    Hm += tendon.SheathDepth * tendon.SheathArea;
    Pe += tendon.Area * g.E;
    He += tendon.SheathArea * g.E;
  });

  inRow(Table::C, [&] {
    c.A = g.A - B - H;
    c.yTop = divide(g.A * g.yTop - Bm - Hm, c.A, "y' = (Ag y'g - Bm - Hm) / A");
    c.yBottom = bottom - c.yTop;
    c.E = divide(g.E * g.A - Be - He, c.A, "E = (Eg Ag - Be - He) / A");
  });
  inRow(Table::T, [&] {
    t.A = g.A - B - P;
    t.yTop = divide(g.A * g.yTop - Bm - Pm, t.A, "y' = (Ag y'g - Bm - Pm) / A");
    t.yBottom = bottom - t.yTop;
    t.E = divide(g.E * g.A - Be - Pe, t.A, "E = (Eg Ag - Be - Pe) / A");
  });

  double Bc = 0, Bt = 0;
  overEach(job.Bars, [&](const model::BarObject& bar) {
    Bc += square(c.yTop - bar.Depth) * bar.Area;
    Bt += square(t.yTop - bar.Depth) * bar.Area;
  });
  double Hc = 0, Pt = 0;
  overEach(job.Tendons, [&](const model::TendonObject& tendon) {
    Hc += square(c.yTop - tendon.SheathDepth) * tendon.SheathArea;
    Pt += square(t.yTop - tendon.Depth) * tendon.Area;
  });
  inRow(Table::C, [&] {
    c.I = square(g.yTop - c.yTop) * g.A + g.I - Bc - Hc;
    setModuli(c, c.yTop);
  });
  inRow(Table::T, [&] {
    t.I = square(g.yTop - t.yTop) * g.A + g.I - Bt - Pt;
    setModuli(t, t.yTop);
  });

  if (g.E == 0) {
    result.isWithoutModulus = true;
  } else {
    double Bn = 0, Bnm = 0, Bne = 0;
    overEach(job.Bars, [&](const model::BarObject& bar) {
      const double ns = bar.ElasticModulus / g.E;
      Bn += ns * bar.Area;
      Bnm += ns * bar.Area * bar.Depth;
      Bne += bar.ElasticModulus * bar.Area;
    });
    double Pn = 0, Pnm = 0, Pne = 0;
    overEach(job.Tendons, [&](const model::TendonObject& tendon) {
      const double np = tendon.ElasticModulus / g.E;
      Pn += np * tendon.Area;
      Pnm += np * tendon.Area * tendon.Depth;
      Pne += tendon.Area * tendon.ElasticModulus;
    });
    inRow(Table::D, [&] {
      d.A = c.A + Bn;
      d.yTop = divide(c.A * c.yTop + Bnm, d.A, "y' = (Ac y'c + Bnm) / A");
      d.yBottom = bottom - d.yTop;
      d.E = divide(c.E * c.A + Bne, d.A, "E = (Ec Ac + Bne) / A");
    });
    inRow(Table::X, [&] {
      x.A = t.A + Bn + Pn;
      x.yTop = divide(t.A * t.yTop + Bnm + Pnm, x.A, "y' = (At y't + Bnm + Pnm) / A");
      x.yBottom = bottom - x.yTop;
      x.E = divide(t.E * t.A + Bne + Pne, x.A, "E = (Et At + Bne + Pne) / A");
    });

    double Bd = 0, Bx = 0;
    overEach(job.Bars, [&](const model::BarObject& bar) {
      const double ns = bar.ElasticModulus / g.E;
      Bd += square(d.yTop - bar.Depth) * ns * bar.Area;
      Bx += square(x.yTop - bar.Depth) * ns * bar.Area;
    });
    double Px = 0;
    overEach(job.Tendons, [&](const model::TendonObject& tendon) {
      const double np = tendon.ElasticModulus / g.E;
      Px += square(x.yTop - tendon.Depth) * np * tendon.Area;
    });
    inRow(Table::D, [&] {
      d.I = square(c.yTop - d.yTop) * c.A + c.I + Bd;
      setModuli(d, d.yTop);
    });
    inRow(Table::X, [&] {
      x.I = square(t.yTop - x.yTop) * t.A + t.I + Bx + Px;
      setModuli(x, x.yTop);
    });
  }

  for (SectionParameterRow& row : table.rows) row.yTop = finite(row.yTop - result.extent->BeamTop, "y'");
}

}  // namespace

SectionParameterResult SectionParameters(const model::ObjectTables& job) {
  SectionParameterResult result;
  try {
    workOut(job, result);
  } catch (const base::NumericFault& fault) {
    result.fault = fault;
  }
  return result;
}

}  // namespace torvik::section
