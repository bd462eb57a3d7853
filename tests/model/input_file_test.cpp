// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/input_file.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/files.h"
#include "base/message_of.h"
#include "base/temporary_folder.h"
#include "model/rows.h"

namespace torvik::model {
namespace {

using tests::messageOf;

const std::string kDefaults =
    "[Beams]\nAll=1\n\n[Beam0]\nUse=1\nSpan=10000\nFlexuralSpan=3000\nShearSpan=3500\nHalfSpanFiberNumber="
    "100\n"
    "HalfSpanFiberLength=50\n\n[Solids]\nAll=1\n\n[Solid0]\nUse=1\nOutput=0\nType=JSCE "
    "(Design)\nFile=\nNumber=1\n"
    "Width=0\nHeight=0\nArea=0\nDepth=0\nInitialStrain=0\nWatchStrain=\nElasticModulus=28000\n"
    "FlexuralStress=-4.05505541534364\nFlexuralStrain=-0.000144823407690844\nUltimateStress=30\n"
    "UltimateStrain=0.0035\nVolumetricRatio=0\n\n[Bars]\nAll=1\n\n[Bar0]\nUse=1\nOutput=1\nType=JSCE "
    "(Design)\n"
    "File=\nNumber=1\nDiameter=JIS G 3112 D13\nArea=126.7\nDepth=0\nInitialStrain=0\nWatchStrain=\n"
    "ElasticModulus=200000\nYieldStress=295\nYieldStrain=0.001475\nUltimateStress=520\nUltimateStrain=0.2\n\n"
    "[Tendons]\nAll=1\n\n[Tendon0]\nUse=1\nOutput=1\nType=JSCE (Design)\nFile=\nNumber=1\n"
    "Diameter=JIS G 3109 13\nArea=132.7\nDepth=0\nIntroductionStrain=0.00378\nPrestressing=Post-tensioning\n"
    "SheathDiameter=23\nSheathArea=415.47562843725\nSheathDepth=0\nWatchStrain=\nElasticModulus=200000\n"
    "YieldStress=930\nYieldStrain=0.00465\nUltimateStress=1080\nUltimateStrain=0.05\n\n"
    "[AxialForces]\nAll=1\n\n[AxialForce0]\nUse=1\nNumber=1\nDepth=0\nForce=0\n";

TEST(InputFile, EveryKeyHasItsDefaultAndItsField) {
  EXPECT_EQ(fileTextOf(tablesOf(kOneOfEach)), kDefaults);
  EXPECT_EQ(tablesOf(kOneOfEach).Tendons[0].SheathArea, 415.47562843725);  // rounded by its text
  std::istringstream lines(kDefaults);
  std::string numbered;
  int value = 0;
  for (std::string line; std::getline(lines, line); numbered += line + "\n") {
    if (line.starts_with("[")) value = 0;
    const std::size_t end = line.find('=') + 1;
    if (end > 0 && line != "All=1") line.replace(end, line.npos, std::to_string(++value));
  }
  ObjectTables tables;
  tables.Beams = {{1, 2, 3, 4, 5, 6, 7, 8}};
  tables.Solids = {{1, 2, "3", "4", 5, 6, 7, 8, 9, 10, "11", 12, 13, 14, 15, 16, 17}};
  tables.Bars = {{1, 2, "3", "4", 5, "6", 7, 8, 9, "10", 11, 12, 13, 14, 15}};
  tables.Tendons = {{1, 2, "3", "4", 5, "6", 7, 8, 9, "10", 11, 12, 13, "14", 15, 16, 17, 18, 19}};
  tables.AxialForces = {{1, 2, 3, 4}};
  EXPECT_EQ(fileTextOf(tables), numbered);
  EXPECT_EQ(fileTextOf(tablesOf(numbered)), numbered);
}

TEST(InputFile, PartsAndFaultsOfAFile) {
  const std::pair<const char*, const char*> rows[] = {
      {"[Bars]\nAll=2\n", "[Bars]\nAll=2\n\n[Bar0]\nUse=1\nOutput=1\n"},
      {"[Solids]\nAll=2\n[Solid1]\nNumber=7\n",
       "[Solid1]\nUse=1\nOutput=0\nType=JSCE (Design)\nFile=\nNumber=7\n"},
      {"[Bars]\nAll=1\n[Bar1]\nArea=x\n[Bar00]\nArea=5\n", "Area=126.7\n"},
      {"[Solids]\n[Solid0]\nArea=x\n", "[Solids]\nAll=0\n"},
      {"[axialforce0]\nFORCE=-1e3\n[AXIALFORCES]\nall=1\n", "Force=-1000\n"},
      {"[Bars]\nAll=1\n[Bar0]\nUse=-1.9x\nOutput=yes\nType=\n", "Use=-1\nOutput=0\nType=\nFile=\n"},
      {"[Solids]\nAll=2\n[Solid1]\nWidth=wide\n", "a.inp: [Solid1] Width=\"wide\": expected a number"},
      {"[Bars]\nAll=1\n[Bar0]\nDepth=\n", "a.inp: [Bar0] Depth=\"\": expected a number"},
      {"[Bars]\nAll=1\n[Bar0]\nUse=32768\n",
       "a.inp: [Bar0] Use=\"32768\": expected an integer from -32768 to 32767"},
      {"[Tendons]\nAll=-1\n", "a.inp: [Tendons] All=\"-1\": expected a row count from 0 to 32767"},
  };
  for (const auto& [text, part] : rows) {
    std::string outcome;
    outcome += messageOf([&, text = text] { return outcome = fileTextOf(tablesOf(text)); });
    EXPECT_NE(outcome.find(part), std::string::npos) << outcome;
  }
}

/// A document in a file of a folder; `calls` has what the frame is told, at the end the document's file.
struct Editor : InputFileFrame {
  void cannotOpen(const std::string& path) override { calls = "cannot open " + path; }
  void takePath(const std::string& path) override { calls = "take " + path; }
  void showWaitCursor(bool on) override { calls += on ? ", wait" : ", done with " + document.currentFile; }
  std::string read(const std::string& path) {
    return messageOf([&] { return ReadInputFile(document, *this, path); });
  }
  std::string write(const std::string& path) {
    return messageOf([&] { return WriteInputFile(document, *this, path), 0; });
  }
  Document document{tablesOf(kOneOfEach), "old.inp", false};
  std::string calls;
  tests::TemporaryFolder folder;
  std::string file = (folder / "a.inp").string();
};

TEST(InputFile, AwkwardValuesComeBack) {
  Editor written;
  ObjectTables& tables = written.document.tables;
  tables.Solids.resize(10000);
  for (const auto text :
       {"", "inner  blanks\tand tab", "\xE9\xFC\xFF", "=[x]=;", "[x]", ";no comment", "D'19\""})
    tables.Solids.emplace_back().Type = text;
  for (const double number : {1.79769313486231E+308, 5e-324, -1E-05, -123456789012345., 999999999999999.})
    tables.Solids.emplace_back().Depth = number;
  EXPECT_EQ(written.write(written.file), "no error");
  Editor read;
  read.document.tables.Beams = {{9, 9, 9, 9, 9, 9, 9, 9}, {}};
  read.read(written.file);
  for (const Editor* const editor : {&written, &read})
    EXPECT_EQ(editor->calls, "take " + written.file + ", wait, done with " + written.file);
  EXPECT_TRUE(written.document.SavedFlag && read.document.SavedFlag);
  EXPECT_TRUE(fileTextOf(read.document.tables) == fileTextOf(tables));
  EXPECT_EQ(read.document.tables.Beams[0].BeamTop, 0);
}

TEST(InputFile, SavedOverALongerOne) {
  Editor editor;
  editor.document.tables = tablesOf("[Bars]\nAll=5\n[Bar1]\nArea=1\n[Bar4]\nArea=44\n");
  base::replaceWholeFile(editor.file, "; mine\r\n[SolidWizard]\r\nWhole=1\r\n");
  editor.write(editor.file);
  std::string expected = base::readWholeFile(editor.file);
  EXPECT_TRUE(expected.starts_with("; mine\r\n[SolidWizard]\r\nWhole=1\r\n\r\n[Beams]\r\nAll=0\r\n"));
  editor.document.tables.Bars.resize(3);
  editor.document.tables.Bars[1].Area = 2;
  editor.write(editor.file);
  expected.replace(expected.find("All=5"), 5, "All=3");
  expected.replace(expected.find("Area=1\r"), 7, "Area=2\r");
  EXPECT_EQ(base::readWholeFile(editor.file), expected);
}

TEST(InputFile, FailuresLeaveTheDocument) {
  Editor editor;
  const auto expectUntouched = [&](const std::string& calls) {
    EXPECT_EQ(editor.calls, calls);
    EXPECT_EQ(fileTextOf(editor.document.tables), kDefaults);
    EXPECT_FALSE(editor.document.SavedFlag);
    EXPECT_EQ(editor.document.currentFile, "old.inp");
  };
  for (const std::string& none : {editor.file, editor.folder.path().string(), std::string()}) {
    editor.read(none);
    expectUntouched("cannot open " + none);
  }
  base::replaceWholeFile(editor.file, std::string(2, '\0'));
  EXPECT_EQ(editor.read(editor.file), editor.file + ": not a text file (NUL byte at offset 0)");
  expectUntouched("take " + editor.file + ", wait, done with old.inp");
  EXPECT_NE(editor.write(editor.file + "/b.inp"), "no error");
  expectUntouched("take " + editor.file + "/b.inp, wait, done with old.inp");

  base::replaceWholeFile(editor.file, "[Bars]\nAll=9\n");
  editor.document.tables.Bars[0].Area = 1.7976931348623157e308;
  EXPECT_NE(editor.write(editor.file).find(": [Bar0] Area=\"1.79769313486232E+308\": expected a"), std::string::npos);
  EXPECT_EQ(base::readWholeFile(editor.file), "[Bars]\nAll=9\n");

  base::replaceWholeFile(editor.file, "[Beams]\nAll=2\n[Solids]\nAll=2\n[Solid1]\nArea=x\n");
  EXPECT_EQ(editor.read(editor.file), editor.file + ": [Solid1] Area=\"x\": expected a number");
  EXPECT_TRUE(editor.document.tables.Beams.size() == 2 && editor.document.currentFile == editor.file);
}

}  // namespace
}  // namespace torvik::model
