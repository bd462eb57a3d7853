// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include "analysis/host.h"
#include "analysis/run_state.h"
#include "materials/confinement.h"

namespace torvik::batch {

/// Runs a job without a user: pauses do not wait, sounds and panels are left out, messages go to one
/// receiver, and the questions of the confined law are answered from the command line.
class BatchHost : public analysis::Host, public materials::ConfinementPrompt {
 public:
  BatchHost(const std::atomic<bool>& endRequested, std::string step, std::optional<std::string> shape,
            std::optional<std::string> tieStress);

  analysis::RunControl control{analysis::RunState::Running};
  /// Gets every message as it comes.
  std::function<void(const std::string&)> tell;
  /// Gets, besides, what the user must see even where another message comes behind it.
  std::function<void(const std::string&)> warn = [](const std::string&) {};

  void doEvents() override;
  void reportMessage(const std::string& text) override { tell(text); }
  void showMessage(const std::string& text) override;
  void playSound(const std::string&) override {}
  void setPanel(analysis::Panel, const std::string&) override {}
  void setCount(int, int) override {}
  std::string stepText() override { return m_step; }
  void setStepText(const std::string& text) override { m_step = text; }
  void pause(analysis::PauseCause) override {}

  /// @throws InputError naming both options where the answer is missing
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;

 private:
  const std::atomic<bool>& m_endRequested;
  std::string m_step;
  std::optional<std::string> m_shape;
  std::optional<std::string> m_tieStress;
};

}  // namespace torvik::batch
