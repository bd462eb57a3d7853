// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/errors.h"

namespace torvik::base {
namespace {

constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

struct PlainCase {
  double value;
  const char* text;
};
const PlainCase kPlainCases[] = {
    {0.0, "0"},
    {-0.0, "0"},
    {1.0, "1"},
    {-10000.0, "-10000"},
    {0.0035, "0.0035"},
    {0.0001, "0.0001"},
    {0.00001, "1E-05"},
    {-0.0000125, "-1.25E-05"},
    {1e14, "100000000000000"},
    {999999999999999.0, "999999999999999"},
    {1e15, "1E+15"},
    {999999999999999.9, "1E+15"},
    {123456789012345678.0, "1.23456789012346E+17"},
    {0.1 + 0.2, "0.3"},
    {1.0 / 3.0, "0.333333333333333"},
    {4.055055415343644, "4.05505541534364"},
    {-0.00014482340769084444, "-0.000144823407690844"},
    {415.4756284372497, "415.47562843725"},
    {1e100, "1E+100"},
    {kMax, "1.79769313486232E+308"},
    {std::numeric_limits<double>::min(), "2.2250738585072E-308"},
    {kTiny, "4.94065645841247E-324"},
    {std::numeric_limits<double>::infinity(), "INF"},
};

TEST(PlainText, FifteenDigitsInGeneralForm) {
  for (const PlainCase& c : kPlainCases) {
    EXPECT_EQ(plainText(c.value), c.text);
    std::string text = "x\t";
    appendPlainText(text, c.value);
    EXPECT_EQ(text, std::string("x\t") + c.text);
  }
  EXPECT_EQ(plainText(-32768), "-32768");
  EXPECT_EQ(plainText(std::numeric_limits<long long>::min()), "-9223372036854775808");
}

TEST(ScientificText, MantissaAndTwoExponentDigits) {
  struct Case {
    double value;
    int decimals;
    const char* text;
  };
  const Case cases[] = {
      {0.0, 4, "0.0000E+00"},
      {-0.0, 4, "0.0000E+00"},
      {1.0, 4, "1.0000E+00"},
      {-28000.0, 4, "-2.8000E+04"},
      {0.00012345678, 4, "1.2346E-04"},
      {9.99996, 4, "1.0000E+01"},
      {0.0, 8, "0.00000000E+00"},
      {-0.0035, 8, "-3.50000000E-03"},
      {1e100, 4, "1.0000E+100"},
      {kTiny, 4, "4.9407E-324"},
      {2.5, 0, "2E+00"},
  };
  for (const Case& c : cases) EXPECT_EQ(scientificText(c.value, c.decimals), c.text);
}

TEST(ToNumber, TakesTheOrdinaryFormAndNoOther) {
  struct Case {
    const char* text;
    std::optional<double> number;
  };
  const Case cases[] = {
      {"0", 0.0},
      {"12", 12.0},
      {"+12", 12.0},
      {"-.5", -0.5},
      {"5.", 5.0},
      {" \t 1e-07\t ", 1e-7},
      {"2E-05", 2e-5},
      {"1E+2", 100.0},
      {"4.055055415343644", 4.055055415343644},
      {"0000000000000000000000000000001", 1.0},
      {"1.7976931348623157E308", kMax},
      {"4.9406564584124654E-324", kTiny},
      {"1E-310", 1e-310},
      {"1E-400", 0.0},
      {"-1E-400", -0.0},
      {"2E-324", 0.0},
      {"0.001E-99999999999999999999999", 0.0},
      {"0E999999999999999999999", 0.0},
      {"0.0000000001E315", 1e305},
      {"1.7976931348623159E308", {}},
      {"-1E400", {}},
      {"0.001E400", {}},
      {"0.001E+99999999999999999999999", {}},
      {"1E99999999999999999999999", {}},
      {"1E+99999999999999999999999", {}},
      {"", {}},
      {"   ", {}},
      {"abc", {}},
      {".", {}},
      {"-", {}},
      {"+", {}},
      {"+-1", {}},
      {"--1", {}},
      {"- 1", {}},
      {"1 2", {}},
      {"1,5", {}},
      {"1.2.3", {}},
      {"1E", {}},
      {"1E+", {}},
      {"E5", {}},
      {"1D5", {}},
      {"0x10", {}},
      {"inf", {}},
      {"-inf", {}},
      {"nan", {}},
      {"1\n", {}},
      {"\xD9\xA1", {}},
  };
  for (const Case& c : cases) {
    const auto number = toNumber(c.text);
    EXPECT_EQ(number, c.number) << c.text;
    if (number && c.number) {
      EXPECT_EQ(std::signbit(*number), std::signbit(*c.number)) << c.text;
    }
  }
  // Too small by its digits alone, and large enough again by its exponent.
  EXPECT_EQ(toNumber("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_EQ(toNumber("1" + std::string(400, '0')), std::nullopt);
  EXPECT_EQ(toNumber("1" + std::string(400, '0') + "E-400"), 1.0);
  EXPECT_EQ(toNumber("1" + std::string(400, '0') + "E-900"), 0.0);
}

/// Doubles of every magnitude, all bit patterns alike.
std::vector<double> randomDoubles() {
  std::mt19937_64 random(20);
  std::vector<double> values;
  while (values.size() < 20000) {
    const auto value = std::bit_cast<double>(random());
    if (std::isfinite(value) && std::abs(value) < 1e308) values.push_back(value);
  }
  return values;
}

void expectSameAsLibrary() {
  for (const double value : randomDoubles()) {
    char text[64];
    std::snprintf(text, sizeof text, "%.15G", value);
    ASSERT_EQ(plainText(value), text);
    ASSERT_EQ(toNumber(text), std::strtod(text, nullptr)) << text;
    std::snprintf(text, sizeof text, "%.4E", value);
    ASSERT_EQ(scientificText(value), text);
    std::snprintf(text, sizeof text, "%.17g", value);
    ASSERT_EQ(toNumber(text), value) << text;
    ASSERT_EQ(plainText(throughText(value)), plainText(value));
  }
}

TEST(NumberText, AgreesWithTheCLibraryInItsOwnLocale) {
  expectSameAsLibrary();
}

TEST(NumberText, DoesNotFollowTheLocale) {
  struct Restore {
    ~Restore() { std::setlocale(LC_ALL, "C"); }
  } restore;
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale de_DE.UTF-8";
  char text[16];
  std::snprintf(text, sizeof text, "%g", 1.5);
  ASSERT_STREQ(text, "1,5") << "the locale is in force";
  for (const PlainCase& c : kPlainCases) EXPECT_EQ(plainText(c.value), c.text);
  EXPECT_EQ(plainText(1234567), "1234567");
  EXPECT_EQ(scientificText(0.0035), "3.5000E-03");
  EXPECT_EQ(toNumber("1.5"), 1.5);
  EXPECT_EQ(toNumber("1,5"), std::nullopt);
  EXPECT_EQ(toNumber("1.234567890123456789012345678901234567890E-310"), 1.2345678901234568e-310);
}

TEST(ThroughText, RoundsToFifteenDigits) {
  EXPECT_EQ(throughText(4.055055415343644), 4.05505541534364);
  EXPECT_EQ(throughText(1e-7), 1e-7);
  EXPECT_EQ(throughText(0.1 + 0.2), 0.3);
  EXPECT_FALSE(std::signbit(throughText(-0.0)));
  EXPECT_THROW(throughText(kMax), NumericFault);
}

TEST(NumberOf, FaultNamesThePlace) {
  EXPECT_EQ(numberOf(" 7 ", "Depth"), 7.0);
  try {
    numberOf("7 mm", "Depth");
    FAIL();
  } catch (const NumericFault& fault) {
    EXPECT_EQ(fault.kind(), NumericFault::Kind::TypeMismatch);
    EXPECT_STREQ(fault.what(), "Depth: not a number");
  }
}

TEST(EqualIgnoringCase, AsciiLettersOnly) {
  EXPECT_TRUE(equalIgnoringCase("TableTendon", "Tabletendon"));
  EXPECT_TRUE(equalIgnoringCase("", ""));
  EXPECT_FALSE(equalIgnoringCase("Bar", "Bar0"));
  EXPECT_FALSE(equalIgnoringCase("[", "{")) << "differ in the case bit alone";
  EXPECT_FALSE(equalIgnoringCase("\xC3\x84", "\xC3\xA4"));
}

}  // namespace
}  // namespace torvik::base
