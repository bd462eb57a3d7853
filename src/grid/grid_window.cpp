// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/grid_window.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QScrollBar>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/title.h"
#include "grid/grid_model.h"
#include "widgets/shown_text.h"
#include "widgets/table_view.h"

namespace torvik::grid {

namespace {

constexpr int kRowsAtFirst = 12;
constexpr int kWidestAtFirst = 760;

/// The bytes of copied cells, which need not be UTF-8.
const QString kCellBytes = QStringLiteral("application/x-torvik-cells");
const QString kExtension = QStringLiteral("ss");  ///< of a user stress-strain file

QString title() {
  return QString::fromLatin1(base::kTitle);
}

}  // namespace

GridWindow::GridWindow(views::Shell& shell, model::Document& document, ObjectKind kind)
    : ChildWindow(shell, QStringLiteral("frmGrid"), static_cast<int>(kind)),
      m_document(document),
      m_grid(kind, document.tables),
      m_model(new GridModel(m_grid, this)),
      m_view(new widgets::TableView(this)),
      m_editor(new CellEditor(*m_view, kind, *this)),
      m_summary(new QLabel(this)) {
  setWindowTitle(widgets::shownText(captionOf(kind)));
  m_view->setModel(m_model);
  m_view->setFixedCaption(QStringLiteral("No"));
  m_view->setShortensNumbers(true);
  m_view->readColumnWidths(shell.readSettings(), objectName(), Tag());
  m_view->selectCells({0, 0, 0, 0});
  m_view->installEventFilter(this);
  m_view->viewport()->installEventFilter(this);
  m_summary->setObjectName(QStringLiteral("lblSummary"));
  m_summary->setTextFormat(Qt::PlainText);
  m_summary->setMargin(3);
  m_summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);

  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_view);
  layout->addWidget(m_summary);
  setFocusProxy(m_view);

  connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { showState(); });
  showState();
}

GridWindow::~GridWindow() {
  // The controls go later than the grid: nothing may be written to it any more.
  delete m_editor;
  m_view->selectionModel()->disconnect(this);
}

views::ChildCommands GridWindow::commands() const {
  views::ChildCommands commands;
  commands.print = true;
  commands.cut = commands.copy = commands.paste = commands.deleteCells = commands.selectAll = true;
  commands.insertRow = commands.removeRow = commands.originalColumnWidth = true;
  commands.setDefault = true;
  commands.chart = m_grid.kind() != ObjectKind::Beam && m_grid.kind() != ObjectKind::AxialForce;
  commands.figure = true;
  commands.undo = m_grid.canUndo();
  commands.redo = m_grid.canRedo();
  commands.addsDefault = kind();
  return commands;
}

// ---- Showing

Selection GridWindow::selection() const {
  const widgets::CellRange cells = m_view->cells();
  return {cells.Row, cells.Col, cells.RowSel, cells.ColSel};
}

int GridWindow::currentRow() const {
  return m_view->cells().Row;
}

void GridWindow::showState() {
  const Summary summary = m_view->cells().Row < 0 ? Summary{} : m_grid.summary(selection());
  m_summary->setText(QStringLiteral("Count: %1   Sum: %2")
                         .arg(summary.count)
                         .arg(std::isfinite(summary.sum) ? widgets::shownText(base::plainText(summary.sum))
                                                         : QStringLiteral("too large")));
  // A commit may come when another child is the active one already.
  if (frame() && frame()->mdiArea() && frame()->mdiArea()->currentSubWindow() == frame())
    shell().childActivated(*this);
}

void GridWindow::showCells(const Selection& cells) {
  const int lastRow = m_grid.rowCount() - 1;
  const int lastColumn = m_grid.columnCount() - 1;
  m_view->selectCells({std::clamp(cells.Row, 0, lastRow), std::clamp(cells.Col, 0, lastColumn),
                       std::clamp(cells.RowSel, 0, lastRow), std::clamp(cells.ColSel, 0, lastColumn)});
  m_view->scrollTo(m_view->currentIndex());
}

