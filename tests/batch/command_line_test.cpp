// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/program.h"

namespace torvik::batch {
namespace {

class CommandLine : public ProgramTest {};

TEST_F(CommandLine, WrongOnesAreToldAndRunNothing) {
  writeModel("m.inp", smallModel());
  write("bad.ini", std::string("[Option]\0", 9));
  const struct {
    Texts arguments;
    std::string err;  ///< part of what is said
  } cases[] = {
      {{}, "MODEL.inp is required"},
      {{"--jobs", "2"}, "MODEL.inp is required"},
      {{"--no-such-option", "m.inp"}, "--no-such-option"},
      {{"m.inp", "--settings"}, "--settings"},
      {{"--settings", "missing.ini", "m.inp"}, "missing.ini: no such settings file"},
      {{"--settings", ".", "m.inp"}, ".: no such settings file"},
      {{"--settings", "bad.ini", "m.inp"}, "bad.ini: not a text file"},
      {{"--set", "ConvergencePrecision", "m.inp"}, "KEY=VALUE"},
      {{"--set", "NoSuchKey=1", "m.inp"}, "NoSuchKey"},
      {{"--set", "=1", "m.inp"}, "is no key of section Option"},
      {{"--set", "ConvergencePrecision=3.5", "m.inp"}, "ConvergencePrecision=\"3.5\": an integer"},
      {{"--set", "ConvergenceMaxIteration=32768", "m.inp"}, "an integer"},
      {{"--set", "CurvatureLargeRangeTo=0,5", "m.inp"}, "CurvatureLargeRangeTo=\"0,5\": a number"},
      {{"--set", "CurvatureLargeRangeTo=1E999", "m.inp"}, "a number"},
      {{"--set", "CurvatureLargeRangeTo=", "m.inp"}, "a number"},
      {{"--set", "TableSolver=yes", "m.inp"}, "0 or 1"},
      {{"--set", "MessagesBeepStartSound=a\nb", "m.inp"}, "a text of one line"},
      {{"--step", "small", "m.inp"}, "Small, Large or a positive number"},
      {{"--step", "0", "m.inp"}, "a positive number"},
      {{"--step=-1e-6", "m.inp"}, "a positive number"},
      {{"--step", "", "m.inp"}, "a positive number"},
      {{"--step", "Small", "--step", "Large", "m.inp"}, "--step"},
      {{"--shape", "x", "m.inp"}, "r or c"},
      {{"--shape", "rc", "m.inp"}, "r or c"},
      {{"--tie-stress", "0", "m.inp"}, "a positive number"},
      {{"--tie-stress", "nan", "m.inp"}, "a positive number"},
      {{"--jobs", "0", "m.inp"}, "a number from 1 on"},
      {{"--jobs", "-1", "m.inp"}, "a number from 1 on"},
      {{"--jobs", "two", "m.inp"}, "--jobs"},
      {{"--jobs", "99999999999", "m.inp"}, "--jobs"},
      {{"--stress-strain", "bar", "m.inp"}, "\"bar\" is no row"},
      {{"--stress-strain", "bar:0", "m.inp"}, "\"bar:0\" is no row"},
      {{"--stress-strain", "bar:1x", "m.inp"}, "is no row"},
      {{"--stress-strain", "bar:32768", "m.inp"}, "is no row"},
      {{"--stress-strain", "beam:1", "m.inp"}, "\"beam:1\" is no row"},
      {{"--stress-strain", "", "m.inp"}, "is no row"},
      {{"--full", "m.inp"}, "--section-parameters or --stress-strain"},
  };
  for (const auto& row : cases) {
    const Ended ended = run(row.arguments);
    EXPECT_EQ(ended.status, 2) << row.err;
    EXPECT_EQ(ended.out, "") << row.err;
    EXPECT_NE(ended.err.find(row.err), ended.err.npos) << ended.err;
  }
  EXPECT_FALSE(has("m.inp.txt") || has("m.inp.log"));
}

TEST_F(CommandLine, HelpAndVersionAreNoFaults) {
  const Ended help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  for (const char* option :
       {"--settings", "--set", "--step", "--shape", "--tie-stress", "--overwrite", "--jobs", "--state",
        "--section-parameters", "--stress-strain", "--full", "--quiet", "--version"})
    EXPECT_NE(help.out.find(option), help.out.npos) << option;
  const Ended version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("torvik ")) << version.out;
}

TEST_F(CommandLine, NamesOfModelsAreTakenAsTheyStand) {
  const Texts names = {"[m].inp", "-m.inp", "with blank.inp", "m.inp;1", "\xC3\xA9.inp", "\xE9.inp"};
  for (const std::string& name : names) writeModel(name, smallModel());
  const Ended ended = run(kShort + Texts{"--"} + names);
  EXPECT_EQ(ended.status, 0) << ended.out << ended.err;
  for (const std::string& name : names) EXPECT_EQ(wholeRows(name + ".txt"), 50) << name;
}

TEST_F(CommandLine, AWordInBracketsIsAName) {
  for (const char* name : {"[m]", "m", "[a,b]", "a"}) writeModel(name, smallModel());
  EXPECT_EQ(run(kShort + Texts{"[m]", "[a,b]"}).lines().size(), 2U);
  EXPECT_TRUE(has("[m].txt") && has("[a,b].txt"));
  EXPECT_FALSE(has("m.txt") || has("a.txt"));
}

TEST_F(CommandLine, OptionsMayStandBehindModels) {
  writeModel("a.inp", smallModel());
  writeModel("b.inp", smallModel());
  EXPECT_EQ(run({"a.inp", "--set", "CurvatureLargeRangeTo=4.95E-06", "b.inp", "--jobs=2"}).lines().size(),
            2U);
  EXPECT_EQ(wholeRows("b.inp.txt"), 50);
}

}  // namespace
}  // namespace torvik::batch
