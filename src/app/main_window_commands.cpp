// SPDX-License-Identifier: GPL-3.0-or-later
// The menus, the tool bar, and which of their commands are on.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QIcon>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>

#include "app/about_box.h"
#include "app/arrange.h"
#include "app/job_control.h"
#include "app/main_window.h"

namespace torvik::app {

using job::JobState;

namespace {
const char* const kObjects[] = {"Bea&m", "&Solid", "&Bar", "&Tendon", "&Axial Force"};
}

QAction* MainWindow::add(QMenu& menu, const QString& name, int index, const QString& caption,
                         std::function<void()> command, const QKeySequence& shortcut) {
  QAction* action = menu.addAction(caption);
  action->setObjectName(index < 0 ? name : name + QString::number(index));
  action->setShortcut(shortcut);
  m_actions.insert(action->objectName(), action);
  const QString doing = QString(caption).remove('&').remove("...");
  // Between the user's End and the solver's next yield the run state is over, but the solver still stands on
  // the stack: what could change the model has to wait.
  static const QStringList kWithoutSolver = {"mnuFileManage", "mnuFileRecentPath", "mnuObjectSetting",
                                             "mnuObjectSectionParameter"};
  const bool waits = kWithoutSolver.contains(name) || (name == "mnuFileJob" && index == 0) ||
                     (name == "mnuWindowAll" && index == 2);
  connect(action, &QAction::triggered, this, [this, doing, waits, command = std::move(command)] {
    if (waits && m_job->isRunning()) return;
    // A box blocks the frame, but until it has the keyboard a shortcut still comes here: no second box.
    if (QApplication::activeModalWidget()) return;
    const auto act = [&] {
      for (views::ChildWindow* child : children()) child->finishEditing();
      command();
    };
    guarded(doing, act, waits ? Box::Stops : Box::Beside);
  });
  return action;
}

void MainWindow::buildMenus() {
  using Key = QKeySequence;
  QMenu& file = *menuBar()->addMenu("&File");
  add(
      file, "mnuFileManage", 0, "&New", [this] { mnuFileManage_Click(0); }, Key::New);
  add(
      file, "mnuFileManage", 1, "&Open...", [this] { mnuFileManage_Click(1); }, Key::Open);
  add(
      file, "mnuFileManage", 2, "&Save", [this] { mnuFileManage_Click(2); }, Key::Save);
  add(
      file, "mnuFileManage", 3, "Save &As...", [this] { mnuFileManage_Click(3); }, Key("Ctrl+Shift+S"));
  file.addSeparator();
  add(file, "mnuFilePrint", 0, "P&rinter Setup...", [this] { mnuFilePrint_Click(0); });
  add(
      file, "mnuFilePrint", 1, "&Print...", [this] { mnuFilePrint_Click(1); }, Key::Print);
  file.addSeparator();
  add(
      file, "mnuFileJob", 0, "Star&t", [this] { m_job->mnuFileJob_Click(0); }, Key("F5"));
  add(
      file, "mnuFileJob", 1, "Pa&use", [this] { m_job->mnuFileJob_Click(1); }, Key("F6"))
      ->setCheckable(true);
  add(file, "mnuFileJob", 2, "&End", [this] { m_job->mnuFileJob_Click(2); });
  QAction* separator = file.addSeparator();
  separator->setObjectName("mnuFileRecentPathSepa");
  m_actions.insert(separator->objectName(), separator);
  for (int i = 0; i < RecentPaths::kEntries; ++i)
    add(file, "mnuFileRecentPath", i, {}, [this, i] { mnuFileRecentPath_Click(i); });
  file.addSeparator();
  add(
      file, "mnuFileExit", -1, "E&xit", [this] { close(); }, Key::Quit);

  m_editMenu = menuBar()->addMenu("&Edit");
  m_editMenu->setObjectName("mnuEdit");
  const auto onActive = [this](void (views::ChildWindow::*operation)()) {
    return [this, operation] {
      if (m_active) (m_active->*operation)();
    };
  };
  using views::ChildWindow;
  add(*m_editMenu, "mnuEditUndo", -1, "&Undo", onActive(&ChildWindow::undo), Key("Ctrl+Z"))
      ->setIcon(QIcon(":/icons/undo.svg"));
  QAction* const redo = add(*m_editMenu, "mnuEditRedo", -1, "&Redo", onActive(&ChildWindow::redo));
  redo->setIcon(QIcon(":/icons/redo.svg"));
  redo->setShortcuts({Key("Ctrl+Shift+Z"), Key("Ctrl+Y")});
  m_editMenu->addSeparator();
  add(*m_editMenu, "mnuEditEdit", 0, "Cu&t", onActive(&ChildWindow::cut), Key::Cut);
  add(*m_editMenu, "mnuEditEdit", 1, "&Copy", onActive(&ChildWindow::copy), Key::Copy);
  add(*m_editMenu, "mnuEditEdit", 2, "&Paste", onActive(&ChildWindow::paste), Key::Paste);
  add(*m_editMenu, "mnuEditEdit", 3, "&Delete", onActive(&ChildWindow::deleteCells));
  add(*m_editMenu, "mnuEditEdit", 4, "Select &All", onActive(&ChildWindow::selectAll), Key::SelectAll);
  m_editMenu->addSeparator();
  add(*m_editMenu, "mnuEditGrid", 0, "&Insert a Row", onActive(&ChildWindow::insertRows));
  add(*m_editMenu, "mnuEditGrid", 1, "&Remove a Row", onActive(&ChildWindow::removeRows));
  add(*m_editMenu, "mnuEditGrid", 2, "Original Column &Width", onActive(&ChildWindow::originalColumnWidth));

  QMenu& object = *menuBar()->addMenu("&Object");
  for (int i = 0; i < model::kObjectKinds; ++i)
    add(object, "mnuObjectSetting", i, kObjects[i], [this, i] { mnuObjectSetting_Click(i); });
  object.addSeparator();
  add(object, "mnuObjectSetDefault", -1, "Set &Default...", [this] { mnuObjectSetDefault_Click(); });
  object.addSeparator();
  add(object, "mnuObjectChart", -1, "C&hart", [this] { mnuObjectChart_Click(); });
  add(object, "mnuObjectFigure", -1, "&Figure", [this] { mnuObjectFigure_Click(); });
  add(object, "mnuObjectSectionParameter", -1, "Section &Parameter",
      [this] { mnuObjectSectionParameter_Click(); });

  QMenu& tool = *menuBar()->addMenu("&Tool");
  add(tool, "mnuToolBar", 0, "&Tool Bar", [this] { toggleBar(0); })->setCheckable(true);
  add(tool, "mnuToolBar", 1, "&Status Bar", [this] { toggleBar(1); })->setCheckable(true);
  add(tool, "mnuToolResize", -1, "&Resize", [this] { toggleResize(); })->setCheckable(true);
  tool.addSeparator();
  add(tool, "mnuToolOption", -1, "&Option...", [this] { openOptions(0); });

  QMenu& window = *menuBar()->addMenu("&Window");
  const char* const kArrange[] = {"&Cascade", "&Tile Horizontal", "Tile &Vertical", "(Do nothing)",
                                  "&Arrange Icons"};
  for (int i = 0; i < 5; ++i)
    add(window, "mnuWindowArrange", i, kArrange[i],
        [this, i] { arrange(*m_area, static_cast<Arrangement>(i)); });
  menuAction("mnuWindowArrange", 3).setVisible(false);
  window.addSeparator();
  const char* const kAll[] = {"&Minimize All", "&Restore All", "C&lose All"};
  for (int i = 0; i < 3; ++i) add(window, "mnuWindowAll", i, kAll[i], [this, i] { mnuWindowAll_Click(i); });

  QMenu& help = *menuBar()->addMenu("&Help");
  add(
      help, "mnuHelpHelp", 0, "&Help", [this] { showHelp({}); }, Key::HelpContents);
  add(help, "mnuHelpHelp", 1, "Home &Page", [this] { notice("Home page is not available now."); });
  add(help, "mnuHelpAbout", -1, "&About...", [this] {
    auto* const box = new AboutBox(*this, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
  });
}

void MainWindow::buildToolBar() {
  m_toolBar = addToolBar("Tool Bar");
  m_toolBar->setObjectName("Toolbar1");
  m_toolBar->setMovable(false);
  m_toolBar->setContextMenuPolicy(Qt::PreventContextMenu);
  m_toolBar->setIconSize({20, 20});
  struct Button {
    const char* key;  ///< null: a separator
    const char* icon;
    const char* menu;
    int index;
  };
  const Button kButtons[] = {{"New", "new", "mnuFileManage", 0},
                             {"Open", "open", "mnuFileManage", 1},
                             {"Save", "save", "mnuFileManage", 2},
                             {"Print", "print", "mnuFilePrint", 1},
                             {},
                             {"Start", "start", "mnuFileJob", 0},
                             {"Pause", "pause", "mnuFileJob", 1},
                             {"End", "end", "mnuFileJob", 2},
                             {"Step", nullptr, nullptr, 0},
                             {},
                             {"Cut", "cut", "mnuEditEdit", 0},
                             {"Copy", "copy", "mnuEditEdit", 1},
                             {"Paste", "paste", "mnuEditEdit", 2},
                             {},
                             {"Beam", "beam", "mnuObjectSetting", 0},
                             {"Solid", "solid", "mnuObjectSetting", 1},
                             {"Bar", "bar", "mnuObjectSetting", 2},
                             {"Tendon", "tendon", "mnuObjectSetting", 3},
                             {"Axial Force", "axial-force", "mnuObjectSetting", 4},
                             {},
                             {"Chart", "chart", "mnuObjectChart", -1},
                             {"Figure", "figure", "mnuObjectFigure", -1},
                             {},
                             {"Option", "option", "mnuToolOption", -1}};
  for (const Button& button : kButtons) {
    if (!button.key) {
      m_toolBar->addSeparator();
      continue;
    }
    const QString key = button.key;
    if (!button.menu) {
      m_stepBox = new QComboBox;
      m_stepBox->setObjectName("Combo1");
      m_stepBox->setEditable(true);
      m_stepBox->setInsertPolicy(QComboBox::NoInsert);
      m_stepBox->addItems({"Small", "Large"});
      m_stepBox->setToolTip("Step");
      m_stepBox->setFocusPolicy(Qt::StrongFocus);
      m_stepBox->setMinimumContentsLength(8);
      m_stepBox->lineEdit()->installEventFilter(this);
      m_stepBox->installEventFilter(this);
      m_toolBar->addWidget(m_stepBox);
      continue;
    }
    // The action of a button is its own: Pause can be pressed while its menu entry is not checked. Its state
    // follows that of the menu entry.
    QAction& entry = menuAction(button.menu, button.index);
    auto* action = new QAction(QIcon(QString(":/icons/%1.svg").arg(button.icon)), key, this);
    action->setObjectName("Toolbar1_" + key);
    action->setToolTip(key);
    if (key == "Pause") {
      action->setCheckable(true);
      connect(action, &QAction::triggered, this,
              [this] { guarded("Pause", [this] { m_job->mnuFileJob_Click(3); }); });
    } else {
      connect(action, &QAction::triggered, &entry, &QAction::trigger);
    }
    connect(&entry, &QAction::changed, action, [&entry, action] { action->setEnabled(entry.isEnabled()); });
    m_actions.insert(action->objectName(), action);
    m_toolBar->addAction(action);
    if (QWidget* widget = m_toolBar->widgetForAction(action)) widget->setObjectName("Toolbar1_" + key);
  }
}

QAction& MainWindow::menuAction(const QString& name, int index) const {
  return *m_actions.value(index < 0 ? name : name + QString::number(index));
}

QAction& MainWindow::toolAction(const QString& key) const {
  return *m_actions.value("Toolbar1_" + key);
}

void MainWindow::setEnabled(const QString& name, int first, int last, bool on) {
  for (int i = first; i <= last; ++i) menuAction(name, i).setEnabled(on);
}

void MainWindow::RefreshCommandState() {
  const JobState state = m_program.steering.state;
  const bool atRest = state == JobState::AtRest;
  const bool idle = atRest || state == JobState::Over;
  setEnabled("mnuFileManage", 0, 3, idle);
  setEnabled("mnuFileJob", 0, 0, idle);
  setEnabled("mnuFileJob", 1, 2, !idle);
  setEnabled("mnuFileRecentPath", 0, 4, idle);
  setEnabled("mnuObjectSetting", 0, 4, idle);
  setEnabled("mnuObjectSectionParameter", -1, -1, idle);
  if (idle) setEnabled("mnuToolOption", -1, -1, true);
  if (atRest) {
    setEnabled("mnuFilePrint", 0, 0, true);
    setEnabled("mnuFilePrint", 1, 1, false);
    setEnabled("mnuFileExit", -1, -1, true);
    setEnabled("mnuEditUndo", -1, -1, false);
    setEnabled("mnuEditRedo", -1, -1, false);
    setEnabled("mnuEditEdit", 0, 4, false);
    setEnabled("mnuEditGrid", 0, 2, false);
    setEnabled("mnuObjectSetDefault", -1, -1, false);
    setEnabled("mnuObjectChart", -1, -1, false);
    setEnabled("mnuObjectFigure", -1, -1, false);
    setEnabled("mnuToolBar", 0, 1, true);
    setEnabled("mnuToolResize", -1, -1, true);
    setEnabled("mnuWindowArrange", 0, 4, false);
    setEnabled("mnuWindowAll", 0, 2, false);
    setEnabled("mnuHelpHelp", 0, 1, true);
    setEnabled("mnuHelpAbout", -1, -1, true);
  }
  applyChildCommands();
}

void MainWindow::childActivated(views::ChildWindow& child) {
  m_active = &child;
  applyChildCommands();
}

void MainWindow::childDeactivated(views::ChildWindow& child) {
  if (m_active != &child) return;
  m_active = nullptr;
  applyChildCommands();
}

void MainWindow::applyChildCommands() {
  const bool active = m_active != nullptr;
  const views::ChildCommands on = active ? m_active->commands() : views::ChildCommands{};
  const bool idle = jobState() == JobState::AtRest || jobState() == JobState::Over;
  setEnabled("mnuFilePrint", 1, 1, on.print);
  setEnabled("mnuEditUndo", -1, -1, on.undo);
  setEnabled("mnuEditRedo", -1, -1, on.redo);
  setEnabled("mnuEditEdit", 0, 0, on.cut);
  setEnabled("mnuEditEdit", 1, 1, on.copy);
  setEnabled("mnuEditEdit", 2, 2, on.paste);
  setEnabled("mnuEditEdit", 3, 3, on.deleteCells);
  setEnabled("mnuEditEdit", 4, 4, on.selectAll);
  setEnabled("mnuEditGrid", 0, 0, on.insertRow);
  setEnabled("mnuEditGrid", 1, 1, on.removeRow);
  setEnabled("mnuEditGrid", 2, 2, on.originalColumnWidth);
  for (int i = 0; i < model::kObjectKinds; ++i)
    menuAction("mnuObjectSetting", i)
        .setText(on.addsDefault == i ? QString("Add Default ") + kObjects[i] : QString(kObjects[i]));
  setEnabled("mnuObjectSetDefault", -1, -1, on.setDefault);
  setEnabled("mnuObjectChart", -1, -1, on.chart);
  setEnabled("mnuObjectFigure", -1, -1, on.figure);
  setEnabled("mnuWindowArrange", 0, 4, active);
  setEnabled("mnuWindowAll", 0, 1, active);
  setEnabled("mnuWindowAll", 2, 2, active && idle);
  watchClipboard();
}

void MainWindow::watchClipboard() {
  if (!menuAction("mnuEditEdit", 0).isEnabled()) return;
  const QMimeData* held = QGuiApplication::clipboard()->mimeData();
  setEnabled("mnuEditEdit", 2, 2, held && held->hasText());
}

void MainWindow::popupEditMenu(views::ChildWindow& child, const QPoint& globalPosition) {
  auto* popup = new QMenu(this);  // not modal: a job goes on behind it
  popup->setAttribute(Qt::WA_DeleteOnClose);
  popup->addActions(m_editMenu->actions());
  const QList<QAction*> own = child.ownActions();
  if (!own.isEmpty()) popup->addSeparator();
  popup->addActions(own);
  connect(&child, &QObject::destroyed, popup, &QWidget::close);
  popup->popup(globalPosition);
}

}  // namespace torvik::app
