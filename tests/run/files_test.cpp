// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <regex>

#include "base/errors.h"
#include "base/files.h"
#include "base/temporary_folder.h"
#include "model/models.h"
#include "run/log_file.h"
#include "run/result_file.h"
#include "run/state_file.h"

namespace torvik::run {
namespace {

using Existing = ResultFile::Existing;

TEST(ResultFile, HoldsWholeLinesOfTabbedPlainText) {
  const tests::TemporaryFolder folder;
  const std::string path = folder / "a.txt";
  model::ObjectTables job = tests::rectangle(3);
  job.Solids[2].Output = 1;
  job.Bars[0].Output = 2;  // only 1 is on
  base::replaceWholeFile(path, std::string(500, 'x'));
  EXPECT_THROW(ResultFile(path, {"Load"}, Existing::Refuse), base::InputError);
  EXPECT_EQ(base::readWholeFile(path).size(), 500u);

  ResultFile file(path, resultHeadings(job), Existing::Replace);
  RowReader* const readers[] = {&file};
  run::Run run(job, {});
  RunWriter writer(run, readers);
  for (const double first : {0.5, HUGE_VAL}) {
    writer.beginRow(0);
    for (const double cell : {first, -0.0, 1e15, 1.0 / 3, 1e-5, 123456789012345678.0, 2.0}) writer.cell(cell);
    if (first == 0.5) writer.endRow();  // the other row is never whole
  }
  file.close();
  EXPECT_EQ(file.rowsWritten(), 1);
  EXPECT_EQ(
      base::readWholeFile(path),
      "Load\tDisplacement\tMoment\tCurvature\tNeutral Axis Depth\tCompression Force\tSolid Strain 3\t\r\n"
      "0.5\t0\t1E+15\t0.333333333333333\t1E-05\t1.23456789012346E+17\t2\t\r\n");
}

TEST(ResultFile, AFullDeviceIsTold) {
  EXPECT_THROW(ResultFile("/dev/full", {"Load"}, Existing::Replace), base::InputError);
  EXPECT_THROW(appendLogLine("/dev/full", "text"), base::InputError);
}

TEST(LogFile, GrowsByDatedLines) {
  const tests::TemporaryFolder folder;
  appendLogLine(folder / "a.log", "Loading end.");
  appendLogLine(folder / "a.log", "two\rlines");
  const std::string date = "\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d";
  EXPECT_TRUE(std::regex_match(base::readWholeFile(folder / "a.log"),
                               std::regex(date + "Loading end\\.\r\n" + date + "two lines\r\n")));
}

TEST(StateFile, LeavesEmptyWhatOverflowed) {
  model::ObjectTables job = tests::rectangle(1);
  job.Bars[0].InitialStrain = 0.001;
  job.Tendons = {tests::tendonOf(140, 400, "Pre-tensioning")};
  run::Run run(job, {});
  materials::StressStrainContext laws;
  RunWriter writer(run);
  writer.begin(laws);
  section::State rows = writer.section().emptyState();
  rows.solids = {{-0.5}, {HUGE_VAL}, {std::nan("")}};
  rows.bars.force = {1e15};
  writer.end({}, rows);
  EXPECT_EQ(stateText(run),
            "Kind\tNo\tStrain w/o Load\tStrain\tStress\tForce\tArea\tDepth\n"
            "Solid\t1\t0\t-0.5\t\t\t150000\t250\n"
            "Bar\t1\t0.001\t0\t0\t1E+15\t506.7\t450\n"
            "Tendon\t1\t0.005\t0\t0\t0\t140\t400\n");
}

}  // namespace
}  // namespace torvik::run
