// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/elementary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace torvik::base {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
constexpr int kFlags = FE_DIVBYZERO | FE_OVERFLOW | FE_INVALID;

std::uint64_t bitsOf(double x) {
  return std::bit_cast<std::uint64_t>(x);
}

/// The same arguments with every library and compiler.
class Arguments {
 public:
  double between(double low, double high) {
    return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1p-53);
  }
  int integer(int low, int high) {
    return low + static_cast<int>(m_engine() % static_cast<unsigned>(high - low + 1));
  }
  /// 2^k * [1, 2), lowK <= k <= highK.
  double scaled(int lowK, int highK) {
    const int k = integer(lowK, highK);
    return std::ldexp(between(1, 2), k);
  }

 private:
  std::mt19937_64 m_engine{20240229};
};

/// |result - truth| in units of the last place of a double near the truth.
double ulps(double result, long double truth) {
  int exponent = 0;
  std::frexp(std::abs(truth), &exponent);
  return static_cast<double>(std::abs(result - truth) / std::ldexp(1.0L, std::max(exponent, -1021) - 53));
}

class AgainstLongDouble : public testing::Test {
 protected:
  void SetUp() override {
    if (std::numeric_limits<long double>::digits < 64) GTEST_SKIP() << "long double has no more digits";
  }
  Arguments m_arguments;
};

TEST_F(AgainstLongDouble, ExponentialIsWithinItsError) {
  const struct {
    const char* name;
    double low, high;
  } ranges[] = {{"about 0", -0.01, 0.01},
                {"ordinary", -10, 10},
                {"whole", -708, 709.78},
                {"denormal results", -745.2, -708}};
  for (const auto& range : ranges) {
    double worst = 0;
    for (int n = 0; n < 50000; ++n) {
      const double x = m_arguments.between(range.low, range.high);
      worst = std::max(worst, ulps(exponential(x), std::exp(static_cast<long double>(x))));
    }
    EXPECT_LE(worst, 0.51) << range.name;
  }
}

TEST_F(AgainstLongDouble, PowerIsWithinItsError) {
  // `log` is what ln(base^exponent) lies between; the base is 2^k * [1, 2) or, where `near` is set, 1 +- 2^k.
  const struct {
    const char* name;
    int lowK, highK;
    bool near;
    double lowLog, highLog;
  } rows[] = {{"ordinary", -10, 10, false, -20, 20},
              {"any base, whole range", -1022, 1022, false, -708, 709.7},
              {"base near 1, great exponents", -50, -6, true, -708, 709.7},
              {"denormal base", -1070, -1023, false, -708, 709.7},
              {"denormal result", -1000, 1000, false, -745, -708}};
  for (const auto& row : rows) {
    double worst = 0;
    for (int n = 0; n < 40000; ++n) {
      const double part = m_arguments.scaled(row.lowK, row.highK);
      const double base = row.near ? 1 + (n % 2 == 0 ? part : -part) : part;
      const double exponent = m_arguments.between(row.lowLog, row.highLog) / std::log(base);
      if (!std::isfinite(exponent)) continue;
      const long double truth = std::pow(static_cast<long double>(base), static_cast<long double>(exponent));
      worst = std::max(worst, ulps(power(base, exponent), truth));
    }
    EXPECT_LE(worst, 0.51) << row.name;
  }
}

TEST_F(AgainstLongDouble, CubeIsRoundedOnce) {
  double worst = 0;
  for (int n = 0; n < 50000; ++n) {
    const double x = m_arguments.between(-2000, 2000);
    worst = std::max(worst, ulps(power(x, 3), std::pow(static_cast<long double>(x), 3.0L)));
  }
  EXPECT_LE(worst, 0.5006);  // half an ulp and the error of the truth
  for (int n = 0; n < 20000; ++n) {
    const double x = m_arguments.scaled(-357, -330);
    EXPECT_LE(ulps(power(x, 3), std::pow(static_cast<long double>(x), 3.0L)), 0.51) << x;
  }
}

TEST(Elementary, ExactPowersAreExact) {
  for (int n = -1074; n <= 1023; ++n) EXPECT_EQ(power(2, n), std::ldexp(1.0, n)) << n;
  double ten = 1;
  for (int n = 0; n <= 22; ++n, ten *= 10) EXPECT_EQ(power(10, n), ten) << n;
  for (int n = -3000; n <= 3000; ++n) {
    const double x = n / 16.0;
    EXPECT_EQ(power(x, 3), x * x * x);
    EXPECT_EQ(power(x * x, 0.5), std::abs(x));
    EXPECT_EQ(power(x * x, 1.5), std::abs(x * x * x));
    EXPECT_EQ(power(x, 4), x * x * x * x);
  }
  Arguments arguments;
  for (int n = 0; n < 1000; ++n) {
    const double x = arguments.between(-1e6, 1e6);
    EXPECT_EQ(power(x, 2), x * x);
    EXPECT_EQ(power(x, 1), x);
  }
}

