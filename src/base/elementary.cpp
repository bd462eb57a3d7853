// SPDX-License-Identifier: GPL-3.0-or-later
// Method: P. T. P. Tang, "Table-driven implementation of the exponential function" (ACM TOMS 15, 1989) and
// "... of the logarithm function" (ACM TOMS 16, 1990), the logarithm carried to 70 bits as head and tail.
#include "base/elementary.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace torvik::base {
namespace {

static_assert(FLT_EVAL_METHOD == 0 && std::numeric_limits<double>::is_iec559, "needs plain IEEE doubles");

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::uint64_t kMantissaMask = 0x000fffffffffffffu;

constexpr std::uint64_t bitsOf(double x) {
  return std::bit_cast<std::uint64_t>(x);
}
constexpr double ofBits(std::uint64_t bits) {
  return std::bit_cast<double>(bits);
}
constexpr double magnitude(double x) {
  return ofBits(bitsOf(x) & ~(std::uint64_t{1} << 63));
}

/// 1 + the mantissa of x: x without sign and exponent where x is normal, 1 + x * 2^1022 where it is denormal.
constexpr double fractionOf(double x) {
  return ofBits((bitsOf(x) & kMantissaMask) | bitsOf(1.0));
}

/// 2^k for -1022 <= k <= 1023.
constexpr double powerOfTwo(std::int64_t k) {
  return ofBits(static_cast<std::uint64_t>(k + 1023) << 52);
}

/// The leading 26 bits of x; x less these has 27, so that products of such parts are exact.
constexpr double leadingBits(double x) {
  return ofBits(bitsOf(x) & ~std::uint64_t{0x7ffffff});
}

/// The unevaluated sum head + tail, |tail| <= ulp(head) / 2.
struct Pair {
  double head;
  double tail;
};

/// a + b without error, for a == 0 or |a| >= |b|.
constexpr Pair exactSum(double a, double b) {
  const double sum = a + b;
  return {sum, (a - sum) + b};
}

/// a * b with an error of about 2^-106 of it (Dekker).
constexpr Pair exactProduct(double a, double b) {
  const double aHigh = leadingBits(a), aLow = a - aHigh;
  const double bHigh = leadingBits(b), bLow = b - bHigh;
  const double product = a * b;
  return {product, (((aHigh * bHigh - product) + aHigh * bLow) + aLow * bHigh) + aLow * bLow};
}

constexpr Pair times(Pair a, Pair b) {
  const Pair p = exactProduct(a.head, b.head);
  return exactSum(p.head, p.tail + (a.head * b.tail + a.tail * b.head));
}

/// a + b for a == 0 or |a| >= |b|.
constexpr Pair plus(Pair a, Pair b) {
  const Pair s = exactSum(a.head, b.head);
  return exactSum(s.head, s.tail + (a.tail + b.tail));
}

/// a / b of doubles.
constexpr Pair quotient(double a, double b) {
  const double q = a / b;
  const Pair back = exactProduct(q, b);
  return exactSum(q, ((a - back.head) - back.tail) / b);
}

constexpr Pair kLn2{0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};

/// 2^(j/128), j = 0 to 127, by the series of e^x.
constexpr auto kPowersOfTwo = [] {
  std::array<Pair, 128> table{};
  for (std::size_t j = 0; j < table.size(); ++j) {
    const Pair x = times(kLn2, {static_cast<double>(j) / 128, 0});
    Pair sum{1, 0};
    for (int n = 28; n > 0; --n) sum = plus({1, 0}, times(times(x, sum), quotient(1, n)));
    table[j] = sum;
  }
  return table;
}();

/// x rounded to the last bit of `anchor`, which is much greater than x.
constexpr double roundedAt(double anchor, double x) {
  return (x + anchor) - anchor;
}

/// ln 2 in two parts: the head ends where `anchor` does, so that its products with short integers are exact.
constexpr Pair ln2SplitAt(double anchor) {
  const double high = roundedAt(anchor, kLn2.head);
  return {high, (kLn2.head - high) + kLn2.tail};
}

constexpr double kLogAnchor = 0x1.8p10;  // last bit 2^-42
constexpr double kExpAnchor = 0x1.8p17;  // last bit 2^-35

/// A cell of the logarithm: `inverse` of 12 bits near 1 / (1 + i/256), and -ln(inverse), from `kFirstHalved`
/// on -ln(2 * inverse), as `log`, whose head is rounded at `kLogAnchor`, so that k ln 2 + head is exact for
/// every binary exponent k.
struct LogCell {
  double inverse;
  Pair log;
};
constexpr std::size_t kFirstHalved = 106;  // 1 + i/256 is nearest to the square root of 2

constexpr auto kLogCells = [] {
  std::array<LogCell, 257> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto divisor = static_cast<unsigned>(256 + i);
    const double inverse = ((2u * 256u * 2048u + divisor) / (2u * divisor)) / 2048.0;
    const double m = i < kFirstHalved ? inverse : 2 * inverse;
    const Pair s = quotient(1 - m, 1 + m), square = times(s, s);
    Pair sum{0, 0};  // -ln(m) = 2 artanh(s)
    for (int n = 43; n > 0; n -= 2) sum = plus(quotient(2, n), times(square, sum));
    sum = times(s, sum);
    const double head = roundedAt(kLogAnchor, sum.head);
    table[i] = {inverse, {head, (sum.head - head) + sum.tail}};
  }
  return table;
}();

