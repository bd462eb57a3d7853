// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/job_control.h"

#include <QAction>
#include <QCoreApplication>
#include <QFile>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "app/arrange.h"
#include "app/main_window.h"
#include "base/files.h"
#include "base/number_text.h"
#include "base/settings.h"
#include "base/title.h"
#include "chart/control.h"
#include "job/job.h"
#include "run/log_file.h"
#include "section/section_parameters.h"
#include "widgets/shown_text.h"

namespace torvik::app {

namespace {

using base::OptionId;
using job::JobState;

// Taking what is new may take one part in so many of the time.
constexpr qint64 kShareOfTime = 12;

}  // namespace

Breaks Breaks::read(const base::ProfileFile& settings) {
  Breaks breaks;
  breaks.beepConvergence = base::optionFlag(settings, OptionId::MessagesBeepConvergence);
  breaks.pausePreLoading = base::optionFlag(settings, OptionId::MessagesPausePreLoading);
  breaks.pauseWatch = base::optionFlag(settings, OptionId::MessagesPauseWatch);
  breaks.convergenceSound = base::optionText(settings, OptionId::MessagesBeepConvergenceSound);
  breaks.pausePreLoadingSound = base::optionText(settings, OptionId::MessagesPausePreLoadingSound);
  breaks.pauseWatchSound = base::optionText(settings, OptionId::MessagesPauseWatchSound);
  return breaks;
}

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
      program.steering.state = JobState::Running;
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
      m_window.panels().setPanel("Status", "Waiting");
      program.steering.state = JobState::Over;
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
      program.steering.state = JobState::Over;
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
  m_status = nullptr;
  m_window.panels().setPanel("Status", status);
  m_window.program().steering.state = pressed ? JobState::Paused : JobState::Running;
  m_window.RefreshCommandState();
}

void JobControl::pauseForStepBox() {
  if (m_window.program().steering.state != JobState::Running) return;
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
  const job::JobOptions options = job::JobOptions::read(settings);
  m_breaks = Breaks::read(settings);

  std::unique_ptr<run::ResultFile> resultFile;
  if (base::optionFlag(settings, OptionId::FileSolver) || program.BatchMode) {
    const std::string path = run::resultFileName(program.document.currentFile);
    if (base::isFile(path) &&
        !program.dialogs->question(
            QString("\"%1\" already exists.\rOverwrite ?").arg(widgets::shownText(path)), base::kTitle))
      return;
    resultFile = std::make_unique<run::ResultFile>(path, run::resultHeadings(job.tables),
                                                   run::ResultFile::Existing::Replace);
  }
  if (base::optionFlag(settings, OptionId::MessagesBeepStart))
    playSound(base::optionText(settings, OptionId::MessagesBeepStartSound));

  const auto run = std::make_shared<run::Run>(
      std::move(job.tables),
      job::originOf(program.document.currentFile, program.document.isChanged(), settings));
  program.run = run;
  std::exception_ptr failure;  // the end sound follows in every case
  try {
    perform(run, options, settings, resultFile.get());
    if (resultFile) resultFile->close();
  } catch (const std::exception&) {
    failure = std::current_exception();
  }
  for (views::ChildWindow* child : m_window.children()) child->catchUp();
  showPanels();
  m_run = nullptr;
  m_resultFile = nullptr;
  if (base::optionFlag(settings, OptionId::MessagesBeepEnd))
    playSound(base::optionText(settings, OptionId::MessagesBeepEndSound));
  if (failure) std::rethrow_exception(failure);
}

void JobControl::perform(const std::shared_ptr<run::Run>& run, const job::JobOptions& options,
                         const base::ProfileFile& settings, run::ResultFile* resultFile) {
  openResultWindows(run, settings);
  arrange(m_window.area(), static_cast<Arrangement>(base::optionInteger(settings, OptionId::WindowArrange)));

  std::vector<run::RowReader*> readers;
  if (resultFile) readers.push_back(resultFile);
  run::RunWriter writer(*run, readers);
  m_run = run;
  m_resultFile = resultFile;
  m_fileFailure.reset();
  m_iteration = 0;
  m_frame = 0;
  m_sinceEvents.start();
  m_sinceFrame.start();
  const run::End& end = job::runJob(options, *this, writer, m_window.program().context);
  if (!end.message.empty()) reportMessage(end.message);
  throwFileFailure();
}