bool GridWindow::moveTo(int row, int column) {
  const bool isThere = m_model->hasIndex(row, column);
  if (isThere)
    showCells({row, column, row, column});
  else if (row >= m_grid.rowCount())
    m_summary->setText(QStringLiteral("The last row. Insert a Row and Add Default bring more."));
  return isThere;
}

QSize GridWindow::sizeHint() const {
  const int scrollBar = m_view->verticalScrollBar()->sizeHint().width();
  const int edges = 2 * m_view->frameWidth();
  const int width = m_view->verticalHeader()->minimumWidth() + m_view->horizontalHeader()->length();
  const int height = m_view->horizontalHeader()->minimumHeight() + kRowsAtFirst * m_view->standardRowHeight();
  return {std::min(width + scrollBar + edges, kWidestAtFirst),
          height + scrollBar + edges + m_summary->sizeHint().height()};
}

void GridWindow::contextMenuEvent(QContextMenuEvent* event) {
  popupMenuAt(event->globalPos());
  event->accept();
}

// ---- Editing a cell

void GridWindow::guarded(const std::function<void()>& act) {
  try {
    act();
  } catch (const std::exception& error) {
    shell().showMessage(windowTitle() + QStringLiteral(": ") + widgets::shownText(error.what()));
  }
}

void GridWindow::BeginCellEdit() {
  m_editor->finish();
  const Selection cell = selection();
  if (cell.Row < 0) return;
  m_document.SavedFlag = false;  // counts as a change before anything is typed, also where nothing opens
  m_before = m_grid.text(cell.Row, cell.Col);
  if (m_grid.opensEditor(cell.Row, cell.Col))
    m_editor->open(cell.Row, cell.Col, widgets::shownText(m_before));
}

void GridWindow::commitCell(int row, int column, const QString& text) {
  const Extent wholeRow{Extent::What::Cells, {row, 0, row, m_grid.columnCount() - 1}};
  const std::string bytes = text == widgets::shownText(m_before) ? m_before : text.toStdString();
  try {
    m_model->tell(m_grid.commit(row, column, bytes, m_before, [&](const std::string& message) {
      m_model->tell(wholeRow);
      shell().showMessage(widgets::shownText(message));
    }));
  } catch (...) {
    m_model->tell(wholeRow);
    showState();
    throw;
  }
  showState();
}

QString GridWindow::chooseFile(const QString& before) {
  return shell().askOpenFile(QStringLiteral("Use a file"),
                             before.isEmpty() ? QStringLiteral("*.") + kExtension : before,
                             QStringLiteral("Input Files (*.%1);;All Files (*)").arg(kExtension), kExtension);
}

void GridWindow::finishEditing() {
  guarded([this] { m_editor->finish(); });
}

bool GridWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_view && event->type() == QEvent::KeyPress) {
    bool taken = true;
    guarded([&] { taken = takeKey(*static_cast<QKeyEvent*>(event)); });
    return taken;
  }
  if (watched == m_view->viewport() && event->type() == QEvent::MouseButtonDblClick) {
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() == Qt::LeftButton && m_view->indexAt(mouse->position().toPoint()).isValid())
      guarded([this] { BeginCellEdit(); });
    return true;
  }
  if (watched == m_view->viewport() && event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = m_view->indexAt(help->pos()).data(Qt::ToolTipRole).toString();
    if (!text.isEmpty()) {
      QToolTip::showText(help->globalPos(), text, m_view->viewport());
      return true;
    }
  }
  return ChildWindow::eventFilter(watched, event);
}

