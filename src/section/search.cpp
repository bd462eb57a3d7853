// SPDX-License-Identifier: GPL-3.0-or-later
#include "section/search.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/fault.h"

namespace torvik::section {

using base::divide;

void PlainSearch::begin(const BaseStrains& base, const Conditions& conditions, const Unknowns& from) {
  m_base = &base;
  m_conditions = conditions;
  m_balance = {};
  m_balance.unknowns = from;
}

double PlainSearch::lesserForce() const {
  return std::min(m_balance.forces.CompressionForce, m_balance.forces.TensionForce);
}

double PlainSearch::outOfBalance(const Profile& profile) {
  m_balance.last = {profile, m_laws.memory};
  m_balance.forces = m_section.evaluate(*m_base, m_conditions, profile, m_laws, m_rows);
  return m_balance.forces.outOfBalance();
}

/// @param unknown     a trial may change it by rounding
/// @param residualOf  (int iteration) -> optional<double>: makes the trial at the present unknown; none where
/// a
///                    search within it came to no balance
/// @param settle      (residual of the middle trial): the three trials are made, the unknown is back
/// @param tolerance   () -> double, asked behind `settle`
/// @return whether it converged; the balance says why not
template <class ResidualOf, class Settle, class Tolerance>
bool PlainSearch::newton(Search search, double& unknown, ResidualOf&& residualOf, Settle&& settle,
                         Tolerance&& tolerance) {
  const auto endsAs = [&](Why why) {
    m_balance.why = why;
    m_balance.search = search;
    return why == Why::Converged;
  };
  for (int iteration = 1;; ++iteration) {
    double probe[3];
    double residual[3];
    probe[1] = unknown;
    for (int i = -1; i <= 1; ++i) {
      unknown = ((m_settings.Precision * i * m_settings.DiffWidth) + 1.0) * probe[1];
      const std::optional<double> found = residualOf(iteration);
      if (!found) return false;
      residual[i + 1] = *found;
      probe[i + 1] = unknown;
    }
    unknown = probe[1];
    settle(residual[1]);
    m_balance.iterations = iteration;
    m_balance.residual = residual[1];
    m_balance.tolerance = tolerance();
    if (std::fabs(residual[1]) <= m_balance.tolerance) return endsAs(Why::Converged);
    if (iteration >= m_settings.MaxIteration) return endsAs(Why::Failed);
    const double slope = divide(residual[2] - residual[0], probe[2] - probe[0],
                                "slope of the search, residuals over trial values");
    unknown = unknown - divide(residual[1], slope, "step of the search, residual over slope");
    const bool proceeds = m_observer.proceed(search);
    base::fpflags::clear();  // what the observer raised is none of ours
    if (!proceeds) return endsAs(Why::EndedByUser);
  }
}

Balance PlainSearch::noAxialForce(const BaseStrains& base, const Conditions& conditions,
                                  const Unknowns& from) {
  begin(base, conditions, from);
  double& UniformStrain = m_balance.unknowns.UniformStrain;
  newton(
      Search::N, UniformStrain,
      [&](int iteration) -> std::optional<double> {
        m_observer.trial(iteration, 0);
        return outOfBalance(Uniform{UniformStrain});
      },
      [&](double) { m_observer.iterated(m_balance.last); },
      [&] { return (m_settings.Precision * lesserForce()) / 1000.0; });
  return m_balance;
}

bool PlainSearch::searchMN(int outerIteration) {
  auto& [UniformStrain, TopStrain, NeutralAxis] = m_balance.unknowns;
  return newton(
      Search::MN, NeutralAxis,
      [&](int iteration) -> std::optional<double> {
        m_observer.trial(iteration, outerIteration);
        m_balance.curvature = divide(TopStrain, NeutralAxis, "curvature, TopStrain / NeutralAxis");
        TopStrain = NeutralAxis * m_balance.curvature;  // rounds: MM goes on with this value
        return outOfBalance(Plane{TopStrain, NeutralAxis});
      },
      [](double) {}, [&] { return (m_settings.Precision * lesserForce()) / 1000.0; });
}

Balance PlainSearch::noMoment(const BaseStrains& base, const Conditions& conditions, const Unknowns& from,
                              double momentTolerance) {
  begin(base, conditions, from);
  newton(
      Search::MM, m_balance.unknowns.TopStrain,
      [&](int iteration) -> std::optional<double> {
        if (!searchMN(iteration)) return {};
        return m_balance.forces.SectionMoment;
      },
      [&](double middleMoment) {
        m_balance.forces.SectionMoment = middleMoment;
        m_observer.iterated(m_balance.last);
      },
      [&] { return momentTolerance; });
  return m_balance;
}

Balance PlainSearch::atCurvature(const BaseStrains& base, const Conditions& conditions, const Unknowns& from,
                                 double curvature) {
  begin(base, conditions, from);
  auto& [UniformStrain, TopStrain, NeutralAxis] = m_balance.unknowns;
  m_balance.curvature = curvature;
  newton(
      Search::Loading, NeutralAxis,
      [&](int iteration) -> std::optional<double> {
        m_observer.trial(iteration, 0);
        TopStrain = curvature * NeutralAxis;
        return outOfBalance(Plane{TopStrain, NeutralAxis});
      },
      [](double) {}, [&] { return m_settings.Precision * lesserForce(); });
  return m_balance;
}

}  // namespace torvik::section
