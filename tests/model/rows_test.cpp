// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "base/message_of.h"
#include "model/default_rows.h"
#include "model/rows.h"

namespace torvik::model {

TEST(JobTables, HoldTheRowsWhoseUseIsOneInOrder) {
  ObjectTables edited;
  std::string sizes;
  for (const ObjectKind kind : kAllObjectKinds) {
    for (const bool use : {false, true, false, true})
      visitTable(edited, kind, [&](auto& rows) { rows.emplace_back().Use = use ? 1 : 2; });
    sizes += std::to_string(BuildJobTables(edited).tables.rowCount(kind));
  }
  edited.Bars[1].Depth = 5;
  EXPECT_EQ(sizes, "22222");
  EXPECT_EQ(BuildJobTables(edited).tables.Bars[0].Depth, 5);
  EXPECT_FALSE(BuildJobTables(tablesOf("[Beams]\nAll=1\n[AxialForces]\nAll=1\n")).hasSection());
  for (const char* const section : {"[Solids]\nAll=1", "[Bars]\nAll=1", "[Tendons]\nAll=1"})
    EXPECT_TRUE(BuildJobTables(tablesOf(section)).hasSection() &&
                !BuildJobTables(tablesOf(section)).hasBeam());
}

TEST(DefaultRows, AreAddedFromTheSettings) {
  const std::string row = "]\nArea=506.7\nUse=0\nDiameter=25.4\n";
  const auto settings = base::ProfileFile::ofText("[Solid]\nArea=\n[Bar0]\nArea=1\n[Bar" + row, "a.ini");
  ObjectTables tables = tablesOf("[Bars]\nAll=2\n[Bar1]\nArea=5\n");
  const auto add = [&](ObjectKind kind, int count) {
    return tests::messageOf([&] { return AddDefaultRows(tables, kind, count, settings), 0; });
  };
  EXPECT_EQ(add(ObjectKind::Bar, 2) + add(ObjectKind::Bar, -1), "no errorno error");
  EXPECT_EQ(add(ObjectKind::Solid, 0), "no error");
  EXPECT_EQ(add(ObjectKind::Solid, 1), "a.ini: [Solid] Area=\"\": expected a number");
  EXPECT_THROW(add(static_cast<ObjectKind>(5), 0), base::InternalError);
  const std::string expected = "[Bars]\nAll=4\n[Bar1]\nArea=5\n[Bar2" + row + "[Bar3" + row;
  EXPECT_EQ(fileTextOf(tables), fileTextOf(tablesOf(expected)));
  EXPECT_EQ(add(ObjectKind::Beam, 32768) + add(ObjectKind::Beam, 32767), "number of rows: overflowno error");
}

TEST(DefaultRows, AreWrittenCellByCell) {
  auto settings = base::ProfileFile::ofText("[Beam]\nUse=0\nSpan=5\n", "torvik.ini");
  writeDefaultRow(settings, ObjectKind::Beam, {{"Span", "6"}});
  writeDefaultRow(settings, ObjectKind::Bar, {{"Area", "506.70"}, {"Output", "0"}, {"Type", ""}});
  writeDefaultRow(settings, ObjectKind::Solid, {{"Number", " "}, {"Area", ""}});
  EXPECT_THROW(writeDefaultRow(settings, ObjectKind::Beam, {{"Area", "6"}}), base::InternalError);
  EXPECT_EQ(settings.text(),
            "[Beam]\nUse=0\nSpan=6\n\n[Bar]\nOutput=0\nType=\nArea=506.70\n\n[Solid]\nNumber=1\nArea=0\n");
}

}  // namespace torvik::model
