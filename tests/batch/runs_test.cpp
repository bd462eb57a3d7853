// SPDX-License-Identifier: GPL-3.0-or-later
#include <regex>

#include "analysis/job.h"
#include "analysis/recording_host.h"
#include "base/number_text.h"
#include "batch/program.h"

namespace torvik::batch {
namespace {

class Runs : public ProgramTest {};

/// The same job through the engine alone: its result file and its state file.
struct EngineRun : analysis::RecordingSink {
  analysis::JobOutcome outcome;
  std::string resultFile;
  std::string stateFile = "Kind\tNo\tStrain w/o Load\tStrain\tStress\tForce\tArea\tDepth\n";
  double peak = 0;

  EngineRun(const std::string& model, const std::string& settings, const std::string& step) {
    model::ObjectTables tables;
    model::readTables(base::ProfileFile::ofText(model, "model"), tables);
    model::JobTables job = model::BuildJobTables(tables);
    const auto options = analysis::JobOptions::read(base::ProfileFile::ofText("[Option]\n" + settings, "s"));
    analysis::RecordingHost host;
    host.step = step;
    materials::StressStrainContext context;
    context.prompt = &host;
    analysis::Sink* const sinks[] = {this};
    for (const std::string& heading : analysis::resultHeadings(job.tables)) resultFile += heading + "\t";
    outcome = analysis::runJob(job.tables, options, host.control, host, sinks, context);
    for (const auto& row : rows) {
      resultFile += "\r\n";
      for (const double value : row) resultFile += base::plainText(value) + "\t";
      peak = std::max(peak, row[2]);
    }
    resultFile += "\r\n";
  }

