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

void ProgressLine::show(const std::string& name, const analysis::LoadStep& step, double seconds) {
  if (!m_enabled) return;
  const std::lock_guard lock(m_mutex);
  const auto now = std::chrono::steady_clock::now();
  if (now - m_last < std::chrono::milliseconds(100)) return;
  m_last = now;
  std::string text =
      fmt::format("{}  step {}  curvature {}  moment {}  {:.1f} s", base::printable(name), step.Step + 1,
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

ProgressSink::ProgressSink(ProgressLine& line, std::string name)
    : m_line(line), m_name(std::move(name)), m_start(std::chrono::steady_clock::now()) {}

void ProgressSink::loadStep(const analysis::LoadStep& step) {
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
  m_line.show(m_name, step, elapsed.count());
}

}  // namespace torvik::batch
