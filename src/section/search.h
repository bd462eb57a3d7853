// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "section/section.h"

namespace torvik::section {

struct SearchSettings {
  std::int16_t MaxIteration = 1000;
  double DiffWidth = 1e-6;  ///< 1 / 10 ^ `ConvergenceDiffWidth`
  double Precision = 1e-3;  ///< 1 / 10 ^ `ConvergencePrecision`
};

/// The searches of docs/theory.md, "The search".
enum class Search : std::uint8_t {
  N,        ///< `UniformStrain` for no axial force out of balance
  MN,       ///< `NeutralAxis` for the same at a `TopStrain`; inside each trial of MM
  MM,       ///< `TopStrain` for no moment
  Loading,  ///< `NeutralAxis` for no axial force out of balance at a curvature
};

struct Unknowns {
  double UniformStrain = 0;
  double TopStrain = 0;
  double NeutralAxis = 0;  ///< [mm]
};

/// A trial that can be made again: what it added, and what the laws kept when it was made.
struct Trial {
  Profile profile;
  materials::LawMemory before;
};

/// What follows a search: its count, the views, and whoever may end it.
class SearchObserver {
 public:
  virtual ~SearchObserver() = default;
  /// An evaluation is about to be made. Both iterations count from 1; 0: no search stands around this one.
  virtual void trial(int iteration, int outerIteration) = 0;
  /// Three trials of N or MM are made; the rows hold the last of them.
  virtual void iterated(const Trial& last) = 0;
  /// Between two iterations. @return false ends the search
  virtual bool proceed(Search search) = 0;
};

/// How a search came out.
struct Balance {
  enum class Why : std::uint8_t { Converged, Failed, EndedByUser };
  Why why = Why::Converged;
  Search search = Search::N;  ///< the one that came to this: of MM it may be MN
  int iterations = 0;
  double residual = 0;  ///< at `unknowns` [N], of MM [N mm]
  double tolerance = 0;
  Unknowns unknowns;     ///< the middle trial, as the search leaves them
  Trial last;            ///< the upper trial: what the rows hold
  Forces forces;         ///< of the upper trial; of MM with the moment of the middle one
  double curvature = 0;  ///< of the last trial of MN, or as imposed [1/mm]
};

/// Newton's method on one unknown, the slope from a central difference of three trials. No bracket, no
/// damping, no limit on a step. What is left after convergence is that of the last trial, the one perturbed
/// upward, except for the unknown itself: that is what a stage commits and a row reports, on purpose.
class PlainSearch {
 public:
  /// Everything is kept by reference.
  /// @param rows  hold the values of the last trial at any time
  PlainSearch(const Section& section, const SearchSettings& settings, materials::StressStrainContext& laws,
              SearchObserver& observer, State& rows)
      : m_section(section), m_settings(settings), m_laws(laws), m_observer(observer), m_rows(rows) {}

  // @throws Fault; NumericFault where a slope can not be worked out or is 0

  /// The search N.
  Balance noAxialForce(const BaseStrains& base, const Conditions& conditions, const Unknowns& from);
  /// The search MM, with MN inside each of its trials.
  /// @param momentTolerance  [N mm]
  Balance noMoment(const BaseStrains& base, const Conditions& conditions, const Unknowns& from,
                   double momentTolerance);
  /// The search of the loading stage.
  Balance atCurvature(const BaseStrains& base, const Conditions& conditions, const Unknowns& from,
                      double curvature);

 private:
  using Why = Balance::Why;

  void begin(const BaseStrains& base, const Conditions& conditions, const Unknowns& from);
  template <class ResidualOf, class Settle, class Tolerance>
  bool newton(Search search, double& unknown, ResidualOf&& residualOf, Settle&& settle,
              Tolerance&& tolerance);
  bool searchMN(int outerIteration);
  double outOfBalance(const Profile& profile);
  [[nodiscard]] double lesserForce() const;

  const Section& m_section;
  const SearchSettings& m_settings;
  materials::StressStrainContext& m_laws;
  SearchObserver& m_observer;
  State& m_rows;

  // Of the search at work.
  const BaseStrains* m_base = nullptr;
  Conditions m_conditions;
  Balance m_balance;
};

}  // namespace torvik::section
