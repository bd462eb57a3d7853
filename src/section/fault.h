// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "base/errors.h"
#include "section/values.h"

namespace torvik::section {

/// An evaluation that could not be made.
class Fault : public std::exception {
 public:
  /// @param kind  none: a name that the program does not know
  /// @param row   none: a sum or a quotient of the whole section
  /// @param what  what was being worked out ("stress"), or the name (`Type "elastic"`)
  Fault(std::optional<base::NumericFault::Kind> kind, std::optional<RowOf> row, std::string what)
      : m_kind(kind), m_row(row), m_what(std::move(what)) {}

  [[nodiscard]] std::optional<base::NumericFault::Kind> kind() const { return m_kind; }
  [[nodiscard]] const std::optional<RowOf>& row() const { return m_row; }
  [[nodiscard]] const std::string& subject() const { return m_what; }
  [[nodiscard]] const char* what() const noexcept override { return m_what.c_str(); }

 private:
  std::optional<base::NumericFault::Kind> m_kind;
  std::optional<RowOf> m_row;
  std::string m_what;
};

}  // namespace torvik::section
