// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/child_window.h"
#include "views/result_table.h"

namespace torvik::widgets {
class TableView;
}

namespace torvik::views {

/// `frmTable`: the results of a job as a grid that can be read and copied. Its `Tag` is the `TableKind`.
class TableWindow : public ChildWindow {
  Q_OBJECT

 public:
  /// Reads its column widths from the settings file.
  /// @param run  what it shows, as `catchUp` is called; a window that was hidden does so when it is shown
  /// @throws InternalError 51 for a kind outside the five; InputError as `Shell::readSettings`
  TableWindow(Shell& shell, TableKind kind, std::shared_ptr<const run::Run> run);

  [[nodiscard]] ResultTable& table() { return *m_table; }
  [[nodiscard]] widgets::TableView& view() { return *m_view; }

  [[nodiscard]] ChildCommands commands() const override;
  [[nodiscard]] QList<QAction*> ownActions() override;
  void copy() override;
  void selectAll() override;
  void originalColumnWidth() override;
  void catchUp() override { m_table->follow(); }
  void unload() override;

  /// Asks for a file and writes the whole table to it, as it is when the file is chosen: separated by commas,
  /// or by tabs where the name ends in ".tsv", ".tab" or ".txt".
  void saveTableAs();
  void fitAllColumns();

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void writeTable(const QString& path);

  ResultTable* m_table;
  widgets::TableView* m_view;
  QAction* m_saveTableAs;
  QAction* m_fitColumns;
};

}  // namespace torvik::views
