// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/errors.h"

namespace torvik::tests {

bool raises51(const auto& call) {
  try {
    call();
  } catch (const base::InternalError& error) {
    return error.number() == 51;
  }
  return false;
}

}  // namespace torvik::tests
