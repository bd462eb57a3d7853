// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/batch_host.h"

#include <utility>

#include "base/errors.h"

namespace torvik::batch {

BatchHost::BatchHost(const std::atomic<bool>& endRequested, std::string step,
                     std::optional<std::string> shape, std::optional<std::string> tieStress)
    : m_endRequested(endRequested),
      m_step(std::move(step)),
      m_shape(std::move(shape)),
      m_tieStress(std::move(tieStress)) {}

void BatchHost::doEvents() {
  if (m_endRequested.load(std::memory_order_relaxed)) control.state = analysis::RunState::Over;
}

void BatchHost::showMessage(const std::string& text) {
  // The confined law's dialogue is answered by options that say the same.
  if (!text.starts_with("Warning:")) return;
  tell(text);
  warn(text);
}

std::string BatchHost::inputBox(const std::string&, const std::string& title, const std::string&) {
  const std::optional<std::string>& answer = title == "Section Shape" ? m_shape : m_tieStress;
  if (answer) return *answer;
  throw base::InputError(
      "\"Restoration (Confined)\" asks for the section shape and the yield stress of the ties: "
      "answer with --shape r|c and --tie-stress N.");
}

}  // namespace torvik::batch
