// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/job_control.h"

#include <QAction>
#include <QCoreApplication>
#include <QFile>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "analysis/job.h"
#include "analysis/log_file.h"
#include "analysis/result_file.h"
#include "app/arrange.h"
#include "app/main_window.h"
#include "app/view_sink.h"
#include "base/files.h"
#include "base/settings.h"
#include "base/title.h"
#include "widgets/shown_text.h"

namespace torvik::app {

namespace {

using analysis::Panel;
using analysis::RunState;
using base::OptionId;

// The window's events run this often while a job computes [ms]: often enough for every frame and every click.
constexpr qint64 kEventInterval = 10;

const char* const kPanelKeys[] = {"Beam Top", "Beam Bottom", "Status", "Mu"};

}  // namespace

JobControl::JobControl(MainWindow& window) : m_window(window) {
  materials::StressStrainContext& context = window.program().context;
  context.prompt = this;
  context.report = [this](const std::string& caption, const std::string& text) {
    showAll();
    m_window.program().dialogs->information(widgets::shownText(text), widgets::shownText(caption));
  };
}

void JobControl::mnuFileJob_Click(int index) {
  Program& program = m_window.program();
  QAction& button = m_window.toolAction("Pause");
  QAction& entry = m_window.menuAction("mnuFileJob", 1);
  switch (index) {
    case 0: {
      if (m_running) return;
      m_running = true;
      m_window.panels().setPanel("Status", "Start");
      program.run.state = RunState::Running;
      m_window.RefreshCommandState();
      std::exception_ptr failure;
      try {
        startJob();
      } catch (const std::exception& error) {
        if (program.BatchMode)
          reportMessage(error.what());
        else
          failure = std::current_exception();
      }
      showPanels();
      m_window.panels().setPanel("Status", "Waiting");
      program.run.state = RunState::Over;
      m_running = false;
      button.setChecked(false);  // a search may have failed while the job was to pause
      for (views::ChildWindow* child : m_window.children()) child->setClosable(true);
      m_window.RefreshCommandState();
      if (const auto call = std::exchange(whenOver, nullptr)) call();
      if (failure) std::rethrow_exception(failure);
      return;
    }
    case 1:  // the click has turned the entry's check mark over
      button.setChecked(!button.isChecked());
      setRunning(button.isChecked(), button.isChecked() ? "Pause" : "Start");
      return;
    case 2:
      showAll();
      if (!program.dialogs->question("End calculation ?", base::kTitle)) return;
      button.setChecked(false);
      m_window.panels().setPanel("Status", "Waiting");
      program.run.state = RunState::Over;
      m_window.RefreshCommandState();
      return;
    case 3:  // the click has changed the button already
      entry.setChecked(!entry.isChecked());
      setRunning(button.isChecked(), button.isChecked() ? "Pause" : "Start");
      return;
    default:
      throw base::InternalError(base::kImpossibleCase, "job command");
  }
}

void JobControl::setRunning(bool pressed, const char* status) {
  m_panelChanged[static_cast<std::size_t>(Panel::Status)] = false;
  m_window.panels().setPanel("Status", status);
  m_window.program().run.state = pressed ? RunState::Paused : RunState::Running;
  m_window.RefreshCommandState();
}

void JobControl::pauseForStepBox() {
  if (m_window.program().run.state != RunState::Running) return;
  m_window.menuAction("mnuFileJob", 1).setChecked(true);
  m_window.toolAction("Pause").setChecked(true);
  setRunning(true, "Pause");
}

void JobControl::startJob() {
  Program& program = m_window.program();
  const base::ProfileFile settings = m_window.readSettings();
  if (!m_window.closeAllChildren()) return;
  model::JobTables job = model::BuildJobTables(program.document.tables);
  if (!job.hasBeam() || !job.hasSection()) {
    showMessage(std::string(model::kInsufficientObjects));
    return;
  }
  const analysis::JobOptions options = analysis::JobOptions::read(settings);

  std::unique_ptr<analysis::ResultFile> resultFile;
  if (options.fileSolver || program.BatchMode) {
    const std::string path = analysis::resultFileName(program.document.currentFile);
    if (base::isFile(path) &&
        !program.dialogs->question(
            QString("\"%1\" already exists.\rOverwrite ?").arg(widgets::shownText(path)), base::kTitle))
      return;
    resultFile = std::make_unique<analysis::ResultFile>(path, analysis::resultHeadings(job.tables),
                                                        analysis::ResultFile::Existing::Replace);
  }
  if (base::optionFlag(settings, OptionId::MessagesBeepStart))
    playSound(base::optionText(settings, OptionId::MessagesBeepStartSound));

  std::exception_ptr failure;  // the end sound follows in every case
  try {
    openResultWindows(job.tables, settings);
    arrange(m_window.area(),
            static_cast<Arrangement>(base::optionInteger(settings, OptionId::WindowArrange)));

    ViewSink views(m_windows);
    std::vector<analysis::Sink*> sinks = {&views};
    if (resultFile) sinks.push_back(resultFile.get());
    m_sinceEvents.start();
    m_views = &views;
    m_resultFile = resultFile.get();
    analysis::runJob(job.tables, options, program.run, *this, sinks, program.context);
    m_views = nullptr;
    m_resultFile = nullptr;
    views.flush();

    if (resultFile) resultFile->close();
  } catch (const std::exception&) {
    m_views = nullptr;
    m_resultFile = nullptr;
    failure = std::current_exception();
  }
  if (base::optionFlag(settings, OptionId::MessagesBeepEnd))
    playSound(base::optionText(settings, OptionId::MessagesBeepEndSound));
  if (failure) std::rethrow_exception(failure);
}

void JobControl::openResultWindows(const model::ObjectTables& job, const base::ProfileFile& settings) {
  const auto on = [&](OptionId id) { return base::optionFlag(settings, id); };
  if (on(OptionId::TableTendon) && !job.Tendons.empty()) openTable(views::TableKind::Tendon, job);
  if (on(OptionId::TableBar) && !job.Bars.empty()) openTable(views::TableKind::Bar, job);
  if (on(OptionId::TableSolid) && !job.Solids.empty()) openTable(views::TableKind::Solid, job);
  if (on(OptionId::TableSection)) openTable(views::TableKind::SectionParameter, job);
  if (on(OptionId::TableSolver)) openTable(views::TableKind::Solver, job);
  using views::ChartKind;
  const std::pair<OptionId, ChartKind> kCharts[] = {
      {OptionId::ChartDisplacement, ChartKind::Displacement},
      {OptionId::ChartCurvature, ChartKind::Curvature},
      {OptionId::ChartMoment, ChartKind::Moment},
      {OptionId::ChartStrain, ChartKind::Strain},
      {OptionId::ChartStress, ChartKind::Stress},
      {OptionId::ChartLoadDisplacement, ChartKind::LoadDisplacement},
      {OptionId::ChartMomentCurvature, ChartKind::MomentCurvature}};
  const views::JobExtent extent{job.Solids.size(), job.Bars.size(), job.Tendons.size(),
                                job.Beams.front().HalfSpanFiberNumber};
  for (const auto& [id, kind] : kCharts)
    if (on(id)) openChart(kind, extent);
}

void JobControl::openTable(views::TableKind kind, const model::ObjectTables& job) {
  QPointer<views::TableWindow>& slot = m_windows.tables[static_cast<std::size_t>(kind)];
  if (!slot || slot->isUnloaded()) {
    slot = new views::TableWindow(m_window, kind, job);
    m_window.addChild(slot);
  } else {
    m_window.activate(slot);
  }
}

views::ChartWindow& JobControl::openChart(views::ChartKind kind, const views::JobExtent& extent) {
  QPointer<views::ChartWindow>& slot = m_windows.charts[static_cast<std::size_t>(kind)];
  if (!slot || slot->isUnloaded()) {
    slot = new views::ChartWindow(m_window, static_cast<int>(kind), extent);
    m_window.addChild(slot);
  } else {
    m_window.activate(slot);
  }
  return *slot;
}

void JobControl::setBeamExtent(model::ObjectTables& job) {
  analysis::SetBeamExtent(job, *this);
  showPanels();
}

void JobControl::showSectionParameters() {
  model::JobTables job = model::BuildJobTables(m_window.program().document.tables);
  if (!job.hasBeam() || !job.hasSection()) {
    showMessage(std::string(model::kInsufficientObjects));
    return;
  }
  openTable(views::TableKind::SectionParameter, job.tables);
  ViewSink views(m_windows);
  views.sectionParameters(analysis::SectionParameters(job.tables, *this));
  views.flush();
  showPanels();
}

// ---- Host
// ----------------------------------------------------------------------------------------------------

void JobControl::doEvents() {
  const bool paused = m_window.program().run.state == RunState::Paused;
  if (!paused && m_sinceEvents.elapsed() < kEventInterval) return;
  if (m_views) m_views->beforeEvents();
  if (paused && m_resultFile) m_resultFile->flush();
  showPanels();
  QCoreApplication::processEvents(paused ? QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents
                                         : QEventLoop::AllEvents);
  m_sinceEvents.start();
}

void JobControl::showAll() {
  if (m_views) m_views->flush();
  if (m_resultFile) m_resultFile->flush();
  showPanels();
}

void JobControl::showPanels() {
  for (std::size_t i = 0; i < m_panelTexts.size(); ++i)
    if (std::exchange(m_panelChanged[i], false)) m_window.panels().setPanel(kPanelKeys[i], m_panelTexts[i]);
  if (m_iteration > 0)
    m_window.panels().setPanel("Count", m_outerIteration > 0
                                            ? QString("%1/%2").arg(m_iteration).arg(m_outerIteration)
                                            : QString::number(m_iteration));
}

void JobControl::reportMessage(const std::string& text) {
  if (!m_window.program().BatchMode) {
    showMessage(text);
    return;
  }
  try {
    analysis::appendLogLine(analysis::logFileName(m_window.program().document.currentFile), text);
  } catch (const base::InputError& error) {
    showMessage(text + "\r" + error.what());  // where no log can be written, a box has to do
  }
}

void JobControl::showMessage(const std::string& text) {
  showAll();
  m_window.program().dialogs->information(widgets::shownText(text), base::kTitle);
}

void JobControl::playSound(const std::string& file) {
  m_window.program().sounds->play(QString::fromStdString(file));
}

void JobControl::setPanel(Panel panel, const std::string& text) {
  const auto index = static_cast<std::size_t>(panel);
  m_panelTexts[index] = QString::fromStdString(text);
  m_panelChanged[index] = true;
}

void JobControl::setCount(int iteration, int outerIteration) {
  m_iteration = iteration;
  m_outerIteration = outerIteration;
}

std::string JobControl::stepText() {
  return m_window.stepBox().currentText().toStdString();
}

void JobControl::setStepText(const std::string& text) {
  m_window.stepBox().setEditText(QString::fromStdString(text));
}

void JobControl::pause(analysis::PauseCause cause) {
  if (m_window.program().run.state == RunState::Over) return;  // the user's End came first
  if (cause == analysis::PauseCause::Watch) m_window.menuAction("mnuFileJob", 1).setChecked(true);
  m_window.toolAction("Pause").setChecked(true);
  setPanel(Panel::Status, "Pause");
  showPanels();
  m_window.program().run.state = RunState::Paused;
}

std::string JobControl::inputBox(const std::string& prompt, const std::string& title,
                                 const std::string& defaultText) {
  showAll();
  return m_window.program()
      .dialogs->input(widgets::shownText(prompt), widgets::shownText(title), widgets::shownText(defaultText))
      .toStdString();
}

}  // namespace torvik::app
