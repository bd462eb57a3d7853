// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/default_rows.h"

#include <gtest/gtest.h>

#include "base/message_of.h"
#include "base/temporary_folder.h"
#include "model/rows.h"

namespace torvik::model {
namespace {

base::ProfileFile settingsOf(std::string text) {
  return base::ProfileFile::ofText(std::move(text), "torvik.ini");
}

TEST(AddDefaultRows, TakesWhatTheSettingsHave) {
  ObjectTables tables;
  for (const ObjectKind kind : kAllObjectKinds) AddDefaultRows(tables, kind, 1, base::ProfileFile());
  EXPECT_EQ(fileTextOf(tables), fileTextOf(tablesOf(kOneOfEach)));

  tables = tablesOf("[Bars]\nAll=2\n[Bar1]\nArea=5\n");
  const std::string row = "]\nArea=506.7\nUse=0\nDiameter=25.4\n";
  AddDefaultRows(tables, ObjectKind::Bar, 2, settingsOf("[Bar0]\nArea=1\n[Tendon]\nArea=x\n[Bar" + row));
  EXPECT_EQ(fileTextOf(tables),
            fileTextOf(tablesOf("[Bars]\nAll=4\n[Bar1]\nArea=5\n[Bar2" + row + "[Bar3" + row)));
}

TEST(AddDefaultRows, AddsNoneWhereOneCanNotBe) {
  const base::ProfileFile settings = settingsOf("[Solid]\nArea=\n[Bar]\nNumber=40000\n");
  ObjectTables tables = tablesOf(kOneOfEach);
  const auto add = [&](int kind, int count) {
    return AddDefaultRows(tables, static_cast<ObjectKind>(kind), count, settings), 0;
  };
  EXPECT_EQ(tests::messageOf([&] { return add(1, 1); }), "torvik.ini: [Solid] Area=\"\": a number");
  EXPECT_EQ(tests::messageOf([&] { return add(2, 2); }),
            "torvik.ini: [Bar] Number=\"40000\": an integer from -32768 to 32767");
  for (const int kind : {-1, 5}) {
    EXPECT_THROW(sectionNameOf(static_cast<ObjectKind>(kind)), base::InternalError);
    try {
      add(kind, 0);
      ADD_FAILURE() << kind;
    } catch (const base::InternalError& error) {
      EXPECT_EQ(error.number(), 51);
    }
  }
  add(0, 0);
  add(0, -1);
  EXPECT_EQ(fileTextOf(tables), fileTextOf(tablesOf(kOneOfEach)));

  EXPECT_THROW(add(0, 32767), base::NumericFault);
  EXPECT_THROW(add(0, 2147483647), base::NumericFault);
  EXPECT_EQ(tables.Beams.size(), 1U);
  add(0, 32766);
  EXPECT_EQ(tables.Beams.size(), 32767U);
}

TEST(WriteDefaultRow, WritesTheCellsInFileOrder) {
  struct Case {
    const char* name;
    const char* before;
    ObjectKind kind;
    std::vector<DefaultCell> cells;
    const char* after;
  };
  const Case cases[] = {
      {"in the order of a file",
       "",
       ObjectKind::Bar,
       {{"Area", "506.70"}, {"Output", "0"}, {"Use", "1"}},
       "[Bar]\nUse=1\nOutput=0\nArea=506.70\n"},
      {"empty numbers",
       "",
       ObjectKind::Solid,
       {{"Number", ""}, {"Width", " "}, {"FlexuralStress", ""}},
       "[Solid]\nNumber=1\nWidth=0\nFlexuralStress=-4.05505541534364\n"},
      {"empty texts",
       "",
       ObjectKind::Tendon,
       {{"Type", ""}, {"Diameter", ""}, {"WatchStrain", ""}},
       "[Tendon]\nType=\nDiameter=\nWatchStrain=\n"},
      {"keys without a cell",
       "[Beam]\nUse=0\nSpan=5\n",
       ObjectKind::Beam,
       {{"Span", "6"}},
       "[Beam]\nUse=0\nSpan=6\n"},
  };
  for (const Case& c : cases) {
    base::ProfileFile settings = settingsOf(c.before);
    writeDefaultRow(settings, c.kind, c.cells);
    EXPECT_EQ(settings.text(), c.after) << c.name;
  }
  base::ProfileFile settings;
  EXPECT_THROW(writeDefaultRow(settings, static_cast<ObjectKind>(5), {}), base::InternalError);
  EXPECT_THROW(writeDefaultRow(settings, ObjectKind::Beam, {{"Use", "1"}, {"Area", "6"}}),
               base::InternalError);
  EXPECT_EQ(settings.text(), "");
}

TEST(WriteDefaultRow, SurvivesARestart) {
  const tests::TemporaryFolder folder;
  const auto path = folder / "torvik.ini";
  base::ProfileFile settings = base::ProfileFile::read(path);
  writeDefaultRow(settings, ObjectKind::Bar, {{"Area", "506.7"}, {"Depth", ""}, {"Type", "\xE9 b"}});
  settings.save(path);
  ObjectTables tables;
  AddDefaultRows(tables, ObjectKind::Bar, 1, base::ProfileFile::read(path));
  EXPECT_EQ(fileTextOf(tables), fileTextOf(tablesOf("[Bars]\nAll=1\n[Bar0]\nArea=506.7\nType=\xE9 b\n")));
}

}  // namespace
}  // namespace torvik::model
