// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/progress.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::batch {

void ProgressLine::show(const std::string& name, const run::Run& run, double seconds) {
  if (!m_enabled || run.steps() == 0) return;
  const std::lock_guard lock(m_mutex);
  const auto now = std::chrono::steady_clock::now();
  if (now - m_last < std::chrono::milliseconds(100)) return;
  m_last = now;
  const int steps = run.steps();
  const run::Step step = run.step(steps - 1);
  std::string text =
      fmt::format("{}  step {}  curvature {}  moment {}  {:.1f} s", base::printable(name), steps,
                  base::scientificText(step.Curvature), base::scientificText(step.Moment), seconds);
  winsize size{};
  const std::size_t width =
      ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : 80;
  if (text.size() >= width) text.resize(width - 1);  // a wrapped line could not be written over
  fmt::print(stderr, "\r\033[K{}", text);
  std::fflush(stderr);
  m_shown = true;
}

void ProgressLine::clear() {
  const std::lock_guard lock(m_mutex);
  if (!std::exchange(m_shown, false)) return;
  fmt::print(stderr, "\r\033[K");
  std::fflush(stderr);
}

}  // namespace torvik::batch