TEST(Elementary, ExponentialRisesAcrossTheBordersOfItsTable) {
  for (int border = -2000; border <= 2000; ++border) {
    double x = border * (0.69314718055994530942 / 256);
    for (int n = 0; n < 16; ++n) x = std::nextafter(x, -kInf);
    for (int n = 0; n < 32; ++n) {
      const double next = std::nextafter(x, kInf);
      ASSERT_LE(exponential(x), exponential(next)) << x;
      x = next;
    }
  }
}

TEST(Elementary, PowerRisesAcrossTheBordersOfItsTable) {
  for (int border = 256; border <= 1024; ++border) {
    double x = (border + 0.5) / 512;
    for (int n = 0; n < 16; ++n) x = std::nextafter(x, 0);
    for (int n = 0; n < 32; ++n) {
      const double next = std::nextafter(x, kInf);
      for (const double exponent : {0.3, 1.7, 5.0}) ASSERT_LE(power(x, exponent), power(next, exponent)) << x;
      x = next;
    }
  }
}

/// Bit for bit (any NaN for a NaN), and with these flags and no other.
void expectResult(double result, double expected, int flags, const std::string& what) {
  EXPECT_EQ(std::fetestexcept(kFlags), flags) << what;
  if (std::isnan(expected)) {
    EXPECT_TRUE(std::isnan(result)) << what << " gives " << result;
  } else {
    EXPECT_EQ(bitsOf(result), bitsOf(expected)) << what << " gives " << result;
  }
}

TEST(Elementary, SpecialCasesOfExponential) {
  const struct {
    double x, result;
    int flags;
  } rows[] = {{0.0, 1, 0},
              {-0.0, 1, 0},
              {kLeast, 1, 0},
              {-0x1p-54, 1, 0},
              {0x1p-52, 1 + 0x1p-52, 0},
              {kInf, kInf, 0},
              {-kInf, 0, 0},
              {kNaN, kNaN, 0},
              {0x1.62e42fefa39efp+9, 0x1.fffffffffff2ap+1023, 0},
              {0x1.62e42fefa39f0p+9, kInf, FE_OVERFLOW},
              {710, kInf, FE_OVERFLOW},
              {kMax, kInf, FE_OVERFLOW},
              {-0x1.74910d52d3051p+9, kLeast, 0},
              {-0x1.74910d52d3052p+9, 0, 0},
              {-746, 0, 0},
              {-kMax, 0, 0}};
  for (const auto& row : rows) {
    std::feclearexcept(FE_ALL_EXCEPT);
    const double result = exponential(row.x);
    expectResult(result, row.result, row.flags, "exponential " + testing::PrintToString(row.x));
  }
}

