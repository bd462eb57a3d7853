// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/prints.h"

#include <fmt/format.h>

#include <atomic>

#include "base/files.h"
#include "base/number_text.h"
#include "batch/batch_host.h"
#include "batch/model_job.h"
#include "materials/stress_strain_curve.h"
#include "run/columns.h"
#include "section/section_parameters.h"

namespace torvik::batch {

namespace {

std::string numberText(double value, bool fullNumbers) {
  return fullNumbers ? base::plainText(value) : base::scientificText(value);
}

}  // namespace

std::string sectionParametersText(const std::string& path, bool fullNumbers, std::string& warnings) {
  const model::JobTables job = model::BuildJobTables(readModel(path));
  if (!job.hasBeam() || !job.hasSection()) throw base::InputError(std::string(model::kInsufficientObjects));
  const section::SectionParameterResult parameters = section::SectionParameters(job.tables);
  if (parameters.isWithoutModulus) warnings += job::textOf(job::Notice::WithoutModulus);
  if (parameters.fault) throw *parameters.fault;

  std::string text(run::kSectionHeading);
  for (const run::Column& column : run::sectionParameterColumns()) text += "\t" + column.heading;
  text += fmt::format("\t{}\n", run::kNoteHeading);
  for (int row = 0; row < run::kSectionRows; ++row) {
    text += run::sectionParameterLetter(row);
    for (const double value : parameters.table.rows[static_cast<std::size_t>(row)].values())
      text += "\t" + numberText(value, fullNumbers);
    text += fmt::format("\t{}\n", run::sectionParameterNote(row));
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
  const auto points = materials::withLawRow(
      tables, name.kind, static_cast<std::size_t>(name.number) - 1, [&](const auto& row) {
        if (const std::string missing = materials::missingForCurve(row.Type, row.File); !missing.empty())
          throw base::InputError(missing);
        return materials::stressStrainCurve(row, materials::curveRange(name.kind, settings), context);
      });
  std::string text = "Strain\tStress\n";
  for (const materials::CurvePoint& point : points)
    text += numberText(point.strain, request.fullNumbers) + "\t" +
            numberText(point.stress, request.fullNumbers) + "\n";
  return text;
}

}  // namespace torvik::batch
