// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/fault.h"

#include <cfenv>
#include <cmath>
#include <limits>

namespace torvik::base {

double divide(double a, double b, const char* where) {
  if (b == 0.0) throw NumericFault(NumericFault::Kind::DivisionByZero, where);
  const double quotient = a / b;
  // Infinite operands are overflows of an earlier operation; 0 / 0 is told above.
  if (!std::isfinite(quotient)) throw NumericFault(NumericFault::Kind::Overflow, where);
  return quotient;
}

double finite(double value, const char* where) {
  if (std::isnan(value)) throw NumericFault(NumericFault::Kind::InvalidOperation, where);
  if (std::isinf(value)) throw NumericFault(NumericFault::Kind::Overflow, where);
  return value;
}

std::int16_t toInt16(long long value, const char* where) {
  using Limits = std::numeric_limits<std::int16_t>;
  if (value < Limits::min() || value > Limits::max()) throw NumericFault(NumericFault::Kind::Overflow, where);
  return static_cast<std::int16_t>(value);
}

namespace fpflags {

namespace {
constexpr int kWatched = FE_DIVBYZERO | FE_OVERFLOW | FE_INVALID;
}

void clear() {
  // The test is many times cheaper than clearing, and mostly there is nothing to clear.
  if (std::fetestexcept(kWatched) != 0) std::feclearexcept(kWatched);
}

std::optional<NumericFault::Kind> raised() {
  const int flags = std::fetestexcept(kWatched);
  if ((flags & FE_DIVBYZERO) != 0) return NumericFault::Kind::DivisionByZero;
  if ((flags & FE_OVERFLOW) != 0) return NumericFault::Kind::Overflow;
  if ((flags & FE_INVALID) != 0) return NumericFault::Kind::InvalidOperation;
  return std::nullopt;
}

}  // namespace fpflags

FlagKeeper::FlagKeeper() {
  std::fegetexceptflag(&m_saved, FE_ALL_EXCEPT);
}

FlagKeeper::~FlagKeeper() {
  std::fesetexceptflag(&m_saved, FE_ALL_EXCEPT);
}

}  // namespace torvik::base
