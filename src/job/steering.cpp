// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/steering.h"

#include "base/errors.h"

namespace torvik::job {

bool WaitWhilePaused(const Steering& steering, const std::function<void()>& doEvents) {
  while (steering.state == JobState::Paused) doEvents();
  switch (steering.state) {
    case JobState::Running:
      return true;
    case JobState::Over:
      return false;
    case JobState::AtRest:
    case JobState::Paused:
      break;
  }
  throw base::InternalError(base::kImpossibleCase, "yield point reached with no job running");
}

}  // namespace torvik::job
