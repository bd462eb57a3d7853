// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "base/profile.h"

namespace torvik::analysis {

/// What a job reads from section `Option` of the settings file, once, at its start.
struct JobOptions {
  double SmallTo = 2e-5;    ///< end of the small range [1/mm]
  double SmallStep = 1e-7;  ///< [1/mm]
  double LargeTo = 0.5;     ///< end of every job [1/mm]
  double LargeStep = 1e-6;  ///< [1/mm]

  std::int16_t MaxIteration = 1000;
  double DiffWidth = 1e-6;  ///< 1 / 10 ^ `ConvergenceDiffWidth`
  double Precision = 1e-3;  ///< 1 / 10 ^ `ConvergencePrecision`

  bool fileSolver = false;  ///< write the result file
  bool tableSolver = true;  ///< feed the solver table, and watch strains

  bool beepConvergence = true;
  bool pausePreLoading = false;
  bool pauseWatch = true;
  std::string convergenceSound;
  std::string pausePreLoadingSound;
  std::string pauseWatchSound;

  /// @throws InputError of the first key whose value its kind can not hold
  static JobOptions read(const base::ProfileFile& settings);
};

}  // namespace torvik::analysis
