// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/input_file.h"

#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/message_of.h"
#include "base/temporary_folder.h"
#include "model/rows.h"

namespace torvik::model {
namespace {

using tests::messageOf;

/// Notes the calls; with the cursor's, the file that the document has.
struct RecordingFrame : InputFileFrame {
  explicit RecordingFrame(const Document& watched) : document(watched) {}
  void cannotOpen(const std::string& path) override { calls += "cannot open " + path; }
  void takePath(const std::string& path) override { calls += "take " + path; }
  void showWaitCursor(bool on) override { calls += on ? ", wait" : ", done with " + document.currentFile; }
  const Document& document;
  std::string calls;
};

/// Every key in its place, and the value of every field under its own key.
TEST(InputFile, IsWrittenWhole) {
  ObjectTables tables;
  tables.Beams = {{1, 12000, 4000.5, 3999.75, 120, 51, 7, 8}};
  tables.Solids = {{0, 1, "File", "..\\a b.txt", 2, 1.0 / 3, 1e-5, 1e15, -0.0, -0.00025, "0.002", 31000, -3.5,
                    -0.0001, 40, 0.004, 0.01}};
  tables.Bars = {
      {1, -1, "Bilinear", "b.txt", 3, "D19", 286.5, 450, -1, "-0.01", 199000, 345, 0.0017, 490.25, 0.15}};
  tables.Tendons = {{1, 0, "Steel Bar", "t.txt", 4, "12.7", 98.71, 800.125, 0.006, "Pre-tensioning", 25, 491,
                     801, "0.01", 195000.5, 1580, 0.008, 1860, 0.035}};
  tables.AxialForces = {{1, 5, 300, -123456.789}, {2, 6, 100, 1e300}};
  EXPECT_EQ(fileTextOf(tables),
            "[Beams]\nAll=1\n\n[Beam0]\nUse=1\nSpan=12000\nFlexuralSpan=4000.5\nShearSpan=3999.75\n"
            "HalfSpanFiberNumber=120\nHalfSpanFiberLength=51\n\n"
            "[Solids]\nAll=1\n\n[Solid0]\nUse=0\nOutput=1\nType=File\nFile=..\\a b.txt\nNumber=2\n"
            "Width=0.333333333333333\nHeight=1E-05\nArea=1E+15\nDepth=0\nInitialStrain=-0.00025\n"
            "WatchStrain=0.002\nElasticModulus=31000\nFlexuralStress=-3.5\nFlexuralStrain=-0.0001\n"
            "UltimateStress=40\nUltimateStrain=0.004\nVolumetricRatio=0.01\n\n"
            "[Bars]\nAll=1\n\n[Bar0]\nUse=1\nOutput=-1\nType=Bilinear\nFile=b.txt\nNumber=3\nDiameter=D19\n"
            "Area=286.5\nDepth=450\nInitialStrain=-1\nWatchStrain=-0.01\nElasticModulus=199000\n"
            "YieldStress=345\nYieldStrain=0.0017\nUltimateStress=490.25\nUltimateStrain=0.15\n\n"
            "[Tendons]\nAll=1\n\n[Tendon0]\nUse=1\nOutput=0\nType=Steel Bar\nFile=t.txt\nNumber=4\n"
            "Diameter=12.7\nArea=98.71\nDepth=800.125\nIntroductionStrain=0.006\n"
            "Prestressing=Pre-tensioning\nSheathDiameter=25\nSheathArea=491\nSheathDepth=801\n"
            "WatchStrain=0.01\nElasticModulus=195000.5\nYieldStress=1580\nYieldStrain=0.008\n"
            "UltimateStress=1860\nUltimateStrain=0.035\n\n"
            "[AxialForces]\nAll=2\n\n[AxialForce0]\nUse=1\nNumber=5\nDepth=300\nForce=-123456.789\n\n"
            "[AxialForce1]\nUse=2\nNumber=6\nDepth=100\nForce=1E+300\n");
}

TEST(InputFile, MissingKeysTakeTheirDefaults) {
  const ObjectTables tables = tablesOf(kOneOfEach);
  EXPECT_EQ(fileTextOf(tables),
            "[Beams]\nAll=1\n\n[Beam0]\nUse=1\nSpan=10000\nFlexuralSpan=3000\nShearSpan=3500\n"
            "HalfSpanFiberNumber=100\nHalfSpanFiberLength=50\n\n"
            "[Solids]\nAll=1\n\n[Solid0]\nUse=1\nOutput=0\nType=JSCE (Design)\nFile=\nNumber=1\nWidth=0\n"
            "Height=0\nArea=0\nDepth=0\nInitialStrain=0\nWatchStrain=\nElasticModulus=28000\n"
            "FlexuralStress=-4.05505541534364\nFlexuralStrain=-0.000144823407690844\nUltimateStress=30\n"
            "UltimateStrain=0.0035\nVolumetricRatio=0\n\n"
            "[Bars]\nAll=1\n\n[Bar0]\nUse=1\nOutput=1\nType=JSCE (Design)\nFile=\nNumber=1\n"
            "Diameter=JIS G 3112 D13\nArea=126.7\nDepth=0\nInitialStrain=0\nWatchStrain=\n"
            "ElasticModulus=200000\nYieldStress=295\nYieldStrain=0.001475\nUltimateStress=520\n"
            "UltimateStrain=0.2\n\n"
            "[Tendons]\nAll=1\n\n[Tendon0]\nUse=1\nOutput=1\nType=JSCE (Design)\nFile=\nNumber=1\n"
            "Diameter=JIS G 3109 13\nArea=132.7\nDepth=0\nIntroductionStrain=0.00378\n"
            "Prestressing=Post-tensioning\nSheathDiameter=23\nSheathArea=415.47562843725\nSheathDepth=0\n"
            "WatchStrain=\nElasticModulus=200000\nYieldStress=930\nYieldStrain=0.00465\n"
            "UltimateStress=1080\nUltimateStrain=0.05\n\n"
            "[AxialForces]\nAll=1\n\n[AxialForce0]\nUse=1\nNumber=1\nDepth=0\nForce=0\n");
  EXPECT_EQ(tables.Tendons[0].SheathArea, 415.47562843725);  // rounded also where nothing is written
}

TEST(InputFile, PartsOfAFile) {
  struct Case {
    const char* name;
    const char* text;
    std::array<std::size_t, kObjectKinds> counts;
    const char* written;  ///< stands in the text that the tables give
  };
  const Case cases[] = {
      {"beams alone", "[Beams]\nAll=1\n", {1, 0, 0, 0, 0}, "Span=10000\n"},
      {"no row sections", "[Bars]\nAll=2\n", {0, 0, 2, 0, 0}, "[Bar1]\nUse=1\nOutput=1\n"},
      {"row 0 missing", "[Solids]\nAll=2\n[Solid1]\nNumber=7\n", {0, 2, 0, 0, 0}, "File=\nNumber=1\n"},
      {"row 1 as written",
       "[Solids]\nAll=2\n[Solid1]\nType=x\n",
       {0, 2, 0, 0, 0},
       "Type=x\nFile=\nNumber=1\n"},
      {"row beyond the count", "[Bars]\nAll=1\n[Bar1]\nArea=x\n", {0, 0, 1, 0, 0}, "Area=126.7\n"},
      {"no count", "[Solids]\n[Solid0]\nArea=5\n", {0, 0, 0, 0, 0}, "[Solids]\nAll=0\n"},
      {"count of 0", "[Solids]\nAll=0\n[Solid0]\nArea=x\n", {0, 0, 0, 0, 0}, "[Solids]\nAll=0\n"},
      {"any order and case",
       "[axialforce0]\nFORCE=-1e3\n[AXIALFORCES]\nall=1\n",
       {0, 0, 0, 0, 1},
       "Force=-1000\n"},
      {"leading zeros name no row", "[Bars]\nAll=1\n[Bar00]\nArea=5\n", {0, 0, 1, 0, 0}, "Area=126.7\n"},
      {"leading digits of an integer", "[Bars]\nAll=1\n[Bar0]\nUse=-1.9x\n", {0, 0, 1, 0, 0}, "Use=-1\n"},
      {"text for an integer", "[Bars]\nAll=1\n[Bar0]\nUse=yes\n", {0, 0, 1, 0, 0}, "Use=0\n"},
      {"empty text is no default", "[Bars]\nAll=1\n[Bar0]\nType=\n", {0, 0, 1, 0, 0}, "Type=\nFile=\n"},
      {"diameter as text", "[Bars]\nAll=1\n[Bar0]\nDiameter=012.70\n", {0, 0, 1, 0, 0}, "Diameter=012.70\n"},
  };
  for (const Case& c : cases) {
    const ObjectTables tables = tablesOf(c.text);
    for (const ObjectKind kind : kAllObjectKinds) {
      EXPECT_EQ(tables.rowCount(kind), c.counts[static_cast<std::size_t>(kind)]) << c.name;
    }
    EXPECT_NE(fileTextOf(tables).find(c.written), std::string::npos) << c.name;
  }
}

/// Fields take in turn what a round trip could lose.
template <class Row>
void fill(std::vector<Row>& rows, std::size_t count) {
  constexpr std::int16_t kIntegers[] = {32767, -32768, 0, 1, -1};
  constexpr double kNumbers[] = {
      1.79769313486231E+308, -1E+308, 2.2250738585072E-308, 4.94065645841247E-324, 0.1, -1E-05,
      -123456789012345,      1E+15,   0.000144823407690844, 999999999999999};
  const std::string texts[] = {
      "",       "inner  blanks\tand tab", "\xE9\xFC\xFF Latin-1", "M\xC3\xBCller;=[x]=", "[x]", ";no comment",
      "D'19\"", "C:\\a\\b.txt",           std::string(254, 'w')};
  rows.resize(count);
  std::size_t turn = 0;
  for (Row& row : rows) {
    for (const Field<Row>& field : fieldsOf<Row>()) {
      ++turn;
      if (const auto* integer = std::get_if<typename Field<Row>::Integer>(&field.member)) {
        row.** integer = kIntegers[turn % std::size(kIntegers)];
      } else if (const auto* number = std::get_if<typename Field<Row>::Number>(&field.member)) {
        row.** number = kNumbers[turn % std::size(kNumbers)];
      } else {
        row.*std::get<typename Field<Row>::Text>(field.member) = texts[turn % std::size(texts)];
      }
    }
  }
}

TEST(InputFile, EveryFieldComesBack) {
  const tests::TemporaryFolder folder;
  const std::string path = (folder / "deep/a.inp").string();
  Document written;
  for (const ObjectKind kind : kAllObjectKinds) {
    visitTable(written.tables, kind, [&](auto& rows) { fill(rows, kind == ObjectKind::Solid ? 10000 : 90); });
  }
  Document read{tablesOf("[Beams]\nAll=99\n[Bars]\nAll=1\n"), "", false};  // storage that is filled again
  read.tables.Beams[0].BeamTop = 5;
  RecordingFrame frame(read);
  WriteInputFile(written, frame, path);
  ASSERT_TRUE(ReadInputFile(read, frame, path));
  EXPECT_TRUE(fileTextOf(read.tables) == fileTextOf(written.tables));
  EXPECT_EQ(read.tables.Solids[9999].Depth, written.tables.Solids[9999].Depth);
  EXPECT_EQ(read.tables.Beams[0].BeamTop, 0);
}

TEST(InputFile, SavedOverALongerOne) {
  const tests::TemporaryFolder folder;
  const std::string path = (folder / "a.inp").string();
  Document document{tablesOf("[Bars]\nAll=5\n[Bar1]\nArea=1\n[Bar4]\nArea=44\n"), "", false};
  RecordingFrame frame(document);
  base::replaceWholeFile(path, "; mine\r\n[SolidWizard]\r\nWhole=1\r\n");
  WriteInputFile(document, frame, path);
  std::string expected = base::readWholeFile(path);
  EXPECT_TRUE(expected.starts_with("; mine\r\n[SolidWizard]\r\nWhole=1\r\n\r\n[Beams]\r\nAll=0\r\n"));

  document.tables.Bars.resize(3);
  document.tables.Bars[1].Area = 2;
  WriteInputFile(document, frame, path);
  expected.replace(expected.find("All=5"), 5, "All=3");
  expected.replace(expected.find("Area=1\r"), 7, "Area=2\r");
  EXPECT_EQ(base::readWholeFile(path), expected);
  EXPECT_NE(expected.find("[Bar4]\r\n"), std::string::npos);
  ReadInputFile(document, frame, path);
  EXPECT_EQ(document.tables.Bars.size(), 3U);
}

TEST(InputFile, FaultsNameFileSectionKeyAndValue) {
  struct Case {
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {"[Solids]\nAll=2\n[Solid1]\nWidth=wide\n", "a.inp: [Solid1] Width=\"wide\": a number"},
      {"[Beams]\nAll=1\n[Beam0]\nSpan=10000 mm\n", "a.inp: [Beam0] Span=\"10000 mm\": a number"},
      {"[Bars]\nAll=1\n[Bar0]\nDepth=\n", "a.inp: [Bar0] Depth=\"\": a number"},
      {"[AxialForces]\nAll=1\n[AxialForce0]\nForce=nan\n", "a.inp: [AxialForce0] Force=\"nan\": a number"},
      {"[Bars]\nAll=1\n[Bar0]\nUse=32768\n", "a.inp: [Bar0] Use=\"32768\": an integer from -32768 to 32767"},
      {"[Tendons]\nAll=-1\n", "a.inp: [Tendons] All=\"-1\": a row count from 0 to 32767"},
      {"[Solids]\nAll=32768\n", "a.inp: [Solids] All=\"32768\": an integer from -32768 to 32767"},
  };
  for (const Case& c : cases) EXPECT_EQ(messageOf([&] { return tablesOf(c.text); }), c.message);
}

TEST(InputFile, TheFrameIsTold) {
  const tests::TemporaryFolder folder;
  const std::string path = (folder / "a.inp").string();
  Document written{tablesOf(kOneOfEach), "old.inp", false};
  RecordingFrame frame(written);
  WriteInputFile(written, frame, path);
  Document read{{}, "old.inp", false};
  RecordingFrame otherFrame(read);
  EXPECT_TRUE(ReadInputFile(read, otherFrame, path));
  EXPECT_EQ(frame.calls, "take " + path + ", wait, done with " + path);
  EXPECT_EQ(otherFrame.calls, frame.calls);
  EXPECT_TRUE(written.SavedFlag && read.SavedFlag);

  for (const std::string& noFile : {(folder / "none.inp").string(), folder.path().string(), std::string()}) {
    Document document{tablesOf(kOneOfEach), "old.inp", false};
    RecordingFrame told(document);
    EXPECT_FALSE(ReadInputFile(document, told, noFile));
    EXPECT_EQ(told.calls, "cannot open " + noFile);
    EXPECT_EQ(fileTextOf(document.tables), fileTextOf(read.tables));
    EXPECT_EQ(document.currentFile, "old.inp");
    EXPECT_FALSE(document.SavedFlag);
  }
}

TEST(InputFile, AFaultEndsTheRead) {
  const tests::TemporaryFolder folder;
  const std::string path = (folder / "a.inp").string();
  Document document{tablesOf(kOneOfEach), "old.inp", false};
  RecordingFrame frame(document);
  base::replaceWholeFile(path, std::string_view("[Beams]\nAll=0\n\0", 15));
  EXPECT_EQ(messageOf([&] { return ReadInputFile(document, frame, path); }),
            path + ": not a text file (NUL byte at offset 14)");
  EXPECT_EQ(frame.calls, "take " + path + ", wait, done with old.inp");
  EXPECT_EQ(fileTextOf(document.tables), fileTextOf(tablesOf(kOneOfEach)));
  EXPECT_FALSE(document.SavedFlag);

  base::replaceWholeFile(path, "[Beams]\nAll=2\n[Solids]\nAll=2\n[Solid0]\nArea=5\n[Solid1]\nArea=x\n");
  frame.calls.clear();
  EXPECT_EQ(messageOf([&] { return ReadInputFile(document, frame, path); }),
            path + ": [Solid1] Area=\"x\": a number");
  EXPECT_EQ(frame.calls, "take " + path + ", wait, done with " + path);
  EXPECT_EQ(document.tables.Beams.size(), 2U);
  EXPECT_EQ(document.tables.Solids.at(0).Area, 5);
  EXPECT_EQ(document.tables.Bars.size(), 1U);
}

TEST(InputFile, AFailedWriteLeavesFileAndDocument) {
  const tests::TemporaryFolder folder;
  const std::string path = (folder / "a.inp").string();
  base::replaceWholeFile(path, "[Bars]\nAll=9\n");
  struct Case {
    std::string path;
    const char* type;
    double area;
    const char* part;  ///< of the message
  };
  const Case cases[] = {
      {path + "/b.inp", "x", 1, "a.inp: can not be created"},
      {folder.path().string(), "x", 1, "can not be read"},
      {path, "a\nb", 1, "a.inp: [Bar1] Type=\"a?b\": a text without a line end"},
      {path, "x", 1.7976931348623157e308, "a.inp: [Bar1] Area=\"1.79769313486232E+308\": a number"},
      {path, "x", -1e300 * 1e300, "a.inp: [Bar1] Area=\"-INF\": a number"},
  };
  for (const Case& c : cases) {
    Document document{tablesOf("[Bars]\nAll=2\n"), "old.inp", false};
    document.tables.Bars[1].Type = c.type;
    document.tables.Bars[1].Area = c.area;
    RecordingFrame frame(document);
    const auto write = [&] { return WriteInputFile(document, frame, c.path), 0; };
    EXPECT_NE(messageOf(write).find(c.part), std::string::npos) << c.part;
    EXPECT_EQ(frame.calls, "take " + c.path + ", wait, done with old.inp");
    EXPECT_FALSE(document.SavedFlag) << c.part;
    EXPECT_EQ(base::readWholeFile(path), "[Bars]\nAll=9\n") << c.part;
    EXPECT_EQ(folder.names().size(), 1U) << c.part;
  }
}

}  // namespace
}  // namespace torvik::model
