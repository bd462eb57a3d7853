// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "base/errors.h"

namespace torvik::base {

namespace {

constexpr int kSignificantDigits = 15;
/// Beyond what the length of a text can make up for.
constexpr long long kFarExponent = 1'000'000'000'000'000LL;

/// Longest form of either conversion, with room to spare for many decimals.
using Buffer = std::array<char, 512>;

constexpr bool isBlank(char c) {
  return c == ' ' || c == '\t';
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string_view convert(Buffer& buffer, double value, std::chars_format format, int precision) {
  if (value == 0.0) value = 0.0;  // no sign
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
  if (error != std::errc()) throw InternalError(kImpossibleCase, "decimals of a number text");
  for (char* c = buffer.data(); c != end; ++c) *c = upper(*c);
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

/// Of an unsigned decimal number that no double holds: whether it is too small, not too large.
bool isTooSmall(std::string_view number) {
  const std::size_t mark = number.find_first_of("eE");
  const std::string_view mantissa = number.substr(0, mark);
  long long exponent = 0;
  if (mark != std::string_view::npos) {
    std::string_view digits = number.substr(mark + 1);
    if (digits.front() == '+') digits.remove_prefix(1);
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (result.ec == std::errc::result_out_of_range) return digits.front() == '-';
    exponent = std::clamp(exponent, -kFarExponent, kFarExponent);
  }
  // Of the first digit that is not zero; a double reaches from -324 to 308.
  const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<long long>(mantissa.find_first_of("123456789"));
  const long long decimalExponent = exponent + (first < point ? point - first - 1 : point - first);
  return decimalExponent < 0;
}

}  // namespace

std::string plainText(double value) {
  std::string text;
  appendPlainText(text, value);
  return text;
}

std::string plainText(long long value) {
  Buffer buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), result.ptr};
}

void appendPlainText(std::string& text, double value) {
  Buffer buffer;
  text.append(convert(buffer, value, std::chars_format::general, kSignificantDigits));
}

std::string scientificText(double value, int decimals) {
  Buffer buffer;
  return std::string(convert(buffer, value, std::chars_format::scientific, decimals));
}

std::optional<double> toNumber(std::string_view text) {
  text = trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // from_chars would also take another sign, "inf" and "nan".
  if (text.empty() || !(isDigit(text.front()) || text.front() == '.')) return std::nullopt;

  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ptr != end || result.ec == std::errc::invalid_argument) return std::nullopt;
  if (result.ec == std::errc::result_out_of_range) {
    if (!isTooSmall(text)) return std::nullopt;
    value = 0.0;
  }
  return negative ? -value : value;
}

double numberOf(std::string_view text, const char* where) {
  const std::optional<double> number = toNumber(text);
  if (!number) throw NumericFault(NumericFault::Kind::TypeMismatch, where);
  return *number;
}

double throughText(double value) {
  Buffer buffer;
  const auto number = toNumber(convert(buffer, value, std::chars_format::general, kSignificantDigits));
  if (!number) throw NumericFault(NumericFault::Kind::Overflow, "number text");
  return *number;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && upper(a[i]) != upper(b[i])) return false;
  }
  return true;
}

}  // namespace torvik::base
