// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "analysis/log_file.h"
#include "analysis/models.h"
#include "analysis/result_file.h"
#include "base/errors.h"
#include "base/files.h"

namespace torvik::analysis {
namespace {

class Files : public ::testing::Test {
 protected:
  Files() {
    std::string name = (std::filesystem::temp_directory_path() / "torvik-XXXXXX").string();
    m_folder = ::mkdtemp(name.data());
  }
  ~Files() override { std::filesystem::remove_all(m_folder); }
  [[nodiscard]] std::string path(const std::string& name) const { return (m_folder / name).string(); }

 private:
  std::filesystem::path m_folder;
};

TEST_F(Files, TheResultFileIsWholeLinesOfTabbedPlainText) {
  model::ObjectTables job = rectangle(3);
  job.Solids[2].Output = 1;
  job.Bars[0].Output = 2;  // only 1 is on
  {
    ResultFile file(path("a.inp.txt"), resultHeadings(job), ResultFile::Existing::Refuse);
    file.resultRow(std::vector<double>{0.5, -0.0, 1e15, 1.0 / 3, 1e-5, 123456789012345678.0, 2});
    file.close();
    EXPECT_EQ(file.rowsWritten(), 1);
  }
  EXPECT_EQ(
      base::readWholeFile(path("a.inp.txt")),
      "Load\tDisplacement\tMoment\tCurvature\tNeutral Axis Depth\tCompression Force\tSolid Strain 3\t\r\n"
      "0.5\t0\t1E+15\t0.333333333333333\t1E-05\t1.23456789012346E+17\t2\t\r\n");
}

TEST_F(Files, AnExistingResultFileIsRefusedOrReplaced) {
  base::replaceWholeFile(path("a.txt"), "old, and longer than what comes instead of it");
  EXPECT_THROW(ResultFile(path("a.txt"), {"Load"}, ResultFile::Existing::Refuse), base::InputError);
  EXPECT_EQ(base::readWholeFile(path("a.txt")).substr(0, 3), "old");
  ResultFile(path("a.txt"), {"Load"}, ResultFile::Existing::Replace).close();
  EXPECT_EQ(base::readWholeFile(path("a.txt")), "Load\t\r\n");
}

TEST_F(Files, AFullDeviceIsToldAndNamesTheFile) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
  std::filesystem::create_symlink("/dev/full", path("full.txt"));
  try {
    ResultFile file(path("full.txt"), {"Load"}, ResultFile::Existing::Replace);
    ADD_FAILURE();
  } catch (const base::InputError& error) {
    EXPECT_NE(std::string(error.what()).find("full.txt"), std::string::npos);
  }
  EXPECT_THROW(appendLogLine(path("full.txt"), "text"), base::InputError);
  EXPECT_THROW(ResultFile(path("none/a.txt"), {"Load"}, ResultFile::Existing::Replace), base::InputError);
}

TEST_F(Files, TheLogGrowsByDatedLines) {
  appendLogLine(path("a.log"), "Loading end.");
  appendLogLine(path("a.log"), "two\rlines");
  EXPECT_TRUE(std::regex_match(base::readWholeFile(path("a.log")),
                               std::regex("\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\dLoading end\\.\r\n"
                                          "\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\dtwo lines\r\n")));
}

}  // namespace
}  // namespace torvik::analysis
