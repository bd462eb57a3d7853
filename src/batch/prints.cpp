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
  const auto curveOf = [&](const auto& rows) {
    const auto& row = rows[static_cast<std::size_t>(name.number) - 1];
    if (row.Type.empty()) throw base::InputError("No object type in the corrent row.");
    if (row.Type == "File") {
      if (row.File.empty()) throw base::InputError("No file name.");
      if (!base::isFile(row.File)) throw base::InputError("File not found.");
    }
    return analysis::stressStrainCurve(row, settings, context);
  };
  std::vector<analysis::CurvePoint> points;
  switch (name.kind) {
    case model::ObjectKind::Solid:
      points = curveOf(tables.Solids);
      break;
    case model::ObjectKind::Bar:
      points = curveOf(tables.Bars);
      break;
    case model::ObjectKind::Tendon:
      points = curveOf(tables.Tendons);
      break;
    case model::ObjectKind::Beam:
    case model::ObjectKind::AxialForce:
      throw base::InternalError(base::kImpossibleCase, "row without a law");
  }
  std::string text = "Strain\tStress\n";
  for (const analysis::CurvePoint& point : points)
    text += numberText(point.strain, request.fullNumbers) + "\t" +
            numberText(point.stress, request.fullNumbers) + "\n";
  return text;
}

}  // namespace torvik::batch
