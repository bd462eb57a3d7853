// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "base/errors.h"
#include "cells.h"

namespace torvik::grid {
namespace {

struct Case {
  ObjectKind kind;
  std::string_view row;  ///< before the commit
  std::string_view key;
  std::string typed;
  std::string message;     ///< empty: none
  std::string_view after;  ///< cells that count
};

const std::string kSpanMessage = "Span should be more than flexural span.";
const std::string kFlexuralMessage = "Flexural span should be 0 to less than span.";
const std::string kFibreMessage = "Half span fiber number should be 50 to 1000.";
const std::string kLarge = "Too large a value, isn't it ?";
constexpr std::string_view kBeamRow = "Span=9000;FlexuralSpan=3000;HalfSpanFiberNumber=100";
constexpr std::string_view kTendonRow =
    "Prestressing=Post-tensioning;SheathDiameter=20;SheathArea=7;SheathDepth=9";

const Case kCases[] = {
    {kBeam, kBeamRow, "Span", "10000", "", "Span=10000;ShearSpan=3500;HalfSpanFiberLength=50"},
    {kBeam, kBeamRow, "Span", "3000", kSpanMessage, "Span=9000;ShearSpan=3000;HalfSpanFiberLength=45"},
    {kBeam, kBeamRow, "Span", "abc", "", "Span=abc;ShearSpan=;HalfSpanFiberLength="},
    {kBeam, "FlexuralSpan=10;HalfSpanFiberNumber=0;HalfSpanFiberLength=3", "Span", "30", "",
     "Span=30;ShearSpan=10;HalfSpanFiberLength=3"},
    {kBeam, kBeamRow, "FlexuralSpan", "0", "", "FlexuralSpan=0;ShearSpan=4500;HalfSpanFiberLength="},
    {kBeam, kBeamRow, "FlexuralSpan", "9000", kFlexuralMessage, "FlexuralSpan=3000;ShearSpan=3000"},
    {kBeam, kBeamRow, "FlexuralSpan", "-1", kFlexuralMessage, "FlexuralSpan=3000;ShearSpan=3000"},
    {kBeam, kBeamRow, "HalfSpanFiberNumber", "50", "", "HalfSpanFiberLength=90"},
    {kBeam, kBeamRow, "HalfSpanFiberNumber", "1000", "", "HalfSpanFiberLength=4.5"},
    {kBeam, kBeamRow, "HalfSpanFiberNumber", "40", kFibreMessage,
     "HalfSpanFiberNumber=100;HalfSpanFiberLength=45"},
    {kBeam, kBeamRow, "HalfSpanFiberNumber", "1050", kFibreMessage, "HalfSpanFiberNumber=100"},

    {kSolid, "Number=2", "Number", "0", "Should be 1 to 200.", "Number=2"},
    {kSolid, "Number=2", "Number", "200", "", "Number=200"},
    {kSolid, "Number=2", "Number", "201", "Should be 1 to 200.", "Number=2"},
    {kSolid, "Width=4;Area=1", "Height", "0.1", "", "Area=0.4"},
    {kSolid, "Width=1E200;Area=1", "Height", "1E200", "", "Height=1E200;Area=1"},
    {kSolid, "FlexuralStress=-3", "ElasticModulus", "30000", "", "FlexuralStrain=-0.0001"},
    {kSolid, "FlexuralStress=-3;FlexuralStrain=1", "ElasticModulus", "0", "", "FlexuralStrain=1"},
    {kSolid, "ElasticModulus=30000", "FlexuralStress", "3", "Generally negative.",
     "FlexuralStress=3;FlexuralStrain=0.0001"},
    {kSolid, "", "UltimateStrain", "0.2", kLarge, "UltimateStrain=0.2"},
    {kSolid, "Type=File;File=a.ss", "File", "", "", "Type=;File="},

    {kBar, "Area=5", "Diameter", "JIS G 3112 D13", "", "Area=126.7"},
    {kBar, "Area=5", "Diameter", "JIS G 3109 13", "", "Area=5"},
    {kBar, "Area=5", "Diameter", "19", "", "Area=283.528736986479"},
    {kBar, "ElasticModulus=200000", "YieldStress", "300", "", "YieldStrain=0.0015"},
    {kBar, "", "UltimateStrain", "0.6", kLarge, "UltimateStrain=0.6"},

    {kTendon, "Number=2", "Number", "201", "Should be 1 to 200.", "Number=2"},
    {kTendon, "Area=5", "Diameter", "JIS G 3109 (15)", "", "Area=176.7"},
    {kTendon, "Prestressing=Pre-tensioning", "Depth", "x1", "", "Depth=x1;SheathDepth=x1"},
    {kTendon, kTendonRow, "SheathDiameter", "23", "", "SheathArea=415.47562843725;SheathDepth=9"},
    {kTendon, kTendonRow, "Prestressing", "Pre-tensioning", "",
     "SheathDiameter=20;SheathArea=0;SheathDepth=9"},
    {kTendon, "YieldStress=930", "ElasticModulus", "200000", "", "YieldStrain=0.00465"},
    {kTendon, "", "UltimateStrain", "0.51", kLarge, "UltimateStrain=0.51"},

    {kForce, "Number=3", "Number", "0", "Number should be 1 to 200.", "Number=3"},
};

TEST(Commit, AppliesTheRulesOfItsColumn) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(captionOf(c.kind)) + " " + std::string(c.key) + " \"" + c.typed + "\"");
    ObjectGrid grid(c.kind, {});
    fillRow(grid, 1, c.row);
    const int column = columnOf(c.kind, c.key);
    std::string reported;
    grid.commit(1, column, c.typed, grid.text(1, column), [&](const std::string& message) {
      reported += message;
      EXPECT_EQ(grid.text(1, column), c.typed);
    });
    EXPECT_EQ(reported, c.message);
    forPairs(c.after, [&](std::string_view key, const std::string& text) {
      EXPECT_EQ(grid.text(1, columnOf(c.kind, key)), text) << key;
    });
  }
}

