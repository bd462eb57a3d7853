// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/objects.h"

#include <gtest/gtest.h>

#include "model/rows.h"

namespace torvik::model {
namespace {

TEST(JobTables, HoldTheRowsWhoseUseIsOneInOrder) {
  std::string text;
  std::string expected;
  for (const ObjectKind kind : kAllObjectKinds) {
    const auto row = [&](int i, int use, int value) {
      return "[" + std::string(sectionNameOf(kind)) + std::to_string(i) + "]\nUse=" + std::to_string(use) +
             "\nSpan=" + std::to_string(value) + "\nDepth=" + std::to_string(value) + "\n";
    };
    const std::string count = "[" + std::string(tableNameOf(kind)) + "]\nAll=";
    text += count + "6\n" + row(0, 2, 10) + row(1, 1, 11) + row(2, 0, 12) + row(3, -1, 13) + row(4, 1, 14) +
            row(5, 1, 9);
    expected += count + "3\n" + row(0, 1, 11) + row(1, 1, 14) + row(2, 1, 9);
  }
  const ObjectTables edited = tablesOf(text);
  JobTables job = BuildJobTables(edited);
  EXPECT_EQ(fileTextOf(job.tables), fileTextOf(tablesOf(expected)));
  job.tables.Solids[0].Type = "changed by the job";
  EXPECT_EQ(fileTextOf(edited), fileTextOf(tablesOf(text)));
}

TEST(JobTables, SayWhetherThereIsEnoughForAJob) {
  struct Case {
    const char* text;
    bool hasBeam;
    bool hasSection;
  };
  const Case cases[] = {
      {"", false, false},
      {"[Beams]\nAll=1\n[Solids]\nAll=1\n[Solid0]\nUse=2\n[AxialForces]\nAll=1\n", true, false},
      {"[Beams]\nAll=1\n[Beam0]\nUse=0\n[Solids]\nAll=1\n", false, true},
      {"[Bars]\nAll=1\n", false, true},
      {"[Tendons]\nAll=1\n", false, true},
  };
  for (const Case& c : cases) {
    const JobTables job = BuildJobTables(tablesOf(c.text));
    EXPECT_EQ(job.hasBeam(), c.hasBeam) << c.text;
    EXPECT_EQ(job.hasSection(), c.hasSection) << c.text;
  }
}

}  // namespace
}  // namespace torvik::model
