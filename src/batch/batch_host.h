// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include "job/host.h"
#include "materials/confinement.h"

namespace torvik::batch {

/// Runs a job without a user: messages go to one receiver, and the questions of the confined law are answered
/// from the command line.
class BatchHost : public job::UnattendedHost, public materials::ConfinementPrompt {
 public:
  BatchHost(const std::atomic<bool>& endRequested, std::string step, std::optional<std::string> shape,
            std::optional<std::string> tieStress);

  /// Gets every message as it comes.
  std::function<void(const std::string&)> tell;
  /// Gets, besides, what the user must see even where another message comes behind it.
  std::function<void(const std::string&)> warn = [](const std::string&) {};

  /// Called between two iterations.
  std::function<void()> progress = [] {};

  bool proceed(run::Stage, section::Search) override;
  void notice(job::Notice notice) override;

  // materials::ConfinementPrompt
  /// The dialogue around the questions: the options that answer them say the same.
  void showMessage(const std::string&) override {}
  /// @throws InputError naming both options where the answer is missing
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;

 private:
  const std::atomic<bool>& m_endRequested;
  std::optional<std::string> m_shape;
  std::optional<std::string> m_tieStress;
};

}  // namespace torvik::batch
