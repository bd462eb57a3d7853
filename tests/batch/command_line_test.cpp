// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/program.h"

namespace torvik::batch {

TEST_F(Program, RunsNothingOnAWrongCommandLine) {
  writeModel("m.inp");
  write("nul.ini", std::string("[Option]\0", 9));
  write("bad.ini", "[Option]\nCurvatureSmallRangeStep=abc");
  const struct {
    std::string options;
    std::string part;  ///< of what is said
    int status = 2;
  } cases[] = {
      {"--settings .", ".: no such settings file"},
      {"--settings nul.ini", "nul.ini: not a text file"},
      {"--settings pipe", "pipe: can not be read: not a regular file"},
      {"--settings bad.ini", "bad.ini: [Option] CurvatureSmallRangeStep=\"abc\": expected a number", 1},
      {"--set ConvergencePrecision", "KEY=VALUE"},
      {"--set NoSuchKey=1", "\"NoSuchKey\" is no key of section Option"},
      {"--set ConvergencePrecision=3.5", "ConvergencePrecision=\"3.5\": expected an integer"},
      {"--set ConvergencePrecision=400", "[Option] ConvergencePrecision=\"400\": expected an exponent of 10",
       1},
      {"--set CurvatureLargeRangeTo=1E999", "CurvatureLargeRangeTo=\"1E999\": expected a number"},
      {"--set TableSolver=yes", "0 or 1"},
      {"--set 'MessagesBeepStartSound=a\nb'", "a text of one line"},
      {"--step small", "\"small\": expected Small, Large or a number"},
      {"--shape rc", "r or c"},
      {"--tie-stress 0", "\"0\": expected a number other than 0"},
      {"--jobs 0", "a number from 1 on"},
      {"--stress-strain bar", "\"bar\" is no row"},
      {"--stress-strain bar:0", "\"bar:0\" is no row"},
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
  EXPECT_TRUE(run("torvik-batch --help >help && torvik-batch --version").out.starts_with("torvik "));
}

TEST_F(Program, TakesNamesOfModelsAsTheyStand) {
  const Texts names = {"[m]", "[a,b]", "with blank", "\xE9.inp", "a\tb\n.inp", "-m.inp"};
  for (const std::string& name : names) writeModel(name);
  const Ended ended = run(kShort + "'[m]' '[a,b]' 'with blank' --jobs=2 -- \xE9.inp 'a\tb\n.inp' -m.inp");
  EXPECT_EQ(split(ended.out, "\n").size(), names.size()) << ended.out << ended.err;
  EXPECT_EQ(ended.rows("a?b?.inp"), "50");
  for (const std::string& name : names) EXPECT_EQ(wholeRows(name + ".txt"), 50) << name;
}

TEST_F(Program, PrintsWithoutAJob) {
  writeModel("b\x1B.inp", {"Solids All=0"});
  writeModel("m.inp", {"Solid1 Type=Restoration (Confined)", "Solid1 VolumetricRatio=0.01",
                       "Solid2 Type=", "Solid3 Type=plastic", "Solid4 Type=File", "Solid4 File=no.txt",
                       "Tendon0 Type=Elastic"});
  write("home/torvik/torvik.ini",
        "[Option]\nStrainBarFrom=-0.002\nStrainBarTo=0.002\nStrainBarStep=0.001\nStrainSolidFrom=0\n"
        "StrainSolidTo=0\nStrainTendonFrom=0.5\nStrainTendonTo=0\nStrainTendonStep=-0.25");
  ASSERT_EQ(run("sed s/ElasticModulus=28000/ElasticModulus=0/ m.inp >soft.inp").status, 0);
  const std::string parameters = "Section\tA\ty'\ty\tI\tZ'\tZ\tE\tEI\tEA\tNote\ng\t";
  const std::string curve = "Strain\tStress\n";
  const struct {
    std::string options;
    std::string out;  ///< begins with this
    std::string err;  ///< part; empty: all is good
  } cases[] = {
      // By hand: 300 x 500 of concrete alone.
      {"--section-parameters --full", parameters + "150000\t250\t250\t3125000000\t12500000\t12500000\t", ""},
      {"--section-parameters b\x1B.inp soft.inp",
       "m.inp\n" + parameters + "1.5000E+05\t2.5000E+02\t2.5000E+02\t3.1250E+09\t",
       "torvik-batch: b?.inp: no solid in use: index out of range\n"
       "torvik-batch: soft.inp: Warning: Avarage elastic modulus of solid is 0. Equivalent"},
      // By hand: E = 200000, yield at 345; E * 0.5.
      {"--stress-strain bar:1 --full", curve + "-0.002\t-345\n-0.001\t-200\n0\t0\n0.001\t200\n0.002\t", ""},
      {"--stress-strain tendon:1 --full", curve + "0.5\t100000\n0.25\t50000\n0\t0\n", ""},
      {"--stress-strain SOLID:2 --shape r --tie-stress=-300 --full", curve + "0\t0\n", ""},
      {"--stress-strain solid:2 --shape r", "", "--shape r|c and --tie-stress N"},
      {"--stress-strain solid:3", "", "No object type in the corrent row."},
      {"--stress-strain solid:4", "", "error 51"},
      {"--stress-strain solid:5", "", "File not found."},
      {"--stress-strain bar:2", "", "m.inp: Bar 2 is asked for, the model has 1"},
      {"--stress-strain bar:1 --set StrainBarStep=0", "", "curve, (To - From) / Step: division by zero"},
  };
  for (const auto& row : cases) {
    const Ended ended = run("torvik-batch m.inp " + row.options);
    EXPECT_EQ(ended.out.substr(0, row.out.empty() ? ended.out.npos : row.out.size()), row.out) << row.options;
    EXPECT_EQ(ended.status, row.err.empty() ? 0 : 1) << row.options;
    EXPECT_NE(ended.err.find(row.err), ended.err.npos) << ended.err;
  }
  EXPECT_FALSE(has("m.inp.txt") || has("m.inp.log"));
}

}  // namespace torvik::batch
