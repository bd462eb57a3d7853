// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cfenv>
#include <cstdint>
#include <optional>

#include "base/errors.h"

namespace torvik::base {

/// a / b, rounded once.
/// @param where  what is being worked out, for the message
/// @throws NumericFault DivisionByZero where b is 0 (also for 0 / 0); Overflow where the quotient
///         is not finite, which includes operands that an earlier overflow left infinite
double divide(double a, double b, const char* where);

/// Returns `value`; @throws NumericFault Overflow or InvalidOperation where it is infinite or not a number.
double finite(double value, const char* where);

/// Narrows to 16 bits; @throws NumericFault Overflow where the value does not fit.
std::int16_t toInt16(long long value, const char* where);

/// The sticky floating-point exception flags of this thread, for loops that can not test each operation.
/// Division by zero, overflow and invalid operation count; underflow and inexact do not. A compiler may move
/// a result that it still holds in a register past these calls: watched work belongs in a function of its own
/// or ends in memory.
namespace fpflags {
void clear();
/// The first raised of: division by zero, overflow, invalid operation.
std::optional<NumericFault::Kind> raised();
}  // namespace fpflags

/// Keeps the flags of the surrounding computation: saved at construction, put back at destruction.
class FlagKeeper {
 public:
  FlagKeeper();
  ~FlagKeeper();
  FlagKeeper(const FlagKeeper&) = delete;
  FlagKeeper& operator=(const FlagKeeper&) = delete;

 private:
  std::fexcept_t m_saved{};
};

}  // namespace torvik::base
