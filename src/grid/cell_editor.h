// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "grid/columns.h"

class QCheckBox;
class QComboBox;
class QKeyEvent;
class QLineEdit;

namespace torvik::widgets {
class TableView;
class UpDown;
}  // namespace torvik::widgets

namespace torvik::grid {

class FileButton;

/// Whether a key types a character.
bool isTyped(const QKeyEvent& key);

/// What the editor of a cell asks of its window.
class EditorHost {
 public:
  virtual ~EditorHost() = default;
  /// Puts the text into the cell, with its rules. The overlay is hidden by then.
  virtual void commitCell(int row, int column, const QString& text) = 0;
  /// @return the chosen path; empty where the dialog was cancelled
  virtual QString chooseFile(const QString& before) = 0;
  /// Moves the current cell to this one. @return false where there is none: it stays then
  virtual bool moveTo(int row, int column) = 0;
  /// Runs what an event asks for; whatever fails in it becomes one message box.
  virtual void guarded(const std::function<void()>& act) = 0;
};

/// The controls that are laid over a cell to edit it: `Text1` (with `UpDown1`), `Check1`, `Command1`,
/// `DropDownCombo1`, `DropDownList1`. One at most is open. It ends by its keys, by losing the focus and when
/// the grid scrolls, always with one commit; only where Esc leaves `Check1` or the list as it was there is
/// none.
class CellEditor : public QObject {
  Q_OBJECT

 public:
  CellEditor(widgets::TableView& view, ObjectKind kind, EditorHost& host);

  [[nodiscard]] bool isOpen() const { return m_open != nullptr; }
  /// Opens over a cell that is not Fixed, while no other is open. @param text  of the cell
  void open(int row, int column, const QString& text);
  /// The key that opened the editor replaces its text where the column says so and its filter lets the key
  /// through.
  void takeFirstKey(const QString& key);
  /// Commits and gives the grid the focus; nothing where no overlay is open.
  void finish();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] const Column& column() const;
  [[nodiscard]] QWidget* prepare(const QString& text);
  [[nodiscard]] QString text() const;
  void setText(const QString& text);
  void place();
  void commit();
  void finishAndMove(int rows, int columns);
  /// Whether the filter of the column lets the typed text through; beeps where it does not.
  [[nodiscard]] bool passes(const QString& typed) const;
  /// @return false where the control itself is to have the key
  bool takeKey(const QKeyEvent& key);
  bool takeArrow(int key);
  bool takeFileKey(const QKeyEvent& key);
  bool takeClipboardKey(const QKeyEvent& key);
  /// Whether a key of the frame's menus is the open editor's own.
  [[nodiscard]] bool isOwn(const QKeyEvent& key) const;
  [[nodiscard]] QLineEdit* line() const;
  void escape();
  void closeUnchanged();
  void browse();

  widgets::TableView& m_view;
  const ObjectKind m_kind;
  EditorHost& m_host;
  QLineEdit* m_text;
  widgets::UpDown* m_upDown;
  QCheckBox* m_check;
  FileButton* m_file;
  QComboBox* m_combo;
  QComboBox* m_list;
  QWidget* m_open = nullptr;
  int m_row = 0;
  int m_column = 0;
  QString m_before;  ///< `CellTextBefore` as shown
};

}  // namespace torvik::grid
