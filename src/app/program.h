// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>

#include "app/dialogs.h"
#include "app/sounds.h"
#include "job/steering.h"
#include "materials/stress_strain.h"
#include "model/input_file.h"
#include "run/run.h"

namespace torvik::app {

/// How often a window has its turn while a job computes [ms].
struct Pace {
  int events = 10;  ///< its events run: often enough for every frame and every click
  int frame = 30;   ///< it takes what is new, and less often where that would take much of the time
};

/// All that is program-wide, owned by `main` or by a test and passed down.
struct Program {
  model::Document document;
  bool BatchMode = false;  ///< several input files were named at once: messages of a job go to a log file
  job::Steering steering;
  std::shared_ptr<const run::Run> run;     ///< of the last job; null: none since the model was made or opened
  materials::StressStrainContext context;  ///< answers of the confined law and user files, for all jobs
  std::filesystem::path settingsFile;
  Pace pace;
  Dialogs* dialogs = nullptr;
  SoundPlayer* sounds = nullptr;
};

}  // namespace torvik::app
