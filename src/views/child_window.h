// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QWidget>

#include "views/shell.h"

class QAction;
class QMdiSubWindow;

namespace torvik::views {

/// Commands of the frame that an active child turns on; what it leaves out is off.
struct ChildCommands {
  bool print = false;
  bool cut = false;
  bool copy = false;
  bool paste = false;
  bool deleteCells = false;
  bool selectAll = false;
  bool insertRow = false;
  bool removeRow = false;
  bool originalColumnWidth = false;
  bool setDefault = false;
  bool chart = false;
  bool figure = false;
  bool undo = false;
  bool redo = false;
  int addsDefault = -1;  ///< the kind of object that the Object menu adds a default row of; -1 for none
};

/// A window within the frame: `frmTable`, `frmChart`, `frmGrid` (the object name). It lives inside a
/// QMdiSubWindow. `Tag` holds its kind as decimal text.
class ChildWindow : public QWidget {
  Q_OBJECT

 public:
  ChildWindow(Shell& shell, const QString& name, int kind);

  [[nodiscard]] QString Tag() const { return m_tag; }
  [[nodiscard]] int kind() const { return m_tag.toInt(); }
  [[nodiscard]] Shell& shell() const { return m_shell; }
  [[nodiscard]] QMdiSubWindow* frame() const;

  /// What the frame turns on while this child is the active one.
  [[nodiscard]] virtual ChildCommands commands() const = 0;
  /// Entries of the child's own for the pop-up menu, behind those of the Edit menu.
  [[nodiscard]] virtual QList<QAction*> ownActions() { return {}; }

  virtual void copy() {}
  virtual void cut() {}
  virtual void paste() {}
  virtual void deleteCells() {}
  virtual void selectAll() {}
  virtual void insertRows() {}
  virtual void removeRows() {}
  virtual void originalColumnWidth() {}
  virtual void undo() {}
  virtual void redo() {}

  /// Of a window over a run: shows all that the run has by now, whether or not anybody can see it.
  virtual void catchUp() {}

  /// A command of the frame is about to run: what is being typed is taken over.
  virtual void finishEditing() {}
  /// Before every closing: puts what was edited where it belongs.
  /// @return false where that can not be done, which the user has been told: the window stays
  [[nodiscard]] virtual bool writeBack() { return true; }

  /// Runs once when the window stands in its frame, before it is shown: restores the layout, and takes away
  /// the Close command while a job runs.
  virtual void load();
  /// Runs once when the window is closed for good: save layout and widths.
  virtual void unload() {}

  /// Whether the user may close the window. The frame takes away the close button and menu entry where not.
  void setClosable(bool closable);
  [[nodiscard]] bool isClosable() const { return m_closable; }

  /// True from its closing on. Where the user closed it, the object itself goes behind that event.
  [[nodiscard]] bool isUnloaded() const { return m_unloaded; }
  /// Closes it whether or not the user may. @return false where `writeBack` kept it
  bool closeNow();

  /// `SaveWindowLayout` and `RestoreWindowLayout` of a child: its window state, in the section of its name.
  void saveLayout(base::ProfileFile& settings) const;
  /// @throws InternalError 51 for a stored state outside 0, 1, 2
  void restoreLayout(const base::ProfileFile& settings);

 protected:
  void closeEvent(QCloseEvent* event) override;
  /// For the children's right button: active first, then the frame's Edit menu.
  void popupMenuAt(const QPoint& globalPosition);

 private:
  /// The buttons of the frame, and those that a maximized child has at the end of the menu bar, follow
  /// `isClosable`.
  void showButtons();

  Shell& m_shell;
  QString m_tag;
  bool m_closable = true;
  bool m_hasCloseButton = true;
  bool m_unloaded = false;
};

}  // namespace torvik::views