// The results that raise a flag: volatile keeps the operation from being folded or run ahead of its test.
double overflowing(double sign) {
  const volatile double huge = 0x1p1023;
  return sign * huge * huge;
}
double reciprocal(double x) {
  const volatile double divisor = x;
  return 1 / divisor;
}
double invalid() {
  const volatile double zero = 0;
  return zero / zero;
}

/// (head + tail) * 2^k, rounded once, where k or the result may lie outside the normal doubles.
[[gnu::noinline]] double scaledAtTheEnds(double head, double tail, std::int64_t k) {
  if (k > 0) return (head + tail) * 0x1p1000 * powerOfTwo(k - 1000);
  const double shift = powerOfTwo(k + 1022);
  const Pair y = exactSum(head * shift, tail * shift);
  if (y.head >= 1) return y.head * 0x1p-1022;
  const Pair aligned = exactSum(1, y.head);  // 1 + y has its last bit where the denormal result has it
  return ((aligned.head + (aligned.tail + y.tail)) - 1) * 0x1p-1022;
}

/// e^(x + tail) for -746 < x < 710 and |tail| < 2^-40.
inline double exponentialOf(double x, double tail) {
  constexpr double kStepsPerUnit = 128 / kLn2.head, kToInteger = 0x1.8p52;
  constexpr Pair kLn2Split = ln2SplitAt(kExpAnchor);
  const double shifted = x * kStepsPerUnit + kToInteger;
  const double steps = shifted - kToInteger;
  const auto n = static_cast<std::int64_t>(bitsOf(shifted) - bitsOf(kToInteger));
  const double a = x - steps * (kLn2Split.head / 128), b = steps * (kLn2Split.tail / 128) - tail;
  const double r = a - b, rTail = (a - r) - b;  // |r| < ln 2 / 256
  const double r2 = r * r;
  const double curved =
      r2 * (1.0 / 2 + r * (1.0 / 6)) + r2 * r2 * ((1.0 / 24 + r * (1.0 / 120)) + r2 * (1.0 / 720));
  const Pair root = kPowersOfTwo[static_cast<std::size_t>(n & 127)];
  const double low = root.tail + root.head * (r + (curved + rTail));
  const std::int64_t k = n >> 7;
  if (k < -1020 || k > 1022) return scaledAtTheEnds(root.head, low, k);
  return (root.head + low) * powerOfTwo(k);
}