void JobControl::openResultWindows(const std::shared_ptr<const run::Run>& run,
                                   const base::ProfileFile& settings) {
  const model::ObjectTables& job = run->job();
  const auto on = [&](OptionId id) { return base::optionFlag(settings, id); };
  if (on(OptionId::TableTendon) && !job.Tendons.empty()) openTable(views::TableKind::Tendon, run);
  if (on(OptionId::TableBar) && !job.Bars.empty()) openTable(views::TableKind::Bar, run);
  if (on(OptionId::TableSolid) && !job.Solids.empty()) openTable(views::TableKind::Solid, run);
  if (on(OptionId::TableSection)) openTable(views::TableKind::SectionParameter, run);
  if (on(OptionId::TableSolver)) openTable(views::TableKind::Solver, run);
  using views::ChartKind;
  const std::pair<OptionId, ChartKind> kCharts[] = {
      {OptionId::ChartDisplacement, ChartKind::Displacement},
      {OptionId::ChartCurvature, ChartKind::Curvature},
      {OptionId::ChartMoment, ChartKind::Moment},
      {OptionId::ChartStrain, ChartKind::Strain},
      {OptionId::ChartStress, ChartKind::Stress},
      {OptionId::ChartLoadDisplacement, ChartKind::LoadDisplacement},
      {OptionId::ChartMomentCurvature, ChartKind::MomentCurvature}};
  for (const auto& [id, kind] : kCharts)
    if (on(id)) openChart(kind, run);
}

void JobControl::openTable(views::TableKind kind, const std::shared_ptr<const run::Run>& run) {
  QPointer<views::TableWindow>& slot = m_windows.tables[static_cast<std::size_t>(kind)];
  if (!slot || slot->isUnloaded()) {
    slot = new views::TableWindow(m_window, kind, run);
    m_window.addChild(slot);
  } else {
    m_window.activate(slot);
  }
}

views::ChartWindow& JobControl::openChart(views::ChartKind kind, std::shared_ptr<const run::Run> run) {
  QPointer<views::ChartWindow>& slot = m_windows.charts[static_cast<std::size_t>(kind)];
  if (!slot || slot->isUnloaded()) {
    slot = new views::ChartWindow(m_window, static_cast<int>(kind), std::move(run));
    m_window.addChild(slot);
  } else {
    m_window.activate(slot);
  }
  return *slot;
}

void JobControl::showExtent(const section::Extent& extent) {
  m_window.panels().setPanel("Beam Top", QString::fromStdString(base::scientificText(extent.BeamTop)));
  m_window.panels().setPanel("Beam Bottom", QString::fromStdString(base::scientificText(extent.BeamBottom)));
}

void JobControl::showSectionParameters() {
  model::JobTables job = model::BuildJobTables(m_window.program().document.tables);
  if (!job.hasBeam() || !job.hasSection()) {
    showMessage(std::string(model::kInsufficientObjects));
    return;
  }
  const section::SectionParameterResult sections = section::SectionParameters(job.tables);
  const auto run = std::make_shared<run::Run>(std::move(job.tables), run::Origin{});
  // A table that stands open keeps what it shows until all is known.
  openTable(views::TableKind::SectionParameter, run);
  if (sections.extent) showExtent(*sections.extent);
  if (sections.isWithoutModulus) showMessage(job::textOf(job::Notice::WithoutModulus));
  if (sections.fault) throw *sections.fault;
  run::RunWriter(*run).sectionParameters(sections.table);
  m_windows.tables[static_cast<std::size_t>(views::TableKind::SectionParameter)]->table().show(run);
}

// ---- Host

void JobControl::count(int iteration, int outerIteration) {
  m_iteration = iteration;
  m_outerIteration = outerIteration;
}

bool JobControl::proceed(run::Stage stage, section::Search search) {
  throwFileFailure();
  if (!waitWhilePaused()) return false;
  m_status = job::statusOf(stage, search);
  doEvents();
  return true;
}

