// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/sink.h"

#include "base/number_text.h"

namespace torvik::analysis {

std::vector<std::string> resultHeadings(const model::ObjectTables& job) {
  std::vector<std::string> headings = {"Load",      "Displacement",       "Moment",
                                       "Curvature", "Neutral Axis Depth", "Compression Force"};
  const auto addStrains = [&](const char* name, const auto& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (rows[i].Output == 1) headings.push_back(name + base::plainText(static_cast<long long>(i) + 1));
  };
  addStrains("Solid Strain ", job.Solids);
  addStrains("Bar Strain ", job.Bars);
  addStrains("Tendon Strain ", job.Tendons);
  return headings;
}

}  // namespace torvik::analysis
