// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "materials/confinement.h"
#include "model/objects.h"
#include "run/columns.h"
#include "section/values.h"

/// What a job produced, as data.
namespace torvik::run {

enum class Stage : std::uint8_t { Tendon, AxialForce, Loading };

/// Where a run came from.
struct Origin {
  std::string model;     ///< absolute path of the input file; empty: none
  std::string checksum;  ///< SHA-256 of that file as the job began; empty: no file, or the objects differ
  std::string program;   ///< with its version
  std::chrono::system_clock::time_point begun;
  std::vector<std::pair<std::string, std::string>> options;  ///< keys and values that decide on the results
  materials::ConfinementAnswers answers;                     ///< as they are known at the end
};

/// What a run keeps of a converged step of the loading stage, besides its point of the moment-curvature
/// relation. Units N, mm.
struct StepNumbers {
  double Load = 0;
  double Displacement = 0;      ///< of midspan
  double NeutralAxis = 0;       ///< as the search left it
  double CompressionForce = 0;  ///< of the last trial
  double TopStrain = 0;         ///< of the last trial: with the next it brings the rows back
  double NeutralAxisOfRows = 0;
  double residual = 0;  ///< compression less tension at `NeutralAxis`
};
struct Step : StepNumbers {
  double Moment = 0;
  double Curvature = 0;  ///< reported: with that of prestress and axial force
  std::int16_t iterations = 0;
};

/// A watched strain that crossed its watch value.
struct Crossing {
  int step = 0;            ///< from 0
  std::size_t column = 0;  ///< of the result row
  double WatchStrain = 0;
  double strain = 0;
};

/// The row that is being told. A pause, the user's End or a fault may leave it half done.
struct RowAtWork {
  int step = 0;
  std::vector<double> cells;  ///< in the order of the columns, as far as they are told
  bool isWhole = false;       ///< its step becomes one of the run's when its charts may follow
};

/// How a run ended.
struct End {
  enum class Kind : std::uint8_t {
    LoadingEnd,     ///< the curvature reached the end of the large range: the only regular end
    SearchFailed,   ///< a search came to the most iterations
    Collapsed,      ///< no compression is left
    EndedByUser,    ///< no message
    NumericFault,   ///< division by zero, overflow, a text that is no number
    InternalError,  ///< a `Type` or `Prestressing` of an unknown name
    InputError,     ///< a result file that can not be written, an answer that nobody gave
  };
  Kind kind = Kind::EndedByUser;
  std::string message;                ///< in words; empty where the user ended the job
  std::optional<Stage> stage;         ///< none: before the first one
  int step = 0;                       ///< of the loading stage, from 0
  std::optional<section::RowOf> row;  ///< of a fault that has one
};

/// The beam at a step, a number for each piece of half the span from midspan outward.
struct BeamLines {
  std::vector<double> place;  ///< of the centre from midspan [mm]
  std::vector<double> Moment;
  std::vector<double> Curvature;
  std::vector<double> Deflection;  ///< downward [mm]
};

class RunData;

/// Steps, stages, crossings, messages and the end of a job, and what it takes to show any step again. It only
/// grows, and a procedure's `RunWriter` alone makes it grow; everybody else reads, on the thread of the job.
/// Spans and references stand until the run grows.
class Run {
 public:
  /// @param job  its rows in use, as `BuildJobTables` made them
  Run(model::ObjectTables job, Origin origin);
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  /// Changes whenever the run grows.
  [[nodiscard]] std::uint64_t version() const;

  [[nodiscard]] const Origin& origin() const;
  [[nodiscard]] const model::ObjectTables& job() const;
  [[nodiscard]] const std::vector<Column>& columns() const;

  /// None until they are worked out.
  [[nodiscard]] const std::optional<section::Extent>& extent() const;
  [[nodiscard]] const std::optional<section::SectionParameterTable>& sectionParameters() const;

  // ---- the loading stage
  [[nodiscard]] int steps() const;
  [[nodiscard]] Step step(int step) const;
  /// A cell of a result row. @param column  of `columns`
  [[nodiscard]] double cell(int step, std::size_t column) const;
  [[nodiscard]] const std::optional<RowAtWork>& rowAtWork() const;
  /// In their order.
  [[nodiscard]] std::span<const Crossing> crossings() const;
  /// The moment that the panel "Mu" shows, of the last step that was larger than the panel had it; 0 at
  /// first, none before loading begins. The panel rounds, and the comparison is with what it shows. [N mm]
  [[nodiscard]] std::optional<double> peakMoment() const;

  // ---- what was told
  /// While the job went on: warnings, and user files that could not be read.
  [[nodiscard]] std::span<const std::string> messages() const;
  /// None while the job goes on.
  [[nodiscard]] const std::optional<End>& end() const;

  // ---- the section and the beam
  /// Base strains as committed so far: 0 to 4 times. @param commits  1 to that number
  [[nodiscard]] int commits() const;
  [[nodiscard]] const section::BaseStrains& strainsWithoutLoad(int commit) const;
  /// The rows as tables and charts are to show them now: those of the last iteration of a search before
  /// loading or of the last step. Null before the first, and where a law can not be asked again. Worked out
  /// when asked.
  [[nodiscard]] const section::State* present() const;
  /// How often `present` has changed.
  [[nodiscard]] std::uint64_t presentVersion() const;
  /// The same of a step that was.
  [[nodiscard]] const section::State* shown(int step) const;
  /// The rows as the last trial of the job left them, with `end`.
  [[nodiscard]] const section::State& leftover() const;
  [[nodiscard]] const section::BaseStrains& leftoverBase() const;
  [[nodiscard]] const BeamLines& beam(int step) const;

 private:
  friend class RunWriter;
  std::unique_ptr<RunData> m_data;
};

}  // namespace torvik::run
