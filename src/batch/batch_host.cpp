// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/batch_host.h"

#include <utility>

#include "base/errors.h"

namespace torvik::batch {

BatchHost::BatchHost(const std::atomic<bool>& endRequested, std::string step,
                     std::optional<std::string> shape, std::optional<std::string> tieStress)
    : job::UnattendedHost(std::move(step)),
      m_endRequested(endRequested),
      m_shape(std::move(shape)),
      m_tieStress(std::move(tieStress)) {}

bool BatchHost::proceed(run::Stage, section::Search) {
  progress();
  return !m_endRequested.load(std::memory_order_relaxed);
}

void BatchHost::notice(job::Notice notice) {
  tell(job::textOf(notice));
  warn(job::textOf(notice));
}

std::string BatchHost::inputBox(const std::string&, const std::string& title, const std::string&) {
  const std::optional<std::string>& answer = title == "Section Shape" ? m_shape : m_tieStress;
  if (answer) return *answer;
  throw base::InputError(
      "\"Restoration (Confined)\" asks for the section shape and the yield stress of the ties: "
      "answer with --shape r|c and --tie-stress N.");
}

}  // namespace torvik::batch
