// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/table_window.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QPointer>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "base/files.h"
#include "base/title.h"
#include "widgets/shown_text.h"
#include "widgets/table_view.h"

namespace torvik::views {

namespace {
constexpr int kRowsAtFirst = 10;
constexpr int kWidestAtFirst = 720;
}  // namespace

TableWindow::TableWindow(Shell& shell, TableKind kind, std::shared_ptr<const run::Run> run)
    : ChildWindow(shell, QStringLiteral("frmTable"), static_cast<int>(kind)),
      m_table(new ResultTable(kind, std::move(run), this)),
      m_view(new widgets::TableView(this)),
      m_saveTableAs(new QAction(QStringLiteral("Sa&ve Table As..."), this)),
      m_fitColumns(new QAction(QStringLiteral("&Fit Column Widths"), this)) {
  setWindowTitle(ResultTable::title(kind));
  m_view->setModel(m_table);
  m_view->setFixedCaption(m_table->fixedCaption());
  m_view->setShortensNumbers(true);
  m_view->setFollowsGrowth(kind == TableKind::Solver);
  m_view->readColumnWidths(shell.readSettings(), objectName(), Tag());
  m_view->selectCells({0, 0, 0, 0});

  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_view);
  setFocusProxy(m_view);

  m_saveTableAs->setObjectName(QStringLiteral("mnuTableSaveAs"));
  m_fitColumns->setObjectName(QStringLiteral("mnuTableFitColumns"));
  connect(m_saveTableAs, &QAction::triggered, this, &TableWindow::saveTableAs);
  connect(m_fitColumns, &QAction::triggered, this, &TableWindow::fitAllColumns);
  connect(m_view, &widgets::TableView::copiedByKeyboard, this, [this] { this->shell().PasteOnEnter = true; });
}

ChildCommands TableWindow::commands() const {
  ChildCommands commands;
  commands.print = true;
  commands.copy = true;
  commands.selectAll = true;
  commands.originalColumnWidth = true;
  commands.chart = m_table->kind() == TableKind::Solver;
  return commands;
}

QList<QAction*> TableWindow::ownActions() {
  return {m_fitColumns, m_saveTableAs};
}

void TableWindow::copy() {
  m_table->follow();
  m_view->copySelection();
}

void TableWindow::selectAll() {
  m_table->follow();
  m_view->selectAll();
}

void TableWindow::originalColumnWidth() {
  m_view->resetSelectedColumnWidths();
}

void TableWindow::fitAllColumns() {
  m_table->follow();
  m_view->fitColumns(0, m_table->columnCount());
}

void TableWindow::unload() {
  shell().changeSettings([this](base::ProfileFile& settings) {
    saveLayout(settings);
    m_view->writeColumnWidths(settings, objectName(), Tag());
  });
}

void TableWindow::saveTableAs() {
  // "Table - Solid (Compression +)": the name is "Solid".
  const QString name = windowTitle().section(QStringLiteral(" - "), 1).section(QStringLiteral(" ("), 0, 0);
  shell().askSaveFile(QString::fromLatin1(base::kTitle) + QStringLiteral(" - Save Table As"),
                      name + QStringLiteral(".csv"),
                      QStringLiteral("Comma separated (*.csv);;"
                                     "Tab separated (*.tsv *.tab *.txt);;All Files (*)"),
                      [window = QPointer<TableWindow>(this)](const QString& path) {
                        if (window && !window->isUnloaded()) window->writeTable(path);
                      });
}

void TableWindow::writeTable(const QString& path) {
  const QString suffix = QFileInfo(path).suffix().toLower();
  const bool tabs =
      suffix == QLatin1String("tsv") || suffix == QLatin1String("tab") || suffix == QLatin1String("txt");
  try {
    base::replaceWholeFile(QFile::encodeName(path).toStdString(), m_table->text(tabs ? '\t' : ','));
  } catch (const base::InputError& error) {
    shell().notice(widgets::shownText(error.what()));
  }
}

QSize TableWindow::sizeHint() const {
  const int scrollBar = m_view->verticalScrollBar()->sizeHint().width();
  const int frame = 2 * m_view->frameWidth();
  const int rows = std::clamp(m_table->rowCount(), 3, kRowsAtFirst);
  const int width = m_view->verticalHeader()->minimumWidth() + m_view->horizontalHeader()->length();
  return {
      std::min(width + scrollBar + frame, kWidestAtFirst),
      m_view->horizontalHeader()->minimumHeight() + rows * m_view->standardRowHeight() + scrollBar + frame};
}

void TableWindow::showEvent(QShowEvent* event) {
  ChildWindow::showEvent(event);
  m_table->follow();
}

void TableWindow::contextMenuEvent(QContextMenuEvent* event) {
  popupMenuAt(event->globalPos());
  event->accept();
}

}  // namespace torvik::views
