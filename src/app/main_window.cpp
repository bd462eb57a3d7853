// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPrinter>
#include <QRegion>
#include <QScreen>
#include <QToolBar>
#include <algorithm>
#include <filesystem>
#include <numeric>
#include <utility>

#include "app/job_control.h"
#include "app/start_up.h"
#include "base/key_filter.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "base/settings.h"
#include "base/title.h"
#include "options/option_dialog.h"
#include "views/chart_window.h"
#include "widgets/shown_text.h"

/// The resources of a static library have to be asked for, from outside every namespace.
static void loadResources() {
  Q_INIT_RESOURCE(torvik);
}

namespace torvik::app {

namespace {

using base::OptionId;
using job::JobState;

const QString kFilter = "Input Files (*.inp);;All Files (*)";
constexpr const char* kSection = "mdiMain";
constexpr int kClipboardInterval = 500;  // ms

QString title() {
  return base::kTitle;
}
std::string nativePath(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

/// A menu entry shows text as it stands.
QString withoutMnemonics(QString text) {
  return text.replace('&', "&&");
}

/// The path of the same file for a later run, which may begin in another folder.
std::string fromAnywhere(const std::string& path) {
  std::error_code failed;
  const std::filesystem::path whole = std::filesystem::absolute(path, failed);
  return failed ? path : whole.lexically_normal().string();
}

/// The rectangle moved into `area`, and made smaller where it is larger than that.
QRect within(QRect place, const QRect& area) {
  place.setSize(place.size().boundedTo(area.size()).expandedTo({1, 1}));
  place.moveLeft(std::clamp(place.left(), area.left(), area.right() + 1 - place.width()));
  place.moveTop(std::clamp(place.top(), area.top(), area.bottom() + 1 - place.height()));
  return place;
}

}  // namespace

MainWindow::MainWindow(Program& program) : m_program(program) {
  loadResources();
  setObjectName(kSection);
  setWindowIcon(QIcon(":/icons/torvik.svg"));
  setAcceptDrops(true);
  setContextMenuPolicy(Qt::NoContextMenu);  // the bars are shown and hidden by their menu entries alone
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

MainWindow::~MainWindow() {
  m_area->disconnect(this);  // it goes later than what its signals would set
}

void MainWindow::guarded(const QString& doing, const std::function<void()>& command, Box box) {
  try {
    command();
  } catch (const std::exception& error) {
    const QString text = doing + ": " + widgets::shownText(error.what());
    if (box == Box::Beside)
      notice(text);
    else
      showMessage(text);
  }
}

// ---- Start and end
// -------------------------------------------------------------------------------------------

void MainWindow::load() {
  setWindowTitle(widgets::shownText(base::VersionTitle()));
  menuAction("mnuFileExit").setText("E&xit " + title());
  guarded("Settings", [this] {
    const base::ProfileFile settings = readSettings();
    guarded("Window layout", [&] { RestoreWindowLayout(settings); });
    m_recent.load(settings);
    showRecentPaths();
    menuAction("mnuToolBar", 0).setChecked(settings.ProfileGetInt(base::kToolSection, "ToolBar", 1) != 0);
    m_toolBar->setVisible(menuAction("mnuToolBar", 0).isChecked());
    const std::string step = base::optionText(settings, OptionId::CurvatureUserRangeStep);
    m_stepBox->setEditText(step == "Large" ? "Small" : widgets::shownText(step));
    menuAction("mnuToolBar", 1).setChecked(settings.ProfileGetInt(base::kToolSection, "StatusBar", 1) != 0);
    m_panels->setVisible(menuAction("mnuToolBar", 1).isChecked());
    guarded("Settings", [&] {
      m_panels->setPanel("Max. Iteration",
                         QString::number(base::optionInteger(settings, OptionId::ConvergenceMaxIteration)));
    });
    menuAction("mnuToolResize").setChecked(settings.ProfileGetInt(base::kToolSection, "Resize", -1) != 0);
  });
  NewDocument();
  m_loaded = true;
}

void MainWindow::NewDocument() {
  m_panels->setPanel("Status", "Waiting");
  m_program.steering.state = JobState::AtRest;
  RefreshCommandState();
  m_program.BatchMode = false;
  m_program.document.SavedFlag = true;
  m_program.document.tables = {};
  m_program.document.stored = {};
  m_program.document.currentFile.clear();
  m_program.run = nullptr;
  setWindowTitle(title() + " - (New File)");
}

void MainWindow::takeCommandLine(const std::vector<std::string>& tokens) {
  const CommandLineFiles line = sortTokens(tokens);
  for (const std::string& option : line.unknownOptions)
    showMessage("Option \"" + widgets::shownText(option) + "\" ignored.");
  if (!line.files.empty()) m_program.BatchMode = line.files.size() >= 2;
  for (const std::string& file : line.files) {
    if (!openFile(file)) return;
    guarded("Start", [this] { m_job->mnuFileJob_Click(0); });
    if (m_closeWhenJobIsOver) return;
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (m_closeWhenJobIsOver)
    m_closeWhenJobIsOver = false;  // asked already, the job has come to its end
  else if (!m_program.document.SavedFlag) {
    if (!m_program.dialogs->question("Object(s) have not been saved.  Exit " + title() + " ?", title())) {
      event->ignore();
      return;
    }
  }
  if (m_job->isRunning()) {
    // The solver stands on the stack: it ends at its next yield, and the window closes behind it.
    m_closeWhenJobIsOver = true;
    m_program.steering.state = JobState::Over;
    RefreshCommandState();
    m_job->whenOver = [this] { QTimer::singleShot(0, this, [this] { close(); }); };
    event->ignore();
    return;
  }
  for (QDialog* box : findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) box->close();
  if (!closeAllChildren()) {
    event->ignore();
    return;
  }
  changeSettings([this](base::ProfileFile& settings) {
    SaveWindowLayout(settings);
    m_recent.save(settings);
    settings.ProfileWrite(base::kOptionSection, base::optionKey(OptionId::CurvatureUserRangeStep).name,
                          m_stepBox->currentText().toStdString());
  });
  event->accept();
  QCoreApplication::quit();
}

// ---- Settings and layout
// -------------------------------------------------------------------------------------

base::ProfileFile MainWindow::readSettings() const {
  return base::ProfileFile::read(m_program.settingsFile);
}

void MainWindow::changeSettings(const std::function<void(base::ProfileFile&)>& change) {
  try {
    writeSettings(change);
  } catch (const base::InputError&) {
    // A settings file that can not be written keeps nobody from working.
  }
}

void MainWindow::writeSettings(const std::function<void(base::ProfileFile&)>& change) {
  base::ProfileFile settings = readSettings();
  change(settings);
  settings.save(m_program.settingsFile);
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
  const QRect screenArea = screen()->availableGeometry();
  const double width = screenArea.width();
  const double height = screenArea.height();
  const auto read = [&](const char* key, double defaultValue) {
    constexpr float kFar = 1e6F;  // beyond every screen
    return qRound(
        std::clamp(settings.ProfileGetSingle(kSection, key, static_cast<float>(defaultValue)), -kFar, kFar));
  };
  const QRect stored(read("Left", width * 0.3 / 2), read("Top", height * 0.3 / 2), read("Width", width * 0.7),
                     read("Height", height * 0.7));
  // A place that the present screens do not show whole (another screen was there) is moved into one of them.
  const QList<QScreen*> screens = QGuiApplication::screens();
  const QRegion shown =
      std::accumulate(screens.begin(), screens.end(), QRegion(),
                      [](const QRegion& sum, const QScreen* s) { return sum | s->availableGeometry(); });
  const bool isWhole = stored.isValid() && QRegion(stored).subtracted(shown).isEmpty();
  const QRect place = isWhole ? stored : within(stored, screenArea);
  const int state = settings.ProfileGetInt(kSection, "State", 0);
  m_restoringLayout = true;
  setWindowState(Qt::WindowNoState);
  setGeometry(place);
  setWindowState(state == 2 ? Qt::WindowMaximized : state == 1 ? Qt::WindowMinimized : Qt::WindowNoState);
  m_restoringLayout = false;
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (!m_loaded || m_restoringLayout || isMaximized() || menuAction("mnuToolResize").isChecked()) return;
  m_restoringLayout = true;  // until the window has snapped back
  QTimer::singleShot(0, this, [this] {
    m_restoringLayout = false;
    guarded(
        "Resize", [this] { RestoreWindowLayout(readSettings()); }, Box::Beside);
  });
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

void MainWindow::openOptions(int tab) {
  if (m_options) return;
  if (tab > 0)
    changeSettings([&](base::ProfileFile& settings) {
      settings.ProfileWrite(base::kOptionSection, base::optionKey(OptionId::SelectedTab).name,
                            base::plainText(tab));
    });
  const auto open = [this] {
    auto* const window = qobject_cast<views::ChartWindow*>(m_active.data());
    const options::Services services{[this](const QString& file) { m_program.sounds->play(file); },
                                     [this](const QString& key) { showHelp(key); }, soundFolder()};
    m_options = new options::OptionDialog(*this, window ? &window->chart() : nullptr, services, this);
    m_options->setAttribute(Qt::WA_DeleteOnClose);
    m_options->open();  // and not exec: a job that runs stands below on the stack and goes on
  };
  guarded("Option", open, Box::Beside);
}

void MainWindow::showHelp(const QString& topic) {
  if (!m_help) m_help = std::make_unique<HelpWindow>();
  m_help->showTopic(topic);
}

void MainWindow::showMessage(const QString& text, const QString& caption) {
  m_program.dialogs->information(text, caption.isEmpty() ? title() : caption);
}

void MainWindow::notice(const QString& text, const QString& caption) {
  m_program.dialogs->notice(text, caption.isEmpty() ? title() : caption);
}

void MainWindow::askSaveFile(const QString& caption, const QString& proposal, const QString& filter,
                             std::function<void(const QString& path)> then) {
  m_program.dialogs->saveFile(caption, proposal, filter, {},
                              [this, caption, then = std::move(then)](const QString& path) {
                                guarded(
                                    caption.section(" - ", 1), [&] { then(path); }, Box::Beside);
                              });
}

QString MainWindow::askOpenFile(const QString& caption, const QString& proposal, const QString& filter,
                                const QString& defaultExtension) {
  return m_program.dialogs->openFile(caption, proposal, filter, defaultExtension);
}

bool MainWindow::ask(const QString& question) {
  return m_program.dialogs->question(question, title());
}

// ---- Files
// ---------------------------------------------------------------------------------------------------

bool MainWindow::mayDropEdits(const QString& question) {
  return m_program.document.SavedFlag ||
         m_program.dialogs->question("Object(s) have not been saved.  " + question, title());
}

void MainWindow::mnuFileManage_Click(int index) {
  const std::string& file = m_program.document.currentFile;
  switch (index) {
    case 0:
      if (!mayDropEdits("Create a file ?") || !closeAllChildren()) return;
      NewDocument();
      return;
    case 1:
      if (!mayDropEdits("Open a file ?") || !closeAllChildren()) return;
      openPaths(m_program.dialogs->openFiles(title() + " - Open", kFilter));
      return;
    case 2:
      if (!file.empty()) {
        if (closeAllChildren()) saveTo(file);
        return;
      }
      [[fallthrough]];
    case 3: {
      const QString path =
          m_program.dialogs->saveFile(title() + " - Save As", widgets::shownText(file), kFilter, "inp");
      if (path.isEmpty() || !closeAllChildren()) return;
      saveTo(nativePath(path));
      return;
    }
    default:
      throw base::InternalError(base::kImpossibleCase, "File menu");
  }
}

void MainWindow::saveTo(const std::string& path) {
  const QString caption = windowTitle();
  try {
    model::WriteInputFile(m_program.document, *this, path);
  } catch (...) {
    setWindowTitle(caption);
    throw;
  }
}

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
    model::Document& document = m_program.document;
    const bool saved = std::exchange(document.SavedFlag, false);
    const QString caption = windowTitle();
    try {
      read = model::ReadInputFile(document, *this, path);
      if (read)
        m_program.run = nullptr;
      else
        document.SavedFlag = saved;
    } catch (...) {
      if (!document.SavedFlag) {  // set as soon as the tables are touched
        document.SavedFlag = saved;
        setWindowTitle(caption);
        throw;
      }
      // The tables hold what was read up to the fault: a Save must not put that over the user's file.
      document.currentFile.clear();
      document.SavedFlag = false;
      m_program.run = nullptr;
      setWindowTitle(title() + " - (New File)");
      throw;
    }
  });
  return read;
}

void MainWindow::cannotOpen(const std::string& path) {
  showMessage("Can't open " + widgets::shownText(path));
  m_recent.remove(fromAnywhere(path));
  showRecentPaths();
}

void MainWindow::takePath(const std::string& path) {
  m_recent.add(fromAnywhere(path));
  showRecentPaths();
  setWindowTitle(title() + " - " + widgets::shownText(base::shortenPath(path)));
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
    entry.setText(withoutMnemonics(widgets::shownText(m_recent.entry(i))));
    entry.setVisible(!m_recent.entry(i).empty());
  }
}

void MainWindow::mnuFileRecentPath_Click(int index) {
  if (!mayDropEdits("Open a file ?") || !closeAllChildren()) return;
  const std::string path = m_recent.entry(index);  // a copy: opening moves the slots
  openFile(path);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && takesDrops()) event->acceptProposedAction();
}

