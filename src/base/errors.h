// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// Three kinds of trouble, kept apart: a fault of ours (`InternalError`), bad input or a failing device
/// (`InputError`), and a numerical outcome (`NumericFault`), which the boundary of a job turns into data.
namespace torvik::base {

/// `text` fit for one line of a message: control bytes are "?".
std::string printable(std::string_view text);

/// An impossible case in a selection on kind, column, index or text. The number is shown to the user.
class InternalError : public std::logic_error {
 public:
  /// @param what  the case that no selection knows, for example `Solid 3: Type "elastic"`
  InternalError(int number, const std::string& what);
  [[nodiscard]] int number() const { return m_number; }
  [[nodiscard]] const std::string& impossibleCase() const { return m_case; }
  /// The same error with the place that it happened in put in front of the case.
  [[nodiscard]] InternalError within(const std::string& place) const;

 private:
  int m_number;
  std::string m_case;
};

inline constexpr int kImpossibleCase = 51;

/// Bad input, or a device that fails. `what()` is one line without a line end.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  /// `FILE: [SECTION] KEY="VALUE": expected EXPECTED`; of a value of more than 60 bytes the beginning and
  /// "...".
  /// @param expected  what should stand there, for example `an integer from 0 to 3`
  static InputError ofKey(std::string_view file, std::string_view section, std::string_view key,
                          std::string_view value, std::string_view expected);
};

/// An arithmetic fault on the way to a number: it ends the operation in hand (a job, a curve, a row of
/// parameters).
class NumericFault : public std::runtime_error {
 public:
  enum class Kind { DivisionByZero, Overflow, InvalidOperation, IndexOutOfRange, TypeMismatch };

  /// @param where  what was being worked out, for example `slope of the search`
  NumericFault(Kind kind, const std::string& where);
  [[nodiscard]] Kind kind() const { return m_kind; }
  [[nodiscard]] const std::string& where() const { return m_where; }
  /// The same fault with the place that it happened in put in front: `PLACE: WHERE`.
  [[nodiscard]] NumericFault within(const std::string& place) const;

 private:
  Kind m_kind;
  std::string m_where;
};

/// "division by zero", "overflow", "invalid operation", "index out of range", "not a number"
std::string_view textOf(NumericFault::Kind kind);

}  // namespace torvik::base
