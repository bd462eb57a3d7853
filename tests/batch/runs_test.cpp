// SPDX-License-Identifier: GPL-3.0-or-later
#include <regex>

#include "analysis/job.h"
#include "analysis/recording_host.h"
#include "analysis/result_file.h"
#include "base/number_text.h"
#include "batch/program.h"

namespace torvik::batch {
namespace {

class Runs : public ProgramTest {
 protected:
  /// Runs m.inp through the engine alone.
  void runEngine(const std::string& resultFile, const std::string& settings, const std::string& step) const {
    model::ObjectTables tables;
    model::readTables(base::ProfileFile::read(path("m.inp")), tables);
    model::JobTables job = model::BuildJobTables(tables);
    const auto options = base::ProfileFile::ofText("[Option]\n" + settings, "settings");
    analysis::RecordingHost host;
    host.step = step;
    materials::StressStrainContext context;
    analysis::ResultFile sink(path(resultFile), analysis::resultHeadings(job.tables),
                              analysis::ResultFile::Existing::Replace);
    analysis::Sink* const sinks[] = {&sink};
    analysis::runJob(job.tables, analysis::JobOptions::read(options), host.control, host, sinks, context);
  }
};

TEST_F(Runs, FilesAndSummaryAreThoseOfTheEngine) {
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
  Ended ended;
  for (const auto& row : cases) {
    runEngine("engine.txt", row.settings, row.step);
    ended = run("torvik-batch m.inp --overwrite --state " + row.arguments);
    EXPECT_EQ(std::to_string(ended.status) + ended.err, "0");
    EXPECT_EQ(read("m.inp.txt"), read("engine.txt")) << row.settings << row.step;
    EXPECT_EQ(ended.rows("m.inp"), row.rows);
    const std::regex time("[0-9]{4}/[0-9]{2}/[0-9]{2} ([0-9]{2}:){2}[0-9]{2}");
    EXPECT_EQ(std::regex_replace(split(read("m.inp.log"), "\r\n").back(), time, "@"),
              "@" + ended.message("m.inp"));
  }
  EXPECT_EQ(split(read("m.inp.log"), "\r\n").size(), std::size(cases)) << "each run appends its message";

  // Of the last one: the moment falls from a peak, the bar goes to and fro.
  const Texts lines = split(read("m.inp.txt"), "\r\n");
  double peak = 0;
  std::size_t crossing = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const Texts values = split(lines[i], "\t");
    peak = std::max(peak, *base::toNumber(values[2]));
    if (crossing == 0 && *base::toNumber(values[6]) >= 0.0008) crossing = i;
  }
  EXPECT_EQ(ended.field("m.inp", 2), base::plainText(peak));
  EXPECT_TRUE(std::regex_match(ended.field("m.inp", 4), std::regex("[0-9]+\\.[0-9]{3}")));
  const std::string first = "Bar Strain 1 crosses 0.0008 at step " + std::to_string(crossing) + "; Bar ";
  EXPECT_TRUE(ended.field("m.inp", 5).starts_with(first)) << ended.out;
  const Texts state = split(read("m.inp.state.txt"), "\n");
  ASSERT_EQ(state.size(), 1U + 10 + 1 + 1);
  EXPECT_EQ(state[0], "Kind\tNo\tStrain w/o Load\tStrain\tStress\tForce\tArea\tDepth");
  const Texts bar = split(state[11], "\t");
  EXPECT_EQ(bar[0] + bar[1] + bar[3] + bar[6] + bar[7], "Bar1" + split(lines.back(), "\t")[6] + "506.7450");
  EXPECT_NEAR(*base::toNumber(bar[5]), *base::toNumber(bar[3]) * 200000 * 506.7 * 3, 1e-6);
}

TEST_F(Runs, ModelsSideBySideGiveTheBitsOfOneAfterTheOther) {
  model::ObjectTables confined = smallModel();
  for (auto& solid : confined.Solids) {
    solid.Type = "Restoration (Confined)";
    solid.VolumetricRatio = 0.01;
  }
  write("steel.txt", "-345 -0.03\n-345 -0.001725\n345 0.001725\n345 0.03\n");  // of the working directory
  writeModel("a.inp", {"Tendon0 Prestressing=Pre-tensioning"});
  writeModel("deep/b.inp", {}, confined);
  writeModel("deep/c.inp", {"Bar0 Type=File", "Bar0 File=steel.txt"});
  writeModel("d.inp", {"Solid3 Type=Muguruma (Plane)", "Bar0 Type=Steel Bar"}, analysis::rectangle(37));
  writeModel("e.inp", {"Beam0 ShearSpan=0"});
  const Texts models = {"a.inp", "deep/b.inp", "deep/c.inp", "d.inp", "e.inp"};
  const auto allOf = [&](const std::string& jobs) {
    const Ended ended = run("torvik-batch --shape c --tie-stress=-345 --state --overwrite --jobs " + jobs +
                            " a.inp deep/b.inp deep/c.inp d.inp e.inp");
    EXPECT_EQ(ended.status, 1);
    Texts all;
    for (std::size_t i = 0; i < models.size(); ++i) {
      const std::string& model = models[i];
      EXPECT_TRUE(split(ended.out, "\n")[i].starts_with(model)) << "the order of the command line";
      EXPECT_EQ(ended.rows(model), std::to_string(wholeRows(model + ".txt")));
      EXPECT_EQ(ended.rows(model) == "0", model == "e.inp") << ended.message(model);
      all.push_back(ended.message(model) + read(model + ".txt") + read(model + ".state.txt"));
    }
    return all;
  };
  const Texts expected = allOf("1");
  EXPECT_EQ(allOf("4"), expected);
  EXPECT_EQ(allOf("100"), expected);
}

TEST_F(Runs, ASignalEndsJobsWithWholeRows) {
  writeModel("long.inp", {}, analysis::rectangle(4000));
  writeModel("next.inp");
  for (const std::string signal : {"INT", "TERM"}) {
    const Ended ended = run(
        "rm -f long.inp.txt; touch long.inp.txt\n"
        "torvik-batch --set CurvatureSmallRangeStep=1E-09 --overwrite --jobs 1 --state long.inp next.inp &\n"
        "until [ $(wc -c <long.inp.txt) -gt 2000 ]; do sleep 0.01; done\n"
        "kill -" +
        signal + " $!; wait $!");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.message("long.inp"), "Ended by the user.");
    const int rows = wholeRows("long.inp.txt");
    EXPECT_EQ(ended.rows("long.inp"), std::to_string(rows));
    EXPECT_TRUE(0 < rows && rows < 19000) << rows << ": the job was over before the signal";
    EXPECT_EQ(split(read("long.inp.state.txt"), "\n").size(), 1U + 4000 + 1);
    EXPECT_EQ(ended.message("next.inp"), "Not started.");
    EXPECT_FALSE(has("next.inp.txt"));
  }
}

