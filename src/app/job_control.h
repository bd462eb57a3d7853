// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <array>
#include <functional>
#include <string>

#include "analysis/host.h"
#include "analysis/job_options.h"
#include "analysis/result_file.h"
#include "materials/confinement.h"
#include "model/objects.h"
#include "views/chart_window.h"
#include "views/table_window.h"

namespace torvik::app {

class MainWindow;
class ViewSink;

/// The result windows by kind; one of each at most.
struct ResultWindows {
  std::array<QPointer<views::TableWindow>, 5> tables;
  std::array<QPointer<views::ChartWindow>, 10> charts;
};

/// Starts, pauses and ends jobs, and is the host of the one that runs. The solver stands inside the click
/// that started it; the window lives on through `doEvents`.
class JobControl : public analysis::Host, public materials::ConfinementPrompt {
 public:
  /// Answers the questions of the materials from now on, within a job and outside.
  explicit JobControl(MainWindow& window);

  /// @param index  0 Start, 1 Pause of the menu, 2 End, 3 Pause of the tool bar
  void mnuFileJob_Click(int index);
  /// The step box got the focus: a running job pauses while the user edits the step.
  void pauseForStepBox();
  void showSectionParameters();
  /// Opens the chart of that kind, or brings the open one to the front.
  views::ChartWindow& openChart(views::ChartKind kind, const views::JobExtent& extent = {});
  /// `SetBeamExtent` of job tables, shown in the panels.
  void setBeamExtent(model::ObjectTables& job);

  /// True while the solver stands on the stack, also after the user's End until it has come back.
  [[nodiscard]] bool isRunning() const { return m_running; }
  /// Called once when the solver has come back.
  std::function<void()> whenOver;

  [[nodiscard]] const ResultWindows& windows() const { return m_windows; }

  // analysis::Host
  void doEvents() override;
  void reportMessage(const std::string& text) override;
  void showMessage(const std::string& text) override;
  void playSound(const std::string& file) override;
  void setPanel(analysis::Panel panel, const std::string& text) override;
  void setCount(int iteration, int outerIteration) override;
  std::string stepText() override;
  void setStepText(const std::string& text) override;
  void pause(analysis::PauseCause cause) override;
  // materials::ConfinementPrompt
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;

 private:
  void startJob();
  void openResultWindows(const model::ObjectTables& job, const base::ProfileFile& settings);
  void openTable(views::TableKind kind, const model::ObjectTables& job);
  void setRunning(bool pressed, const char* status);
  void showPanels();
  /// Before a box stops the job: what stands behind it is the present state.
  void showAll();

  MainWindow& m_window;
  ResultWindows m_windows;
  ViewSink* m_views = nullptr;                   ///< of the job that runs
  analysis::ResultFile* m_resultFile = nullptr;  ///< of the job that runs, where it has one
  bool m_running = false;
  QElapsedTimer m_sinceEvents;
  // What the job set since the panels were last shown.
  std::array<QString, 4> m_panelTexts;
  std::array<bool, 4> m_panelChanged{};
  int m_iteration = 0;
  int m_outerIteration = 0;
};

}  // namespace torvik::app
