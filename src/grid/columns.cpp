// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/columns.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "materials/designations.h"

namespace torvik::grid {

namespace {

using Names = std::vector<std::string_view>;

constexpr int kOutputColumn = 1;
constexpr int kPrestressingColumn = 8;

Column cell(std::string_view caption, std::string_view key, CellKind kind) {
  Column column{};
  column.caption = caption;
  column.key = key;
  column.cell = kind;
  return column;
}

Column flag(std::string_view caption, std::string_view key) {
  return cell(caption, key, CellKind::Flag);
}

Column fixed(std::string_view caption, std::string_view key) {
  return cell(caption, key, CellKind::Fixed);
}

Column file(std::string_view caption, std::string_view key) {
  Column column = cell(caption, key, CellKind::File);
  column.firstKeyTypes = true;
  return column;
}

Column number(std::string_view caption, std::string_view key, std::string_view filter = "Double") {
  Column column = cell(caption, key, CellKind::Number);
  column.filter = filter;
  column.firstKeyTypes = true;
  return column;
}

Column anySign(std::string_view caption, std::string_view key) {
  return number(caption, key, "-Double");
}

Column watch() {
  Column column = anySign("Watch Strain", "WatchStrain");
  column.opensIf = Condition{kOutputColumn, "+"};
  return column;
}

Column sheath(Column column) {
  column.opensIf = Condition{kPrestressingColumn, kPostTensioning};
  column.firstKeyTypes = false;
  return column;
}

Column spinner(std::string_view caption, std::string_view key, SpinRange range = {}) {
  Column column = cell(caption, key, CellKind::Spinner);
  column.filter = "Integer";
  column.spin = range;
  column.firstKeyTypes = true;
  return column;
}

Column list(std::string_view caption, std::string_view key, const Names& items) {
  Column column = cell(caption, key, CellKind::List);
  column.items = items;
  return column;
}

Column combo(std::string_view caption, std::string_view key, const Names& items, std::string_view filter) {
  Column column = cell(caption, key, CellKind::Combo);
  column.filter = filter;
  column.items = items;
  column.firstKeyTypes = true;
  return column;
}

Names listEntries(std::span<const materials::Designation> designations) {
  Names names;
  for (const materials::Designation& size : designations) names.push_back(size.listEntry);
  return names;
}

struct Sheet {
  std::string_view caption;
  std::vector<Column> columns;
};

std::array<Sheet, model::kObjectKinds> makeSheets() {
  // The columns look at these.
  static const Names solidTypes = {
      "File", "Elastic", "JSCE (Design)", "e Function (Plane)", "Muguruma (Plane)", "Restoration (Confined)"};
  static const Names steelTypes = {"File", "Elastic", "JSCE (Design)", "Steel Bar", "FRP Bar"};
  static const Names prestressings = {kPreTensioning, kPostTensioning};
  static const Names barSizes = listEntries(materials::barDesignations());
  static const Names tendonSizes = listEntries(materials::tendonDesignations());

  return {
      {{"Object - Beam",
        {flag("Use", "Use"), number("Span", "Span"), number("Flexural Span", "FlexuralSpan"),
         fixed("Shear Span", "ShearSpan"),
         spinner("Half Span Fiber Number", "HalfSpanFiberNumber", {50, 1000, 50}),
         fixed("Half Span Fiber Length", "HalfSpanFiberLength")}},
       {"Object - Solid (Compression +)",
        {flag("Use", "Use"), flag("Output", "Output"), list("Type", "Type", solidTypes), file("File", "File"),
         spinner("Number", "Number"), number("Width", "Width"), number("Height", "Height"),
         number("Area", "Area"), anySign("Depth", "Depth"), anySign("Initial Strain", "InitialStrain"),
         watch(), number("Elastic Modulus", "ElasticModulus"), anySign("Flexural Stress", "FlexuralStress"),
         anySign("Flexural Strain", "FlexuralStrain"), number("Ultimate Stress", "UltimateStress"),
         number("Ultimate Strain", "UltimateStrain"), number("Volumetric Ratio", "VolumetricRatio")}},
       {"Object - Bar (Tension +)",
        {flag("Use", "Use"), flag("Output", "Output"), list("Type", "Type", steelTypes), file("File", "File"),
         spinner("Number", "Number"), combo("Diameter", "Diameter", barSizes, "D.0123456789\b"),
         number("Area", "Area"), anySign("Depth", "Depth"), anySign("Initial Strain", "InitialStrain"),
         watch(), number("Elastic Modulus", "ElasticModulus"), number("Yield Stress", "YieldStress"),
         number("Yield Strain", "YieldStrain"), number("Ultimate Stress", "UltimateStress"),
         number("Ultimate Strain", "UltimateStrain")}},
       {"Object - Tendon (Tension +)",
        {flag("Use", "Use"), flag("Output", "Output"), list("Type", "Type", steelTypes), file("File", "File"),
         spinner("Number", "Number"), combo("Diameter", "Diameter", tendonSizes, "Double"),
         number("Area", "Area"), anySign("Depth", "Depth"),
         list("Prestressing", "Prestressing", prestressings),
         sheath(number("Sheath Diameter", "SheathDiameter")), sheath(number("Sheath Area", "SheathArea")),
         sheath(anySign("Sheath Depth", "SheathDepth")), anySign("Introduction Strain", "IntroductionStrain"),
         watch(), number("Elastic Modulus", "ElasticModulus"), number("Yield Stress", "YieldStress"),
         number("Yield Strain", "YieldStrain"), number("Ultimate Stress", "UltimateStress"),
         number("Ultimate Strain", "UltimateStrain")}},
       {"Object - Axial Force (Compression +)",
        {flag("Use", "Use"), spinner("Number", "Number"), anySign("Depth", "Depth"),
         anySign("Force", "Force")}}}};
}

const Sheet& sheetOf(ObjectKind kind) {
  static const auto sheets = makeSheets();
  const int index = static_cast<int>(kind);
  if (index < 0 || index >= model::kObjectKinds) {
    throw base::InternalError(base::kImpossibleCase, "object kind " + std::to_string(index));
  }
  return sheets[static_cast<std::size_t>(index)];
}

}  // namespace

std::span<const Column> columnsOf(ObjectKind kind) {
  return sheetOf(kind).columns;
}

std::string_view captionOf(ObjectKind kind) {
  return sheetOf(kind).caption;
}

int columnOf(ObjectKind kind, std::string_view key) {
  const auto columns = columnsOf(kind);
  const auto found = std::ranges::find(columns, key, &Column::key);
  if (found == columns.end()) {
    throw base::InternalError(base::kImpossibleCase,
                              std::string(captionOf(kind)) + " has no column " + std::string(key));
  }
  return static_cast<int>(found - columns.begin());
}

}  // namespace torvik::grid
