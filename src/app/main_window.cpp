// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "app/about_box.h"
#include "app/arrange.h"
#include "app/job_control.h"
#include "app/start_up.h"
#include "base/key_filter.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "base/settings.h"
#include "base/title.h"

/// The resources of a static library have to be asked for, from outside every namespace.
static void loadResources() { Q_INIT_RESOURCE(torvik); }

namespace torvik::app {

namespace {

using analysis::RunState;
using base::OptionId;

const QString kFilter = "Input Files (*.inp);;All Files (*)";
constexpr const char* kSection = "mdiMain";
constexpr int kClipboardInterval = 500;  // ms

QString qt(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }
QString title() { return base::kTitle; }
std::string nativePath(const QString& path) { return QFile::encodeName(path).toStdString(); }
QString shownPath(const std::string& path) { return QFile::decodeName(path.c_str()); }

/// A menu entry shows text as it stands.
QString withoutMnemonics(QString text) { return text.replace('&', "&&"); }

}  // namespace

MainWindow::MainWindow(Program& program) : m_program(program) {
  loadResources();
  setObjectName(kSection);
  setWindowIcon(QIcon(":/icons/torvik.svg"));
  setAcceptDrops(true);
  m_area = new QMdiArea;
  m_area->setObjectName("mdiArea");
  m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setCentralWidget(m_area);
  m_panels = new StatusPanels;
  setStatusBar(m_panels);
  m_job = std::make_unique<JobControl>(*this);
  buildMenus();
  buildToolBar();

  connect(m_area, &QMdiArea::subWindowActivated, this, [this] {
    // Without focus the area reports no active window; the current one stays the one that commands act on.
    QMdiSubWindow* current = m_area->currentSubWindow();
    auto* child = current ? qobject_cast<views::ChildWindow*>(current->widget()) : nullptr;
    if (child == m_active) return;
    if (m_active) childDeactivated(*m_active);
    if (child) childActivated(*child);
  });
  connect(&m_clipboardTimer, &QTimer::timeout, this, &MainWindow::watchClipboard);
  m_clipboardTimer.start(kClipboardInterval);
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::add(QMenu& menu, const QString& name, int index, const QString& caption,
                         std::function<void()> command, const QKeySequence& shortcut) {
  QAction* action = menu.addAction(caption);
  action->setObjectName(index < 0 ? name : name + QString::number(index));
  action->setShortcut(shortcut);
  m_actions.insert(action->objectName(), action);
  const QString doing = QString(caption).remove('&').remove("...");
  // Between the user's End and the solver's next yield the run state is over, but the solver still stands on the
  // stack: what could change the model has to wait.
  static const QStringList kWithoutSolver = {"mnuFileManage", "mnuFileRecentPath", "mnuObjectSectionParameter"};
  const bool waits = kWithoutSolver.contains(name) || (name == "mnuFileJob" && index == 0) ||
                     (name == "mnuWindowAll" && index == 2);
  connect(action, &QAction::triggered, this, [this, doing, waits, command = std::move(command)] {
    if (!waits || !m_job->isRunning()) guarded(doing, command);
  });
  return action;
}

void MainWindow::buildMenus() {
  using Key = QKeySequence;
  QMenu& file = *menuBar()->addMenu("&File");
  add(file, "mnuFileManage", 0, "&New", [this] { mnuFileManage_Click(0); }, Key::New);
  add(file, "mnuFileManage", 1, "&Open...", [this] { mnuFileManage_Click(1); }, Key::Open);
  add(file, "mnuFileManage", 2, "&Save", [this] { mnuFileManage_Click(2); }, Key::Save);
  add(file, "mnuFileManage", 3, "Save &As...", [this] { mnuFileManage_Click(3); }, Key("Ctrl+Shift+S"));
  file.addSeparator();
  add(file, "mnuFilePrint", 0, "P&rinter Setup...", [] {});
  add(file, "mnuFilePrint", 1, "&Print...", [] {}, Key::Print);
  file.addSeparator();
  add(file, "mnuFileJob", 0, "Star&t", [this] { m_job->mnuFileJob_Click(0); }, Key("F5"));
  add(file, "mnuFileJob", 1, "Pa&use", [this] { m_job->mnuFileJob_Click(1); }, Key("F6"))->setCheckable(true);
  add(file, "mnuFileJob", 2, "&End", [this] { m_job->mnuFileJob_Click(2); });
  QAction* separator = file.addSeparator();
  separator->setObjectName("mnuFileRecentPathSepa");
  m_actions.insert(separator->objectName(), separator);
  for (int i = 0; i < RecentPaths::kEntries; ++i)
    add(file, "mnuFileRecentPath", i, {}, [this, i] { mnuFileRecentPath_Click(i); });
  file.addSeparator();
  add(file, "mnuFileExit", -1, "E&xit", [this] { close(); }, Key::Quit);

  m_editMenu = menuBar()->addMenu("&Edit");
  m_editMenu->setObjectName("mnuEdit");
  const auto onActive = [this](void (views::ChildWindow::*operation)()) {
    return [this, operation] {
      if (m_active) (m_active->*operation)();
    };
  };
  using views::ChildWindow;
  add(*m_editMenu, "mnuEditEdit", 0, "Cu&t", onActive(&ChildWindow::cut), Key::Cut);
  add(*m_editMenu, "mnuEditEdit", 1, "&Copy", onActive(&ChildWindow::copy), Key::Copy);
  add(*m_editMenu, "mnuEditEdit", 2, "&Paste", onActive(&ChildWindow::paste), Key::Paste);
  add(*m_editMenu, "mnuEditEdit", 3, "&Delete", onActive(&ChildWindow::deleteCells));
  add(*m_editMenu, "mnuEditEdit", 4, "Select &All", onActive(&ChildWindow::selectAll), Key::SelectAll);
  m_editMenu->addSeparator();
  add(*m_editMenu, "mnuEditGrid", 0, "&Insert a Row", onActive(&ChildWindow::insertRows));
  add(*m_editMenu, "mnuEditGrid", 1, "&Remove a Row", onActive(&ChildWindow::removeRows));
  add(*m_editMenu, "mnuEditGrid", 2, "Original Column &Width", onActive(&ChildWindow::originalColumnWidth));

  // The windows behind these entries are not there yet; `setEnabled` keeps them off.
  QMenu& object = *menuBar()->addMenu("&Object");
  const char* const kObjects[] = {"Bea&m", "&Solid", "&Bar", "&Tendon", "&Axial Force"};
  for (int i = 0; i < 5; ++i) add(object, "mnuObjectSetting", i, kObjects[i], [] {});
  object.addSeparator();
  add(object, "mnuObjectSetDefault", -1, "Set &Default...", [] {});
  object.addSeparator();
  add(object, "mnuObjectChart", -1, "C&hart", [] {});
  add(object, "mnuObjectFigure", -1, "&Figure", [] {});
  add(object, "mnuObjectSectionParameter", -1, "Section &Parameter",
      [this] { mnuObjectSectionParameter_Click(); });

  QMenu& tool = *menuBar()->addMenu("&Tool");
  add(tool, "mnuToolBar", 0, "&Tool Bar", [this] { toggleBar(0); })->setCheckable(true);
  add(tool, "mnuToolBar", 1, "&Status Bar", [this] { toggleBar(1); })->setCheckable(true);
  add(tool, "mnuToolResize", -1, "&Resize", [this] { toggleResize(); })->setCheckable(true);
  tool.addSeparator();
  add(tool, "mnuToolOption", -1, "&Option...", [this] { openOptions(0); });

  QMenu& window = *menuBar()->addMenu("&Window");
  const char* const kArrange[] = {"&Cascade", "&Tile Horizontal", "Tile &Vertical", "(Do nothing)", "&Arrange Icons"};
  for (int i = 0; i < 5; ++i)
    add(window, "mnuWindowArrange", i, kArrange[i], [this, i] { arrange(*m_area, static_cast<Arrangement>(i)); });
  menuAction("mnuWindowArrange", 3).setVisible(false);
  window.addSeparator();
  const char* const kAll[] = {"&Minimize All", "&Restore All", "C&lose All"};
  for (int i = 0; i < 3; ++i) add(window, "mnuWindowAll", i, kAll[i], [this, i] { mnuWindowAll_Click(i); });

  QMenu& help = *menuBar()->addMenu("&Help");
  add(help, "mnuHelpHelp", 0, "&Help",
      [this] {
        if (!m_help) m_help = std::make_unique<HelpWindow>();
        m_help->showTopic({});
      },
      Key::HelpContents);
  add(help, "mnuHelpHelp", 1, "Home &Page", [this] { showMessage("Home page is not available now."); });
  add(help, "mnuHelpAbout", -1, "&About...", [this] { AboutBox(this).exec(); });
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
      m_stepBox->setToolTip("Step of the curvature: Small, Large or a number [1/mm]");
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
      connect(action, &QAction::triggered, this, [this] { guarded("Pause", [this] { m_job->mnuFileJob_Click(3); }); });
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

QAction& MainWindow::toolAction(const QString& key) const { return *m_actions.value("Toolbar1_" + key); }

void MainWindow::guarded(const QString& doing, const std::function<void()>& command) {
  try {
    command();
  } catch (const std::exception& error) {
    showMessage(doing + ": " + qt(error.what()));
  }
}

// ---- Start and end -------------------------------------------------------------------------------------------

void MainWindow::load() {
  setWindowTitle(qt(base::VersionTitle()));
  menuAction("mnuFileExit").setText("E&xit " + title());
  guarded("Settings", [this] {
    const base::ProfileFile settings = readSettings();
    RestoreWindowLayout(settings);
    m_recent.load(settings);
    showRecentPaths();
    menuAction("mnuToolBar", 0).setChecked(settings.ProfileGetInt(base::kToolSection, "ToolBar", 1) != 0);
    m_toolBar->setVisible(menuAction("mnuToolBar", 0).isChecked());
    const std::string step = base::optionText(settings, OptionId::CurvatureUserRangeStep);
    m_stepBox->setEditText(step == "Large" ? "Small" : qt(step));
    menuAction("mnuToolBar", 1).setChecked(settings.ProfileGetInt(base::kToolSection, "StatusBar", 1) != 0);
    m_panels->setVisible(menuAction("mnuToolBar", 1).isChecked());
    m_panels->setPanel("Max. Iteration",
                       QString::number(base::optionInteger(settings, OptionId::ConvergenceMaxIteration)));
    menuAction("mnuToolResize").setChecked(settings.ProfileGetInt(base::kToolSection, "Resize", -1) != 0);
  });
  NewDocument();
  m_loaded = true;
}

void MainWindow::NewDocument() {
  m_panels->setPanel("Status", "Waiting");
  m_program.run.state = RunState::AtRest;
  RefreshCommandState();
  m_program.BatchMode = false;
  m_program.document.SavedFlag = true;
  m_program.document.tables = {};
  m_program.document.currentFile.clear();
  setWindowTitle(title() + " - (New File)");
}

void MainWindow::takeCommandLine(const std::vector<std::string>& tokens) {
  const CommandLineFiles line = sortTokens(tokens);
  for (const std::string& option : line.unknownOptions) showMessage("Option \"" + qt(option) + "\" ignored.");
  if (!line.files.empty()) m_program.BatchMode = line.files.size() >= 2;
  for (const std::string& file : line.files) {
    if (!openFile(file)) return;
    guarded("Start", [this] { m_job->mnuFileJob_Click(0); });
    if (m_closeWhenJobIsOver) return;
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (m_closeWhenJobIsOver) m_closeWhenJobIsOver = false;  // asked already, the job has come to its end
  else if (!m_program.document.SavedFlag) {
    if (!m_program.dialogs->question("Object(s) have not been saved.  Exit " + title() + " ?", title())) {
      event->ignore();
      return;
    }
  }
  if (m_job->isRunning()) {
    // The solver stands on the stack: it ends at its next yield, and the window closes behind it.
    m_closeWhenJobIsOver = true;
    m_program.run.state = RunState::Over;
    m_job->whenOver = [this] { QTimer::singleShot(0, this, [this] { close(); }); };
    event->ignore();
    return;
  }
  closeAllChildren();
  changeSettings([this](base::ProfileFile& settings) {
    SaveWindowLayout(settings);
    m_recent.save(settings);
    settings.ProfileWrite(base::kOptionSection, base::optionKey(OptionId::CurvatureUserRangeStep).name,
                          m_stepBox->currentText().toStdString());
  });
  event->accept();
  QCoreApplication::quit();
}

// ---- Settings and layout -------------------------------------------------------------------------------------

base::ProfileFile MainWindow::readSettings() const { return base::ProfileFile::read(m_program.settingsFile); }

void MainWindow::changeSettings(const std::function<void(base::ProfileFile&)>& change) {
  try {
    base::ProfileFile settings = readSettings();
    change(settings);
    settings.save(m_program.settingsFile);
  } catch (const base::InputError&) {
    // A settings file that can not be written keeps nobody from working.
  }
}

void MainWindow::SaveWindowLayout(base::ProfileFile& settings) const {
  const auto write = [&](const char* key, double value) {
    settings.ProfileWrite(kSection, key, base::plainText(value));
  };
  const QRect place = isMaximized() || isMinimized() ? normalGeometry() : geometry();
  write("State", isMaximized() ? 2 : isMinimized() ? 1 : 0);
  write("Left", place.left());
  write("Top", place.top());
  write("Width", place.width());
  write("Height", place.height());
}

void MainWindow::RestoreWindowLayout(const base::ProfileFile& settings) {
  m_restoringLayout = true;
  const QRect screenArea = screen()->availableGeometry();
  const double width = screenArea.width();
  const double height = screenArea.height();
  const auto read = [&](const char* key, double defaultValue) {
    return qRound(settings.ProfileGetSingle(kSection, key, static_cast<float>(defaultValue)));
  };
  QRect place(read("Left", width * 0.3 / 2), read("Top", height * 0.3 / 2), read("Width", width * 0.7),
              read("Height", height * 0.7));
  // A place that the present screens do not show (a screen was taken away) is of no use.
  const QList<QScreen*> screens = QGuiApplication::screens();
  const bool visible = std::any_of(screens.begin(), screens.end(),
                                   [&](const QScreen* s) { return s->availableGeometry().intersects(place); });
  if (!visible) place.moveCenter(screenArea.center());
  setGeometry(place);
  const int state = settings.ProfileGetInt(kSection, "State", 0);
  setWindowState(state == 2 ? Qt::WindowMaximized : state == 1 ? Qt::WindowMinimized : Qt::WindowNoState);
  m_restoringLayout = false;
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (!m_loaded || m_restoringLayout || menuAction("mnuToolResize").isChecked()) return;
  m_restoringLayout = true;  // until the window has snapped back
  QTimer::singleShot(0, this, [this] { guarded("Resize", [this] { RestoreWindowLayout(readSettings()); }); });
}

void MainWindow::toggleBar(int index) {
  const bool on = menuAction("mnuToolBar", index).isChecked();
  if (index == 0)
    m_toolBar->setVisible(on);
  else
    m_panels->setVisible(on);
  changeSettings([&](base::ProfileFile& settings) {
    settings.ProfileWrite(base::kToolSection, index == 0 ? "Toolbar" : "StatusBar", on ? "-1" : "0");
  });
}

void MainWindow::toggleResize() {
  const bool on = menuAction("mnuToolResize").isChecked();
  changeSettings([&](base::ProfileFile& settings) {
    settings.ProfileWrite(base::kToolSection, "Resize", on ? "-1" : "0");
    if (!on) SaveWindowLayout(settings);
  });
}

// ---- Command states ------------------------------------------------------------------------------------------

void MainWindow::setEnabled(const QString& name, int first, int last, bool on) {
  static const QStringList kNotThereYet = {"mnuFilePrint",   "mnuObjectSetting", "mnuObjectSetDefault",
                                           "mnuObjectChart", "mnuObjectFigure",  "mnuToolOption"};
  for (int i = first; i <= last; ++i) menuAction(name, i).setEnabled(on && !kNotThereYet.contains(name));
}

void MainWindow::RefreshCommandState() {
  const RunState state = m_program.run.state;
  const bool atRest = state == RunState::AtRest;
  const bool idle = atRest || state == RunState::Over;
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
  const bool idle = runState() == RunState::AtRest || runState() == RunState::Over;
  setEnabled("mnuFilePrint", 1, 1, on.print);
  setEnabled("mnuEditEdit", 0, 0, on.cut);
  setEnabled("mnuEditEdit", 1, 1, on.copy);
  setEnabled("mnuEditEdit", 2, 2, on.paste);
  setEnabled("mnuEditEdit", 3, 3, on.deleteCells);
  setEnabled("mnuEditEdit", 4, 4, on.selectAll);
  setEnabled("mnuEditGrid", 0, 0, on.insertRow);
  setEnabled("mnuEditGrid", 1, 1, on.removeRow);
  setEnabled("mnuEditGrid", 2, 2, on.originalColumnWidth);
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
  QMenu popup(this);
  popup.addActions(m_editMenu->actions());
  const QList<QAction*> own = child.ownActions();
  if (!own.isEmpty()) popup.addSeparator();
  popup.addActions(own);
  popup.exec(globalPosition);
}

void MainWindow::openOptions(int) {}

void MainWindow::showMessage(const QString& text) { m_program.dialogs->information(text, title()); }

QString MainWindow::askSaveFile(const QString& caption, const QString& proposal, const QString& filter) {
  return m_program.dialogs->saveFile(caption, proposal, filter, {});
}

// ---- Files ---------------------------------------------------------------------------------------------------

bool MainWindow::mayDropEdits(const QString& question) {
  return m_program.document.SavedFlag ||
         m_program.dialogs->question("Object(s) have not been saved.  " + question, title());
}

void MainWindow::mnuFileManage_Click(int index) {
  const std::string& file = m_program.document.currentFile;
  switch (index) {
    case 0:
      if (!mayDropEdits("Create a file ?")) return;
      closeAllChildren();
      NewDocument();
      return;
    case 1:
      if (!mayDropEdits("Open a file ?")) return;
      closeAllChildren();
      openPaths(m_program.dialogs->openFiles(title() + " - Open", kFilter));
      return;
    case 2:
      if (!file.empty()) {
        closeAllChildren();
        saveTo(file);
        return;
      }
      [[fallthrough]];
    case 3: {
      const QString path =
          m_program.dialogs->saveFile(title() + " - Save As", shownPath(file), kFilter, "inp");
      if (path.isEmpty()) return;
      closeAllChildren();
      saveTo(nativePath(path));
      return;
    }
    default: throw base::InternalError(base::kImpossibleCase, "File menu");
  }
}

void MainWindow::saveTo(const std::string& path) { model::WriteInputFile(m_program.document, *this, path); }

void MainWindow::openPaths(const QStringList& paths) {
  if (paths.isEmpty()) return;
  m_program.BatchMode = paths.size() > 1;
  if (paths.size() == 1) {
    openFile(nativePath(paths.first()));
    return;
  }
  for (auto path = paths.crbegin(); path != paths.crend(); ++path) {
    if (openFile(nativePath(*path))) guarded("Start", [this] { m_job->mnuFileJob_Click(0); });
    if (m_closeWhenJobIsOver) return;
  }
}

bool MainWindow::openFile(const std::string& path) {
  bool read = false;
  guarded("Open", [&] {
    try {
      read = model::ReadInputFile(m_program.document, *this, path);
    } catch (...) {
      // The tables hold what was read up to the fault: a Save must not put that over the user's file.
      m_program.document.currentFile.clear();
      m_program.document.SavedFlag = false;
      setWindowTitle(title() + " - (New File)");
      throw;
    }
  });
  return read;
}

void MainWindow::cannotOpen(const std::string& path) {
  showMessage("Can't open " + shownPath(path));
  m_recent.remove(path);
  showRecentPaths();
}

void MainWindow::takePath(const std::string& path) {
  m_recent.add(path);
  showRecentPaths();
  setWindowTitle(title() + " - " + shownPath(base::shortenPath(path)));
}

void MainWindow::showWaitCursor(bool on) {
  if (on)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

void MainWindow::showRecentPaths() {
  menuAction("mnuFileRecentPathSepa").setVisible(m_recent.showsSeparator());
  for (int i = 0; i < RecentPaths::kEntries; ++i) {
    QAction& entry = menuAction("mnuFileRecentPath", i);
    entry.setText(withoutMnemonics(shownPath(m_recent.entry(i))));
    entry.setVisible(!m_recent.entry(i).empty());
  }
}

void MainWindow::mnuFileRecentPath_Click(int index) {
  if (!mayDropEdits("Open a file ?")) return;
  closeAllChildren();
  const std::string path = m_recent.entry(index);  // a copy: opening moves the slots
  openFile(path);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && !m_job->isRunning()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  if (m_job->isRunning()) return;
  event->acceptProposedAction();
  std::vector<std::string> paths;
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isDir()) paths.push_back(nativePath(url.toLocalFile()));
  if (paths.empty() || !mayDropEdits("Open a file ?")) return;
  closeAllChildren();
  for (const std::string& path : paths) {
    if (openFile(path)) guarded("Start", [this] { m_job->mnuFileJob_Click(0); });
    if (m_closeWhenJobIsOver) return;
  }
}

// ---- Children ------------------------------------------------------------------------------------------------

void MainWindow::addChild(views::ChildWindow* child) {
  QMdiSubWindow* subWindow = m_area->addSubWindow(child);
  subWindow->setAttribute(Qt::WA_DeleteOnClose);
  subWindow->setWindowIcon(windowIcon());
  child->load();
  subWindow->show();
}

void MainWindow::activate(views::ChildWindow* child) { m_area->setActiveSubWindow(child->frame()); }

QList<views::ChildWindow*> MainWindow::children() const {
  QList<views::ChildWindow*> found;
  for (QMdiSubWindow* window : m_area->subWindowList())
    if (auto* child = qobject_cast<views::ChildWindow*>(window->widget()); child && !child->isUnloaded())
      found.append(child);
  return found;
}

void MainWindow::closeAllChildren() {
  for (views::ChildWindow* child : children()) child->closeNow();
}

void MainWindow::mnuWindowAll_Click(int index) {
  if (index == 2) {
    closeAllChildren();
    return;
  }
  for (QMdiSubWindow* window : m_area->subWindowList()) {
    if (index == 0)
      window->showMinimized();
    else
      window->showNormal();
  }
}

void MainWindow::mnuObjectSectionParameter_Click() { m_job->showSectionParameters(); }

// ---- Step box ------------------------------------------------------------------------------------------------

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_stepBox || watched == m_stepBox->lineEdit()) {
    const auto movesFocus = [&] {  // not by another program's window, nor by the box's own list
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
    };
    if (event->type() == QEvent::FocusIn && movesFocus()) m_job->pauseForStepBox();
    if (event->type() == QEvent::FocusOut && movesFocus()) stepBoxLostFocus();
    if (event->type() == QEvent::KeyPress && watched == m_stepBox->lineEdit()) {
      const QString text = static_cast<QKeyEvent*>(event)->text();
      const bool typed = text.size() == 1 && (text[0].isPrint() || text[0] == '\b');
      if (typed && base::KeyFilter(text[0].unicode(), "Double") == 0) {
        QApplication::beep();
        return true;
      }
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::stepBoxLostFocus() {
  if (!base::toNumber(m_stepBox->currentText().toStdString())) {
    guarded("Step box", [this] {
      m_stepBox->setEditText(qt(base::optionText(readSettings(), OptionId::CurvatureUserRangeStep)));
    });
  }
  if (m_stepBox->currentText() == "Large") m_stepBox->setEditText("Small");
}

}  // namespace torvik::app