TEST(Elementary, SpecialCasesOfPower) {
  const struct {
    double base, exponent, result;
    int flags;
  } rows[] = {// exponent 0 and base 1 come before NaN
              {kNaN, 0.0, 1, 0},
              {-kInf, -0.0, 1, 0},
              {0.0, 0.0, 1, 0},
              {1, kNaN, 1, 0},
              {1, -kInf, 1, 0},
              {kNaN, 1, kNaN, 0},
              {kNaN, 2, kNaN, 0},
              {kNaN, 0.7, kNaN, 0},
              {kNaN, -kInf, kNaN, 0},
              {2, kNaN, kNaN, 0},
              {-1, kNaN, kNaN, 0},
              {0.0, kNaN, kNaN, 0},
              // infinite exponents
              {-1, kInf, 1, 0},
              {-1, -kInf, 1, 0},
              {0.5, kInf, 0, 0},
              {-0.5, -kInf, kInf, 0},
              {-2, kInf, kInf, 0},
              {2, -kInf, 0, 0},
              {0.0, kInf, 0, 0},
              {-kInf, -kInf, 0, 0},
              // base 0
              {0.0, 3, 0.0, 0},
              {-0.0, 3, -0.0, 0},
              {-0.0, 1, -0.0, 0},
              {-0.0, 2, 0.0, 0},
              {-0.0, 4.5, 0.0, 0},
              {0.0, -1, kInf, FE_DIVBYZERO},
              {-0.0, -1, -kInf, FE_DIVBYZERO},
              {-0.0, -2, kInf, FE_DIVBYZERO},
              {-0.0, -0.5, kInf, FE_DIVBYZERO},
              {0.0, -kMax, kInf, FE_DIVBYZERO},
              // infinite bases
              {kInf, 0.3, kInf, 0},
              {kInf, -0.3, 0, 0},
              {-kInf, 3, -kInf, 0},
              {-kInf, 4, kInf, 0},
              {-kInf, 0.5, kInf, 0},
              {-kInf, -3, -0.0, 0},
              {-kInf, -4, 0, 0},
              // negative bases
              {-2, 5, -32, 0},
              {-2, -2, 0.25, 0},
              {-2, -1, -0.5, 0},
              {-8, 1.0 / 3, kNaN, FE_INVALID},
              {-1, 0.5, kNaN, FE_INVALID},
              {-1, 0x1p52 + 1, -1, 0},
              {-1, 0x1p53, 1, 0},
              {-1, -kMax, 1, 0},
              {-1, kLeast, kNaN, FE_INVALID},
              // both ends
              {10, 309, kInf, FE_OVERFLOW},
              {-10, 309, -kInf, FE_OVERFLOW},
              {-1e-200, -3, -kInf, FE_OVERFLOW},
              {1e200, 2, kInf, FE_OVERFLOW},
              {2, 1024, kInf, FE_OVERFLOW},
              {1 + 0x1p-52, kMax, kInf, FE_OVERFLOW},
              {1 + 0x1p-52, -kMax, 0, 0},
              {1e200, 3, kInf, FE_OVERFLOW},
              {10, -kMax, 0, 0},
              {0.1, kMax, 0, 0},
              {2, -1074.9, kLeast, 0},
              {10, -324, 0, 0},
              {-10, -325, -0.0, 0},
              {-2, -1075, -0.0, 0},
              {-2, -1073, -0x1p-1073, 0},
              {kMax, 1, kMax, 0},
              {0x1p1022, 0.5, 0x1p511, 0},
              {kLeast, 0.5, 0x1p-537, 0},
              {kLeast, -0.5, 0x1p537, 0},
              {kLeast, 1e-300, 1, 0},
              {kMax, -kLeast, 1, 0},
              {0x1p600, 1.5, 0x1p900, 0}};
  for (const auto& row : rows) {
    std::feclearexcept(FE_ALL_EXCEPT);
    const double result = power(row.base, row.exponent);
    expectResult(result, row.result, row.flags,
                 testing::PrintToString(row.base) + " to the " + testing::PrintToString(row.exponent));
  }
}

TEST(Elementary, OrdinaryArgumentsRaiseNoFlag) {
  Arguments arguments;
  std::feclearexcept(FE_ALL_EXCEPT);
  for (int n = 0; n < 20000; ++n) {
    exponential(arguments.between(-800, 709));
    const double base = arguments.scaled(-1074, 1022);
    power(base, arguments.between(-0.95, 0.95));
    const double negative = -1 / arguments.between(1, 1e6);
    power(negative, arguments.integer(-40, 300));
  }
  EXPECT_EQ(std::fetestexcept(kFlags), 0);
}

TEST(Elementary, ResultsHaveTheSameBitsOnEveryMachine) {
  const struct {
    double result, expected;
  } rows[] = {
      {exponential(1), 0x1.5bf0a8b145769p+1},        {exponential(-0.5), 0x1.368b2fc6f960ap-1},
      {exponential(0.1), 0x1.1aec7b35a00d4p+0},      {exponential(20.75), 0x1.e9c1c635f078ap+29},
      {exponential(700.3), 0x1.3f6d02b17eb6dp+1010}, {exponential(-738.2), 0x0.0000000000201p-1022},
      {power(1.1, 0.7), 0x1.11a98737912e1p+0},       {power(30, 0.6666666666666666), 0x1.34f4e3f0653b0p+3},
      {power(0.0035, 2.5), 0x1.8514ba2b21d01p-21},   {power(400, -0.3333333333333333), 0x1.15f4d44462725p-3},
      {power(7.3, 3), 0x1.85045a1cac083p+8},         {power(0.999, 12345.678), 0x1.2206be0b1c769p-18},
      {power(1e-310, 0.9), 0x1.226ed86db32d4p-927},  {power(1e-4, 77.5), 0x0.012688b70e62bp-1022}};
  for (const auto& row : rows) EXPECT_EQ(bitsOf(row.result), bitsOf(row.expected)) << row.expected;

  // Contraction alone would change dozens of these.
  std::uint64_t digest = 0;
  const auto add = [&digest](double result) {
    digest = std::rotl(digest, 7) * 0x9e3779b97f4a7c15u + bitsOf(result);
  };
  Arguments arguments;
  for (int n = 0; n < 100000; ++n) {
    add(exponential(arguments.between(-745, 709)));
    const double base = arguments.between(0, 100);
    add(power(base, arguments.between(-20, 20)));
  }
  EXPECT_EQ(digest, 0x5dafb6c068fa818cu);
}

}  // namespace
}  // namespace torvik::base
