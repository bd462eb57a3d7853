// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/errors.h"
#include "base/profile.h"
#include "job/host.h"
#include "job/job_options.h"
#include "materials/confinement.h"
#include "model/objects.h"
#include "run/result_file.h"
#include "run/run.h"
#include "views/chart_window.h"
#include "views/table_window.h"

namespace torvik::app {

class MainWindow;

/// The result windows by kind; one of each at most.
struct ResultWindows {
  std::array<QPointer<views::TableWindow>, 5> tables;
  std::array<QPointer<views::ChartWindow>, 10> charts;
};

/// What a job does at its breaks, read once at its start.
struct Breaks {
  bool beepConvergence = true;
  bool pausePreLoading = false;
  bool pauseWatch = true;
  std::string convergenceSound;
  std::string pausePreLoadingSound;
  std::string pauseWatchSound;

  /// @throws InputError of the first key whose value its kind can not hold
  static Breaks read(const base::ProfileFile& settings);
};

/// Starts, pauses and ends jobs, and is the host of the one that runs. The solver stands inside the click
/// that started it; the window lives on while it gives way.
class JobControl : public job::Host, public materials::ConfinementPrompt {
 public:
  /// Answers the questions of the materials from now on, within a job and outside.
  explicit JobControl(MainWindow& window);

  /// @param index  0 Start, 1 Pause of the menu, 2 End, 3 Pause of the tool bar
  void mnuFileJob_Click(int index);
  /// The step box got the focus: a running job pauses while the user edits the step.
  void pauseForStepBox();
  void showSectionParameters();
  /// Opens the chart of that kind, or brings the open one to the front.
  /// @param run  what a new one follows; null: nothing
  views::ChartWindow& openChart(views::ChartKind kind, std::shared_ptr<const run::Run> run = nullptr);
  /// Shows the edges of the section in the panels.
  void showExtent(const section::Extent& extent);

  /// True while the solver stands on the stack, also after the user's End until it has come back.
  [[nodiscard]] bool isRunning() const { return m_running; }
  /// Called once when the solver has come back.
  std::function<void()> whenOver;

  // job::Host
  void count(int iteration, int outerIteration) override;
  bool proceed(run::Stage stage, section::Search search) override;
  bool breakBeforeLoading() override;
  bool watchCrossed() override;
  void stepConverged() override;
  void notice(job::Notice notice) override;
  std::string stepText() override;
  void setStepText(const std::string& text) override;
  // materials::ConfinementPrompt
  void showMessage(const std::string& text) override;
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;

 private:
  enum class PauseCause {
    PreLoading,  ///< the button Pause is pressed, the menu is left alone
    Watch,       ///< the menu entry Pause is checked as well
  };

  void startJob();
  /// Performs the job of a new run, with its windows and its file. @param resultFile  null: none
  void perform(const std::shared_ptr<run::Run>& run, const job::JobOptions& options,
               const base::ProfileFile& settings, run::ResultFile* resultFile);
  void openResultWindows(const std::shared_ptr<const run::Run>& run, const base::ProfileFile& settings);
  void openTable(views::TableKind kind, const std::shared_ptr<const run::Run>& run);
  /// `ReportMessage`: a message box, or a log line in a batch.
  void reportMessage(const std::string& text);
  void playSound(const std::string& file);

  void setRunning(bool pressed, const char* status);
  void pause(PauseCause cause);
  /// @return false: the job is to end
  bool waitWhilePaused();
  /// Lets the window's events run.
  void doEvents();

  void showPanels();
  /// Once a frame: the windows take what the run has gained.
  void showFrame();
  /// Before a box or a pause: what the user sees is the present state. A result file that can not be written
  /// ends the job at its next yield.
  void showAll();
  void throwFileFailure();

  MainWindow& m_window;
  ResultWindows m_windows;
  bool m_running = false;
  QElapsedTimer m_sinceEvents;
  QElapsedTimer m_sinceFrame;
  qint64 m_frame = 0;  ///< the windows are brought up to date this often [ms]

  // Of the job that runs.
  Breaks m_breaks;
  std::shared_ptr<const run::Run> m_run;
  run::ResultFile* m_resultFile = nullptr;
  std::optional<base::InputError> m_fileFailure;  ///< that the job has yet to be told
  const char* m_status = nullptr;                 ///< of the search at work; null: the panel stands as it is
  int m_iteration = 0;
  int m_outerIteration = 0;
};

}  // namespace torvik::app
