// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/log_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fstream>

#include "base/errors.h"

namespace torvik::run {

std::string logFileName(const std::string& inputFile) {
  return inputFile + ".log";
}

void appendLogLine(const std::string& logFile, std::string_view text) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::string line = fmt::format("{:04}/{:02}/{:02} {:02}:{:02}:{:02}", local.tm_year + 1900,
                                 local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
  for (const char c : text) line += c == '\r' || c == '\n' ? ' ' : c;
  line += "\r\n";

  errno = 0;
  std::ofstream file(logFile, std::ios::binary | std::ios::app);
  file.write(line.data(), static_cast<std::streamsize>(line.size()));
  file.close();
  if (!file) throw base::InputError(logFile + ": can not be written: " + std::strerror(errno));
}

}  // namespace torvik::run
