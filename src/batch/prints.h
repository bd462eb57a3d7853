// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/profile.h"
#include "batch/command_line.h"

namespace torvik::batch {

/// The five rows of section parameters as tab-separated text, with their headings.
/// @param warnings  gets what a message box would say
/// @throws InputError, NumericFault
std::string sectionParametersText(const std::string& path, bool fullNumbers, std::string& warnings);

/// Strain and stress of one row over the option range of its kind, as tab-separated text with headings.
/// @throws InputError, NumericFault, InternalError
std::string stressStrainText(const std::string& path, const Request& request,
                             const base::ProfileFile& settings);

}  // namespace torvik::batch
