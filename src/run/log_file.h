// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace torvik::run {

/// `PATH.log` of an input file.
std::string logFileName(const std::string& inputFile);

/// Appends one line: local date and time "yyyy/mm/dd hh:mm:ss" with the text directly behind, CR LF. The file
/// is opened and closed at each call. Line ends within the text become blanks.
/// @throws InputError where the file can not be written
void appendLogLine(const std::string& logFile, std::string_view text);

}  // namespace torvik::run
