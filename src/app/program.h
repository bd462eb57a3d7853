// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include "analysis/run_state.h"
#include "app/dialogs.h"
#include "app/sounds.h"
#include "materials/stress_strain.h"
#include "model/input_file.h"

namespace torvik::app {

/// All that is program-wide, owned by `main` or by a test and passed down.
struct Program {
  model::Document document;
  bool BatchMode = false;  ///< several input files were named at once: messages of a job go to a log file
  analysis::RunControl run;
  materials::StressStrainContext context;  ///< answers of the confined law and user files, for the whole run
  std::filesystem::path settingsFile;
  Dialogs* dialogs = nullptr;
  SoundPlayer* sounds = nullptr;
};

}  // namespace torvik::app
