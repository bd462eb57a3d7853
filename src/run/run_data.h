// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "materials/stress_strain.h"
#include "run/run.h"
#include "section/beam_response.h"
#include "section/search.h"
#include "section/section.h"

namespace torvik::run {

/// What a `Run` holds.
class RunData {
 public:
  /// Where the rows to show stand: what was added on which base strains.
  struct Present {
    Stage stage = Stage::Loading;
    std::size_t base = 0;
    section::Trial trial;
  };
  /// Rows that were worked out for a look, and of what.
  struct Looked {
    std::uint64_t at = 0;  ///< the version of `present`, or the step from 1; 0: none yet
    std::optional<section::State> state;
  };
  static constexpr int kBracketInterval = 64;  ///< steps

  RunData(model::ObjectTables rows, Origin from)
      : job(std::move(rows)),
        origin(std::move(from)),
        columns(resultColumns(job)),
        beam(job.Beams.empty() ? model::BeamObject{} : job.Beams.front()) {}

  [[nodiscard]] section::Conditions conditionsOf(Stage stage) const {
    if (stage == Stage::Tendon) return {{}, section::TendonsFollow::Prestressing};
    return {section->axialForces(), section::TendonsFollow::Section};
  }
  [[nodiscard]] materials::LawMemory memoryOf(int step) const;
  /// None where a law can not be asked again.
  [[nodiscard]] std::optional<section::State> look(const Present& at) const;
  [[nodiscard]] BeamLines bend(int step) const;

  std::uint64_t version = 1;
  model::ObjectTables job;
  Origin origin;
  std::vector<Column> columns;
  std::vector<section::RowOf> strainRows;  ///< of the columns behind the first six

  std::optional<section::Section> section;               ///< none before `RunWriter` begins
  const materials::StressStrainContext* laws = nullptr;  ///< the job's own, then `ownLaws`
  std::optional<materials::StressStrainContext> ownLaws;
  std::deque<section::BaseStrains> bases;  ///< the initial strains, then as committed

  std::optional<section::Extent> extent;
  std::optional<section::SectionParameterTable> sectionParameters;
  std::optional<Present> present;
  std::uint64_t presentVersion = 0;

  // A step takes 100 bytes at most, its point of the relation included, whatever has `Output`: the strains
  // follow from its plane.
  std::vector<StepNumbers> steps;
  std::vector<std::int16_t> iterations;
  std::vector<materials::CurvePlaces> places;  ///< before the last trial; only where a row has a user file
  bool hasUserFiles = false;
  section::MomentCurvature relation;
  section::BeamResponse beam;  ///< at the last step
  section::BeamResponse beamAtRest{beam};
  double baseCurvature = 0;
  std::vector<std::vector<std::int32_t>> brackets;  ///< behind every 64th step

  std::optional<RowAtWork> rowAtWork;
  std::vector<Crossing> crossings;
  std::optional<double> peakMoment;
  std::optional<double> shownPeak;  ///< rounded as it is shown; none where no number holds it
  std::vector<std::string> messages;
  std::optional<End> end;
  section::State leftover;

  mutable Looked lookedPresent;
  mutable Looked lookedStep;
  mutable std::optional<std::pair<int, BeamLines>> lookedBeam;  ///< with its step
};

}  // namespace torvik::run
