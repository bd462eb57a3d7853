// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLineEdit>
#include <regex>

#include "analysis/job.h"
#include "analysis/log_file.h"
#include "analysis/recording_host.h"
#include "analysis/result_file.h"
#include "app/window_fixture.h"
#include "base/number_text.h"

namespace torvik::app {
namespace {

using analysis::RunState;
using base::plainText;

/// What a job without a window gives, in the texts that windows and files show.
struct Headless : public analysis::Sink {
  std::string solver;                                          ///< the solver table, tab between
  std::vector<std::string> momentCurvature, loadDisplacement;  ///< "x y" of each point
  std::vector<std::string> moment, curvature, displacement;    ///< of the last step
  std::vector<std::string> stress, strain;                     ///< "x y" of solids, bars, tendons
  std::string bars, tendons;                                   ///< the columns that a job writes
  std::string message;
  std::string file;

  Headless(const model::ObjectTables& edited, const std::string& resultPath, const std::string& step) {
    model::ObjectTables job = model::BuildJobTables(edited).tables;
    const std::vector<std::string> headings = analysis::resultHeadings(job);
    solver = "Output";
    for (const std::string& heading : headings) solver += "\t" + heading;
    solver += "\r\n";
    analysis::ResultFile resultFile(resultPath, headings, analysis::ResultFile::Existing::Replace);
    analysis::RecordingHost host;
    host.step = step;
    materials::StressStrainContext context;
    context.prompt = &host;
    std::vector<analysis::Sink*> sinks = {this, &resultFile};
    const auto options = analysis::JobOptions::read(base::ProfileFile("none"));
    message = analysis::runJob(job, options, host.control, host, sinks, context).message;
    resultFile.close();
    file = base::readWholeFile(resultPath);
  }

  void beginRow(int Step) override { solver += plainText(Step + 1); }
  void cell(int, double value) override { solver += "\t" + plainText(value); }
  void endRow() override { solver += "\r\n"; }
  void strainWithoutLoad(const analysis::SectionState& state) override {
    m_barBase = state.bars().BaseStrain;
    m_tendonBase = state.tendons().BaseStrain;
  }
  void currentValues(const analysis::SectionState& state) override {
    bars = columns(state.bars(), m_barBase);
    tendons = columns(state.tendons(), m_tendonBase);
    stress = strain = {};
    const auto add = [&](const analysis::SectionState::Rows& rows, double ofStress, double ofStrain) {
      for (std::size_t i = 0; i < rows.size(); ++i) {
        stress.push_back(point(rows.CurrentStress[i] / ofStress, -rows.Depth[i]));
        strain.push_back(point(rows.CurrentStrain[i] * 100 / ofStrain, -rows.Depth[i]));
      }
    };
    add(state.solids(), 1, 1);
    add(state.bars(), -10, -1);
    add(state.tendons(), -10, -10);
  }
  void loadStep(const analysis::LoadStep& step) override {
    momentCurvature.push_back(point(step.Curvature / 0.000001, step.Moment / 1000));
    loadDisplacement.push_back(point(step.beam.Displacement(), step.beam.Load() / 1000));
    moment = curvature = displacement = {};
    const std::vector<double> Deflection = step.beam.Deflection();
    for (std::size_t i = 0; i < step.beam.pieceCount(); ++i) {
      moment.push_back(point(step.beam.place(i), -(step.beam.pieceMoments()[i] / 1000)));
      curvature.push_back(point(step.beam.place(i), -(step.beam.pieceCurvatures()[i] / 0.000001)));
      displacement.push_back(point(step.beam.place(i), -Deflection[i]));
    }
  }