bool MainWindow::takesDrops() const {
  return !m_job->isRunning() && !QApplication::activeModalWidget();
}

void MainWindow::dropEvent(QDropEvent* event) {
  if (!takesDrops()) return;
  event->acceptProposedAction();
  std::vector<std::string> paths;
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isDir())
      paths.push_back(nativePath(url.toLocalFile()));
  // Behind the event: the other program waits until the drop is taken.
  QTimer::singleShot(0, this, [this, paths] {
    if (!takesDrops() || paths.empty()) return;
    for (views::ChildWindow* child : children()) child->finishEditing();
    if (!mayDropEdits("Open a file ?") || !closeAllChildren()) return;
    for (const std::string& path : paths) {
      if (openFile(path)) guarded("Start", [this] { m_job->mnuFileJob_Click(0); });
      if (m_closeWhenJobIsOver) return;
    }
  });
}

// ---- Children
// ------------------------------------------------------------------------------------------------

void MainWindow::addChild(views::ChildWindow* child) {
  QMdiSubWindow* subWindow = m_area->addSubWindow(child);
  subWindow->setAttribute(Qt::WA_DeleteOnClose);
  subWindow->setWindowIcon(windowIcon());
  try {
    child->load();
  } catch (...) {
    (void)closeChild(child);
    throw;
  }
  subWindow->show();
}

