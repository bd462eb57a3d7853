// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/errors.h"
#include "run/run.h"
#include "section/fault.h"
#include "section/search.h"

/// The words for all that a job tells: one table for windows, batches and logs.
namespace torvik::job {

/// What a user is told while a job goes on.
enum class Notice {
  WithoutModulus,  ///< the average modulus of the solids is 0
};
const char* textOf(Notice notice);

inline constexpr const char* kLoadingEnd = "Loading end.";
inline constexpr const char* kCollapsed = "Loading causes compression force = tension force = 0.";

/// Panel Status of a search: "Tendon (MN)".
const char* statusOf(run::Stage stage, section::Search search);
/// "Tendon convergence (MN) failed."
const char* failureOf(run::Stage stage, section::Search search);

/// Where a fault happened: "Prestress introduction", "Loading, step 7".
/// @param step  of the loading stage, from 0; -1 before the first one
std::string placeOf(std::optional<run::Stage> stage, int step);
/// "Solid 3 of the job: stress: overflow"
std::string wordsOf(const section::Fault& fault);

}  // namespace torvik::job
