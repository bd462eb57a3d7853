// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <mutex>
#include <string>

#include "run/run.h"

namespace torvik::batch {

/// One line on a terminal that is written over; shared by the jobs that run side by side.
class ProgressLine {
 public:
  explicit ProgressLine(bool enabled) : m_enabled(enabled) {}

  /// Writes where a job is, at most ten times a second.
  void show(const std::string& name, const run::Run& run, double seconds);
  /// Takes the line off the terminal.
  void clear();

 private:
  bool m_enabled;
  std::mutex m_mutex;
  std::chrono::steady_clock::time_point m_last{};
  bool m_shown = false;
};

}  // namespace torvik::batch
