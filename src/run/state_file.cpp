// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/state_file.h"

#include <fmt/format.h>

#include <cmath>

#include "base/number_text.h"

namespace torvik::run {

namespace {

template <class Rows>
void addTable(std::string& text, model::ObjectKind kind, const Rows& objects, const std::vector<double>& base,
              const section::RowValues& values) {
  for (std::size_t i = 0; i < objects.size(); ++i) {
    text += fmt::format("{}\t{}", model::sectionNameOf(kind), i + 1);
    for (const double value :
         {base[i], values.strain[i], values.stress[i], values.force[i], objects[i].Area, objects[i].Depth}) {
      text += '\t';
      if (std::isfinite(value)) base::appendPlainText(text, value);
    }
    text += '\n';
  }
}

}  // namespace

std::string stateFileName(const std::string& inputFile) {
  return inputFile + ".state.txt";
}

std::string stateText(const Run& run) {
  std::string text = "Kind\tNo";
  const auto columns = objectColumns(model::ObjectKind::Solid);
  for (std::size_t i = 0; i < kUltimateStrain; ++i) text += '\t' + columns[i].heading;
  text += '\n';
  const model::ObjectTables& job = run.job();
  const section::BaseStrains& base = run.leftoverBase();
  const section::State& rows = run.leftover();
  addTable(text, model::ObjectKind::Solid, job.Solids, base.solids, rows.solids);
  addTable(text, model::ObjectKind::Bar, job.Bars, base.bars, rows.bars);
  addTable(text, model::ObjectKind::Tendon, job.Tendons, base.tendons, rows.tendons);
  return text;
}

}  // namespace torvik::run
