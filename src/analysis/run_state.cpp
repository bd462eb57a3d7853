// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/run_state.h"

#include "analysis/host.h"
#include "base/errors.h"

namespace torvik::analysis {

bool WaitWhilePaused(const RunControl& control, Host& host) {
  while (control.state == RunState::Paused) host.doEvents();
  switch (control.state) {
    case RunState::Running:
      return true;
    case RunState::Over:
      return false;
    case RunState::AtRest:
    case RunState::Paused:
      break;
  }
  throw base::InternalError(base::kImpossibleCase, "yield point reached with no job running");
}

}  // namespace torvik::analysis