TEST_F(Runs, ExistingFilesAreReplacedOnlyOnRequest) {
  for (const char* name : {"a.inp", "b.inp", "c.inp", "d.inp"}) writeModel(name);
  write("a.inp.txt", "precious");
  write("b.inp.state.txt", "precious");
  const std::string all = "a.inp b.inp c.inp d.inp";
  const Ended ended = run("ln -s elsewhere c.inp.txt; " + (kShort + ("--state " + all)));
  EXPECT_EQ(ended.message("a.inp"), "\"a.inp.txt\" already exists. --overwrite replaces it.");
  EXPECT_EQ(ended.message("b.inp"), "\"b.inp.state.txt\" already exists. --overwrite replaces it.");
  EXPECT_EQ(ended.message("c.inp"), "\"c.inp.txt\" already exists.");
  EXPECT_EQ(ended.rows("d.inp"), "50");
  EXPECT_EQ(read("a.inp.txt") + read("b.inp.state.txt"), "preciousprecious");
  EXPECT_FALSE(has("b.inp.txt") || has("elsewhere"));
  EXPECT_EQ(run(kShort + ("--overwrite " + all)).status, 0);
  EXPECT_EQ(read("a.inp.txt"), read("d.inp.txt"));
}

TEST_F(Runs, OnlyATerminalShowsProgress) {
  writeModel("m\x1B.inp");
  const std::string terminal = "SHELL=/bin/sh script -qec 'torvik-batch m\x1B.inp --overwrite >summary ";
  const std::string shown = run(terminal + "' log").out;
  EXPECT_TRUE(shown.starts_with("\r\033[Km?.inp  step 1  curvature -2.0465E-07  moment ")) << shown;
  EXPECT_TRUE(shown.ends_with("\r\033[K")) << "the line is taken off at the end";
  EXPECT_EQ(run(terminal + "--quiet' log").out + read("stderr"), "");
}

}  // namespace
}  // namespace torvik::batch