bool GridWindow::takeKey(const QKeyEvent& key) {
  if (m_editor->isOpen()) return true;  // a key that the overlay has no use for
  const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
  const bool shift = modifiers == Qt::ShiftModifier;
  const bool plain = modifiers == Qt::NoModifier;
  switch (key.key()) {
    case Qt::Key_F2:
      BeginCellEdit();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!plain || !shell().PasteOnEnter) return false;
      [[fallthrough]];
    case Qt::Key_Insert:
      if (key.key() == Qt::Key_Insert && modifiers == Qt::ControlModifier) {
        copy();
        shell().PasteOnEnter = true;
        return true;
      }
      if (key.key() == Qt::Key_Insert && !shift) return false;
      if (pasteClipboard()) shell().PasteOnEnter = false;
      return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      if (shift)
        cut();
      else if (plain)
        deleteCells();
      return shift || plain;
    default:
      break;
  }
  if (!isTyped(key)) return false;
  BeginCellEdit();
  m_editor->takeFirstKey(key.text());
  return true;
}

// ---- Commands

void GridWindow::change(const std::function<Extent()>& edit) {
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  try {
    m_model->tell(edit());
  } catch (...) {
    QGuiApplication::restoreOverrideCursor();
    throw;
  }
  QGuiApplication::restoreOverrideCursor();
  showState();
}

void GridWindow::copy() {
  const std::string cells = m_grid.clip(selection());
  auto* const copied = new QMimeData;
  copied->setData(kCellBytes, QByteArray::fromStdString(cells));
  copied->setText(widgets::shownText(cells).replace(QLatin1Char('\r'), QLatin1String("\r\n")));
  QGuiApplication::clipboard()->setMimeData(copied);
}

void GridWindow::cut() {
  copy();
  deleteCells();
}

void GridWindow::paste() {
  pasteClipboard();
}

bool GridWindow::pasteClipboard() {
  const QMimeData* const held = QGuiApplication::clipboard()->mimeData();
  if (!held || !held->hasText()) return false;
  const std::string text =
      held->hasFormat(kCellBytes) ? held->data(kCellBytes).toStdString() : held->text().toStdString();
  std::optional<Extent> pasted;
  change([&] {
    pasted = m_grid.paste(selection(), text);
    return pasted.value_or(Extent{});
  });
  if (!pasted) {
    shell().notice(QStringLiteral("Can't paste."), title() + QStringLiteral(" MSFlexGrid"));
    return false;
  }
  const Selection& cells = pasted->touched;
  m_view->selectCells({cells.Row, cells.Col, cells.RowSel, cells.ColSel});
  return true;
}

void GridWindow::deleteCells() {
  change([this] { return m_grid.clear(selection()); });
}

void GridWindow::selectAll() {
  m_view->selectAll();
}

void GridWindow::insertRows() {
  change([this] { return m_grid.insertRows(selection()); });
}

void GridWindow::removeRows() {
  change([this] { return m_grid.removeRows(selection()); });
}

void GridWindow::originalColumnWidth() {
  m_view->resetSelectedColumnWidths();
}

void GridWindow::append(const model::ObjectTables& rows) {
  Extent added;
  change([&] { return added = m_grid.append(rows); });
  m_document.SavedFlag = false;
  const Selection& place = added.touched;
  if (added.what != Extent::What::Nothing) showCells({place.top(), 0, place.bottom(), 0});
}

void GridWindow::stepHistory(Extent (ObjectGrid::*step)()) {
  Extent changed;
  change([&] { return changed = (m_grid.*step)(); });
  if (changed.what == Extent::What::Nothing) return;
  m_document.SavedFlag = false;
  showCells(changed.touched);
}

void GridWindow::undo() {
  stepHistory(&ObjectGrid::undo);
}

void GridWindow::redo() {
  stepHistory(&ObjectGrid::redo);
}

// ---- The end

bool GridWindow::writeBack() {
  bool stored = false;
  guarded([&] {
    m_editor->finish();
    m_grid.StoreGridToTables(m_document.tables);
    stored = true;
  });
  return stored;
}

void GridWindow::unload() {
  guarded([this] {
    shell().changeSettings([this](base::ProfileFile& settings) {
      saveLayout(settings);
      m_view->writeColumnWidths(settings, objectName(), Tag());
    });
  });
}

}  // namespace torvik::grid
