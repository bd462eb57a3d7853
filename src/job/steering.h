// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

namespace torvik::job {

/// The one word through which the user steers a job.
enum class JobState : std::int16_t {
  AtRest = 0,  ///< no job since the file was made new, or at start
  Running = 1,
  Paused = 2,
  Over = 3,  ///< ended, or no job running
};

/// Owned by the program and seen by whoever hosts its job.
struct Steering {
  JobState state = JobState::AtRest;
};

/// The yield point of a job. While paused it lets events run until the state is running or over.
/// @return true: go on; false: abandon the job
/// @throws InternalError 51 in the state at rest
bool WaitWhilePaused(const Steering& steering, const std::function<void()>& doEvents);

}  // namespace torvik::job
