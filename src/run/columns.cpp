// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/columns.h"

#include "base/number_text.h"

namespace torvik::run {

std::vector<Column> resultColumns(const model::ObjectTables& job) {
  std::vector<Column> columns = {{"Load", "N", "Total load"},
                                 {"Displacement", "mm", "Displacement of midspan"},
                                 {"Moment", "N mm", "Moment"},
                                 {"Curvature", "1/mm", "Curvature"},
                                 {"Neutral Axis Depth", "mm", "Depth of the neutral axis"},
                                 {"Compression Force", "N", "Sum of the compression forces"}};
  const auto addStrains = [&](const char* name, const char* positive, const auto& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].Output != 1) continue;
      const std::string heading = name + base::plainText(static_cast<long long>(i) + 1);
      columns.push_back({heading, "", heading + positive});
    }
  };
  addStrains("Solid Strain ", ", compression positive", job.Solids);
  addStrains("Bar Strain ", ", tension positive", job.Bars);
  addStrains("Tendon Strain ", ", tension positive", job.Tendons);
  return columns;
}

std::vector<std::string> resultHeadings(const model::ObjectTables& job) {
  std::vector<std::string> headings;
  for (Column& column : resultColumns(job)) headings.push_back(std::move(column.heading));
  return headings;
}

std::array<Column, kObjectColumns> objectColumns(model::ObjectKind kind) {
  const bool isSolid = kind == model::ObjectKind::Solid;
  const char* const piece = isSolid ? "piece" : kind == model::ObjectKind::Bar ? "bar" : "tendon";
  return {Column{"Strain w/o Load", "",
                 std::string("Strain without load, ") + (isSolid ? "compression" : "tension") + " positive"},
          {"Strain", "", "Strain"},
          {"Stress", "N/mm²", "Stress"},
          {"Force", "N", "Force"},
          {"Area", "mm²", std::string("Area of one ") + piece},
          {"Depth", "mm", "Depth of the centre"},
          {"Ultimate Strain", "", "Strain at which the object fails"}};
}

std::span<const Column, 9> sectionParameterColumns() {
  static const std::array<Column, 9> kColumns = {
      Column{"A", "mm²", "Area"},
      {"y'", "mm", "From the top edge to the centroid"},
      {"y", "mm", "From the centroid to the bottom edge"},
      {"I", "mm⁴", "Second moment of area about the centroid"},
      {"Z'", "mm³", "Top section modulus: I over the depth of the centroid"},
      {"Z", "mm³", "Bottom section modulus: I / y"},
      {"E", "N/mm²", "Elastic modulus"},
      {"EI", "N mm²", "Flexural rigidity"},
      {"EA", "N", "Axial rigidity"}};
  return kColumns;
}

std::string_view sectionParameterLetter(int row) {
  static constexpr std::array<std::string_view, kSectionRows> kLetters = {"g", "c", "t", "d", "e"};
  return kLetters.at(static_cast<std::size_t>(row));
}

std::string_view sectionParameterNote(int row) {
  static constexpr std::array<std::string_view, kSectionRows> kNotes = {
      "Solid", "Solid - Bars - Ducts", "Solid - Bars - Tendons", "Solid - Bars - Ducts + Eq.Bars",
      "Solid - Bars - Tendons + Eq.Bars + Eq.Tendons"};
  return kNotes.at(static_cast<std::size_t>(row));
}

}  // namespace torvik::run
