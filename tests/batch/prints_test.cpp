// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/program.h"

namespace torvik::batch {
namespace {

using Prints = ProgramTest;

TEST_F(Prints, SectionParameters) {
  const std::string heading = "Section\tA\ty'\ty\tI\tZ'\tZ\tE\tEI\tEA\tNote\n";
  model::ObjectTables soft = smallModel();
  for (auto& solid : soft.Solids) solid.ElasticModulus = 0;
  writeModel("a.inp");
  writeModel("b\x1B.inp", {"Solids All=0"});
  writeModel("soft.inp", {}, soft);
  // By hand: 300 x 500 of concrete alone.
  const std::string full = run("torvik-batch --section-parameters --full a.inp").out;
  EXPECT_TRUE(full.starts_with(heading + "g\t150000\t250\t250\t3125000000\t12500000\t12500000\t28000\t"))
      << full;
  const Ended ended = run("torvik-batch --section-parameters a.inp b\x1B.inp soft.inp");
  EXPECT_EQ(ended.status, 1);
  EXPECT_TRUE(ended.out.starts_with("a.inp\n" + heading + "g\t1.5000E+05\t2.5000E+02\t")) << ended.out;
  EXPECT_NE(ended.out.find("\nsoft.inp\nSection\t"), ended.out.npos) << "the batch goes on";
  EXPECT_EQ(ended.err,
            "torvik-batch: b?.inp: no solid in use: index out of range\n"
            "torvik-batch: soft.inp: Warning: Avarage elastic modulus of solid is 0. Equivalent sections "
            "calculations are skipped.\n");
  EXPECT_FALSE(has("a.inp.txt") || has("a.inp.log")) << "a print runs no job";
}

TEST_F(Prints, StressStrain) {
  writeModel("m.inp", {"Solid1 Type=Restoration (Confined)", "Solid1 VolumetricRatio=0.01",
                       "Solid2 Type=", "Solid3 Type=plastic", "Solid4 Type=File", "Solid4 File=no.txt",
                       "Tendon0 Type=Elastic"});
  write("s.ini",
        "[Option]\nStrainBarFrom=-0.002\nStrainBarTo=0.002\nStrainBarStep=0.001\nStrainSolidFrom=0\n"
        "StrainSolidTo=0.002\nStrainSolidStep=0.001\nStrainTendonFrom=0.5\nStrainTendonTo=0\n"
        "StrainTendonStep=-0.25");
  const struct {
    std::string arguments;
    const char* out;  ///< below the heading; empty: refused
    const char* err;
  } cases[] = {
      // By hand: E = 200000, yield at 345; parabola to 0.85 * 30 at 0.002; E * 0.5.
      {"bar:1 --full", "-0.002\t-345\n-0.001\t-200\n0\t0\n0.001\t200\n0.002\t345\n", ""},
      {"SOLID:1", "0.0000E+00\t0.0000E+00\n1.0000E-03\t1.9125E+01\n2.0000E-03\t2.5500E+01\n", ""},
      {"tendon:1 --full", "0.5\t100000\n0.25\t50000\n0\t0\n", ""},
      {"solid:2 --full --set StrainSolidTo=0 --shape r --tie-stress=-300", "0\t0\n", ""},
      {"solid:2 --shape r", "", "--shape r|c and --tie-stress N"},
      {"solid:3", "", "No object type in the corrent row."},
      {"solid:4", "", "error 51"},
      {"solid:5", "", "File not found."},
      {"bar:2", "", "m.inp: Bar 2 is asked for, the model has 1"},
      {"bar:1 --set StrainBarStep=0", "", "curve, (To - From) / Step: division by zero"},
  };
  for (const auto& row : cases) {
    const Ended ended = run("torvik-batch m.inp --settings s.ini --stress-strain " + row.arguments);
    EXPECT_EQ(ended.out, *row.out ? std::string("Strain\tStress\n") + row.out : "") << row.err;
    EXPECT_EQ(ended.status, *row.out ? 0 : 1) << row.err;
    EXPECT_NE(ended.err.find(row.err), ended.err.npos) << ended.err;
  }
}

}  // namespace
}  // namespace torvik::batch
