// SPDX-License-Identifier: GPL-3.0-or-later
// The Object menu: grids, default rows, the wizard, curves and figures.
#include <algorithm>

#include "app/job_control.h"
#include "app/main_window.h"
#include "app/object_charts.h"
#include "base/errors.h"
#include "base/number_text.h"
#include "grid/grid_window.h"
#include "model/default_rows.h"
#include "wizard/solid_dialog.h"

namespace torvik::app {

bool MainWindow::storeGrids() {
  const QList<views::ChildWindow*> open = children();
  return std::all_of(open.begin(), open.end(), [](views::ChildWindow* child) { return child->writeBack(); });
}

grid::GridWindow* MainWindow::gridOf(model::ObjectKind kind) const {
  for (views::ChildWindow* child : children())
    if (auto* grid = qobject_cast<grid::GridWindow*>(child); grid && grid->grid().kind() == kind) return grid;
  return nullptr;
}

grid::GridWindow* MainWindow::activeGrid() const {
  return qobject_cast<grid::GridWindow*>(m_active);
}

void MainWindow::mnuObjectSetting_Click(int index) {
  const auto kind = static_cast<model::ObjectKind>(index);
  grid::GridWindow* open = gridOf(kind);
  if (!open)
    addChild(new grid::GridWindow(*this, m_program.document, kind));
  else if (open != activeGrid())
    activate(open);
  else if (kind == model::ObjectKind::Solid)
    addSolids(*open);
  else
    addDefaultRow(*open);
}

void MainWindow::addSolids(grid::GridWindow& grid) {
  const QPointer<grid::GridWindow> stillOpen = &grid;
  wizard::SolidDialog dialog(
      *this, m_program.document, [this](const QString& topic) { showHelp(topic); }, this);
  dialog.exec();
  if (dialog.failureNumber() == 0 && stillOpen) grid.append(dialog.generated());
}

void MainWindow::addDefaultRow(grid::GridWindow& grid) {
  model::ObjectTables rows;
  model::AddDefaultRows(rows, grid.grid().kind(), 1, readSettings());
  grid.append(rows);
}

void MainWindow::mnuObjectSetDefault_Click() {
  const grid::GridWindow* window = activeGrid();
  if (!window || !ask("Make the current row to be default ?")) return;
  const grid::ObjectGrid& grid = window->grid();
  std::vector<model::DefaultCell> cells;
  for (int column = 0; const grid::Column& c : grid::columnsOf(grid.kind())) {
    const std::string& text = grid.text(window->currentRow(), column);
    if (grid.isUnreadable(window->currentRow(), column++) && c.cell != grid::CellKind::Flag)
      throw base::InputError(std::string(c.caption) + " \"" + text + "\": expected a number");
    cells.push_back(
        {c.key, c.cell == grid::CellKind::Flag ? base::plainText(grid::FlagFromCellText(text)) : text});
  }
  // Not by way of `changeSettings`: a default that is not stored is to be told.
  base::ProfileFile settings = readSettings();
  model::writeDefaultRow(settings, grid.kind(), cells);
  settings.save(m_program.settingsFile);
}

void MainWindow::mnuObjectSectionParameter_Click() {
  if (storeGrids()) m_job->showSectionParameters();
}

void MainWindow::mnuObjectChart_Click() {
  if (auto* table = qobject_cast<views::TableWindow*>(m_active))
    rebuildResultCharts(*m_job, table->table().run());
  else if (const grid::GridWindow* window = activeGrid())
    showStressStrainCurve(*this, *m_job, window->grid().kind(),
                          window->grid().rowAsTables(window->currentRow()));
}

void MainWindow::mnuObjectFigure_Click() {
  showFigures(*this, *m_job);
}

}  // namespace torvik::app