 private:
  static std::string point(double x, double y) { return plainText(x) + " " + plainText(y); }
  static std::string columns(const analysis::SectionState::Rows& rows, const std::vector<double>& base) {
    std::string text;
    for (std::size_t i = 0; i < base.size(); ++i)
      text += base::scientificText(base[i], 8) + " " + base::scientificText(rows.CurrentStrain[i]) + " " +
              base::scientificText(rows.CurrentStress[i]) + " " + base::scientificText(rows.CurrentForce[i]) +
              "\n";
    return text;
  }
  std::vector<double> m_barBase, m_tendonBase;
};

class Job : public WindowTest {
 protected:
  Headless headless(const model::ObjectTables& tables, const std::string& step = "Small") {
    return Headless(tables, path("headless.txt"), step);
  }

  /// "x y" of the rows of a pair of columns, as far as they were written.
  [[nodiscard]] std::vector<std::string> points(const QString& title,
                                                std::initializer_list<int> pairs = {1}) const {
    const views::ChartControl& shown = chart(title);
    std::vector<std::string> points;
    for (const int column : pairs)
      for (int row = 1; row <= shown.RowCount(); ++row)
        if (const std::string x = shown.Data(row, column); !x.empty())
          points.push_back(x + " " + shown.Data(row, column + 1));
    return points;
  }
  [[nodiscard]] std::string currentColumns(const QString& title) const {
    const views::ResultTable& shown = table(title);
    std::string text;
    for (int row = 0; row < shown.rowCount(); ++row)
      for (int column = 0; column < 4; ++column)
        text += shown.index(row, column).data().toString().toStdString() + (column < 3 ? " " : "\n");
    return text;
  }
};

TEST_F(Job, ShowsInItsWindowsWhatTheJobWithoutAWindowGives) {
  option("FileSolver", "1");
  option("TableSection", "1");
  openWith(smallBeam());
  trigger("mnuFileJob0");
  const Headless expected = headless(smallBeam());

  EXPECT_EQ(titles(),
            QStringList({"Table - Tendon (Tension +)", "Table - Bar (Tension +)",
                         "Table - Solid (Compression +)", "Table - Section Parameter", "Table - Solver",
                         "Chart - Displacement", "Chart - Curvature", "Chart - Moment", "Chart - Strain",
                         "Chart - Stress", "Chart - Load-Displacement", "Chart - Moment-Curvature"}));
  EXPECT_EQ(log.join("; ").toStdString(),
            "sound: chimes.wav; sound: ding.wav; sound: ding.wav; sound: ding.wav; sound: ding.wav; box: " +
                expected.message + "; sound: chimes.wav");
  EXPECT_EQ(table("Table - Solver").text('\t'), expected.solver);
  EXPECT_EQ(content("a.inp.txt"), expected.file);
  EXPECT_FALSE(exists("a.inp.log"));
  EXPECT_EQ(currentColumns("Table - Bar (Tension +)"), expected.bars);
  EXPECT_EQ(currentColumns("Table - Tendon (Tension +)"), expected.tendons);
  EXPECT_EQ(points("Chart - Moment-Curvature"), expected.momentCurvature);
  EXPECT_EQ(points("Chart - Load-Displacement"), expected.loadDisplacement);
  EXPECT_EQ(points("Chart - Moment"), expected.moment);
  EXPECT_EQ(points("Chart - Curvature"), expected.curvature);
  EXPECT_EQ(points("Chart - Displacement"), expected.displacement);
  EXPECT_EQ(points("Chart - Stress", {1, 3, 5}), expected.stress);
  EXPECT_EQ(points("Chart - Strain", {1, 3, 5}), expected.strain);
  EXPECT_EQ(chart("Chart - Moment-Curvature").RowCount(),
            static_cast<int>(expected.momentCurvature.size()) + 1);
  EXPECT_EQ(panel("Status"), "Waiting");
  EXPECT_EQ(stepBox().currentText(), "Large");
}

TEST_F(Job, OpensTheFlaggedWindowsOfWhatTheJobHas) {
  const struct {
    const char* name;
    QStringList flags;
    bool steel;
    QStringList titles;
  } kRows[] = {
      {"none", {}, true, {}},
      {"tables of classes that the job lacks stay away",
       {"TableTendon", "TableBar", "TableSolid"},
       false,
       {"Table - Solid (Compression +)"}},
      {"a chart stays", {"ChartStress", "TableBar"}, false, {"Chart - Stress"}},
      {"both", {"ChartMoment", "TableSolver"}, true, {"Table - Solver", "Chart - Moment"}},
  };
  model::ObjectTables noSteel = smallBeam();
  for (auto& bar : noSteel.Bars) bar.Use = 0;  // fails, with its windows open
  noSteel.Tendons.clear();
  open();
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    onlyWindows(row.flags);
    program.document.tables = row.steel ? smallBeam() : noSteel;
    atStep(steps + 5, [this] { trigger("mnuFileJob2"); });
    trigger("mnuFileJob0");
    EXPECT_EQ(titles(), row.titles);
  }
}

TEST_F(Job, AsksBeforeItReplacesAResultFile) {
  option("FileSolver", "1");
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  base::replaceWholeFile(path("a.inp.txt"), "old");
  dialogs.onBox = [this](const QString& text) {
    EXPECT_EQ(text.startsWith("question"), titles().isEmpty()) << "asked before any window opens";
  };
  const QString question =
      "question: \"" + QString::fromStdString(path("a.inp.txt")) + "\" already exists.\rOverwrite ?";
  dialogs.yes = false;
  trigger("mnuFileJob0");
  EXPECT_EQ(log, QStringList{question}) << "no sound";
  EXPECT_EQ(content("a.inp.txt"), "old");
  EXPECT_TRUE(titles().isEmpty());
  EXPECT_EQ(panel("Status"), "Waiting");
  EXPECT_EQ(state(), RunState::Over);
  log.clear();
  dialogs.yes = true;
  trigger("mnuFileJob0");
  EXPECT_EQ(log.mid(0, 2), QStringList({question, "sound: chimes.wav"}));
  EXPECT_EQ(content("a.inp.txt"), headless(smallBeam()).file);
}

TEST_F(Job, IsRefusedWithoutABeamOrASection) {
  const struct {
    const char* name;
    void (*spoil)(model::ObjectTables&);
    bool refused;
  } kRows[] = {
      {"nothing", [](model::ObjectTables& t) { t = {}; }, true},
      {"no beam in use", [](model::ObjectTables& t) { t.Beams[0].Use = 0; }, true},
      {"no section in use",
       [](model::ObjectTables& t) {
         t.Solids.clear();
         t.Tendons.clear();
         for (auto& bar : t.Bars) bar.Use = 2;
       },
       true},
      {"bars alone pass", [](model::ObjectTables& t) { t.Solids.clear(), t.Tendons.clear(); }, false},
  };
  option("FileSolver", "1");
  onlyWindows({});
  open();
  program.document.currentFile = path("a.inp");
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    log.clear();
    program.document.tables = smallBeam();
    row.spoil(program.document.tables);
    trigger("mnuFileJob0");
    EXPECT_EQ(log == QStringList{"box: Insufficient beam/section objects."}, row.refused)
        << log.join("; ").toStdString();
    EXPECT_EQ(exists("a.inp.txt"), !row.refused);
    EXPECT_EQ(panel("Status"), "Waiting");
    EXPECT_EQ(state(), RunState::Over);
  }
}

