// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QHash>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/help_window.h"
#include "app/program.h"
#include "app/recent_paths.h"
#include "app/status_panels.h"
#include "grid/grid_window.h"
#include "views/child_window.h"
#include "views/shell.h"

class QPrinter;

namespace torvik::app {

class JobControl;

/// `mdiMain`: the frame with menus, tool bar, status bar and child windows. Every action bears the name of
/// its menu entry, with its index behind it (`mnuFileJob0`); tool bar buttons bear "Toolbar1_" and their key.
class MainWindow : public QMainWindow, public views::Shell, private model::InputFileFrame {
  Q_OBJECT

 public:
  explicit MainWindow(Program& program);
  ~MainWindow() override;

  /// `MDIForm_Load`: restores layout and settings, and begins a new document.
  void load();
  /// What the command line names: a message for each unknown option, then each file is opened and run.
  void takeCommandLine(const std::vector<std::string>& tokens);

  void NewDocument();
  void RefreshCommandState();
  /// Reads a file into the document, with its messages. @return false where it was not read
  bool openFile(const std::string& path);

  // The frame's parts, for job control.
  [[nodiscard]] Program& program() { return m_program; }
  [[nodiscard]] QMdiArea& area() { return *m_area; }
  [[nodiscard]] StatusPanels& panels() { return *m_panels; }
  [[nodiscard]] QComboBox& stepBox() { return *m_stepBox; }
  [[nodiscard]] QAction& menuAction(const QString& name, int index = -1) const;
  [[nodiscard]] QAction& toolAction(const QString& key) const;
  /// Puts a child into the area and shows it.
  void addChild(views::ChildWindow* child);
  void activate(views::ChildWindow* child);
  [[nodiscard]] QList<views::ChildWindow*> children() const;
  /// Brings the tables up to what the open grids hold, which stay. @return false where a grid can not be
  /// stored
  [[nodiscard]] bool storeGrids();
  /// `mnuWindowAll_Click(2)`: unloads every child window. They are gone on return: no handler of a child may
  /// stand on the stack.
  /// @return false where one can not be closed without loss, which the user has been told: no command that
  ///         reads or replaces the model may go on
  [[nodiscard]] bool closeAllChildren();
  /// The open grid of the kind; null where there is none.
  [[nodiscard]] grid::GridWindow* gridOf(model::ObjectKind kind) const;
  /// The grid that commands act on; null where the active child is none.
  [[nodiscard]] grid::GridWindow* activeGrid() const;

  // views::Shell
  [[nodiscard]] job::JobState jobState() const override { return m_program.steering.state; }
  [[nodiscard]] base::ProfileFile readSettings() const override;
  void changeSettings(const std::function<void(base::ProfileFile&)>& change) override;
  void writeSettings(const std::function<void(base::ProfileFile&)>& change) override;
  void childActivated(views::ChildWindow& child) override;
  void childDeactivated(views::ChildWindow& child) override;
  void popupEditMenu(views::ChildWindow& child, const QPoint& globalPosition) override;
  void openOptions(int tab) override;
  void showMessage(const QString& text, const QString& caption = {}) override;
  void notice(const QString& text, const QString& caption = {}) override;
  void askSaveFile(const QString& caption, const QString& proposal, const QString& filter,
                   std::function<void(const QString& path)> then) override;
  QString askOpenFile(const QString& caption, const QString& proposal, const QString& filter,
                      const QString& defaultExtension) override;
  bool ask(const QString& question) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // model::InputFileFrame
  void cannotOpen(const std::string& path) override;
  void takePath(const std::string& path) override;
  void showWaitCursor(bool on) override;

  void buildMenus();
  void buildToolBar();
  QAction* add(QMenu& menu, const QString& name, int index, const QString& caption,
               std::function<void()> command, const QKeySequence& shortcut = {});
  enum class Box { Stops, Beside };
  /// Runs a command; whatever fails in it becomes one message box that says what was being done.
  /// @param box  Beside: a job goes on behind it
  void guarded(const QString& doing, const std::function<void()>& command, Box box = Box::Stops);
  void setEnabled(const QString& name, int first, int last, bool on);
  void applyChildCommands();
  /// Closes and destroys it. @return false where it can not be closed without loss
  [[nodiscard]] bool closeChild(views::ChildWindow* child);
  /// No job runs, and no box stands over the frame.
  [[nodiscard]] bool takesDrops() const;
  bool mayDropEdits(const QString& question);

  void mnuFileManage_Click(int index);
  void saveTo(const std::string& path);
  void openPaths(const QStringList& paths);
  void mnuFileRecentPath_Click(int index);
  void mnuFilePrint_Click(int index);
  QPrinter& printer();
  void print(views::ChildWindow& child);
  void mnuObjectChart_Click();
  void mnuObjectFigure_Click();
  void mnuObjectSetting_Click(int index);
  void addSolids(grid::GridWindow& grid);
  void addDefaultRow(grid::GridWindow& grid);
  void mnuObjectSetDefault_Click();
  void mnuObjectSectionParameter_Click();
  void mnuWindowAll_Click(int index);
  void toggleBar(int index);
  void toggleResize();
  void showRecentPaths();
  void stepBoxLostFocus();
  void watchClipboard();
  void showHelp(const QString& topic);

  void SaveWindowLayout(base::ProfileFile& settings) const;
  void RestoreWindowLayout(const base::ProfileFile& settings);

  Program& m_program;
  QMdiArea* m_area = nullptr;
  QToolBar* m_toolBar = nullptr;
  StatusPanels* m_panels = nullptr;
  QComboBox* m_stepBox = nullptr;
  QMenu* m_editMenu = nullptr;
  QHash<QString, QAction*> m_actions;
  RecentPaths m_recent;
  QPointer<views::ChildWindow> m_active;
  QTimer m_clipboardTimer;
  std::unique_ptr<JobControl> m_job;
  std::unique_ptr<HelpWindow> m_help;
  std::unique_ptr<QPrinter> m_printer;  ///< from its first use on
  QPointer<QDialog> m_options;          ///< while it is open
  bool m_restoringLayout = false;
  bool m_closeWhenJobIsOver = false;
  bool m_loaded = false;
};

}  // namespace torvik::app
