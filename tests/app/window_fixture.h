// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMdiArea>
#include <QStringList>
#include <QTimer>
#include <QtTest/QtTest>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "app/main_window.h"
#include "base/files.h"
#include "base/profile.h"
#include "base/temporary_folder.h"
#include "model/input_file.h"
#include "model/models.h"
#include "views/table_window.h"

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << text.toStdString();
}

namespace torvik::app {

/// The boxes of the program, answered beforehand and written down in the log of a test.
class ScriptedDialogs : public Dialogs {
 public:
  explicit ScriptedDialogs(QStringList& log) : m_log(log) {}

  bool yes = true;  ///< answer to every question
  QStringList filesToOpen;
  QString fileToSave;
  QStringList inputs;  ///< answers to input boxes, in their order; then Cancel

  void information(const QString& text, const QString&) override { m_log.append("box: " + text); }
  void notice(const QString& text, const QString&) override { m_log.append("box: " + text); }
  bool question(const QString& text, const QString&) override {
    m_log.append("question: " + text);
    return yes;
  }
  QStringList openFiles(const QString&, const QString&) override { return filesToOpen; }
  QString openFile(const QString&, const QString&, const QString&, const QString&) override {
    return filesToOpen.value(0);
  }
  QString saveFile(const QString&, const QString&, const QString&, const QString&) override {
    return fileToSave;
  }
  void saveFile(const QString&, const QString&, const QString&, const QString&,
                std::function<void(const QString&)> then) override {
    if (!fileToSave.isEmpty()) then(fileToSave);
  }
  void setUpPage(QPrinter&, std::function<void()>) override {}
  void choosePrinter(QPrinter&, std::function<void()>) override {}
  QString input(const QString&, const QString& caption, const QString&) override {
    m_log.append("input: " + caption);
    return inputs.isEmpty() ? QString() : inputs.takeFirst();
  }

 private:
  QStringList& m_log;
};

class RecordingSounds : public SoundPlayer {
 public:
  std::function<void(const QString&)> onPlay;
  void play(const QString& file) override {
    if (onPlay) onPlay(file);
  }
};

/// The whole program in a folder of its own: real window, real jobs, settings "torvik.ini" and models
/// "*.inp".
class WindowTest : public ::testing::Test {
 protected:
  WindowTest() : dialogs(log) {
    program.settingsFile = folder / "torvik.ini";
    program.dialogs = &dialogs;
    program.sounds = &sounds;
    program.pace = {0, 0};  // the window has its turn at every yield
    sounds.onPlay = [this](const QString& file) {
      if (file != "start.wav") log.append("sound: " + file);
    };
    // A job that never comes back would hang the suite.
    QObject::connect(&m_watchdog, &QTimer::timeout, [this] {
      ADD_FAILURE() << "the job hangs";
      program.steering.state = job::JobState::Over;
      if (QWidget* box = QApplication::activeModalWidget()) box->close();
    });
    m_watchdog.start(20000);
  }

  // ---- files
  void set(const std::string& section, const std::string& key, const std::string& value) {
    base::ProfileFile file = base::ProfileFile::read(program.settingsFile);
    file.ProfileWrite(section, key, value);
    file.save(program.settingsFile);
  }
  void option(const std::string& key, const std::string& value) { set("Option", key, value); }
  [[nodiscard]] std::string setting(const std::string& section, const std::string& key) const {
    return base::ProfileFile::read(program.settingsFile).ProfileGetString(section, key, "(none)");
  }
  /// Only these result windows open with a job.
  void onlyWindows(const QStringList& keys) {
    for (const char* key : {"TableSolver", "TableSolid", "TableBar", "TableTendon", "ChartMomentCurvature",
                            "ChartLoadDisplacement", "ChartStress", "ChartStrain", "ChartMoment",
                            "ChartCurvature", "ChartDisplacement"})
      option(key, keys.contains(key) ? "1" : "0");
  }
  [[nodiscard]] std::string path(const std::string& name) const { return (folder / name).string(); }
  std::string model(const std::string& name, const model::ObjectTables& tables) {
    base::ProfileFile file(name);
    model::writeTables(file, tables);
    file.save(folder / name);
    return path(name);
  }
  [[nodiscard]] std::string content(const std::string& name) const {
    return base::readWholeFile(folder / name);
  }

