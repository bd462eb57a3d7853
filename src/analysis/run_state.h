// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace torvik::analysis {

class Host;

/// The one word through which the user steers a job.
enum class RunState : std::int16_t {
  AtRest = 0,  ///< no job since the file was made new, or at start
  Running = 1,
  Paused = 2,
  Over = 3,  ///< ended, or no job running
};

/// Owned by the program (or by one job of a batch) and seen by the job and by its host.
struct RunControl {
  RunState state = RunState::AtRest;
};

/// The yield point of a job. While paused it lets the host's events run until the state is running or over.
/// @return true: go on; false: abandon the job
/// @throws InternalError 51 in the state at rest
bool WaitWhilePaused(const RunControl& control, Host& host);

}  // namespace torvik::analysis