/// ln x of a positive, finite x, with an error of about 2^-70 of it.
inline Pair logarithmOf(double x) {
  constexpr Pair kLn2Split = ln2SplitAt(kLogAnchor);
  const bool denormal = x < 0x1p-1022;
  const std::uint64_t bits = denormal ? bitsOf(fractionOf(x) - 1) : bitsOf(x);
  const auto i = static_cast<std::size_t>((((bits & kMantissaMask) >> 43) + 1) >> 1);
  const LogCell& cell = kLogCells[i];
  const double k = static_cast<int>(bits >> 52) - (denormal ? 2045 : 1023) + (i < kFirstHalved ? 0 : 1);
  const double z = fractionOf(ofBits(bits));
  const double zHigh = leadingBits(z);
  const Pair r = exactSum(zHigh * cell.inverse - 1, (z - zHigh) * cell.inverse);  // |r| < 2^-8.8, exact
  const double rHigh = leadingBits(r.head), r2 = r.head * r.head;
  const Pair sum = exactSum(k * kLn2Split.head + cell.log.head, r.head);
  const Pair bent = exactSum(sum.head, -0.5 * (rHigh * rHigh));
  const double cubic = r.head * r2 *
                       ((1.0 / 3 - r.head * (1.0 / 4)) +
                        r2 * ((1.0 / 5 - r.head * (1.0 / 6)) + r2 * (1.0 / 7 - r.head * (1.0 / 8))));
  const double squareRest = 0.5 * (r.head - rHigh) * (r.head + rHigh);
  const double tail = k * kLn2Split.tail + cell.log.tail + sum.tail + bent.tail;
  return exactSum(bent.head, cubic + (tail + ((r.tail - r.head * r.tail) - squareRest)));
}

enum class Parity { Fraction, Even, Odd };

/// Of a finite x other than 0.
Parity parityOf(double x) {
  const std::uint64_t bits = bitsOf(x);
  const int exponent = static_cast<int>((bits >> 52) & 0x7ff) - 1023;
  if (exponent < 0) return Parity::Fraction;
  if (exponent > 52) return Parity::Even;
  const std::uint64_t unit = std::uint64_t{1} << (52 - exponent);
  if ((bits & (unit - 1)) != 0) return Parity::Fraction;
  return (((bits & kMantissaMask) | (kMantissaMask + 1)) & unit) != 0 ? Parity::Odd : Parity::Even;
}

/// base^exponent where either is infinite or the base is 0; neither is NaN.
double powerAtTheLimits(double base, double exponent) {
  const double size = magnitude(base);
  if (magnitude(exponent) == kInfinity) {
    if (size == 1) return 1;
    return (size > 1) == (exponent > 0) ? kInfinity : 0;
  }
  const bool odd = parityOf(exponent) == Parity::Odd;
  if (exponent > 0) return odd ? base : size;
  return reciprocal(odd ? base : size);
}

}  // namespace

double exponential(double x) {
  if (x != x) return x + x;
  if (x > -746 && x < 710) return exponentialOf(x, 0);
  if (x < 0) return 0;
  return x == kInfinity ? x : overflowing(1);
}

double power(double base, double exponent) {
  if (exponent == 0 || base == 1) return 1;
  if (exponent == 1) return base;
  if (exponent == 2) return base * base;
  if (base != base || exponent != exponent) return base + exponent;
  const double size = magnitude(base);
  if (size == 0 || size == kInfinity || magnitude(exponent) == kInfinity)
    return powerAtTheLimits(base, exponent);
  double sign = 1;
  if (base < 0) {
    const Parity parity = parityOf(exponent);
    if (parity == Parity::Fraction) return invalid();
    if (parity == Parity::Odd) sign = -1;
  }
  if (exponent == 3 && size > 0x1p-300 && size < 0x1p300) {
    const Pair square = exactProduct(base, base), cube = exactProduct(square.head, base);
    return cube.head + (cube.tail + square.tail * base);
  }
  const Pair log = logarithmOf(size);
  const double held =
      std::clamp(exponent, -0x1p70, 0x1p70);  // beyond, the result is past either limit anyway
  const Pair product = exactProduct(held, log.head);
  if (product.head >= 710) return overflowing(sign);
  if (product.head <= -746) return sign * 0.0;
  return sign * exponentialOf(product.head, product.tail + held * log.tail);
}

}  // namespace torvik::base