TEST_F(Job, PausesAndResumesFromEveryPlace) {
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  const auto shown = [this] {
    return panel("Status") + (action("mnuFileJob1").isChecked() ? " menu" : "") +
           (action("Toolbar1_Pause").isChecked() ? " button" : "");
  };
  const struct {
    const char* name;
    std::function<void()> act;
    const char* shown;  ///< after the act
    RunState state;
  } kActs[] = {
      {"menu", [this] { trigger("mnuFileJob1"); }, "Pause menu button", RunState::Paused},
      {"menu again", [this] { trigger("mnuFileJob1"); }, "Start", RunState::Running},
      {"button", [this] { click("Pause"); }, "Pause menu button", RunState::Paused},
      {"button again", [this] { click("Pause"); }, "Start", RunState::Running},
      {"step box", [this] { QTest::mouseClick(stepBox().lineEdit(), Qt::LeftButton); }, "Pause menu button",
       RunState::Paused},
      {"key", [this] { QTest::keyClick(window.get(), Qt::Key_F6); }, "Start", RunState::Running},
      {"refused End",
       [this] {
         dialogs.yes = false;
         trigger("mnuFileJob2");
         dialogs.yes = true;
       },
       "Loading", RunState::Running},
      {"menu, then End",
       [this] {
         trigger("mnuFileJob1");
         click("End");
       },
       "Waiting menu", RunState::Over},
  };
  std::size_t next = 0;
  int rowsAtPause = -1;
  std::function<void()> act = [&] {
    SCOPED_TRACE(kActs[next].name);
    // Nothing goes on in a pause.
    if (rowsAtPause >= 0) {
      EXPECT_EQ(solverRows(), rowsAtPause);
    }
    kActs[next].act();
    EXPECT_EQ(shown(), kActs[next].shown);
    EXPECT_EQ(state(), kActs[next].state);
    table("Table - Solver").flushNow();
    rowsAtPause = state() == RunState::Paused ? solverRows() : -1;
    if (++next < std::size(kActs)) {
      if (state() == RunState::Paused)
        QTimer::singleShot(20, window.get(), [&] {
          table("Table - Solver").flushNow();
          act();
        });
      else
        atStep(steps + 3, act);
    }
  };
  atStep(3, act);
  trigger("mnuFileJob0");
  EXPECT_EQ(next, std::size(kActs));
  EXPECT_EQ(log.filter("box:"), QStringList()) << "the user's End has no message";
  EXPECT_EQ(log.filter("question:"),
            QStringList({"question: End calculation ?", "question: End calculation ?"}));
  EXPECT_EQ(log.last(), "sound: chimes.wav");
  EXPECT_GT(solverRows(), 3);
  EXPECT_EQ(panel("Status"), "Waiting");
  EXPECT_FALSE(action("Toolbar1_Pause").isChecked());
}

