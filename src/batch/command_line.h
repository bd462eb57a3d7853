// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/objects.h"

namespace torvik::batch {

/// A row of the edited tables, as `bar:2` names it.
struct RowName {
  model::ObjectKind kind = model::ObjectKind::Solid;
  int number = 1;  ///< from 1
};

/// What a command line asks for, checked as far as that goes without a model.
struct Request {
  std::vector<std::string> models;
  std::optional<std::string> settingsFile;
  std::vector<std::pair<std::string, std::string>>
      settings;  ///< keys of section Option, with values of their kind
  std::string step = "Small";
  std::optional<std::string> shape;      ///< "r" or "c"
  std::optional<std::string> tieStress;  ///< a number other than 0 [N/mm2]
  bool overwrite = false;
  int jobs = 1;
  bool state = false;
  bool sectionParameters = false;
  std::optional<RowName> stressStrain;
  bool fullNumbers = false;
  bool quiet = false;
};

struct CommandLine {
  std::optional<Request> request;  ///< empty: print `text` and leave with `exitStatus`
  std::string text;
  int exitStatus = 0;  ///< 0 after help and version, 2 for a wrong command line
};

CommandLine parseCommandLine(int argc, const char* const* argv);

}  // namespace torvik::batch
