// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

#include "app/window_fixture.h"

namespace torvik::app {
namespace {

using analysis::RunState;

class Robustness : public WindowTest {
 protected:
  Robustness() { onlyWindows({"TableSolver", "ChartMomentCurvature"}); }
  /// @return whether the window takes what is dragged over it
  bool drop(const QStringList& names) {
    QMimeData files;
    QList<QUrl> urls;
    for (const QString& name : names)
      urls.append(QUrl::fromLocalFile(QString::fromStdString(path(name.toStdString()))));
    files.setUrls(urls);
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &enter);
    QDropEvent dropped({50, 50}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &dropped);
    return enter.isAccepted();
  }
  /// The program still runs a whole job.
  void expectAWholeJob() {
    onlyWindows({"TableSolver", "ChartMomentCurvature"});
    log.clear();
    program.document.tables = smallBeam();
    trigger("mnuFileJob0");
    EXPECT_EQ(log.filter("box:").size(), 1) << log.join("; ").toStdString();
    EXPECT_EQ(titles().size(), 2);
    EXPECT_GT(solverRows(), 20);
    EXPECT_EQ(state(), RunState::Over);
    EXPECT_EQ(panel("Status"), "Waiting");
    EXPECT_TRUE(action("mnuFileJob0").isEnabled());
  }
};

TEST_F(Robustness, TheWindowClosesBehindAJob) {
  for (const bool paused : {false, true}) {
    SCOPED_TRACE(paused ? "paused" : "running");
    openWith(smallBeam());
    log.clear();
    program.document.SavedFlag = false;
    const auto exit = [&] {
      dialogs.yes = false;
      trigger("mnuFileExit");
      EXPECT_EQ(state(), paused ? RunState::Paused : RunState::Running);
      dialogs.yes = true;
      trigger("mnuFileExit");
      EXPECT_TRUE(window->isVisible()) << "the solver still stands on the stack";
      EXPECT_EQ(state(), RunState::Over);
      // What the user still presses before the solver comes back.
      for (const char* name : {"mnuFileJob1", "Toolbar1_Pause", "mnuFileJob0", "mnuFileManage0"}) {
        trigger(name);
        EXPECT_EQ(state(), RunState::Over) << name;
      }
      program.run.state = RunState::Over;
    };
    atStep(steps + 4, [&] {
      if (!paused) return exit();
      trigger("mnuFileJob1");
      later(exit);
    });
    const int before = steps;
    trigger("mnuFileJob0");
    EXPECT_LT(steps, before + 15);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isVisible(); }, 1000));
    EXPECT_EQ(log.filter("question:").size(), 2) << "asked once more only after the No";
    EXPECT_EQ(log.filter("box:"), QStringList());
    EXPECT_NE(setting("mdiMain", "Width"), "(none)");
  }
}

TEST_F(Robustness, ExitEndsABatch) {
  for (const char* name : {"a.inp", "b.inp"}) model(name, smallBeam());
  open();
  atStep(4, [this] { trigger("mnuFileExit"); });
  window->takeCommandLine({path("a.inp"), path("b.inp")});
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isVisible(); }, 1000));
  EXPECT_FALSE(exists("b.inp.txt"));
}

TEST_F(Robustness, NothingReachesTheModelWhileAJobRunsOrComesToItsEnd) {
  const std::string other = model("other.inp", {});
  openWith(smallBeam());
  ASSERT_TRUE(window->openFile(other));
  ASSERT_TRUE(window->openFile(path("a.inp")));
  dialogs.filesToOpen = QStringList{QString::fromStdString(other)};
  dialogs.fileToSave = QString::fromStdString(path("saved.inp"));
  const auto tryAll = [this] {
    for (const char* name :
         {"mnuFileManage0", "mnuFileManage1", "mnuFileManage2", "mnuFileManage3", "mnuFileRecentPath3",
          "mnuFileRecentPath4", "mnuFileJob0", "mnuObjectSectionParameter", "mnuWindowAll2"})
      trigger(name);
    QTest::keyClick(window.get(), Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_F5);
    click("Open");
    EXPECT_FALSE(drop({"other.inp"}));
    EXPECT_EQ(program.document.tables.Solids.size(), 10u);
    EXPECT_EQ(program.document.currentFile, path("a.inp"));
    EXPECT_EQ(titles().size(), 2);
    EXPECT_FALSE(exists("saved.inp"));
  };
  atStep(3, [&] {
    tryAll();
    trigger("mnuFileJob1");
    tryAll();
    later([&] {
      tryAll();
      trigger("mnuFileJob2");
      tryAll();  // the solver has not come back yet
      EXPECT_EQ(state(), RunState::Over);
    });
  });
  trigger("mnuFileJob0");
  EXPECT_LT(steps, 15);
  EXPECT_EQ(log.filter("box:"), QStringList());
  expectAWholeJob();
}

