// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace torvik::base {

/// The application's title: caption of message boxes, part of window captions and of file names.
inline constexpr const char* kTitle = "torvik";

/// "torvik Ver.1.2 Rev.3"
inline std::string VersionTitle() {
  return std::string(kTitle) + " Ver." + std::to_string(TORVIK_VERSION_MAJOR) + "." +
         std::to_string(TORVIK_VERSION_MINOR) + " Rev." + std::to_string(TORVIK_VERSION_REVISION);
}

}  // namespace torvik::base