TEST_F(Job, EndsDuringAPauseAndWhileRunningWithTheRowsDoneSoFar) {
  const Headless whole = headless(smallBeam());
  option("FileSolver", "1");
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  for (const bool paused : {false, true}) {
    SCOPED_TRACE(paused ? "paused" : "running");
    log.clear();
    atStep(steps + 7, [&] {
      if (!paused) return trigger("mnuFileJob2");
      trigger("mnuFileJob1");
      later([this] { trigger("mnuFileJob2"); });
    });
    trigger("mnuFileJob0");
    const std::string file = content("a.inp.txt");
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 1 + solverRows());
    EXPECT_GE(solverRows(), 7);
    EXPECT_LT(file.size(), whole.file.size());
    EXPECT_EQ(whole.file.substr(0, file.size()), file);
    EXPECT_EQ(log.filter("box:"), QStringList());
  }
}

TEST_F(Job, PausesWhereAWatchedStrainIsCrossed) {
  onlyWindows({"TableSolver", "ChartMoment"});
  model::ObjectTables watched = smallBeam();
  watched.Bars[1].WatchStrain = "-0.0001";
  openWith(watched);
  int crossing = 0;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (state() != RunState::Paused) return;
    crossing = steps;
    EXPECT_EQ(panel("Status"), "Pause");
    EXPECT_TRUE(action("mnuFileJob1").isChecked() && action("Toolbar1_Pause").isChecked());
    views::ResultTable& solver = table("Table - Solver");
    solver.flushNow();
    const int row = solver.rowCount() - 1;
    const auto colour = [&](int column) {
      return solver.index(row, column).data(Qt::BackgroundRole).value<QColor>();
    };
    EXPECT_EQ(colour(8), QColor(192, 192, 192)) << "the second bar's strain";
    EXPECT_FALSE(colour(7).isValid());
    EXPECT_NE(solver.index(row, 8).data().toString(), "");
    EXPECT_EQ(solver.index(row, 9).data().toString(), "") << "the row is not yet whole";
    EXPECT_EQ(log.last(), "sound: ding.wav");
    EXPECT_NE(chart("Chart - Moment").Data(1, 2), "") << "of the step before";
    click("Pause");
  });
  watch.start(1);
  trigger("mnuFileJob0");
  ASSERT_GT(crossing, 1);
  EXPECT_EQ(table("Table - Solver").text('\t'), headless(watched).solver);

  // An End that comes first wins.
  watch.stop();
  stepBox().setEditText("Small");
  steps = 0;
  onStep = [&](int done) {
    if (done == crossing) trigger("mnuFileJob2");
  };
  trigger("mnuFileJob0");
  EXPECT_EQ(steps, crossing);
}

