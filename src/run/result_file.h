// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "run/writer.h"

namespace torvik::run {

/// `PATH.txt` of an input file.
std::string resultFileName(const std::string& inputFile);

/// The result file: a line of headings, then a line for each step; every value is followed by a tab, lines
/// end in CR LF. The file on the disk holds whole lines only, whatever ends the job.
class ResultFile : public RowReader {
 public:
  enum class Existing { Refuse, Replace };

  /// Opens the file, which loses its old contents, and writes the headings.
  /// @throws InputError where it can not be opened or written, or exists and `existing` says to refuse it
  ResultFile(std::string path, const std::vector<std::string>& headings, Existing existing);
  ~ResultFile() override;
  ResultFile(const ResultFile&) = delete;
  ResultFile& operator=(const ResultFile&) = delete;

  void row(const Run& run) override;

  /// Writes what is pending, so that a reader sees every row so far. @throws InputError where the device
  /// fails
  void flush();
  /// Writes what is pending and closes. @throws InputError where the device fails; the file is closed all the
  /// same
  void close();

  /// Rows that are whole on the disk; the headings are none.
  [[nodiscard]] int rowsWritten() const { return m_lines > 0 ? m_lines - 1 : 0; }

 private:
  void countPending();

  std::string m_path;
  std::string m_failure;  ///< of the device; no row follows one that is lost
  int m_descriptor = -1;
  std::string m_pending;    ///< whole lines
  long long m_written = 0;  ///< bytes
  int m_lines = 0;
  std::chrono::steady_clock::time_point m_lastFlush;
};

}  // namespace torvik::run
