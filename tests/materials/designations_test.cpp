// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/designations.h"

#include <gtest/gtest.h>

#include <string>

namespace torvik::materials {
namespace {

// "D13 - JIS G 3112" is offered for "JIS G 3112 D13".
void expectEntriesMatch(std::span<const Designation> table, const std::string& standard, double sumOfAreas) {
  EXPECT_EQ(table.size(), 13U);
  double sum = 0;
  double smaller = 0;
  for (const Designation& entry : table) {
    const std::string size(entry.designation.substr(standard.size() + 1));
    EXPECT_EQ(entry.designation, standard + " " + size);
    EXPECT_EQ(entry.listEntry, size + " - " + standard);
    EXPECT_GT(entry.Area, smaller) << size;
    smaller = entry.Area;
    sum += entry.Area;
  }
  EXPECT_NEAR(sum, sumOfAreas, 1e-9);
}

TEST(Designations, TablesAreWhole) {
  expectEntriesMatch(barDesignations(), "JIS G 3112", 8508.8);
  expectEntriesMatch(tendonDesignations(), "JIS G 3109", 6013.91);
}

TEST(Designations, AreaIsFoundByTheExactDesignationOnly) {
  EXPECT_EQ(designationArea(barDesignations(), "JIS G 3112 D13"), 126.7);
  EXPECT_EQ(designationArea(barDesignations(), "JIS G 3112 D51"), 2027);
  EXPECT_EQ(designationArea(tendonDesignations(), "JIS G 3109 13"), 132.7);
  EXPECT_EQ(designationArea(tendonDesignations(), "JIS G 3109 (15)"), 176.7);
  for (const char* none :
       {"D13 - JIS G 3112", "JIS G 3112 d13", "JIS G 3112 D1", "JIS G 3109 13", "13", ""}) {
    EXPECT_EQ(designationArea(barDesignations(), none), std::nullopt) << none;
  }
}

TEST(Designations, CircleAreaUsesFifteenDigitsOfPi) {
  EXPECT_EQ(circleArea(23), 415.4756284372497);
  EXPECT_EQ(circleArea(0), 0);
}

}  // namespace
}  // namespace torvik::materials
