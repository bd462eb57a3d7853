// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/profile.h"
#include "run/run.h"
#include "section/search.h"

namespace torvik::job {

/// What a job reads from section `Option` of the settings file, once, at its start.
struct JobOptions {
  double SmallTo = 2e-5;    ///< end of the small range [1/mm]
  double SmallStep = 1e-7;  ///< [1/mm]
  double LargeTo = 0.5;     ///< end of every job [1/mm]
  double LargeStep = 1e-6;  ///< [1/mm]
  section::SearchSettings search;
  bool tableSolver = true;  ///< watch strains

  /// @throws InputError of the first key whose value its kind can not hold
  static JobOptions read(const base::ProfileFile& settings);
};

/// Where a run that begins now comes from.
/// @param model     path of the input file; empty: none
/// @param isEdited  the objects differ from that file, which then has no checksum
run::Origin originOf(const std::string& model, bool isEdited, const base::ProfileFile& settings);

}  // namespace torvik::job
