// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "base/errors.h"
#include "materials/stress_strain.h"
#include "rows.h"

namespace torvik::materials {
namespace {

using base::NumericFault;
using testing::ScriptedUser;
using testing::solid;
using Lines = std::vector<std::string>;

const std::string kRatio = "! Volumetric ratio = 4As/(s*D), given value is 0.01.";
const std::string kShape = "? Section Shape | Rectangular (r) or Circular (c) ? | r";
const std::string kYield = "? Yield stress | Yield stress of confining tie ? | 300";
const std::string kRectangular = "! Rectangular section is selected.";
const std::string kCircular = "! Circular section is selected.";
const std::string kPress = "! Press \"r\" or \"c\".";

TEST(Confinement, Dialogue) {
  const struct {
    const char* name;
    std::deque<std::string> answers;
    Lines transcript;
    double k1, k2, fy;
  } cases[] = {
      {"r", {"r", "294"}, {kRatio, kShape, kRectangular, kYield}, 0.2, 0.4, 3000},
      {"R", {"R", "1E2"}, {kRatio, kShape, kRectangular, kYield}, 0.2, 0.4, 100 / 9.8 * 100},
      {"c", {"c", "294"}, {kRatio, kShape, kCircular, kYield}, 1, 1, 3000},
      {"C", {"C", "-9.8"}, {kRatio, kShape, kCircular, kYield}, 1, 1, -100},
      {"wrong shapes",
       {"", "rc", " r", "c", "98"},
       {kRatio, kShape, kPress, kRatio, kShape, kPress, kRatio, kShape, kPress, kRatio, kShape, kCircular,
        kYield},
       1,
       1,
       1000},
      {"yield stress 0",
       {"r", "0", "0.0", "98"},
       {kRatio, kShape, kRectangular, kYield, kYield, kYield},
       0.2,
       0.4,
       1000},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedUser user(c.answers);
    ConfinementAnswers answers;
    EXPECT_FALSE(answers.complete());
    answers.askWhereMissing(0.01, user);
    EXPECT_EQ(user.transcript, c.transcript);
    EXPECT_TRUE(answers.complete());
    EXPECT_EQ(answers.k1, c.k1);
    EXPECT_EQ(answers.k2, c.k2);
    EXPECT_DOUBLE_EQ(answers.fy, c.fy);
    answers.askWhereMissing(0.5, user);
    EXPECT_EQ(user.transcript.size(), c.transcript.size());
  }
}

TEST(Confinement, BadYieldStressIsAFaultAndKeepsTheShape) {
  const struct {
    const char* answer;
    NumericFault::Kind kind;
  } cases[] = {{"", NumericFault::Kind::TypeMismatch},
               {"strong", NumericFault::Kind::TypeMismatch},
               {"1e308", NumericFault::Kind::Overflow}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    ScriptedUser user({"c", c.answer, "98"});
    ConfinementAnswers answers;
    try {
      answers.askWhereMissing(0.01, user);
      ADD_FAILURE() << "accepted";
    } catch (const NumericFault& fault) {
      EXPECT_EQ(fault.kind(), c.kind);
    }
    answers.askWhereMissing(0.01, user);
    EXPECT_EQ(user.transcript, (Lines{kRatio, kShape, kCircular, kYield, kYield}));
    EXPECT_EQ(answers.k1, 1);
  }
}

TEST(Confinement, LawAsksOnceWhateverTheRowTheJobAndTheStrain) {
  ScriptedUser user({"r", "294"});
  StressStrainContext context;
  context.prompt = &user;
  SolidLaw law(solid("Restoration (Confined)"));
  EXPECT_FALSE(law.isPlain());
  EXPECT_EQ(law.stress(-1, context), 0);  // below cracking, and asked nevertheless
  EXPECT_TRUE(law.isPlain());
  context.startJob();
  fncSSSolid(0.001, solid("Restoration (Confined)", {.VolumetricRatio = 0.02}), context);
  EXPECT_EQ(user.transcript, (Lines{kRatio, kShape, kRectangular, kYield}));
}

TEST(Confinement, OtherLawsAskNothingAndNobodyToAskIsTold) {
  StressStrainContext context;
  EXPECT_NO_THROW(fncSSSolid(0.001, solid("Muguruma (Plane)"), context));
  EXPECT_THROW(fncSSSolid(0.001, solid("Restoration (Confined)"), context), base::InternalError);
}

TEST(Confinement, ALawFollowsTheAnswersOfItsContext) {
  const auto row = solid("Restoration (Confined)");
  SolidLaw law(row);
  for (const ConfinementAnswers& answers :
       {ConfinementAnswers{0.2, 0.4, 3000}, {1, 1, 3000}, {1, 1, 2000}, {0.2, 0.4, 3000}}) {
    StressStrainContext context;
    context.confinement = answers;
    EXPECT_EQ(law.stress(0.004, context), fncSSSolid(0.004, row, context));
  }
}

}  // namespace
}  // namespace torvik::materials