  /// A beam that is done in a moment, with a row of every kind. One solid, both bars and the tendon are put
  /// out.
  static model::ObjectTables smallBeam() {
    model::ObjectTables tables = tests::rectangle(10);
    tables.Solids[0].Output = 1;
    tables.Bars.push_back(tests::barOf(2, 200, 50));
    tables.Tendons.push_back(tests::tendonOf(100, 400, "Post-tensioning"));
    tables.AxialForces.push_back(tests::axialOf(1000, 250));
    return tables;
  }

  // ---- the window
  void open() {
    window = std::make_unique<MainWindow>(program);
    window->load();
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }
  /// With a model in hand, as after Open.
  void openWith(const model::ObjectTables& tables) {
    const std::string name = model("a.inp", tables);
    open();
    ASSERT_TRUE(window->openFile(name));
  }
  [[nodiscard]] QAction& action(const QString& name) const {
    auto* const found = window->findChild<QAction*>(name);
    if (!found) throw std::runtime_error("no action " + name.toStdString());
    return *found;
  }
  void trigger(const QString& name) { action(name).trigger(); }
  [[nodiscard]] QComboBox& stepBox() const { return *window->findChild<QComboBox*>("Combo1"); }
  [[nodiscard]] QMdiArea& area() const { return *window->findChild<QMdiArea*>("mdiArea"); }
  [[nodiscard]] job::JobState state() const { return program.steering.state; }

  /// Children in the order in which they were opened.
  [[nodiscard]] QStringList titles() const {
    QStringList titles;
    for (const views::ChildWindow* child : window->children()) titles.append(child->windowTitle());
    return titles;
  }
  template <class Child>
  [[nodiscard]] Child& child(const QString& title) const {
    for (views::ChildWindow* child : window->children())
      if (child->windowTitle() == title) return dynamic_cast<Child&>(*child);
    throw std::runtime_error("no window " + title.toStdString());
  }
  [[nodiscard]] views::ResultTable& table(const QString& title) const {
    return child<views::TableWindow>(title).table();
  }
  [[nodiscard]] int solverRows() const { return table("Table - Solver").rowCount() - 1; }

  // ---- the job
  /// Runs `act` among the window's events once the next job has done so many steps, as a user's click would.
  void atStep(int step, std::function<void()> act) {
    auto* const clock = new QTimer(window.get());
    QObject::connect(clock, &QTimer::timeout, [this, clock, step, act = std::move(act)] {
      if (!program.run || program.run->end() || program.run->steps() < step) return;
      clock->stop();
      clock->deleteLater();
      act();
    });
    clock->start(0);
  }
  /// The same in every job from now on, once each, behind its first step.
  void inEachJob(std::function<void()> act) {
    auto* const clock = new QTimer(window.get());
    QObject::connect(clock, &QTimer::timeout,
                     [this, act = std::move(act), last = run::Origin().begun]() mutable {
                       if (!program.run || program.run->steps() == 0 || program.run->origin().begun == last)
                         return;
                       last = program.run->origin().begun;
                       act();
                     });
    clock->start(0);
  }
  /// Runs `act` as soon as events are let run again.
  void later(const std::function<void()>& act) { QTimer::singleShot(0, window.get(), act); }

  torvik::tests::TemporaryFolder folder;
  QStringList log;
  ScriptedDialogs dialogs;
  RecordingSounds sounds;
  Program program;
  std::unique_ptr<MainWindow> window;

 private:
  QTimer m_watchdog;
};

}  // namespace torvik::app
