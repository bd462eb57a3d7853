// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/run.h"

#include "base/errors.h"
#include "base/fault.h"
#include "run/run_data.h"

namespace torvik::run {

namespace {

constexpr double Step::*kFixedColumns[] = {&Step::Load,      &Step::Displacement, &Step::Moment,
                                           &Step::Curvature, &Step::NeutralAxis,  &Step::CompressionForce};
static_assert(std::size(kFixedColumns) == kFirstStrain);
static_assert(sizeof(StepNumbers) + 2 * sizeof(double) + sizeof(std::int16_t) +
                  sizeof(materials::CurvePlaces) <=
              100);

section::Plane planeOf(const StepNumbers& step) {
  return {step.TopStrain, step.NeutralAxisOfRows};
}

}  // namespace

materials::LawMemory RunData::memoryOf(int step) const {
  materials::LawMemory memory = laws->memory;
  if (hasUserFiles) memory.places = places.at(static_cast<std::size_t>(step));
  return memory;
}

std::optional<section::State> RunData::look(const Present& at) const {
  const base::FlagKeeper keeper;
  base::fpflags::clear();
  materials::StressStrainContext copy = laws->lookOnly();
  copy.memory = at.trial.before;
  copy.memory.confinement = laws->memory.confinement;
  section::State rows = section->emptyState();
  try {
    section->evaluate(bases[at.base], conditionsOf(at.stage), at.trial.profile, copy, rows);
  } catch (const section::Fault&) {
    return {};
  }
  return rows;
}

BeamLines RunData::bend(int step) const {
  const auto linesOf = [](const section::BeamResponse& bent) {
    BeamLines lines;
    for (std::size_t i = 0; i < bent.pieceCount(); ++i) lines.place.push_back(bent.place(i));
    lines.Moment.assign(bent.pieceMoments().begin(), bent.pieceMoments().end());
    lines.Curvature.assign(bent.pieceCurvatures().begin(), bent.pieceCurvatures().end());
    lines.Deflection = bent.Deflection();
    return lines;
  };
  if (static_cast<std::size_t>(step) + 1 == relation.size()) return linesOf(beam);

  // From the last stored brackets on, the steps up to this one are bent again.
  section::BeamResponse again = beamAtRest;
  const int stored = step / kBracketInterval;
  if (stored > 0) again.setBrackets(brackets.at(static_cast<std::size_t>(stored) - 1));
  for (int k = stored * kBracketInterval; k <= step; ++k) again.update(relation, k, baseCurvature);
  return linesOf(again);
}

Run::Run(model::ObjectTables job, Origin origin)
    : m_data(std::make_unique<RunData>(std::move(job), std::move(origin))) {}

Run::~Run() = default;

std::uint64_t Run::version() const {
  return m_data->version;
}

const Origin& Run::origin() const {
  return m_data->origin;
}

const model::ObjectTables& Run::job() const {
  return m_data->job;
}

const std::vector<Column>& Run::columns() const {
  return m_data->columns;
}

const std::optional<section::Extent>& Run::extent() const {
  return m_data->extent;
}

const std::optional<section::SectionParameterTable>& Run::sectionParameters() const {
  return m_data->sectionParameters;
}

int Run::steps() const {
  return static_cast<int>(m_data->steps.size());
}

Step Run::step(int step) const {
  const auto index = static_cast<std::size_t>(step);
  Step found;
  static_cast<StepNumbers&>(found) = m_data->steps.at(index);
  found.Moment = m_data->relation.Moment(index);
  found.Curvature = m_data->relation.Curvature(index);
  found.iterations = m_data->iterations.at(index);
  return found;
}

double Run::cell(int step, std::size_t column) const {
  if (column < kFirstStrain) return this->step(step).*kFixedColumns[column];
  return m_data->section->strain(m_data->strainRows.at(column - kFirstStrain), m_data->bases.back(),
                                 planeOf(m_data->steps.at(static_cast<std::size_t>(step))));
}

const std::optional<RowAtWork>& Run::rowAtWork() const {
  return m_data->rowAtWork;
}

std::span<const Crossing> Run::crossings() const {
  return m_data->crossings;
}

std::optional<double> Run::peakMoment() const {
  return m_data->peakMoment;
}

std::span<const std::string> Run::messages() const {
  return m_data->messages;
}

const std::optional<End>& Run::end() const {
  return m_data->end;
}

int Run::commits() const {
  return m_data->bases.empty() ? 0 : static_cast<int>(m_data->bases.size()) - 1;
}

const section::BaseStrains& Run::strainsWithoutLoad(int commit) const {
  return m_data->bases.at(static_cast<std::size_t>(commit));
}

const section::State* Run::present() const {
  if (!m_data->present) return nullptr;
  RunData::Looked& looked = m_data->lookedPresent;
  if (looked.at != m_data->presentVersion) looked = {m_data->presentVersion, m_data->look(*m_data->present)};
  return looked.state ? &*looked.state : nullptr;
}

std::uint64_t Run::presentVersion() const {
  return m_data->presentVersion;
}

const section::State* Run::shown(int step) const {
  RunData::Looked& looked = m_data->lookedStep;
  const auto number = static_cast<std::uint64_t>(step) + 1;
  if (looked.at != number) {
    const StepNumbers& numbers = m_data->steps.at(static_cast<std::size_t>(step));
    const RunData::Present at{
        Stage::Loading, m_data->bases.size() - 1, {planeOf(numbers), m_data->memoryOf(step)}};
    looked = {number, m_data->look(at)};
  }
  return looked.state ? &*looked.state : nullptr;
}

const section::State& Run::leftover() const {
  return m_data->leftover;
}

const section::BaseStrains& Run::leftoverBase() const {
  static const section::BaseStrains kNone;
  return m_data->bases.empty() ? kNone : m_data->bases.back();
}

const BeamLines& Run::beam(int step) const {
  if (step < 0 || step >= steps())
    throw base::InternalError(base::kImpossibleCase, "beam of a step that is not there");
  auto& looked = m_data->lookedBeam;
  if (!looked || looked->first != step) looked = {step, m_data->bend(step)};
  return looked->second;
}

}  // namespace torvik::run
