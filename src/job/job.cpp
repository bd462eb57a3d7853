// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/job.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/fault.h"
#include "base/number_text.h"
#include "section/section_parameters.h"

namespace torvik::job {

namespace {

using base::divide;
using base::NumericFault;
using run::End;
using run::Stage;
using section::Balance;
using section::RowOf;

/// A strain of the result row, and where it is watched.
struct OutputStrain {
  const double* strain;           ///< of the last trial
  const std::string* watchText;   ///< null: it is not watched
  std::optional<double> watched;  ///< `WatchStrain`; none where it is no number
  double previous;
};

/// One job. Each stage gives back how the job ends, or nothing where it goes on.
class Procedure : private section::SearchObserver {
 public:
  Procedure(const JobOptions& options, Host& host, run::RunWriter& writer,
            materials::StressStrainContext& laws)
      : m_options(options),
        m_host(host),
        m_writer(writer),
        m_laws(laws),
        m_job(writer.run().job()),
        m_rows(writer.section().emptyState()),
        m_search(writer.section(), options.search, laws, *this, m_rows) {}

  End perform();
  [[nodiscard]] section::State takeRows() { return std::move(m_rows); }

 private:
  using Ending = std::optional<End>;

  Ending stages();
  Ending introducePrestress(const section::SectionParameterRow& d);
  Ending applyAxialForces(const section::SectionParameterRow& x);
  Ending balance(const section::Unknowns& from, double& curvature);
  Ending takeOver();
  Ending load();

  void prepareStrains();
  Ending tellRow(const run::Step& step);
  Ending checkWatch(OutputStrain& strain, std::size_t column);
  double nextCurvature(double curvature);

  [[nodiscard]] double momentTolerance() const;
  [[nodiscard]] End endOf(End::Kind kind, std::string message) const;
  [[nodiscard]] End faultOf(End::Kind kind, const std::string& words) const;
  /// Nothing where the search converged.
  [[nodiscard]] Ending endOf(const Balance& balance) const;

  // section::SearchObserver
  void trial(int iteration, int outerIteration) override { m_host.count(iteration, outerIteration); }
  void iterated(const section::Trial& last) override { m_writer.present(*m_stage, last); }
  bool proceed(section::Search search) override { return m_host.proceed(*m_stage, search); }

  const JobOptions& m_options;
  Host& m_host;
  run::RunWriter& m_writer;
  materials::StressStrainContext& m_laws;
  const model::ObjectTables& m_job;
  section::State m_rows;  ///< of the last trial
  section::PlainSearch m_search;

  // Where the job is.
  std::optional<Stage> m_stage;
  int m_step = -1;

