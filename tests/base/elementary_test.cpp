// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/elementary.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace torvik::base {
namespace {

constexpr int kFlags = FE_DIVBYZERO | FE_OVERFLOW | FE_INVALID;

/// The same arguments with every library and compiler.
double between(std::mt19937_64& engine, double low, double high) {
  return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1p-53);
}
double scaled(std::mt19937_64& engine, double lowK, double highK) {
  const int k = static_cast<int>(between(engine, lowK, highK));
  return std::ldexp(between(engine, 1, 2), k);
}

/// |result - truth| in units of the last place of the truth as a double.
double ulps(double result, long double truth) {
  const double near = static_cast<double>(std::abs(truth));
  return static_cast<double>(std::abs(result - truth) / (std::nextafter(near, HUGE_VAL) - near));
}
double powerUlps(double base, double exponent) {
  return ulps(power(base, exponent), std::pow(static_cast<long double>(base), exponent));
}

TEST(Elementary, AgreesWithLongDouble) {
  if (std::numeric_limits<long double>::digits < 64) GTEST_SKIP() << "long double has no more digits";
  std::mt19937_64 engine;
  for (int n = 0; n < 200000; ++n) {
    const double log = between(engine, n % 3 == 0 ? -745.2 : -20, n % 3 == 0 ? 709.7 : 20);
    const double base = n % 2 == 0 ? scaled(engine, -1070, 1023) : 1 - scaled(engine, -50, -6);
    const double x = between(engine, -2000, 2000);
    ASSERT_LE(ulps(exponential(log), std::exp(static_cast<long double>(log))), 0.51) << log;
    ASSERT_LE(powerUlps(base, log / std::log(base)), 0.51) << base << " to the " << log / std::log(base);
    ASSERT_LE(powerUlps(x, 3), 0.5006) << x;  // rounded once: half an ulp and the error of the truth
  }
}

/// Limits, signs and flags of the C standard.
TEST(Elementary, SpecialCasesAreThoseOfTheCLibrary) {
  const auto expectSame = [](const auto& own, const auto& library) {
    std::feclearexcept(FE_ALL_EXCEPT);
    const volatile double expected = library();
    const int flags = std::fetestexcept(kFlags);
    std::feclearexcept(FE_ALL_EXCEPT);
    const volatile double result = own();
    EXPECT_EQ(std::fetestexcept(kFlags), flags);
    if (std::isnan(expected) && std::isnan(result)) return;
    EXPECT_DOUBLE_EQ(result, expected);
    EXPECT_EQ(std::signbit(result), std::signbit(expected));
  };
  std::vector<double> values = {
      0,       1,        2,      3,          4,          1e200,  0.1,     0.5,      1.5,
      1.0 / 3, 10,       309,    325,        1e-200,     1e-300, 0x1p600, 0x1p1022, DBL_TRUE_MIN,
      DBL_MAX, 746,      745.5,  745.14,     745.13,     709.79, 1074.9,  1075,     1024,
      NAN,     INFINITY, 0x1p53, 0x1p52 + 1, 1 + 0x1p-52};
  for (std::size_t i = 0, count = values.size(); i < count; ++i) values.push_back(-values[i]);
  for (const double x : values) {
    for (const double y : values) {
      SCOPED_TRACE(testing::Message() << x << ", " << y);
      expectSame([&] { return exponential(x); }, [&] { return std::exp(x); });
      expectSame([&] { return power(x, y); }, [&] { return std::pow(x, y); });
    }
  }
}

/// Contraction alone would change dozens of these.
TEST(Elementary, ResultsHaveTheSameBitsOnEveryMachineAndRaiseNoFlag) {
  std::uint64_t digest = 0;
  std::mt19937_64 engine;
  std::feclearexcept(FE_ALL_EXCEPT);
  for (int n = 0; n < 100000; ++n) {
    const double base = between(engine, 0, 100);
    const double wide = scaled(engine, -1074, 1022);
    for (const double result :
         {exponential(between(engine, -800, 709)), power(base, between(engine, -20, 20)),
          power(-base, n % 50), power(wide, between(engine, -0.95, 0.95))})
      digest = std::rotl(digest, 7) * 0x9e3779b97f4a7c15u + std::bit_cast<std::uint64_t>(result);
  }
  EXPECT_EQ(std::fetestexcept(kFlags), 0);
  EXPECT_EQ(digest, 10840791068545619698u);
}

}  // namespace
}  // namespace torvik::base
