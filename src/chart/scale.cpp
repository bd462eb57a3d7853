// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "base/number_text.h"

namespace torvik::chart {

namespace {

/// Far inside of what a double holds, so that no difference or product of two places overflows.
constexpr double kFarthest = 1e250;
constexpr double kNearest = 1e-250;
/// Smallest extent of an axis against its larger limit.
constexpr double kFinest = 1e-10;
/// Of a step: below this a value lies on the step.
constexpr double kOnStep = 1e-9;

int decimalExponent(double value) {
  return static_cast<int>(std::floor(std::log10(value)));
}

/// value * 10 ^ exponent, rounded once while the power is exact.
double scaled(double value, int exponent) {
  return exponent >= 0 ? value * std::pow(10.0, exponent) : value / std::pow(10.0, -exponent);
}

std::string superscript(int number) {
  static constexpr std::array<std::string_view, 10> kDigits = {"⁰", "¹", "²", "³", "⁴",
                                                               "⁵", "⁶", "⁷", "⁸", "⁹"};
  std::string text;
  for (const char c : base::plainText(number))
    text += c == '-' ? std::string_view("⁻") : kDigits[static_cast<std::size_t>(c - '0')];
  return text;
}

}  // namespace

bool canBePlaced(double value) {
  return std::abs(value) <= kFarthest;
}

bool canBeShown(const Interval& interval) {
  return canBePlaced(interval.lower) && canBePlaced(interval.upper) && interval.size() >= kNearest &&
         interval.size() >= kFinest * std::max(std::abs(interval.lower), std::abs(interval.upper));
}

DecimalStep DecimalStep::notAbove(double size) {
  const int exponent = decimalExponent(size);
  const double digit = size / std::pow(10.0, exponent);
  return {digit >= 5 ? 5 : digit >= 2 ? 2 : 1, exponent};
}

DecimalStep DecimalStep::next() const {
  if (m_digit == 5) return {1, m_exponent + 1};
  return {m_digit == 1 ? 2 : 5, m_exponent};
}

double DecimalStep::times(double count) const {
  return scaled(count * m_digit, m_exponent);
}

double DecimalStep::stepBelow(double value) const {
  return std::floor(value / this->value() + kOnStep);
}

double DecimalStep::stepAbove(double value) const {
  return std::ceil(value / this->value() - kOnStep);
}

Interval widened(Interval data) {
  if (canBeShown(data)) return data;
  data = {std::min(data.lower, 0.0), std::max(data.upper, 0.0)};
  return canBeShown(data) ? data : Interval{-1, 1};
}

SteppedLimits automaticLimits(const Interval& data, int mostDivisions,
                              const std::function<bool(const SteppedLimits&)>& fits) {
  DecimalStep step = DecimalStep::notAbove(data.size() / mostDivisions);
  while (true) {
    const SteppedLimits limits{step, step.stepBelow(data.lower), step.stepAbove(data.upper)};
    // Data on both sides of zero have two divisions at least.
    const bool coarsest = limits.divisions() <= (limits.first < 0 && limits.last > 0 ? 2 : 1);
    if (coarsest || (limits.divisions() <= mostDivisions && fits(limits))) return limits;
    step = step.next();
  }
}

std::string axisText(double value, double division, double largest) {
  int exponent = decimalExponent(division) - 2;
  auto mantissa = std::llround(scaled(value, -exponent));
  if (mantissa == 0) return "0";
  while (mantissa % 10 == 0) {
    mantissa /= 10;
    ++exponent;
  }
  std::string digits = base::plainText(std::abs(mantissa));
  const int length = static_cast<int>(digits.size());
  constexpr int kMostFixed = 5;    // 250000
  constexpr int kLeastFixed = -3;  // 0.0025
  const int magnitude = decimalExponent(largest);
  std::string power;
  if (magnitude > kMostFixed || magnitude < kLeastFixed) {
    power = "×10" + superscript(magnitude);
    exponent -= magnitude;
  }
  if (exponent >= 0) {
    digits.append(static_cast<std::size_t>(exponent), '0');
  } else {
    if (-exponent >= length) digits.insert(0, static_cast<std::size_t>(1 - exponent - length), '0');
    digits.insert(digits.size() - static_cast<std::size_t>(-exponent), ".");
  }
  return (mantissa < 0 ? "-" : "") + digits + power;
}

std::string readOutText(double value) {
  constexpr int kDecimals = 5;
  const std::string rounded = base::scientificText(value, kDecimals);
  return base::plainText(base::toNumber(rounded).value_or(value));
}

}  // namespace torvik::chart
