// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/job.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "analysis/newton.h"
#include "base/fault.h"
#include "base/number_text.h"

namespace torvik::analysis {

namespace {

using base::divide;
using base::NumericFault;
using End = JobOutcome::End;

/// Status text and failure message of a search.
struct SearchTexts {
  const char* status;
  const char* failure;
};

struct StageTexts {
  const char* place;  ///< where a fault happened
  SearchTexts N, MN, MM;
};

constexpr StageTexts kTendonTexts = {"Prestress introduction",
                                     {"Tendon (N)", "Tendon convergence (N) failed."},
                                     {"Tendon (MN)", "Tendon convergence (MN) failed."},
                                     {"Tendon (MM)", "Tendon convergence (MM) failed."}};
constexpr StageTexts kAxialTexts = {"Axial force stage",
                                    {"Axial force (N)", "Axial force convergence (N) failed."},
                                    {"Axial force (MN)", "Axial force convergence (MN) failed."},
                                    {"Axial force (MM)", "Axial force convergence (MM) failed."}};
constexpr SearchTexts kLoadingTexts = {"Loading", "Loading convergence failed."};

/// Leaves a stage from within: a search that failed, or the user's End.
struct Stop {
  End end;
  std::string message;
};

/// A row whose strain is compared with its `WatchStrain` at each step.
struct Watch {
  const SectionState::Rows* rows;
  std::size_t row;
  const std::string* text;
  double previousStrain;
};

/// A strain of the result row.
struct OutputStrain {
  const SectionState::Rows* rows;
  std::size_t row;
  Watch* watch;  ///< null: none
};

class Solver {
 public:
  Solver(model::ObjectTables& job, const JobOptions& options, const RunControl& control, Host& host,
         std::span<Sink* const> sinks, materials::StressStrainContext& context)
      : m_job(job),
        m_options(options),
        m_control(control),
        m_host(host),
        m_sinks(sinks),
        m_state(job, context),
        m_beam(job.Beams.empty() ? model::BeamObject{} : job.Beams.front()) {}

  JobOutcome run();

 private:
  /// A stage before loading: the searches N and MM, each followed by commit, views and break.
  void introducePrestress(const SectionParameterRow& section);
  void applyAxialForces(const SectionParameterRow& section);
  void balance(Stage stage, const StageTexts& texts, double& curvature);
  SearchEnd searchN(Stage stage, const SearchTexts& texts);
  SearchEnd searchMN(Stage stage, const SearchTexts& texts, int outerIteration, double& curvature);
  SearchEnd searchMM(Stage stage, const StageTexts& texts, double& curvature);
  void takeOver();
  void breakBeforeLoading();

  void load();
  void searchLoading(double imposedCurvature);
  void prepareWatches();
  void writeRow();
  void checkWatch(const OutputStrain& strain, int column);
  double nextCurvature(double curvature);

  [[nodiscard]] double forceTolerance() const {
    return (m_options.Precision * std::min(m_forces.CompressionForce, m_forces.TensionForce)) / 1000.0;
  }
  [[nodiscard]] double momentTolerance() const {
    return std::max(std::fabs(m_axialMoment) * m_options.Precision / 1000.0,
                    std::fabs(m_tendonMoment) * m_options.Precision / 1000.0);
  }
  [[nodiscard]] double outOfBalance() const { return m_forces.CompressionForce - m_forces.TensionForce; }

  void throwUnlessConverged(SearchEnd end, const SearchTexts& texts) const {
    if (end == SearchEnd::Failed) throw Stop{End::SearchFailed, texts.failure};
    if (end == SearchEnd::EndedByUser) throw Stop{End::EndedByUser, {}};
  }
  [[nodiscard]] bool proceed(const SearchTexts& texts) {
    if (!WaitWhilePaused(m_control, m_host)) return false;
    m_host.setPanel(Panel::Status, texts.status);
    m_host.doEvents();
    base::fpflags::clear();  // what the events raised is none of the job's
    return true;
  }
  template <class Call>
  void tell(Call&& call) {
    for (Sink* sink : m_sinks) call(*sink);
  }
  void refreshViews() {
    tell([&](Sink& sink) { sink.currentValues(m_state); });
  }

