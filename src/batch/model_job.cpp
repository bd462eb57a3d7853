// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/model_job.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <filesystem>

#include "base/files.h"
#include "base/number_text.h"
#include "batch/batch_host.h"
#include "job/job.h"
#include "run/log_file.h"
#include "run/result_file.h"
#include "run/state_file.h"

namespace torvik::batch {

namespace {

class SilentFrame : public model::InputFileFrame {
 public:
  void cannotOpen(const std::string& path) override { throw base::InputError("Can't open " + path); }
  void takePath(const std::string&) override {}
  void showWaitCursor(bool) override {}
};

/// Peak moment and watch crossings of a job.
void summarize(const run::Run& run, ModelResult& result) {
  for (int step = 0; step < run.steps(); ++step) {
    const double moment = run.cell(step, run::kMoment);
    result.peakMoment = std::max(moment, result.peakMoment.value_or(moment));
  }
  for (const run::Crossing& crossing : run.crossings())
    result.crossings.push_back(fmt::format("{} crosses {} at step {}", run.columns()[crossing.column].heading,
                                           base::plainText(crossing.WatchStrain), crossing.step + 1));
}

std::string alreadyExists(const std::string& path) {
  return "\"" + path + "\" already exists. --overwrite replaces it.";
}

/// A link may lead from a result or log file back to the model, which must not be written over.
void refuseModelItself(const std::string& path, const std::string& target) {
  std::error_code error;
  if (std::filesystem::equivalent(path, target, error))
    throw base::InputError("\"" + target + "\" is the model itself.");
}

void runJobOf(const std::string& path, const Request& request, const base::ProfileFile& settings,
              BatchHost& host, ProgressLine& progress, ModelResult& result) {
  using run::ResultFile;
  model::JobTables job = model::BuildJobTables(readModel(path));
  if (!job.hasBeam() || !job.hasSection()) throw base::InputError(std::string(model::kInsufficientObjects));
  const job::JobOptions options = job::JobOptions::read(settings);

  const std::string resultPath = run::resultFileName(path);
  const std::string statePath = run::stateFileName(path);
  refuseModelItself(path, resultPath);
  refuseModelItself(path, statePath);
  if (!request.overwrite) {
    if (base::isFile(resultPath)) throw base::InputError(alreadyExists(resultPath));
    if (request.state && base::isFile(statePath)) throw base::InputError(alreadyExists(statePath));
  }
  ResultFile resultFile(resultPath, run::resultHeadings(job.tables),
                        request.overwrite ? ResultFile::Existing::Replace : ResultFile::Existing::Refuse);

  materials::StressStrainContext context;
  context.prompt = &host;
  context.report = [&](const std::string& caption, const std::string& text) {
    host.tell(caption + ": " + text);
    host.warn(caption + ": " + text);
  };
  run::Run run(std::move(job.tables), job::originOf(path, false, settings));
  run::RowReader* const readers[] = {&resultFile};
  run::RunWriter writer(run, readers);
  host.progress = [&progress, &run, name = path, start = std::chrono::steady_clock::now()] {
    progress.show(name, run, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  };
  const run::End& end = job::runJob(options, host, writer, context);
  if (!end.message.empty()) host.tell(end.message);
  if (end.kind == run::End::Kind::EndedByUser) host.tell("Ended by the user.");
  try {
    resultFile.close();
  } catch (const base::InputError& error) {
    host.tell(error.what());
  }
  result.rows = resultFile.rowsWritten();
  summarize(run, result);
  try {
    if (request.state) base::replaceWholeFile(statePath, run::stateText(run));
  } catch (const base::InputError& error) {
    host.warn(error.what());
  }
}

}  // namespace

model::ObjectTables readModel(const std::string& path) {
  model::Document document;
  SilentFrame frame;
  model::ReadInputFile(document, frame, path);
  return std::move(document.tables);
}

std::string ModelResult::line() const {
  std::string text =
      fmt::format("{}\t{}\t{}\t{}\t{:.3f}", base::printable(model), rows,
                  peakMoment ? base::plainText(*peakMoment) : std::string("-"), message, seconds);
  if (!crossings.empty()) text += fmt::format("\t{}", fmt::join(crossings, "; "));
  return text;
}

ModelResult runModel(const std::string& path, const Request& request, const base::ProfileFile& settings,
                     const std::atomic<bool>& endRequested, ProgressLine& progress,
                     std::vector<std::string>& warnings) {
  const auto start = std::chrono::steady_clock::now();
  ModelResult result;
  result.model = path;
  BatchHost host(endRequested, request.step, request.shape, request.tieStress);
  host.warn = [&](const std::string& text) { warnings.push_back(base::printable(path + ": " + text)); };
  host.tell = [&](const std::string& message) {
    result.message = message;
    const std::string log = run::logFileName(path);
    try {
      std::error_code error;
      if (!std::filesystem::is_regular_file(path, error)) return;
      refuseModelItself(path, log);
      run::appendLogLine(log, message);
    } catch (const base::InputError& error) {
      host.warn(error.what());
    }
  };
  try {
    runJobOf(path, request, settings, host, progress, result);
  } catch (const std::exception& error) {
    host.tell(error.what());
  }
  for (char& c : result.message)
    if (c == '\t' || c == '\r' || c == '\n') c = ' ';
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}

}  // namespace torvik::batch
