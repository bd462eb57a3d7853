// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/user_curve.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "base/errors.h"
#include "materials/stress_strain.h"
#include "rows.h"

namespace torvik::materials {
namespace {

namespace fs = std::filesystem;
using base::NumericFault;
using Values = std::vector<double>;

TEST(UserCurveText, Records) {
  constexpr auto kBad = "expected a stress and a strain, two numbers separated by a comma or blanks";
  const struct {
    const char* name;
    std::string_view text;
    Values stresses;
    Values strains;
    int badLine = 0;  // then the last record is the one that could not be read
  } cases[] = {
      {"empty", "", {}, {}},
      {"blank lines only", "\n \t\r\n\r", {}, {}},
      {"comma, blanks, tabs",
       "0,0\n300 , .002\n 300\t \t1e-2 \n-1E+1 ,\t0.5",
       {0, 300, 300, -10},
       {0, .002, .01, .5}},
      {"line ends", "1 0\r2 1\r\n3 2\n\r\n\n4 3\r", {1, 2, 3, 4}, {0, 1, 2, 3}},
      {"byte order mark",
       "\xEF\xBB\xBF"
       "1,2\n",
       {1},
       {2}},
      {"byte order mark further on",
       "1,2\n\xEF\xBB\xBF"
       "3,4\n",
       {1, 0},
       {2, 0},
       2},
      {"one number", "1 0\n\n2\n3 1", {1, 2}, {0, 0}, 3},
      {"one number and a comma", "5,", {5}, {0}, 1},
      {"no stress", ",5", {0}, {0}, 1},
      {"three numbers", "1 2 3", {1}, {0}, 1},
      {"three numbers, commas", "1,2,3", {1}, {0}, 1},
      {"trailing comma", "1,2,", {1}, {0}, 1},
      {"two commas", "1,,2", {1}, {0}, 1},
      {"heading", "stress,strain\n1,2", {0}, {0}, 1},
      {"comment behind", "1,2 # yield", {1}, {0}, 1},
      {"lines are counted by their ends", "1 0\r\n2 1\r\rx\n", {1, 2, 0}, {0, 1, 0}, 4},
      {"infinity", "1,inf", {1}, {0}, 1},
      {"not a number", "nan,1", {0}, {0}, 1},
      {"hexadecimal", "0x10,1", {0}, {0}, 1},
      {"out of range", "1 0\n1,1e999", {1, 1}, {0, 0}, 2},
      {"quoted", "\"1\",2", {0}, {0}, 1},
      {"semicolon", "1;2", {0}, {0}, 1},
      {"NUL", std::string_view("1 2\n1\0 2\n", 9), {1, 0}, {2, 0}, 2},
      {"binary",
       "\x7F"
       "ELF\x02\x01",
       {0},
       {0},
       1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const CurveRecords curve = parseCurve(c.text, "a.txt");
    EXPECT_EQ(curve.Stresses, c.stresses);
    EXPECT_EQ(curve.Strains, c.strains);
    EXPECT_EQ(curve.PointCount, static_cast<int>(c.strains.size()) - (c.badLine != 0 ? 1 : 0));
    EXPECT_EQ(curve.failure, c.badLine == 0 ? "" : "a.txt: line " + std::to_string(c.badLine) + ": " + kBad);
  }
}

TEST(UserCurveText, CountIsHeldInSixteenBits) {
  std::string text;
  for (int i = 0; i < 32767; ++i) text += "1 " + std::to_string(i) + "\n";
  EXPECT_EQ(parseCurve(text + "\n \n", "a").failure, "");
  const CurveRecords curve = parseCurve(text + "\n7 7\n8 8\n", "a");
  EXPECT_EQ(curve.failure, "Overflow: a: line 32769: expected at most 32767 records");
  EXPECT_EQ(curve.PointCount, 32767);
  EXPECT_EQ(curve.Strains.back(), 32766);
}

/// A folder of its own for each test, and what the cache under test reports.
class UserCurve : public ::testing::Test {
 protected:
  UserCurve() {
    std::string pattern = (fs::temp_directory_path() / "torvik_curve_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_folder = pattern;
  }
  ~UserCurve() override { fs::remove_all(m_folder); }

  std::string write(const std::string& name, std::string_view text) {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }
  std::string path(const std::string& name) { return (m_folder / name).string(); }

  double stress(double strain, const std::string& file) { return cache.stress(strain, file, report); }
  NumericFault::Kind faultOf(double strain, const std::string& file) {
    try {
      ADD_FAILURE() << "a stress: " << stress(strain, file);
    } catch (const NumericFault& fault) {
      return fault.kind();
    }
    return NumericFault::Kind::TypeMismatch;
  }

  UserCurveCache cache{"fncSSBarFile"};
  std::vector<std::pair<std::string, std::string>> reports;
  UserCurveCache::Report report = [this](const std::string& caption, const std::string& text) {
    reports.emplace_back(caption, text);
  };

 private:
  fs::path m_folder;
};

TEST_F(UserCurve, InterpolatesWithinTheRangeOnly) {
  const std::string file = write("a", "0,0\n300,0.002\n300,0.01\n");
  const std::pair<double, double> cases[] = {{0.001, 150}, {0.01, 300},  {0.011, 0},   {-0.001, 0},
                                             {0, 0},       {0.002, 300}, {0.001, 150}, {0.005, 300}};
  for (int round = 0; round < 2; ++round) {
    for (const auto& [strain, expected] : cases) EXPECT_DOUBLE_EQ(stress(strain, file), expected) << strain;
  }
  EXPECT_TRUE(reports.empty());
  const std::string single = write("b", "300,0.002");
  UserCurveCache fresh("fncSSSolidFile");
  for (const double strain : {0.002, 0.001, 0.003}) EXPECT_EQ(fresh.stress(strain, single, report), 0);
}

TEST_F(UserCurve, RandomWalkAgainstAFreshLookup) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> step(0, 1);
  Values strains;
  Values stresses;
  std::ostringstream text;
  text.precision(17);
  for (double strain = -0.5; strains.size() < 60; strain += 0.001 + step(random) * 0.05) {
    strains.push_back(strain);
    stresses.push_back(step(random) * 500 - 250);
    text << stresses.back() << ' ' << strain << '\n';
  }
  const auto fresh = [&](double e) {
    for (std::size_t i = 0; i + 1 < strains.size(); ++i) {
      if (strains[i] <= e && e <= strains[i + 1]) {
        return stresses[i] +
               (stresses[i + 1] - stresses[i]) / (strains[i + 1] - strains[i]) * (e - strains[i]);
      }
    }
    return 0.0;
  };
  const std::string file = write("walk", text.str());
  const double middle = (strains.front() + strains.back()) / 2;
  double e = middle;
  for (int i = 0; i < 20000; ++i) {
    e += (step(random) - 0.5) * 0.3;
    if (std::abs(e - middle) > 1.2) e = middle;  // now and then outside, then a jump back
    ASSERT_EQ(stress(e, file), fresh(e)) << e;
  }
  for (const double point : strains) ASSERT_NEAR(stress(point, file), fresh(point), 1e-9);
}

TEST_F(UserCurve, SearchDirectionPicksTheSegmentAtAJump) {
  // At 1 the stress jumps from 10 to 50; a segment of no length stands between.
  const std::string file = write("jump", "0 0\n10 1\n50 1\n60 2\n");
  EXPECT_DOUBLE_EQ(stress(1, file), 10);  // forward from 0: the first segment
  EXPECT_DOUBLE_EQ(stress(2, file), 60);  // forward: the cursor stops at 2, the third segment's start
  EXPECT_DOUBLE_EQ(stress(3, file), 0);   // runs out: the cursor stands on the last point
  EXPECT_DOUBLE_EQ(stress(1, file), 50);  // backward: the third segment
  EXPECT_DOUBLE_EQ(stress(1.5, file), 55);
  EXPECT_DOUBLE_EQ(stress(1.2, file), 52);
  EXPECT_DOUBLE_EQ(stress(1.7, file), 57);
  EXPECT_DOUBLE_EQ(stress(0.5, file), 5);
  EXPECT_DOUBLE_EQ(stress(0, file), 0);
  EXPECT_DOUBLE_EQ(stress(-1, file), 0);
}

TEST_F(UserCurve, StepOfNoStrainIsADivisionByZero) {
  const std::string file = write("step", "0 0\n10 1\n50 1\n60 2\n");
  EXPECT_DOUBLE_EQ(stress(1.5, file), 55);  // the cursor stops at 2, which is the upper end of the step
  EXPECT_EQ(faultOf(1, file), NumericFault::Kind::DivisionByZero);
  const std::string same = write("same", "5 1\n5 1\n");
  UserCurveCache fresh("f");
  EXPECT_EQ(fresh.stress(0, same, report), 0);
  EXPECT_EQ(fresh.stress(2, same, report), 0);
  EXPECT_THROW(fresh.stress(1, same, report), NumericFault);
}

TEST_F(UserCurve, AFileThatCanNotBeOpened) {
  EXPECT_EQ(faultOf(0, ""), NumericFault::Kind::IndexOutOfRange);  // the name of the empty cache

  EXPECT_EQ(stress(0, path("missing")), 0);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].first, "torvik fncSSBarFile");
  EXPECT_NE(reports[0].second.find("could not be opened"), std::string::npos);
  EXPECT_NE(reports[0].second.find(path("missing")), std::string::npos);
  EXPECT_EQ(faultOf(0, path("missing")), NumericFault::Kind::IndexOutOfRange);

