// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "grid/cell_editor.h"
#include "grid/object_grid.h"
#include "model/input_file.h"
#include "views/child_window.h"

class QLabel;

namespace torvik::widgets {
class TableView;
}

namespace torvik::grid {

class GridModel;

/// `frmGrid`: one object table as a spreadsheet. Its `Tag` is the `ObjectKind`. Until it closes the table in
/// the document is out of date; closing it puts the rows there.
class GridWindow : public views::ChildWindow, private EditorHost {
  Q_OBJECT

 public:
  /// @param document  outlives the window
  /// @throws InternalError 51 for a kind outside the five; InputError as `Shell::readSettings`
  GridWindow(views::Shell& shell, model::Document& document, ObjectKind kind);
  ~GridWindow() override;

  [[nodiscard]] const ObjectGrid& grid() const { return m_grid; }
  /// Counted from 0.
  [[nodiscard]] int currentRow() const;
  /// Rows behind the last one that has data, shown and selected. They count as unsaved.
  void append(const model::ObjectTables& rows);

  // Each command comes behind `finishEditing`.
  [[nodiscard]] views::ChildCommands commands() const override;
  void copy() override;
  void cut() override;
  void paste() override;
  void deleteCells() override;
  void selectAll() override;
  void insertRows() override;
  void removeRows() override;
  void originalColumnWidth() override;
  void undo() override;
  void redo() override;

  void finishEditing() override;
  /// Fails with more rows than a table can hold.
  [[nodiscard]] bool writeBack() override;
  void unload() override;

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  // EditorHost
  void commitCell(int row, int column, const QString& text) override;
  QString chooseFile(const QString& before) override;
  bool moveTo(int row, int column) override;
  void guarded(const std::function<void()>& act) override;

  void BeginCellEdit();
  /// @return false where the grid itself is to have the key
  bool takeKey(const QKeyEvent& key);
  bool pasteClipboard();
  void change(const std::function<Extent()>& edit);
  void stepHistory(Extent (ObjectGrid::*step)());
  /// Selects the cells, as far as there are such, and brings their first one into sight.
  void showCells(const Selection& cells);
  void showState();
  [[nodiscard]] Selection selection() const;

  model::Document& m_document;
  ObjectGrid m_grid;
  GridModel* m_model;
  widgets::TableView* m_view;
  CellEditor* m_editor;
  QLabel* m_summary;
  std::string m_before;  ///< `CellTextBefore`
};

}  // namespace torvik::grid
