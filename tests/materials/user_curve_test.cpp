// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/user_curve.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>

#include "base/files.h"
#include "base/message_of.h"
#include "base/number_text.h"
#include "base/temporary_folder.h"
#include "materials/stress_strain.h"

namespace torvik::materials {

TEST(UserCurve, TextIsReadUpToItsFirstBadLine) {
  /// "stress strain; " of each record, and the line that is none.
  const auto recordsOf = [](std::string_view text) {
    const CurveRecords curve = parseCurve(text, "a");
    std::string records = curve.failure.substr(0, curve.failure.find("expected a stress and a strain"));
    for (std::size_t i = 0; i < curve.Strains.size(); ++i)
      records += base::plainText(curve.Stresses[i]) + " " + base::plainText(curve.Strains[i]) + "; ";
    return records;
  };
  EXPECT_EQ(recordsOf("0,0\n300 , .002\n300\t \t1e-2 \n-1E+1 ,\t0.5"), "0 0; 300 0.002; 300 0.01; -10 0.5; ");
  EXPECT_EQ(recordsOf("\n1 0\r2 1\r\n3 2\n\r\n \t\n4 3\r"), "1 0; 2 1; 3 2; 4 3; ");
  EXPECT_EQ(recordsOf("\xEF\xBB\xBF 1,2\r\n\r\xEF\xBB\xBF 3,4\n5 6"), "a: line 3: 1 2; 0 0; ");
  for (const char* const bad :
       {"5,", "5", "5 2 3", "5,2,3", "5,2,", "5,,2", "5,2 # yield", "5,inf", "5,1e999"})
    EXPECT_EQ(recordsOf(bad), "a: line 1: 5 0; ") << bad;
  for (const char* const bad : {",5", "stress,strain", "nan,1", "0x10,1", "\"1\",2", "1;2", "\x7F"})
    EXPECT_EQ(recordsOf(bad), "a: line 1: 0 0; ") << bad;
  std::string text;
  for (int i = 0; i < 32767; ++i) text += "1 " + std::to_string(i) + "\n";
  EXPECT_EQ(parseCurve(text + "\n \n", "a").failure, "");
  EXPECT_EQ(recordsOf(text + "\n7 7\n").substr(0, 41), "Overflow: a: line 32769: expected at most");
}

/// Each script is a run of the program: files and strains, "*" where a job begins, "+" where "two" changes.
/// Each answer is a stress or a fault, with "!" where a failure is reported.
TEST(UserCurve, FileAndCursorStayFromCallToCall) {
  const tests::TemporaryFolder folder;
  const std::pair<const char*, const char*> files[] = {
      {"four", "0 0\n1 1\n2 2\n3 3\n"},         {"two", "0 0\n10 1\n"},
      {"jump", "0 0\n10 1\n50 1\n60 2\n"},      {"empty", "\n\n"},
      {"bad", "0 0\n10 1\n20 2\n30 x\n40 4\n"}, {"none", "x"}};
  const std::pair<const char*, const char*> runs[] = {
      {"four 1.5 four 3 four 3.01 four 0 four -.01 four 2.25", "1.5; 3; 0; 0; 0; 2.25; "},
      // At 1 the first segment is found from below, the third from above.
      {"jump 1 jump 2 jump 3 jump 1 jump 1.5 jump .5 jump 0 jump -1", "10; 60; 0; 50; 55; 5; 0; 0; "},
      {"jump 1.5 jump 1", "55; division by zero; "},
      {"missing 0 missing 0 empty 0", "!0; index out of range; index out of range; "},
      // A file that was not opened leaves the points of the one before; it is told once in a job.
      {"two .5 missing .5 missing .5 two .5 missing .5 * missing .5 two .5 missing .5",
       "5; !0; 5; 5; 0; 5; 5; !0; "},
      {"bad 1.5 bad 1.5 bad 3 four 4 bad 1.5 bad 1 bad -1 bad 1", "!0; 15; 0; 0; 0; 0; 0; 10; "},
      {"two 0 none 1 none 1 none -1", "0; !0; 0; 0; "},
      {"four 9 two .5 two .5 four 0 two .5", "0; index out of range; index out of range; 0; 5; "},
      // A file that changes is read again in the next job, and not before another one was.
      {"two .5 four .5 + two .5 * two .5 four .5 two .5", "5; 0.5; 5; 5; 0.5; 10; "},
      {"four 2.5 empty 2.5 empty 1.5 * empty 1.5", "2.5; 0; 1.5; 1.5; "},
  };
  for (const auto& [script, expected] : runs) {
    for (const auto& [name, text] : files) base::replaceWholeFile(folder / name, text);
    UserCurves curves("fncSSBarFile");
    CurvePlace place;
    std::string answers;
    std::istringstream words(script);
    for (std::string word; words >> word;) {
      if (word == "+") base::replaceWholeFile(folder / "two", "0 0\n20 1\n");
      if (word == "*") curves.startJob(place);
      if (word == "+" || word == "*") continue;
      double e = 0;
      words >> e;
      const auto report = [&](auto&...) { answers += "!"; };
      const auto path = (folder / word).string();
      const auto stress = [&] { return curves.stress(e, curves.numberOf(path), place, report); };
      const auto message = tests::messageOf([&] { return answers += base::plainText(stress()); });
      answers += (message == "no error" ? "" : message.substr(message.rfind(": ") + 2)) + "; ";
    }
    EXPECT_EQ(answers, expected) << script;
  }
}

TEST(UserCurve, EveryTableHasItsOwn) {
  StressStrainContext context;
  std::string told;
  context.report = [&](const std::string& caption, const std::string&) { told += caption + " "; };
  model::SolidObject solid;
  model::BarObject bar;
  model::TendonObject tendon;
  solid.Type = bar.Type = tendon.Type = solid.File = bar.File = tendon.File = "File";
  EXPECT_EQ(fncSSSolid(0, solid, context) + fncSSBar(0, bar, context) + fncSSTendon(0, tendon, context), 0);
  EXPECT_EQ(told, "torvik fncSSSolidFile torvik fncSSBarFile torvik fncSSTendonFile ");
}

}  // namespace torvik::materials