  model::ObjectTables& m_job;
  const JobOptions& m_options;
  const RunControl& m_control;
  Host& m_host;
  std::span<Sink* const> m_sinks;
  SectionState m_state;
  std::string m_place;  ///< for the message of a fault

  // The unknowns, and the sums that the last trial left.
  double m_uniformStrain = 0;
  double m_topStrain = 0;
  double m_neutralAxis = 0;
  SectionState::Forces m_forces;

  double m_tendonMoment = 0;
  double m_axialMoment = 0;
  double m_tendonCurvature = 0;
  double m_axialCurvature = 0;

  int m_step = 0;
  int m_rowsDone = 0;
  MomentCurvature m_relation;
  std::string m_peakText;  ///< of the panel Mu: the only store of the peak moment, as rounded
  std::vector<Watch> m_watches;
  std::vector<OutputStrain> m_outputs;
  std::vector<std::string> m_headings;
  std::vector<double> m_row;
  BeamResponse m_beam;
};

JobOutcome Solver::run() {
  JobOutcome outcome;
  base::fpflags::clear();
  try {
    m_place = "Section parameters";
    const SectionParameterTable sections = SectionParameters(m_job, m_host);
    tell([&](Sink& sink) { sink.sectionParameters(sections); });
    base::fpflags::clear();
    introducePrestress(sections.rows[SectionParameterTable::D]);
    applyAxialForces(sections.rows[SectionParameterTable::X]);
    load();
  } catch (const Stop& stop) {
    outcome.end = stop.end;
    outcome.message = stop.message;
  } catch (const NumericFault& fault) {
    outcome.end = End::NumericFault;
    outcome.message = m_place + ": " + fault.what();
  } catch (const base::InternalError& error) {
    outcome.end = End::InternalError;
    outcome.message = m_place + ": " + error.what();
  } catch (const base::InputError& error) {
    outcome.end = End::InputError;
    outcome.message = error.what();
  }
  base::fpflags::clear();
  outcome.rows = m_rowsDone;
  if (!outcome.message.empty()) m_host.reportMessage(outcome.message);
  tell([&](Sink& sink) { sink.jobOver(m_state); });
  return outcome;
}

void Solver::introducePrestress(const SectionParameterRow& section) {
  m_place = kTendonTexts.place;
  m_neutralAxis = m_job.Beams.front().BeamTop + section.yTop;
  double TendonForce = 0;
  m_tendonMoment = 0;
  m_axialMoment = 0;
  for (std::size_t i = 0; i < m_job.Tendons.size(); ++i) {
    const model::TendonObject& tendon = m_job.Tendons[i];
    const double stress = m_state.tendonStress(i, tendon.IntroductionStrain);
    TendonForce += tendon.Area * stress * tendon.Number;
    m_tendonMoment += tendon.Area * stress * tendon.Number * (tendon.Depth - m_neutralAxis);
  }
  m_uniformStrain = divide(divide(TendonForce, section.A, "start strain, TendonForce / A of row \"d\""),
                           section.E, "start strain, stress / E of row \"d\"");
  m_topStrain = divide(-divide(m_tendonMoment, section.ZTop, "start strain, TendonMoment / Z' of row \"d\""),
                       section.E, "start strain, stress / E of row \"d\"");
  balance(Stage::Tendon, kTendonTexts, m_tendonCurvature);
}

void Solver::applyAxialForces(const SectionParameterRow& section) {
  m_place = kAxialTexts.place;
  m_neutralAxis = m_job.Beams.front().BeamTop + section.yTop;
  double TotalAxialForce = 0;
  m_axialMoment = 0;
  for (const model::AxialForceObject& axial : m_job.AxialForces) {
    TotalAxialForce += axial.Force;
    m_axialMoment += (axial.Depth - m_neutralAxis) * axial.Force;
  }
  m_uniformStrain = divide(divide(TotalAxialForce, section.A, "start strain, axial force / A of row \"e\""),
                           section.E, "start strain, stress / E of row \"e\"");
  m_topStrain = divide(-divide(m_axialMoment, section.ZTop, "start strain, AxialMoment / Z' of row \"e\""),
                       section.E, "start strain, stress / E of row \"e\"");
  balance(Stage::AxialForce, kAxialTexts, m_axialCurvature);
}

void Solver::balance(Stage stage, const StageTexts& texts, double& curvature) {
  throwUnlessConverged(searchN(stage, texts.N), texts.N);
  takeOver();
  throwUnlessConverged(searchMM(stage, texts, curvature), texts.MM);
  takeOver();
}

SearchEnd Solver::searchN(Stage stage, const SearchTexts& texts) {
  int iteration = 1;
  return newton(
      m_options, m_uniformStrain, iteration,
      [&](double& residual) {
        m_host.setCount(iteration, 0);
        m_forces = m_state.EvaluateUniform(stage, m_uniformStrain);
        residual = outOfBalance();
        return SearchEnd::Converged;
      },
      [&](double) { refreshViews(); }, [&] { return forceTolerance(); }, [&] { return proceed(texts); });
}

SearchEnd Solver::searchMN(Stage stage, const SearchTexts& texts, int outerIteration, double& curvature) {
  int iteration = 1;
  return newton(
      m_options, m_neutralAxis, iteration,
      [&](double& residual) {
        m_host.setCount(iteration, outerIteration);
        curvature = divide(m_topStrain, m_neutralAxis, "curvature, TopStrain / NeutralAxis");
        m_topStrain = m_neutralAxis * curvature;  // rounds: the outer search goes on with this value
        m_forces = m_state.EvaluateLinear(stage, m_topStrain, m_neutralAxis);
        residual = outOfBalance();
        return SearchEnd::Converged;
      },
      [](double) {}, [&] { return forceTolerance(); }, [&] { return proceed(texts); });
}

SearchEnd Solver::searchMM(Stage stage, const StageTexts& texts, double& curvature) {
  int outerIteration = 1;
  return newton(
      m_options, m_topStrain, outerIteration,
      [&](double& residual) {
        const SearchEnd end = searchMN(stage, texts.MN, outerIteration, curvature);
        throwUnlessConverged(end, texts.MN);
        residual = m_forces.SectionMoment;
        return end;
      },
      [&](double middleMoment) {
        m_forces.SectionMoment = middleMoment;
        refreshViews();
      },
      [&] { return momentTolerance(); }, [&] { return proceed(texts.MM); });
}

void Solver::takeOver() {
  m_state.CommitStrains();
  tell([&](Sink& sink) { sink.strainWithoutLoad(m_state); });
  breakBeforeLoading();
}

void Solver::breakBeforeLoading() {
  m_host.playSound(m_options.pausePreLoadingSound);  // whatever the option says
  if (m_options.pausePreLoading) {
    m_host.pause(PauseCause::PreLoading);
    if (!WaitWhilePaused(m_control, m_host)) throw Stop{End::EndedByUser, {}};
  }
  base::fpflags::clear();
}

void Solver::prepareWatches() {
  const auto add = [&](const SectionState::Rows& rows, const auto& objects) {
    for (std::size_t i = 0; i < objects.size(); ++i) {
      if (!objects[i].WatchStrain.empty())
        m_watches.push_back({&rows, i, &objects[i].WatchStrain, rows.CurrentStrain[i]});
      if (objects[i].Output == 1) m_outputs.push_back({&rows, i, nullptr});
    }
  };
  add(m_state.solids(), m_job.Solids);
  add(m_state.bars(), m_job.Bars);
  add(m_state.tendons(), m_job.Tendons);
  for (OutputStrain& output : m_outputs)
    for (Watch& watch : m_watches)
      if (watch.rows == output.rows && watch.row == output.row) output.watch = &watch;
}

void Solver::load() {
  m_place = "Loading";
  prepareWatches();
  m_headings = resultHeadings(m_job);
  m_row.resize(m_headings.size());
  m_peakText = base::scientificText(0);
  m_host.setPanel(Panel::Mu, m_peakText);
  double imposedCurvature = 0;

  for (m_step = 0;; ++m_step) {
    m_place = "Loading, step " + base::plainText(m_step + 1);
    searchLoading(imposedCurvature);
    if (m_forces.CompressionForce < 0.000001 && m_step > 0)
      throw Stop{End::Collapsed, "Loading causes compression force = tension force = 0."};
    if (m_options.beepConvergence) m_host.playSound(m_options.convergenceSound);

    const double Moment = m_forces.SectionMoment;
    const double Curvature = (m_axialCurvature + m_tendonCurvature) + imposedCurvature;
    m_relation.append(Moment, Curvature);
    m_beam.update(m_relation, m_step, m_axialCurvature + m_tendonCurvature);

    if (base::numberOf(m_peakText, "panel Mu") < Moment) {
      m_peakText = base::scientificText(Moment);
      m_host.setPanel(Panel::Mu, m_peakText);
    }
    writeRow();
    refreshViews();
    tell([&](Sink& sink) { sink.loadStep({m_step, Moment, Curvature, m_beam}); });
    ++m_rowsDone;

    imposedCurvature = nextCurvature(imposedCurvature);
    if (imposedCurvature >= m_options.LargeTo) throw Stop{End::LoadingEnd, "Loading end."};
    if (!proceed(kLoadingTexts)) throw Stop{End::EndedByUser, {}};
  }
}

void Solver::searchLoading(double imposedCurvature) {
  int iteration = 1;
  const SearchEnd end = newton(
      m_options, m_neutralAxis, iteration,
      [&](double& residual) {
        m_host.setCount(iteration, 0);
        m_topStrain = imposedCurvature * m_neutralAxis;
        m_forces = m_state.EvaluateLinear(Stage::Loading, m_topStrain, m_neutralAxis);
        residual = outOfBalance();
        return SearchEnd::Converged;
      },
      [](double) {},
      [&] { return m_options.Precision * std::min(m_forces.CompressionForce, m_forces.TensionForce); },
      [&] { return proceed(kLoadingTexts); });
  throwUnlessConverged(end, kLoadingTexts);
}

void Solver::writeRow() {
  const std::size_t last = m_relation.size() - 1;
  const double first[] = {m_beam.Load(),           m_beam.Displacement(),
                          m_relation.Moment(last), m_relation.Curvature(last),
                          m_neutralAxis,           m_forces.CompressionForce};
  std::copy(std::begin(first), std::end(first), m_row.begin());
  for (std::size_t i = 0; i < m_outputs.size(); ++i)
    m_row[std::size(first) + i] = m_outputs[i].rows->CurrentStrain[m_outputs[i].row];

  if (m_options.tableSolver) {
    tell([&](Sink& sink) { sink.beginRow(m_step); });
    for (std::size_t i = 0; i < m_row.size(); ++i) {
      const int column = static_cast<int>(i);
      tell([&](Sink& sink) { sink.cell(column, m_row[i]); });
      if (i >= std::size(first)) checkWatch(m_outputs[i - std::size(first)], column);
    }
    tell([&](Sink& sink) { sink.endRow(); });
  }
  tell([&](Sink& sink) { sink.resultRow(m_row); });
}

void Solver::checkWatch(const OutputStrain& output, int column) {
  if (!output.watch) return;
  Watch& watch = *output.watch;
  const std::string& heading = m_headings[static_cast<std::size_t>(column)];
  const double W = base::numberOf(
      *watch.text, (heading + ": WatchStrain \"" + base::printable(*watch.text) + "\"").c_str());
  const double P = watch.previousStrain;
  const double S = output.rows->CurrentStrain[output.row];
  if ((P < W && W <= S) || (S < W && W <= P)) {
    tell([&](Sink& sink) { sink.watchCrossed({m_step, heading, column, W, S}); });
    m_host.playSound(m_options.pauseWatchSound);
    if (m_options.pauseWatch) {
      m_host.pause(PauseCause::Watch);
      if (!WaitWhilePaused(m_control, m_host)) throw Stop{End::EndedByUser, {}};
      m_host.setPanel(Panel::Status, kLoadingTexts.status);
    }
  }
  watch.previousStrain = S;
}

double Solver::nextCurvature(double curvature) {
  const std::string text = m_host.stepText();
  if (text == "Small") {
    if (curvature > m_options.SmallTo) {
      m_host.setStepText("Large");
      return curvature + m_options.LargeStep;
    }
    return curvature + m_options.SmallStep;
  }
  if (text == "Large") return curvature + m_options.LargeStep;
  return curvature + base::numberOf(text, "step box");
}

}  // namespace

JobOutcome runJob(model::ObjectTables& job, const JobOptions& options, const RunControl& control, Host& host,
                  std::span<Sink* const> sinks, materials::StressStrainContext& context) {
  context.startJob();
  return Solver(job, options, control, host, sinks, context).run();
}

}  // namespace torvik::analysis
