// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "job/texts.h"
#include "run/run.h"
#include "section/search.h"

namespace torvik::job {

/// Who runs a job: a window, a batch, a test. Called on the job's own thread; what the job has found stands
/// in its run at each call. Only the user's end and the step box reach the job from here.
class Host {
 public:
  virtual ~Host() = default;

  /// An evaluation is about to be made. Both iterations count from 1; 0: no search stands around this one.
  virtual void count(int iteration, int outerIteration) = 0;

  // Places at which the job gives way. @return false: the job ends here, by the user

  /// Between two iterations of a search, and between two load steps.
  virtual bool proceed(run::Stage stage, section::Search search) = 0;
  /// One of the four searches before loading is done and its strains are taken over.
  virtual bool breakBeforeLoading() = 0;
  /// Within a row, behind its cell of the last crossing.
  virtual bool watchCrossed() = 0;

  /// A load step has found its balance; its row comes next.
  virtual void stepConverged() = 0;
  /// Tells the user while the job goes on.
  virtual void notice(Notice notice) = 0;

  /// The step box: "Small", "Large" or a number.
  virtual std::string stepText() = 0;
  /// The small range is over: "Large".
  virtual void setStepText(const std::string& text) = 0;
};

/// Nobody watches and nobody ends: nothing pauses, nothing is shown.
class UnattendedHost : public Host {
 public:
  /// @param step  of the step box
  explicit UnattendedHost(std::string step = "Small") : m_step(std::move(step)) {}

  void count(int, int) override {}
  bool proceed(run::Stage, section::Search) override { return true; }
  bool breakBeforeLoading() override { return true; }
  bool watchCrossed() override { return true; }
  void stepConverged() override {}
  void notice(Notice) override {}
  std::string stepText() override { return m_step; }
  void setStepText(const std::string& text) override { m_step = text; }

 private:
  std::string m_step;
};

}  // namespace torvik::job
