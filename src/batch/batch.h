// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <ostream>

#include "batch/command_line.h"

namespace torvik::batch {

/// Set from a signal: jobs end at their next yield, models not begun are left out.
std::atomic<bool>& endRequested();

/// Runs or prints all models of the request.
/// @return the exit status: 0 every model gave a result row (or its print), 1 some did not, 2 the settings
/// file that
///         the command line names can not be read
int runBatch(const Request& request, std::ostream& out, std::ostream& err);

}  // namespace torvik::batch