bool JobControl::breakBeforeLoading() {
  playSound(m_breaks.pausePreLoadingSound);  // whatever the option says
  if (!m_breaks.pausePreLoading) return true;
  pause(PauseCause::PreLoading);
  return waitWhilePaused();
}

bool JobControl::watchCrossed() {
  playSound(m_breaks.pauseWatchSound);
  if (!m_breaks.pauseWatch) return true;
  pause(PauseCause::Watch);
  if (!waitWhilePaused()) return false;
  m_status = job::statusOf(run::Stage::Loading, section::Search::Loading);
  return true;
}

void JobControl::stepConverged() {
  if (m_breaks.beepConvergence) playSound(m_breaks.convergenceSound);
}

void JobControl::notice(job::Notice notice) {
  showMessage(job::textOf(notice));
}

bool JobControl::waitWhilePaused() {
  return job::WaitWhilePaused(m_window.program().steering, [this] { doEvents(); });
}

void JobControl::doEvents() {
  const bool paused = m_window.program().steering.state == JobState::Paused;
  if (!paused && m_sinceEvents.elapsed() < m_window.program().pace.events) return;
  if (paused)
    showAll();
  else
    showFrame();
  QCoreApplication::processEvents(paused ? QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents
                                         : QEventLoop::AllEvents);
  m_sinceEvents.start();
}

void JobControl::showFrame() {
  if (m_sinceFrame.elapsed() < m_frame) return;
  QElapsedTimer clock;
  clock.start();
  for (views::ChildWindow* child : m_window.children())
    if (child->isVisible()) child->catchUp();
  showPanels();
  m_frame = std::max<qint64>(m_window.program().pace.frame, kShareOfTime * clock.elapsed());
  m_sinceFrame.start();
}

void JobControl::showAll() {
  for (views::ChildWindow* child : m_window.children()) {
    child->catchUp();
    if (auto* const chart = qobject_cast<views::ChartWindow*>(child)) chart->chart().flushNow();
  }
  try {
    if (m_resultFile) m_resultFile->flush();
  } catch (const base::InputError& error) {
    m_fileFailure = error;  // what is being shown comes first
  }
  showPanels();
}

void JobControl::throwFileFailure() {
  if (const auto failure = std::exchange(m_fileFailure, std::nullopt)) throw *failure;
}

void JobControl::showPanels() {
  StatusPanels& panels = m_window.panels();
  if (!m_run) return;
  if (m_run->extent()) showExtent(*m_run->extent());
  if (m_status) panels.setPanel("Status", m_status);
  if (m_run->peakMoment())
    panels.setPanel("Mu", QString::fromStdString(base::scientificText(*m_run->peakMoment())));
  if (m_iteration > 0)
    panels.setPanel("Count", m_outerIteration > 0 ? QString("%1/%2").arg(m_iteration).arg(m_outerIteration)
                                                  : QString::number(m_iteration));
}

void JobControl::reportMessage(const std::string& text) {
  if (!m_window.program().BatchMode) {
    showMessage(text);
    return;
  }
  try {
    run::appendLogLine(run::logFileName(m_window.program().document.currentFile), text);
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

std::string JobControl::stepText() {
  return m_window.stepBox().currentText().toStdString();
}

void JobControl::setStepText(const std::string& text) {
  m_window.stepBox().setEditText(QString::fromStdString(text));
}

void JobControl::pause(PauseCause cause) {
  if (m_window.program().steering.state == JobState::Over) return;  // the user's End came first
  if (cause == PauseCause::Watch) m_window.menuAction("mnuFileJob", 1).setChecked(true);
  m_window.toolAction("Pause").setChecked(true);
  m_status = nullptr;
  m_window.panels().setPanel("Status", "Pause");
  m_window.program().steering.state = JobState::Paused;
}

std::string JobControl::inputBox(const std::string& prompt, const std::string& title,
                                 const std::string& defaultText) {
  showAll();
  return m_window.program()
      .dialogs->input(widgets::shownText(prompt), widgets::shownText(title), widgets::shownText(defaultText))
      .toStdString();
}

}  // namespace torvik::app
