// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace torvik::tests {

/// What the InputError or NumericFault says that the operation ends with.
std::string messageOf(const auto& operation) {
  try {
    static_cast<void>(operation());
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace torvik::tests
