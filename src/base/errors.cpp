// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"

#include <fmt/format.h>

#include <cstddef>

namespace torvik::base {

namespace {

constexpr std::size_t kShownValueBytes = 60;

/// At most 60 bytes of `value`, cut between two UTF-8 characters.
std::string shownValue(std::string_view value) {
  if (value.size() <= kShownValueBytes) return printable(value);
  std::size_t end = kShownValueBytes;
  const auto continues = [&] { return (static_cast<unsigned char>(value[end]) & 0xC0U) == 0x80U; };
  while (end > kShownValueBytes - 3 && continues()) --end;
  return printable(value.substr(0, end)) + "...";
}

}  // namespace

std::string printable(std::string_view text) {
  std::string shown(text);
  for (char& c : shown) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20U || byte == 0x7FU) c = '?';
  }
  return shown;
}

InternalError::InternalError(int number, const std::string& what)
    : std::logic_error(fmt::format("Internal error {}: {}", number, what)), m_number(number), m_case(what) {}

InternalError InternalError::within(const std::string& place) const {
  return InternalError(m_number, fmt::format("{}: {}", place, m_case));
}

InputError InputError::ofKey(std::string_view file, std::string_view section, std::string_view key,
                             std::string_view value, std::string_view expected) {
  return InputError(fmt::format("{}: [{}] {}=\"{}\": expected {}", printable(file), printable(section),
                                printable(key), shownValue(value), expected));
}

NumericFault::NumericFault(Kind kind, const std::string& where)
    : std::runtime_error(fmt::format("{}: {}", where, textOf(kind))), m_kind(kind), m_where(where) {}

NumericFault NumericFault::within(const std::string& place) const {
  return NumericFault(m_kind, fmt::format("{}: {}", place, m_where));
}

std::string_view textOf(NumericFault::Kind kind) {
  switch (kind) {
    case NumericFault::Kind::DivisionByZero:
      return "division by zero";
    case NumericFault::Kind::Overflow:
      return "overflow";
    case NumericFault::Kind::InvalidOperation:
      return "invalid operation";
    case NumericFault::Kind::IndexOutOfRange:
      return "index out of range";
    case NumericFault::Kind::TypeMismatch:
      return "not a number";
  }
  throw InternalError(kImpossibleCase, "NumericFault::Kind");
}

}  // namespace torvik::base