TEST_F(Job, PausesBeforeLoadingWithTheButtonAlone) {
  onlyWindows({"TableSolver"});
  option("MessagesPausePreLoading", "1");
  openWith(smallBeam());
  QStringList shown;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (state() != RunState::Paused) return;
    shown.append(panel("Status") + (action("Toolbar1_Pause").isChecked() ? " button" : "") +
                 (action("mnuFileJob1").isChecked() ? " menu" : ""));
    EXPECT_EQ(solverRows(), 0);
    trigger("mnuFileJob1");
  });
  watch.start(1);
  trigger("mnuFileJob0");
  // The menu entry, which such a pause leaves alone, is turned over by each of the resumes.
  EXPECT_EQ(shown, QStringList({"Pause button", "Pause button menu", "Pause button", "Pause button menu"}));
}

TEST_F(Job, AsksTheQuestionsOfTheConfinedLawOnce) {
  onlyWindows({"TableSolver"});
  open();
  ASSERT_TRUE(window->openFile(TORVIK_SOURCE_DIR "/examples/confined-section.inp"));
  dialogs.inputs = QStringList{"r", "300"};
  const Headless expected = headless(program.document.tables);
  trigger("mnuFileJob0");
  EXPECT_EQ(table("Table - Solver").text('\t'), expected.solver);
  EXPECT_EQ(log.filter("input:").size(), 2);
}

TEST_F(Job, TheStepBoxTakesNumbersAndItsOwnWords) {
  open();
  const struct {
    const char* name;
    const char* typed;
    const char* inBox;  ///< while it has the focus
    const char* left;   ///< after it has lost it
  } kRows[] = {
      {"a number", "2.5", "2.5", "2.5"},
      {"letters and signs are refused", "a1e-+5 %", "15", "15"},
      {"two points are no number", "1.2.3", "1.2.3", "Small"},
      {"empty", "", "", "Small"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    stepBox().setFocus(Qt::MouseFocusReason);
    stepBox().lineEdit()->selectAll();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace);
    QTest::keyClicks(QApplication::focusWidget(), row.typed);
    EXPECT_EQ(stepBox().currentText(), row.inBox);
    area().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(stepBox().currentText(), row.left);
  }
  stepBox().setCurrentText("Large");
  for (const auto reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason}) {
    QFocusEvent left(QEvent::FocusOut, reason);  // to another program, to the box's own list
    QApplication::sendEvent(&stepBox(), &left);
    EXPECT_EQ(stepBox().currentText(), "Large");
  }
  option("CurvatureUserRangeStep", "Large");  // what replaces a text may be Large itself
  stepBox().setFocus(Qt::MouseFocusReason);
  area().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(stepBox().currentText(), "Small");
}

