// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "base/profile.h"
#include "batch/command_line.h"
#include "batch/progress.h"
#include "model/input_file.h"

namespace torvik::batch {

/// Reads a model for a batch. @throws InputError also where no file of that name is there
model::ObjectTables readModel(const std::string& path);

/// What a model came to: one line of the summary.
struct ModelResult {
  std::string model;
  int rows = 0;
  std::optional<double> peakMoment;  ///< [N mm]; empty without a row
  std::string message;               ///< the last one
  double seconds = 0;
  std::vector<std::string> crossings;  ///< "Bar Strain 1 crosses 0.001475 at step 53"

  /// Name, rows, peak moment, end message, seconds, and the crossings where there are any; tabs between, no
  /// line end.
  [[nodiscard]] std::string line() const;
};

/// Runs the job of one model: result file, messages to the log file, and the state file where it is asked
/// for. Never throws: whatever happens stands in the result.
/// @param warnings  what could not be logged
ModelResult runModel(const std::string& path, const Request& request, const base::ProfileFile& settings,
                     const std::atomic<bool>& endRequested, ProgressLine& progress,
                     std::vector<std::string>& warnings);

}  // namespace torvik::batch
