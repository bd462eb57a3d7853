// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/batch.h"

#include <unistd.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

#include "base/files.h"
#include "base/profile.h"
#include "base/settings.h"
#include "batch/model_job.h"
#include "batch/prints.h"
#include "batch/progress.h"
#include "run/result_file.h"

namespace torvik::batch {

namespace {

base::ProfileFile settingsOf(const Request& request) {
  if (request.settingsFile && !base::isFile(*request.settingsFile))
    throw base::InputError(*request.settingsFile + ": no such settings file");
  base::ProfileFile settings = base::ProfileFile::read(
      request.settingsFile ? std::filesystem::path(*request.settingsFile) : base::settingsFilePath());
  for (const auto& [key, value] : request.settings) settings.ProfileWrite(base::kOptionSection, key, value);
  return settings;
}

bool printModels(const Request& request, const base::ProfileFile& settings, std::ostream& out,
                 std::ostream& err) {
  bool allGood = true;
  for (const std::string& path : request.models) {
    try {
      std::string text;
      std::string warnings;
      if (request.sectionParameters) text += sectionParametersText(path, request.fullNumbers, warnings);
      if (request.stressStrain) text += stressStrainText(path, request, settings);
      if (request.models.size() > 1) out << base::printable(path) << "\n";
      out << text;
      std::replace(warnings.begin(), warnings.end(), '\r', ' ');
      if (!warnings.empty()) err << "torvik-batch: " << base::printable(path + ": " + warnings) << "\n";
    } catch (const std::exception& error) {
      err << "torvik-batch: " << base::printable(path + ": " + error.what()) << "\n";
      allGood = false;
    }
  }
  return allGood;
}

/// For each model, whether an earlier one of the list would write the same result file.
std::vector<bool> namedBefore(const std::vector<std::string>& models) {
  std::map<std::filesystem::path, int> seen;
  std::vector<bool> repeated;
  for (const std::string& model : models) {
    std::error_code error;
    const std::filesystem::path resultFile = run::resultFileName(model);
    const std::filesystem::path folder =
        std::filesystem::weakly_canonical(std::filesystem::absolute(resultFile, error).parent_path(), error);
    repeated.push_back(seen[error ? resultFile : folder / resultFile.filename()]++ > 0);
  }
  return repeated;
}

bool runModels(const Request& request, const base::ProfileFile& settings, std::ostream& out,
               std::ostream& err) {
  const std::size_t count = request.models.size();
  const std::vector<bool> repeated = namedBefore(request.models);
  ProgressLine progress(!request.quiet && ::isatty(STDERR_FILENO) == 1);
  std::vector<ModelResult> results(count);
  std::vector<std::string> warnings;
  std::mutex mutex;
  std::atomic<std::size_t> next = 0;

  const auto work = [&] {
    for (std::size_t i = next++; i < count; i = next++) {
      ModelResult result;
      std::vector<std::string> ownWarnings;
      result.model = request.models[i];
      if (repeated[i])
        result.message = "Named twice: it was run once.";
      else if (endRequested())
        result.message = "Not started.";
      else
        result = runModel(request.models[i], request, settings, endRequested(), progress, ownWarnings);
      const std::lock_guard lock(mutex);
      results[i] = std::move(result);
      warnings.insert(warnings.end(), ownWarnings.begin(), ownWarnings.end());
    }
  };
  {
    std::vector<std::jthread> others;
    try {
      for (std::size_t i = 1; i < std::min(count, static_cast<std::size_t>(request.jobs)); ++i)
        others.emplace_back(work);
    } catch (const std::system_error&) {
      // The system gives no more threads: fewer models run side by side.
    }
    work();
  }

  progress.clear();
  for (const std::string& warning : warnings) err << "torvik-batch: " << warning << "\n";
  for (const ModelResult& result : results) out << result.line() << "\n";
  return std::all_of(results.begin(), results.end(),
                     [](const ModelResult& result) { return result.rows > 0; });
}

}  // namespace

std::atomic<bool>& endRequested() {
  static std::atomic<bool> requested = false;  // a signal handler reaches nothing but a global
  return requested;
}

int runBatch(const Request& request, std::ostream& out, std::ostream& err) {
  try {
    const base::ProfileFile settings = settingsOf(request);
    const bool prints = request.sectionParameters || request.stressStrain;
    const bool good =
        prints ? printModels(request, settings, out, err) : runModels(request, settings, out, err);
    if (!out.flush()) {
      err << "torvik-batch: standard output can not be written\n";
      return 1;
    }
    return good ? 0 : 1;
  } catch (const base::InputError& error) {
    err << "torvik-batch: " << error.what() << "\n";
    return request.settingsFile ? 2 : 1;
  }
}

}  // namespace torvik::batch
