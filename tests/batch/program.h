// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "analysis/models.h"
#include "base/files.h"
#include "base/temporary_folder.h"
#include "model/input_file.h"

namespace torvik::batch {

using Texts = std::vector<std::string>;

inline Texts split(std::string_view text, std::string_view separator) {
  Texts parts;
  for (std::size_t end; (end = text.find(separator)) != text.npos; text.remove_prefix(end + separator.size()))
    parts.emplace_back(text.substr(0, end));
  if (!text.empty()) parts.emplace_back(text);
  return parts;
}

struct Ended {
  int status = -1;  ///< exit status; 1000 and the signal where one ended the program
  std::string out;
  std::string err;
  double seconds = 0;  ///< from `meanwhile` to the end

  [[nodiscard]] Texts lines() const { return split(out, "\n"); }
  /// Field `number` of the summary line of that model.
  [[nodiscard]] std::string field(const std::string& model, std::size_t number) const {
    for (const std::string& line : lines())
      if (const Texts fields = split(line, "\t"); fields[0] == model && number < fields.size())
        return fields[number];
    return "no field " + std::to_string(number) + " of " + model + " in: " + out + err;
  }
  [[nodiscard]] std::string rows(const std::string& model) const { return field(model, 1); }
  [[nodiscard]] std::string message(const std::string& model) const { return field(model, 3); }
};

/// A folder in which the program runs, without a terminal, settings or home of the user's.
class ProgramTest : public testing::Test {
 public:
  struct How {
    bool terminal = false;             ///< stderr is one
    rlim_t fileLimit = RLIM_INFINITY;  ///< [bytes] of a file that the program writes
    std::string out;                   ///< a file that takes stdout
    std::function<void(pid_t)> meanwhile = [](pid_t) {};
  };

  [[nodiscard]] std::filesystem::path path(const std::string& name) const { return m_folder / name; }
  [[nodiscard]] std::string read(const std::string& name) const { return base::readWholeFile(path(name)); }
  [[nodiscard]] bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }
  void write(const std::string& name, std::string_view content) const {
    base::replaceWholeFile(path(name), content, base::CreateParents::Yes);
  }

  /// Writes the model with some keys changed, each "Section Key=Value".
  void writeModel(const std::string& name, const model::ObjectTables& tables,
                  const Texts& changes = {}) const {
    base::ProfileFile file;
    model::writeTables(file, tables);
    for (const std::string& change : changes) {
      const std::size_t blank = change.find(' ');
      const std::size_t equals = change.find('=');
      file.ProfileWrite(change.substr(0, blank), change.substr(blank + 1, equals - blank - 1),
                        change.substr(equals + 1));
    }
    write(name, file.text());
  }

  [[nodiscard]] Ended run(const Texts& arguments) const { return run(arguments, How()); }
  [[nodiscard]] Ended run(const Texts& arguments, const How& how) const {
    const tests::TemporaryFolder outside;
    const std::string out = how.out.empty() ? (outside / "out").string() : how.out;
    const std::string err = (outside / "err").string();
    int terminal = -1;
    int behind = -1;
    if (how.terminal && ::openpty(&terminal, &behind, nullptr, nullptr, nullptr) != 0) return {};

    const pid_t child = ::fork();
    if (child == 0) {
      const rlimit limit{how.fileLimit, how.fileLimit};
      const auto open = [](const std::string& file, int flags) { return ::open(file.c_str(), flags, 0600); };
      Texts words = {TORVIK_BATCH};
      words.insert(words.end(), arguments.begin(), arguments.end());
      std::vector<char*> argv;
      for (std::string& word : words) argv.push_back(word.data());
      argv.push_back(nullptr);
      ::dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
      ::dup2(open(out, O_WRONLY | O_CREAT), STDOUT_FILENO);
      ::dup2(how.terminal ? behind : open(err, O_WRONLY | O_CREAT), STDERR_FILENO);
      ::setenv("HOME", path("home").c_str(), 1);
      ::setenv("XDG_CONFIG_HOME", path("home").c_str(), 1);
      ::alarm(120);  // a hang ends as signal 14
      if (::chdir(m_folder.path().c_str()) == 0 && ::setrlimit(RLIMIT_FSIZE, &limit) == 0)
        ::execv(TORVIK_BATCH, argv.data());
      ::_exit(127);
    }
    how.meanwhile(child);
    const auto start = std::chrono::steady_clock::now();
    int status = 0;
    ::waitpid(child, &status, 0);
    Ended ended;
    ended.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    if (how.out.empty()) ended.out = base::readWholeFile(out);
    if (how.terminal) {
      ::close(behind);
      char shown[4096];
      for (ssize_t count; (count = ::read(terminal, shown, sizeof shown)) > 0;)
        ended.err.append(shown, static_cast<std::size_t>(count));
      ::close(terminal);
    } else {
      ended.err = base::readWholeFile(err);
    }
    return ended;
  }

  /// A result file of whole lines of one width: its rows. -1 where a line is not whole.
  [[nodiscard]] int wholeRows(const std::string& name) const {
    const std::string content = read(name);
    if (!content.ends_with("\t\r\n")) return -1;
    const Texts lines = split(content, "\r\n");
    const auto tabs = [](const std::string& line) { return std::count(line.begin(), line.end(), '\t'); };
    for (const std::string& line : lines)
      if (!line.ends_with('\t') || tabs(line) != tabs(lines[0])) return -1;
    return static_cast<int>(lines.size()) - 1;
  }

 private:
  tests::TemporaryFolder m_folder;
};

/// 300 x 500 in ten layers, three bars, ten pieces of the half span.
inline model::ObjectTables smallModel() {
  model::ObjectTables tables = analysis::rectangle(10);
  tables.Beams[0] = analysis::beamOf(4000, 0, 10);
  return tables;
}

/// Ends a job after 50 rows.
inline const Texts kShort = {"--set", "CurvatureLargeRangeTo=4.95E-06"};

inline Texts operator+(Texts a, const Texts& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

}  // namespace torvik::batch
