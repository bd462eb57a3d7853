// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/program.h"

namespace torvik::batch {
namespace {

using CommandLine = ProgramTest;

TEST_F(CommandLine, WrongOnesAreToldAndRunNothing) {
  writeModel("m.inp");
  write("nul.ini", std::string("[Option]\0", 9));
  write("bad.ini", "[Option]\nCurvatureSmallRangeStep=abc");
  const struct {
    std::string options;
    std::string part;  ///< of what is said
    int status = 2;
  } cases[] = {
      {"--no-such-option", "--no-such-option"},
      {"--settings", "--settings"},
      {"--settings .", ".: no such settings file"},
      {"--settings nul.ini", "nul.ini: not a text file"},
      {"--settings pipe", "pipe: can not be read: not a regular file"},
      {"--settings bad.ini", "bad.ini: [Option] CurvatureSmallRangeStep=\"abc\": a number", 1},
      {"--set ConvergencePrecision", "KEY=VALUE"},
      {"--set NoSuchKey=1", "\"NoSuchKey\" is no key of section Option"},
      {"--set ConvergencePrecision=3.5", "ConvergencePrecision=\"3.5\": an integer"},
      {"--set ConvergencePrecision=32768", "an integer"},
      {"--set ConvergencePrecision=400", "[Option] ConvergencePrecision=\"400\": an exponent of 10", 1},
      {"--set ConvergenceDiffWidth=-400", "ConvergenceDiffWidth=\"-400\": an exponent of 10", 1},
      {"--set CurvatureLargeRangeTo=1E999", "CurvatureLargeRangeTo=\"1E999\": a number"},
      {"--set TableSolver=yes", "0 or 1"},
      {"--set 'MessagesBeepStartSound=a\nb'", "a text of one line"},
      {"--step small", "\"small\": Small, Large or a number"},
      {"--shape rc", "r or c"},
      {"--tie-stress 0", "\"0\": a number other than 0"},
      {"--jobs 0", "a number from 1 on"},
      {"--jobs 99999999999", "--jobs"},
      {"--stress-strain bar", "\"bar\" is no row"},
      {"--stress-strain bar:0", "\"bar:0\" is no row"},
      {"--stress-strain bar:1x", "is no row"},
      {"--stress-strain beam:1", "\"beam:1\" is no row"},
      {"--full", "--section-parameters or --stress-strain"},
  };
  EXPECT_EQ(run("mkfifo pipe; torvik-batch --jobs 2").status, 2) << "no model";
  for (const auto& row : cases) {
    const Ended ended = run("torvik-batch m.inp " + row.options);
    EXPECT_EQ(ended.status, row.status) << row.part;
    const std::string said = row.status == 2 ? ended.err : ended.message("m.inp");
    EXPECT_NE(said.find(row.part), said.npos) << said;
  }
  EXPECT_FALSE(has("m.inp.txt"));
  EXPECT_TRUE(run("torvik-batch --help && torvik-batch --version").out.find("\ntorvik ") !=
              std::string::npos);
}

TEST_F(CommandLine, NamesOfModelsAreTakenAsTheyStand) {
  const Texts names = {"[m]", "[a,b]", "with blank", "\xE9.inp", "a\tb\n.inp", "-m.inp"};
  for (const std::string& name : names) writeModel(name);
  const Ended ended =
      run(kShort + std::string("'[m]' '[a,b]' 'with blank' --jobs=2 -- \xE9.inp 'a\tb\n.inp' -m.inp"));
  EXPECT_EQ(split(ended.out, "\n").size(), names.size()) << ended.out << ended.err;
  EXPECT_EQ(ended.rows("a?b?.inp"), "50");
  for (const std::string& name : names) EXPECT_EQ(wholeRows(name + ".txt"), 50) << name;
}

}  // namespace
}  // namespace torvik::batch
