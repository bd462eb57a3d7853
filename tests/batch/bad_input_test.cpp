// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/program.h"

namespace torvik::batch {
namespace {

class BadInput : public ProgramTest {};

model::ObjectTables withTendon() {
  model::ObjectTables tables = smallModel();
  tables.Tendons.push_back(analysis::tendonOf(140, 400, "Post-tensioning"));
  return tables;
}

// One command with all of them: each ends with its own line, and the good model behind them runs.
TEST_F(BadInput, IsToldInOneLineAndTheBatchGoesOn) {
  const struct {
    const char* name;
    Texts changes;  ///< of a good model
    Texts message;  ///< parts of it
  } models[] = {
      {"text.inp", {"Solid3 Width=abc"}, {"text.inp: [Solid3] Width=\"abc\": a number"}},
      {"empty value.inp", {"Bar0 Depth="}, {"[Bar0] Depth=\"\": a number"}},
      {"comma.inp", {"Bar0 Depth=1,5"}, {"[Bar0] Depth=\"1,5\": a number"}},
      {"overflow.inp", {"Bar0 Depth=1E309"}, {"[Bar0] Depth=\"1E309\": a number"}},
      {"long.inp",
       {"Tendon0 Area=" + std::string(300, '7') + "x", "Bar0 Depth=" + std::string(300, 'x')},
       {"[Bar0] Depth=\"" + std::string(60, 'x') + "...\": a number"}},
      {"count.inp", {"Bar0 Number=32768"}, {"[Bar0] Number=\"32768\": an integer from -32768 to 32767"}},
      {"rows.inp", {"Solids All=32768"}, {"rows.inp: [Solids] All=\"32768\""}},
      {"many rows.inp", {"Solids All=99999999999999999999"}, {"[Solids] All=\"99999999999999999999\""}},
      {"negative.inp", {"Bars All=-1"}, {"[Bars] All=\"-1\": a row count from 0 to 32767"}},
      {"no beam.inp", {"Beam0 Use=0"}, {"Insufficient beam/section objects."}},
      {"no section.inp",
       {"Solids All=0", "Bars All=0", "Tendons All=0"},
       {"Insufficient beam/section objects."}},
      {"no solid.inp", {"Solids All=0"}, {"Section parameters: no solid in use: index out of range"}},
      {"solid type.inp", {"Solid4 Type=JSCE"}, {"rror 51", "Solid 5", "\"JSCE\""}},
      {"bar type.inp", {"Bar0 Type=elastic"}, {"rror 51", "Bar 1", "\"elastic\""}},
      {"tendon type.inp",
       {"Tendon0 Type=" + std::string(254, 't')},
       {"Prestress introduction", "rror 51", "Tendon 1"}},
      {"prestressing.inp", {"Tendon0 Prestressing=Post"}, {"Prestress introduction", "rror 51", "Tendon 1"}},
      {"shear span.inp",
       {"Beam0 ShearSpan=0"},
       {"Loading, step 1: ", "the shear span is 0: division by zero"}},
      {"watch.inp", {"Bar0 WatchStrain=never"}, {"Loading, step 1: Bar Strain 1: WatchStrain \"never\"", "not a number"}},
      {"steel.inp", {"Bar0 Type=Steel Bar", "Bar0 YieldStress=0"}, {"Bar 1: hardening", "division by zero"}},
      {"confined.inp", {"Solid0 Type=Restoration (Confined)"}, {"--shape r|c", "--tie-stress N"}},
      {"huge.inp",
       {"Solid0 Area=1E308", "Solid1 Area=1E308"},
       {"Section parameters: row \"g\": ", "overflow"}},
      {"curve.inp", {"Bar0 Type=File", "Bar0 File=no.txt"}, {"Bar 1: ", "\"no.txt\"", "index out of range"}},
      {"folder/result.inp", {}, {"folder/result.inp.txt", "Is a directory"}},
      {"full.inp", {}, {"full.inp.txt: can not be written: No space left on device"}},
      {"nowhere.inp", {}, {"nowhere.inp.txt: can not be written: No such file or directory"}},
  };
  const struct {
    const char* name;
    std::string content;
    std::string message;
  } files[] = {
      {"nul.inp", std::string("[Beams]\nAll=1\0\x7F\x80", 16),
       "nul.inp: not a text file (NUL byte at offset 13)"},
      {"nothing.inp", "", "Insufficient beam/section objects."},
      {"rubbish.inp", "\xFF\xFE[[[\x01=\x02]]\r\r\n=\n[", "Insufficient beam/section objects."},
      {"one line.inp", "[Beams]All=1 [Solids]All=1", "Insufficient beam/section objects."},
      {"defaults.inp", "[beams]\rALL=1\r[SOLIDS]\rall=2",
       "Section parameters: row \"g\": y' = S / A: division by zero"},
  };
  Texts names;
  for (const auto& row : models) {
    writeModel(row.name, withTendon(), row.changes);
    names.emplace_back(row.name);
  }
  for (const auto& row : files) {
    write(row.name, row.content);
    names.emplace_back(row.name);
  }
  std::filesystem::create_directory(path("folder/result.inp.txt"));
  std::filesystem::create_symlink("/dev/full", path("full.inp.txt"));
  std::filesystem::create_symlink("none/result", path("nowhere.inp.txt"));
  writeModel("good.inp", withTendon());
  const Ended ended =
      run(kShort + Texts{"--overwrite"} + names + Texts{"folder", "missing.inp", "", "good.inp"});

  const auto expectTold = [&](const std::string& name, const Texts& parts) {
    const std::string message = ended.message(name);
    for (const std::string& part : parts)
      EXPECT_NE(message.find(part), message.npos) << name << ": " << message;
    EXPECT_EQ(ended.rows(name), "0");
    EXPECT_EQ(ended.field(name, 2), "-");
    if (std::filesystem::is_regular_file(path(name))) {
      EXPECT_TRUE(read(name + ".log").ends_with(message + "\r\n")) << name << ": the log ends otherwise";
    }
  };
  for (const auto& row : models) expectTold(row.name, row.message);
  for (const auto& row : files) expectTold(row.name, {row.message});
  expectTold("folder", {"Can't open folder"});
  expectTold("missing.inp", {"Can't open missing.inp"});
  expectTold("", {"Can't open "});
  EXPECT_FALSE(has("missing.inp.txt") || has("missing.inp.log"));
  EXPECT_FALSE(has("text.inp.txt")) << "a model that can not be read touches no result file";
  EXPECT_NE(read("curve.inp.log").find("torvik fncSSBarFile: The stress-strain file could not be opened."),
            std::string::npos);
  EXPECT_EQ(ended.rows("good.inp"), "50");
  EXPECT_EQ(ended.lines().size(), names.size() + 4);
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "");
}

TEST_F(BadInput, OneFileUnderTwoNamesRunsOnce) {
  writeModel("m.inp", smallModel());
  std::filesystem::create_directory_symlink(".", path("here"));
  const Ended ended = run(kShort + Texts{"--jobs", "4", "m.inp", "./m.inp", "here/m.inp"});
  EXPECT_EQ(ended.rows("m.inp"), "50");
  EXPECT_EQ(ended.message("./m.inp"), "Named twice: it was run once.");
  EXPECT_EQ(ended.message("here/m.inp"), "Named twice: it was run once.");
  EXPECT_EQ(wholeRows("m.inp.txt"), 50);
  EXPECT_EQ(split(read("m.inp.log"), "\n").size(), 1U);
}

TEST_F(BadInput, ALinkToAModelHasAResultFileOfItsOwn) {
  writeModel("m.inp", smallModel());
  std::filesystem::create_symlink("m.inp", path("link.inp"));
  EXPECT_EQ(run(kShort + Texts{"m.inp", "link.inp"}).status, 0);
  EXPECT_EQ(read("link.inp.txt"), read("m.inp.txt"));
}

TEST_F(BadInput, ATabInANameLeavesTheColumnsAlone) {
  writeModel("a\tb\n.inp", smallModel());
  const Ended ended = run(kShort + Texts{"a\tb\n.inp"});
  EXPECT_EQ(ended.lines().size(), 1U);
  EXPECT_EQ(ended.rows("a?b?.inp"), "50");
}

TEST_F(BadInput, AFullStandardOutputIsAFailure) {
  writeModel("m.inp", smallModel());
  How how;
  how.out = "/dev/full";
  for (const char* print : {"--state", "--section-parameters"}) {
    const Ended ended = run(kShort + Texts{"--overwrite", print, "m.inp"}, how);
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "torvik-batch: standard output can not be written\n");
  }
  EXPECT_EQ(wholeRows("m.inp.txt"), 50);
}