TEST_F(Robustness, WindowsCanBeUsedInAnyWayWhileAJobRuns) {
  openWith(smallBeam());
  int turn = 0;
  onStep = [&](int) {
    if (++turn > 40 || turn % 4 != 0) return;
    later([&] {
      trigger("mnuWindowArrange" + QString::number(turn / 4 % 5));
      trigger("mnuWindowAll" + QString::number(turn / 4 % 2));
      trigger("mnuToolBar" + QString::number(turn / 4 % 2));
      area().activateNextSubWindow();
      trigger("mnuEditEdit4");
      trigger("mnuEditEdit1");
      trigger("mnuFileJob1");
      later([&] { trigger("mnuFileJob1"); });
    });
    QThread::msleep(12);
  };
  trigger("mnuFileJob0");
  EXPECT_GT(turn, 40);
  EXPECT_EQ(titles().size(), 2);
  onStep = {};
  expectAWholeJob();
}

TEST_F(Robustness, AFaultShowsOneBoxAndLeavesEverythingAsItWas) {
  const struct {
    const char* name;
    const char* section;
    const char* key;
    const char* value;
    const char* command;
    const char* box;  ///< part of it
    bool heals;       ///< closing the windows writes the key anew
  } kRows[] = {
      {"a number", "Option", "CurvatureSmallRangeStep", "abc", "mnuFileJob0", "CurvatureSmallRangeStep",
       false},
      {"beyond 16 bits", "Option", "ConvergenceMaxIteration", "99999", "mnuFileJob0",
       "ConvergenceMaxIteration", false},
      {"arrangement", "Option", "WindowArrange", "99999", "mnuFileJob0", "WindowArrange", false},
      {"state of a chart", "frmChart", "State", "7", "mnuFileJob0", "51", true},
      {"state of a table, in a job", "frmTable", "State", "7", "mnuFileJob0", "51", true},
      {"state of a table, outside one", "frmTable", "State", "7", "mnuObjectSectionParameter", "51", true},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    openWith(smallBeam());
    program.document.SavedFlag = false;
    set(row.section, row.key, row.value);
    for (const int run : {1, 2}) {
      log.clear();
      trigger(row.command);
      const bool fails = run == 1 || !row.heals;
      const QStringList boxes = log.filter(row.box);
      EXPECT_EQ(boxes.size(), fails ? 1 : 0) << log.join("; ").toStdString();
      if (!fails) {
        EXPECT_FALSE(titles().isEmpty());
        for (views::ChildWindow* child : window->children()) EXPECT_TRUE(child->isVisible());
      }
    }
    EXPECT_FALSE(program.document.SavedFlag);
    EXPECT_EQ(program.document.tables.Solids.size(), 10u);
    if (!row.heals) std::filesystem::remove(program.settingsFile);
    expectAWholeJob();
  }
}

TEST_F(Robustness, AFaultInTheSettingsAtStartKeepsTheRest) {
  const struct {
    const char* section;
    const char* key;
    const char* value;
  } kRows[] = {
      {"Option", "ConvergenceMaxIteration", "99999"}, {"mdiMain", "Left", "abc"}, {"mdiMain", "Width", ""}};
  set("RecentPath", "0", "old.inp");
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.key);
    set(row.section, row.key, row.value);
    log.clear();
    open();
    EXPECT_EQ(log.size(), 1) << log.join("; ").toStdString();
    window->resize(window->width() + 10, 400);
    QCoreApplication::processEvents();
    EXPECT_EQ(log.size(), 1);
    EXPECT_TRUE(action("mnuToolBar0").isChecked() && action("mnuToolBar1").isChecked() &&
                action("mnuToolResize").isChecked());
    EXPECT_EQ(window->windowTitle(), "torvik - (New File)");
    trigger("mnuFileExit");
    EXPECT_EQ(setting("RecentPath", "0"), "old.inp");
    set(row.section, row.key, "100");
  }
}

TEST_F(Robustness, AnInternalErrorWithinAJobIsOneBox) {
  model::ObjectTables unknown = smallBeam();
  unknown.Bars[1].Type = "elastic";
  openWith(unknown);
  trigger("mnuFileJob0");
  ASSERT_EQ(log.filter("box:").size(), 1);
  EXPECT_TRUE(log.filter("box:").first().contains("51"));
  EXPECT_TRUE(log.filter("box:").first().contains("Bar 2"));
  EXPECT_EQ(log.last(), "sound: chimes.wav");
  expectAWholeJob();
}

