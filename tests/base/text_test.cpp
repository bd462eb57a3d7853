// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <random>

#include "base/key_filter.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "message_of.h"

namespace torvik::base {
TEST(NumberText, IsThatOfTheCLibrary) {
  std::mt19937_64 random;
  std::vector<double> values = {0, 1e-4, 1e-5, 1e15, 999999999999999.9, 0.1 + 0.2, DBL_TRUE_MIN};
  while (values.size() < 20000) values.push_back(std::bit_cast<double>(random()));
  for (const double value : values) {
    if (!(std::abs(value) < 1e308)) continue;
    char text[3][64];
    std::snprintf(text[0], sizeof text[0], "%.15G", value);
    std::snprintf(text[1], sizeof text[1], "%.4E", value);
    std::snprintf(text[2], sizeof text[2], "%.17g", value);
    ASSERT_EQ(plainText(value), text[0]);
    ASSERT_EQ(throughText(value), std::strtod(text[0], nullptr)) << text[0];
    ASSERT_EQ(scientificText(value), text[1]);
    ASSERT_EQ(toNumber(text[2]), value) << text[2];
  }
  EXPECT_EQ(plainText(-0.0) + scientificText(-0.0, 8) + plainText(-HUGE_VAL), "00.00000000E+00-INF");
  EXPECT_EQ(tests::messageOf([] { return throughText(DBL_MAX); }), "number text: overflow");
}

TEST(NumberText, TakesTheOrdinaryFormAndNoOther) {
  for (const std::string text :
       {"+12", "-.5", "5.", " \t 1e-07\t ", "1E-310", "-1E-400", "2E-324", "0.0000000001E315",
        "0.001E-99999999999999999999999", "0E999999999999999999999"}) {
    const double expected = std::strtod(text.c_str(), nullptr);
    EXPECT_EQ(toNumber(text), expected) << text;
    EXPECT_EQ(std::signbit(*toNumber(text)), std::signbit(expected)) << text;
  }
  EXPECT_EQ(toNumber("1" + std::string(400, '0') + "E-400"), 1);
  EXPECT_EQ(toNumber("1" + std::string(400, '0')), std::nullopt);
  for (const char* const text :
       {"1.7976931348623159E308", "0.001E+99999999999999999999999", "-1E400", "", "  ", ".", "-", "+-1",
        "- 1", "1 2", "1,5", "1E+", "1D5", "0x10", "inf", "-nan", "1\n"}) {
    EXPECT_EQ(toNumber(text), std::nullopt) << text;
    EXPECT_EQ(tests::messageOf([&] { return numberOf(text, "Depth"); }), "Depth: not a number");
  }
}

TEST(NumberText, DoesNotFollowTheLocale) {
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale de_DE.UTF-8";
  EXPECT_EQ(plainText(1234567.5) + scientificText(0.0035), "1234567.53.5000E-03");
  EXPECT_EQ(toNumber("1.5"), 1.5);
  std::setlocale(LC_ALL, "C");
}

TEST(ShortenPath, KeepsBeginningAndEnd) {
  const std::string b33(33, 'b');
  const std::string of40 = "/" + b33 + "/\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4";
  for (const std::string& kept : {of40, b33 + b33, "/" + b33 + b33, "/home/b" + b33})
    EXPECT_EQ(shortenPath(kept), kept);
  EXPECT_EQ(shortenPath("/home/a/" + b33), "/.../" + b33);
  EXPECT_EQ(shortenPath("models/b" + b33 + "/c/d"), "models/.../c/d");
  EXPECT_EQ(shortenPath("/a/b/c/d/e", 9), "/.../e");
}

TEST(KeyFilter, LetsExactlyItsCharactersPass) {
  std::string passing;
  for (const char* const kind :
       {"Single", "-Double", "Integer", "-Long", "Double", "-Single", "Long", "-Integer", "xyz\xE4"}) {
    for (int key = -1; key < 300; ++key)
      passing.append(KeyFilter(key, kind) != 0 ? 1 : 0, static_cast<char>(key));
  }
  const std::string four = "\b.0123456789\b-.0123456789\b0123456789\b-0123456789";
  EXPECT_EQ(passing, four + four + "xyz\xE4");
}

}  // namespace torvik::base
