// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "analysis/log_file.h"
#include "analysis/models.h"
#include "analysis/result_file.h"
#include "base/errors.h"
#include "base/files.h"
#include "base/temporary_folder.h"

namespace torvik::analysis {
namespace {

using Existing = ResultFile::Existing;

TEST(ResultFile, HoldsWholeLinesOfTabbedPlainText) {
  const tests::TemporaryFolder folder;
  const std::string path = folder / "a.txt";
  model::ObjectTables job = rectangle(3);
  job.Solids[2].Output = 1;
  job.Bars[0].Output = 2;  // only 1 is on
  base::replaceWholeFile(path, std::string(500, 'x'));
  EXPECT_THROW(ResultFile(path, {"Load"}, Existing::Refuse), base::InputError);
  EXPECT_EQ(base::readWholeFile(path).size(), 500u);
  ResultFile file(path, resultHeadings(job), Existing::Replace);
  file.resultRow(std::vector<double>{0.5, -0.0, 1e15, 1.0 / 3, 1e-5, 123456789012345678.0, 2});
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

}  // namespace
}  // namespace torvik::analysis
