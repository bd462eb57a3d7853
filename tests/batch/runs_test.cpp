// SPDX-License-Identifier: GPL-3.0-or-later
#include <regex>

#include "base/number_text.h"
#include "batch/program.h"
#include "job/job_run.h"
#include "run/result_file.h"

namespace torvik::batch {

TEST_F(Program, WritesWhatTheEngineGives) {
  const std::string to = "CurvatureLargeRangeTo=";
  writeModel("m.inp", {"Bar0 Type=Elastic", "Bar0 WatchStrain=0.0008"});
  write("home/torvik/torvik.ini", "[Option]\n" + to + "3.95E-06\n");
  write("other.ini", "[Option]\nConvergencePrecision=5\n" + to + "2.95E-06\n");
  const struct {
    std::string arguments;
    std::string settings;
    std::string step;
    std::string rows;
  } cases[] = {
      {"", to + "3.95E-06", "Small", "40"},
      {"--settings other.ini", "ConvergencePrecision=5\n" + to + "2.95E-06", "Small", "30"},
      {"--set 'curvaturelargerangeto = 1' --set " + to + "9.5E-07", to + "9.5E-07", "Small", "10"},
      {"--step 5e-7 --set MessagesPausePreLoading=1", to + "3.95E-06", "5e-7", "8"},
      {"--step=-1E-06", to + "3.95E-06", "-1E-06", "32769"},
      {"--step Large --set " + to + "0.0003", to + "0.0003", "Large", "300"},
  };
  model::ObjectTables tables;
  model::readTables(base::ProfileFile::read(path("m.inp")), tables);
  Ended ended;
  for (const auto& row : cases) {
    model::JobTables job = model::BuildJobTables(tables);
    const auto options = base::ProfileFile::ofText("[Option]\n" + row.settings, "settings");
    tests::User user;
    user.step = row.step;
    materials::StressStrainContext laws;
    run::ResultFile file(path("engine.txt"), run::resultHeadings(job.tables),
                         run::ResultFile::Existing::Replace);
    run::RowReader* const readers[] = {&file};
    run::Run engine(job.tables, {});
    run::RunWriter writer(engine, readers);
    job::runJob(job::JobOptions::read(options), user, writer, laws);
    file.close();
    ended = run("torvik-batch m.inp --overwrite --state " + row.arguments);
    EXPECT_EQ(read("m.inp.txt"), read("engine.txt")) << row.settings << row.step;
    EXPECT_EQ(ended.rows("m.inp") + ended.err, row.rows);
  }
  const std::regex log("([0-9]{4}/[0-9]{2}/[0-9]{2} ([0-9]{2}:){2}[0-9]{2}Loading[ ,][^\r\n]*\r\n){6}");
  EXPECT_TRUE(std::regex_match(read("m.inp.log"), log)) << "each run appends its message";

  // Of the last one: the moment falls from a peak, the bar's strain goes to and fro.
  const Texts lines = split(read("m.inp.txt"), "\r\n");
  double peak = 0;
  std::size_t crossing = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const Texts values = split(lines[i], "\t");
    peak = std::max(peak, *base::toNumber(values[2]));
    if (crossing == 0 && *base::toNumber(values[6]) >= 0.0008) crossing = i;
  }
  const std::regex summary("m.inp\t300\t" + base::plainText(peak) +
                           "\tLoading end\\.\t[0-9]+\\.[0-9]{3}\tBar Strain 1 crosses 0.0008 at step " +
                           std::to_string(crossing) + "; Bar Strain 1 crosses .*\n");
  EXPECT_TRUE(std::regex_match(ended.out, summary)) << ended.out;
  const Texts state = split(read("m.inp.state.txt"), "\n");
  EXPECT_EQ(state.at(0), "Kind\tNo\tStrain w/o Load\tStrain\tStress\tForce\tArea\tDepth");
  const Texts bar = split(state.at(11), "\t");
  EXPECT_EQ(bar[0] + bar[1] + bar[3] + bar[6] + bar[7], "Bar1" + split(lines.back(), "\t")[6] + "506.7450");
  EXPECT_NEAR(*base::toNumber(bar[5]), *base::toNumber(bar[3]) * 200000 * 506.7 * 3, 1e-6);
}

