// SPDX-License-Identifier: GPL-3.0-or-later
// build/release/bench/torvik-desktop-bench MODEL.inp...
// Jobs in the window with all result windows open beside the same jobs without a window, and how long End
// takes; then how long the commands on a large model take.
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>
#include <cstdio>

#include "app/main_window.h"
#include "base/number_text.h"
#include "base/settings.h"
#include "job/job.h"
#include "model/default_rows.h"
#include "wizard/fibre_generation.h"

namespace {

using namespace torvik;

class NoDialogs : public app::Dialogs {
 public:
  void information(const QString&, const QString&) override {}
  void notice(const QString&, const QString&) override {}
  bool question(const QString&, const QString&) override { return true; }
  QStringList openFiles(const QString&, const QString&) override { return {}; }
  QString openFile(const QString&, const QString&, const QString&, const QString&) override { return {}; }
  QString saveFile(const QString&, const QString&, const QString&, const QString&) override { return {}; }
  void saveFile(const QString&, const QString&, const QString&, const QString&,
                std::function<void(const QString&)>) override {}
  void setUpPage(QPrinter&, std::function<void()>) override {}
  void choosePrinter(QPrinter&, std::function<void()>) override {}
  QString input(const QString&, const QString& caption, const QString&) override {
    return caption == "Section Shape" ? "r" : "300";
  }
};

class NoSounds : public app::SoundPlayer {
 public:
  void play(const QString&) override {}
};

void timeCommands(app::MainWindow& window, app::Program& program, int fibres) {
  model::ObjectTables& tables = program.document.tables;
  tables = {};
  model::AddDefaultRows(tables, model::ObjectKind::Beam, 1, base::ProfileFile());
  tables.Beams[0].Span = 6000;
  wizard::SectionShape shape;
  shape.A = shape.B = 400;
  shape.C = 800;
  shape.fibreNumber = fibres;
  wizard::GenerateFibers(shape, tables, base::ProfileFile());
  const auto time = [](const auto& act) {
    QElapsedTimer clock;
    clock.start();
    act();
    QApplication::processEvents();
    return static_cast<double>(clock.nsecsElapsed()) * 1e-6;
  };
  const double open = time([&] { window.menuAction("mnuObjectSetting", 1).trigger(); });
  const double select = time([&] { window.menuAction("mnuEditEdit", 4).trigger(); });
  const double clear = time([&] { window.menuAction("mnuEditEdit", 3).trigger(); });
  const double undo = time([&] { window.menuAction("mnuEditUndo").trigger(); });
  const double figure = time([&] { window.menuAction("mnuObjectFigure").trigger(); });
  const double close = time([&] { (void)window.closeAllChildren(); });
  std::printf("%8d %10.1f %10.1f %10.1f %10.1f %10.1f %10.1f\n", fibres, open, select, clear, undo, figure,
              close);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QTemporaryDir folder;
  NoDialogs dialogs;
  NoSounds sounds;
  app::Program program;
  program.settingsFile = folder.filePath("torvik.ini").toStdString();
  program.dialogs = &dialogs;
  program.sounds = &sounds;
  app::MainWindow window(program);
  window.changeSettings([](base::ProfileFile& settings) {
    settings.ProfileWrite(base::kOptionSection, "MessagesPauseWatch", "0");
    settings.ProfileWrite(base::kOptionSection, "TableSection", "1");
  });
  window.load();
  window.resize(1280, 800);
  window.show();
  QApplication::processEvents();

  std::printf("%-40s %8s %12s %12s %8s %12s\n", "model", "rows", "headless s", "window s", "ratio",
              "End after ms");
  for (int i = 1; i < argc; ++i) {
    if (!window.openFile(argv[i])) continue;
    model::JobTables job = model::BuildJobTables(program.document.tables);
    job::UnattendedHost host;
    QElapsedTimer clock;
    clock.start();
    run::Run run(std::move(job.tables), {});
    run::RunWriter writer(run);
    job::runJob(job::JobOptions::read(window.readSettings()), host, writer, program.context);
    const double headless = static_cast<double>(clock.nsecsElapsed()) * 1e-9;

    QAction& start = window.menuAction("mnuFileJob", 0);
    window.stepBox().setEditText("Small");
    clock.start();
    start.trigger();
    const double inWindow = static_cast<double>(clock.nsecsElapsed()) * 1e-9;

    // End in the middle of the job: from the click to the solver's return.
    window.stepBox().setEditText("Small");
    double endAfter = -1;
    QTimer::singleShot(static_cast<int>(inWindow * 500), &window, [&] {
      if (program.steering.state != job::JobState::Running) return;
      clock.start();
      window.menuAction("mnuFileJob", 2).trigger();
      endAfter = 0;
    });
    start.trigger();
    if (endAfter == 0) endAfter = static_cast<double>(clock.nsecsElapsed()) * 1e-6;
    const std::string end = endAfter < 0 ? "too short" : base::plainText(std::round(endAfter * 10) / 10);
    std::printf("%-40s %8d %12.4f %12.4f %8.1f %12s\n", argv[i], run.steps(), headless, inWindow,
                inWindow / headless, end.c_str());
  }
  std::printf("\n%8s %10s %10s %10s %10s %10s %10s   (ms)\n", "fibres", "open grid", "select all", "delete",
              "undo", "figure", "close");
  for (const int fibres : {100, 1000, 10000}) timeCommands(window, program, fibres);
  return 0;
}