  double m_top = 0;  ///< `BeamTop`
  double m_tendonMoment = 0;
  double m_axialMoment = 0;
  double m_tendonCurvature = 0;
  double m_axialCurvature = 0;
  double m_neutralAxis = 0;  ///< as the last search left it
  std::vector<OutputStrain> m_strains;
};

End Procedure::perform() {
  base::fpflags::clear();
  try {
    return *stages();
  } catch (const section::Fault& fault) {
    End end = faultOf(fault.kind() ? End::Kind::NumericFault : End::Kind::InternalError, wordsOf(fault));
    end.row = fault.row();
    return end;
  } catch (const NumericFault& fault) {
    return faultOf(End::Kind::NumericFault, fault.what());
  } catch (const base::InternalError& error) {
    return faultOf(End::Kind::InternalError, error.what());
  } catch (const base::InputError& error) {
    return endOf(End::Kind::InputError, error.what());
  }
}

Procedure::Ending Procedure::stages() {
  const section::SectionParameterResult sections = section::SectionParameters(m_job);
  if (sections.extent) {
    m_writer.extent(*sections.extent);
    m_top = sections.extent->BeamTop;
  }
  if (sections.isWithoutModulus) {
    m_writer.message(textOf(Notice::WithoutModulus));
    m_host.notice(Notice::WithoutModulus);
  }
  if (sections.fault) throw *sections.fault;
  m_writer.sectionParameters(sections.table);
  base::fpflags::clear();

  if (Ending end = introducePrestress(sections.table.rows[section::SectionParameterTable::D])) return end;
  if (Ending end = applyAxialForces(sections.table.rows[section::SectionParameterTable::X])) return end;
  return load();
}

// ---- Before loading

Procedure::Ending Procedure::introducePrestress(const section::SectionParameterRow& d) {
  m_stage = Stage::Tendon;
  section::Unknowns start;
  start.NeutralAxis = m_top + d.yTop;
  double TendonForce = 0;
  for (std::size_t i = 0; i < m_job.Tendons.size(); ++i) {
    const model::TendonObject& tendon = m_job.Tendons[i];
    const double stress = m_writer.section().tendonStress(i, tendon.IntroductionStrain, m_laws);
    TendonForce += tendon.Area * stress * tendon.Number;
    m_tendonMoment += tendon.Area * stress * tendon.Number * (tendon.Depth - start.NeutralAxis);
  }
  start.UniformStrain = divide(divide(TendonForce, d.A, "start strain, TendonForce / A of row \"d\""), d.E,
                               "start strain, stress / E of row \"d\"");
  start.TopStrain = divide(-divide(m_tendonMoment, d.ZTop, "start strain, TendonMoment / Z' of row \"d\""),
                           d.E, "start strain, stress / E of row \"d\"");
  return balance(start, m_tendonCurvature);
}

Procedure::Ending Procedure::applyAxialForces(const section::SectionParameterRow& x) {
  m_stage = Stage::AxialForce;
  section::Unknowns start;
  start.NeutralAxis = m_top + x.yTop;
  double TotalAxialForce = 0;
  for (const model::AxialForceObject& axial : m_job.AxialForces) {
    TotalAxialForce += axial.Force;
    m_axialMoment += (axial.Depth - start.NeutralAxis) * axial.Force;
  }
  start.UniformStrain = divide(divide(TotalAxialForce, x.A, "start strain, axial force / A of row \"e\""),
                               x.E, "start strain, stress / E of row \"e\"");
  start.TopStrain = divide(-divide(m_axialMoment, x.ZTop, "start strain, AxialMoment / Z' of row \"e\""), x.E,
                           "start strain, stress / E of row \"e\"");
  return balance(start, m_axialCurvature);
}

double Procedure::momentTolerance() const {
  const double Precision = m_options.search.Precision;
  return std::max(std::fabs(m_axialMoment) * Precision / 1000.0,
                  std::fabs(m_tendonMoment) * Precision / 1000.0);
}

/// The searches N and MM of a stage, each followed by commit and break.
Procedure::Ending Procedure::balance(const section::Unknowns& from, double& curvature) {
  const section::Conditions conditions = m_writer.conditionsOf(*m_stage);
  const Balance axial = m_search.noAxialForce(m_writer.base(), conditions, from);
  if (Ending end = endOf(axial)) return end;
  if (Ending end = takeOver()) return end;
  const Balance bending = m_search.noMoment(m_writer.base(), conditions, axial.unknowns, momentTolerance());
  if (Ending end = endOf(bending)) return end;
  curvature = bending.curvature;
  m_neutralAxis = bending.unknowns.NeutralAxis;
  return takeOver();
}

Procedure::Ending Procedure::takeOver() {
  m_writer.commit(m_rows);
  const bool goesOn = m_host.breakBeforeLoading();
  base::fpflags::clear();
  if (!goesOn) return endOf(End::Kind::EndedByUser, {});
  return {};
}

// ---- Loading

Procedure::Ending Procedure::load() {
  m_stage = Stage::Loading;
  prepareStrains();
  const double baseCurvature = m_axialCurvature + m_tendonCurvature;
  const section::Conditions conditions = m_writer.conditionsOf(Stage::Loading);
  m_writer.beginLoading(baseCurvature);
  double imposedCurvature = 0;

  for (m_step = 0;; ++m_step) {
    const Balance found =
        m_search.atCurvature(m_writer.base(), conditions, {0, 0, m_neutralAxis}, imposedCurvature);
    if (Ending end = endOf(found)) return end;
    m_neutralAxis = found.unknowns.NeutralAxis;
    if (found.forces.CompressionForce < 0.000001 && m_step > 0)
      return endOf(End::Kind::Collapsed, kCollapsed);
    m_host.stepConverged();

    const auto& rows = std::get<section::Plane>(found.last.profile);
    run::Step step;
    step.Moment = found.forces.SectionMoment;
    step.Curvature = baseCurvature + imposedCurvature;
    step.NeutralAxis = m_neutralAxis;
    step.CompressionForce = found.forces.CompressionForce;
    step.TopStrain = rows.TopStrain;
    step.NeutralAxisOfRows = rows.NeutralAxis;
    step.residual = found.residual;
    step.iterations = static_cast<std::int16_t>(found.iterations);
    m_writer.bendBeam(step.Moment, step.Curvature);
    step.Load = m_writer.beam().Load();
    step.Displacement = m_writer.beam().Displacement();
    m_writer.peak(step.Moment);
    if (Ending end = tellRow(step)) return end;
    m_writer.step(step, found.last);

    imposedCurvature = nextCurvature(imposedCurvature);
    if (imposedCurvature >= m_options.LargeTo) return endOf(End::Kind::LoadingEnd, kLoadingEnd);
    const bool goesOn = m_host.proceed(Stage::Loading, section::Search::Loading);
    base::fpflags::clear();
    if (!goesOn) return endOf(End::Kind::EndedByUser, {});
  }
}

void Procedure::prepareStrains() {
  const auto add = [&](const section::RowValues& values, const auto& objects) {
    for (std::size_t i = 0; i < objects.size(); ++i) {
      if (objects[i].Output != 1) continue;
      const double* strain = &values.strain[i];
      const std::string& watch = objects[i].WatchStrain;
      m_strains.push_back({strain, watch.empty() ? nullptr : &watch, base::toNumber(watch), *strain});
    }
  };
  add(m_rows.solids, m_job.Solids);
  add(m_rows.bars, m_job.Bars);
  add(m_rows.tendons, m_job.Tendons);
}

Procedure::Ending Procedure::tellRow(const run::Step& step) {
  m_writer.beginRow(m_step);
  for (const double value :
       {step.Load, step.Displacement, step.Moment, step.Curvature, step.NeutralAxis, step.CompressionForce})
    m_writer.cell(value);
  for (std::size_t i = 0; i < m_strains.size(); ++i) {
    m_writer.cell(*m_strains[i].strain);
    if (!m_options.tableSolver || !m_strains[i].watchText) continue;
    if (Ending end = checkWatch(m_strains[i], run::kFirstStrain + i)) return end;
  }
  m_writer.endRow();
  return {};
}

Procedure::Ending Procedure::checkWatch(OutputStrain& strain, std::size_t column) {
  if (!strain.watched)
    throw NumericFault(NumericFault::Kind::TypeMismatch, m_writer.run().columns()[column].heading +
                                                             ": WatchStrain \"" +
                                                             base::printable(*strain.watchText) + "\"");
  const double W = *strain.watched;
  const double P = strain.previous;
  const double S = *strain.strain;
  if ((P < W && W <= S) || (S < W && W <= P)) {
    m_writer.crossed({m_step, column, W, S});
    const bool goesOn = m_host.watchCrossed();
    base::fpflags::clear();
    if (!goesOn) return endOf(End::Kind::EndedByUser, {});
  }
  strain.previous = S;
  return {};
}

double Procedure::nextCurvature(double curvature) {
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

// ---- Ends

End Procedure::endOf(End::Kind kind, std::string message) const {
  return {kind, std::move(message), m_stage, std::max(m_step, 0), {}};
}

End Procedure::faultOf(End::Kind kind, const std::string& words) const {
  return endOf(kind, placeOf(m_stage, m_step) + ": " + words);
}

Procedure::Ending Procedure::endOf(const Balance& balance) const {
  switch (balance.why) {
    case Balance::Why::Converged:
      return {};
    case Balance::Why::Failed:
      return endOf(End::Kind::SearchFailed, failureOf(*m_stage, balance.search));
    case Balance::Why::EndedByUser:
      break;
  }
  return endOf(End::Kind::EndedByUser, {});
}

}  // namespace

const run::End& runJob(const JobOptions& options, Host& host, run::RunWriter& writer,
                       materials::StressStrainContext& laws) {
  laws.startJob();
  const materials::UserCurves::Report report =
      std::exchange(laws.report, [&](const std::string& caption, const std::string& text) {
        writer.message(caption + ": " + text);
        if (report) report(caption, text);
      });
  try {
    writer.begin(laws);
    Procedure procedure(options, host, writer, laws);
    End end = procedure.perform();
    base::fpflags::clear();
    laws.report = report;
    writer.end(std::move(end), procedure.takeRows());
  } catch (...) {  // nothing that a job knows: the run stands on its own all the same
    laws.report = report;
    writer.end({End::Kind::InternalError, "The job was broken off.", {}, 0, {}}, {});
    throw;
  }
  return *writer.run().end();
}

}  // namespace torvik::job
