// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/prints.h"

#include <fmt/format.h>

#include <atomic>

#include "analysis/section_parameters.h"
#include "analysis/stress_strain_curve.h"
#include "base/files.h"
#include "base/number_text.h"
#include "batch/batch_host.h"
#include "batch/model_run.h"

namespace torvik::batch {

namespace {

std::string numberText(double value, bool fullNumbers) {
  return fullNumbers ? base::plainText(value) : base::scientificText(value);
}

}  // namespace

std::string sectionParametersText(const std::string& path, bool fullNumbers, std::string& warnings) {
  model::JobTables job = model::BuildJobTables(readModel(path));
  if (!job.hasBeam() || !job.hasSection()) throw base::InputError(std::string(model::kInsufficientObjects));
  const std::atomic<bool> never = false;
  BatchHost host(never, "Small", {}, {});
  host.tell = [&](const std::string& message) { warnings += message; };
  const analysis::SectionParameterTable table = analysis::SectionParameters(job.tables, host);

  std::string text = fmt::format("{}\n", fmt::join(analysis::sectionParameterHeadings(), "\t"));
  for (int row = 0; row < 5; ++row) {
    text += analysis::sectionParameterLetter(row);
    for (const double value : table.rows[static_cast<std::size_t>(row)].values())
      text += "\t" + numberText(value, fullNumbers);
    text += fmt::format("\t{}\n", analysis::sectionParameterNote(row));
  }
  return text;
}

std::string stressStrainText(const std::string& path, const Request& request,
                             const base::ProfileFile& settings) {
  const RowName name = *request.stressStrain;
  const model::ObjectTables tables = readModel(path);
  if (static_cast<std::size_t>(name.number) > tables.rowCount(name.kind))
    throw base::InputError(fmt::format("{} {} is asked for, the model has {}",
                                       model::sectionNameOf(name.kind), name.number,
                                       tables.rowCount(name.kind)));

  const std::atomic<bool> never = false;
  BatchHost host(never, request.step, request.shape, request.tieStress);
  materials::StressStrainContext context;
  context.prompt = &host;
  context.report = [](const std::string& caption, const std::string& message) {
    throw base::InputError(caption + ": " + message);
  };
  const auto points = analysis::withLawRow(
      tables, name.kind, static_cast<std::size_t>(name.number) - 1, [&](const auto& row) {
        if (const std::string missing = analysis::missingForCurve(row.Type, row.File); !missing.empty())
          throw base::InputError(missing);
        return analysis::stressStrainCurve(row, analysis::curveRange(name.kind, settings), context);
      });
  std::string text = "Strain\tStress\n";
  for (const analysis::CurvePoint& point : points)
    text += numberText(point.strain, request.fullNumbers) + "\t" +
            numberText(point.stress, request.fullNumbers) + "\n";
  return text;
}

}  // namespace torvik::batch