TEST_F(BadInput, FilesBesideTheResultFile) {
  writeModel("log.inp", smallModel());
  writeModel("state.inp", smallModel());
  std::filesystem::create_directory(path("log.inp.log"));
  std::filesystem::create_directory(path("state.inp.state.txt"));
  const Ended ended = run(kShort + Texts{"--state", "log.inp", "state.inp"});
  EXPECT_EQ(ended.err, "torvik-batch: log.inp.log: can not be written: Is a directory\n");
  EXPECT_EQ(ended.message("log.inp"), "Loading end.");
  EXPECT_EQ(ended.message("state.inp"), "state.inp.state.txt: can not be written: Is a directory");
  EXPECT_EQ(ended.rows("state.inp"), "50");
  EXPECT_EQ(wholeRows("state.inp.txt"), 50);
}

TEST_F(BadInput, ASettingOfAnotherKindIsNamed) {
  writeModel("m.inp", smallModel());
  const struct {
    const char* settings;
    const char* message;
  } cases[] = {
      {"CurvatureSmallRangeStep=abc", "[Option] CurvatureSmallRangeStep=\"abc\": a number"},
      {"CurvatureLargeRangeFrom=", "[Option] CurvatureLargeRangeFrom=\"\": a number"},
      {"ConvergenceMaxIteration=70000", "[Option] ConvergenceMaxIteration=\"70000\": an integer"},
  };
  for (const auto& row : cases) {
    write("home/torvik/torvik.ini", std::string("[Option]\n") + row.settings);
    const Ended ended = run({"m.inp"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.message("m.inp").find(row.message), std::string::npos) << ended.message("m.inp");
    EXPECT_NE(ended.message("m.inp").find("torvik.ini"), std::string::npos);
    EXPECT_FALSE(has("m.inp.txt"));
  }
}

}  // namespace
}  // namespace torvik::batch
