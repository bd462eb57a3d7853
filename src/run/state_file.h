// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "run/run.h"

namespace torvik::run {

/// `PATH.state.txt` of an input file.
std::string stateFileName(const std::string& inputFile);

/// The per-object tables as the last trial of an ended run left them: tab-separated, a line for each solid,
/// bar and tendon. What overflowed is an empty cell.
std::string stateText(const Run& run);

}  // namespace torvik::run
