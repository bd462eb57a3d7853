// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/job_options.h"

#include <cmath>
#include <filesystem>
#include <system_error>

#include "base/checksum.h"
#include "base/elementary.h"
#include "base/errors.h"
#include "base/number_text.h"
#include "base/settings.h"
#include "base/title.h"

namespace torvik::job {

using base::OptionId;

JobOptions JobOptions::read(const base::ProfileFile& settings) {
  const auto real = [&](OptionId id) { return base::optionReal(settings, id); };
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
  options.search.MaxIteration = base::optionInteger(settings, OptionId::ConvergenceMaxIteration);
  options.search.DiffWidth = oneOver10To(OptionId::ConvergenceDiffWidth);
  options.search.Precision = oneOver10To(OptionId::ConvergencePrecision);
  options.tableSolver = base::optionFlag(settings, OptionId::TableSolver);
  return options;
}

run::Origin originOf(const std::string& model, bool isEdited, const base::ProfileFile& settings) {
  run::Origin origin;
  std::error_code failed;
  if (!model.empty()) origin.model = std::filesystem::absolute(model, failed).lexically_normal().string();
  if (!model.empty() && !isEdited) origin.checksum = base::checksumOfFile(model);
  origin.program = base::VersionTitle();
  origin.begun = std::chrono::system_clock::now();
  for (const OptionId id :
       {OptionId::CurvatureSmallRangeTo, OptionId::CurvatureSmallRangeStep, OptionId::CurvatureLargeRangeTo,
        OptionId::CurvatureLargeRangeStep, OptionId::ConvergenceMaxIteration, OptionId::ConvergenceDiffWidth,
        OptionId::ConvergencePrecision, OptionId::TableSolver}) {
    const base::OptionKey& key = base::optionKey(id);
    origin.options.emplace_back(key.name,
                                settings.ProfileGetString(base::kOptionSection, key.name, key.defaultText));
  }
  return origin;
}

}  // namespace torvik::job
