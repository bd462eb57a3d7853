// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/errors.h"

namespace torvik::tests {

/// What the InputError says that the operation ends with.
std::string messageOf(const auto& operation) {
  try {
    static_cast<void>(operation());
  } catch (const base::InputError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace torvik::tests
