// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace torvik::base {

/// SHA-256 of a file's bytes as 64 hexadecimal digits, as `sha256sum` gives it; empty where the file can not
/// be read.
std::string checksumOfFile(const std::string& path);

}  // namespace torvik::base
