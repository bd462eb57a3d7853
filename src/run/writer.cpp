// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/writer.h"

#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "run/run_data.h"

namespace torvik::run {

/// The run to write into: it grows.
RunData& RunWriter::data() {
  ++m_run.m_data->version;
  return *m_run.m_data;
}

void RunWriter::begin(materials::StressStrainContext& laws) {
  RunData& to = data();
  to.laws = &laws;
  to.section.emplace(to.job, laws);
  to.bases = {to.section->initialStrains()};
  const auto take = [&](model::ObjectKind kind, const auto& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].Output == 1) to.strainRows.push_back({kind, i});
      if (rows[i].Type == "File") to.hasUserFiles = true;
    }
  };
  take(model::ObjectKind::Solid, to.job.Solids);
  take(model::ObjectKind::Bar, to.job.Bars);
  take(model::ObjectKind::Tendon, to.job.Tendons);
}

const section::Section& RunWriter::section() const {
  return *m_run.m_data->section;
}

section::Conditions RunWriter::conditionsOf(Stage stage) const {
  return m_run.m_data->conditionsOf(stage);
}

void RunWriter::extent(const section::Extent& extent) {
  data().extent = extent;
}

void RunWriter::sectionParameters(const section::SectionParameterTable& table) {
  data().sectionParameters = table;
}

void RunWriter::message(std::string text) {
  data().messages.push_back(std::move(text));
}

const section::BaseStrains& RunWriter::base() const {
  return m_run.m_data->bases.back();
}

void RunWriter::present(Stage stage, const section::Trial& last) {
  RunData& to = data();
  to.present = RunData::Present{stage, to.bases.size() - 1, last};
  ++to.presentVersion;
}

void RunWriter::commit(const section::State& rows) {
  data().bases.push_back({rows.solids.strain, rows.bars.strain, rows.tendons.strain});
}

void RunWriter::beginLoading(double baseCurvature) {
  RunData& to = data();
  to.baseCurvature = baseCurvature;
  to.peakMoment = to.shownPeak = 0;
}

void RunWriter::bendBeam(double Moment, double Curvature) {
  RunData& to = data();
  to.relation.append(Moment, Curvature);
  const int step = static_cast<int>(to.relation.size()) - 1;
  if (step > 0 && step % RunData::kBracketInterval == 0) to.brackets.push_back(to.beam.brackets());
  to.beam.update(to.relation, step, to.baseCurvature);
}

const section::BeamResponse& RunWriter::beam() const {
  return m_run.m_data->beam;
}

void RunWriter::peak(double Moment) {
  const RunData& from = *m_run.m_data;
  if (!from.shownPeak) throw base::NumericFault(base::NumericFault::Kind::TypeMismatch, "panel Mu");
  if (!(*from.shownPeak < Moment)) return;
  RunData& to = data();
  to.peakMoment = Moment;
  to.shownPeak = base::toNumber(base::scientificText(Moment));
}

void RunWriter::beginRow(int step) {
  RunData& to = data();
  to.rowAtWork = RowAtWork{step, {}, false};
  to.rowAtWork->cells.reserve(to.columns.size());
}

void RunWriter::cell(double value) {
  data().rowAtWork->cells.push_back(value);
}

void RunWriter::crossed(const Crossing& crossing) {
  data().crossings.push_back(crossing);
}

void RunWriter::endRow() {
  data().rowAtWork->isWhole = true;
  for (RowReader* reader : m_readers) reader->row(m_run);
}

void RunWriter::step(const Step& step, const section::Trial& last) {
  RunData& to = data();
  to.steps.push_back(step);
  to.iterations.push_back(step.iterations);
  if (to.hasUserFiles) to.places.push_back(last.before.places);
  to.rowAtWork.reset();
  present(Stage::Loading, last);
}

void RunWriter::end(End end, section::State leftover) {
  RunData& to = data();
  to.end = std::move(end);
  to.leftover = std::move(leftover);
  if (to.laws) {
    to.origin.answers = to.laws->memory.confinement;
    to.ownLaws = to.laws->lookOnly();
    to.laws = &*to.ownLaws;
  }
}

}  // namespace torvik::run