TEST_F(Program, GivesTheSameBitsForExamplesSideBySide) {
  const std::string before = "cp '" TORVIK_SOURCE_DIR "/examples/'*.* .; torvik-batch --jobs ";
  const std::string behind =
      " --shape r --tie-stress 300 --state --overwrite *.inp | cut -f 1-4,6; cat *.inp.txt *.state.txt";
  const Ended alone = run(before + "1" + behind);
  for (const auto& entry : std::filesystem::directory_iterator(path(""))) {
    const std::string model = entry.path().filename();
    if (!model.ends_with(".inp")) continue;
    EXPECT_EQ(alone.rows(model), std::to_string(wholeRows(model + ".txt")));
    EXPECT_GT(wholeRows(model + ".txt"), 10) << alone.message(model);
  }
  EXPECT_EQ(run(before + "4" + behind).out, alone.out);
}

TEST_F(Program, EndsJobsWithWholeRowsOnASignal) {
  writeModel("long.inp", {}, tests::rectangle(4000));
  writeModel("next.inp");
  // The result file is a pipe: its reader ends the job behind the first bytes, and takes the rest.
  for (const std::string signal : {"INT", "TERM"}) {
    const Ended ended = run(
        "rm -f long.inp.txt; mkfifo long.inp.txt\n"
        "torvik-batch --set CurvatureSmallRangeStep=1E-09 --overwrite --jobs 1 --state long.inp next.inp &\n"
        "{ head -c 2000 >rows; kill -" +
        signal + " $!; cat >>rows; } <long.inp.txt; wait $!");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.message("long.inp") + ended.message("next.inp"), "Ended by the user.Not started.");
    const int rows = wholeRows("rows");
    EXPECT_EQ(ended.rows("long.inp"), std::to_string(rows));
    EXPECT_TRUE(0 < rows && rows < 19000) << rows << ": the job was over before the signal";
    EXPECT_EQ(split(read("long.inp.state.txt"), "\n").size(), 1U + 4000 + 1);
  }
}

TEST_F(Program, ReplacesExistingFilesOnlyOnRequest) {
  for (const char* name : {"a.inp", "b.inp", "c.inp"}) writeModel(name);
  const Ended ended =
      run("echo kept | tee a.inp.txt >b.inp.state.txt; ln -s elsewhere c.inp.txt\n" + kShort +
          "--state a.inp b.inp c.inp | cut -f 1-4; cat a.inp.txt b.inp.state.txt; ls b.inp.txt elsewhere");
  EXPECT_EQ(ended.out,
            "a.inp\t0\t-\t\"a.inp.txt\" already exists. --overwrite replaces it.\n"
            "b.inp\t0\t-\t\"b.inp.state.txt\" already exists. --overwrite replaces it.\n"
            "c.inp\t0\t-\t\"c.inp.txt\" already exists.\nkept\nkept\n");
  EXPECT_TRUE(run(kShort + "--overwrite a.inp; wc -l <a.inp.txt").out.ends_with("\n51\n"));
}

TEST_F(Program, ShowsProgressOnATerminalOnly) {
  writeModel("m\x1B.inp");
  const std::string terminal = "SHELL=/bin/sh script -qec 'torvik-batch m\x1B.inp --overwrite >summary ";
  const std::string shown = run(terminal + "' log").out;
  EXPECT_TRUE(shown.starts_with("\r\033[Km?.inp  step 1  curvature -2.0465E-07  moment ")) << shown;
  EXPECT_TRUE(shown.ends_with("\r\033[K")) << "the line is taken off at the end";
  EXPECT_EQ(run(terminal + "--quiet' log").out + read("stderr"), "");
}

}  // namespace torvik::batch
