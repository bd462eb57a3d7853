// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>

#include "analysis/job_options.h"
#include "base/fault.h"

namespace torvik::analysis {

enum class SearchEnd { Converged, Failed, EndedByUser };

/// Newton's method on one unknown, the slope from a central difference of three trials. No bracket, no
/// damping, no limit on a step (docs/theory.md, "The search").
///
/// After convergence the unknown holds the middle trial, while everything else that the trials wrote is left
/// as the last one made it, the one perturbed upward. That is what a stage commits and a row reports, on
/// purpose.
///
/// @param x          the unknown; a trial may change it by rounding
/// @param counter    of iterations, from 1
/// @param trial      (double& residual) -> SearchEnd: evaluates at the present x
/// @param afterwards called once the three trials are made and x is back at the middle one
/// @param tolerance  () -> double, asked after `afterwards`
/// @param proceed    () -> bool: yields between two iterations; false ends the search
/// @throws NumericFault where the slope can not be worked out or is 0
template <class Trial, class Afterwards, class Tolerance, class Proceed>
SearchEnd newton(const JobOptions& options, double& x, int& counter, Trial&& trial, Afterwards&& afterwards,
                 Tolerance&& tolerance, Proceed&& proceed) {
  for (;;) {
    double probe[3];
    double residual[3];
    probe[1] = x;
    for (int i = -1; i <= 1; ++i) {
      x = ((options.Precision * i * options.DiffWidth) + 1.0) * probe[1];
      if (const SearchEnd end = trial(residual[i + 1]); end != SearchEnd::Converged) return end;
      probe[i + 1] = x;
    }
    x = probe[1];
    afterwards(residual[1]);
    if (std::fabs(residual[1]) <= tolerance()) return SearchEnd::Converged;
    if (counter >= options.MaxIteration) return SearchEnd::Failed;
    ++counter;
    const double slope = base::divide(residual[2] - residual[0], probe[2] - probe[0],
                                      "slope of the search, residuals over trial values");
    x = x - base::divide(residual[1], slope, "step of the search, residual over slope");
    if (!proceed()) return SearchEnd::EndedByUser;
  }
}

}  // namespace torvik::analysis
