// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

/// Scales of a chart's axes, apart from any drawing.
namespace torvik::chart {

/// The scale of an axis as a user sets it.
struct ValueScale {
  bool Auto = true;
  double Minimum = 0;
  double Maximum = 1;
  int MajorDivision = 5;  ///< number of divisions between both limits
};

inline constexpr int kLeastDivision = 1;
inline constexpr int kMostDivision = 20;

/// An interval of plain numbers.
struct Interval {
  double lower = 0;
  double upper = 1;
  [[nodiscard]] double size() const { return upper - lower; }
  bool operator==(const Interval&) const = default;
};

/// Whether an axis can show the interval: finite, not upside down, and wide enough against its limits that
/// neighbouring divisions differ.
bool canBeShown(const Interval& interval);

/// Whether a chart can place the number at all.
bool canBePlaced(double value);

/// 1, 2 or 5 times a power of ten.
class DecimalStep {
 public:
  /// The largest one that is not above `size`. @param size  > 0
  static DecimalStep notAbove(double size);
  [[nodiscard]] DecimalStep next() const;
  [[nodiscard]] double value() const { return times(1); }
  /// `count` steps from zero, rounded once: 3 steps of 0.1 are 0.3.
  [[nodiscard]] double times(double count) const;

  /// Number of the step at or below a value, and of that at or above it. A value that misses a step by
  /// rounding alone counts as on it.
  [[nodiscard]] double stepBelow(double value) const;
  [[nodiscard]] double stepAbove(double value) const;

 private:
  DecimalStep(int digit, int exponent) : m_digit(digit), m_exponent(exponent) {}
  int m_digit;
  int m_exponent;
};

/// Limits on whole steps: numbers `first` to `last` of the step.
struct SteppedLimits {
  DecimalStep step = DecimalStep::notAbove(1);
  double first = 0;
  double last = 1;
  [[nodiscard]] int divisions() const { return static_cast<int>(last - first); }
  [[nodiscard]] Interval interval() const { return {step.times(first), step.times(last)}; }
};

/// Data bounds made fit for an automatic scale: where all data have one value, zero joins them.
Interval widened(Interval data);

/// The limits of the finest step round `data` that has at most `mostDivisions` divisions and that `fits`.
/// Where none fits, the coarsest sensible one.
/// @param data  as `widened` gives it
SteppedLimits automaticLimits(const Interval& data, int mostDivisions,
                              const std::function<bool(const SteppedLimits&)>& fits);

/// Text of a number on an axis, to a hundredth of the division: "0.25", "250000", "2.5×10⁷".
/// @param division  distance between neighbouring numbers, > 0
/// @param largest   of all magnitudes on the axis: decides between the two forms for all its numbers
std::string axisText(double value, double division, double largest);

/// A number of the read-out: plain text of six digits.
std::string readOutText(double value);

}  // namespace torvik::chart
