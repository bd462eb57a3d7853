// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace torvik::analysis {

/// Text panels that a job or the section parameters write. The count panel has a call of its own.
enum class Panel { BeamTop, BeamBottom, Status, Mu };

enum class PauseCause {
  PreLoading,  ///< after a search of the first two stages: the button Pause is pressed, the menu is left
               ///< alone
  Watch,       ///< a watched strain was crossed: the menu entry Pause is checked as well
};

/// Who runs the job: a window, a batch, a test. Called on the job's own thread.
class Host {
 public:
  virtual ~Host() = default;

  /// Lets the window system run once. The only things that may change meanwhile are the run state and the
  /// step box.
  virtual void doEvents() = 0;

  /// `ReportMessage`: a message box, or a log line in a batch.
  virtual void reportMessage(const std::string& text) = 0;

  /// A message box with the information icon and the application's title.
  virtual void showMessage(const std::string& text) = 0;

  /// Starts a sound and returns. A missing file is no error.
  virtual void playSound(const std::string& file) = 0;

  virtual void setPanel(Panel panel, const std::string& text) = 0;

  /// The panel Count: "7", or "7/2" where a search runs inside another (`outerIteration` 0: it does not).
  virtual void setCount(int iteration, int outerIteration) = 0;

  /// The step box: "Small", "Large" or a number.
  virtual std::string stepText() = 0;
  virtual void setStepText(const std::string& text) = 0;

  /// Presses Pause for the job: panel Status "Pause", run state paused. A host without a user does nothing.
  virtual void pause(PauseCause cause) = 0;
};

}  // namespace torvik::analysis
