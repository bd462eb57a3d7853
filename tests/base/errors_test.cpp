// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <limits>
#include <optional>
#include <string>

#include "base/fault.h"

namespace torvik::base {
namespace {

using Kind = NumericFault::Kind;
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(InputError, OfKeyIsOneShortLine) {
  struct Case {
    const char* name;
    std::string file, section, value, message;
  };
  const std::string long60(60, 'x');
  const Case cases[] = {
      {"plain", "a.inp", "Beam0", "1x", "a.inp: [Beam0] Span=\"1x\": a number"},
      {"empty value", "a.inp", "Beam0", "", "a.inp: [Beam0] Span=\"\": a number"},
      {"control bytes", "a\n.inp", "B\t0", "1\r\n\x7F\x1B[0m", "a?.inp: [B?0] Span=\"1????[0m\": a number"},
      {"60 bytes", "a", "B", long60, "a: [B] Span=\"" + long60 + "\": a number"},
      {"61 bytes", "a", "B", long60 + "y", "a: [B] Span=\"" + long60 + "...\": a number"},
      {"cut before a character of 3 bytes", "a", "B", std::string(58, 'x') + "\xE2\x82\xAC" + "zz",
       "a: [B] Span=\"" + std::string(58, 'x') + "...\": a number"},
      {"bytes that are no UTF-8", "a", "B", std::string(70, '\x80'),
       "a: [B] Span=\"" + std::string(57, '\x80') + "...\": a number"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(InputError::ofKey(c.file, c.section, "Span", c.value, "a number").what(), c.message) << c.name;
  }
}

TEST(InternalError, ShowsItsNumber) {
  EXPECT_STREQ(InternalError(51, "Solid 3: Type \"elastic\"").what(),
               "Internal error 51: Solid 3: Type \"elastic\"");
}

std::optional<Kind> kindOf(const auto& operation) {
  try {
    operation();
  } catch (const NumericFault& fault) {
    return fault.kind();
  }
  return std::nullopt;
}

TEST(NumericFault, PlaceStandsInFront) {
  const NumericFault fault = NumericFault(Kind::DivisionByZero, "slope").within("step 3").within("Loading");
  EXPECT_STREQ(fault.what(), "Loading: step 3: slope: division by zero");
  EXPECT_EQ(fault.kind(), Kind::DivisionByZero);
}

TEST(Divide, FaultsByKind) {
  struct Case {
    double a, b;
    std::optional<Kind> fault;
  };
  const Case cases[] = {
      {1.0, 3.0, {}},
      {0.0, -5.0, {}},
      {1.0, kInfinity, {}},
      {std::numeric_limits<double>::denorm_min(), 2.0, {}},
      {1.0, 0.0, Kind::DivisionByZero},
      {1.0, -0.0, Kind::DivisionByZero},
      {0.0, 0.0, Kind::DivisionByZero},
      {kNaN, 0.0, Kind::DivisionByZero},
      {kMax, 0.5, Kind::Overflow},
      {-kMax, 0.5, Kind::Overflow},
      {kInfinity, kInfinity, Kind::Overflow},
      {kNaN, 1.0, Kind::Overflow},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(kindOf([&] { divide(c.a, c.b, "test"); }), c.fault) << c.a << " / " << c.b;
    if (!c.fault) {
      EXPECT_EQ(divide(c.a, c.b, "test"), c.a / c.b);
    }
  }
}

TEST(ToInt16, TakesExactlySixteenBits) {
  EXPECT_EQ(toInt16(-32768, "test"), -32768);
  EXPECT_EQ(toInt16(32767, "test"), 32767);
  EXPECT_EQ(kindOf([] { toInt16(32768, "test"); }), Kind::Overflow);
  EXPECT_EQ(kindOf([] { toInt16(-32769, "test"); }), Kind::Overflow);
  EXPECT_EQ(kindOf([] { toInt16(65536, "test"); }), Kind::Overflow);
}

/// Does the operation at run time, in memory.
double worked(char operation, double a, double b) {
  volatile double x = a;
  volatile double y = b;
  volatile double result = operation == '/' ? x / y : operation == '*' ? x * y : x - y;
  return result;
}

TEST(FpFlags, TellWhatTheRulesCount) {
  struct Case {
    const char* name;
    char operation;
    double a, b;
    std::optional<Kind> raised;
  };
  const Case cases[] = {
      {"exact", '*', 2.0, 3.0, {}},
      {"inexact", '/', 1.0, 3.0, {}},
      {"underflow", '*', 1e-300, 1e-300, {}},
      {"division by zero", '/', 1.0, 0.0, Kind::DivisionByZero},
      {"zero by zero", '/', 0.0, 0.0, Kind::InvalidOperation},
      {"overflow", '*', kMax, 2.0, Kind::Overflow},
      {"infinity less infinity", '-', kInfinity, kInfinity, Kind::InvalidOperation},
  };
  for (const Case& c : cases) {
    fpflags::clear();
    ASSERT_EQ(fpflags::raised(), std::nullopt) << c.name;
    worked(c.operation, c.a, c.b);
    EXPECT_EQ(fpflags::raised(), c.raised) << c.name;
    worked('*', 2.0, 3.0);
    EXPECT_EQ(fpflags::raised(), c.raised) << c.name << ": sticky";
  }
  worked('*', kMax, 2.0);
  worked('/', 1.0, 0.0);
  EXPECT_EQ(fpflags::raised(), Kind::DivisionByZero) << "the first of several";
  fpflags::clear();
}

TEST(FlagKeeper, SurroundingFlagsComeBack) {
  std::feclearexcept(FE_ALL_EXCEPT);
  worked('*', kMax, 2.0);
  {
    const FlagKeeper keeper;
    fpflags::clear();
    worked('/', 1.0, 0.0);
  }
  EXPECT_EQ(fpflags::raised(), Kind::Overflow);
  std::feclearexcept(FE_ALL_EXCEPT);
  {
    const FlagKeeper keeper;
    worked('/', 1.0, 3.0);
    worked('/', 1.0, 0.0);
  }
  EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
}

}  // namespace
}  // namespace torvik::base
