// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/job_options.h"

#include <cmath>

#include "base/elementary.h"
#include "base/errors.h"
#include "base/number_text.h"
#include "base/settings.h"

namespace torvik::analysis {

JobOptions JobOptions::read(const base::ProfileFile& settings) {
  using base::OptionId;
  const auto real = [&](OptionId id) { return base::optionReal(settings, id); };
  const auto flag = [&](OptionId id) { return base::optionFlag(settings, id); };
  const auto oneOver10To = [&](OptionId id) {
    const std::int16_t exponent = base::optionInteger(settings, id);
    const double power = base::power(10.0, exponent);
    if (power > 0 && std::isfinite(power) && std::isfinite(1.0 / power)) return 1.0 / power;
    throw base::InputError::ofKey(settings.name(), base::kOptionSection, base::optionKey(id).name,
                                  base::plainText(exponent), "an exponent of 10 that a number can hold");
  };

  JobOptions options;
  real(OptionId::CurvatureSmallRangeFrom);  // read for its error alone: loading always starts at curvature 0
  options.SmallTo = real(OptionId::CurvatureSmallRangeTo);
  options.SmallStep = real(OptionId::CurvatureSmallRangeStep);
  real(OptionId::CurvatureLargeRangeFrom);
  options.LargeTo = real(OptionId::CurvatureLargeRangeTo);
  options.LargeStep = real(OptionId::CurvatureLargeRangeStep);
  options.MaxIteration = base::optionInteger(settings, OptionId::ConvergenceMaxIteration);
  options.DiffWidth = oneOver10To(OptionId::ConvergenceDiffWidth);
  options.Precision = oneOver10To(OptionId::ConvergencePrecision);
  options.fileSolver = flag(OptionId::FileSolver);
  options.tableSolver = flag(OptionId::TableSolver);
  options.beepConvergence = flag(OptionId::MessagesBeepConvergence);
  options.pausePreLoading = flag(OptionId::MessagesPausePreLoading);
  options.pauseWatch = flag(OptionId::MessagesPauseWatch);
  options.convergenceSound = base::optionText(settings, OptionId::MessagesBeepConvergenceSound);
  options.pausePreLoadingSound = base::optionText(settings, OptionId::MessagesPausePreLoadingSound);
  options.pauseWatchSound = base::optionText(settings, OptionId::MessagesPauseWatchSound);
  return options;
}

}  // namespace torvik::analysis
