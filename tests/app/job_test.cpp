// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLineEdit>
#include <regex>

#include "app/window_fixture.h"
#include "base/number_text.h"
#include "job/job.h"
#include "run/result_file.h"

namespace torvik::app {
namespace {

using base::plainText;

/// What a job without a window gives, in the texts that windows and files show.
struct Headless {
  std::string solver;  ///< the solver table, tab between
  std::string message;
  std::string file;

  Headless(const model::ObjectTables& edited, const std::string& resultPath, const std::string& step) {
    run::Run run(model::BuildJobTables(edited).tables, {});
    run::ResultFile resultFile(resultPath, run::resultHeadings(run.job()),
                               run::ResultFile::Existing::Replace);
    run::RowReader* const readers[] = {&resultFile};
    run::RunWriter writer(run, readers);
    job::UnattendedHost host(step);
    materials::StressStrainContext context;
    message = job::runJob(job::JobOptions::read(base::ProfileFile("none")), host, writer, context).message;
    resultFile.close();
    file = base::readWholeFile(resultPath);
    solver = "Output";
    for (const run::Column& column : run.columns()) solver += "\t" + column.heading;
    solver += "\r\n";
    for (int row = 0; row < run.steps(); ++row) {
      solver += plainText(row + 1);
      for (std::size_t column = 0; column < run.columns().size(); ++column)
        solver += "\t" + plainText(run.cell(row, column));
      solver += "\r\n";
    }
  }
};

class Job : public WindowTest {
 protected:
  Headless headless(const std::string& step = "Small") {
    return Headless(smallBeam(), path("headless.txt"), step);
  }
};

TEST_F(Job, ShowsInItsWindowsWhatTheJobWithoutAWindowGives) {
  option("FileSolver", "1");
  option("TableSection", "1");
  openWith(smallBeam());
  trigger("mnuFileJob0");
  const Headless expected = headless();

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
  EXPECT_EQ(stepBox().currentText(), "Large");
}

TEST_F(Job, AsksBeforeItReplacesAResultFile) {
  option("FileSolver", "1");
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  base::replaceWholeFile(path("a.inp.txt"), "old");
  const QString question =
      "question: \"" + QString::fromStdString(path("a.inp.txt")) + "\" already exists.\rOverwrite ?";
  dialogs.yes = false;
  trigger("mnuFileJob0");
  EXPECT_EQ(log, QStringList{question}) << "no sound";
  EXPECT_EQ(content("a.inp.txt"), "old");
  EXPECT_EQ(state(), job::JobState::Over);
  log.clear();
  dialogs.yes = true;
  trigger("mnuFileJob0");
  EXPECT_EQ(log.mid(0, 2), QStringList({question, "sound: chimes.wav"}));
  EXPECT_EQ(content("a.inp.txt"), headless().file);
}

TEST_F(Job, EndsDuringAPauseAndWhileRunningWithTheRowsDoneSoFar) {
  const Headless whole = headless();
  option("FileSolver", "1");
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  for (const bool paused : {false, true}) {
    SCOPED_TRACE(paused ? "paused" : "running");
    log.clear();
    atStep(7, [&] {
      if (!paused) return trigger("mnuFileJob2");
      trigger("mnuFileJob1");
      later([this] { trigger("mnuFileJob2"); });
    });
    trigger("mnuFileJob0");
    const std::string file = content("a.inp.txt");
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 1 + solverRows());
    EXPECT_LT(file.size(), whole.file.size());
    EXPECT_EQ(whole.file.substr(0, file.size()), file);
    EXPECT_EQ(log.filter("box:"), QStringList());
  }
}

TEST_F(Job, TheStepBoxTakesNumbersAndItsOwnWords) {
  open();
  const struct {
    const char *typed, *inBox, *left;  ///< while it has the focus, and after
  } kRows[] = {{"a1e-+5 %", "15", "15"}, {"1.2.3", "1.2.3", "Small"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.typed);
    stepBox().setFocus(Qt::MouseFocusReason);
    stepBox().lineEdit()->selectAll();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace);
    QTest::keyClicks(QApplication::focusWidget(), row.typed);
    EXPECT_EQ(stepBox().currentText(), row.inBox);
    area().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(stepBox().currentText(), row.left);
  }
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
  const Headless first = headless();
  const Headless last = headless("Large");
  open();
  window->takeCommandLine({"-x", path("a.inp"), path("b.inp"), path("c.inp"), path("d.inp"), path("a.inp")});
  EXPECT_EQ(log.filter("box:"), QStringList({"box: Option \"x\" ignored.",
                                             "box: Can't open " + QString::fromStdString(path("d.inp"))}))
      << "a missing file ends the list";
  EXPECT_EQ(window->panels().panel("Beam Bottom"), "5.0000E+02");
  EXPECT_EQ(window->panels().panel("Mu").toStdString(), base::scientificText(*program.run->peakMoment()));
  EXPECT_GT(window->panels().panel("Count").toInt(), 0);
  EXPECT_EQ(content("a.inp.txt"), first.file);
  EXPECT_EQ(content("b.inp.txt"), first.file.substr(0, first.file.find('\n') + 1)) << "the headings alone";
  EXPECT_EQ(content("c.inp.txt"), last.file);
  const auto withoutTime = [this](const char* name) {
    return std::regex_replace(content(name), std::regex("[0-9/]{10} [0-9:]{8}"), "(time)");
  };
  EXPECT_EQ(withoutTime("a.inp.log"), "earlier\r\n(time)" + first.message + "\r\n");
  EXPECT_NE(withoutTime("b.inp.log").find("elastic"), std::string::npos);
}

}  // namespace
}  // namespace torvik::app