  const std::string good = write("good", "0 0\n10 1\n");
  EXPECT_EQ(stress(0.5, good), 5);
  EXPECT_EQ(stress(0.5, path("")), 0);  // a folder
  EXPECT_EQ(reports.size(), 2U);
  EXPECT_EQ(stress(0.5, path("")), 5) << "the points of the file before";
  EXPECT_EQ(stress(0.5, path("missing")), 0);
  EXPECT_EQ(reports.size(), 2U) << "reported once in a job";
  EXPECT_EQ(stress(0.5, path("missing")), 5);

  cache.startJob();
  EXPECT_EQ(stress(0.5, path("missing")), 5) << "the last name is not tried again";
  EXPECT_EQ(stress(0.5, path("")), 0);
  EXPECT_EQ(stress(0.5, path("missing")), 0);
  EXPECT_EQ(reports.size(), 4U);
  EXPECT_EQ(cache.stress(0.5, path("nobody listens"), nullptr), 0);
}

TEST_F(UserCurve, AFileThatBreaksOff) {
  const std::string bad = write("bad", "0 0\n10 1\n20 2\n30 x\n40 4\n");
  EXPECT_EQ(stress(1.5, bad), 0);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].second.find(bad + ": line 4: expected"), 0U);
  EXPECT_EQ(stress(1.5, bad), 15);
  EXPECT_EQ(stress(3, bad), 0);

  // The bad record is no point, and yet there for a cursor that was left at its place.
  const std::string long4 = write("long", "0 0\n1 1\n2 2\n3 3\n");
  EXPECT_EQ(stress(4, long4), 0);
  EXPECT_EQ(stress(1.5, bad), 0);  // the load fails again, unreported
  EXPECT_EQ(stress(1, bad), 0);    // beyond the strain 0 of the bad record there is no point
  EXPECT_EQ(stress(-1, bad), 0);   // back to the first point
  EXPECT_EQ(stress(1, bad), 10);
  EXPECT_EQ(reports.size(), 1U);

  const std::string nothing = write("nothing", "x");
  EXPECT_EQ(stress(-1, bad), 0);
  EXPECT_EQ(stress(1, nothing), 0);
  EXPECT_EQ(stress(1, nothing), 0);
  EXPECT_EQ(stress(-1, nothing), 0);
}

