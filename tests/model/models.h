// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "model/objects.h"

/// Small models that tests share. Lengths in mm, forces in N.
namespace torvik::tests {

inline model::BeamObject beamOf(double Span, double FlexuralSpan, std::int16_t pieces) {
  return {.Use = 1,
          .Span = Span,
          .FlexuralSpan = FlexuralSpan,
          .ShearSpan = (Span - FlexuralSpan) / 2,
          .HalfSpanFiberNumber = pieces,
          .HalfSpanFiberLength = Span / 2 / pieces};
}

/// Without tension: `FlexuralStrain` is 0.
inline model::SolidObject solidOf(double Width, double Height, double Depth) {
  model::SolidObject row;
  row.Use = row.Number = 1;
  row.Type = "JSCE (Design)";
  row.Width = Width;
  row.Height = Height;
  row.Area = Width * Height;
  row.Depth = Depth;
  row.ElasticModulus = 28000;
  row.UltimateStress = 30;
  row.UltimateStrain = 0.0035;
  return row;
}

/// A stack of `count` equal layers from `top` downward.
inline void addLayers(model::ObjectTables& tables, double Width, double Height, int count, double top = 0) {
  const double layer = Height / count;
  for (int i = 0; i < count; ++i) tables.Solids.push_back(solidOf(Width, layer, top + (i + 0.5) * layer));
}

inline model::BarObject barOf(std::int16_t Number, double Area, double Depth, double YieldStress = 345) {
  model::BarObject row;
  row.Use = row.Output = 1;
  row.Type = "JSCE (Design)";
  row.Number = Number;
  row.Area = Area;
  row.Depth = Depth;
  row.ElasticModulus = 200000;
  row.YieldStress = YieldStress;
  row.YieldStrain = YieldStress / 200000;
  row.UltimateStress = 520;
  row.UltimateStrain = 0.2;
  return row;
}

inline model::TendonObject tendonOf(double Area, double Depth, const std::string& Prestressing) {
  model::TendonObject row;
  row.Use = row.Output = row.Number = 1;
  row.Type = "JSCE (Design)";
  row.Area = Area;
  row.Depth = Depth;
  row.IntroductionStrain = 0.005;
  row.Prestressing = Prestressing;
  row.ElasticModulus = 200000;
  row.YieldStress = 1600;
  row.YieldStrain = 0.008;
  row.UltimateStress = 1860;
  row.UltimateStrain = 0.05;
  return row;
}

inline model::AxialForceObject axialOf(double Force, double Depth) {
  return {.Use = 1, .Number = 1, .Depth = Depth, .Force = Force};
}

/// 300 x 500, three bars of 506.7 at depth 450, span 4000 under one load at midspan.
inline model::ObjectTables rectangle(int layers) {
  model::ObjectTables tables;
  tables.Beams = {beamOf(4000, 0, 100)};
  addLayers(tables, 300, 500, layers);
  tables.Bars = {barOf(3, 506.7, 450)};
  return tables;
}

}  // namespace torvik::tests
