// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

#include "base/fault.h"
#include "message_of.h"

namespace torvik::base {
using Kind = NumericFault::Kind;
using tests::messageOf;

TEST(Errors, MessagesAreOneShortLine) {
  const std::string x57(57, 'x');
  const std::string rows[][2] = {{"1\r\n\x7F\x1B[0m", "1????[0m"},
                                 {x57 + "abc", x57 + "abc"},
                                 {x57 + "abcd", x57 + "abc..."},
                                 {x57 + "a\xE2\x82\xACzz", x57 + "a..."},
                                 {x57 + "\x80\x80\x80\x80", x57 + "..."}};
  for (const auto& [value, shown] : rows) {
    EXPECT_EQ(InputError::ofKey("a\n.inp", "B\t0", "Span", value, "a number").what(),
              "a?.inp: [B?0] Span=\"" + shown + "\": expected a number");
  }
  EXPECT_STREQ(InternalError(51, "kind 9").within("Solid 3").what(), "Internal error 51: Solid 3: kind 9");
  EXPECT_STREQ(NumericFault(Kind::Overflow, "c").within("b").within("a").what(), "a: b: c: overflow");
}

TEST(Faults, OfDivisionAndNarrowing) {
  const auto quotient = [](double a, double b) { return messageOf([&] { return divide(a, b, "test"); }); };
  for (const double a : {0.0, -DBL_MAX, HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(quotient(a, -0.0), "test: division by zero") << a;
    EXPECT_EQ(quotient(a * HUGE_VAL, 0.5), "test: overflow") << a;
  }
  EXPECT_EQ(messageOf([] { return finite(-HUGE_VAL, "test"); }), "test: overflow");
  EXPECT_EQ(messageOf([] { return finite(std::nan(""), "test"); }), "test: invalid operation");
  for (const long long n : {-32769, -32768, 32767, 32768})
    EXPECT_EQ(messageOf([&] { return toInt16(n, "test"); }) == "no error", n == static_cast<std::int16_t>(n));
}

TEST(Faults, OfTheFlags) {
  const auto raisedBy = [](double a, double b) {
    const volatile double divisor = b;
    fpflags::clear();
    [[maybe_unused]] const volatile double quotients[] = {a / divisor, 6 / (1 + std::abs(divisor))};
    return fpflags::raised();
  };
  EXPECT_EQ(raisedBy(1e-300, 3e300), std::nullopt) << "inexact and underflow";
  EXPECT_EQ(raisedBy(0, 0), Kind::InvalidOperation);
  EXPECT_EQ(raisedBy(DBL_MAX, 0.5), Kind::Overflow);
  {
    const FlagKeeper keeper;
    EXPECT_EQ(raisedBy(1, 0), Kind::DivisionByZero);
  }
  EXPECT_EQ(fpflags::raised(), Kind::Overflow) << "the surrounding flags are back";
}

}  // namespace torvik::base
