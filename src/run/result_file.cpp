// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/result_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <utility>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::run {

namespace {
constexpr std::size_t kFlushSize = 64 * 1024;
constexpr std::chrono::milliseconds kFlushInterval{200};  // a reader of the growing file sees it move
}  // namespace

std::string resultFileName(const std::string& inputFile) {
  return inputFile + ".txt";
}

ResultFile::ResultFile(std::string path, const std::vector<std::string>& headings, Existing existing)
    : m_path(std::move(path)), m_lastFlush(std::chrono::steady_clock::now()) {
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (existing == Existing::Refuse ? O_EXCL : O_TRUNC);
  m_descriptor = ::open(m_path.c_str(), flags, 0666);
  if (m_descriptor < 0) {
    if (errno == EEXIST) throw base::InputError("\"" + m_path + "\" already exists.");
    throw base::InputError(m_path + ": can not be written: " + std::strerror(errno));
  }
  for (const std::string& heading : headings) m_pending += heading + "\t";
  m_pending += "\r\n";
  try {
    flush();
  } catch (...) {
    ::close(m_descriptor);
    throw;
  }
}

ResultFile::~ResultFile() {
  try {
    close();
  } catch (const base::InputError&) {
    // Whoever wants to know of a failing device closes the file.
  }
}

void ResultFile::row(const Run& run) {
  if (!m_failure.empty()) throw base::InputError(m_failure);
  for (const double value : run.rowAtWork()->cells) {
    base::appendPlainText(m_pending, value);
    m_pending += '\t';
  }
  m_pending += "\r\n";
  if (m_pending.size() >= kFlushSize || std::chrono::steady_clock::now() - m_lastFlush >= kFlushInterval)
    flush();
}

void ResultFile::countPending() {
  m_written += static_cast<long long>(m_pending.size());
  m_lines += static_cast<int>(std::count(m_pending.begin(), m_pending.end(), '\n'));
  m_pending.clear();
}

void ResultFile::flush() {
  std::size_t done = 0;
  while (done < m_pending.size()) {
    const ssize_t count = ::write(m_descriptor, m_pending.data() + done, m_pending.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      const int error = count < 0 ? errno : ENOSPC;
      // What was written last may end within a line: go back to the end of the last whole one.
      const std::size_t lineEnd = m_pending.rfind('\n', done == 0 ? 0 : done - 1);
      m_pending.resize(done == 0 || lineEnd == std::string::npos ? 0 : lineEnd + 1);
      countPending();
      if (::ftruncate(m_descriptor, m_written) != 0) {
        // Not a file that can be cut, for example a device; the failure itself is told below.
      }
      m_failure = m_path + ": can not be written: " + std::strerror(error);
      throw base::InputError(m_failure);
    }
    done += static_cast<std::size_t>(count);
  }
  countPending();
  m_lastFlush = std::chrono::steady_clock::now();
}

void ResultFile::close() {
  if (m_descriptor < 0) return;
  std::exception_ptr failure;
  try {
    flush();
  } catch (const base::InputError&) {
    failure = std::current_exception();
  }
  ::close(std::exchange(m_descriptor, -1));
  if (failure) std::rethrow_exception(failure);
}

}  // namespace torvik::run
