// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"

/// The model of a member: five tables of plain records. Units: mm, mm2, N/mm2, N; strains are dimensionless.
/// Solids and axial forces are positive in compression, bars and tendons in tension. `Depth` grows downward
/// from a datum of the user's and is that of the object's centre. See docs/theory.md, "Axes, signs and
/// units".
///
/// Field names are the keys of the input file. What a job works out for a row (its strains, stress and force)
/// stands in `section::State`, side by side for all rows.
namespace torvik::model {

enum class ObjectKind : int { Beam = 0, Solid = 1, Bar = 2, Tendon = 3, AxialForce = 4 };
inline constexpr int kObjectKinds = 5;
inline constexpr ObjectKind kAllObjectKinds[kObjectKinds] = {
    ObjectKind::Beam, ObjectKind::Solid, ObjectKind::Bar, ObjectKind::Tendon, ObjectKind::AxialForce};

/// "Beam", "Solid", "Bar", "Tendon", "AxialForce": the section of a row in a file, without its number.
/// @throws InternalError 51 for a kind outside the five
std::string_view sectionNameOf(ObjectKind kind);
/// "Beams", "Solids", ...: the section of a table's row count.
std::string_view tableNameOf(ObjectKind kind);

/// A simply supported member under two symmetric point loads; only the first used row takes part in a job.
struct BeamObject {
  std::int16_t Use = 0;                  ///< 1: takes part in a job; any other value: left out
  double Span = 0;                       ///< whole span
  double FlexuralSpan = 0;               ///< length of the constant-moment stretch in the middle
  double ShearSpan = 0;                  ///< distance from support to load point
  std::int16_t HalfSpanFiberNumber = 0;  ///< pieces along half the span
  double HalfSpanFiberLength = 0;        ///< length of a piece
  double BeamTop = 0;                    ///< working: smallest top edge of the job's solids
  double BeamBottom = 0;                 ///< working: largest bottom edge of the job's solids

  bool operator==(const BeamObject&) const = default;
};

/// One concrete fibre, or `Number` like ones.
struct SolidObject {
  std::int16_t Use = 0;
  std::int16_t Output = 0;  ///< 1: listed in result tables and in strain output
  std::string Type;         ///< name of the stress-strain law
  std::string File;         ///< user stress-strain file, where `Type` is "File"
  std::int16_t Number = 0;
  double Width = 0;   ///< for the fibre's own inertia and the figures
  double Height = 0;  ///< for its edges and its own inertia
  double Area = 0;    ///< of one fibre; entered, not derived at job time
  double Depth = 0;
  double InitialStrain = 0;  ///< before any stage of a job
  std::string WatchStrain;   ///< empty: none; else the number whose crossing is reported
  double ElasticModulus = 0;
  double FlexuralStress = 0;  ///< at tensile cracking, negative
  double FlexuralStrain = 0;  ///< at tensile cracking, negative
  double UltimateStress = 0;  ///< strength
  double UltimateStrain = 0;
  double VolumetricRatio = 0;  ///< of confining steel, 4 As / (s D)

  bool operator==(const SolidObject&) const = default;
};

/// One layer of reinforcing bars.
struct BarObject {
  std::int16_t Use = 0;
  std::int16_t Output = 0;
  std::string Type;
  std::string File;
  std::int16_t Number = 0;
  std::string Diameter;  ///< designation or number, as text; no job reads it
  double Area = 0;       ///< of one bar
  double Depth = 0;
  double InitialStrain = 0;
  std::string WatchStrain;
  double ElasticModulus = 0;
  double YieldStress = 0;
  double YieldStrain = 0;
  double UltimateStress = 0;
  double UltimateStrain = 0;

  bool operator==(const BarObject&) const = default;
};

/// One layer of prestressing tendons.
struct TendonObject {
  std::int16_t Use = 0;
  std::int16_t Output = 0;
  std::string Type;
  std::string File;
  std::int16_t Number = 0;
  std::string Diameter;
  double Area = 0;  ///< of one tendon
  double Depth = 0;
  double IntroductionStrain = 0;  ///< given to the tendon when prestress is introduced
  std::string Prestressing;       ///< "Post-tensioning" or "Pre-tensioning"
  double SheathDiameter = 0;
  double SheathArea = 0;  ///< of the duct, taken out of the solid section
  double SheathDepth = 0;
  std::string WatchStrain;
  double ElasticModulus = 0;
  double YieldStress = 0;
  double YieldStrain = 0;
  double UltimateStress = 0;
  double UltimateStrain = 0;

  bool operator==(const TendonObject&) const = default;
};

/// One external axial force.
struct AxialForceObject {
  std::int16_t Use = 0;
  std::int16_t Number = 0;  ///< marks in the figure; no part in a job
  double Depth = 0;
  double Force = 0;  ///< compression positive

  bool operator==(const AxialForceObject&) const = default;
};

/// Row n of a grid is record n. At most 32767 rows a table.
struct ObjectTables {
  std::vector<BeamObject> Beams;
  std::vector<SolidObject> Solids;
  std::vector<BarObject> Bars;
  std::vector<TendonObject> Tendons;
  std::vector<AxialForceObject> AxialForces;

  [[nodiscard]] std::size_t rowCount(ObjectKind kind) const;
  bool operator==(const ObjectTables&) const = default;
};

inline constexpr int kMaxRows = 32767;

/// Calls `visit` with the table of that kind: `visitTable(tables, kind, [&](auto& rows) { ... })`.
/// @throws InternalError 51 for a kind outside the five
template <class Tables, class Visitor>
decltype(auto) visitTable(Tables& tables, ObjectKind kind, Visitor&& visit) {
  switch (kind) {
    case ObjectKind::Beam:
      return visit(tables.Beams);
    case ObjectKind::Solid:
      return visit(tables.Solids);
    case ObjectKind::Bar:
      return visit(tables.Bars);
    case ObjectKind::Tendon:
      return visit(tables.Tendons);
    case ObjectKind::AxialForce:
      return visit(tables.AxialForces);
  }
  throw base::InternalError(base::kImpossibleCase, "object kind " + std::to_string(static_cast<int>(kind)));
}

/// The rows of a job, and whether there are enough of them.
struct JobTables {
  ObjectTables tables;  ///< a copy of every edited row whose `Use` is exactly 1, in table order
  [[nodiscard]] bool hasBeam() const { return !tables.Beams.empty(); }
  [[nodiscard]] bool hasSection() const {
    return !tables.Solids.empty() || !tables.Bars.empty() || !tables.Tendons.empty();
  }
};

JobTables BuildJobTables(const ObjectTables& edited);

/// What a job without a beam, or without any solid, bar and tendon, is refused with.
inline constexpr std::string_view kInsufficientObjects = "Insufficient beam/section objects.";

}  // namespace torvik::model
