// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <mutex>
#include <string>

#include "analysis/sink.h"

namespace torvik::batch {

/// One line on a terminal that is written over; shared by the jobs that run side by side.
class ProgressLine {
 public:
  explicit ProgressLine(bool enabled) : m_enabled(enabled) {}

  /// Writes the line, at most ten times a second.
  void show(const std::string& name, const analysis::LoadStep& step, double seconds);
  /// Takes the line off the terminal.
  void clear();

 private:
  bool m_enabled;
  std::mutex m_mutex;
  std::chrono::steady_clock::time_point m_last{};
  bool m_shown = false;
};

/// Feeds the line with the steps of one job.
class ProgressSink : public analysis::Sink {
 public:
  ProgressSink(ProgressLine& line, std::string name);
  void loadStep(const analysis::LoadStep& step) override;

 private:
  ProgressLine& m_line;
  std::string m_name;
  std::chrono::steady_clock::time_point m_start;
};

}  // namespace torvik::batch