TEST_F(UserCurve, TheCursorStaysWhereAnotherFileLeftIt) {
  const std::string four = write("four", "0 0\n1 1\n2 2\n3 3\n");
  const std::string two = write("two", "0 0\n10 1\n");
  EXPECT_EQ(stress(9, four), 0);  // the cursor is left at 3
  EXPECT_EQ(faultOf(0.5, two), NumericFault::Kind::IndexOutOfRange);
  EXPECT_EQ(faultOf(0.5, two), NumericFault::Kind::IndexOutOfRange);
  EXPECT_EQ(stress(0, four), 0);
  EXPECT_EQ(stress(0.5, two), 5);
}

TEST_F(UserCurve, AnEmptyFileLeavesThePointsBehindTheCursor) {
  const std::string empty = write("empty", "\n\n");
  EXPECT_EQ(faultOf(0, empty), NumericFault::Kind::IndexOutOfRange);
  const std::string four = write("four", "0 0\n1 1\n2 2\n3 3\n");
  EXPECT_EQ(stress(2.5, four), 2.5);  // the cursor is left at 2
  EXPECT_EQ(stress(2.5, empty), 0);   // forward: no points
  EXPECT_EQ(stress(1.5, empty), 1.5);
  EXPECT_TRUE(reports.empty());
  cache.startJob();
  EXPECT_EQ(stress(1.5, empty), 1.5);
}