TEST(Commit, KeepsOneBeamInUse) {
  for (const ObjectKind kind : {kBeam, kSolid}) {
    ObjectGrid grid(kind, {});
    const auto tick = [&](int row, const std::string& text) { grid.commit(row, 0, text, "", {}); };
    const auto used = [&] { return grid.clip({0, 0, 2, 0}); };
    tick(0, "+");
    tick(2, "+");
    EXPECT_EQ(used(), kind == kBeam ? "\r\r+" : "+\r\r+");
    tick(2, "+");
    tick(2, "");
    EXPECT_EQ(used(), kind == kBeam ? "\r\r" : "+\r\r");
    grid.undo();
    grid.undo();
    EXPECT_EQ(used(), "+\r\r");
  }
}

TEST(Commit, RefusesImpossibleCases) {
  ObjectGrid grid(kTendon, {});
  const int prestressing = columnOf(kTendon, "Prestressing");
  EXPECT_THROW(grid.commit(0, prestressing, "None", "", {}), base::InternalError);
  EXPECT_EQ(grid.text(0, prestressing), "None");
  grid.undo();
  EXPECT_EQ(grid.text(0, prestressing), "");
  EXPECT_THROW(grid.commit(0, 0, "x", "", {}), base::InternalError);
  EXPECT_THROW(grid.clear({0, 0, 0, 19}), base::InternalError);
  EXPECT_FALSE(grid.canUndo());
}

TEST(Editor, OpensWhereTheRowAllowsIt) {
  const struct {
    ObjectKind kind;
    std::string_view row, key;
    bool opens;
  } cases[] = {{kBeam, "", "ShearSpan", false},
               {kSolid, "", "WatchStrain", false},
               {kSolid, "Output=+", "WatchStrain", true},
               {kTendon, "Prestressing=Post-tensioning", "SheathArea", true},
               {kTendon, "Prestressing=post-tensioning", "SheathDepth", false}};
  for (const auto& c : cases) {
    ObjectGrid grid(c.kind, {});
    fillRow(grid, 0, c.row);
    EXPECT_EQ(grid.opensEditor(0, columnOf(c.kind, c.key)), c.opens) << c.key;
  }
}

}  // namespace
}  // namespace torvik::grid
