// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "model/objects.h"

/// Small models that the tests of this folder share. Lengths in mm, forces in N. Each record has its fields
/// in the order of its declaration.
namespace torvik::analysis {

inline model::BeamObject beamOf(double Span, double FlexuralSpan, std::int16_t pieces) {
  return {1, Span, FlexuralSpan, (Span - FlexuralSpan) / 2, pieces, Span / 2 / pieces};
}

inline model::SolidObject solidOf(double Width, double Height, double Depth) {
  return {1, 0, "JSCE (Design)", "", 1, Width, Height, Width * Height, Depth, 0, "", 28000, 0, 0, 30, 0.0035};
}

/// A stack of `count` equal layers from `top` downward. Without tension: `FlexuralStrain` is 0.
inline void addLayers(model::ObjectTables& tables, double Width, double Height, int count, double top = 0) {
  const double layer = Height / count;
  for (int i = 0; i < count; ++i) tables.Solids.push_back(solidOf(Width, layer, top + (i + 0.5) * layer));
}

inline model::BarObject barOf(std::int16_t Number, double Area, double Depth, double YieldStress = 345) {
  return {1,      1,           "JSCE (Design)",      "",  Number, "", Area, Depth, 0, "",
          200000, YieldStress, YieldStress / 200000, 520, 0.2};
}

inline model::TendonObject tendonOf(double Area, double Depth, const std::string& Prestressing) {
  return {1, 1,  "JSCE (Design)", "",   1,     "",   Area, Depth, 0.005, Prestressing, 0, 0,
          0, "", 200000,          1600, 0.008, 1860, 0.05};
}

inline model::AxialForceObject axialOf(double Force, double Depth) {
  return {1, 1, Depth, Force};
}

/// 300 x 500, three bars of 506.7 at depth 450, span 4000 under one load at midspan.
inline model::ObjectTables rectangle(int layers) {
  model::ObjectTables tables;
  tables.Beams = {beamOf(4000, 0, 100)};
  addLayers(tables, 300, 500, layers);
  tables.Bars = {barOf(3, 506.7, 450)};
  return tables;
}

}  // namespace torvik::analysis