TEST_F(UserCurve, FilesAreReadOnceInAJob) {
  const std::string a = write("a", "0 0\n1 1\n");
  const std::string b = write("b", "0 0\n2 1\n");
  EXPECT_EQ(stress(0.5, a), 0.5);
  EXPECT_EQ(stress(0.5, b), 1);
  write("a", "0 0\n10 1\n");
  write("b", "0 0\n20 1\n");
  EXPECT_EQ(stress(0.5, a), 0.5);
  EXPECT_EQ(stress(0.5, b), 1);
  cache.startJob();
  EXPECT_EQ(stress(0.5, b), 1) << "the last name stays";
  EXPECT_EQ(stress(0.5, a), 5);
  EXPECT_EQ(stress(0.5, b), 10);
}

TEST_F(UserCurve, EveryTableHasItsOwnCacheAndCaption) {
  StressStrainContext context;
  context.report = report;
  auto solid = testing::solid("File");
  auto bar = testing::bar("File");
  auto tendon = testing::tendon("File");
  for (int job = 0; job < 2; ++job) {
    context.startJob();
    reports.clear();
    for (const char* name : {"missing", "missing too"}) {
      solid.File = bar.File = tendon.File = path(name);
      EXPECT_EQ(fncSSSolid(0, solid, context), 0);
      EXPECT_EQ(fncSSBar(0, bar, context), 0);
      EXPECT_EQ(fncSSTendon(0, tendon, context), 0);
    }
    ASSERT_EQ(reports.size(), 6U);
    EXPECT_EQ(reports[0].first, "torvik fncSSSolidFile");
    EXPECT_EQ(reports[1].first, "torvik fncSSBarFile");
    EXPECT_EQ(reports[2].first, "torvik fncSSTendonFile");
  }

  tendon.File = write("good", "0 0\n300 0.002\n");
  TendonLaw law(tendon);
  EXPECT_FALSE(law.isPlain());
  EXPECT_DOUBLE_EQ(law.stress(0.001, context), 150);
  EXPECT_DOUBLE_EQ(fncSSTendon(0.0005, tendon, context), 75) << "laws of a table share the cache";
}

}  // namespace
}  // namespace torvik::materials
