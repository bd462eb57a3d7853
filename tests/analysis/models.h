// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "model/objects.h"

/// Small models that the tests of this folder share. Lengths in mm, forces in N.
namespace torvik::analysis {

inline model::BeamObject beamOf(double Span, double FlexuralSpan, std::int16_t pieces) {
  model::BeamObject beam;
  beam.Use = 1;
  beam.Span = Span;
  beam.FlexuralSpan = FlexuralSpan;
  beam.ShearSpan = (Span - FlexuralSpan) / 2;
  beam.HalfSpanFiberNumber = pieces;
  beam.HalfSpanFiberLength = Span / 2 / pieces;
  return beam;
}

inline model::SolidObject solidOf(double Width, double Height, double Depth) {
  model::SolidObject solid;
  solid.Use = 1;
  solid.Type = "JSCE (Design)";
  solid.Number = 1;
  solid.Width = Width;
  solid.Height = Height;
  solid.Area = Width * Height;
  solid.Depth = Depth;
  solid.ElasticModulus = 28000;
  solid.UltimateStress = 30;
  solid.UltimateStrain = 0.0035;
  return solid;
}

/// A stack of `count` equal layers from `top` downward. Without tension: `FlexuralStrain` is 0.
inline void addLayers(model::ObjectTables& tables, double Width, double Height, int count, double top = 0) {
  const double layer = Height / count;
  for (int i = 0; i < count; ++i) tables.Solids.push_back(solidOf(Width, layer, top + (i + 0.5) * layer));
}

inline model::BarObject barOf(std::int16_t Number, double Area, double Depth, double YieldStress = 345) {
  model::BarObject bar;
  bar.Use = 1;
  bar.Output = 1;
  bar.Type = "JSCE (Design)";
  bar.Number = Number;
  bar.Area = Area;
  bar.Depth = Depth;
  bar.ElasticModulus = 200000;
  bar.YieldStress = YieldStress;
  bar.YieldStrain = YieldStress / 200000;
  bar.UltimateStress = 520;
  bar.UltimateStrain = 0.2;
  return bar;
}

inline model::TendonObject tendonOf(double Area, double Depth, const std::string& Prestressing) {
  model::TendonObject tendon;
  tendon.Use = 1;
  tendon.Output = 1;
  tendon.Type = "JSCE (Design)";
  tendon.Number = 1;
  tendon.Area = Area;
  tendon.Depth = Depth;
  tendon.IntroductionStrain = 0.005;
  tendon.Prestressing = Prestressing;
  tendon.ElasticModulus = 200000;
  tendon.YieldStress = 1600;
  tendon.YieldStrain = 0.008;
  tendon.UltimateStress = 1860;
  tendon.UltimateStrain = 0.05;
  return tendon;
}

inline model::AxialForceObject axialOf(double Force, double Depth) {
  model::AxialForceObject axial;
  axial.Use = 1;
  axial.Number = 1;
  axial.Depth = Depth;
  axial.Force = Force;
  return axial;
}

/// 300 x 500, three bars of 506.7 at depth 450, span 4000 under one load at midspan.
inline model::ObjectTables rectangle(int layers) {
  model::ObjectTables tables;
  tables.Beams.push_back(beamOf(4000, 0, 100));
  addLayers(tables, 300, 500, layers);
  tables.Bars.push_back(barOf(3, 506.7, 450));
  return tables;
}

}  // namespace torvik::analysis
