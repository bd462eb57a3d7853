// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/model_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <filesystem>
#include <memory>

#include "analysis/job.h"
#include "analysis/log_file.h"
#include "analysis/result_file.h"
#include "base/files.h"
#include "base/number_text.h"
#include "batch/batch_host.h"

namespace torvik::batch {

namespace {

class SilentFrame : public model::InputFileFrame {
 public:
  void cannotOpen(const std::string& path) override { throw base::InputError("Can't open " + path); }
  void takePath(const std::string&) override {}
  void showWaitCursor(bool) override {}
};

/// Peak moment and watch crossings of a job.
class SummarySink : public analysis::Sink {
 public:
  explicit SummarySink(ModelResult& result) : m_result(result) {}
  void resultRow(std::span<const double> values) override {
    const double moment = values[2];
    m_result.peakMoment = std::max(moment, m_result.peakMoment.value_or(moment));
  }
  void watchCrossed(const analysis::WatchCrossing& crossing) override {
    m_result.crossings.push_back(fmt::format("{} crosses {} at step {}", crossing.heading,
                                             base::plainText(crossing.WatchStrain), crossing.Step + 1));
  }

 private:
  ModelResult& m_result;
};

/// The per-object tables at the end of the job, written beside the model.
class StateFile : public analysis::Sink {
 public:
  explicit StateFile(std::string path) : m_path(std::move(path)) {}

  void jobOver(const analysis::SectionState& state) override {
    m_text = "Kind\tNo\tStrain w/o Load\tStrain\tStress\tForce\tArea\tDepth\n";
    add("Solid", state.solids());
    add("Bar", state.bars());
    add("Tendon", state.tendons());
  }
  void write() const { base::replaceWholeFile(m_path, m_text); }
  [[nodiscard]] const std::string& path() const { return m_path; }

 private:
  void add(const char* kind, const analysis::SectionState::Rows& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      m_text += fmt::format("{}\t{}", kind, i + 1);
      for (const double value : {rows.BaseStrain[i], rows.CurrentStrain[i], rows.CurrentStress[i],
                                 rows.CurrentForce[i], rows.Area[i], rows.Depth[i]}) {
        m_text += '\t';
        if (std::isfinite(value)) base::appendPlainText(m_text, value);  // an overflow leaves its cell empty
      }
      m_text += '\n';
    }
  }

  std::string m_path;
  std::string m_text;
};

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
  using analysis::ResultFile;
  model::JobTables job = model::BuildJobTables(readModel(path));
  if (!job.hasBeam() || !job.hasSection()) throw base::InputError(std::string(model::kInsufficientObjects));
  const analysis::JobOptions options = analysis::JobOptions::read(settings);

  StateFile stateFile(path + ".state.txt");
  const std::string resultPath = analysis::resultFileName(path);
  refuseModelItself(path, resultPath);
  refuseModelItself(path, stateFile.path());
  if (!request.overwrite) {
    if (base::isFile(resultPath)) throw base::InputError(alreadyExists(resultPath));
    if (request.state && base::isFile(stateFile.path()))
      throw base::InputError(alreadyExists(stateFile.path()));
  }
  ResultFile resultFile(resultPath, analysis::resultHeadings(job.tables),
                        request.overwrite ? ResultFile::Existing::Replace : ResultFile::Existing::Refuse);
  SummarySink summary(result);
  ProgressSink progressSink(progress, path);
  std::vector<analysis::Sink*> sinks = {&resultFile, &summary, &progressSink};
  if (request.state) sinks.push_back(&stateFile);

  materials::StressStrainContext context;
  context.prompt = &host;
  context.report = [&](const std::string& caption, const std::string& text) {
    host.tell(caption + ": " + text);
    host.warn(caption + ": " + text);
  };
  const analysis::JobOutcome outcome =
      analysis::runJob(job.tables, options, host.control, host, sinks, context);
  if (outcome.end == analysis::JobOutcome::End::EndedByUser) host.tell("Ended by the user.");
  try {
    resultFile.close();
  } catch (const base::InputError& error) {
    host.tell(error.what());
  }
  result.rows = resultFile.rowsWritten();
  try {
    if (request.state) stateFile.write();
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
    const std::string log = analysis::logFileName(path);
    try {
      std::error_code error;
      if (!std::filesystem::is_regular_file(path, error)) return;
      refuseModelItself(path, log);
      analysis::appendLogLine(log, message);
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