TEST_F(Job, RunsABatchWithALogInPlaceOfBoxes) {
  onlyWindows({"TableSolver"});
  model::ObjectTables failing = smallBeam();
  failing.Solids[0].Type = "elastic";
  model("a.inp", smallBeam());
  model("b.inp", failing);
  model("c.inp", smallBeam());
  base::replaceWholeFile(path("a.inp.log"), "earlier\r\n");
  // The first job leaves Large in the step box, which the next ones go on with.
  const Headless first = headless(smallBeam());
  const Headless last = headless(smallBeam(), "Large");
  const std::string kTime = "[0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}";
  const auto quoted = [](std::string text) { return std::regex_replace(text, std::regex("[.()]"), "\\$&"); };

  for (const bool fromDialog : {true, false}) {
    SCOPED_TRACE(fromDialog ? "Open dialog" : "command line");
    open();
    log.clear();
    QStringList captions;
    const auto play = sounds.onPlay;
    sounds.onPlay = [&](const QString& file) {
      if (file == "chimes.wav" && state() == RunState::Running && titles().isEmpty())
        captions.append(window->windowTitle().right(5));
    };
    if (fromDialog) {
      for (const char* name : {"a.inp", "b.inp", "c.inp"})
        dialogs.filesToOpen.append(QString::fromStdString(path(name)));
      trigger("mnuFileManage1");
      EXPECT_EQ(captions, QStringList({"c.inp", "b.inp", "a.inp"}));
      EXPECT_EQ(log, QStringList());
    } else {
      window->takeCommandLine(
          {"-x", path("a.inp"), path("b.inp"), path("c.inp"), path("d.inp"), path("a.inp")});
      EXPECT_EQ(captions, QStringList({"a.inp", "b.inp", "c.inp"})) << "a missing file ends the list";
      EXPECT_EQ(log.first(), "box: Option \"x\" ignored.");
      EXPECT_EQ(log.last(), "box: Can't open " + QString::fromStdString(path("d.inp")));
      EXPECT_EQ(log.filter("question:").size(), 3) << "the overwrite question is asked in a batch too";
    }
    sounds.onPlay = play;
    EXPECT_TRUE(program.BatchMode);
    EXPECT_TRUE(content("a.inp.txt") == (fromDialog ? last : first).file);
    EXPECT_TRUE(content("c.inp.txt") == (fromDialog ? first : last).file);
    EXPECT_EQ(content("b.inp.txt"), first.file.substr(0, first.file.find('\n') + 1)) << "the headings alone";
  }
  const auto expectLog = [&](const char* name, const std::string& lines) {
    EXPECT_TRUE(std::regex_match(content(name), std::regex(lines))) << content(name);
  };
  expectLog("a.inp.log",
            "earlier\r\n" + kTime + quoted(last.message) + "\r\n" + kTime + quoted(first.message) + "\r\n");
  expectLog("b.inp.log", "(" + kTime + "[^\r\n]*elastic[^\r\n]*\r\n){2}");
}

TEST_F(Job, OneFileOnTheCommandLineRunsWithBoxesAndOneFromTheDialogDoesNotRun) {
  onlyWindows({});
  const std::string name = model("a.inp", smallBeam());
  open();
  window->takeCommandLine({name});
  EXPECT_FALSE(program.BatchMode);
  EXPECT_EQ(log.filter("box:").size(), 1);
  EXPECT_EQ(folder.names(), (std::set<std::string>{"a.inp", "torvik.ini"}));
  log.clear();
  dialogs.filesToOpen = QStringList{QString::fromStdString(name)};
  click("Open");
  EXPECT_EQ(state(), RunState::Over);
  EXPECT_EQ(log, QStringList());
}

TEST_F(Job, SectionParametersAreShownOutsideAJob) {
  openWith(smallBeam());
  for (int i = 0; i < 2; ++i) {
    trigger("mnuObjectSectionParameter");
    EXPECT_EQ(titles(), QStringList{"Table - Section Parameter"}) << "one window, reused";
  }
  EXPECT_EQ(table("Table - Section Parameter").index(4, 9).data().toString(),
            "Solid - Bars - Tendons + Eq.Bars + Eq.Tendons");
  EXPECT_EQ(panel("Beam Bottom"), "5.0000E+02");
  EXPECT_EQ(log, QStringList());
  program.document.tables = {};
  trigger("mnuObjectSectionParameter");
  EXPECT_EQ(log, QStringList{"box: Insufficient beam/section objects."});
}

}  // namespace
}  // namespace torvik::app
