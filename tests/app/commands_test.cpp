// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDropEvent>
#include <QFocusEvent>
#include <QMimeData>

#include "app/start_up.h"
#include "app/window_fixture.h"

namespace torvik::app {
namespace {

using job::JobState;

class Commands : public WindowTest {};

TEST_F(Commands, EveryWayIntoAPauseShowsItAndLeadsOutAgain) {
  const struct {
    std::string way;
    bool menuChecked;
    std::function<void()> pause;  ///< null: the job does it by itself
    int pauses = 1;
  } kRows[] = {{"menu", true, [this] { trigger("mnuFileJob1"); }},
               {"tool bar", true, [this] { trigger("Toolbar1_Pause"); }},
               {"step box", true, [this] { stepBox().setFocus(Qt::MouseFocusReason); }},
               {"before loading", false, {}, 2},
               {"watch strain", true, {}}};
  model::ObjectTables watched = smallBeam();
  watched.Bars[0].WatchStrain = "0.001";
  option("FileSolver", "1");
  onlyWindows({"TableSolver"});
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.way);
    option("MessagesPausePreLoading", row.way == "before loading" ? "1" : "0");
    openWith(row.way == "watch strain" ? watched : smallBeam());
    int pauses = 0;
    int looks = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      looks = state() == JobState::Paused ? looks + 1 : 0;
      if (looks < 3) return;  // the job has come to its waiting
      looks = 0;
      if (++pauses > 1) return trigger("mnuFileJob2");
      EXPECT_EQ(window->panels().panel("Status"), "Pause");
      EXPECT_TRUE(action("Toolbar1_Pause").isChecked());
      EXPECT_EQ(action("mnuFileJob1").isChecked(), row.menuChecked);
      const std::string file = content("a.inp.txt");
      EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 1 + solverRows()) << "the file is up to date";
      area().setFocus(Qt::OtherFocusReason);
      trigger("Toolbar1_Pause");
      EXPECT_EQ(state(), JobState::Running);
    });
    look.start(1);
    if (row.pause) atStep(4, row.pause);
    trigger("mnuFileJob0");
    EXPECT_EQ(pauses, row.pauses);
    EXPECT_EQ(state(), JobState::Over);
  }
}

TEST_F(Commands, OpenRunsSeveralFilesFromTheLastToTheFirst) {
  onlyWindows({"TableSolver"});
  for (const char* name : {"a.inp", "b.inp", "c.inp"})
    dialogs.filesToOpen.append(QString::fromStdString(model(name, smallBeam())));
  open();
  QStringList order;
  inEachJob([&] { order.append(window->windowTitle().section('/', -1)); });
  trigger("mnuFileManage1");
  EXPECT_EQ(order, QStringList({"c.inp", "b.inp", "a.inp"}));
  EXPECT_EQ(log.filter("box:"), QStringList());
}

TEST_F(Commands, DroppedFilesAreReadAndRunButFoldersAreNot) {
  onlyWindows({"TableSolver"});
  QMimeData dropped;
  dropped.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path().string())),
                   QUrl::fromLocalFile(QString::fromStdString(model("a.inp", smallBeam()))),
                   QUrl::fromLocalFile(QString::fromStdString(path("gone.inp")))});
  open();
  QDragEnterEvent enter({50, 50}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window.get(), &enter);
  QDropEvent drop({50, 50}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window.get(), &drop);
  EXPECT_TRUE(QTest::qWaitFor([&] { return log.filter("Can't open").size() == 1; }, 5000));
  EXPECT_EQ(log.filter("Can't open"),
            QStringList("box: Can't open " + QString::fromStdString(path("gone.inp"))));
  EXPECT_EQ(program.document.currentFile, path("a.inp"));
  EXPECT_GT(solverRows(), 20);
}

TEST_F(Commands, ANoKeepsUnsavedEditsAndTheirWindows) {
  set("RecentPath", "0", model("b.inp", smallBeam()));
  dialogs.filesToOpen = QStringList{QString::fromStdString(path("b.inp"))};
  const struct {
    const char *command, *asks;
  } kRows[] = {{"mnuFileManage0", "Create a file ?"},
               {"mnuFileManage1", "Open a file ?"},
               {"mnuFileRecentPath4", "Open a file ?"},
               {"mnuFileExit", "Exit torvik ?"}};
  openWith(smallBeam());
  trigger("mnuObjectSectionParameter");
  program.document.SavedFlag = false;
  dialogs.yes = false;
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.command);
    log.clear();
    trigger(row.command);
    EXPECT_EQ(log, QStringList{QString("question: Object(s) have not been saved.  ") + row.asks});
    EXPECT_EQ(titles(), QStringList{"Table - Section Parameter"});
    EXPECT_EQ(program.document.currentFile, path("a.inp"));
  }
  EXPECT_TRUE(window->isVisible());
}

TEST_F(Commands, SectionParametersAreThoseOfTheJobTables) {
  model::ObjectTables tables = smallBeam();
  tables.Solids[3].Use = 0;
  openWith(tables);
  trigger("mnuObjectSectionParameter");
  // Nine strips of 300 x 50 without steel: the first row of the table.
  const views::ResultTable& shown = table("Table - Section Parameter");
  EXPECT_NEAR(shown.data(shown.index(0, 0)).toString().toDouble(), 9 * 300 * 50, 15);
}

TEST_F(Commands, TheFrameSnapsBackUnlessItMayBeSized) {
  open();
  const QSize stored = window->size();
  trigger("mnuToolResize");
  ASSERT_FALSE(action("mnuToolResize").isChecked());
  window->resize(stored + QSize(50, 40));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->size() == stored; }, 1000));
  trigger("mnuToolResize");
  window->resize(stored - QSize(50, 40));
  QTest::qWait(50);
  EXPECT_EQ(window->size(), stored - QSize(50, 40));
}

TEST(CommandLineTokens, AreOptionsUnlessTheyArePaths) {
  const CommandLineFiles line = sortTokens({"-ab", "/c", "/no/such.inp", "/d", "e.inp"});
  EXPECT_EQ(line.unknownOptions, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(line.files, (std::vector<std::string>{"/no/such.inp", "/d", "./e.inp"}));
}

}  // namespace
}  // namespace torvik::app
