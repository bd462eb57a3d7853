// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Numbers to text and back. Nothing here depends on a locale.
namespace torvik::base {

/// Plain text: at most 15 significant digits in the form of `%.15G`: "0.0035", "1E-05", "1E+15". -0 is "0".
/// What is not finite gives "INF", "-INF" or "NAN", which are no numbers to `toNumber`.
std::string plainText(double value);
std::string plainText(long long value);
inline std::string plainText(int value) {
  return plainText(static_cast<long long>(value));
}
/// Adds the plain text at the end of `text`, without another allocation where capacity is there.
void appendPlainText(std::string& text, double value);

/// The format string "0.0000E+00" with as many decimals as told: mantissa, "E", sign, two or more exponent
/// digits. 0 gives "0.0000E+00". Rounded from the exact value.
/// @param decimals  0 to 300
std::string scientificText(double value, int decimals = 4);

/// Decimals of the format "0.0000E+00" (most columns) and of "0.00000000E+00" (strain without load).
inline constexpr int kDisplayDecimals = 4;
inline constexpr int kBaseStrainDecimals = 8;

/// The ordinary text-to-number conversion: optional blanks, sign, decimal digits with "." and an exponent (E
/// or e), optional blanks, and nothing else. Empty where the text is no number, or one that does not fit a
/// 64-bit float (a number too small to hold gives 0). "inf", "nan" and hexadecimal forms are no numbers.
std::optional<double> toNumber(std::string_view text);

/// `toNumber`, @throws NumericFault TypeMismatch where the text is no number.
double numberOf(std::string_view text, const char* where);

/// The value after a round trip through plain text: rounded to 15 significant digits.
/// @throws NumericFault Overflow where the rounded text no longer fits (the largest double) or is not finite
double throughText(double value);

/// `text` without blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);

/// ASCII letters compare without regard to case, all other bytes as they are.
bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace torvik::base
