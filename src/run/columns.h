// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/objects.h"

/// Headings, units and meanings of everything that a job gives, and their order: tables, files, charts and
/// panels all go by these.
namespace torvik::run {

struct Column {
  std::string heading;
  std::string unit;     ///< "N mm"; empty: none
  std::string meaning;  ///< "Total load"

  /// For a tool tip: "Total load (N)".
  [[nodiscard]] std::string explained() const { return unit.empty() ? meaning : meaning + " (" + unit + ")"; }
};

/// The columns that every result row begins with.
enum ResultColumn : std::size_t {
  kLoad,
  kDisplacement,
  kMoment,
  kCurvature,
  kNeutralAxisDepth,
  kCompressionForce,
  kFirstStrain,  ///< one for each row with `Output` 1: solids, bars, tendons
};

/// The columns of a result row: the six, then "Solid Strain ", "Bar Strain ", "Tendon Strain " and the row's
/// number in the job, from 1, for each row with `Output` 1.
std::vector<Column> resultColumns(const model::ObjectTables& job);
/// Their headings alone.
std::vector<std::string> resultHeadings(const model::ObjectTables& job);

/// The columns of the table of the objects of a kind with a law.
enum ObjectColumn : std::size_t {
  kStrainWithoutLoad,
  kStrain,
  kStress,
  kForce,
  kArea,
  kDepth,
  kUltimateStrain,
  kObjectColumns,
};
std::array<Column, kObjectColumns> objectColumns(model::ObjectKind kind);

/// The nine values of a row of section parameters, in their order.
std::span<const Column, 9> sectionParameterColumns();
/// What stands in front of the nine values, and behind them.
inline constexpr std::string_view kSectionHeading = "Section";
inline constexpr std::string_view kNoteHeading = "Note";
inline constexpr int kSectionRows = 5;
/// "g", "c", "t", "d", "e"
std::string_view sectionParameterLetter(int row);
/// "Solid", "Solid - Bars - Ducts", ...
std::string_view sectionParameterNote(int row);

}  // namespace torvik::run
