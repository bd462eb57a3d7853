// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/program.h"

namespace torvik::batch {
namespace {

class Prints : public ProgramTest {};

// By hand: 300 x 500 of concrete alone; three bars of 506.7 at 450 with n = 200000 / 28000.
constexpr std::string_view kHeading = "Section\tA\ty'\ty\tI\tZ'\tZ\tE\tEI\tEA\tNote\n";
constexpr std::string_view kGross =
    "g\t1.5000E+05\t2.5000E+02\t2.5000E+02\t3.1250E+09\t1.2500E+07\t1.2500E+07\t2.8000E+04\t8.7500E+13"
    "\t4.2000E+09\tSolid\n";
constexpr std::string_view kFullGross =
    "g\t150000\t250\t250\t3125000000\t12500000\t12500000\t28000\t87500000000000\t4200000000\tSolid\n";

TEST_F(Prints, SectionParameters) {
  writeModel("m.inp", smallModel());
  const Ended ended = run({"--section-parameters", "m.inp"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  const Texts lines = ended.lines();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(ended.out.substr(0, kHeading.size() + kGross.size()),
            std::string(kHeading) + std::string(kGross));
  // A of row "d": 150000 - 1520.1 + 1520.1 * 7.142857
  EXPECT_TRUE(lines[4].starts_with("d\t1.5934E+05\t")) << lines[4];
  EXPECT_TRUE(run({"--section-parameters", "--full", "m.inp"}).out.find(kFullGross) == kHeading.size());
  EXPECT_FALSE(has("m.inp.txt") || has("m.inp.log")) << "a print runs no job";
}

TEST_F(Prints, SeveralModelsAreHeadedByTheirNames) {
  writeModel("a.inp", smallModel());
  writeModel("b.inp", smallModel(), {"Solids All=0"});
  const Ended ended = run({"--section-parameters", "a.inp", "b.inp", "missing.inp", "./a.inp"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_TRUE(ended.out.starts_with("a.inp\n" + std::string(kHeading))) << ended.out;
  EXPECT_NE(ended.out.find("\n./a.inp\nSection\t"), ended.out.npos) << "the batch goes on";
  EXPECT_EQ(ended.err,
            "torvik-batch: b.inp: no solid in use: index out of range\n"
            "torvik-batch: missing.inp: Can't open missing.inp\n");
}

TEST_F(Prints, AWarningIsOneLine) {
  model::ObjectTables tables = smallModel();
  for (auto& solid : tables.Solids) solid.ElasticModulus = 0;
  writeModel("m.inp", tables);
  const Ended ended = run({"--section-parameters", "m.inp"});
  EXPECT_EQ(ended.lines().size(), 6U);
  EXPECT_EQ(ended.err,
            "torvik-batch: m.inp: Warning: Avarage elastic modulus of solid is 0. Equivalent sections "
            "calculations are skipped.\n");
}

TEST_F(Prints, StressStrain) {
  model::ObjectTables tables = smallModel();
  tables.Solids.resize(3);
  tables.Tendons.push_back(analysis::tendonOf(140, 400, "none"));
  writeModel("m.inp", tables,
             {"Solid1 Type=Restoration (Confined)", "Solid1 VolumetricRatio=0.01",
              "Solid2 Type=", "Bar0 Use=0", "Tendon0 Type=Elastic"});
  writeModel("file.inp", tables,
             {"Solid0 Type=File", "Solid0 File=", "Bar0 Type=File", "Bar0 File=no.txt", "Tendon0 Type=File",
              "Tendon0 File=bad.txt", "Solid1 Type=plastic"});
  write("bad.txt", "1 two");
  const auto range = [](const char* kind, const char* from, const char* to, const char* step) {
    const std::string key = std::string("Strain") + kind;
    return Texts{"--set", key + "From=" + from, "--set", key + "To=" + to, "--set", key + "Step=" + step};
  };
  const struct {
    const char* name;
    Texts arguments;
    std::string out;  ///< below the heading; empty: refused
    std::string err;
  } cases[] = {
      // By hand: E = 200000, yield at 345; parabola to 0.85 * 30 at 0.002; E * 0.5.
      {"bar", range("Bar", "-0.002", "0.002", "0.001") + Texts{"--full", "--stress-strain", "bar:1", "m.inp"},
       "-0.002\t-345\n-0.001\t-200\n0\t0\n0.001\t200\n0.002\t345\n", ""},
      {"solid, display format",
       range("Solid", "0", "0.002", "0.001") + Texts{"--stress-strain", "SOLID:1", "m.inp"},
       "0.0000E+00\t0.0000E+00\n1.0000E-03\t1.9125E+01\n2.0000E-03\t2.5500E+01\n", ""},
      {"tendon, downward",
       range("Tendon", "0.5", "0", "-0.25") + Texts{"--full", "--stress-strain=tendon:1", "m.inp"},
       "0.5\t100000\n0.25\t50000\n0\t0\n", ""},
      {"confined",
       range("Solid", "0", "0", "1") +
           Texts{"--full", "--shape", "r", "--tie-stress", "300", "--stress-strain", "solid:2", "m.inp"},
       "0\t0\n", ""},
      {"confined without answers",
       {"--shape", "r", "--stress-strain", "solid:2", "m.inp"},
       "",
       "--shape r|c and --tie-stress N"},
      {"no such row",
       {"--stress-strain", "bar:2", "m.inp"},
       "",
       "m.inp: Bar 2 is asked for, the model has 1"},
      {"no type", {"--stress-strain", "solid:3", "m.inp"}, "", "No object type in the corrent row."},
      {"unknown type", {"--stress-strain", "solid:2", "file.inp"}, "", "error 51"},
      {"no file name", {"--stress-strain", "solid:1", "file.inp"}, "", "No file name."},
      {"no file", {"--stress-strain", "bar:1", "file.inp"}, "", "File not found."},
      {"a bad file", {"--stress-strain", "tendon:1", "file.inp"}, "", "bad.txt: line 1: expected a stress"},
      {"step 0",
       {"--set", "StrainBarStep=0", "--stress-strain", "bar:1", "m.inp"},
       "",
       "steps of the stress-strain curve: the step is 0: division by zero"},
      {"a step too small to add",
       range("Bar", "0.1", "0.1", "1E-20") + Texts{"--stress-strain", "bar:1", "m.inp"}, "",
       "the step is lost in the strain: invalid operation"},
      {"too many steps",
       {"--set", "StrainBarStep=1E-9", "--stress-strain", "bar:1", "m.inp"},
       "",
       "steps of the stress-strain curve: overflow"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const Ended ended = run(row.arguments);
    EXPECT_EQ(ended.out, row.out.empty() ? "" : "Strain\tStress\n" + row.out);
    EXPECT_EQ(ended.status, row.out.empty() ? 1 : 0);
    EXPECT_NE(ended.err.find(row.err), ended.err.npos) << ended.err;
    EXPECT_EQ(split(ended.err, "\n").size(), row.out.empty() ? 1U : 0U) << ended.err;
  }
}

}  // namespace
}  // namespace torvik::batch
