// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/view_sink.h"

#include <initializer_list>

#include "chart/control.h"

namespace torvik::app {

namespace {

using views::ChartKind;
using views::TableKind;

void setStrainWithoutLoad(views::ResultTable* table, const analysis::SectionState::Rows& rows) {
  if (table) table->setStrainWithoutLoad(rows.BaseStrain);
}

void setCurrent(views::ResultTable* table, const analysis::SectionState::Rows& rows) {
  if (table) table->setCurrent(rows.CurrentStrain, rows.CurrentStress, rows.CurrentForce);
}

}  // namespace

views::ResultTable* ViewSink::table(TableKind kind) const {
  const auto& window = m_windows.tables[static_cast<std::size_t>(kind)];
  return window && !window->isUnloaded() ? &window->table() : nullptr;
}

views::ChartWindow* ViewSink::chart(ChartKind kind) const {
  const auto& window = m_windows.charts[static_cast<std::size_t>(kind)];
  return window && !window->isUnloaded() ? window.data() : nullptr;
}

void ViewSink::sectionParameters(const analysis::SectionParameterTable& sections) {
  if (views::ResultTable* sectionTable = table(TableKind::SectionParameter))
    sectionTable->setSectionParameters(sections);
}

void ViewSink::strainWithoutLoad(const analysis::SectionState& state) {
  setStrainWithoutLoad(table(TableKind::Solid), state.solids());
  setStrainWithoutLoad(table(TableKind::Bar), state.bars());
  setStrainWithoutLoad(table(TableKind::Tendon), state.tendons());
}

void ViewSink::currentValues(const analysis::SectionState& state) {
  setCurrent(table(TableKind::Solid), state.solids());
  setCurrent(table(TableKind::Bar), state.bars());
  setCurrent(table(TableKind::Tendon), state.tendons());
  for (const ChartKind kind : {ChartKind::Stress, ChartKind::Strain})
    if (views::ChartWindow* window = chart(kind)) window->currentValues(state);
}

void ViewSink::beginRow(int Step) {
  if (views::ResultTable* solver = table(TableKind::Solver)) solver->beginRow(Step);
}

void ViewSink::cell(int column, double value) {
  if (views::ResultTable* solver = table(TableKind::Solver)) solver->cell(column, value);
}

void ViewSink::watchCrossed(const analysis::WatchCrossing& crossing) {
  if (views::ResultTable* solver = table(TableKind::Solver)) solver->watchCrossed(crossing.column);
}

void ViewSink::endRow() {
  if (views::ResultTable* solver = table(TableKind::Solver)) solver->endRow();
}

void ViewSink::loadStep(const analysis::LoadStep& step) {
  for (const ChartKind kind : {ChartKind::MomentCurvature, ChartKind::LoadDisplacement})
    if (views::ChartWindow* window = chart(kind)) window->loadStep(step);
  if (chart(ChartKind::Moment) || chart(ChartKind::Curvature) || chart(ChartKind::Displacement)) {
    m_beam = step.beam;
    m_piecesWaiting = true;
  }
}

void ViewSink::feedPieces() {
  if (!m_piecesWaiting) return;
  m_piecesWaiting = false;
  for (const ChartKind kind : {ChartKind::Moment, ChartKind::Curvature, ChartKind::Displacement})
    if (views::ChartWindow* window = chart(kind)) window->loadStep({0, 0, 0, *m_beam});
}

void ViewSink::beforeEvents() {
  feedPieces();
}

void ViewSink::flush() {
  feedPieces();
  for (const auto& window : m_windows.tables)
    if (window) window->table().flushNow();
  for (const auto& window : m_windows.charts)
    if (window) window->chart().flushNow();
}

}  // namespace torvik::app