void MainWindow::activate(views::ChildWindow* child) {
  if (child->frame()->isMinimized()) child->frame()->showNormal();
  m_area->setActiveSubWindow(child->frame());
}

QList<views::ChildWindow*> MainWindow::children() const {
  QList<views::ChildWindow*> found;
  for (QMdiSubWindow* window : m_area->subWindowList())
    if (auto* child = qobject_cast<views::ChildWindow*>(window->widget()); child && !child->isUnloaded())
      found.append(child);
  return found;
}

bool MainWindow::closeChild(views::ChildWindow* child) {
  const QPointer<QMdiSubWindow> frame = child->frame();
  if (!child->closeNow()) return false;
  // Closing only marks it for deletion behind the event at hand, in which a whole batch may still run.
  if (frame) QCoreApplication::sendPostedEvents(frame, QEvent::DeferredDelete);
  return true;
}

bool MainWindow::closeAllChildren() {
  bool closed = true;
  for (views::ChildWindow* child : children()) closed = closeChild(child) && closed;
  return closed;
}

void MainWindow::mnuWindowAll_Click(int index) {
  if (index == 2) {
    (void)closeAllChildren();
    return;
  }
  for (QMdiSubWindow* window : m_area->subWindowList()) {
    if (index == 0)
      window->showMinimized();
    else
      window->showNormal();
  }
}

// ---- Step box
// ------------------------------------------------------------------------------------------------

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_stepBox || watched == m_stepBox->lineEdit()) {
    const auto movesFocus = [&] {  // not by another program's window, nor by the box's own list
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
    };
    if (event->type() == QEvent::FocusIn && movesFocus()) m_job->pauseForStepBox();
    if (event->type() == QEvent::FocusOut && movesFocus()) stepBoxLostFocus();
    if (event->type() == QEvent::Wheel && !m_stepBox->hasFocus()) return true;  // no step by a stray wheel
    if (event->type() == QEvent::KeyPress) {
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
    const auto takeStored = [this] {
      m_stepBox->setEditText(
          widgets::shownText(base::optionText(readSettings(), OptionId::CurvatureUserRangeStep)));
    };
    guarded("Step box", takeStored, Box::Beside);
  }
  if (m_stepBox->currentText() == "Large") m_stepBox->setEditText("Small");
}

}  // namespace torvik::app