TEST_F(Robustness, AFolderThatTakesNoFilesStopsABatchWithoutAHang) {
  for (const char* name : {"a.inp", "b.inp"}) model(name, smallBeam());
  const struct {
    const char* name;
    QStringList blocked;  ///< names that are folders
    int boxes;
  } kRows[] = {{"no result file: the log tells", {"a.inp.txt"}, 0},
               {"neither result nor log", {"b.inp.txt", "b.inp.log"}, 1},
               {"no log", {"a.inp.log", "b.inp.log"}, 2}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    for (const char* name : {"a.inp.txt", "a.inp.log", "b.inp.txt", "b.inp.log"})
      std::filesystem::remove(folder / name);
    for (const QString& name : row.blocked) std::filesystem::create_directory(folder / name.toStdString());
    open();
    log.clear();
    window->takeCommandLine({path("a.inp"), path("b.inp")});
    EXPECT_EQ(log.filter("box:").size(), row.boxes) << log.join("; ").toStdString();
    EXPECT_EQ(program.document.currentFile, path("b.inp"));
    EXPECT_EQ(state(), RunState::Over);
    EXPECT_EQ(panel("Status"), "Waiting");
    trigger("mnuFileManage0");
    program.BatchMode = false;
    expectAWholeJob();
    trigger("mnuFileExit");
    EXPECT_FALSE(window->isVisible());
  }
}

TEST_F(Robustness, AReadThatFailsLeavesNoCurrentFile) {
  openWith(smallBeam());
  base::replaceWholeFile(path("bad.inp"),
                         "[Beams]\nAll=1\n[Beam0]\nSpan=6000\n[Solids]\nAll=many\n[Solid0]\nArea=x\n");
  base::replaceWholeFile(path("bad2.inp"), "[Solids]\nAll=1\n[Solid0]\nArea=x\n");
  dialogs.filesToOpen = QStringList{QString::fromStdString(path("bad2.inp"))};
  trigger("mnuFileManage1");
  EXPECT_EQ(log.size(), 1) << log.join("; ").toStdString();
  EXPECT_TRUE(log.first().contains("Area"));
  EXPECT_EQ(program.document.currentFile, "");
  EXPECT_EQ(window->windowTitle(), "torvik - (New File)");
  trigger("mnuFileManage2");  // asks for a name: none is given
  EXPECT_EQ(content("bad2.inp"), "[Solids]\nAll=1\n[Solid0]\nArea=x\n");

  // A file that is not there leaves the document alone.
  ASSERT_TRUE(window->openFile(path("a.inp")));
  EXPECT_FALSE(window->openFile(path("none.inp")));
  EXPECT_EQ(program.document.currentFile, path("a.inp"));
  EXPECT_EQ(window->windowTitle(), "torvik - " + QString::fromStdString(path("a.inp")));
}

TEST_F(Robustness, ASaveThatFailsKeepsFileCaptionAndEdits) {
  openWith(smallBeam());
  program.document.SavedFlag = false;
  std::filesystem::create_directory(folder / "folder.inp");
  dialogs.fileToSave = QString::fromStdString(path("folder.inp"));
  trigger("mnuFileManage3");
  EXPECT_EQ(log.filter("box:").size(), 1);
  EXPECT_FALSE(program.document.SavedFlag);
  EXPECT_EQ(program.document.currentFile, path("a.inp"));
  EXPECT_EQ(window->windowTitle(), "torvik - " + QString::fromStdString(path("a.inp")));
}

TEST_F(Robustness, DroppedFilesAreOpenedAndRun) {
  for (const char* name : {"b.inp", "c.inp"}) model(name, smallBeam());
  std::filesystem::create_directory(folder / "d.inp");
  openWith(smallBeam());
  EXPECT_TRUE(drop({"d.inp", "b.inp", "gone.inp", "c.inp"}));
  const QStringList boxes = log.filter("box:");
  ASSERT_EQ(boxes.size(), 3) << log.join("; ").toStdString();
  EXPECT_EQ(boxes[1], "box: Can't open " + QString::fromStdString(path("gone.inp")));
  EXPECT_EQ(program.document.currentFile, path("c.inp"));
  EXPECT_FALSE(program.BatchMode);
}

}  // namespace
}  // namespace torvik::app
