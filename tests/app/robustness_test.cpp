// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_fixture.h"

namespace torvik::app {
namespace {

using job::JobState;

class Robustness : public WindowTest {
 protected:
  /// The program still runs a whole job.
  void expectAWholeJob() {
    onlyWindows({"TableSolver"});
    log.clear();
    program.document.tables = smallBeam();
    trigger("mnuFileJob0");
    EXPECT_EQ(log.filter("box:").size(), 1) << log.join("; ").toStdString();
    EXPECT_GT(solverRows(), 20);
    EXPECT_EQ(state(), JobState::Over);
  }
};

TEST_F(Robustness, TheWindowClosesBehindAJob) {
  openWith(smallBeam());
  program.document.SavedFlag = false;
  const auto exit = [&] {
    dialogs.yes = false;
    trigger("mnuFileExit");
    EXPECT_EQ(state(), JobState::Paused);
    dialogs.yes = true;
    trigger("mnuFileExit");
    EXPECT_TRUE(window->isVisible()) << "the solver still stands on the stack";
    EXPECT_EQ(state(), JobState::Over);
  };
  atStep(4, [&] {
    trigger("mnuFileJob1");
    later(exit);
  });
  trigger("mnuFileJob0");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isVisible(); }, 1000));
  EXPECT_EQ(log.filter("question:").size(), 2) << "asked once more only after the No";
  EXPECT_EQ(log.filter("box:"), QStringList());
}

TEST_F(Robustness, ABadValueShowsOneBoxAndLeavesEverythingAsItWas) {
  const struct {
    const char *section, *key, *value, *box;  ///< part of the box
  } kRows[] = {{"Option", "CurvatureSmallRangeStep", "abc", "CurvatureSmallRangeStep"},
               {"frmTable", "State", "7", "51"},
               {"none", "model", "1", "Bar 2"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.key);
    openWith(smallBeam());
    program.document.SavedFlag = false;
    set(row.section, row.key, row.value);
    if (row.section == std::string("none")) program.document.tables.Bars[1].Type = "elastic";
    log.clear();
    trigger("mnuFileJob0");
    EXPECT_EQ(log.filter(row.box).size(), 1) << log.join("; ").toStdString();
    EXPECT_FALSE(program.document.SavedFlag);
    EXPECT_EQ(program.document.tables.Solids.size(), 10u);
    std::filesystem::remove(program.settingsFile);
    expectAWholeJob();
  }
}

TEST_F(Robustness, AFolderThatTakesNoFilesStopsABatchWithoutAHang) {
  for (const char* name : {"a.inp", "b.inp"}) model(name, smallBeam());
  for (const char* name : {"a.inp.txt", "b.inp.txt", "b.inp.log"})
    std::filesystem::create_directory(folder / name);
  open();
  window->takeCommandLine({path("a.inp"), path("b.inp")});
  EXPECT_NE(content("a.inp.log").find("a.inp.txt"), std::string::npos) << content("a.inp.log");
  EXPECT_EQ(log.filter("box:").size(), 1) << "of the job that has no log either";
  EXPECT_EQ(program.document.currentFile, path("b.inp"));
}

TEST_F(Robustness, AReadThatFailsLeavesNoCurrentFile) {
  openWith(smallBeam());
  base::replaceWholeFile(path("bad.inp"), "[Solids]\nAll=1\n[Solid0]\nArea=x\n");
  dialogs.filesToOpen = QStringList{QString::fromStdString(path("bad.inp"))};
  trigger("mnuFileManage1");
  EXPECT_EQ(log.size(), 1) << log.join("; ").toStdString();
  EXPECT_TRUE(log.first().contains("Area"));
  EXPECT_EQ(program.document.currentFile, "");
  EXPECT_EQ(window->windowTitle(), "torvik - (New File)");
  // What can not be read at all touches nothing.
  openWith(smallBeam());
  base::replaceWholeFile(path("bad.inp"), std::string("\0", 1));
  for (const bool saved : {true, false}) {
    program.document.SavedFlag = saved;
    trigger("mnuFileManage1");
    EXPECT_EQ(program.document.SavedFlag, saved);
    EXPECT_EQ(program.document.currentFile, path("a.inp"));
    EXPECT_EQ(window->windowTitle(), "torvik - " + QString::fromStdString(path("a.inp")));
  }
}

TEST_F(Robustness, AFaultyModelIsNotSavedOver) {
  openWith(smallBeam());
  base::replaceWholeFile(path("bad.inp"), "[Solids]\nAll=1\n[Solid0]\nArea=x\n");
  dialogs.filesToOpen = QStringList{QString::fromStdString(path("bad.inp"))};
  trigger("mnuFileManage1");
  trigger("mnuFileManage2");  // asks for a name: none is given
  EXPECT_EQ(content("bad.inp"), "[Solids]\nAll=1\n[Solid0]\nArea=x\n");
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

}  // namespace
}  // namespace torvik::app