  void jobOver(const analysis::SectionState& state) override {
    const auto add = [&](const std::string& kind, const analysis::SectionState::Rows& of) {
      for (std::size_t i = 0; i < of.size(); ++i) {
        stateFile += kind + "\t" + std::to_string(i + 1);
        for (const auto* values :
             {&of.BaseStrain, &of.CurrentStrain, &of.CurrentStress, &of.CurrentForce, &of.Area, &of.Depth})
          stateFile += "\t" + base::plainText((*values)[i]);
        stateFile += "\n";
      }
    };
    add("Solid", state.solids());
    add("Bar", state.bars());
    add("Tendon", state.tendons());
  }
};

/// A post-tensioned section under an axial force.
model::ObjectTables prestressed() {
  model::ObjectTables tables = smallModel();
  tables.Tendons.push_back(analysis::tendonOf(140, 400, "Post-tensioning"));
  tables.AxialForces.push_back(analysis::axialOf(50000, 250));
  for (auto& solid : tables.Solids) solid.FlexuralStrain = -0.000144;
  return tables;
}

TEST_F(Runs, ResultFileStateFileAndSummaryAreThoseOfTheEngine) {
  writeModel("m.inp", prestressed(), {"Bar0 WatchStrain=0.0001"});
  write("home/torvik/torvik.ini", "[Option]\nCurvatureLargeRangeTo=3.95E-06\n");
  write("other.ini", "[Option]\nCurvatureLargeRangeTo=2.95E-06\nConvergencePrecision=5\n");
  const struct {
    const char* name;
    Texts arguments;
    std::string settings;
    std::string step;
    std::string rows;
  } cases[] = {
      {"the user's own settings", {}, "CurvatureLargeRangeTo=3.95E-06", "Small", "40"},
      {"other settings",
       {"--settings", "other.ini"},
       "CurvatureLargeRangeTo=2.95E-06\nConvergencePrecision=5",
       "Small",
       "30"},
      {"options of the run",
       {"--set", "curvaturelargerangeto = 1.9e-6", "--set", "CurvatureSmallRangeStep=2E-07"},
       "CurvatureLargeRangeTo=1.9E-06\nCurvatureSmallRangeStep=2E-07",
       "Small",
       "10"},
      {"of one key the last",
       {"--set", "CurvatureLargeRangeTo=1", "--set", "CurvatureLargeRangeTo=9.5E-07"},
       "CurvatureLargeRangeTo=9.5E-07",
       "Small",
       "10"},
      {"large steps", {"--step", "Large"}, "CurvatureLargeRangeTo=3.95E-06", "Large", "4"},
      {"a step of one's own", {"--step", "5e-7"}, "CurvatureLargeRangeTo=3.95E-06", "5e-7", "8"},
      {"pauses do not wait",
       {"--set", "MessagesPausePreLoading=1", "--set", "MessagesPauseWatch=1"},
       "CurvatureLargeRangeTo=3.95E-06",
       "Small",
       "40"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const EngineRun engine(read("m.inp"), row.settings, row.step);
    const Ended ended = run(row.arguments + Texts{"--overwrite", "--state", "m.inp"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(read("m.inp.txt"), engine.resultFile);
    EXPECT_EQ(read("m.inp.state.txt"), engine.stateFile);
    EXPECT_EQ(ended.rows("m.inp"), row.rows);
    EXPECT_EQ(ended.field("m.inp", 2), base::plainText(engine.peak));
    EXPECT_EQ(ended.message("m.inp"), "Loading end.");
    EXPECT_TRUE(std::regex_match(ended.field("m.inp", 4), std::regex("[0-9]+\\.[0-9]{3}")));
  }
  // Each run has appended its message.
  const Texts log = split(read("m.inp.log"), "\r\n");
  EXPECT_EQ(log.size(), std::size(cases));
  for (const std::string& line : log)
    EXPECT_TRUE(std::regex_match(
        line, std::regex("[0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}Loading end\\.")))
        << line;
}

TEST_F(Runs, PeakIsNotTheLastMomentAndCrossingsAreListed) {
  model::ObjectTables tables = smallModel();
  tables.Bars = {analysis::barOf(3, 1000, 450), analysis::barOf(1, 100, 40)};  // crushes on top
  writeModel("m.inp", tables,
             {"Bar0 WatchStrain=0.001725", "Bar1 WatchStrain=-0.0002", "Solid0 WatchStrain=1"});
  const Ended ended = run({"m.inp"});
  const Texts lines = split(read("m.inp.txt"), "\r\n");
  const auto value = [&](std::size_t row, std::size_t column) {
    return *base::toNumber(split(lines[row], "\t")[column]);
  };
  double peak = 0;
  std::size_t bar = 0;
  std::size_t top = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    peak = std::max(peak, value(i, 2));
    if (bar == 0 && value(i, 6) >= 0.001725) bar = i;
    if (top == 0 && value(i, 7) < -0.0002) top = i;
  }
  EXPECT_EQ(ended.rows("m.inp"), std::to_string(lines.size() - 1));
  EXPECT_EQ(ended.field("m.inp", 2), base::plainText(peak));
  EXPECT_GT(peak, value(lines.size() - 1, 2));
  const std::string crossings = ended.field("m.inp", 5) + "; ";
  const std::string first = "Bar Strain 1 crosses 0.001725 at step " + std::to_string(bar) + "; ";
  const std::string second = "Bar Strain 2 crosses -0.0002 at step " + std::to_string(top) + "; ";
  EXPECT_NE(crossings.find(first), crossings.npos) << crossings;
  EXPECT_NE(crossings.find(second), crossings.npos) << crossings;
  EXPECT_EQ(crossings.find("Solid"), crossings.npos);
}

TEST_F(Runs, ModelsSideBySideGiveTheBitsOfOneAfterTheOther) {
  model::ObjectTables confined = smallModel();
  for (auto& solid : confined.Solids) {
    solid.Type = "Restoration (Confined)";
    solid.VolumetricRatio = 0.01;
  }
  write("steel.txt", "-345 -0.03\n-345 -0.001725\n345 0.001725\n345 0.03\n");  // of the working directory
  writeModel("a.inp", smallModel());
  writeModel("b.inp", prestressed());
  writeModel("deep/c.inp", confined);
  writeModel("deep/d.inp", smallModel(), {"Bar0 Type=File", "Bar0 File=steel.txt"});
  writeModel("e.inp", analysis::rectangle(37), {"Solid3 Type=Muguruma (Plane)", "Bar0 Type=Steel Bar"});
  writeModel("f.inp", prestressed(), {"Tendon0 Prestressing=Pre-tensioning"});
  writeModel("g.inp", smallModel(), {"Beam0 ShearSpan=0"});
  const Texts models = {"a.inp", "b.inp", "deep/c.inp", "deep/d.inp", "e.inp", "f.inp", "g.inp"};
  const Texts options = {"--shape", "c", "--tie-stress", "345", "--state", "--overwrite", "--jobs"};

  const auto allOf = [&](const Ended& ended) {
    Texts all;
    for (const std::string& model : models) {
      all.push_back(model + ended.rows(model) + ended.field(model, 2) + ended.message(model));
      all.push_back(read(model + ".txt"));
      all.push_back(read(model + ".state.txt"));
    }
    for (std::size_t i = 0; i < models.size(); ++i)
      EXPECT_TRUE(ended.lines()[i].starts_with(models[i])) << "the order of the command line";
    return all;
  };
  const Ended alone = run(options + Texts{"1"} + models);
  const Texts expected = allOf(alone);
  EXPECT_EQ(alone.status, 1);
  for (const std::string& model : models) {
    EXPECT_EQ(alone.rows(model) == "0", model == "g.inp");
    EXPECT_EQ(std::to_string(wholeRows(model + ".txt")), alone.rows(model));
  }
  for (const char* jobs : {"4", "100"})
    EXPECT_EQ(allOf(run(options + Texts{jobs} + models)), expected) << jobs;
}

TEST_F(Runs, ASignalEndsJobsWithWholeRows) {
  model::ObjectTables tables = analysis::rectangle(4000);
  tables.Beams[0].HalfSpanFiberNumber = 0;
  for (const int signal : {SIGINT, SIGTERM}) {
    SCOPED_TRACE(signal);
    writeModel("long.inp", tables);
    writeModel("next.inp", smallModel());
    std::filesystem::remove(path("long.inp.txt"));
    How how;
    how.meanwhile = [&](pid_t child) {
      std::error_code none;
      for (int i = 0; i < 3000 && !(std::filesystem::file_size(path("long.inp.txt"), none) > 2000 && !none);
           ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
      ::kill(child, signal);
    };
    const Ended ended = run({"--set", "CurvatureSmallRangeStep=1E-09", "--overwrite", "--jobs", "1",
                             "--state", "long.inp", "next.inp"},
                            how);
    EXPECT_EQ(ended.status, 1);
    EXPECT_LT(ended.seconds, 5);
    EXPECT_EQ(ended.message("long.inp"), "Ended by the user.");
    EXPECT_EQ(ended.rows("long.inp"), std::to_string(wholeRows("long.inp.txt")));
    EXPECT_GT(wholeRows("long.inp.txt"), 0);
    EXPECT_LT(wholeRows("long.inp.txt"), 19000) << "the job was over before the signal";
    EXPECT_EQ(split(read("long.inp.state.txt"), "\n").size(), 1U + 4000 + 1);
    EXPECT_EQ(ended.message("next.inp"), "Not started.");
    EXPECT_FALSE(has("next.inp.txt"));
  }
}

TEST_F(Runs, ExistingFilesAreReplacedOnlyOnRequest) {
  writeModel("a.inp", smallModel());
  writeModel("b.inp", smallModel());
  write("a.inp.txt", "precious");
  Ended ended = run(kShort + Texts{"a.inp", "b.inp"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.message("a.inp"), "\"a.inp.txt\" already exists. --overwrite replaces it.");
  EXPECT_EQ(ended.rows("a.inp"), "0");
  EXPECT_EQ(ended.field("a.inp", 2), "-");
  EXPECT_EQ(read("a.inp.txt"), "precious");
  EXPECT_EQ(ended.rows("b.inp"), "50");

  EXPECT_EQ(run(kShort + Texts{"--overwrite", "a.inp"}).status, 0);
  EXPECT_EQ(read("a.inp.txt"), read("b.inp.txt"));

  std::filesystem::create_symlink("elsewhere", path("c.inp.txt"));
  writeModel("c.inp", smallModel());
  EXPECT_EQ(run(kShort + Texts{"c.inp"}).message("c.inp"), "\"c.inp.txt\" already exists.");
  EXPECT_FALSE(has("elsewhere"));

  std::filesystem::remove(path("a.inp.txt"));
  write("a.inp.state.txt", "precious");
  ended = run(kShort + Texts{"--state", "a.inp"});
  EXPECT_EQ(ended.message("a.inp"), "\"a.inp.state.txt\" already exists. --overwrite replaces it.");
  EXPECT_EQ(read("a.inp.state.txt"), "precious");
  EXPECT_FALSE(has("a.inp.txt"));
}

TEST_F(Runs, OnlyATerminalShowsProgress) {
  writeModel("m.inp", smallModel());
  EXPECT_EQ(run({"--overwrite", "m.inp"}).err, "");
  How how;
  how.terminal = true;
  const std::string shown = run({"--overwrite", "m.inp"}, how).err;
  EXPECT_NE(shown.find("m.inp  step 1  curvature 0.0000E+00  moment 0.0000E+00"), shown.npos) << shown;
  EXPECT_TRUE(shown.ends_with("\r\033[K")) << "the line is taken off at the end";
  EXPECT_EQ(run({"--overwrite", "--quiet", "m.inp"}, how).err, "");
}

TEST_F(Runs, AFullDeviceKeepsWholeRows) {
  writeModel("m.inp", smallModel());
  How how;
  how.fileLimit = 20000;
  const Ended ended = run({"m.inp"}, how);
  EXPECT_EQ(ended.message("m.inp"), "m.inp.txt: can not be written: File too large");
  EXPECT_EQ(ended.rows("m.inp"), std::to_string(wholeRows("m.inp.txt")));
  EXPECT_GT(wholeRows("m.inp.txt"), 100);
  EXPECT_EQ(ended.status, 0) << "there are result rows";
}

}  // namespace
}  // namespace torvik::batch
